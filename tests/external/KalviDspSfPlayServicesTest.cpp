// The service messages of velur.sfplay~ as a patch meets them: scripts run by velurhost, and the lines it
// prints.
#include "KalviDspExternalTestSupport.h"
#include "KalviDspHostTestSupport.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <regex>

namespace vlk::external::test {
namespace {

using host::test::ScratchFolder;
using Lines = std::vector<std::string>;

const std::string object = "!new velur.sfplay~ @numchannels 2\n";
const std::string error = "error: velur.sfplay~: ";
const std::string post = "post: velur.sfplay~: ";

// The lines of a run of the object, the buffering level left out, the unique names of dictionaries as "uN".
Lines run(const ScratchFolder& scratch, const std::string& script)
{
    const HostRun result = runVelurhost(scratch.path(), object + script);
    EXPECT_EQ(result.status, 0) << result.errors;
    Lines lines = withoutBuffering(result.lines);
    for (std::string& line : lines)
        line = std::regex_replace(line, std::regex("^dump: dictionary u[0-9]+$"), "dump: dictionary uN");
    return lines;
}

std::string contents(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// By an independent parser: Python's.
bool parsesAsXml(const std::string& path)
{
    const std::string command =
        "python3 -c 'import sys, xml.dom.minidom; xml.dom.minidom.parse(sys.argv[1])' " + shellQuoted(path) +
        " 2>/dev/null";
    return std::system(command.c_str()) == 0;
}

const std::string defaultStateJson = "{\n"
                                     "    \"automute\" : 20.000000, \n"
                                     "    \"buffersize\" : 480000, \n"
                                     "    \"bypass\" : 0, \n"
                                     "    \"loop\" : 0, \n"
                                     "    \"mute\" : 0, \n"
                                     "    \"numchannels\" : 2\n"
                                     "}\n";

TEST(SfPlayServices, VersionIsTheLabelOfTheHiddenAttributeAndUnhandledMessagesAreRefused)
{
    ScratchFolder scratch;
    const std::string version = post + "Version 4.9.2 (Build Sep  7 2016) (32 bits float)";
    Lines expected{version};
    for (const char* selector : {"bang", "readdict", "clear", "reset", "dblclick"})
        expected.push_back(error + "doesn't understand \"" + selector + "\"");
    expected.push_back(version);
    EXPECT_EQ(run(scratch, "version\nbang\nreaddict\nclear\nreset\ndblclick\nversion\n"), expected);
}

TEST(SfPlayServices, PostAttributesPostsAllOrOneAndRefusesOtherForms)
{
    ScratchFolder scratch;
    EXPECT_EQ(run(scratch, "postattributes\npostattributes loop\npostattributes foo\npostattributes a b\n"
                           "postattributes 3\n"),
              (Lines{post + "found 6 attributes", post + "automute : 20. ", post + "buffersize : 480000 ",
                     post + "bypass : 0 ", post + "loop : 0 ", post + "mute : 0 ", post + "numchannels : 2 ",
                     post + "loop : 0 ", error + "no attribute foo",
                     error + "invalid message : postattributes a b ",
                     error + "invalid message : postattributes 3 "}));
}

TEST(SfPlayServices, DumpSendsAllAsOneListOrTheNamedOne)
{
    ScratchFolder scratch;
    EXPECT_EQ(run(scratch, "dump\ndump loop extra 3\ndump 3\ndump foo\n"),
              (Lines{"dump: automute 20. , buffersize 480000 , bypass 0 , loop 0 , mute 0 , numchannels 2 ,",
                     "dump: loop 0", error + "invalid message : dump 3 ", error + "no attribute foo"}));
}

TEST(SfPlayServices, GetValueOfAndSetValueOfCarryTheStateInAlphabeticalOrder)
{
    ScratchFolder scratch;
    EXPECT_EQ(run(scratch, "!state get\n!state set 0.1 480000 1 1 0 2\n!state get\n!state set 1 2\n"
                           "!state set 1 2 3 4 5 6 7\n!state get\n"),
              (Lines{"state: 20. 480000 0 0 0 2", "state: 0.1 480000 1 1 0 2",
                     error + "setvalueof error (received 2 atoms. 6 atoms were expected)",
                     error + "setvalueof error (received 7 atoms. 6 atoms were expected)",
                     "state: 0.1 480000 1 1 0 2"}));
}

// numchannels comes last: everything before it is set through its setter and clip when it is refused.
TEST(SfPlayServices, SetValueOfSetsTheEarlierAttributesWhenTheLateNumChannelsIsRefused)
{
    ScratchFolder scratch;
    EXPECT_EQ(
        run(scratch, "!state set 600 480000 0 1 7 8\n!state get\n"),
        (Lines{error + "could not dynamically change number of channels", "state: 500. 480000 0 1 1 2"}));
}

TEST(SfPlayServices, APresetIsRecalledThroughRecallPreset)
{
    ScratchFolder scratch;
    EXPECT_EQ(run(scratch, "loop 1\nautomute 3.5\n!preset store\nloop 0\nautomute 1\n!preset recall\n"
                           "!state get\nrecallpreset 1 2\n"),
              (Lines{"state: 3.5 480000 0 1 0 2",
                     error + "setvalueof error (received 2 atoms. 6 atoms were expected)"}));
}

TEST(SfPlayServices, DumpDictSendsTheStateOrTheNamedAttributesAsADictionary)
{
    ScratchFolder scratch;
    EXPECT_EQ(run(scratch, "dumpdict\ndumpdict loop mute\ndumpdict foo loop\ndumpdict loop 1\n"),
              (Lines{"dump: dictionary uN",
                     "dict: automute : 20. buffersize : 480000 bypass : 0 loop : 0 mute : 0 numchannels : 2",
                     "dump: dictionary uN", "dict: loop : 0 mute : 0", error + "no attribute foo",
                     "dump: dictionary uN", "dict: loop : 0", error + "invalid message : dumpdict loop 1 "}));
}

TEST(SfPlayServices, ExportDictWritesTheJsonTextToTheGivenOrChosenPath)
{
    ScratchFolder scratch;
    const std::string given = scratch.path() + "/given.json";
    const std::string chosen = scratch.path() + "/chosen.json";
    EXPECT_EQ(run(scratch, "exportdict " + given + "\n!dialog " + chosen +
                               "\nexportdict 5\n!dialog cancel\n"
                               "exportdict\nexportdict " +
                               scratch.path() + "/missing/folder/x.json\n"),
              Lines{});
    EXPECT_EQ(contents(given), defaultStateJson);
    EXPECT_EQ(contents(chosen), defaultStateJson);
}

TEST(SfPlayServices, DictionarySetsAttributesThroughTheirSettersAndClips)
{
    ScratchFolder scratch;
    EXPECT_EQ(
        run(scratch, "!dict scene loop 1 automute 600 numchannels 5 bypass 1\ndictionary scene\n"
                     "dictionary elsewhere\n!state get\n"),
        (Lines{error + "could not dynamically change number of channels",
               error + "unable to reference dictionary named elsewhere", "state: 500. 480000 1 1 0 2"}));
}

TEST(SfPlayServices, PostDspStatusSaysMutedBeforeBypassed)
{
    ScratchFolder scratch;
    EXPECT_EQ(
        run(scratch, "postdspstatus\n!dsp on\nbypass 1\npostdspstatus\nmute 1\npostdspstatus\nmute 0\n"
                     "bypass 0\n!disable 1\npostdspstatus\n"),
        (Lines{post + "dsp processing is enabled", post + "dsp is off", post + "dsp processing is bypassed",
               post + "dsp is on", post + "dsp processing is muted", post + "dsp is on",
               post + "dsp processing is muted", post + "dsp is on"}));
}

TEST(SfPlayServices, GenerateXmlWritesTheReferencePageIntoTheHomeFolder)
{
    ScratchFolder scratch;
    setenv("HOME", scratch.path().c_str(), 1);
    unsetenv("home");
    EXPECT_EQ(run(scratch, "generatexml\n"),
              Lines{post + "documentation generated in " + scratch.path() + "/velur.sfplay~.maxref.xml"});
    const std::string page = scratch.path() + "/velur.sfplay~.maxref.xml";
    EXPECT_EQ(contents(page), contents(std::string(VELUR_TEST_DATA_DIR) + "/velur.sfplay~.maxref.xml"));
    EXPECT_TRUE(parsesAsXml(page));
}

TEST(SfPlayServices, GenerateXmlIntoAnUnwritableHomeStillSaysItWasGenerated)
{
    ScratchFolder scratch;
    const std::string home = scratch.path() + "/missing";
    setenv("HOME", home.c_str(), 1);
    unsetenv("home");
    EXPECT_EQ(run(scratch, "generatexml\n"),
              Lines{post + "documentation generated in " + home + "/velur.sfplay~.maxref.xml"});
    EXPECT_EQ(contents(home + "/velur.sfplay~.maxref.xml"), "");
}

} // namespace
} // namespace vlk::external::test
