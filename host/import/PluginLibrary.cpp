// Loading of epsfilter.so through the dynamic linker.
#include "import/PluginLibrary.h"

#include <dlfcn.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace {

// In the build tree the library stands in ../lib beside the program's folder; EPSIMPORT_PLUGIN_DIR is where
// it is when installed, relative to that folder, so that an installed tree can be moved.
fs::path FindLibrary() {
    std::error_code error;
    const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
    for (const char* place : {"../lib/epsfilter.so", EPSIMPORT_PLUGIN_DIR "/epsfilter.so"})
        if (fs::exists(folder / place, error)) return folder / place;
    return {};
}

}  // namespace

CPluginLibrary::CPluginLibrary() {
    const fs::path path = FindLibrary();
    if (path.empty()) {
        m_Error = "the plug-in library epsfilter.so is missing";
        return;
    }
    m_hLibrary = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (m_hLibrary != nullptr) m_pfnMain = reinterpret_cast<decltype(m_pfnMain)>(::dlsym(m_hLibrary, "PlugFilterMain"));
    if (m_pfnMain == nullptr) m_Error = ::dlerror();
}

CPluginLibrary::~CPluginLibrary() {
    if (m_hLibrary != nullptr) ::dlclose(m_hLibrary);
}

bool CPluginLibrary::Import(tagPlugImportJob& job) const {
    tagPlugRequest request{};
    request.nCommand = PFC_IMPORT;
    request.pRecord = &job;
    return m_pfnMain(&request) == PFR_HANDLED;
}
