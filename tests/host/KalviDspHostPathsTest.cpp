#include "KalviDspHostTestSupport.h"

#include "KalviDspHostFileDialogs.h"
#include "KalviDspHostSearchPath.h"

#include <gtest/gtest.h>

namespace vlk::host::test {
namespace {

class HostPaths : public ::testing::Test
{
protected:
    void SetUp() override
    {
        SearchPath::instance().addFolder(scratch.path());
        FileDialogs::instance().clearAnswers();
    }

    ScratchFolder scratch;
};

TEST_F(HostPaths, LocatefileFindsANameInTheSearchPathAndGivesItsFolder)
{
    scratch.write("located-sound.wav", "RIFF");
    char name[MAX_PATH_CHARS] = "located-sound.wav";
    short path = 0;
    t_fourcc type = 0;
    ASSERT_EQ(locatefile_extended(name, &path, &type, nullptr, 0), 0);
    EXPECT_STREQ(name, "located-sound.wav");
    EXPECT_EQ(type, static_cast<t_fourcc>(0x57415645));
    char full[MAX_PATH_CHARS];
    ASSERT_EQ(path_topathname(path, name, full), 0);
    EXPECT_EQ(std::string(full), scratch.path() + "/located-sound.wav");
    char missing[MAX_PATH_CHARS] = "no-such-file.wav";
    EXPECT_NE(locatefile_extended(missing, &path, &type, nullptr, 0), 0);
    EXPECT_NE(path_topathname(path, "no-such-file.wav", full), 0);
}

TEST_F(HostPaths, AFullPathIsRewrittenToItsFileName)
{
    const std::string file = scratch.write("full.aif", "FORM");
    char name[MAX_PATH_CHARS];
    strncpy_zero(name, file.c_str(), sizeof(name));
    short path = 0;
    ASSERT_EQ(locatefile_extended(name, &path, nullptr, nullptr, 0), 0);
    EXPECT_STREQ(name, "full.aif");
    EXPECT_EQ(SearchPath::instance().folderOfId(path), scratch.path());
}

TEST_F(HostPaths, TypeListsFilterByExtension)
{
    scratch.write("typed.txt", "text");
    const t_fourcc sounds[] = {0x41494646, 0x57415645};
    char name[MAX_PATH_CHARS] = "typed.txt";
    short path = 0;
    t_fourcc type = 0;
    EXPECT_NE(locatefile_extended(name, &path, &type, sounds, 2), 0);
    const t_fourcc text[] = {0x54455854};
    EXPECT_EQ(locatefile_extended(name, &path, &type, text, 1), 0);
}

TEST_F(HostPaths, PotentialNamesNeedNotExist)
{
    char full[MAX_PATH_CHARS];
    short path = 0;
    char file[MAX_FILENAME_CHARS];
    ASSERT_EQ(path_frompathname((scratch.path() + "/new.json").c_str(), &path, file), 0);
    EXPECT_STREQ(file, "new.json");
    EXPECT_EQ(path_topotentialname(path, file, full, 0), 0);
    EXPECT_EQ(std::string(full), scratch.path() + "/new.json");
    EXPECT_NE(path_topotentialname(path, file, full, 1), 0);
}

TEST_F(HostPaths, DialogsTakeTheScriptedAnswersInOrder)
{
    FileDialogs::instance().answerWithPath(scratch.path() + "/chosen.wav");
    FileDialogs::instance().answerWithCancel();
    char name[MAX_PATH_CHARS] = "";
    short path = 0;
    t_fourcc type = 0;
    ASSERT_EQ(open_dialog(name, &path, &type, nullptr, 0), 0);
    EXPECT_STREQ(name, "chosen.wav");
    EXPECT_EQ(SearchPath::instance().folderOfId(path), scratch.path());
    EXPECT_NE(saveasdialog_extended(name, &path, &type, nullptr, 0), 0);
    EXPECT_NE(open_dialog(name, &path, &type, nullptr, 0), 0);
}

} // namespace
} // namespace vlk::host::test
