// The dictionary stack. It numbers what stands on it, so that a name can keep what it means.
#pragma once

#include <vector>

#include "interp/ElementStack.h"
#include "objects/Dictionary.h"

/// Owns the dictionaries that stand on it.
///
/// Its shape is a number for the bodies that stand on it, in their order. A dictionary that is put on a stack of some
/// shape makes the shape that it made there before, if its body remembers; else one that never was. So the entry that a
/// name was found in under a shape is what it means whenever the shape is the same, as long as no dictionary has got
/// or lost that key (CName::ForgetMeanings).
class CDictStack : private CElementStack {
public:
    using CElementStack::AtFromBottom;
    using CElementStack::Bottom;
    using CElementStack::GetCount;
    using CElementStack::Top;

    [[nodiscard]] DictStackShape Shape() const noexcept { return m_nShape; }
    void Push(TypedPtr<CDictionary> dict) {
        m_ShapesBelow.push_back(m_nShape);
        m_nShape = ShapeWith(*dict);
        CElementStack::Push(std::move(dict));
    }
    /// A copy of an object that is a dictionary.
    void PushCopy(const CElement& dict) {
        ElementPtr copy = dict.Clone();
        assert(As<CDictionary>(copy.get()));
        Push(TypedPtr<CDictionary>(static_cast<CDictionary*>(copy.release())));
    }
    /// There must be one.
    void Pop() noexcept {
        m_nShape = m_ShapesBelow.back();
        m_ShapesBelow.pop_back();
        CElementStack::Pop();
    }
    /// The entry of a name, from the top: null when no dictionary has it.
    [[nodiscard]] const CDictNode* Find(const CName* name) const {
        const CDictNode* known = name->Meaning(m_nShape);
        assert(!known || known == Search(name));
        return known ? known : SearchAndRemember(name);
    }
    /// The elements alone, from the bottom by m_pNext.
    [[nodiscard]] const CElementStack& Elements() const noexcept { return *this; }

private:
    [[nodiscard]] DictStackShape ShapeWith(const CDictionary& dict) noexcept;
    [[nodiscard]] const CDictNode* Search(const CName* name) const;
    [[nodiscard]] const CDictNode* SearchAndRemember(const CName* name) const;

    DictStackShape m_nShape = 1;  ///< of the empty stack
    DictStackShape m_nLastShape = 1;
    std::vector<DictStackShape> m_ShapesBelow;  ///< that of each stack from the empty one up to below the top
};
