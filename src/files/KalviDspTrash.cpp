#include "files/KalviDspTrash.h"

#include "files/KalviDspFileHandle.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace vlk {

namespace {

// Beyond this many files of one name the Trash gives up and the caller's other road is taken.
constexpr int maxNamesTried = 10000;

enum class Reservation
{
    reserved,
    taken,
    failed
};

bool pathExists(const String& path)
{
    struct stat info
    {
    };
    return lstat(path.c_str(), &info) == 0;
}

// The information file is created exclusively, so it claims the name against other programs that trash.
Reservation reserveName(const String& infoPath, const String& infoText)
{
    const int descriptor = ::open(infoPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return errno == EEXIST ? Reservation::taken : Reservation::failed;
    const auto length = static_cast<std::int64_t>(infoText.size());
    const bool written = writeFully(descriptor, infoText.data(), length) == length;
    ::close(descriptor);
    if (written)
        return Reservation::reserved;
    ::unlink(infoPath.c_str());
    return Reservation::failed;
}

bool isUnreserved(unsigned char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || String("-._~/").contains(static_cast<char>(character));
}

} // namespace

bool Trash::recycle(const File& file)
{
    // The information file records an absolute path; "~nosuchuser/x" has none to give.
    if (!file.getFullPathName().startsWith('/') || file.getFileName().size() == 0)
        return false;
    const String trashPath = getDirectory().getFullPathName();
    if (trashPath.size() == 0 || !createFolders(trashPath))
        return false;
    return moveUnderFreeName(file, trashPath);
}

File Trash::getDirectory()
{
    // The base directory rules say a relative XDG_DATA_HOME is invalid and is to be ignored.
    const char* dataHome = std::getenv("XDG_DATA_HOME");
    if (dataHome != nullptr && dataHome[0] == '/')
        return File(dataHome).getChildFile("Trash");
    return File::getHomeDirectory().getChildFile(".local/share/Trash");
}

String Trash::encodePath(const String& path)
{
    static constexpr char hexDigits[] = "0123456789ABCDEF";
    String encoded;
    for (const char character : path) {
        const auto byte = static_cast<unsigned char>(character);
        if (isUnreserved(byte)) {
            encoded += character;
        } else {
            encoded += '%';
            encoded += hexDigits[byte >> 4];
            encoded += hexDigits[byte & 15];
        }
    }
    return encoded;
}

String Trash::getInfoText(const String& originalPath)
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char date[32];
    std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
    return "[Trash Info]\nPath=" + encodePath(originalPath) + "\nDeletionDate=" + date + "\n";
}

// The Trash holds what the user threw away: its folders are the user's alone.
bool Trash::createFolders(const String& trashPath)
{
    if (!File(trashPath).getParentDirectory().createDirectory())
        return false;
    for (const String& path : {trashPath, trashPath + "/files", trashPath + "/info"})
        if (!File(path).isDirectory() && mkdir(path.c_str(), 0700) != 0)
            return false;
    return true;
}

bool Trash::moveUnderFreeName(const File& file, const String& trashPath)
{
    const String name = file.getFileName();
    const String infoText = getInfoText(file.getFullPathName());
    for (int number = 1; number <= maxNamesTried; ++number) {
        const String freeName = number == 1 ? name : name + "." + String(std::to_string(number));
        const String infoPath = trashPath + "/info/" + freeName + ".trashinfo";
        const String itemPath = trashPath + "/files/" + freeName;
        const Reservation reservation = reserveName(infoPath, infoText);
        if (reservation == Reservation::failed)
            return false;
        if (reservation == Reservation::taken)
            continue;
        if (!pathExists(itemPath) && std::rename(file.getFullPathName().c_str(), itemPath.c_str()) == 0)
            return true;
        ::unlink(infoPath.c_str());
        // A rename that failed with the name free fails for any name: another file system, most likely.
        if (!pathExists(itemPath))
            return false;
    }
    return false;
}

} // namespace vlk
