// The texts of the common symbols table, in field order; the empty text fills s_nothing.
#pragma once

namespace vlk::host {

inline constexpr const char* commonSymbolNames[] = {
    "_preset",    "anything",    "assist",      "atom",       "atom_long",    "atomarray",  "attr_modified",
    "attributes", "bang",        "basic",       "box",        "category",     "char",       "clear",
    "default",    "defaultname", "description", "dictionary", "dontsave",     "dsp",        "dsp64",
    "dsp_add64",  "dump",        "dumpout",     "enumvals",   "float",        "float32",    "float64",
    "free",       "get",         "getflags",    "getname",    "gettype",      "getvalueof", "int",
    "invisible",  "label",       "list",        "long",       "max",          "min",        "modified",
    "name",       "nobox",       "notify",      "",           "object",       "obsolete",   "order",
    "paint",      "pointer",     "preset",      "read",       "recallpreset", "save",       "selfsave",
    "set",        "setflags",    "setmethod",   "setname",    "setvalueof",   "signal",     "size",
    "style",      "symbol",      "type",        "units",      "value",        "write",
};

} // namespace vlk::host
