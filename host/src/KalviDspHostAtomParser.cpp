#include "KalviDspHostAtomParser.h"

#include "ext_obex.h"
#include "ext_proto.h"

#include <charconv>
#include <string>

namespace vlk::host {
namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool parseLong(const std::string& token, t_atom& atom)
{
    const char* begin = token.data();
    if (*begin == '+')
        ++begin;
    t_atom_long value = 0;
    auto result = std::from_chars(begin, token.data() + token.size(), value);
    if (result.ec != std::errc() || result.ptr != token.data() + token.size() || begin == result.ptr)
        return false;
    atom_setlong(&atom, value);
    return true;
}

bool parseFloat(const std::string& token, t_atom& atom)
{
    const char* begin = token.data();
    if (*begin == '+')
        ++begin;
    if (token.find_first_of("0123456789") == std::string::npos)
        return false;
    double value = 0;
    auto result = std::from_chars(begin, token.data() + token.size(), value, std::chars_format::general);
    if (result.ec != std::errc() || result.ptr != token.data() + token.size())
        return false;
    atom_setfloat(&atom, value);
    return true;
}

t_atom tokenToAtom(const std::string& token)
{
    t_atom atom;
    if (parseLong(token, atom) || parseFloat(token, atom))
        return atom;
    atom_setsym(&atom, gensym(token.c_str()));
    return atom;
}

} // namespace

std::vector<t_atom> parseAtoms(std::string_view text, bool stopAtComment)
{
    std::vector<t_atom> atoms;
    std::size_t i = 0;
    while (i < text.size()) {
        if (isBlank(text[i])) {
            ++i;
            continue;
        }
        if (stopAtComment && text[i] == '#')
            break;
        std::string token;
        bool wasQuoted = false;
        while (i < text.size() && !isBlank(text[i])) {
            if (text[i] == '"') {
                wasQuoted = true;
                for (++i; i < text.size() && text[i] != '"'; ++i) {
                    if (text[i] == '\\' && i + 1 < text.size())
                        ++i;
                    token += text[i];
                }
                ++i;
            } else {
                if (text[i] == '\\' && i + 1 < text.size())
                    ++i;
                token += text[i++];
            }
        }
        if (wasQuoted) {
            t_atom atom;
            atom_setsym(&atom, gensym(token.c_str()));
            atoms.push_back(atom);
        } else {
            atoms.push_back(tokenToAtom(token));
        }
    }
    return atoms;
}

} // namespace vlk::host
