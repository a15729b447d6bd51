#include "external/KalviDspSfPlayAttributes.h"

#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspDocumentationTexts.h"
#include "external/KalviDspMaxMspExternal.h"

#include <charconv>
#include <cstdio>
#include <cstring>

namespace vlk {
namespace {

constexpr const char* objectName = "velur.sfplay~";

void addSymbolAttributeAttribute(t_class* klass, const char* name, const char* attributeName,
                                 const char* text)
{
    class_attr_addattr_format(klass, name, attributeName, commonSymbols->symbol, 0, "s", gensym(text));
}

// Hidden, neither readable nor settable by messages.
void addDocumentationAttribute(t_class* klass, const char* name, std::size_t offset, const String& label)
{
    class_addattr(klass,
                  attr_offset_new(name, commonSymbols->symbol, ATTR_GET_OPAQUE_USER | ATTR_SET_OPAQUE_USER,
                                  nullptr, nullptr, static_cast<long>(offset)));
    class_attr_addattr_parse(klass, name, "invisible", commonSymbols->long_, 0, "1");
    class_attr_addattr_parse(klass, name, "category", commonSymbols->symbol, 0, "documentation");
    addSymbolAttributeAttribute(klass, name, "label", label.c_str());
}

String externalVersion()
{
    char text[128];
    std::snprintf(text, sizeof(text), "%d.%d.%d (Build %s) (%d bits float)", 4, 9, 2, "Sep  7 2016",
                  static_cast<int>(sizeof(float) * 8));
    return text;
}

// Limits as the class's texts give them.
struct Range
{
    const char* minimum;
    const char* maximum;
    const char* defaultValue;
};

double toNumber(const char* text)
{
    double value = 0.0;
    std::from_chars(text, text + std::strlen(text), value);
    return value;
}

// A clipped attribute of the given type with its setter, or the host's plain write when null.
void addClippedAttribute(t_class* klass, const char* name, t_symbol* type, long flags, std::size_t offset,
                         method setter, const Range& range)
{
    t_object* attribute = attr_offset_new(name, type, flags, nullptr, nullptr, static_cast<long>(offset));
    class_addattr(klass, attribute);
    object_method(attribute, maxCommonSymbols->s_setmethod, maxCommonSymbols->s_get, nullptr);
    object_method(attribute, maxCommonSymbols->s_setmethod, maxCommonSymbols->s_set, setter);
    attr_addfilter_clip(attribute, toNumber(range.minimum), toNumber(range.maximum), 1, 1);
    class_attr_addattr_parse(klass, name, "maxvalue", type, 0, range.maximum);
    class_attr_addattr_parse(klass, name, "minvalue", type, 0, range.minimum);
    class_attr_addattr_parse(klass, name, "default", type, 0, range.defaultValue);
}

t_symbol* nameOf(t_object* attribute)
{
    return static_cast<t_symbol*>(object_method(attribute, maxCommonSymbols->s_getname));
}

// Store or refuse: a player exists from the constructor's third step on, and its size is fixed.
void setFixedAttribute(SfPlayObject* x, long& member, t_atom_long value, const char* refusal)
{
    if (x->player == nullptr)
        member = static_cast<long>(value);
    else if (value != member)
        object_error(asObject(x), "%s", refusal);
}

} // namespace

void AddSfPlayDocumentationAttributes(t_class* klass)
{
    addDocumentationAttribute(klass, "classdigest", offsetof(SfPlayObject, classdigest),
                              Velur::MaxMspExternal::GetExternalDigest(objectName));
    addDocumentationAttribute(klass, "classdescription", offsetof(SfPlayObject, classdescription),
                              Velur::MaxMspExternal::GetExternalDescription(objectName));
    addDocumentationAttribute(klass, "classseealso", offsetof(SfPlayObject, classseealso),
                              Velur::MaxMspExternal::GetExternalSeeAlso(objectName));
    addDocumentationAttribute(klass, "externalversion", offsetof(SfPlayObject, externalversion),
                              externalVersion());
}

void AddSfPlayOptionAttributes(t_class* klass)
{
    t_symbol* longType = commonSymbols->long_;
    t_symbol* float32Type = maxCommonSymbols->s_float32;

    addClippedAttribute(klass, "mute", longType, 0, offsetof(SfPlayObject, mute), nullptr, {"0", "1", "0"});
    addSymbolAttributeAttribute(klass, "mute", "label", "mute dsp");
    class_attr_addattr_parse(klass, "mute", "style", commonSymbols->symbol, 0, "onoff");
    addSymbolAttributeAttribute(klass, "mute", "description", Velur::Texts::muteAttribute.c_str());
    class_attr_addattr_parse(klass, "mute", "category", commonSymbols->symbol, 0, "options");

    addClippedAttribute(klass, "bypass", longType, 0, offsetof(SfPlayObject, bypass), nullptr,
                        {"0", "1", "0"});
    addSymbolAttributeAttribute(klass, "bypass", "label", "bypass dsp");
    class_attr_addattr_parse(klass, "bypass", "style", commonSymbols->symbol, 0, "onoff");
    addSymbolAttributeAttribute(klass, "bypass", "description", Velur::Texts::bypassAttribute.c_str());
    class_attr_addattr_parse(klass, "bypass", "category", commonSymbols->symbol, 0, "options");

    addClippedAttribute(klass, "automute", float32Type, 0, offsetof(SfPlayObject, automute),
                        reinterpret_cast<method>(SfPlaySetAutoMute), {"0", "500", "20"});
    addSymbolAttributeAttribute(klass, "automute", "label", "threshold for auto-muting");
    class_attr_addattr_parse(klass, "automute", "units", commonSymbols->symbol, 0, "sec");
    class_attr_addattr_parse(klass, "automute", "category", commonSymbols->symbol, 0, "options");
    addSymbolAttributeAttribute(klass, "automute", "description", Velur::Texts::automuteAttribute.c_str());
}

void AddSfPlayStructureAttributes(t_class* klass)
{
    t_symbol* longType = commonSymbols->long_;
    const auto setter = reinterpret_cast<method>(SfPlaySetAttribute);

    addClippedAttribute(klass, "numchannels", longType, ATTR_SET_DEFER_LOW,
                        offsetof(SfPlayObject, numchannels), setter, {"1", "250", "1"});
    class_attr_addattr_parse(klass, "numchannels", "dontreset", longType, 0, "1");
    addSymbolAttributeAttribute(klass, "numchannels", "label", "number of channels");
    addSymbolAttributeAttribute(klass, "numchannels", "description",
                                Velur::Texts::numchannelsAttribute.c_str());

    addClippedAttribute(klass, "buffersize", longType, ATTR_SET_DEFER_LOW, offsetof(SfPlayObject, buffersize),
                        setter, {"192000", "2880000", "480000"});
    addSymbolAttributeAttribute(klass, "buffersize", "label", "buffering size (per channel)");
    class_attr_addattr_parse(klass, "buffersize", "units", commonSymbols->symbol, 0, "samples");

    addClippedAttribute(klass, "loop", longType, ATTR_SET_DEFER_LOW, offsetof(SfPlayObject, loop), setter,
                        {"0", "1", "0"});
    addSymbolAttributeAttribute(klass, "loop", "label", "loop playback");
    class_attr_addattr_parse(klass, "loop", "style", commonSymbols->symbol, 0, "onoff");
}

t_max_err SfPlaySetAttribute(SfPlayObject* x, t_object* attribute, long argc, t_atom* argv)
{
    if (argc <= 0 || argv == nullptr)
        return MAX_ERR_NONE;
    t_symbol* name = nameOf(attribute);
    if (name == commonSymbols->numchannels) {
        setFixedAttribute(x, x->numchannels, atom_getlong(argv),
                          "could not dynamically change number of channels");
    } else if (name == commonSymbols->buffersize) {
        setFixedAttribute(x, x->buffersize, atom_getlong(argv), "could not dynamically change buffersize");
    } else if (name == gensym("loop")) {
        // The dictionary brings loop after the player is built; without one the value is only kept.
        x->loop = atom_getlong(argv) != 0 ? 1 : 0;
        if (x->player != nullptr)
            x->player->setLoop(x->loop != 0);
    } else {
        object_error(asObject(x), "unknown attribute %s", name->s_name);
    }
    object_notify(x->box, maxCommonSymbols->s_modified, nullptr);
    return MAX_ERR_NONE;
}

t_max_err SfPlaySetAutoMute(SfPlayObject* x, t_object* attribute, long argc, t_atom* argv)
{
    if (argc >= 1 && argv != nullptr && nameOf(attribute) == gensym("automute") && x->player != nullptr) {
        x->automute = static_cast<float>(atom_getfloat(argv));
        x->player->setAutoMute(x->automute);
    }
    return MAX_ERR_NONE;
}

} // namespace vlk
