// The base of every PostScript object, its type and access codes, and who owns an element.
#pragma once

#include <cassert>
#include <cstdint>
#include <memory>

/// Element type codes; the class is fixed by the code.
enum ElementType : std::int32_t {
    ET_RAWTOKEN = -1,    ///< CSimpElement: token text in a procedure body; number or name is told when it runs
    ET_NUMBER = 0,       ///< CNumberElement
    ET_NAME = 1,         ///< CSimpElement
    ET_ARRAY = 2,        ///< CArrayElement; a procedure when executable
    ET_PACKEDARRAY = 3,  ///< CArrayElement
    ET_STRING = 4,       ///< CStringElement
    ET_DICT = 5,         ///< CDictionary
    ET_BOOL = 6,         ///< CBoolElement
    ET_MARK = 7,         ///< CSimpElement
    ET_OPERATOR = 8,     ///< COperatorElement
    ET_NULL = 9,         ///< CNullElement
    ET_FILE = 10,        ///< CFileElement
    ET_SAVE = 11,        ///< CSaveElement
    ET_FILTER = 12,      ///< CFilterElement
    ET_GSTATE = 13,      ///< CGStateElement
    ET_FONTID = 14       ///< CSimpElement: the identifier of the default font
};

/// Access attributes. Recorded and answered by rcheck and wcheck.
/// Departure: no operator refuses a read or a write because of them.
enum AccessAttribute : std::int32_t { ACC_UNLIMITED = 0, ACC_READONLY = 1, ACC_EXECUTEONLY = 2, ACC_NOACCESS = 3 };

class CElement;

/// Drops an element of any type: a number goes back to its pool, any other element is destroyed. Null is fine.
inline void FreeElement(CElement* p) noexcept;

struct FreeElementFn {
    void operator()(CElement* p) const noexcept { FreeElement(p); }
};

/// An element that stands in no container and belongs to the holder of this pointer.
using ElementPtr = std::unique_ptr<CElement, FreeElementFn>;
static_assert(sizeof(ElementPtr) == sizeof(void*));

/// An owned element of a known class. Moves into an ElementPtr.
template <class T>
using TypedPtr = std::unique_ptr<T, FreeElementFn>;

/// A PostScript object. Composite objects share a body (CBody); attributes belong to the element alone.
/// An element has one owner: a stack, an array body, a dictionary node, a graphics state, or an ElementPtr.
class CElement {
public:
    CElement(const CElement&) = delete;
    CElement& operator=(const CElement&) = delete;
    virtual ~CElement() = default;

    /// The answer of gcheck: simple objects are global.
    [[nodiscard]] virtual bool IsGlobal() const = 0;
    /// The answer of eq, and the comparison of dictionary keys that are no texts.
    [[nodiscard]] virtual bool IsEqual(const CElement* pOther) const = 0;
    /// The object copy of PostScript: a new element with the same value that shares the body.
    [[nodiscard]] virtual ElementPtr Clone() const = 0;
    /// A copy with storage of its own. Null when there is no body to copy.
    [[nodiscard]] virtual ElementPtr DeepCopy() const = 0;

    /// Whether this is an array or packed array with the executable attribute: what `if`, the loops and all
    /// other operators that run a procedure accept.
    [[nodiscard]] bool IsProcedure() const noexcept {
        return (m_nType == ET_ARRAY || m_nType == ET_PACKEDARRAY) && m_bExec;
    }
    [[nodiscard]] bool IsArrayKind() const noexcept { return m_nType == ET_ARRAY || m_nType == ET_PACKEDARRAY; }

    std::int32_t m_nType;                    ///< ElementType
    std::int32_t m_nAccess = ACC_UNLIMITED;  ///< AccessAttribute
    bool m_bExec = false;                    ///< the executable attribute
    CElement* m_pNext = nullptr;             ///< towards the top of the stack that holds this element
    CElement* m_pPrev = nullptr;             ///< towards the bottom of that stack
#ifndef NDEBUG
    const void* m_pStack = nullptr;  ///< the stack that holds this element. A linked one is in no ElementPtr
#endif

protected:
    explicit CElement(ElementType type) noexcept : m_nType(type) {}

    /// Gives a copy the attributes of this element.
    template <class T>
    TypedPtr<T> WithAttributes(TypedPtr<T> copy) const noexcept {
        copy->m_bExec = m_bExec;
        copy->m_nAccess = m_nAccess;
        return copy;
    }
};

/// Gives a number back to its pool (objects/Number.h).
void FreeNumber(CElement* number) noexcept;

inline void FreeElement(CElement* p) noexcept {
    if (!p) return;
    assert(!p->m_pStack);
    if (p->m_nType == ET_NUMBER) {
        FreeNumber(p);
    } else {
        delete p;
    }
}

/// The element as one of class T, which says by `static bool IsType(int)` which type codes it stands for.
/// Null for a null element or one of another class.
template <class T>
[[nodiscard]] T* As(CElement* e) noexcept {
    return e && T::IsType(e->m_nType) ? static_cast<T*>(e) : nullptr;
}
template <class T>
[[nodiscard]] const T* As(const CElement* e) noexcept {
    return e && T::IsType(e->m_nType) ? static_cast<const T*>(e) : nullptr;
}

/// Makes an owned element of class T.
template <class T, class... Args>
[[nodiscard]] TypedPtr<T> MakeElement(Args&&... args) {
    return TypedPtr<T>(new T(static_cast<Args&&>(args)...));
}
