#include "KalviDspHostAtomText.h"

#include "KalviDspHostObject.h"

#include "ext_obex.h"

#include <charconv>
#include <cmath>

namespace vlk::host {
namespace {

bool needsQuotes(const char* text)
{
    if (*text == '\0')
        return true;
    for (const char* c = text; *c != '\0'; ++c)
        if (*c == ' ' || *c == '\t' || *c == '\n' || *c == '"' || *c == '\\')
            return true;
    return false;
}

std::string quoted(const char* text)
{
    std::string result = "\"";
    for (const char* c = text; *c != '\0'; ++c) {
        if (*c == '"' || *c == '\\')
            result += '\\';
        result += *c;
    }
    return result + "\"";
}

std::string floatToText(double value)
{
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value < 0 ? "-inf" : "inf";
    char buffer[400];
    auto result = std::to_chars(buffer, buffer + sizeof(buffer), value, std::chars_format::fixed, 6);
    std::string text(buffer, result.ptr);
    while (!text.empty() && text.back() == '0')
        text.pop_back();
    return text;
}

} // namespace

std::string atomToText(const t_atom& atom)
{
    switch (atom.a_type) {
    case A_LONG:
    case A_DEFLONG:
        return std::to_string(static_cast<long long>(atom.a_w.w_long));
    case A_FLOAT:
    case A_DEFFLOAT:
        return floatToText(atom.a_w.w_float);
    case A_SYM:
    case A_DEFSYM:
    case A_DOLLSYM: {
        const char* text = atom.a_w.w_sym == nullptr ? "" : atom.a_w.w_sym->s_name;
        return needsQuotes(text) ? quoted(text) : std::string(text);
    }
    case A_OBJ: {
        t_symbol* name = object_classname(atom.a_w.w_obj);
        return std::string("<") + (name == nullptr ? "object" : name->s_name) + ">";
    }
    case A_SEMI:
        return ";";
    case A_COMMA:
        return ",";
    case A_DOLLAR:
        return std::string(1, '$').append(std::to_string(static_cast<long long>(atom.a_w.w_long)));
    default:
        return "";
    }
}

std::string atomsToText(long ac, const t_atom* av)
{
    std::string text;
    for (long i = 0; i < ac && av != nullptr; ++i) {
        if (i > 0)
            text += ' ';
        text += atomToText(av[i]);
    }
    return text;
}

} // namespace vlk::host
