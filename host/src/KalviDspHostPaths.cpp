// Path ids and file location as the SDK names them. Full paths are plain POSIX paths on this host: they start
// with '/', which Max's own path style leaves as it is.
#include "KalviDspHostSearchPath.h"

#include "ext_path.h"
#include "ext_strings.h"

#include <string>
#include <sys/stat.h>
#include <unistd.h>

using vlk::host::SearchPath;

namespace {

std::string joined(const std::string& folder, const char* file)
{
    if (file == nullptr || *file == '\0')
        return folder;
    std::string path = folder == "/" ? std::string() : folder;
    return path.append("/").append(file);
}

bool exists(const std::string& path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0;
}

} // namespace

short locatefile_extended(char* name, short* outvol, t_fourcc* outtype, const t_fourcc* filetypelist,
                          short numtypes)
{
    if (name == nullptr)
        return 1;
    std::vector<t_fourcc> types;
    for (short i = 0; filetypelist != nullptr && i < numtypes; ++i)
        types.push_back(filetypelist[i]);
    const std::string text(name);
    const std::string folder = SearchPath::instance().locate(text, types);
    if (folder.empty())
        return 1;
    if (text.front() == '/')
        strncpy_zero(name, text.substr(text.find_last_of('/') + 1).c_str(), MAX_FILENAME_CHARS);
    if (outvol != nullptr)
        *outvol = SearchPath::instance().idOfFolder(folder);
    if (outtype != nullptr)
        *outtype = SearchPath::typeOfFile(text);
    return 0;
}

short path_topathname(const short path, const char* file, char* name)
{
    const std::string folder = SearchPath::instance().folderOfId(path);
    if (folder.empty() || name == nullptr || !exists(joined(folder, file)))
        return 1;
    strncpy_zero(name, joined(folder, file).c_str(), MAX_PATH_CHARS);
    return 0;
}

short path_topotentialname(const short path, const char* file, char* name, short check)
{
    const std::string folder = SearchPath::instance().folderOfId(path);
    if (folder.empty() || name == nullptr || (check && !exists(joined(folder, file))))
        return 1;
    strncpy_zero(name, joined(folder, file).c_str(), MAX_PATH_CHARS);
    return 0;
}

t_max_err path_toabsolutesystempath(const short in_path, const char* in_filename, char* out_filepath)
{
    return path_topotentialname(in_path, in_filename, out_filepath, 0) == 0 ? MAX_ERR_NONE : MAX_ERR_GENERIC;
}

short path_nameconform(const char* src, char* dst, long /*style*/, long /*type*/)
{
    if (src == nullptr || dst == nullptr)
        return 1;
    strncpy_zero(dst, src, MAX_PATH_CHARS);
    return 0;
}

short path_frompathname(const char* name, short* path, char* filename)
{
    if (name == nullptr || path == nullptr || filename == nullptr)
        return 1;
    std::string text(name);
    if (text.empty() || text.front() != '/') {
        char buffer[MAX_PATH_CHARS];
        text = std::string(getcwd(buffer, sizeof(buffer)) == nullptr ? "." : buffer) + "/" + text;
    }
    const std::size_t slash = text.find_last_of('/');
    *path = SearchPath::instance().idOfFolder(slash == 0 ? "/" : text.substr(0, slash));
    strncpy_zero(filename, text.substr(slash + 1).c_str(), MAX_FILENAME_CHARS);
    return 0;
}

short path_getdefault(void)
{
    char buffer[MAX_PATH_CHARS];
    return SearchPath::instance().idOfFolder(getcwd(buffer, sizeof(buffer)) == nullptr ? "." : buffer);
}
