// Dictionaries. A body has two key spaces, texts and all other objects, and each entry of a local dictionary
// keeps one value for each save level, so that `restore` undoes definitions by dropping a level of values.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "objects/Body.h"
#include "objects/Element.h"
#include "objects/Name.h"
#include "objects/Pooled.h"
#include "objects/Probing.h"

/// Which standard dictionary an element stands for; bind reads it.
enum DictKind : std::int32_t {
    DICT_SYSTEM = 0,
    DICT_GLOBAL = 1,
    DICT_STATUS = 2,
    DICT_USER = 3,
    DICT_ERROR = 4,
    DICT_ERRORINFO = 5,
    DICT_OTHER = 6
};

/// The values of one key, the newest first: one for each save level at which the key was defined. Owns them. A node of
/// a global dictionary has one value, whatever the level.
class CDictNodeValues {
public:
    /// Puts the first value at the current level.
    CDictNodeValues(const CBody* owner, ElementPtr value) noexcept;
    ~CDictNodeValues() {
        while (m_Newest.older) DropNewest();  // one after the other, however many there are
    }

    /// The current value; it stays the node's. At a level without a value of its own, a literal array of an older
    /// level is copied to the current one first, so that later changes to it go with the level.
    [[nodiscard]] const CElement* GetValue() const {
        const bool older = m_Newest.level != Level() && m_Newest.value->m_nType == ET_ARRAY && !m_Newest.value->m_bExec;
        if (older) CopyToLevel();
        return m_Newest.value.get();
    }
    /// The same for a look at what kind of value it is: nothing is copied, so that nothing shows.
    [[nodiscard]] const CElement& Peek() const noexcept { return *m_Newest.value; }
    /// Stores at the current level and drops what stood there.
    void SetValue(ElementPtr value) {
        if (m_Newest.level == Level()) {
            m_Newest.value = std::move(value);
        } else {
            Add(std::move(value));
        }
    }
    /// Drops the value of the current level. Answers true when no older one is left: the key is gone.
    [[nodiscard]] bool DropLevel() noexcept;

private:
    struct Version {
        ElementPtr value;
        std::unique_ptr<Version> older;
        std::int32_t level;
    };

    [[nodiscard]] std::int32_t Level() const noexcept { return m_bGlobal ? 0 : g_nSaveLevel; }
    void CopyToLevel() const;
    void DropNewest() noexcept {
        const std::unique_ptr<Version> older = std::move(m_Newest.older);
        m_Newest = std::move(*older);
    }
    void Add(ElementPtr value) const;

    mutable Version m_Newest;  ///< its level is never above the current one
    bool m_bGlobal;
};

/// An entry with a text key.
class CDictNode final : public CDictNodeValues, public CPooled<CDictNode> {
public:
    CDictNode(const CBody* owner, const CName* key, std::uint32_t bucket, ElementPtr value) noexcept
        : CDictNodeValues(owner, std::move(value)), m_pKey(key), m_nBucket(bucket) {}
    [[nodiscard]] const char* GetKey() const noexcept { return m_pKey->c_str(); }

    const CName* m_pKey;
    std::uint32_t m_nBucket;        ///< first half of its place in the order of iteration
    std::uint64_t m_nSequence = 0;  ///< second half: order of definition
};

/// An entry whose key is neither a name nor a string. Owns the key.
class CDictNode2 final : public CDictNodeValues, public CPooled<CDictNode2> {
public:
    CDictNode2(const CBody* owner, ElementPtr key, ElementPtr value) noexcept
        : CDictNodeValues(owner, std::move(value)), m_pKey(std::move(key)) {}
    [[nodiscard]] const CElement* GetKey() const noexcept { return m_pKey.get(); }

    ElementPtr m_pKey;
    std::uint64_t m_nSequence = 0;  ///< order of definition
};

/// The text-key table. Lookup goes by the address of the interned key; iteration goes by ascending bucket of
/// a chained table of fixed size, which exists only as that order. A key that comes or goes is told so, as what its
/// name means may be another entry now (CName::ForgetMeanings).
class CDictHash {
public:
    explicit CDictHash(std::int32_t count) noexcept;
    CDictHash(const CDictHash&) = delete;
    CDictHash& operator=(const CDictHash&) = delete;
    ~CDictHash();

