#include "files/KalviDspFile.h"

#include "files/KalviDspFileHandle.h"
#include "files/KalviDspTrash.h"
#include "text/KalviDspDisplayText.h"
#include "text/KalviDspStringList.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace vlk {

namespace {

String withoutTrailingSeparators(String path)
{
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

// The home folder of a user, or an empty String when there is no such user.
String getUserHome(const String& userName)
{
    passwd entry{};
    passwd* found = nullptr;
    std::vector<char> buffer(16384);
    if (getpwnam_r(userName.c_str(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
        return {};
    return String(entry.pw_dir);
}

// Length of a "." or ".." component at index of text, or 0 when the text goes on with a name there.
std::size_t getDotComponentLength(const String& text, std::size_t index)
{
    std::size_t dots = 0;
    while (dots < 2 && index + dots < text.size() && text[index + dots] == '.')
        ++dots;
    const std::size_t end = index + dots;
    return dots > 0 && (end == text.size() || text[end] == '/') ? dots : 0;
}

String getExtensionWithoutDot(String extension)
{
    if (extension.startsWith('.'))
        extension.erase(0, 1);
    extension.toLower();
    return extension;
}

class ScopedDescriptor
{
public:
    explicit ScopedDescriptor(int descriptor) : descriptor(descriptor) {}
    ~ScopedDescriptor()
    {
        if (descriptor >= 0)
            ::close(descriptor);
    }
    ScopedDescriptor(const ScopedDescriptor&) = delete;
    ScopedDescriptor& operator=(const ScopedDescriptor&) = delete;

    int get() const { return descriptor; }

private:
    int descriptor;
};

bool copyBytes(int source, int destination)
{
    char buffer[16384];
    for (;;) {
        const ssize_t numRead = ::read(source, buffer, sizeof buffer);
        if (numRead == 0)
            return true;
        if (numRead < 0 && errno != EINTR)
            return false;
        if (numRead > 0 && writeFully(destination, buffer, numRead) != numRead)
            return false;
    }
}

} // namespace

File::File() = default;

File::File(const String& path) : fullPath(normalise(path)) {}

File::File(const char* path) : File(String(path != nullptr ? path : "")) {}

File::File(const String& normalisedPath, AlreadyNormalised) : fullPath(normalisedPath) {}

const String& File::separator()
{
    static const String slash("/");
    return slash;
}

File File::getCurrentWorkingDirectory()
{
    char buffer[1024];
    // Linux may answer "(unreachable)/..." for a folder outside the root: taken as relative, it would be
    // resolved against this very function.
    if (getcwd(buffer, sizeof buffer) == nullptr || buffer[0] != '/')
        return File();
    return File(buffer);
}

File File::getHomeDirectory()
{
    for (const char* name : {"HOME", "home"}) {
        const char* value = std::getenv(name);
        // Only absolute values are taken: a "~" would be expanded through this very function.
        if (value != nullptr && value[0] == '/')
            return File(value);
    }
    return getCurrentWorkingDirectory();
}

String File::normalise(const String& path)
{
    if (path.size() == 0)
        return path;
    String text = path;
    text.trim();
    text.replace("\\ ", " ");
    if (text.startsWith('~'))
        return withoutTrailingSeparators(expandHome(text));
    if (text.startsWith('/'))
        return withoutTrailingSeparators(text);
    return getCurrentWorkingDirectory().getChildFile(text).fullPath;
}

String File::expandHome(const String& path)
{
    if (path.size() == 1 || path[1] == '/')
        return getHomeDirectory().fullPath + path.substring(1);
    const int slash = path.indexOf('/');
    String home = getUserHome(slash < 0 ? path.substring(1) : path.substring(1, slash));
    if (home.size() == 0)
        return path;
    if (!home.endsWith('/'))
        home += separator();
    return slash < 0 ? home : home + path.substring(slash + 1);
}

String File::getFileName() const
{
    const int slash = fullPath.lastIndexOf('/');
    return slash < 0 ? fullPath : fullPath.substring(slash + 1);
}

String File::getFileExtension() const
{
    const int dot = fullPath.lastIndexOf('.');
    return dot > fullPath.lastIndexOf('/') ? fullPath.substring(dot) : String();
}

bool File::hasFileExtension(const String& extensions) const
{
    if (extensions.size() == 0)
        return getFileExtension().size() == 0;
    const String extension = getExtensionWithoutDot(getFileExtension());
    for (const String& candidate : split(extensions, ' ', true))
        if (String::equals(getExtensionWithoutDot(candidate).c_str(), extension.c_str()))
            return true;
    return false;
}

bool File::hasAnyFileExtension(const Vector<String>& extensions) const
{
    for (const String& extension : extensions)
        if (hasFileExtension(extension))
            return true;
    return false;
}

bool File::exists() const
{
    return fullPath.size() != 0 && access(fullPath.c_str(), F_OK) == 0;
}

bool File::existsAsFile() const
{
    if (!exists())
        return false;
    struct stat info
    {
    };
    return stat(fullPath.c_str(), &info) != 0 || !S_ISDIR(info.st_mode);
}

bool File::isDirectory() const
{
    struct stat info
    {
    };
    return fullPath.size() != 0 && stat(fullPath.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

String File::getSizeText() const
{
    struct stat info
    {
    };
    if (fullPath.size() == 0 || stat(fullPath.c_str(), &info) != 0)
        return getFileSizeText(0);
    return getFileSizeText(info.st_size);
}

File File::getParentDirectory() const
{
    const int slash = fullPath.lastIndexOf('/');
    if (slash < 0)
        return *this;
    return File(slash == 0 ? separator() : fullPath.substring(0, slash), AlreadyNormalised());
}

File File::getChildFile(const String& relativePath) const
{
    if (relativePath.startsWith('/') || relativePath.startsWith('~'))
        return File(relativePath);

    // Bytes are walked as characters: "." and "/" are ASCII, and no byte of a multibyte UTF-8 character is.
    String path = fullPath;
    std::size_t index = 0;
    while (const std::size_t dots = getDotComponentLength(relativePath, index)) {
        const int slash = path.lastIndexOf('/');
        if (dots == 2 && slash >= 0)
            path.resize(static_cast<std::size_t>(slash));
        index += dots;
        while (index < relativePath.size() && relativePath[index] == '/')
            ++index;
    }
    if (!path.endsWith('/'))
        path += separator();
    return File(path + relativePath.substring(static_cast<int>(index)));
}

bool File::hasWriteAccess() const
{
    if (exists())
        return access(fullPath.c_str(), W_OK) == 0;
    if (!fullPath.contains('/'))
        return false;
    return getParentDirectory().hasWriteAccess();
}

bool File::deleteFile() const
{
    if (!exists())
        return true;
    return (isDirectory() ? rmdir(fullPath.c_str()) : std::remove(fullPath.c_str())) == 0;
}

bool File::moveToTrash() const
{
    if (!exists())
        return true;
    Trash::recycle(*this);
    if (!exists())
        return true;
    return moveFileTo(File("~/.Trash/" + getFileName()));
}

bool File::moveFileTo(const File& destination) const
{
    if (fullPath == destination.fullPath)
        return true;
    if (!exists() || !destination.deleteFile())
        return false;
    if (std::rename(fullPath.c_str(), destination.fullPath.c_str()) == 0)
        return true;
    if (!hasWriteAccess() || !copyFileTo(destination))
        return false;
    if (deleteFile())
        return true;
    destination.deleteFile();
    return false;
}

bool File::copyFileTo(const File& destination) const
{
    if (!existsAsFile())
        return false;
    const ScopedDescriptor source(::open(fullPath.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat info
    {
    };
    if (source.get() < 0 || fstat(source.get(), &info) != 0 || S_ISDIR(info.st_mode))
        return false;

    // O_EXCL: as with the platform's copy service, an existing destination is never overwritten.
    bool copied = false;
    {
        const ScopedDescriptor target(
            ::open(destination.fullPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
        if (target.get() < 0)
            return false;
        // Set-user-ID, set-group-ID and sticky bits are not carried over to a copy.
        copied = copyBytes(source.get(), target.get()) && fchmod(target.get(), info.st_mode & 0777) == 0;
    }
    if (!copied)
        ::unlink(destination.fullPath.c_str());
    return copied;
}

bool File::createDirectory() const
{
    if (isDirectory())
        return true;
    const File parent = getParentDirectory();
    if (parent.fullPath == fullPath)
        throw Exception("Cannot create directory " + fullPath.quoted(), __FILE__, __LINE__);
    if (!parent.createDirectory())
        return false;
    return mkdir(withoutTrailingSeparators(fullPath).c_str(), 0777) == 0;
}

bool File::createParentDirectory() const
{
    return isDirectory() || getParentDirectory().createDirectory();
}

bool File::prepareForWriting(bool overwrite) const
{
    if (existsAsFile()) {
        if (!overwrite)
            throw Exception("File already exists " + fullPath.quoted(), __FILE__, __LINE__);
        if (!moveToTrash())
            throw Exception("Error deleting " + fullPath.quoted(), __FILE__, __LINE__);
    } else if (isDirectory()) {
        throw Exception(fullPath.quoted() + " is a folder", __FILE__, __LINE__);
    }
    return true;
}

} // namespace vlk
