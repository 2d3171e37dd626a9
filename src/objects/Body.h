// Shared storage of composite objects, the registries that own it, and references that know when it is gone.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

/// Body kinds; read only to tell dictionaries from the rest.
enum BodyKind : std::int32_t { BK_ARRAY = 0, BK_STRING = 1, BK_DICT = 2, BK_FILE = 3, BK_FILTER = 4, BK_GSTATE = 5 };

// Process-wide: one interpreter at a time. Reset by its destructor.
extern std::int32_t g_nSaveLevel;  ///< active saves
extern bool g_bGlobalMode;         ///< the setglobal state: new bodies are global

/// Where bodies stand. There is one registry for each place.
enum BodyPlace : std::int32_t {
    PLACE_GLOBAL = 0,     ///< global VM
    PLACE_SNAPSHOTS = 1,  ///< values that graphics states share; global as well
    PLACE_LEVEL_0 = 2     ///< the first save level; the others follow
};
[[nodiscard]] constexpr BodyPlace PlaceOfLevel(std::int32_t level) noexcept {
    return static_cast<BodyPlace>(PLACE_LEVEL_0 + level);
}

/// Identity of one registry's lifetime; 0 is no registry. The low bits name its place.
using RegistryId = std::uint64_t;
inline constexpr int PLACE_BITS = 20;

/// The highest save level that an identity has room for.
inline constexpr std::int32_t LAST_SAVE_LEVEL = (1 << PLACE_BITS) - 1 - PLACE_LEVEL_0;

/// Counts the changes to bodies that were marked by MarkCopied. A deep copy made at one epoch may stand for a new one
/// as long as the epoch is the same.
extern std::uint64_t g_nSnapshotEpoch;

/// Base of the storage that elements share. A body is owned by the registry it is entered in and goes with it.
class CBody {
public:
    CBody(const CBody&) = delete;
    CBody& operator=(const CBody&) = delete;
    virtual ~CBody() = default;

    /// Says that a copy of the contents is being shared: the next change to them counts in g_nSnapshotEpoch.
    void MarkCopied() noexcept { m_bCopied = true; }

    std::int32_t m_nKind;
    bool m_bGlobal;                      ///< g_bGlobalMode at construction
    std::uint32_t m_nRegistryIndex = 0;  ///< place in the registry's list
    RegistryId m_nRegistry = 0;          ///< 0 until registered

protected:
    explicit CBody(BodyKind kind) noexcept : m_nKind(kind), m_bGlobal(g_bGlobalMode) {}

    /// To be called before the contents change: copies made of them earlier no longer show what a copy made now would.
    void CountChange() noexcept {
        if (m_bCopied) {
            m_bCopied = false;
            ++g_nSnapshotEpoch;
        }
    }

private:
    bool m_bCopied = false;
};

/// A body whose contents can be read in one way and changed in another, which counts the change.
template <class T>
class CBodyOf : public CBody {
public:
    [[nodiscard]] const T& Contents() const noexcept { return m_Contents; }
    /// The contents for a change that the caller makes now; not to be kept.
    [[nodiscard]] T& Change() noexcept {
        CountChange();
        return m_Contents;
    }

protected:
    template <class... Args>
    explicit CBodyOf(BodyKind kind, Args&&... args) : CBody(kind), m_Contents(std::forward<Args>(args)...) {}

private:
    T m_Contents;
};

class CDictionaryBody;

/// The bodies of one place. Destroying it destroys them.
class CBodyRegistry {
public:
    explicit CBodyRegistry(RegistryId id) noexcept : m_nId(id) {}
    CBodyRegistry(const CBodyRegistry&) = delete;
    CBodyRegistry& operator=(const CBodyRegistry&) = delete;
    /// No destructor of a body looks at another body of its place.
    ~CBodyRegistry();

