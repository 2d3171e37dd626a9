// Dictionaries: the value slots of the save levels, the two key spaces, and the dictionary object over them.
#include "objects/Dictionary.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "objects/Limits.h"
#include "objects/Number.h"
#include "objects/SimpleElements.h"
#include "objects/Work.h"

namespace {

constexpr size_t FIRST_SLOTS = UsualOrTiny<size_t>(8, 2);

/// Smallest prime at or above the count; 0 counts as 1, and 1 stands for itself.
std::uint32_t PrimeAtLeast(std::int32_t count) {
    auto candidate = static_cast<std::uint32_t>(std::max(count, 1));
    for (;; ++candidate) {
        bool divides = false;
        for (std::uint64_t d = 2; d * d <= candidate && !divides; ++d) divides = candidate % d == 0;
        if (!divides) return candidate;
    }
}

/// Hash cell of a number: equal keys lie in the same or in neighbouring cells.
double NumberCell(double value) {
    constexpr double cellsPerUnit = 1.0 / NUMBER_TOLERANCE;
    return std::floor(value * cellsPerUnit);
}
static_assert(1.0 / NUMBER_TOLERANCE == 1e6);

std::uint64_t HashCell(double cell) { return std::bit_cast<std::uint64_t>(cell + 0.0); }

/// Hash of a key that is no number; equal keys have equal hashes.
std::uint64_t HashOther(const CElement* key) {
    const auto mix = [key](const void* p) {
        return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(p)) * 31 +
               static_cast<std::uint64_t>(key->m_nType);
    };
    if (const auto* simple = As<CSimpElement>(key)) return mix(simple->m_pName);
    if (const auto* op = As<COperatorElement>(key)) return mix(op->m_pName);
    if (const auto* dict = As<CDictionary>(key)) return mix(dict->GetBody());
    return static_cast<std::uint64_t>(key->m_nType);
}

}  // namespace

// Values

CDictNodeValues::CDictNodeValues(const CBody* owner, ElementPtr value) noexcept : m_bGlobal(owner->m_bGlobal) {
    m_Newest = {std::move(value), nullptr, Level()};
}

void CDictNodeValues::Add(ElementPtr value) const {
    auto older = std::make_unique<Version>(std::move(m_Newest));
    m_Newest = {std::move(value), std::move(older), Level()};
}

void CDictNodeValues::CopyToLevel() const {
    if (ElementPtr copy = m_Newest.value->DeepCopy()) Add(std::move(copy));
}

bool CDictNodeValues::DropLevel() noexcept {
    if (m_Newest.level != Level()) return false;
    if (!m_Newest.older) return true;
    DropNewest();
    return false;
}

// Text keys

CDictHash::CDictHash(std::int32_t count) noexcept : m_nBuckets(PrimeAtLeast(count)) {}

CDictHash::~CDictHash() {
    for (CDictNode* node : m_Slots) {
        if (node) node->m_pKey->ForgetMeanings();
        delete node;
    }
}

void CDictHash::Rehash(size_t slots) {
    std::vector<CDictNode*> old(slots);
    old.swap(m_Slots);
    for (CDictNode* node : old) {
        if (node) m_Slots[FreeSlot(m_Slots, node->m_pKey->m_nHash)] = node;
    }
}

void CDictHash::Insert(const CBody* owner, const CName* key, ElementPtr value) {
    if ((static_cast<size_t>(m_nCount) + 1) * 4 > m_Slots.size() * 3) {
        Rehash(m_Slots.empty() ? FIRST_SLOTS : m_Slots.size() * 2);
    }
    auto* node = new CDictNode(owner, key, key->m_nBucketHash % m_nBuckets, std::move(value));
    node->m_nSequence = m_nNextSequence++;
    key->ForgetMeanings();
    m_Slots[SlotOf(key)] = node;
    ++m_nCount;
    m_bOrderValid = false;
}

void CDictHash::EraseSlot(size_t slot) noexcept {
    m_Slots[slot]->m_pKey->ForgetMeanings();
    delete m_Slots[slot];
    m_Slots[slot] = nullptr;
    --m_nCount;
    m_bOrderValid = false;
    // Entries behind the gap that had probed past it move up, so that no search ends too early.
    const size_t mask = m_Slots.size() - 1;
    size_t gap = slot;
    for (size_t next = (slot + 1) & mask; m_Slots[next]; next = (next + 1) & mask) {
        const size_t home = m_Slots[next]->m_pKey->m_nHash & mask;
        if (((next - home) & mask) >= ((next - gap) & mask)) {
            m_Slots[gap] = m_Slots[next];
            m_Slots[next] = nullptr;
            gap = next;
        }
    }
}

void CDictHash::Erase(const CName* key) noexcept {
    if (Find(key)) EraseSlot(SlotOf(key));
}

