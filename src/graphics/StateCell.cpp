// Snapshots of composite values and the cells that graphics states keep them in. Relies on the deep copy of
// the elements and on CBody::Touch being called before anything in a body changes.
#include "graphics/StateCell.h"

#include <algorithm>
#include <memory>

#include "objects/Array.h"
#include "objects/Dictionary.h"
#include "objects/String.h"

namespace {

/// A place of no save level and not that of global VM, so that only the end of a snapshot ends its bodies.
constexpr std::int32_t SNAPSHOT_PLACE = 6;

std::unique_ptr<CBodyRegistry> g_pSnapshotRegistry;  // stands while there are snapshots
std::size_t g_nSnapshots = 0;

/// Calls fn with each value of a dictionary whose storage a deep copy takes along: inner dictionaries stay
/// shared.
template <class Fn>
void ForEachCopiedValue(const CDictionary& dict, Fn fn) {
    const auto visit = [&](CDictNodeValues& node) {
        const CElement* value = node.GetValue();
        if (value && value->m_nType != ET_DICT) fn(*value);
    };
    for (std::int32_t i = 0; CDictNode* node = dict.GetNameNodeAt(i); ++i) visit(*node);
    for (std::int32_t i = 0; CDictNode2* node = dict.GetOtherNodeAt(i); ++i) visit(*node);
}

/// Elements that a deep copy may come to before a value is shared instead. An array of a few dozen levels
/// that stand in each other twice would fill any machine.
constexpr std::size_t MAX_COPIED_ELEMENTS = 1 << 20;
/// Levels of arrays to follow; more than a deep copy does.
constexpr int MAX_MARK_DEPTH = 128;

/// Marks every body whose change would make a deep copy of the element come out differently. False when the
/// copy would be too large.
bool MarkBodies(const CElement& e, std::size_t& budget, int depth = 0) {
    if (budget == 0) return false;
    --budget;
    if (const auto* array = As<CArrayElement>(&e)) {
        CArrayBody* body = array->GetBody();
        if (!body || depth >= MAX_MARK_DEPTH) return true;
        body->m_bSnapshotted = true;
        return std::all_of(body->m_Elements.begin(), body->m_Elements.end(),
                           [&](const ElementPtr& element) { return MarkBodies(*element, budget, depth + 1); });
    }
    if (const auto* string = As<CStringElement>(&e)) {
        if (CStringBody* body = string->GetBody()) body->m_bSnapshotted = true;
    } else if (const auto* dict = As<CDictionary>(&e)) {
        CDictionaryBody* body = dict->GetBody();
        if (!body) return true;
        body->m_bSnapshotted = true;
        bool fits = true;
        ForEachCopiedValue(*dict, [&](const CElement& value) { fits = fits && MarkBodies(value, budget, depth); });
        return fits;
    }
    return true;
}

bool MarkBodies(const CElement& e) {
    std::size_t budget = MAX_COPIED_ELEMENTS;
    return MarkBodies(e, budget);
}

}  // namespace

// Snapshots

CSnapshot::Scope::Scope() : m_Mode(true), m_pGlobalRegistry(g_pGlobalRegistry) {
    g_pGlobalRegistry = g_pSnapshotRegistry.get();
}

CSnapshot::Scope::~Scope() { g_pGlobalRegistry = m_pGlobalRegistry; }

CSnapshot::CSnapshot() {
    if (g_nSnapshots == 0) g_pSnapshotRegistry = std::make_unique<CBodyRegistry>(SNAPSHOT_PLACE);
    ++g_nSnapshots;
}

CSnapshot::~CSnapshot() {
    m_pElement.reset();
    for (CBody* body : m_Bodies) g_pSnapshotRegistry->Destroy(body);
    if (--g_nSnapshots == 0) g_pSnapshotRegistry.reset();
}