    [[nodiscard]] const CDictNode* Find(const CName* key) const noexcept {
        if (m_nCount == 0) return nullptr;
        return m_Slots[SlotOf(key)];
    }
    [[nodiscard]] CDictNode* Find(const CName* key) noexcept {
        return const_cast<CDictNode*>(std::as_const(*this).Find(key));
    }
    void Insert(const CBody* owner, const CName* key, ElementPtr value);
    void Erase(const CName* key) noexcept;
    [[nodiscard]] std::int32_t GetCount() const noexcept { return m_nCount; }
    /// The i-th node in the order of iteration, or null beyond the end.
    [[nodiscard]] const CDictNode* GetAt(std::int32_t i) const;
    void DropLevel() noexcept;

private:
    /// Of the node with the key, or the free slot where it belongs.
    [[nodiscard]] size_t SlotOf(const CName* key) const noexcept {
        return ProbeSlots(m_Slots, key->m_nHash, [key](const CDictNode* node) { return node->m_pKey == key; });
    }
    void Rehash(size_t slots);
    void EraseSlot(size_t slot) noexcept;

    std::vector<CDictNode*> m_Slots;          ///< size a power of two; owns the nodes
    mutable std::vector<CDictNode*> m_Order;  ///< nodes in the order of iteration, when valid
    mutable bool m_bOrderValid = false;
    std::uint32_t m_nBuckets;  ///< smallest prime at or above the requested count
    std::int32_t m_nCount = 0;
    std::uint64_t m_nNextSequence = 0;
};

/// The entries whose keys are no texts, in order of first definition, with an index by value.
class CDictOtherKeys {
public:
    [[nodiscard]] const CDictNode2* Find(const CElement* key) const noexcept;
    [[nodiscard]] CDictNode2* Find(const CElement* key) noexcept {
        return const_cast<CDictNode2*>(std::as_const(*this).Find(key));
    }
    void Insert(const CBody* owner, ElementPtr key, ElementPtr value);
    void Erase(const CDictNode2* node) noexcept;
    [[nodiscard]] std::int32_t GetCount() const noexcept { return static_cast<std::int32_t>(m_Nodes.size()); }
    [[nodiscard]] const CDictNode2* GetAt(std::int32_t i) const noexcept;
    /// The oldest entry whose m_nSequence is at least that, or null.
    [[nodiscard]] const CDictNode2* GetFrom(std::uint64_t sequence) const noexcept;
    void DropLevel() noexcept;

private:
    [[nodiscard]] size_t IndexFrom(std::uint64_t sequence) const noexcept;

    std::vector<std::unique_ptr<CDictNode2>> m_Nodes;             ///< ascending m_nSequence
    std::unordered_multimap<std::uint64_t, CDictNode2*> m_Index;  ///< by key hash
    std::uint64_t m_nNextSequence = 0;
};

/// The entries of both key spaces.
struct CDictEntries {
    explicit CDictEntries(std::int32_t count) : m_Hash(count) {}

    CDictHash m_Hash;
    CDictOtherKeys m_OtherKeys;
};

/// What the shape of the dictionary stack became when a dictionary was put on stacks of other shapes: the last ones.
class CShapesAbove {
public:
    /// 0 when it isn't known.
    [[nodiscard]] DictStackShape Find(DictStackShape below) const noexcept {
        for (const Step& step : m_Steps) {
            if (step.below == below) return step.above;
        }
        return 0;
    }
    void Remember(DictStackShape below, DictStackShape above) noexcept {
        m_Steps[1] = m_Steps[0];
        m_Steps[0] = {below, above};
    }

private:
    struct Step {
        DictStackShape below = 0;
        DictStackShape above = 0;
    };
    Step m_Steps[2];
};

class CDictionaryBody final : public CBodyOf<CDictEntries> {
public:
    explicit CDictionaryBody(std::int32_t count) : CBodyOf(BK_DICT, count), m_nMaxLength(count) {}