const CDictNode* CDictHash::GetAt(std::int32_t i) const {
    if (i < 0 || i >= m_nCount) return nullptr;
    if (!m_bOrderValid) {
        CountWork(m_nCount);
        m_Order.clear();
        std::copy_if(m_Slots.begin(), m_Slots.end(), std::back_inserter(m_Order),
                     [](const CDictNode* node) { return node != nullptr; });
        std::sort(m_Order.begin(), m_Order.end(), [](const CDictNode* a, const CDictNode* b) {
            return a->m_nBucket != b->m_nBucket ? a->m_nBucket < b->m_nBucket : a->m_nSequence < b->m_nSequence;
        });
        m_bOrderValid = true;
    }
    return m_Order[static_cast<size_t>(i)];
}

void CDictHash::DropLevel() noexcept {
    CountWork(static_cast<std::int64_t>(m_Slots.size()));
    for (size_t slot = 0; slot < m_Slots.size();) {
        // Erasing may move a later entry into this slot, which then has its turn.
        if (m_Slots[slot] && m_Slots[slot]->DropLevel()) {
            EraseSlot(slot);
        } else {
            ++slot;
        }
    }
}

// Other keys

const CDictNode2* CDictOtherKeys::Find(const CElement* key) const noexcept {
    const CDictNode2* found = nullptr;
    const auto probe = [&](std::uint64_t hash) {
        const auto [first, last] = m_Index.equal_range(hash);
        for (auto it = first; it != last; ++it) {
            const CDictNode2* node = it->second;
            if (found && found->m_nSequence < node->m_nSequence) continue;
            if (node->m_pKey->IsEqual(key)) found = node;
        }
    };
    if (const auto* number = As<CNumberElement>(key)) {
        if (!std::isfinite(number->GetReal())) return nullptr;  // equal to nothing, itself included
        const double cell = NumberCell(number->GetReal());
        probe(HashCell(cell));
        if (cell - 1.0 != cell) probe(HashCell(cell - 1.0));
        if (cell + 1.0 != cell) probe(HashCell(cell + 1.0));
    } else {
        probe(HashOther(key));
    }
    return found;
}

void CDictOtherKeys::Insert(const CBody* owner, ElementPtr key, ElementPtr value) {
    const auto* number = As<CNumberElement>(key.get());
    auto node = std::make_unique<CDictNode2>(owner, std::move(key), std::move(value));
    node->m_nSequence = m_nNextSequence++;
    m_Index.emplace(number ? HashCell(NumberCell(number->GetReal())) : HashOther(node->GetKey()), node.get());
    m_Nodes.push_back(std::move(node));
}

void CDictOtherKeys::Erase(const CDictNode2* node) noexcept {
    const auto* number = As<CNumberElement>(node->GetKey());
    const auto [first, last] =
        m_Index.equal_range(number ? HashCell(NumberCell(number->GetReal())) : HashOther(node->GetKey()));
    for (auto it = first; it != last; ++it) {
        if (it->second == node) {
            m_Index.erase(it);
            break;
        }
    }
    m_Nodes.erase(m_Nodes.begin() + static_cast<std::ptrdiff_t>(IndexFrom(node->m_nSequence)));
}

size_t CDictOtherKeys::IndexFrom(std::uint64_t sequence) const noexcept {
    const auto at = std::lower_bound(
        m_Nodes.begin(), m_Nodes.end(), sequence,
        [](const std::unique_ptr<CDictNode2>& a, std::uint64_t wanted) { return a->m_nSequence < wanted; });
    return static_cast<size_t>(at - m_Nodes.begin());
}

const CDictNode2* CDictOtherKeys::GetFrom(std::uint64_t sequence) const noexcept {
    const size_t at = IndexFrom(sequence);
    return at < m_Nodes.size() ? m_Nodes[at].get() : nullptr;
}

const CDictNode2* CDictOtherKeys::GetAt(std::int32_t i) const noexcept {
    return i >= 0 && static_cast<size_t>(i) < m_Nodes.size() ? m_Nodes[static_cast<size_t>(i)].get() : nullptr;
}

void CDictOtherKeys::DropLevel() noexcept {
    CountWork(static_cast<std::int64_t>(m_Nodes.size()));
    bool dropped = false;
    for (const auto& node : m_Nodes) {
        if (node->DropLevel()) {
            node->m_nSequence = UINT64_MAX;
            dropped = true;
        }
    }
    if (!dropped) return;
    std::erase_if(m_Index, [](const auto& entry) { return entry.second->m_nSequence == UINT64_MAX; });
    std::erase_if(m_Nodes, [](const auto& node) { return node->m_nSequence == UINT64_MAX; });
}

// The object

CDictionary::CDictionary(std::int32_t count, DictKind kind)
    : CElement(ET_DICT), m_nDictKind(kind), m_Body(AdoptBody(std::make_unique<CDictionaryBody>(std::max(count, 0)))) {}

void CDictionary::Put(const CName* key, ElementPtr value) {
    CDictionaryBody* body = GetBody();
    if (!body || !value) return;
    CDictHash& names = body->Change().m_Hash;
    if (CDictNode* node = names.Find(key)) {
        node->SetValue(std::move(value));
    } else {
        names.Insert(body, key, std::move(value));
    }
}

