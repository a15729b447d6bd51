#include "files/KalviDspFile.h"

#include "files/KalviDspScratchFolder.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

using vlk::File;
using vlk::test::pathExists;
using vlk::test::readWholeFile;
using vlk::test::ScopedEnvironmentVariable;
using vlk::test::ScratchFolder;

namespace {

std::string workingFolder()
{
    char buffer[4096];
    return getcwd(buffer, sizeof buffer);
}

std::string pathOf(const File& file)
{
    return file.getFullPathName();
}

template <typename Operation> std::string messageOf(Operation operation)
{
    try {
        operation();
    } catch (const vlk::Exception& exception) {
        return exception.message;
    }
    return "no exception";
}

} // namespace

TEST(FileNormalisation, HomeRelativeRootAndEscapedForms)
{
    const ScratchFolder home;
    const ScopedEnvironmentVariable homeVariable("HOME", home.path());
    EXPECT_EQ(pathOf(File("~")), home.path());
    EXPECT_EQ(pathOf(File("~/")), home.path());
    EXPECT_EQ(pathOf(File("a/b/")), workingFolder() + "/a/b");
    EXPECT_EQ(pathOf(File("my\\ file")), workingFolder() + "/my file");
    EXPECT_EQ(pathOf(File("/")), "/");
    EXPECT_EQ(pathOf(File("//")), "/");
    EXPECT_EQ(pathOf(File("  /a/b/// \t")), "/a/b");
    EXPECT_EQ(pathOf(File(static_cast<const char*>(nullptr))), "");
    EXPECT_FALSE(File().exists());
}

TEST(FileNormalisation, UserHomesComeFromThePasswordDatabase)
{
    const passwd* root = getpwnam("root");
    ASSERT_NE(root, nullptr);
    std::string home = root->pw_dir;
    if (home.back() == '/')
        home.pop_back();
    EXPECT_EQ(pathOf(File("~root/x")), home + "/x");
    EXPECT_EQ(pathOf(File("~nosuchuser/x/")), "~nosuchuser/x");
}

TEST(FileNormalisation, HomeFallsBackToLowerCaseHomeThenToTheWorkingFolder)
{
    const ScratchFolder second;
    // A home that is not absolute is passed over: "~" would expand through itself.
    const ScopedEnvironmentVariable upper("HOME", "~");
    const ScopedEnvironmentVariable lower("home", second.path());
    EXPECT_EQ(pathOf(File("~/x")), second / "x");
    const ScopedEnvironmentVariable noLower("home", std::nullopt);
    EXPECT_EQ(pathOf(File::getHomeDirectory()), workingFolder());
}

TEST(FileChildFile, LeadingDotComponentsWalkFromThePath)
{
    const File base("/a/b");
    EXPECT_EQ(pathOf(base.getChildFile(".")), "/a/b");
    EXPECT_EQ(pathOf(base.getChildFile("./../c")), "/a/c");
    EXPECT_EQ(pathOf(base.getChildFile("../../../x")), "/x");
    EXPECT_EQ(pathOf(base.getChildFile(".//c")), "/a/b/c");
    EXPECT_EQ(pathOf(base.getChildFile("..///c")), "/a/c");
    EXPECT_EQ(pathOf(File("/").getChildFile("x")), "/x");
    EXPECT_EQ(pathOf(File("/").getChildFile("..")), "/");
}

TEST(FileChildFile, DotsThatBeginANameStopTheWalk)
{
    const File base("/a/b");
    EXPECT_EQ(pathOf(base.getChildFile(".hidden")), "/a/b/.hidden");
    EXPECT_EQ(pathOf(base.getChildFile("..name")), "/a/b/..name");
    EXPECT_EQ(pathOf(base.getChildFile("...")), "/a/b/...");
    EXPECT_EQ(pathOf(base.getChildFile("../c/../x")), "/a/c/../x");
    EXPECT_EQ(pathOf(base.getChildFile("c//d")), "/a/b/c//d");
}

