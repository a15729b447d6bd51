#pragma once

#include <map>
#include <string>

namespace vlk::host {

// Finds an external by its object name in the search path, as NAME followed by the platform's suffix
// (".mxl_x86_64" here), loads it once and calls its ext_main. Modules stay loaded, as in Max. Main thread.
class ExternalLoader
{
public:
    static ExternalLoader& instance();
    static std::string fileSuffix();

    // True when the file was found and its ext_main ran (now or before); otherwise failure says why.
    bool load(const std::string& objectName, std::string& failure);

private:
    std::map<std::string, void*> loaded;
};

} // namespace vlk::host
