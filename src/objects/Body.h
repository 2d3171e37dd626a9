// Shared storage of composite objects, the registries that own it, and references that know when it is gone.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

/// Body kinds; read only to tell dictionaries from the rest.
enum BodyKind : std::int32_t { BK_ARRAY = 0, BK_STRING = 1, BK_DICT = 2, BK_FILE = 3, BK_FILTER = 4, BK_GSTATE = 5 };

/// Save levels run from 0 to this.
inline constexpr std::int32_t MAX_SAVE_LEVEL = 4;

// Process-wide: one interpreter at a time. Reset by its destructor.
extern std::int32_t g_nSaveLevel;  ///< active saves, 0 to MAX_SAVE_LEVEL
extern bool g_bGlobalMode;         ///< the setglobal state: new bodies go to the global registry

/// Identity of one registry's lifetime; 0 is no registry. The low three bits name the registry's place.
using RegistryId = std::uint64_t;

/// Ids of the living registries by place: one for each save level, one for global VM.
extern RegistryId g_LiveRegistries[8];

/// Base of the storage that elements share. A body is owned by the registry it is entered in and goes with it.
class CBody {
public:
    CBody(const CBody&) = delete;
    CBody& operator=(const CBody&) = delete;
    virtual ~CBody() = default;

    std::int32_t m_nKind;
    bool m_bGlobal;                      ///< g_bGlobalMode at construction
    bool m_bSnapshotted = false;         ///< a copy of it is being shared: see g_nSnapshotEpoch
    std::uint32_t m_nRegistryIndex = 0;  ///< place in the registry's list
    RegistryId m_nRegistry = 0;          ///< 0 until registered

    /// Says that the contents change: copies made of them earlier no longer show what a copy made now would.
    void Touch() noexcept;

protected:
    explicit CBody(BodyKind kind) noexcept : m_nKind(kind), m_bGlobal(g_bGlobalMode) {}
};

/// Counts the changes to bodies that were marked with m_bSnapshotted. A deep copy made at one epoch may stand
/// for a new one as long as the epoch is the same.
extern std::uint64_t g_nSnapshotEpoch;

inline void CBody::Touch() noexcept {
    if (m_bSnapshotted) {
        m_bSnapshotted = false;
        ++g_nSnapshotEpoch;
    }
}

/// An element's reference to its body. It answers null once the body's registry is gone, so that nothing is
/// ever read through an object that outlived its storage. A body outside any registry (the file that the
/// dialog analyses, for one) is never referred to this way.
template <class T>
class CBodyRef {
public:
    CBodyRef() noexcept = default;
    explicit CBodyRef(T* body) noexcept : m_pBody(body), m_nRegistry(body->m_nRegistry) {}

    [[nodiscard]] T* Get() const noexcept {
        return m_nRegistry != 0 && g_LiveRegistries[m_nRegistry & 7] == m_nRegistry ? m_pBody : nullptr;
    }
    /// Whether both refer to one living body.
    [[nodiscard]] bool SameBody(const CBodyRef& other) const noexcept {
        const T* body = Get();
        return body && body == other.Get();
    }

private:
    T* m_pBody = nullptr;
    RegistryId m_nRegistry = 0;
};

class CDictionaryBody;

/// The bodies made at one save level, or in global mode. Destroying it destroys them.
class CBodyRegistry {
public:
    /// place: a save level, or GLOBAL_PLACE.
    explicit CBodyRegistry(std::int32_t place);
    CBodyRegistry(const CBodyRegistry&) = delete;
    CBodyRegistry& operator=(const CBodyRegistry&) = delete;
    ~CBodyRegistry() { Empty(); }

    static constexpr std::int32_t GLOBAL_PLACE = 5;

    /// Takes a body over.
    void Add(CBody* p);
    /// Destroys one body, in constant time. Only for a body that nothing refers to any more.
    void Destroy(CBody* p) noexcept;
    /// Destroys all bodies and ends the registry's identity. No destructor of a body looks at another body.
    void Empty() noexcept;
    /// The i-th dictionary body, or null beyond the end.
    [[nodiscard]] CDictionaryBody* GetDictBody(std::int32_t i) const noexcept;
    [[nodiscard]] RegistryId GetId() const noexcept { return m_nId; }
    /// Bodies alive, dictionaries and others.
    [[nodiscard]] size_t GetCount() const noexcept { return m_Bodies.size() + m_DictBodies.size(); }

    CBodyRegistry* m_pNext = nullptr;  ///< links of g_RegistryStack
    CBodyRegistry* m_pPrev = nullptr;

private:
    std::vector<CBody*>& ListOf(const CBody* p) noexcept { return p->m_nKind == BK_DICT ? m_DictBodies : m_Bodies; }

    std::vector<CBody*> m_Bodies;
    std::vector<CBody*> m_DictBodies;
    RegistryId m_nId;
};

/// The registries of the save levels, the current level's on top. Owns them.
class CRegistryStack {
public:
    ~CRegistryStack() { Clear(); }
    void Push(CBodyRegistry* p) noexcept;
    /// The top, now the caller's; null when empty.
    CBodyRegistry* Pop() noexcept;
    [[nodiscard]] CBodyRegistry* Top() const noexcept { return m_pTail; }
    [[nodiscard]] CBodyRegistry* AtFromTop(std::int32_t i) const noexcept;
    [[nodiscard]] std::int32_t GetCount() const noexcept { return m_nTop + 1; }
    /// Empties and deletes every registry.
    void Clear() noexcept;

private:
    CBodyRegistry* m_pHead = nullptr;
    CBodyRegistry* m_pTail = nullptr;
    std::int32_t m_nTop = -1;
};

extern CRegistryStack g_RegistryStack;
extern CBodyRegistry* g_pGlobalRegistry;

/// Enters a new body in the global registry when it was made in global mode, else in that of the current level.
void RegisterBody(CBody* p);

/// Registers a new body and gives the reference to it.
template <class T>
[[nodiscard]] CBodyRef<T> AdoptBody(std::unique_ptr<T> body) {
    RegisterBody(body.get());
    return CBodyRef<T>(body.release());
}

/// Sets the global mode for a scope and puts the old one back.
class CGlobalModeScope {
public:
    explicit CGlobalModeScope(bool mode) noexcept : m_bBefore(g_bGlobalMode) { g_bGlobalMode = mode; }
    CGlobalModeScope(const CGlobalModeScope&) = delete;
    CGlobalModeScope& operator=(const CGlobalModeScope&) = delete;
    ~CGlobalModeScope() { g_bGlobalMode = m_bBefore; }

private:
    bool m_bBefore;
};
