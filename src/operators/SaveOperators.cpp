// save and restore. There is no snapshot of the memory: a restore destroys the bodies made since the save
// with their registries, drops a level of values in every local dictionary, and goes back on the graphics
// state stack. Objects that outlive their bodies, wherever they stand, read as empty from then on (CBodyRef),
// so there is no invalidrestore.
#include "operators/SaveOperators.h"

#include "interp/Operands.h"

// The one include of this room from its neighbour: save and restore are where objects and graphics states
// meet.
#include "graphics/GStateStack.h"

namespace {

// -  save  save                              VMOVERFLOW
int OpSave(CFilterEPS& m) {
    if (g_nSaveLevel >= m.Dialect().SaveLimit()) return m.Fail(PSERR_VMOVERFLOW, "limitcheck");
    m.Push(MakeElement<CSaveElement>(g_nSaveLevel, m.m_GStateStack.GetCount()));
    g_RegistryStack.Open(PlaceOfLevel(g_nSaveLevel + 1));
    ++g_nSaveLevel;
    ++g_nSnapshotEpoch;  // arrays read from dictionaries are other arrays now
    MarkGStatesSaved(m);
    m.PushGState();
    return 1;
}

/// Leaves the current save level: what was made and defined at it goes.
void LeaveLevel() noexcept {
    g_RegistryStack.Close(PlaceOfLevel(g_nSaveLevel));
    for (std::int32_t level = g_nSaveLevel; level-- > 0;) {
        const CBodyRegistry* registry = g_RegistryStack.At(PlaceOfLevel(level));
        std::int32_t i = 0;
        for (; CDictionaryBody* dict = registry->GetDictBody(i); ++i) dict->DropLevel();
        CountWork(i);
    }
    --g_nSaveLevel;
}

// save  restore  -                           STACKUNDERFLOW TYPECHECK
// Departure: a save object stays good when its level has been left already; what it says is then mostly done.
int OpRestore(CFilterEPS& m) {
    Operands in(m);
    in.Get<CSaveElement>(0);
    if (!in) return -1;
    const auto save = Take<CSaveElement>(m);
    while (m.m_GStateStack.GetCount() > save->GetGStateCount()) m.PopGState();
    KeepGStates(m, save->GetLevel());
    while (g_nSaveLevel > save->GetLevel()) {
        if (m.IsInterrupted()) return -1;
        LeaveLevel();
    }
    ++g_nSnapshotEpoch;
    return 1;
}

// Place 7 of the chain, its first table.
constexpr OpRow kRows[] = {
    {"save", OpSave},
    {"restore", OpRestore},
};

}  // namespace

std::int32_t CDialect::SaveLimit() const { return 4; }

constinit const OpTable kSaveOperators{kRows};