CSharedRef<CSnapshot> CSnapshot::Of(const CElement& value) {
    CSharedRef<CSnapshot> snapshot(new CSnapshot);
    ElementPtr copy;
    {
        const Scope scope;
        copy = value.DeepCopy();
    }
    if (!copy || !snapshot->TakeOver(std::move(copy))) return {};
    return snapshot;
}

std::size_t CSnapshot::CountBodies() noexcept { return g_pSnapshotRegistry ? g_pSnapshotRegistry->GetCount() : 0; }

bool CSnapshot::TakeOver(ElementPtr element) {
    m_pElement = std::move(element);
    return Collect(*m_pElement);
}

/// Lists the bodies of an element, so that destroying them needs neither memory nor a walk. The copy is a
/// tree: every body in the snapshots' registry is met once.
bool CSnapshot::Collect(const CElement& e) {
    const auto take = [this](CBody* body) {
        if (PlaceOf(*body) != SNAPSHOT_PLACE) return false;
        m_Bodies.push_back(body);
        return true;
    };
    bool complete = true;
    if (const auto* array = As<CArrayElement>(&e)) {
        CArrayBody* body = array->GetBody();
        if (!body) return true;
        if (!take(body)) return false;
        for (const ElementPtr& element : body->m_Elements) complete &= Collect(*element);
    } else if (const auto* string = As<CStringElement>(&e)) {
        CStringBody* body = string->GetBody();
        return !body || take(body);
    } else if (const auto* dict = As<CDictionary>(&e)) {
        CDictionaryBody* body = dict->GetBody();
        if (!body) return true;
        if (!take(body)) return false;
        ForEachCopiedValue(*dict, [&](const CElement& value) { complete &= Collect(value); });
    }
    return complete;
}

// Cells

CStateCell::CStateCell(const CStateCell& other) {
    if (other.m_pOwn && (!other.m_pSnapshot || other.m_nEpoch != g_nSnapshotEpoch)) {
        // Marking goes first: it also makes the reads that give arrays of an older save level their copies at
        // this one, which belong to the program and not to the snapshot.
        if (!MarkBodies(*other.m_pOwn)) {
            m_pOwn = other.m_pOwn->Clone();
            return;
        }
        other.m_pSnapshot = CSnapshot::Of(*other.m_pOwn);
        other.m_nEpoch = g_nSnapshotEpoch;
    }
    m_pSnapshot = other.m_pSnapshot;
    if (other.m_pOwn && !m_pSnapshot) m_pOwn = other.m_pOwn->DeepCopy();
}

void CStateCell::Set(ElementPtr own) noexcept {
    m_pOwn = std::move(own);
    m_pSnapshot = {};
}

CElement* CStateCell::Expose(const CBody& state) {
    if (!m_pOwn && m_pSnapshot) {
        {
            const CBodyPlaceScope place(PlaceOf(state));
            m_pOwn = m_pSnapshot->Get()->DeepCopy();
        }
        // The snapshot stays good for copies until the program changes what it gets now.
        MarkBodies(*m_pOwn);
        m_nEpoch = g_nSnapshotEpoch;
    }
    return m_pOwn.get();
}

// Places

CBodyPlaceScope::CBodyPlaceScope(std::int32_t place)
    : m_Mode(place == CBodyRegistry::GLOBAL_PLACE), m_nLevel(g_nSaveLevel) {
    if (place >= m_nLevel) return;
    // The level counts, too: it says in which slot a new dictionary keeps its values.
    g_nSaveLevel = place;
    while (g_RegistryStack.GetCount() > place + 1) {
        CBodyRegistry* above = g_RegistryStack.Pop();
        above->m_pNext = m_pSetAside;
        m_pSetAside = above;
    }
}

CBodyPlaceScope::~CBodyPlaceScope() {
    while (CBodyRegistry* above = m_pSetAside) {
        m_pSetAside = above->m_pNext;
        g_RegistryStack.Push(above);
    }
    g_nSaveLevel = m_nLevel;
}
