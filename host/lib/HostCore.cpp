// hostcore: the state that a host program has set, lent to the plug-in.
#include "hostout/HostCore.h"

#include <cstdio>
#include <functional>
#include <map>
#include <new>
#include <string>
#include <string_view>

#include "hostout/HostModel.h"
#include "lib/HostSetup.h"

namespace {

CFrameWnd* g_pMainFrame = nullptr;
int g_nMajorVersion = 5;
char g_PromptBuffer[PROMPT_BUFFER_BYTES] = {};
CDataManager g_DataManager;
tagFontParam g_FontParam = {"SimSun"};

std::map<std::string, HINSTANCE, std::less<>> g_LocalResources;

}  // namespace

void SetHostMainFrame(CFrameWnd* frame) noexcept { g_pMainFrame = frame; }

void SetHostVersion(int major) noexcept { g_nMajorVersion = major; }

void SetHostLocalResources(const char* component, HINSTANCE resources) { g_LocalResources[component] = resources; }

void SetHostDefaultFont(const char* name) noexcept {
    std::snprintf(g_FontParam.szFont, sizeof g_FontParam.szFont, "%s", name);
}

void glbf_GetSysVersion(tagVersionInfo* info) noexcept { *info = {static_cast<std::uint16_t>(g_nMajorVersion), 0, 0}; }

CDataManager* glbf_GetDataManager() noexcept { return &g_DataManager; }

CFrameWnd* glbf_GetMainFrame() noexcept { return g_pMainFrame; }

char* glbf_GetPromptString() noexcept { return g_PromptBuffer; }

HINSTANCE glbf_LoadLocalResHandle(const char* name) noexcept {
    if (!name) return nullptr;
    const auto found = g_LocalResources.find(std::string_view(name));
    return found == g_LocalResources.end() ? nullptr : found->second;
}

// The modules stay the host program's, so that there is nothing to free.
void glbf_FreeLocalResHandle(HINSTANCE) noexcept {}

void* STD_AlcPoolMem(std::size_t size) { return ::operator new(size); }

void STD_FrePoolMem(void* block) noexcept { ::operator delete(block); }

void CDataManager::GetDefFontParam(tagFontParam* param) const noexcept { *param = g_FontParam; }