    /// Drops the values of the current save level, and the keys that have no other.
    void DropLevel() noexcept {
        CDictEntries& entries = Change();
        entries.m_Hash.DropLevel();
        entries.m_OtherKeys.DropLevel();
    }

    const std::int32_t m_nMaxLength;  ///< the count given at creation. Departure: limits nothing
    CShapesAbove m_Shapes;            ///< for the dictionary stack
};

/// A dictionary object. Without a body it is empty, and what is put in it is dropped.
class CDictionary final : public CElement, public CPooled<CDictionary> {
public:
    static bool IsType(int type) noexcept { return type == ET_DICT; }

    /// No body: what a copy starts as.
    CDictionary() noexcept : CElement(ET_DICT) {}
    /// A new body with that capacity; a negative one counts as 0.
    explicit CDictionary(std::int32_t count, DictKind kind = DICT_OTHER);

    [[nodiscard]] CDictionaryBody* GetBody() const noexcept { return m_Body.Get(); }

    // Text keys. The dictionary owns a value from the call on.
    void Put(const CName* key, ElementPtr value);
    void Put(std::string_view key, ElementPtr value) { Put(InternName(key), std::move(value)); }
    [[nodiscard]] const CDictNode* Find(const CName* key) const noexcept {
        const CDictionaryBody* body = GetBody();
        return body ? body->Contents().m_Hash.Find(key) : nullptr;
    }
    [[nodiscard]] const CDictNode* Find(std::string_view key) const { return Find(InternName(key)); }
    /// The current value of a key, or null; it stays the dictionary's.
    [[nodiscard]] const CElement* GetValue(const CName* key) const;
    [[nodiscard]] const CElement* GetValue(std::string_view key) const { return GetValue(InternName(key)); }
    /// Drops the value of the current save level; the key stays while an older level has one.
    void Remove(const CName* key) noexcept;
    [[nodiscard]] std::int32_t GetNameCount() const noexcept;
    /// The i-th entry in the order of iteration, or null beyond the end.
    [[nodiscard]] const CDictNode* GetNameNodeAt(std::int32_t i) const;

    // All other keys, compared by IsEqual.
    /// Owns key and value; when the key exists the offered one is dropped.
    void PutOther(ElementPtr key, ElementPtr value);
    [[nodiscard]] const CDictNode2* FindOther(const CElement* key) const noexcept;
    void RemoveOther(const CElement* key) noexcept;
    [[nodiscard]] std::int32_t GetOtherCount() const noexcept;
    /// The i-th entry in order of definition, or null beyond the end.
    [[nodiscard]] const CDictNode2* GetOtherNodeAt(std::int32_t i) const noexcept;
    /// The oldest entry whose m_nSequence is at least that, or null: what a walk goes on with whatever has been
    /// defined and removed meanwhile.
    [[nodiscard]] const CDictNode2* GetOtherNodeFrom(std::uint64_t sequence) const noexcept;

    [[nodiscard]] std::int32_t GetCount() const noexcept { return GetNameCount() + GetOtherCount(); }
    [[nodiscard]] std::int32_t GetMaxLength() const noexcept;
    /// Enters a copy of each current value in pDest. Answers 0 when either dictionary has no body, else 1.
    [[nodiscard]] std::int32_t CopyTo(CDictionary* pDest) const;

    [[nodiscard]] bool IsGlobal() const override;
    [[nodiscard]] bool IsEqual(const CElement* pOther) const override;
    [[nodiscard]] ElementPtr Clone() const override;
    /// A new body in the current VM; dictionaries inside stay shared, other values are deep copies. The copy is
    /// literal, of unlimited access and of no standard kind.
    [[nodiscard]] ElementPtr DeepCopy() const override;

    std::int32_t m_nDictKind = DICT_OTHER;
    /// Of a font that is not there: the name that it was asked for by. Copies keep it, and no program can see it.
    const CName* m_pFoundAs = nullptr;
    CBodyRef<CDictionaryBody> m_Body;
};
