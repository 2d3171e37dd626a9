// How graphics states own their composite parameters, so that a copy of a state costs next to nothing
// although it looks to every program as if it had storage of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "objects/Body.h"
#include "objects/Element.h"

/// Base of what CSharedRef counts. A copy starts uncounted.
class CShared {
public:
    CShared() noexcept = default;
    CShared(const CShared&) noexcept {}
    CShared& operator=(const CShared&) = delete;

    std::uint32_t m_nRefs = 0;

protected:
    ~CShared() = default;
};

/// A counted reference to a T, which derives from CShared; one thread.
template <class T>
class CSharedRef {
public:
    CSharedRef() noexcept = default;
    explicit CSharedRef(T* p) noexcept : m_p(p) {
        if (m_p) ++m_p->m_nRefs;
    }
    CSharedRef(const CSharedRef& other) noexcept : CSharedRef(other.m_p) {}
    CSharedRef(CSharedRef&& other) noexcept : m_p(std::exchange(other.m_p, nullptr)) {}
    CSharedRef& operator=(CSharedRef other) noexcept {
        std::swap(m_p, other.m_p);
        return *this;
    }
    ~CSharedRef() {
        if (m_p && --m_p->m_nRefs == 0) delete m_p;
    }

    [[nodiscard]] T* get() const noexcept { return m_p; }
    T* operator->() const noexcept { return m_p; }
    T& operator*() const noexcept { return *m_p; }
    explicit operator bool() const noexcept { return m_p != nullptr; }
    [[nodiscard]] bool IsShared() const noexcept { return m_p && m_p->m_nRefs > 1; }

private:
    T* m_p = nullptr;
};

/// A deep copy that no program has a reference into, so that any number of states may hold it at once. Its
/// bodies stand in a registry of their own, whatever the save level, and go with the last reference.
class CSnapshot final : public CShared {
public:
    /// A deep copy of a value. Null when the value's body is gone, or when it is nested so deep that its copy
    /// shares bodies with it.
    [[nodiscard]] static CSharedRef<CSnapshot> Of(const CElement& value);
    /// A value that `make` builds and keeps no reference to.
    template <class Make>
    [[nodiscard]] static CSharedRef<CSnapshot> Built(Make make) {
        CSharedRef<CSnapshot> snapshot(new CSnapshot);
        const CBodyPlaceScope scope(PLACE_SNAPSHOTS);
        snapshot->TakeOver(make());
        return snapshot;
    }

    /// An object of a value that the program knows and goes on changing, for states that are to see the changes.
    [[nodiscard]] static CSharedRef<CSnapshot> OfLive(ElementPtr value);

    CSnapshot(const CSnapshot&) = delete;
    ~CSnapshot();

    [[nodiscard]] const CElement* Get() const noexcept { return m_pElement.get(); }
    /// Whether it is no copy.
    [[nodiscard]] bool IsLive() const noexcept { return m_bLive; }
    /// Bodies of all snapshots that there are.
    [[nodiscard]] static std::size_t CountBodies() noexcept;

private:
    CSnapshot();
    /// False when not all storage of the element is the snapshot's.
    bool TakeOver(ElementPtr element);
    bool Collect(const CElement& e);

    ElementPtr m_pElement;
    std::vector<CBody*> m_Bodies;  ///< all storage of the element, unless it is live
    bool m_bLive = false;
};

/// One composite parameter of a graphics state: an element of its own that the program may know, or a snapshot that it
/// shares with other cells, or nothing. A copy of a cell is a deep copy by its effect. docs/architecture.md has a
/// drawing.
class CStateCell {
public:
    CStateCell() noexcept = default;
    explicit CStateCell(CSharedRef<CSnapshot> value) noexcept : m_pSnapshot(std::move(value)) {}
    CStateCell(const CStateCell& other);
    CStateCell(CStateCell&&) noexcept = default;
    /// By reference: g++ takes assignment of a value by `operator=(CStateCell) noexcept` for one that can't throw, and
    /// leaves out what a caller has to clean up when copying the cell does.
    CStateCell& operator=(const CStateCell& other) { return *this = CStateCell(other); }
    CStateCell& operator=(CStateCell&&) noexcept = default;
    ~CStateCell() = default;

    /// Takes an element over that the program may know; null empties the cell.
    void Set(ElementPtr own) noexcept;
    /// Takes an element over that all copies of the cell are to share with the program.
    void SetLive(ElementPtr value);
    /// The value, to look at: no Clone of it or of a part of it may reach a program, unless it is a live one. Null when
    /// there is none.
    [[nodiscard]] const CElement* Peek() const noexcept {
        if (m_pOwn) return m_pOwn.get();
        return m_pSnapshot ? m_pSnapshot->Get() : nullptr;
    }
    /// The element whose Clone a program may have; it stays the cell's. Storage made for it goes to the place
    /// where the state stands. Null when there is none. Not for a live value.
    [[nodiscard]] CElement* Expose(const CBody& state);
    /// Whether a program may have a reference into the value.
    [[nodiscard]] bool IsOwn() const noexcept { return m_pOwn != nullptr; }
    [[nodiscard]] bool IsEmpty() const noexcept { return !m_pOwn && !m_pSnapshot; }

private:
    ElementPtr m_pOwn;
    mutable CSharedRef<CSnapshot> m_pSnapshot;  ///< the value, or a copy of m_pOwn
    mutable std::uint64_t m_nEpoch = 0;         ///< when that copy was made
};
