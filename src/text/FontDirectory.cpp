// The one user of the font directories, beside the start-up that makes them. Departure: fonts are found in the local
// directory alone, into which global ones are entered as well.
#include "text/FontDirectory.h"

void EnterFont(CFilterEPS& m, const CName* key, const CElement& font) {
    if (font.IsGlobal()) {
        EnterFontEverywhere(m, key, font);
    } else {
        EnterLocalFont(m, key, font);
    }
}

void EnterLocalFont(CFilterEPS& m, const CName* key, const CElement& font) {
    m.m_pFontDirectory->Put(key, font.Clone());
}

void EnterFontEverywhere(CFilterEPS& m, const CName* key, const CElement& font) {
    EnterLocalFont(m, key, font);
    m.m_pSharedFontDirectory->Put(key, font.Clone());
}

void RemoveFont(CFilterEPS& m, const CName* key) {
    m.m_pFontDirectory->Remove(key);
    m.m_pSharedFontDirectory->Remove(key);
}

const CElement* EnteredFont(const CFilterEPS& m, const CName* key) { return m.m_pFontDirectory->GetValue(key); }

ElementPtr FindFont(CFilterEPS& m, const CName* key) {
    const CElement* entered = EnteredFont(m, key);
    return entered ? entered->Clone() : m.Dialect().FindUndefinedFont(m, key);
}