TEST(FileChildFile, AbsoluteAndHomePathsStandAlone)
{
    const ScratchFolder home;
    const ScopedEnvironmentVariable homeVariable("HOME", home.path());
    EXPECT_EQ(pathOf(File("/a/b").getChildFile("/x/y/")), "/x/y");
    EXPECT_EQ(pathOf(File("/a/b").getChildFile("~/x")), home / "x");
}

TEST(FileNames, NameParentAndExtension)
{
    EXPECT_EQ(File("/").getFileName(), "");
    EXPECT_EQ(File("~nosuchuser").getFileName(), "~nosuchuser");
    EXPECT_EQ(pathOf(File("/a").getParentDirectory()), "/");
    EXPECT_EQ(pathOf(File("/").getParentDirectory()), "/");
    EXPECT_EQ(pathOf(File("~nosuchuser").getParentDirectory()), "~nosuchuser");
    // The parent is not normalised again: the blank that ends a folder name is part of it.
    EXPECT_EQ(pathOf(File("/a /b").getParentDirectory()), "/a ");
    EXPECT_EQ(File("/a.b/c").getFileExtension(), "");
    EXPECT_EQ(File(".bashrc").getFileExtension(), ".bashrc");
    EXPECT_EQ(File("/a/b.tar.gz").getFileExtension(), ".gz");
}

TEST(FileExtensions, ListsAreCaseInsensitiveWithOrWithoutDots)
{
    EXPECT_TRUE(File("/x/a.wav").hasFileExtension("WAV aif"));
    EXPECT_TRUE(File("/x/a.AIF").hasFileExtension("WAV aif"));
    EXPECT_TRUE(File("/x/a.aif").hasFileExtension(".wav .aif"));
    EXPECT_FALSE(File("/x/a.wave").hasFileExtension("wav"));
    EXPECT_FALSE(File("/x/a.wav").hasAnyFileExtension({}));
    EXPECT_TRUE(File("/x/a.wav").hasAnyFileExtension({"mp3", "Wav"}));
}

TEST(FileExtensions, EmptyArgumentAsksForNoExtension)
{
    EXPECT_TRUE(File("/x/readme").hasFileExtension(""));
    EXPECT_FALSE(File("/x/a.wav").hasFileExtension(""));
    // Empty tokens are kept: a trailing blank admits a path without extension.
    EXPECT_TRUE(File("/x/readme").hasFileExtension("wav "));
    EXPECT_FALSE(File("/x/readme").hasFileExtension("wav"));
}

TEST(FileWriteAccess, AbsentPathsAskTheirNearestParent)
{
    const ScratchFolder scratch;
    EXPECT_TRUE(File(scratch / "a/b/c/d").hasWriteAccess());
    EXPECT_FALSE(File("~nosuchuser/x").hasWriteAccess());
    EXPECT_FALSE(File().hasWriteAccess());
}

TEST(FileDeletion, FilesAndEmptyFoldersGoFullFoldersStay)
{
    const ScratchFolder scratch;
    const std::string file = scratch.write("f", "x");
    ASSERT_EQ(mkdir((scratch / "empty").c_str(), 0700), 0);
    ASSERT_EQ(mkdir((scratch / "full").c_str(), 0700), 0);
    scratch.write("full/f", "x");
    EXPECT_TRUE(File().deleteFile());
    EXPECT_TRUE(File(scratch / "absent").deleteFile());
    EXPECT_TRUE(File(file).deleteFile());
    EXPECT_FALSE(pathExists(file));
    EXPECT_TRUE(File(scratch / "empty").deleteFile());
    EXPECT_FALSE(pathExists(scratch / "empty"));
    EXPECT_FALSE(File(scratch / "full").deleteFile());
    EXPECT_TRUE(pathExists(scratch / "full/f"));
}

TEST(FileMove, OntoItselfTouchesNothing)
{
    const ScratchFolder scratch;
    const File file(scratch.write("f", "bytes"));
    EXPECT_TRUE(file.moveFileTo(file));
    EXPECT_EQ(readWholeFile(pathOf(file)), "bytes");
}

