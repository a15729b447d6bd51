#pragma once

#include "max_types.h"

#include <mutex>
#include <string>
#include <vector>

namespace vlk::host {

// The folders where files are looked for, and the path ids that stand for folders. A folder's id is
// negative and stays the same for the life of the process; the current folder is the default path.
class SearchPath
{
public:
    static SearchPath& instance();

    void addFolder(const std::string& folder);
    std::vector<std::string> getFolders();

    short idOfFolder(const std::string& folder);
    // Empty for an unknown id.
    std::string folderOfId(short id);
    // The folder holding name (a bare file name, or a path) among the default path and the search path,
    // in that order, with its file type in the list (any type when the list is empty). Empty if none.
    std::string locate(const std::string& name, const std::vector<t_fourcc>& types);

    // The type code a file name's extension stands for, 0 when none.
    static t_fourcc typeOfFile(const std::string& name);

private:
    // Guards folders and ids.
    std::mutex lock;
    std::vector<std::string> folders;
    std::vector<std::string> ids;
};

} // namespace vlk::host
