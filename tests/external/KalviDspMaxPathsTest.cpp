#include "KalviDspHostFileDialogs.h"
#include "KalviDspHostSearchPath.h"
#include "KalviDspHostTestSupport.h"

#include "external/KalviDspMaxPaths.h"

#include <gtest/gtest.h>

namespace vlk::external::test {
namespace {

TEST(MaxPathConversion, AVolumeBecomesAFolderOfVolumes)
{
    EXPECT_EQ(MaxPathToPosixPath("Macintosh HD:/a/b.json"), "/Volumes/Macintosh HD/a/b.json");
    EXPECT_EQ(MaxPathToPosixPath("/already/posix é.wav"), "/already/posix é.wav");
}

TEST(MaxPathConversion, MaxPathsAreReadAsMacRoman)
{
    // 0x8E is e acute, 0xA5 a bullet, 0xD5 a right single quotation mark.
    EXPECT_EQ(MaxPathToPosixPath("Disk:/caf\x8e \xa5 l\xd5\x61ir.wav"), "/Volumes/Disk/café • l’air.wav");
    // The result and its terminating zero fit 4096 bytes, or there is none.
    EXPECT_EQ(MaxPathToPosixPath("Disk:/" + String(4081, 'a')).size(), 4095u);
    EXPECT_EQ(MaxPathToPosixPath("Disk:/" + String(4082, 'a')), "");
    // Counted in bytes of UTF-8: each e acute takes two.
    EXPECT_EQ(MaxPathToPosixPath("Disk:/" + String(2040, '\x8e') + "a").size(), 4095u);
    EXPECT_EQ(MaxPathToPosixPath("Disk:/" + String(2040, '\x8e') + "aa"), "");
}

TEST(FileLocation, NamesAreLookedUpAndPathsMustExist)
{
    host::test::ScratchFolder scratch;
    const std::string file = scratch.write("located.wav", "RIFF");
    host::SearchPath::instance().addFolder(scratch.path());
    EXPECT_EQ(LocateFileInSearchPath("located.wav"), file);
    EXPECT_EQ(LocateFileInSearchPath("absent.wav"), "");
    EXPECT_EQ(LocateFileInSearchPath(file), file);
    EXPECT_EQ(LocateFileInSearchPath(scratch.path() + "/absent.wav"), "");
    EXPECT_EQ(LocateFileInSearchPath("NoSuchVolume:/absent.wav"), "");
}

TEST(FileLocation, TheDialogGivesItsPathOrNothing)
{
    host::test::ScratchFolder scratch;
    const std::string file = scratch.write("chosen.aif", "FORM");
    host::FileDialogs::instance().answerWithCancel();
    EXPECT_EQ(ChooseSoundFileToOpen(), "");
    host::FileDialogs::instance().answerWithPath(file);
    EXPECT_EQ(ChooseSoundFileToOpen(), file);
    host::FileDialogs::instance().clearAnswers();
}

} // namespace
} // namespace vlk::external::test
