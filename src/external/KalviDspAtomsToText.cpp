#include "external/KalviDspAtomsToText.h"

#include <charconv>

namespace vlk {
namespace {

// What "%f" prints, without depending on the locale.
String floatText(float value)
{
    char buffer[400];
    const auto result = std::to_chars(buffer, buffer + sizeof(buffer), static_cast<double>(value),
                                      std::chars_format::fixed, 6);
    String text(buffer, result.ptr);
    while (text.endsWith('0'))
        text.dropLastCharacters(1);
    return text;
}

} // namespace

void AtomsToText(long count, const t_atom* atoms, String& text)
{
    text.clear();
    if (count <= 0 || atoms == nullptr)
        return;
    for (long i = 0; i < count; ++i) {
        const t_atom& atom = atoms[i];
        switch (atom.a_type) {
        case A_SYM:
            text += String(atom.a_w.w_sym->s_name) + " ";
            break;
        case A_FLOAT:
            text += floatText(static_cast<float>(atom.a_w.w_float)) + " ";
            break;
        case A_LONG:
            text += std::to_string(static_cast<long>(atom.a_w.w_long)) + " ";
            break;
        default:
            break;
        }
    }
}

void ReportInvalidMessage(t_object* x, long argc, const t_atom* argv, const char* text)
{
    if (argc > 0 && argv != nullptr) {
        String atomsText;
        AtomsToText(argc, argv, atomsText);
        object_error(x, "%s %s", text, atomsText.c_str());
    } else {
        object_error(x, "%s ", text);
    }
}

} // namespace vlk
