// Snapshots of composite values and the cells that graphics states keep them in. Relies on the deep copy of
// the elements, and on bodies that count their changes.
#include "graphics/StateCell.h"

#include <algorithm>
#include <cassert>
#include <memory>

#include "objects/Array.h"
#include "objects/Dictionary.h"
#include "objects/String.h"

namespace {

std::size_t g_nSnapshots = 0;  // their registry stands while there are any

/// Calls fn with each value of a dictionary whose storage a deep copy takes along: inner dictionaries stay
/// shared.
template <class Fn>
void ForEachCopiedValue(const CDictionary& dict, Fn fn) {
    const auto visit = [&](const CDictNodeValues& node) {
        const CElement* value = node.GetValue();
        if (value && value->m_nType != ET_DICT) fn(*value);
    };
    for (std::int32_t i = 0; const CDictNode* node = dict.GetNameNodeAt(i); ++i) visit(*node);
    for (std::int32_t i = 0; const CDictNode2* node = dict.GetOtherNodeAt(i); ++i) visit(*node);
}

/// Marks every body whose change would make a deep copy of the element come out differently. False when the
/// copy would be too large.
bool MarkBodies(const CElement& e, std::int64_t& budget, int depth = 0) {
    if (budget == 0) return false;
    --budget;
    if (const auto* array = As<CArrayElement>(&e)) {
        CArrayBody* body = array->GetBody();
        if (!body || depth >= MAX_COPY_DEPTH) return true;
        body->MarkCopied();
        const CElementList& elements = body->Contents();
        bool fits = true;
        for (std::size_t i = 0; fits && i < elements.GetSize(); ++i) {
            fits = MarkBodies(elements.At(i), budget, depth + 1);
        }
        return fits;
    }
    if (const auto* string = As<CStringElement>(&e)) {
        if (CStringBody* body = string->GetBody()) body->MarkCopied();
    } else if (const auto* dict = As<CDictionary>(&e)) {
        CDictionaryBody* body = dict->GetBody();
        if (!body) return true;
        body->MarkCopied();
        bool fits = true;
        ForEachCopiedValue(*dict, [&](const CElement& value) { fits = fits && MarkBodies(value, budget, depth); });
        return fits;
    }
    return true;
}

bool MarkBodies(const CElement& e) {
    std::int64_t budget = MAX_COPIED_ELEMENTS;
    return MarkBodies(e, budget);
}

}  // namespace

// Snapshots

CSnapshot::CSnapshot() {
    if (g_nSnapshots == 0) g_RegistryStack.Open(PLACE_SNAPSHOTS);
    ++g_nSnapshots;
}

CSnapshot::~CSnapshot() {
    m_pElement.reset();
    for (CBody* body : m_Bodies) g_RegistryStack.At(PLACE_SNAPSHOTS)->Destroy(body);
    if (--g_nSnapshots == 0) g_RegistryStack.Close(PLACE_SNAPSHOTS);
}

CSharedRef<CSnapshot> CSnapshot::Of(const CElement& value) {
    CSharedRef<CSnapshot> snapshot(new CSnapshot);
    ElementPtr copy;
    {
        const CBodyPlaceScope scope(PLACE_SNAPSHOTS);
        copy = value.DeepCopy();
    }
    if (!copy || !snapshot->TakeOver(std::move(copy))) return {};
    return snapshot;
}

CSharedRef<CSnapshot> CSnapshot::OfLive(ElementPtr value) {
    CSharedRef<CSnapshot> snapshot(new CSnapshot);
    snapshot->m_pElement = std::move(value);
    snapshot->m_bLive = true;
    return snapshot;
}

std::size_t CSnapshot::CountBodies() noexcept {
    const CBodyRegistry* registry = g_RegistryStack.At(PLACE_SNAPSHOTS);
    return registry ? registry->GetCount() : 0;
}

bool CSnapshot::TakeOver(ElementPtr element) {
    m_pElement = std::move(element);
    return Collect(*m_pElement);
}

/// Lists the bodies of an element, so that destroying them needs neither memory nor a walk. The copy is a
/// tree: every body in the snapshots' registry is met once.
bool CSnapshot::Collect(const CElement& e) {
    const auto take = [this](CBody* body) {
        if (PlaceOf(*body) != PLACE_SNAPSHOTS) return false;
        m_Bodies.push_back(body);
        return true;
    };
    bool complete = true;
    if (const auto* array = As<CArrayElement>(&e)) {
        CArrayBody* body = array->GetBody();
        if (!body) return true;
        if (!take(body)) return false;
        const CElementList& elements = body->Contents();
        for (std::size_t i = 0; i < elements.GetSize(); ++i) complete &= Collect(elements.At(i));
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

void CStateCell::SetLive(ElementPtr value) {
    m_pOwn = nullptr;
    m_pSnapshot = CSnapshot::OfLive(std::move(value));
}

CElement* CStateCell::Expose(const CBody& state) {
    if (!m_pOwn && m_pSnapshot) {
        assert(!m_pSnapshot->IsLive());
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
