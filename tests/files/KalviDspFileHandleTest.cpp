#include "files/KalviDspFileHandle.h"

#include "files/KalviDspScratchFolder.h"

#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <unistd.h>

using vlk::File;
using vlk::test::readWholeFile;
using vlk::test::ScratchFolder;

TEST(FileHandleOpening, WritingAppendsToAnExistingFileAndCreatesAMissingOne)
{
    const ScratchFolder scratch;
    const std::string path = scratch.write("f", "abc");
    int descriptor = vlk::openForWriting(File(path));
    EXPECT_EQ(lseek(descriptor, 0, SEEK_CUR), 3);
    EXPECT_EQ(write(descriptor, "de", 2), 2);
    close(descriptor);
    EXPECT_EQ(readWholeFile(path), "abcde");

    descriptor = vlk::openForWriting(File(scratch / "new"));
    EXPECT_EQ(lseek(descriptor, 0, SEEK_CUR), 0);
    close(descriptor);
    EXPECT_TRUE(File(scratch / "new").existsAsFile());
}

TEST(FileHandleFailure, OneFailureIsLoggedTwiceFromTwoLines)
{
    const ScratchFolder scratch;
    const std::string message = "Couldnt open file \"" + scratch / "absent" + "\"";
    testing::internal::CaptureStderr();
    try {
        vlk::openForReading(File(scratch / "absent"));
        ADD_FAILURE() << "no exception";
    } catch (const vlk::Exception& exception) {
        EXPECT_EQ(exception.message, message);
    }
    const std::string log = testing::internal::GetCapturedStderr();

    const std::regex report("Exception occured in file \"KalviDspFileHandle.cpp\" \\(line (\\d+)\\): \n" +
                            message);
    std::set<std::string> lines;
    int reports = 0;
    for (auto match = std::sregex_iterator(log.begin(), log.end(), report); match != std::sregex_iterator();
         ++match, ++reports)
        lines.insert((*match)[1]);
    EXPECT_EQ(reports, 2) << log;
    EXPECT_EQ(lines.size(), 2u) << log;
}