    /// Takes a body over.
    void Add(CBody* p);
    /// Destroys one body, in constant time. Only for a body that nothing refers to any more.
    void Destroy(CBody* p) noexcept;
    /// The i-th dictionary body, or null beyond the end.
    [[nodiscard]] CDictionaryBody* GetDictBody(std::int32_t i) const noexcept;
    /// Bodies alive, dictionaries and others.
    [[nodiscard]] size_t GetCount() const noexcept { return m_Bodies.size() + m_DictBodies.size(); }

private:
    std::vector<CBody*>& ListOf(const CBody* p) noexcept { return p->m_nKind == BK_DICT ? m_DictBodies : m_Bodies; }

    std::vector<CBody*> m_Bodies;
    std::vector<CBody*> m_DictBodies;
    RegistryId m_nId;
};

/// The one table of registries, by place. Grows with the save levels.
class CRegistryStack {
public:
    /// Makes the registry of a place that has none, with an identity of its own.
    void Open(BodyPlace place);
    /// Ends the identity of a place's registry, so that no reference to its bodies answers any more, then destroys it.
    void Close(BodyPlace place) noexcept;
    /// Closes all places, the save levels from the top down first.
    void Clear() noexcept;
    /// Null for a place that has none.
    [[nodiscard]] CBodyRegistry* At(BodyPlace place) const noexcept {
        return static_cast<size_t>(place) < m_Registries.size() ? m_Registries[place].get() : nullptr;
    }
    /// Whether the registry of that identity is there. The id is 0 or one that a body once had.
    [[nodiscard]] bool IsLive(RegistryId id) const noexcept { return id != 0 && m_LiveIds[PlaceIn(id)] == id; }
    [[nodiscard]] static BodyPlace PlaceIn(RegistryId id) noexcept {
        return static_cast<BodyPlace>(id & ((1 << PLACE_BITS) - 1));
    }

private:
    std::vector<std::unique_ptr<CBodyRegistry>> m_Registries;
    std::vector<RegistryId> m_LiveIds;  ///< by place, 0 for none. Never shrinks: old identities may still be asked for
    RegistryId m_nLastSerial = 0;
};

extern CRegistryStack g_RegistryStack;

/// The place where a registered body stands.
[[nodiscard]] inline BodyPlace PlaceOf(const CBody& body) noexcept { return CRegistryStack::PlaceIn(body.m_nRegistry); }

/// The place where a new body goes.
[[nodiscard]] BodyPlace CurrentPlace() noexcept;

/// Sends new bodies to a place for a scope, as if they were made there and then: the global mode goes with it, and for
/// a save level, which must not be above the current one, the level at which dictionaries keep their values.
class CBodyPlaceScope {
public:
    explicit CBodyPlaceScope(BodyPlace place) noexcept;
    CBodyPlaceScope(const CBodyPlaceScope&) = delete;
    CBodyPlaceScope& operator=(const CBodyPlaceScope&) = delete;
    ~CBodyPlaceScope();

private:
    BodyPlace m_GlobalPlace;
    std::int32_t m_nLevel;  ///< to go back to, -1 for a scope that leaves the level alone
    bool m_bGlobalMode;
};

/// An element's reference to its body. It answers null once the body's registry is gone, so that nothing is
/// ever read through an object that outlived its storage. A body outside any registry (the file that the
/// dialog analyses, for one) is never referred to this way.
template <class T>
class CBodyRef {
public:
    CBodyRef() noexcept = default;
    explicit CBodyRef(T* body) noexcept : m_pBody(body), m_nRegistry(body->m_nRegistry) {}

    [[nodiscard]] T* Get() const noexcept { return g_RegistryStack.IsLive(m_nRegistry) ? m_pBody : nullptr; }
    /// Whether both refer to one living body.
    [[nodiscard]] bool SameBody(const CBodyRef& other) const noexcept {
        const T* body = Get();
        return body && body == other.Get();
    }

private:
    T* m_pBody = nullptr;
    RegistryId m_nRegistry = 0;
};

/// Enters a new body in the registry of the current place.
void RegisterBody(CBody* p);

/// Registers a new body and gives the reference to it.
template <class T>
[[nodiscard]] CBodyRef<T> AdoptBody(std::unique_ptr<T> body) {
    RegisterBody(body.get());
    return CBodyRef<T>(body.release());
}
