// Registries of bodies: who owns shared storage, and how its end becomes known to everything that refers to it.
#include "objects/Body.h"

#include "objects/Dictionary.h"

std::int32_t g_nSaveLevel = 0;
bool g_bGlobalMode = false;
RegistryId g_LiveRegistries[8] = {};
std::uint64_t g_nSnapshotEpoch = 0;
CRegistryStack g_RegistryStack;
CBodyRegistry* g_pGlobalRegistry = nullptr;

namespace {
RegistryId g_nLastSerial = 0;
}

CBodyRegistry::CBodyRegistry(std::int32_t place) : m_nId((++g_nLastSerial << 3) | static_cast<RegistryId>(place)) {
    g_LiveRegistries[place] = m_nId;
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

void CBodyRegistry::Empty() noexcept {
    // The identity ends first: from here on every reference to these bodies answers null.
    if (g_LiveRegistries[m_nId & 7] == m_nId) g_LiveRegistries[m_nId & 7] = 0;
    for (CBody* p : m_Bodies) delete p;
    m_Bodies.clear();
    for (CBody* p : m_DictBodies) delete p;
    m_DictBodies.clear();
}

CDictionaryBody* CBodyRegistry::GetDictBody(std::int32_t i) const noexcept {
    if (i < 0 || static_cast<size_t>(i) >= m_DictBodies.size()) return nullptr;
    return static_cast<CDictionaryBody*>(m_DictBodies[static_cast<size_t>(i)]);
}

void CRegistryStack::Push(CBodyRegistry* p) noexcept {
    p->m_pPrev = m_pTail;
    p->m_pNext = nullptr;
    (m_pTail ? m_pTail->m_pNext : m_pHead) = p;
    m_pTail = p;
    ++m_nTop;
}

CBodyRegistry* CRegistryStack::Pop() noexcept {
    CBodyRegistry* p = m_pTail;
    if (!p) return nullptr;
    m_pTail = p->m_pPrev;
    (m_pTail ? m_pTail->m_pNext : m_pHead) = nullptr;
    p->m_pPrev = nullptr;
    --m_nTop;
    return p;
}

CBodyRegistry* CRegistryStack::AtFromTop(std::int32_t i) const noexcept {
    CBodyRegistry* p = m_pTail;
    while (p && i-- > 0) p = p->m_pPrev;
    return p;
}

void CRegistryStack::Clear() noexcept {
    while (CBodyRegistry* p = Pop()) delete p;
}

void RegisterBody(CBody* p) { (p->m_bGlobal ? g_pGlobalRegistry : g_RegistryStack.Top())->Add(p); }
