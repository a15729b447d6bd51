#pragma once

#include "ext.h"

namespace vlk {

// One interned symbol per name of the package's vocabulary, read through commonSymbols once
// InitCommonSymbols has run.
struct CommonSymbols
{
#define VELUR_COMMON_SYMBOL(field, text) t_symbol* field = nullptr;
#include "external/KalviDspCommonSymbolNames.h"
#undef VELUR_COMMON_SYMBOL
};

// Null until the first InitCommonSymbols.
extern CommonSymbols* commonSymbols;
// The host's own table, whence dumpout and dictionary come.
extern t_common_symbols_table* maxCommonSymbols;

// Fills the table. Runs at the start of the class registration and again whenever a service wants it:
// interning the same text again gives the same symbol, so a second run changes nothing.
void InitCommonSymbols();

} // namespace vlk
