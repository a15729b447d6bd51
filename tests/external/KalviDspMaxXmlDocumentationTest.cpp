#include "KalviDspHostTestSupport.h"

#include "external/KalviDspCommonSymbols.h"
#include "external/KalviDspMaxXmlDocumentation.h"
#include "external/KalviDspMethodDocumentation.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>

namespace vlk::external::test {
namespace {

using host::test::ScratchFolder;
using Lines = std::vector<std::string>;

struct Documented
{
    t_object ob;
    t_symbol* classdescription;
    t_symbol* classdigest;
    t_symbol* classseealso;
    t_symbol* externalversion;
    double rate;
    t_symbol* shape;
};

void addDocumentation(t_class* c, const char* name, std::size_t offset, const char* labelFormat, t_atom label)
{
    class_addattr(c, attr_offset_new(name, gensym("symbol"), ATTR_GET_OPAQUE_USER | ATTR_SET_OPAQUE_USER,
                                     nullptr, nullptr, static_cast<long>(offset)));
    CLASS_ATTR_INVISIBLE(c, name, 0);
    class_attr_addattr_atoms(c, name, "label", gensym(labelFormat), 0, 1, &label);
}

t_atom symbolAtom(const char* text)
{
    t_atom atom;
    atom_setsym(&atom, gensym(text));
    return atom;
}

// Its name stands in its description twice, once inside a longer word; its version label is no symbol; its
// rate has a float and a long limit and a description of no atoms; its shape is enumerated.
t_object* newDocumentedObject()
{
    static t_class* c = [] {
        InitCommonSymbols();
        t_class* made = class_new("pagetest", nullptr, nullptr, sizeof(Documented), nullptr, A_GIMME, 0);
        addDocumentation(made, "classdescription", offsetof(Documented, classdescription), "symbol",
                         symbolAtom("pagetest plays; pagetestlike words <m>follow</m>"));
        addDocumentation(made, "classdigest", offsetof(Documented, classdigest), "symbol",
                         symbolAtom("a page"));
        addDocumentation(made, "classseealso", offsetof(Documented, classseealso), "symbol",
                         symbolAtom("a, b,c"));
        t_atom version;
        atom_setlong(&version, 5);
        addDocumentation(made, "externalversion", offsetof(Documented, externalversion), "long", version);
        CLASS_ATTR_DOUBLE(made, "rate", 0, Documented, rate);
        CLASS_ATTR_LABEL(made, "rate", 0, "the rate");
        CLASS_ATTR_ATTR_PARSE(made, "rate", "maxvalue", gensym("float64"), 0, "1.5");
        CLASS_ATTR_ATTR_PARSE(made, "rate", "minvalue", gensym("long"), 0, "500");
        CLASS_ATTR_ATTR_ATOMS(made, "rate", "description", gensym("symbol"), 0, 0, nullptr);
        CLASS_ATTR_SYM(made, "shape", 0, Documented, shape);
        CLASS_ATTR_ENUM(made, "shape", 0, "sine square saw");
        AddMethodDocumentation(made, "start", "starts <m>now</m>");
        AddMethodArgumentDocumentation(made, "start", "delay", "float");
        AddMethodArgumentDocumentation(made, "start", "from", "symbol");
        AddMethodDocumentation(made, "stop", "stops");
        return made;
    }();
    return static_cast<t_object*>(object_alloc(c));
}

Lines linesOf(const std::string& path)
{
    Lines lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

// count lines from the first that is first.
Lines block(const Lines& lines, const std::string& first, std::size_t count)
{
    const auto start = std::find(lines.begin(), lines.end(), first);
    if (static_cast<std::size_t>(lines.end() - start) < count)
        return Lines{};
    return Lines(start, start + static_cast<std::ptrdiff_t>(count));
}

struct PageTest : ::testing::Test
{
    ScratchFolder scratch;
    t_object* x = newDocumentedObject();
    std::string path = scratch.path() + "/pagetest.maxref.xml";
    std::string diagnostics;

    PageTest()
    {
        setenv("HOME", scratch.path().c_str(), 1);
        unsetenv("home");
        // What stands there is replaced, also where it is longer than the new page.
        scratch.write("pagetest.maxref.xml", std::string(20000, 'x'));
        const AttributeSortMode mode = AttributeSortMode::Alphabetical;
        host::test::ConsoleCapture console;
        testing::internal::CaptureStderr();
        MaxXmlDocumentation().GenerateXmlDocumentation(x, "style.xsl", &mode, "(c) someone");
        diagnostics = testing::internal::GetCapturedStderr();
        EXPECT_EQ(console.lines(), Lines{"post: pagetest: documentation generated in " + path});
    }
    ~PageTest() override { object_free(x); }
};

TEST_F(PageTest, TheHeaderTheClassTextsAndTheMetadata)
{
    const Lines lines = linesOf(path);
    EXPECT_EQ(block(lines, lines.at(0), 14),
              (Lines{"<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"yes\"?>", "",
                     "<?xml-stylesheet href=\"style.xsl\" type=\"text/xsl\"?>", "",
                     "<c74object name=\"pagetest\">", "\t<digest>", "\t\ta page", "\t</digest>",
                     "\t<description>", "\t\t<o>pagetest</o> plays; <o>pagetest</o>like words <m>follow</m>",
                     "\t</description>", "", "\t<!--METADATA-->", "\t<metadatalist>"}));
    EXPECT_EQ(block(lines, "\t\t<metadata name=\"copyright\">", 6),
              (Lines{"\t\t<metadata name=\"copyright\">", "\t\t(c) someone", "\t\t</metadata>",
                     "\t\t<metadata name=\"version\">", "\t\tunknown version", "\t\t</metadata>"}));
    EXPECT_EQ(Lines(lines.end() - 4, lines.end()), (Lines{"", "", "</c74object>", ""}));
}

TEST_F(PageTest, AttributesShowTheirSubAttributesAsText)
{
    const Lines lines = linesOf(path);
    // A description of no atoms gives way to the label.
    EXPECT_EQ(
        block(lines, "\t\t<attribute name=\"rate\" get=\"1\" set=\"1\" type=\"float\" size=\"1\">", 14),
        (Lines{"\t\t<attribute name=\"rate\" get=\"1\" set=\"1\" type=\"float\" size=\"1\">",
               "\t\t\t<digest>", "\t\t\t\tthe rate", "\t\t\t</digest>", "\t\t\t<description>",
               "\t\t\t\tthe rate", "\t\t\t</description>", "\t\t\t<attributelist>",
               "\t\t\t\t<attribute name=\"label\" get=\"1\" set=\"1\" type=\"symbol\" value=\"the rate\" />",
               "\t\t\t\t<attribute name=\"maxvalue\" get=\"1\" set=\"1\" type=\"float\" value=\"1.50\" />",
               "\t\t\t\t<attribute name=\"minvalue\" get=\"1\" set=\"1\" type=\"int\" value=\"500\" />",
               "\t\t\t</attributelist>", "\t\t</attribute>", ""}));
    EXPECT_NE(std::find(lines.begin(), lines.end(),
                        "\t\t\t\t<attribute name=\"enumvals\" get=\"1\" set=\"1\" type=\"unknown\" "
                        "value=\"sine square saw\" />"),
              lines.end());
    EXPECT_EQ(diagnostics, "value = |sine square saw|\n");
}

TEST_F(PageTest, MessagesListTheirRealArgumentsAndTheSeeAlsoIsSplitAtCommas)
{
    const Lines lines = linesOf(path);
    EXPECT_EQ(block(lines, "\t\t<method name=\"start\">", 22),
              (Lines{"\t\t<method name=\"start\">",
                     "\t\t\t<arglist>",
                     "\t\t\t\t<arg name=\"delay\" type=\"float\" optional=\"0\" id=\"0\" />",
                     "\t\t\t\t<arg name=\"from\" type=\"symbol\" optional=\"0\" id=\"0\" />",
                     "\t\t\t</arglist>",
                     "\t\t\t<digest>",
                     "\t\t\t</digest>",
                     "\t\t\t<description>",
                     "\t\t\t\tstarts <m>now</m>",
                     "\t\t\t</description>",
                     "\t\t</method>",
                     "\t\t<method name=\"stop\">",
                     "\t\t\t<arglist>",
                     "\t\t\t</arglist>",
                     "\t\t\t<digest>",
                     "\t\t\t</digest>",
                     "\t\t\t<description>",
                     "\t\t\t\tstops",
                     "\t\t\t</description>",
                     "\t\t</method>",
                     "\t</methodlist>",
                     ""}));
    EXPECT_EQ(block(lines, "\t<!--SEEALSO-->", 7),
              (Lines{"\t<!--SEEALSO-->", "\t<seealsolist>", "\t\t<seealso name=\"a\" />",
                     "\t\t<seealso name=\"b\" />", "\t\t<seealso name=\"c\" />", "\t</seealsolist>", ""}));
}

} // namespace
} // namespace vlk::external::test