TEST(FileMove, ReplacesTheDestinationByteForByte)
{
    const ScratchFolder scratch;
    const std::string bytes = vlk::test::makePatternBytes(70000);
    const File source(scratch.write("source", bytes));
    scratch.write("destination", "old");
    EXPECT_TRUE(source.moveFileTo(File(scratch / "destination")));
    EXPECT_FALSE(pathExists(scratch / "source"));
    EXPECT_EQ(readWholeFile(scratch / "destination"), bytes);
}

TEST(FileMove, RefusesAbsentSourceAndFullFolderDestination)
{
    const ScratchFolder scratch;
    EXPECT_FALSE(File(scratch / "absent").moveFileTo(File(scratch / "x")));
    const File source(scratch.write("source", "x"));
    ASSERT_EQ(mkdir((scratch / "full").c_str(), 0700), 0);
    scratch.write("full/f", "x");
    EXPECT_FALSE(source.moveFileTo(File(scratch / "full")));
    EXPECT_TRUE(source.existsAsFile());
}

TEST(FileCopy, BytesAndPermissionBitsArrive)
{
    const ScratchFolder scratch;
    const std::string bytes = vlk::test::makePatternBytes(100000);
    const File source(scratch.write("source", bytes));
    ASSERT_EQ(chmod(pathOf(source).c_str(), 0751), 0);
    EXPECT_TRUE(source.copyFileTo(File(scratch / "copy")));
    EXPECT_EQ(readWholeFile(scratch / "copy"), bytes);
    EXPECT_EQ(readWholeFile(pathOf(source)), bytes);
    struct stat info
    {
    };
    ASSERT_EQ(stat((scratch / "copy").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0751u);
}

TEST(FileCopy, NeverOverwritesAndNeedsAFile)
{
    const ScratchFolder scratch;
    const File source(scratch.write("source", "new"));
    scratch.write("existing", "old");
    EXPECT_FALSE(source.copyFileTo(File(scratch / "existing")));
    EXPECT_EQ(readWholeFile(scratch / "existing"), "old");
    EXPECT_FALSE(source.copyFileTo(source));
    EXPECT_EQ(readWholeFile(pathOf(source)), "new");
    EXPECT_FALSE(File(scratch.path()).copyFileTo(File(scratch / "folder copy")));
    EXPECT_FALSE(pathExists(scratch / "folder copy"));
}

TEST(FileCreateDirectory, CreatesEveryMissingLevel)
{
    const ScratchFolder scratch;
    EXPECT_TRUE(File(scratch / "a/b/c").createDirectory());
    EXPECT_TRUE(File(scratch / "a/b/c").isDirectory());
    EXPECT_TRUE(File(scratch / "a/b/c").createDirectory());
    EXPECT_TRUE(File(scratch / "d/e/file.txt").createParentDirectory());
    EXPECT_TRUE(File(scratch / "d/e").isDirectory());
    EXPECT_FALSE(pathExists(scratch / "d/e/file.txt"));
}

TEST(FileCreateDirectory, FailsUnderARegularFileAndThrowsWithoutParent)
{
    const ScratchFolder scratch;
    scratch.write("f", "x");
    EXPECT_FALSE(File(scratch / "f/a/b").createDirectory());
    EXPECT_EQ(messageOf([] { File().createDirectory(); }), "Cannot create directory \"\"");
}

TEST(FilePrepareForWriting, FreePathIsReadyAndRefusalsNameThePath)
{
    const ScratchFolder scratch;
    EXPECT_TRUE(File(scratch / "new").prepareForWriting(false));
    const File file(scratch.write("f", "x"));
    EXPECT_EQ(messageOf([&] { file.prepareForWriting(false); }),
              "File already exists \"" + scratch / "f" + "\"");
    EXPECT_TRUE(file.existsAsFile());
    EXPECT_EQ(messageOf([&] { File(scratch.path()).prepareForWriting(true); }),
              "\"" + scratch.path() + "\" is a folder");
}
