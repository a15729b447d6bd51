#include "KalviDspHostExternalLoader.h"

#include "KalviDspHostSearchPath.h"

#include <dlfcn.h>
#include <sys/stat.h>

#ifndef KALVIMAX_EXTERNAL_SUFFIX
#error "the build names the suffix of externals"
#endif

namespace vlk::host {

ExternalLoader& ExternalLoader::instance()
{
    static ExternalLoader loader;
    return loader;
}

std::string ExternalLoader::fileSuffix()
{
    return KALVIMAX_EXTERNAL_SUFFIX;
}

bool ExternalLoader::load(const std::string& objectName, std::string& failure)
{
    const std::string fileName = objectName + fileSuffix();
    if (loaded.count(fileName) != 0)
        return true;
    const std::string folder = SearchPath::instance().locate(fileName, {});
    if (folder.empty()) {
        failure = "no external " + fileName + " in the search path";
        return false;
    }
    const std::string path = folder + "/" + fileName;
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* reason = dlerror();
        failure = "cannot load " + path + ": " + (reason == nullptr ? "unknown reason" : reason);
        return false;
    }
    auto entry = reinterpret_cast<void (*)(void*)>(dlsym(handle, "ext_main"));
    if (entry == nullptr) {
        failure = path + " has no ext_main";
        dlclose(handle);
        return false;
    }
    loaded[fileName] = handle;
    entry(nullptr);
    return true;
}

} // namespace vlk::host
