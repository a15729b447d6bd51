#pragma once

#include "ext_mess.h"

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace vlk::host {

// The process-wide table of interned symbols. A symbol lives as long as the process, so its address and text
// may be kept anywhere; any thread may intern.
class SymbolTable
{
public:
    static SymbolTable& instance();

    t_symbol* intern(std::string_view text);
    // Null when no symbol has this text yet.
    t_symbol* find(std::string_view text) const;
    // A symbol of the form u123456789 that did not exist before the call.
    t_symbol* unique();

private:
    struct Entry
    {
        std::string text;
        t_symbol symbol;
    };

    // Guards entries and nextUnique.
    mutable std::mutex lock;
    std::unordered_map<std::string_view, std::unique_ptr<Entry>> entries;
    unsigned long nextUnique = 100000000;
};

} // namespace vlk::host
