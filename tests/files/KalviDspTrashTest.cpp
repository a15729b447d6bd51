#include "files/KalviDspTrash.h"

#include "files/KalviDspScratchFolder.h"

#include <gtest/gtest.h>
#include <regex>
#include <sys/stat.h>

using vlk::File;
using vlk::Trash;
using vlk::test::pathExists;
using vlk::test::readWholeFile;
using vlk::test::ScopedEnvironmentVariable;
using vlk::test::ScratchFolder;

namespace {

// A user whose home and data folders are scratch folders, so that nothing reaches the real Trash.
struct ScratchUser
{
    ScratchFolder home;
    ScratchFolder dataHome;
    ScratchFolder work;
    ScopedEnvironmentVariable homeVariable{"HOME", home.path()};
    ScopedEnvironmentVariable dataHomeVariable{"XDG_DATA_HOME", dataHome.path()};

    std::string trashed(const std::string& name) const { return dataHome / ("Trash/files/" + name); }
    std::string info(const std::string& name) const
    {
        return dataHome / ("Trash/info/" + name + ".trashinfo");
    }
};

} // namespace

TEST(TrashRecycle, OverwrittenFileLandsInTheTrashWithItsInformation)
{
    const ScratchUser user;
    const std::string path = user.work.write("take 1.wav", "audio");
    EXPECT_TRUE(File(path).prepareForWriting(true));
    EXPECT_FALSE(pathExists(path));
    EXPECT_EQ(readWholeFile(user.trashed("take 1.wav")), "audio");
    const std::regex expected("\\[Trash Info\\]\nPath=" + user.work.path() +
                              "/take%201.wav\nDeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n");
    const std::string info = readWholeFile(user.info("take 1.wav"));
    EXPECT_TRUE(std::regex_match(info, expected)) << info;
    struct stat status
    {
    };
    ASSERT_EQ(stat((user.dataHome / "Trash").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST(TrashRecycle, TakenNamesGetANumber)
{
    const ScratchUser user;
    for (const char* contents : {"first", "second", "third"})
        EXPECT_TRUE(File(user.work.write("f.txt", contents)).moveToTrash());
    EXPECT_EQ(readWholeFile(user.trashed("f.txt")), "first");
    EXPECT_EQ(readWholeFile(user.trashed("f.txt.2")), "second");
    EXPECT_EQ(readWholeFile(user.trashed("f.txt.3")), "third");
    EXPECT_TRUE(pathExists(user.info("f.txt.3")));
}

TEST(TrashRecycle, ItemWithoutInformationStillHoldsItsName)
{
    const ScratchUser user;
    File(user.trashed("")).createDirectory();
    const std::string stale = user.dataHome.write("Trash/files/f", "stale");
    EXPECT_TRUE(File(user.work.write("f", "new")).moveToTrash());
    EXPECT_EQ(readWholeFile(stale), "stale");
    EXPECT_FALSE(pathExists(user.info("f")));
    EXPECT_EQ(readWholeFile(user.trashed("f.2")), "new");
}

TEST(TrashRecycle, AbsentPathNeedsNoTrash)
{
    const ScratchUser user;
    EXPECT_TRUE(File(user.work / "absent").moveToTrash());
    EXPECT_FALSE(pathExists(user.dataHome / "Trash"));
}

TEST(TrashDirectory, DefaultIsMadeUnderTheHomeFolder)
{
    const ScratchFolder home, work;
    const ScopedEnvironmentVariable homeVariable("HOME", home.path());
    // The base directory rules ignore a relative data folder.
    const ScopedEnvironmentVariable dataHome("XDG_DATA_HOME", "relative/data");
    EXPECT_TRUE(File(work.write("f", "x")).moveToTrash());
    EXPECT_EQ(readWholeFile(home / ".local/share/Trash/files/f"), "x");
}

TEST(TrashSecondRoad, UnusableTrashFallsBackToTheHomeTrashFolder)
{
    const ScratchFolder home, work;
    const ScopedEnvironmentVariable homeVariable("HOME", home.path());
    // A regular file where the data folder should be: no Trash can be made under it.
    const ScopedEnvironmentVariable dataHome("XDG_DATA_HOME", work.write("not a folder", ""));
    ASSERT_EQ(mkdir((home / ".Trash").c_str(), 0700), 0);
    EXPECT_TRUE(File(work.write("f", "x")).moveToTrash());
    EXPECT_EQ(readWholeFile(home / ".Trash/f"), "x");
}

TEST(TrashSecondRoad, NoTrashAtAllMakesPrepareForWritingThrow)
{
    const ScratchFolder home, work;
    const ScopedEnvironmentVariable homeVariable("HOME", home.path());
    const ScopedEnvironmentVariable dataHome("XDG_DATA_HOME", work.write("not a folder", ""));
    const File file(work.write("f", "x"));
    try {
        file.prepareForWriting(true);
        FAIL() << "no exception";
    } catch (const vlk::Exception& exception) {
        EXPECT_EQ(exception.message, "Error deleting \"" + work / "f" + "\"");
    }
    EXPECT_EQ(readWholeFile(work / "f"), "x");
}

TEST(TrashEncodePath, OnlyUnreservedBytesStayAsTheyAre)
{
    EXPECT_EQ(Trash::encodePath("/a-b_c.d~e/F9"), "/a-b_c.d~e/F9");
    EXPECT_EQ(Trash::encodePath("/my file%?#"), "/my%20file%25%3F%23");
    EXPECT_EQ(Trash::encodePath("/\xC3\xA9"), "/%C3%A9");
}
