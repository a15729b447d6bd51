#include "KalviDspHostSymbolTable.h"

#include "ext_obex.h"
#include "ext_proto.h"

#include <algorithm>
#include <cstring>

namespace vlk::host {

SymbolTable& SymbolTable::instance()
{
    static SymbolTable table;
    return table;
}

t_symbol* SymbolTable::intern(std::string_view text)
{
    std::lock_guard<std::mutex> guard(lock);
    auto found = entries.find(text);
    if (found != entries.end())
        return &found->second->symbol;
    auto entry = std::make_unique<Entry>();
    entry->text = std::string(text);
    entry->symbol.s_name = entry->text.data();
    entry->symbol.s_thing = nullptr;
    t_symbol* symbol = &entry->symbol;
    std::string_view key(entry->text);
    entries.emplace(key, std::move(entry));
    return symbol;
}

t_symbol* SymbolTable::find(std::string_view text) const
{
    std::lock_guard<std::mutex> guard(lock);
    auto found = entries.find(text);
    return found == entries.end() ? nullptr : &found->second->symbol;
}

t_symbol* SymbolTable::unique()
{
    for (;;) {
        std::string text;
        {
            std::lock_guard<std::mutex> guard(lock);
            text = std::string(1, 'u').append(std::to_string(nextUnique++));
        }
        if (find(text) == nullptr)
            return intern(text);
    }
}

} // namespace vlk::host

using vlk::host::SymbolTable;

t_symbol* gensym(const char* s)
{
    return SymbolTable::instance().intern(s == nullptr ? "" : s);
}

// No translations on this host: a label reads as written.
t_symbol* gensym_tr(const char* s)
{
    return gensym(s);
}

char* str_tr(const char* s)
{
    return const_cast<char*>(s);
}

t_symbol* symbol_unique(void)
{
    return SymbolTable::instance().unique();
}

t_symbol* symbol_stripquotes(t_symbol* s)
{
    if (s == nullptr)
        return nullptr;
    std::string_view text(s->s_name);
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
        return gensym(std::string(text.substr(1, text.size() - 2)).c_str());
    return s;
}

t_max_err symbolarray_sort(long ac, t_symbol** av)
{
    if (ac < 0 || (ac > 0 && av == nullptr))
        return MAX_ERR_GENERIC;
    std::sort(av, av + ac, [](t_symbol* a, t_symbol* b) { return std::strcmp(a->s_name, b->s_name) < 0; });
    return MAX_ERR_NONE;
}
