#include "files/KalviDspFileReader.h"

#include "files/KalviDspScratchFolder.h"

#include <gtest/gtest.h>
#include <memory>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using vlk::File;
using vlk::FileReader;
using vlk::test::ScratchFolder;

namespace {

std::string readText(FileReader& reader, std::int64_t numBytes)
{
    std::string bytes(static_cast<std::size_t>(numBytes), '\0');
    bytes.resize(static_cast<std::size_t>(reader.read(bytes.data(), numBytes)));
    return bytes;
}

// A reader over a scratch file of the ten digits.
struct DigitsReader
{
    ScratchFolder scratch;
    FileReader reader{File(scratch.write("digits", "0123456789"))};
};

} // namespace

TEST(FileReaderOpening, AbsentFileAndFolderAreRefused)
{
    const ScratchFolder scratch;
    for (const std::string& path : {scratch / "absent", scratch.path()}) {
        try {
            FileReader reader{File(path)};
            ADD_FAILURE() << "no exception for " << path;
        } catch (const vlk::Exception& exception) {
            EXPECT_EQ(exception.message, "File \"" + path + "\" does not exist");
        }
    }
}

// A FIFO would keep the open waiting for a writer, a device would read for ever: only regular files are read,
// and the rest is refused at once.
TEST(FileReaderOpening, AnythingButARegularFileIsRefusedAtOnce)
{
    const ScratchFolder scratch;
    const std::string fifo = scratch / "x.wav";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    const std::string socketPath = scratch / "socket.wav";
    const int socketDescriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socketPath.copy(address.sun_path, sizeof(address.sun_path) - 1);
    ASSERT_EQ(::bind(socketDescriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    for (const std::string& path : {fifo, std::string("/dev/zero"), socketPath}) {
        try {
            FileReader reader{File(path)};
            ADD_FAILURE() << "no exception for " << path;
        } catch (const vlk::Exception& exception) {
            EXPECT_EQ(exception.message, "Couldnt open file \"" + path + "\"");
        }
    }
    ::close(socketDescriptor);
}

TEST(FileReaderPosition, SetPositionClampsToTheFile)
{
    DigitsReader digits;
    EXPECT_TRUE(digits.reader.setPosition(25));
    EXPECT_EQ(digits.reader.getPosition(), 10);
    EXPECT_TRUE(digits.reader.isExhausted());
    EXPECT_TRUE(digits.reader.setPosition(-4));
    EXPECT_EQ(digits.reader.getPosition(), 0);
}

TEST(FileReaderPosition, ReadsFollowEveryMove)
{
    DigitsReader digits;
    EXPECT_EQ(readText(digits.reader, 3), "012");
    digits.reader.setPosition(7);
    EXPECT_EQ(readText(digits.reader, 2), "78");
    // Moved away and back to where the descriptor stands: the pending seek is kept all the same.
    digits.reader.setPosition(1);
    digits.reader.setPosition(9);
    EXPECT_EQ(readText(digits.reader, 1), "9");
}

TEST(FileReaderRead, ShortReadAtTheEndThenNothing)
{
    DigitsReader digits;
    char bytes[4] = {};
    EXPECT_EQ(digits.reader.read(bytes, 0), 0);
    EXPECT_EQ(digits.reader.read(bytes, -3), 0);
    digits.reader.setPosition(8);
    EXPECT_EQ(readText(digits.reader, 5), "89");
    EXPECT_TRUE(digits.reader.isExhausted());
    EXPECT_EQ(readText(digits.reader, 5), "");
    EXPECT_EQ(digits.reader.getPosition(), 10);
}

TEST(FileReaderCopy, CopyKeepsItsOwnPosition)
{
    DigitsReader digits;
    EXPECT_EQ(readText(digits.reader, 3), "012");
    FileReader copy(digits.reader);
    EXPECT_EQ(readText(copy, 3), "345");
    copy.setPosition(7);
    EXPECT_EQ(readText(copy, 2), "78");
    EXPECT_EQ(digits.reader.getPosition(), 3);
}

TEST(FileReaderCopy, CopyOutlivesTheOriginal)
{
    const ScratchFolder scratch;
    auto original = std::make_unique<FileReader>(File(scratch.write("f", "0123456789")));
    FileReader copy(*original);
    original.reset();
    EXPECT_EQ(readText(copy, 4), "0123");
}
