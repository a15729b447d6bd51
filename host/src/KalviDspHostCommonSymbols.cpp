#include "KalviDspHostCommonSymbolNames.h"

#include "commonsyms.h"
#include "ext_proto.h"

#include <cstddef>
#include <cstring>
#include <iterator>

// The fields after version are t_symbol pointers in the order of the names.
t_common_symbols_table* common_symbols_gettable(void)
{
    static t_common_symbols_table* table = [] {
        static t_common_symbols_table filled{};
        static_assert(sizeof(t_common_symbols_table) ==
                          sizeof(long) + sizeof(t_symbol*) * std::size(vlk::host::commonSymbolNames),
                      "one field per name");
        filled.version = 500;
        t_symbol* symbols[std::size(vlk::host::commonSymbolNames)];
        for (std::size_t i = 0; i < std::size(symbols); ++i)
            symbols[i] = gensym(vlk::host::commonSymbolNames[i]);
        std::memcpy(reinterpret_cast<char*>(&filled) + offsetof(t_common_symbols_table, s__preset), symbols,
                    sizeof(symbols));
        return &filled;
    }();
    return table;
}