const CElement* CDictionary::GetValue(const CName* key) const {
    const CDictNode* node = Find(key);
    return node ? node->GetValue() : nullptr;
}

void CDictionary::Remove(const CName* key) noexcept {
    CDictionaryBody* body = GetBody();
    if (!body) return;
    CDictHash& names = body->Change().m_Hash;
    CDictNode* node = names.Find(key);
    if (node && node->DropLevel()) names.Erase(key);
}

std::int32_t CDictionary::GetNameCount() const noexcept {
    const CDictionaryBody* body = GetBody();
    return body ? body->Contents().m_Hash.GetCount() : 0;
}

const CDictNode* CDictionary::GetNameNodeAt(std::int32_t i) const {
    const CDictionaryBody* body = GetBody();
    return body ? body->Contents().m_Hash.GetAt(i) : nullptr;
}

void CDictionary::PutOther(ElementPtr key, ElementPtr value) {
    CDictionaryBody* body = GetBody();
    if (!body || !key || !value) return;
    CDictOtherKeys& others = body->Change().m_OtherKeys;
    if (CDictNode2* node = others.Find(key.get())) {
        node->SetValue(std::move(value));
    } else {
        others.Insert(body, std::move(key), std::move(value));
    }
}

const CDictNode2* CDictionary::FindOther(const CElement* key) const noexcept {
    const CDictionaryBody* body = GetBody();
    return body && key ? body->Contents().m_OtherKeys.Find(key) : nullptr;
}

void CDictionary::RemoveOther(const CElement* key) noexcept {
    CDictionaryBody* body = GetBody();
    if (!body || !key) return;
    CDictOtherKeys& others = body->Change().m_OtherKeys;
    CDictNode2* node = others.Find(key);
    if (node && node->DropLevel()) others.Erase(node);
}

std::int32_t CDictionary::GetOtherCount() const noexcept {
    const CDictionaryBody* body = GetBody();
    return body ? body->Contents().m_OtherKeys.GetCount() : 0;
}

const CDictNode2* CDictionary::GetOtherNodeAt(std::int32_t i) const noexcept {
    const CDictionaryBody* body = GetBody();
    return body ? body->Contents().m_OtherKeys.GetAt(i) : nullptr;
}

const CDictNode2* CDictionary::GetOtherNodeFrom(std::uint64_t sequence) const noexcept {
    const CDictionaryBody* body = GetBody();
    return body ? body->Contents().m_OtherKeys.GetFrom(sequence) : nullptr;
}

std::int32_t CDictionary::GetMaxLength() const noexcept {
    const CDictionaryBody* body = GetBody();
    return body ? body->m_nMaxLength : 0;
}

std::int32_t CDictionary::CopyTo(CDictionary* pDest) const {
    if (!GetBody() || !pDest->GetBody()) return 0;
    if (m_Body.SameBody(pDest->m_Body)) return 1;
    CountWork(GetNameCount() + GetOtherCount());
    for (std::int32_t i = 0; const CDictNode* node = GetNameNodeAt(i); ++i) {
        if (const CElement* value = node->GetValue()) pDest->Put(node->m_pKey, value->Clone());
    }
    for (std::int32_t i = 0; const CDictNode2* node = GetOtherNodeAt(i); ++i) {
        if (const CElement* value = node->GetValue()) pDest->PutOther(node->GetKey()->Clone(), value->Clone());
    }
    return 1;
}

bool CDictionary::IsGlobal() const {
    const CDictionaryBody* body = GetBody();
    return body && body->m_bGlobal;
}

bool CDictionary::IsEqual(const CElement* pOther) const {
    const auto* other = As<CDictionary>(pOther);
    return other && m_Body.SameBody(other->m_Body);
}

ElementPtr CDictionary::Clone() const {
    auto copy = MakeElement<CDictionary>();
    copy->m_Body = m_Body;
    copy->m_nDictKind = m_nDictKind;
    copy->m_pFoundAs = m_pFoundAs;
    return WithAttributes(std::move(copy));
}

ElementPtr CDictionary::DeepCopy() const {
    if (!GetBody()) return nullptr;
    const auto copyOf = [](const CElement& value) {
        ElementPtr copy = value.m_nType == ET_DICT ? value.Clone() : value.DeepCopy();
        return copy ? std::move(copy) : value.Clone();
    };
    CountWork(GetNameCount() + GetOtherCount());
    auto copy = MakeElement<CDictionary>(GetMaxLength());
    copy->m_pFoundAs = m_pFoundAs;
    for (std::int32_t i = 0; const CDictNode* node = GetNameNodeAt(i); ++i) {
        if (const CElement* value = node->GetValue()) copy->Put(node->m_pKey, copyOf(*value));
    }
    for (std::int32_t i = 0; const CDictNode2* node = GetOtherNodeAt(i); ++i) {
        if (const CElement* value = node->GetValue()) copy->PutOther(node->GetKey()->Clone(), copyOf(*value));
    }
    return copy;
}
