// Registries of bodies: who owns shared storage, and how its end becomes known to everything that refers to it.
#include "objects/Body.h"

#include "objects/Dictionary.h"

std::int32_t g_nSaveLevel = 0;
bool g_bGlobalMode = false;
std::uint64_t g_nSnapshotEpoch = 0;
CRegistryStack g_RegistryStack;

namespace {
BodyPlace g_GlobalPlace = PLACE_GLOBAL;  // where the bodies made in global mode go
}

// Registries

CBodyRegistry::~CBodyRegistry() {
    for (CBody* p : m_Bodies) delete p;
    for (CBody* p : m_DictBodies) delete p;
}

void CBodyRegistry::Add(CBody* p) {
    std::vector<CBody*>& list = ListOf(p);
    list.push_back(p);
    p->m_nRegistryIndex = static_cast<std::uint32_t>(list.size() - 1);
    p->m_nRegistry = m_nId;
}

void CBodyRegistry::Destroy(CBody* p) noexcept {
    std::vector<CBody*>& list = ListOf(p);
    CBody* last = list.back();
    list[p->m_nRegistryIndex] = last;
    last->m_nRegistryIndex = p->m_nRegistryIndex;
    list.pop_back();
    delete p;
}

CDictionaryBody* CBodyRegistry::GetDictBody(std::int32_t i) const noexcept {
    if (i < 0 || static_cast<size_t>(i) >= m_DictBodies.size()) return nullptr;
    return static_cast<CDictionaryBody*>(m_DictBodies[static_cast<size_t>(i)]);
}

// The table

void CRegistryStack::Open(BodyPlace place) {
    const auto size = static_cast<size_t>(place) + 1;
    if (m_LiveIds.size() < size) m_LiveIds.resize(size);
    if (m_Registries.size() < size) m_Registries.resize(size);
    const RegistryId id = (++m_nLastSerial << PLACE_BITS) | static_cast<RegistryId>(place);
    m_Registries[place] = std::make_unique<CBodyRegistry>(id);
    m_LiveIds[place] = id;
}

void CRegistryStack::Close(BodyPlace place) noexcept {
    if (!At(place)) return;
    m_LiveIds[place] = 0;
    m_Registries[place].reset();
}

void CRegistryStack::Clear() noexcept {
    for (size_t place = m_Registries.size(); place-- > PLACE_LEVEL_0;) Close(static_cast<BodyPlace>(place));
    Close(PLACE_GLOBAL);
    Close(PLACE_SNAPSHOTS);
}

// Where new bodies go

BodyPlace CurrentPlace() noexcept { return g_bGlobalMode ? g_GlobalPlace : PlaceOfLevel(g_nSaveLevel); }

CBodyPlaceScope::CBodyPlaceScope(BodyPlace place) noexcept
    : m_GlobalPlace(g_GlobalPlace), m_nLevel(place < PLACE_LEVEL_0 ? -1 : g_nSaveLevel), m_bGlobalMode(g_bGlobalMode) {
    g_bGlobalMode = place < PLACE_LEVEL_0;
    if (g_bGlobalMode) {
        g_GlobalPlace = place;
    } else {
        g_nSaveLevel = place - PLACE_LEVEL_0;
    }
}

CBodyPlaceScope::~CBodyPlaceScope() {
    g_bGlobalMode = m_bGlobalMode;
    g_GlobalPlace = m_GlobalPlace;
    if (m_nLevel >= 0) g_nSaveLevel = m_nLevel;
}

void RegisterBody(CBody* p) { g_RegistryStack.At(CurrentPlace())->Add(p); }
