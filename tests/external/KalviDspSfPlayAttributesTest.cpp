#include "KalviDspHostTestSupport.h"

#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspSfPlayAttributes.h"

#include <gtest/gtest.h>
#include <memory>

namespace vlk::external::test {
namespace {

using Lines = std::vector<std::string>;

// The object's attributes on a class of the tests' own, registered in the order of the class's making.
t_class* attributesClass()
{
    static t_class* c = [] {
        InitCommonSymbols();
        t_class* made =
            class_new("sfplayattributes", nullptr, nullptr, sizeof(SfPlayObject), nullptr, A_GIMME, 0);
        AddSfPlayDocumentationAttributes(made);
        AddSfPlayOptionAttributes(made);
        AddSfPlayStructureAttributes(made);
        return made;
    }();
    return c;
}

std::string attributeAttribute(const char* name, const char* attributeName)
{
    long ac = 0;
    t_atom* av = nullptr;
    class_attr_attr_getvalueof(attributesClass(), gensym(name), gensym(attributeName), &ac, &av);
    const std::string text = host::test::text(ac, av);
    sysmem_freeptr(av);
    return text;
}

long flagsOf(const char* name)
{
    t_object* attribute = static_cast<t_object*>(class_attr_get(attributesClass(), gensym(name)));
    return static_cast<long>(reinterpret_cast<t_ptr_int>(object_method(attribute, gensym("getflags"))));
}

TEST(SfPlayAttributeTable, AttributesAreMadeInTheClasssOrder)
{
    t_object* x = static_cast<t_object*>(object_alloc(attributesClass()));
    long count = 0;
    t_symbol** names = nullptr;
    object_attr_getnames(x, &count, &names);
    Lines found;
    for (long i = 0; i < count; ++i)
        found.push_back(names[i]->s_name);
    sysmem_freeptr(names);
    EXPECT_EQ(found, (Lines{"classdigest", "classdescription", "classseealso", "externalversion", "mute",
                            "bypass", "automute", "numchannels", "buffersize", "loop"}));
    object_free(x);
}

TEST(SfPlayAttributeTable, DocumentationAttributesCarryClassTextsAndHide)
{
    EXPECT_EQ(attributeAttribute("classdigest", "label"), "\"(Multichannel) Sound file player.\"");
    EXPECT_EQ(attributeAttribute("classseealso", "label"),
              "\"sfplay~, velur.sfrecord~, velur.sfinfo, velur.index~\"");
    EXPECT_EQ(attributeAttribute("externalversion", "label"),
              "\"4.9.2 (Build Sep  7 2016) (32 bits float)\"");
    EXPECT_EQ(attributeAttribute("classdescription", "label").rfind("\"velur.sfplay~ plays AIFF", 0), 0u);
    for (const char* name : {"classdigest", "classdescription", "classseealso", "externalversion"}) {
        EXPECT_EQ(flagsOf(name), 768) << name;
        EXPECT_EQ(attributeAttribute(name, "invisible"), "1") << name;
        EXPECT_EQ(attributeAttribute(name, "category"), "documentation") << name;
    }
}

TEST(SfPlayAttributeTable, LimitsDefaultsAndLabels)
{
    const std::vector<std::vector<std::string>> rows = {
        // name, flags, minvalue, maxvalue, default, label
        {"mute", "0", "0", "1", "0", "\"mute dsp\""},
        {"bypass", "0", "0", "1", "0", "\"bypass dsp\""},
        {"automute", "0", "0.", "500.", "20.", "\"threshold for auto-muting\""},
        {"numchannels", "67108864", "1", "250", "1", "\"number of channels\""},
        {"buffersize", "67108864", "192000", "2880000", "480000", "\"buffering size (per channel)\""},
        {"loop", "67108864", "0", "1", "0", "\"loop playback\""},
    };
    for (const auto& row : rows) {
        const char* name = row[0].c_str();
        EXPECT_EQ(std::to_string(flagsOf(name)), row[1]) << name;
        EXPECT_EQ(attributeAttribute(name, "minvalue"), row[2]) << name;
        EXPECT_EQ(attributeAttribute(name, "maxvalue"), row[3]) << name;
        EXPECT_EQ(attributeAttribute(name, "default"), row[4]) << name;
        EXPECT_EQ(attributeAttribute(name, "label"), row[5]) << name;
    }
    EXPECT_EQ(attributeAttribute("mute", "style"), "onoff");
    EXPECT_EQ(attributeAttribute("loop", "style"), "onoff");
    EXPECT_EQ(attributeAttribute("automute", "units"), "sec");
    EXPECT_EQ(attributeAttribute("buffersize", "units"), "samples");
    EXPECT_EQ(attributeAttribute("bypass", "category"), "options");
    EXPECT_EQ(attributeAttribute("numchannels", "dontreset"), "1");
    EXPECT_EQ(
        attributeAttribute("numchannels", "description").rfind("\"The <m> numchannels </m> attribute", 0),
        0u);
}

// Before the player exists the sizes are kept; the values pass the clip filter first.
TEST(SfPlayAttributeSetter, WithoutAPlayerValuesAreKeptAfterTheirClip)
{
    t_object* x = static_cast<t_object*>(object_alloc(attributesClass()));
    auto* object = reinterpret_cast<SfPlayObject*>(x);
    std::construct_at(&object->player);
    host::test::ConsoleCapture console;
    object_attr_setlong(x, gensym("numchannels"), 0);
    object_attr_setlong(x, gensym("buffersize"), 5000000);
    object_attr_setlong(x, gensym("loop"), 1);
    object_attr_setfloat(x, gensym("automute"), 3.5);
    EXPECT_EQ(object->numchannels, 1);
    EXPECT_EQ(object->buffersize, 2880000);
    EXPECT_EQ(object->loop, 1);
    // Without a player the value of automute has nowhere to go.
    EXPECT_EQ(object->automute, 0.0f);
    t_atom value;
    atom_setlong(&value, 3);
    SfPlaySetAttribute(object, static_cast<t_object*>(class_attr_get(attributesClass(), gensym("mute"))), 1,
                       &value);
    EXPECT_EQ(console.lines(), Lines{"error: sfplayattributes: unknown attribute mute"});
    object_free(x);
}

} // namespace
} // namespace vlk::external::test
