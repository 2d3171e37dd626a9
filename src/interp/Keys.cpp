// Reaching the two key spaces of a dictionary.
#include "interp/Keys.h"

std::uint32_t g_nKeyLimit = MAX_KEY_LENGTH;

const CElement* CKey::FindIn(const CDictionary& dict) const {
    if (m_pName) return dict.GetValue(m_pName);
    const CDictNode2* node = dict.FindOther(m_pOther);
    return node ? node->GetValue() : nullptr;
}

bool CKey::IsIn(const CDictionary& dict) const {
    return m_pName ? dict.Find(m_pName) != nullptr : dict.FindOther(m_pOther) != nullptr;
}

bool CKey::ReplaceIn(CDictionary& dict, ElementPtr& value) const {
    if (!IsIn(dict)) return false;
    PutIn(dict, std::move(value));
    return true;
}

void CKey::RemoveFrom(CDictionary& dict) const {
    if (m_pName) {
        dict.Remove(m_pName);
    } else {
        dict.RemoveOther(m_pOther);
    }
}
