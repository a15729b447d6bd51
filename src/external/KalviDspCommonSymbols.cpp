#include "external/KalviDspCommonSymbols.h"

namespace vlk {
namespace {

CommonSymbols commonSymbolsInstance;

} // namespace

CommonSymbols* commonSymbols = nullptr;
t_common_symbols_table* maxCommonSymbols = nullptr;

void InitCommonSymbols()
{
    maxCommonSymbols = common_symbols_gettable();
#define VELUR_COMMON_SYMBOL(field, text) commonSymbolsInstance.field = gensym(text);
#include "external/KalviDspCommonSymbolNames.h"
#undef VELUR_COMMON_SYMBOL
    commonSymbols = &commonSymbolsInstance;
}

} // namespace vlk
