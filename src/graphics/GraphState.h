// CGraphState, the graphics state: what `gsave` copies and `grestore` brings back.
//
// Only the CTM, the path, the colour and the font of Type 3 text reach what is drawn; all other parameters
// are kept so that programs can set and ask them.
#pragma once

#include <cstdint>
#include <memory>

#include "graphics/DeviceParameters.h"
#include "graphics/PathStore.h"
#include "graphics/StateCell.h"
#include "objects/Array.h"
#include "objects/Body.h"
#include "objects/Dictionary.h"
#include "objects/Pooled.h"

/// What a dialect with clips has of the current one. Only that dialect knows what is in it.
struct tagClip;

/// Kinds of colour space.
enum ColorKind : std::int32_t { COLOR_GRAY = 0, COLOR_RGB = 1, COLOR_CMYK = 2, COLOR_PATTERN = 3 };

/// The family name of a kind: DeviceGray, DeviceRGB, DeviceCMYK or Pattern.
[[nodiscard]] const CName* ColorSpaceName(std::int32_t kind);
/// The kind of a family name, or -1.
[[nodiscard]] std::int32_t ColorKindOf(const CName* name);

/// The parameters that make up a state. A copy shares nothing with its source that a program could see.
class CGraphParameters {
public:
    float m_fLineWidth = 0;  ///< user space units, as everything up to the dash offset
    std::int32_t m_nLineCap = 0;
    std::int32_t m_nLineJoin = 0;
    float m_fMiterLimit = 0;
    std::int32_t m_bStrokeAdjust = 0;
    float m_fDashOffset = 0;
    std::int32_t m_nColorKind = COLOR_GRAY;
    // Each store keeps what its own operators set; nothing is converted from one to another.
    float m_fGray = 0;
    float m_fRGB[3] = {};
    float m_fHSB[3] = {};
    float m_fCMYK[4] = {};
    double m_CTM[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};  ///< user space to device space, whose unit is 1/72 inch
    CPath m_Path;                                   ///< host units
    std::shared_ptr<const tagClip> m_pClip;         ///< null at the start, and where the dialect has no clips

protected:
    CStateCell m_pDash;        ///< empty: an empty array that no program knows yet
    CStateCell m_pColorSpace;  ///< empty: the array of the one name of m_nColorKind, which no program knows yet
    CStateCell m_pPatternColor;
    CStateCell m_pFont;
    CDeviceCell m_pDevice;
};

/// The body of a graphics state object.
///
/// A getter of a composite parameter gives the state's own element, whose Clone may go to the program. It is
/// null when there is none; an element whose storage went with a `restore` reads as empty. The peeks cost
/// nothing, but what they give is only to look at: neither it nor anything inside may be pushed, stored or
/// executed.
class CGraphState final : public CBody, public CGraphParameters, public CPooled<CGraphState> {
public:
    /// All zero but for the flatness, the smoothness and the identity CTM; no elements.
    CGraphState() : CBody(BK_GSTATE) {}

    /// Gives a new state the values of the start.
    void InitDefaults();
    /// Makes this new state a copy of p: nothing that a program can reach through one state is reachable
    /// through the other, save what deep copies of dictionaries share, their inner dictionaries.
    void CopyFrom(const CGraphState* p) { CGraphParameters::operator=(*p); }

    // The CTM.
    void ResetCTM() noexcept;
    void GetCTM3x3(double m[9]) const noexcept;
    void GetCTM(double six[6]) const noexcept;
    void SetCTM(const double six[6]) noexcept;
    // These put their matrix in front: CTM becomes M times CTM.
    void Translate(double tx, double ty) noexcept;
    void Scale(double sx, double sy) noexcept;
    void Rotate(double angle) noexcept;  ///< degrees
    void Concat(const double six[6]) noexcept;
    void TransformPoints(int n, double* pts) const noexcept;
    void DTransformPoints(int n, double* pts) const noexcept;
    void ITransformPoints(int n, double* pts) const noexcept;
    void IDTransformPoints(int n, double* pts) const noexcept;
    /// Computed in double, each coordinate rounded to float as it is stored.
    void TransformPathPoints(int n, point_2d* pts) const noexcept;

