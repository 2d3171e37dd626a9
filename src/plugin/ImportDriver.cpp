// The import driver. Scope guards hold what an import sets up, so that an exception undoes it in the same
// order as a return.
#include "plugin/ImportDriver.h"

#include <memory>

#include "hostout/HostCore.h"
#include "hostout/HostModel.h"
#include "interp/FilterEPS.h"
#include "platform/App.h"
#include "platform/LocalResources.h"
#include "platform/PtrList.h"
#include "plugin/ImportInfoDlg.h"
#include "plugin/PlugFilterMain.h"

namespace {

/// Makes the localised resources the module's current ones for as long as a dialog is looked up in them.
class CResourceScope {
public:
    CResourceScope() : m_hPrevious(AfxGetModuleState()->m_hCurrentResourceHandle) {
        AfxGetModuleState()->m_hCurrentResourceHandle = GetResHandle();
    }
    CResourceScope(const CResourceScope&) = delete;
    CResourceScope& operator=(const CResourceScope&) = delete;
    ~CResourceScope() { AfxGetModuleState()->m_hCurrentResourceHandle = m_hPrevious; }

private:
    HINSTANCE m_hPrevious;
};

/// Closes the input file, also when an exception passes.
class CInputScope {
public:
    explicit CInputScope(CFilterEPS& filter) : m_Filter(filter) {}
    CInputScope(const CInputScope&) = delete;
    CInputScope& operator=(const CInputScope&) = delete;
    ~CInputScope() { m_Filter.CloseInputFile(); }

private:
    CFilterEPS& m_Filter;
};

int RunDialog(CEPSImportInfoDlg& dialog) {
    const CResourceScope resources;
    return dialog.DoModal();
}

/// The group of one import. Entities that didn't reach the host's list go with it.
class CImportGroup {
public:
    CImportGroup() = default;
    CImportGroup(const CImportGroup&) = delete;
    CImportGroup& operator=(const CImportGroup&) = delete;
    ~CImportGroup() {
        // The group leaves its children alive.
        for (CEntity* child = m_bDelivering ? m_pNext : m_pGroup->GetFirstChild(); child;) {
            CEntity* next = child->m_pNext;
            child->Release();
            delete child;
            child = next;
        }
    }

    [[nodiscard]] CEntGroup* Get() const noexcept { return m_pGroup.get(); }
    /// Hands the children over, in their order.
    void DeliverTo(CPtrList& list) {
        m_pNext = m_pGroup->GetFirstChild();
        for (m_bDelivering = true; m_pNext; m_pNext = m_pNext->m_pNext) list.AddTail(m_pNext);
    }

private:
    std::unique_ptr<CEntGroup> m_pGroup = std::make_unique<CEntGroup>();
    CEntity* m_pNext = nullptr;  ///< the first child that is still here, once delivery has begun
    bool m_bDelivering = false;
};

}  // namespace

void ImportEpsFile(tagPlugImportJob* pJob, CPtrList* pList) {
    if (!pList) return;
    CEPSImportInfoDlg dialog(glbf_GetMainFrame());
    dialog.m_pJob = pJob;
    if (RunDialog(dialog) != IDOK) return;

    tagVersionInfo version{};
    glbf_GetSysVersion(&version);
    CFilterEPS filter(version.nMajor);
    filter.SetMergeTolerance(dialog.m_fTolerance);
    filter.SetFillOutline(dialog.m_nFillOutline);
    if (filter.OpenInputFile(pJob->szPath) != 1) return;

    const CWaitCursor busy;
    const CInputScope input(filter);
    CImportGroup group;
    filter.RunFile(group.Get());
    group.DeliverTo(*pList);
}
