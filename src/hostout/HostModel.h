// hostmodel: the entities that an import makes, and the group that collects them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "hostout/HostCurves.h"

/// Entity kinds.
enum EntityKind : std::int32_t {
    ENT_PLINE = 1,
    ENT_POINT = 2,
    ENT_CIRCLE = 3,
    ENT_ELLIPSE = 4,
    ENT_TEXT = 5,
    ENT_GROUP = 17
};
/// Further kinds of groups, first and last, that the host makes for purposes of its own.
inline constexpr std::int32_t ENT_HOST_GROUP_FIRST = 21;
inline constexpr std::int32_t ENT_HOST_GROUP_LAST = 25;

/// Flag bits of an entity.
inline constexpr std::uint32_t ENTF_EXPORT = 1;  ///< the entity may be exported

class CEntGroup;

/// Base of the entities. Who owns one: the group that it is inserted in, until the import driver hands it to
/// the host's list, from then on the holder of that list. Release comes before deletion.
class HOST_API CEntity {
public:
    CEntity(const CEntity&) = delete;
    CEntity& operator=(const CEntity&) = delete;
    virtual ~CEntity();

    [[nodiscard]] EntityKind GetKind() const noexcept { return m_nKind; }
    /// Whether the entity is a CEntGroup.
    [[nodiscard]] bool IsGroup() const noexcept {
        return m_nKind == ENT_GROUP || (m_nKind >= ENT_HOST_GROUP_FIRST && m_nKind <= ENT_HOST_GROUP_LAST);
    }
    /// Joins the tail of a group's children, being in no group before. In constant time.
    void InsertToChildTail(CEntGroup* group) noexcept;
    /// Tells the entity that its extents changed, in two passes 0 and 1. This host keeps no extents.
    virtual void UpdateBox(int pass) noexcept;
    /// Moves the entity; the first argument is the host's and has no meaning here. This host moves texts
    /// alone: nothing asks it to move another entity.
    virtual void Transform(int reserved, const TRANSF_2D& map) noexcept;
    /// What the host wants called before an entity is deleted.
    virtual void Release() noexcept;
    /// The one section of a point, circle or ellipse; null for the others, and for a circle or ellipse
    /// without one.
    [[nodiscard]] virtual const CSectObject* GetSection() const noexcept { return nullptr; }

    std::uint32_t m_nColor = 0;  ///< 0x00BBGGRR
    std::uint32_t m_nFlags = ENTF_EXPORT;
    CEntity* m_pNext = nullptr;  ///< next child of the same group

protected:
    explicit CEntity(EntityKind kind) noexcept : m_nKind(kind) {}

private:
    EntityKind m_nKind;
};

/// Releases and deletes an entity that stands in no group.
struct ReleaseEntity {
    void operator()(CEntity* entity) const noexcept {
        entity->Release();
        delete entity;
    }
};
/// An entity and its one owner.
using EntityPtr = std::unique_ptr<CEntity, ReleaseEntity>;

class HOST_API CEntPLine final : public CEntity {
public:
    static void* operator new(std::size_t size);
    static void operator delete(void* p, std::size_t size) noexcept;
    CEntPLine() noexcept : CEntity(ENT_PLINE) {}

    CSectionList m_Sections;
};

class HOST_API CEntPoint final : public CEntity {
public:
    CEntPoint() noexcept : CEntity(ENT_POINT) {}
    [[nodiscard]] const CSectObject* GetSection() const noexcept override { return &m_Section; }

    CSectPoint m_Section;
};

class HOST_API CEntCircle final : public CEntity {
public:
    CEntCircle() noexcept : CEntity(ENT_CIRCLE) {}
    ~CEntCircle() override { delete m_pSection; }
    [[nodiscard]] const CSectObject* GetSection() const noexcept override { return m_pSection; }

    CSectCircle* m_pSection = nullptr;  ///< owned
};

class HOST_API CEntEllipse final : public CEntity {
public:
    CEntEllipse() noexcept : CEntity(ENT_ELLIPSE) {}
    ~CEntEllipse() override { delete m_pSection; }
    [[nodiscard]] const CSectObject* GetSection() const noexcept override { return m_pSection; }

    CSectEllipse* m_pSection = nullptr;  ///< owned
};

/// Alignment codes of a text.
enum TextAlignment : std::int32_t { ALIGN_LEFT = 16, ALIGN_RIGHT = 32, ALIGN_CENTER = 48 };

class HOST_API CEntText final : public CEntity {
public:
    CEntText() noexcept : CEntity(ENT_TEXT) {}
    void Transform(int reserved, const TRANSF_2D& map) noexcept override;

    std::string m_strText;
    std::string m_strFont;
    point_2d m_ptPos;
    float m_fCharWidth = 0;
    float m_fHeight = 0;
    float m_fAngle = 0;  ///< radians, counter-clockwise
    std::int32_t m_nAlignment = ALIGN_LEFT;
};

/// Children in order. Deleting the group leaves them alive: the import driver hands them to the host's list
/// first, and the group is then an empty shell. Who deletes a group with its children calls DeleteChildren
/// before.
class HOST_API CEntGroup final : public CEntity {
public:
    explicit CEntGroup(EntityKind kind = ENT_GROUP) noexcept : CEntity(kind) {}
    [[nodiscard]] CEntity* GetFirstChild() const noexcept { return m_pFirst; }
    [[nodiscard]] std::int64_t GetChildCount() const noexcept { return m_nCount; }
    /// Releases and deletes all children, and those of groups among them.
    void DeleteChildren() noexcept;

private:
    friend class CEntity;
    CEntity* m_pFirst = nullptr;
    CEntity* m_pLast = nullptr;
    std::int64_t m_nCount = 0;
};

/// Makes a text, the caller's. Character width and height are host units, the alignment one of TextAlignment;
/// the reserved arguments are the host's and have no meaning here. Null for an empty text.
[[nodiscard]] HOST_API CEntText* CreateMultiText(const char* text, point_2d position, const char* font, float charWidth,
                                                 float height, int reserved1, int reserved2, int alignment,
                                                 int reserved3);

/// Font parameters of the drawing.
struct tagFontParam {
    char szFont[64];  ///< the default font
};

/// The settings of the drawing.
class HOST_API CDataManager {
public:
    /// Fills in the parameters of new texts.
    void GetDefFontParam(tagFontParam* param) const noexcept;
};