    // The path; defined beside CPath.
    /// The only writer of records. 'C' takes three points, the other letters one. What doesn't fit is
    /// dropped.
    void AddPathPoint(const point_2d* points, std::uint16_t nOp);
    void ClearPath() noexcept;
    [[nodiscard]] std::int32_t GetPathCount() const noexcept;
    /// 1, or 0 when index is out of range.
    [[nodiscard]] int GetPathRecord(std::int32_t index, tagPLPoint& record) const noexcept;
    /// 1, or 0 on an empty path.
    [[nodiscard]] int GetLastPoint(point_2d& point) const noexcept;
    /// The last 'm'. 1, or 0 and point as it was.
    [[nodiscard]] int GetSubpathStart(point_2d& point) const noexcept;
    [[nodiscard]] std::int32_t CountSubpathRecords() const noexcept;
    /// Minimum and maximum over all records, control points too. 1, or 0 with fewer than two records.
    [[nodiscard]] int GetPathBounds(point_2d box[2]) const noexcept;

    // Colour.
    /// The colour as painted, components as the program gave them. Departure: a pattern paints in the last
    /// gray.
    void GetRGBColor(float rgb[3]) const noexcept;
    /// Makes the colour space that of a device kind (not COLOR_PATTERN). The colour values stay.
    void SetColorKind(std::int32_t kind);
    /// Takes the array over. The kind follows its first element, and stays with a name it doesn't know.
    void SetColorSpace(TypedPtr<CArrayElement> p);
    /// SetColorSpace of a new array of the one name of a kind.
    void SetNamedColorSpace(std::int32_t kind);
    /// Never null.
    [[nodiscard]] CArrayElement* GetColorSpace();
    /// Null also stands for the array of the one name of the current kind.
    [[nodiscard]] const CArrayElement* PeekColorSpace() const { return As<CArrayElement>(m_pColorSpace.Peek()); }
    /// The pattern dictionary, then the colour operands for the underlying space.
    void SetPatternColor(TypedPtr<CArrayElement> p) noexcept { m_pPatternColor.Set(std::move(p)); }
    [[nodiscard]] CArrayElement* GetPatternColor() { return As<CArrayElement>(m_pPatternColor.Expose(*this)); }

    void SetDash(TypedPtr<CArrayElement> p) noexcept { m_pDash.Set(std::move(p)); }
    /// SetDash of a new empty array.
    void ClearDash();
    /// Never null.
    [[nodiscard]] CArrayElement* GetDash();

    void SetFont(TypedPtr<CDictionary> p) noexcept { m_pFont.Set(std::move(p)); }
    /// Makes an object of a font that the program goes on changing the font of this state and its copies, where the
    /// dialect has fonts so: then PeekFont, not GetFont, gives it.
    void SetLiveFont(TypedPtr<CDictionary> p) { m_pFont.SetLive(std::move(p)); }
    [[nodiscard]] CDictionary* GetFont() { return As<CDictionary>(m_pFont.Expose(*this)); }
    [[nodiscard]] const CDictionary* PeekFont() const { return As<CDictionary>(m_pFont.Peek()); }

    // Device parameters.
    [[nodiscard]] const CDeviceParameters& GetDevice() const noexcept { return m_pDevice.Get(); }
    /// For writing; the reference is good until the state is copied.
    [[nodiscard]] CDeviceParameters& ChangeDevice() { return m_pDevice.Change(); }
    [[nodiscard]] CElement* GetDeviceElement(CStateCell CDeviceParameters::*cell);
    [[nodiscard]] CElement* GetDeviceElement(CStateCell (CDeviceParameters::*cells)[4], int i);

    bool m_bPrivate = false;  ///< only the graphics state stack refers to this state

private:
    [[nodiscard]] bool StandsAtCurrentPlace() const noexcept;
};
