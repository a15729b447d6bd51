#include "external/KalviDspMaxPaths.h"

#include "external/KalviDspMacRomanText.h"

#include "ext.h"

#include <sys/stat.h>

namespace vlk {
namespace {

constexpr t_fourcc aiffType = 0x41494646;
constexpr t_fourcc waveType = 0x57415645;
constexpr std::size_t maxConvertedBytes = 4096;
constexpr long maxNameBytes = 512;

} // namespace

String MaxPathToPosixPath(const String& path)
{
    if (path.startsWith('/'))
        return path;
    const int colon = path.indexOf(':');
    const String posixPath = "/Volumes/" + path.substring(0, colon) + path.substring(colon + 1);
    return macRomanToUtf8(posixPath, maxConvertedBytes).value_or(String());
}

String ChooseSoundFileToOpen()
{
    char name[MAX_PATH_CHARS] = "";
    short path = 0;
    t_fourcc type = 0;
    t_fourcc types[2] = {aiffType, waveType};
    if (open_dialog(name, &path, &type, types, 2) != 0)
        return String();
    char fullPath[MAX_PATH_CHARS] = "";
    if (path_topathname(path, name, fullPath) != 0)
        return String();
    return MaxPathToPosixPath(fullPath);
}

String LocateFileInSearchPath(const String& nameOrPath)
{
    if (!nameOrPath.startsWith('/') && !nameOrPath.contains(":/")) {
        char name[maxNameBytes] = "";
        strncpy_zero(name, nameOrPath.c_str(), maxNameBytes);
        short path = 0;
        t_fourcc type = 0;
        if (locatefile_extended(name, &path, &type, nullptr, 0) != 0)
            return String();
        char fullPath[MAX_PATH_CHARS] = "";
        if (path_topathname(path, name, fullPath) != 0)
            return String();
        return MaxPathToPosixPath(fullPath);
    }
    const String posixPath = MaxPathToPosixPath(nameOrPath);
    struct stat status;
    if (stat(posixPath.c_str(), &status) != 0)
        return String();
    return posixPath;
}

} // namespace vlk
