#include "KalviDspHostSearchPath.h"

#include <algorithm>
#include <cctype>
#include <sys/stat.h>
#include <unistd.h>

namespace vlk::host {
namespace {

struct TypeExtension
{
    t_fourcc type;
    const char* extension;
};

const TypeExtension typeExtensions[] = {
    {0x57415645, "wav"}, {0x57415645, "wave"}, {0x57415645, "bwf"},  {0x57415645, "rf64"},
    {0x41494646, "aif"}, {0x41494646, "aiff"}, {0x41494646, "aifc"}, {0x4d703320, "mp3"},
    {0x54455854, "txt"}, {0x4a534f4e, "json"}, {0x4a534f4e, "js"},   {0x584d4c20, "xml"},
};

std::string currentFolder()
{
    char buffer[4096];
    return getcwd(buffer, sizeof(buffer)) == nullptr ? std::string(".") : std::string(buffer);
}

bool exists(const std::string& path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0;
}

bool typeMatches(const std::string& name, const std::vector<t_fourcc>& types)
{
    return types.empty() ||
           std::find(types.begin(), types.end(), SearchPath::typeOfFile(name)) != types.end();
}

} // namespace

SearchPath& SearchPath::instance()
{
    static SearchPath path;
    return path;
}

void SearchPath::addFolder(const std::string& folder)
{
    std::lock_guard<std::mutex> guard(lock);
    if (std::find(folders.begin(), folders.end(), folder) == folders.end())
        folders.push_back(folder);
}

std::vector<std::string> SearchPath::getFolders()
{
    std::lock_guard<std::mutex> guard(lock);
    return folders;
}

short SearchPath::idOfFolder(const std::string& folder)
{
    std::lock_guard<std::mutex> guard(lock);
    auto found = std::find(ids.begin(), ids.end(), folder);
    if (found == ids.end())
        found = ids.insert(ids.end(), folder);
    return static_cast<short>(-1 - (found - ids.begin()));
}

std::string SearchPath::folderOfId(short id)
{
    std::lock_guard<std::mutex> guard(lock);
    const long index = -1L - id;
    return index >= 0 && index < static_cast<long>(ids.size()) ? ids[static_cast<std::size_t>(index)] : "";
}

std::string SearchPath::locate(const std::string& name, const std::vector<t_fourcc>& types)
{
    if (name.empty() || !typeMatches(name, types))
        return "";
    if (name.front() == '/') {
        const std::size_t slash = name.find_last_of('/');
        return exists(name) ? (slash == 0 ? std::string("/") : name.substr(0, slash)) : std::string();
    }
    std::vector<std::string> candidates{currentFolder()};
    for (const std::string& folder : getFolders())
        candidates.push_back(folder);
    for (const std::string& folder : candidates)
        if (exists(folder + "/" + name))
            return folder;
    return "";
}

t_fourcc SearchPath::typeOfFile(const std::string& name)
{
    const std::size_t dot = name.find_last_of('.');
    if (dot == std::string::npos || name.find('/', dot) != std::string::npos)
        return 0;
    std::string extension = name.substr(dot + 1);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    for (const TypeExtension& entry : typeExtensions)
        if (extension == entry.extension)
            return entry.type;
    return 0;
}

} // namespace vlk::host
