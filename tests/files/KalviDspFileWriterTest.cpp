#include "files/KalviDspFileWriter.h"

#include "files/KalviDspScratchFolder.h"

#include <gtest/gtest.h>

using vlk::File;
using vlk::FileWriter;
using vlk::test::readWholeFile;
using vlk::test::ScratchFolder;

namespace {

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

TEST(FileWriterOpening, MissingFoldersAreCreatedAndExistingFilesAppendedTo)
{
    const ScratchFolder scratch;
    const std::string path = scratch / "a/b/out.bin";
    for (const char* text : {"head", "tail"}) {
        FileWriter writer{File(path)};
        EXPECT_TRUE(writer.write(text, 4));
    }
    EXPECT_EQ(readWholeFile(path), "headtail");
    EXPECT_EQ(FileWriter{File(path)}.getPosition(), 8);
}

TEST(FileWriterOpening, FailuresNameTheFolderOrTheFile)
{
    const ScratchFolder scratch;
    const std::string blocker = scratch.write("blocker", "x");
    EXPECT_EQ(messageOf([&] { FileWriter{File(blocker + "/out.bin")}; }),
              "Couldnt create or write in folder \"" + blocker + "\"");
    EXPECT_EQ(messageOf([&] { FileWriter{File(scratch.path())}; }),
              "Couldnt open file \"" + scratch.path() + "\"");
}

TEST(FileWriterValues, BytesInTheMachinesOrder)
{
    const ScratchFolder scratch;
    const short shortValue = -12345;
    const int intValue = 0x12345678;
    const double doubleValue = -1.0 / 3.0;
    {
        FileWriter writer{File(scratch / "values")};
        EXPECT_TRUE(writer.writeByte('\xA5'));
        EXPECT_TRUE(writer.writeShort(shortValue));
        EXPECT_TRUE(writer.writeInt(intValue));
        EXPECT_TRUE(writer.writeDouble(doubleValue));
        EXPECT_TRUE(writer.writeRepeatedByte(0x2A, 0));
        EXPECT_TRUE(writer.writeRepeatedByte(0x2A, 3));
        EXPECT_EQ(writer.getPosition(), 18);
    }
    std::string expected("\xA5");
    expected.append(reinterpret_cast<const char*>(&shortValue), sizeof shortValue);
    expected.append(reinterpret_cast<const char*>(&intValue), sizeof intValue);
    expected.append(reinterpret_cast<const char*>(&doubleValue), sizeof doubleValue);
    EXPECT_EQ(readWholeFile(scratch / "values"), expected + "***");
}

TEST(FileWriterPosition, RewritingAHeader)
{
    const ScratchFolder scratch;
    {
        FileWriter writer{File(scratch / "f")};
        EXPECT_TRUE(writer.write("0000body", 8));
        EXPECT_TRUE(writer.setPosition(0));
        EXPECT_TRUE(writer.write("head", 4));
        EXPECT_EQ(writer.getPosition(), 4);
    }
    EXPECT_EQ(readWholeFile(scratch / "f"), "headbody");
}

TEST(FileWriterPosition, UnreachablePositionGivesMinusOne)
{
    const ScratchFolder scratch;
    FileWriter writer{File(scratch / "f")};
    EXPECT_FALSE(writer.setPosition(-3));
    EXPECT_EQ(writer.getPosition(), -1);
    EXPECT_TRUE(writer.setPosition(0));
}
