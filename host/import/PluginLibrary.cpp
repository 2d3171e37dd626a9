// Loading through the dynamic linker.
#include "import/PluginLibrary.h"

#include <dlfcn.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace {

// In the build tree the library stands in ../lib beside the program's folder; EPSIMPORT_PLUGIN_DIR is where
// it is when installed, relative to that folder, so that an installed tree can be moved.
fs::path FindLibrary(const std::string& name) {
    std::error_code error;
    const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
    for (const char* place : {"../lib", EPSIMPORT_PLUGIN_DIR})
        if (fs::exists(folder / place / name, error)) return folder / place / name;
    return {};
}

}  // namespace

CPluginLibrary::CPluginLibrary(bool complete) {
    const std::string name = complete ? "epsfilter-complete.so" : "epsfilter.so";
    const fs::path path = FindLibrary(name);
    if (path.empty()) {
        m_Error = "the plug-in library " + name + " is missing";
        return;
    }
    if (void* library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
        m_pLibrary.reset(library, ::dlclose);
        m_pfnMain = reinterpret_cast<decltype(m_pfnMain)>(::dlsym(library, "PlugFilterMain"));
    }
    if (m_pfnMain == nullptr) m_Error = ::dlerror();
}

bool CPluginLibrary::Import(tagPlugImportJob& job) const {
    tagPlugRequest request{};
    request.nCommand = PFC_IMPORT;
    request.pRecord = &job;
    return m_pfnMain(&request) == PFR_HANDLED;
}
