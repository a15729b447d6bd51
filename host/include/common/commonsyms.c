/* Compiled into each external that reads _sym_ names, as with the SDK's file of the same name. */
#include "commonsyms.h"

t_common_symbols_table* _common_symbols = 0;

void common_symbols_init(void)
{
    _common_symbols = common_symbols_gettable();
}
