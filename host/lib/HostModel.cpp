// hostmodel: entities and their group.
#include "hostout/HostModel.h"

#include <memory>

#include "lib/Cells.h"

CEntity::~CEntity() = default;

void CEntity::InsertToChildTail(CEntGroup* group) noexcept {
    m_pNext = nullptr;
    (group->m_pLast ? group->m_pLast->m_pNext : group->m_pFirst) = this;
    group->m_pLast = this;
    ++group->m_nCount;
}

void CEntity::UpdateBox(int) noexcept {}

void CEntity::Transform(int, const TRANSF_2D&) noexcept {}

void CEntity::Release() noexcept {}

void* CEntPLine::operator new(std::size_t size) { return CCells<CEntPLine>::Take(size); }

void CEntPLine::operator delete(void* p, std::size_t size) noexcept { CCells<CEntPLine>::Give(p, size); }

void CEntText::Transform(int, const TRANSF_2D& map) noexcept {
    m_ptPos = map.Map(m_ptPos);
    m_fAngle += static_cast<float>(map.GetRotation());
}

void CEntGroup::DeleteChildren() noexcept {
    while (CEntity* child = m_pFirst) {
        m_pFirst = child->m_pNext;
        if (child->IsGroup()) {
            // Its children go to the front of the list, so that nested groups cost no recursion.
            auto* group = static_cast<CEntGroup*>(child);
            if (group->m_pLast) {
                group->m_pLast->m_pNext = m_pFirst;
                m_pFirst = group->m_pFirst;
            }
        }
        child->Release();
        delete child;
    }
    m_pLast = nullptr;
    m_nCount = 0;
}

CEntText* CreateMultiText(const char* text, point_2d position, const char* font, float charWidth, float height, int,
                          int, int alignment, int) {
    if (!text || *text == '\0') return nullptr;
    auto entity = std::make_unique<CEntText>();
    entity->m_strText = text;
    entity->m_strFont = font ? font : "";
    entity->m_ptPos = position;
    entity->m_fCharWidth = charWidth;
    entity->m_fHeight = height;
    entity->m_nAlignment = alignment;
    return entity.release();
}
