// The graphics state: its values at the start, the CTM, the colour, and the elements that programs get of it.
// The path's operations stand beside CPath.
#include "graphics/GraphState.h"

#include <algorithm>
#include <cmath>

#include "graphics/Matrix.h"
#include "objects/Angles.h"
#include "objects/Number.h"
#include "objects/SimpleElements.h"
#include "objects/String.h"

namespace {

constexpr std::string_view kColorSpaceNames[] = {"DeviceGray", "DeviceRGB", "DeviceCMYK", "Pattern"};

ElementPtr NewPackedIntegers(std::initializer_list<std::int32_t> values, bool executable) {
    std::vector<ElementPtr> elements;
    for (const std::int32_t value : values) elements.push_back(NewInt(value));
    auto array = MakeElement<CArrayElement>(std::move(elements));
    array->m_nType = ET_PACKEDARRAY;
    array->m_bExec = executable;
    return array;
}

/// The font before any setfont: a Type 3 font without glyphs, so that text in it draws nothing.
TypedPtr<CDictionary> NewStartFont() {
    const CBodyPlaceScope global(PLACE_GLOBAL);
    auto font = MakeElement<CDictionary>(8);
    font->Put("FontName", MakeElement<CStringElement>(std::string_view()));
    font->Put("FontType", NewInt(3));
    font->Put("PaintType", NewInt(0));
    font->Put("FontID", MakeElement<CSimpElement>("FontID", ET_FONTID));
    font->Put("FontBBox", NewPackedIntegers({0, 0, 0, 0}, true));
    font->Put("FontMatrix", NewPackedIntegers({1, 0, 1, 0, 1, 0}, false));  // Departure: not the identity
    return font;
}

TypedPtr<CArrayElement> NewNameArray(std::int32_t kind) {
    std::vector<ElementPtr> elements;
    elements.push_back(MakeElement<CSimpElement>(ColorSpaceName(kind)));
    return MakeElement<CArrayElement>(std::move(elements));
}

}  // namespace

const CName* ColorSpaceName(std::int32_t kind) { return InternName(kColorSpaceNames[kind]); }

std::int32_t ColorKindOf(const CName* name) {
    const auto* found = std::find(std::begin(kColorSpaceNames), std::end(kColorSpaceNames), name->Text());
    return found == std::end(kColorSpaceNames) ? -1 : static_cast<std::int32_t>(found - kColorSpaceNames);
}

void CGraphState::InitDefaults() {
    m_pFont.Set(NewStartFont());
    m_pDevice = CDeviceCell(CDeviceParameters::Defaults());
}

// CTM

void CGraphState::ResetCTM() noexcept { MatIdentity(m_CTM); }

void CGraphState::GetCTM3x3(double m[9]) const noexcept { std::copy_n(m_CTM, 9, m); }

void CGraphState::GetCTM(double six[6]) const noexcept { MatToArray6(m_CTM, six); }

void CGraphState::SetCTM(const double six[6]) noexcept { MatFromArray6(six, m_CTM); }

void CGraphState::Translate(double tx, double ty) noexcept {
    const double six[6] = {1, 0, 0, 1, tx, ty};
    Concat(six);
}

void CGraphState::Scale(double sx, double sy) noexcept {
    const double six[6] = {sx, 0, 0, sy, 0, 0};
    Concat(six);
}

void CGraphState::Rotate(double angle) noexcept {
    const double r = angle * SINGLE_PI / 180.0;  // `rotate` with a matrix operand has another constant
    const double six[6] = {std::cos(r), std::sin(r), -std::sin(r), std::cos(r), 0, 0};
    Concat(six);
}

void CGraphState::Concat(const double six[6]) noexcept {
    double m[9];
    MatFromArray6(six, m);
    MatConcat(m_CTM, m);
}

void CGraphState::TransformPoints(int n, double* pts) const noexcept { MatTransform(n, pts, m_CTM); }

void CGraphState::DTransformPoints(int n, double* pts) const noexcept { MatDTransform(n, pts, m_CTM); }

void CGraphState::ITransformPoints(int n, double* pts) const noexcept { MatITransform(n, pts, m_CTM); }

void CGraphState::IDTransformPoints(int n, double* pts) const noexcept { MatIDTransform(n, pts, m_CTM); }

void CGraphState::TransformPathPoints(int n, point_2d* pts) const noexcept {
    for (point_2d* const end = pts + n; pts != end; ++pts) {
        double pair[2] = {pts->x, pts->y};
        MatTransform(1, pair, m_CTM);
        pts->x = static_cast<float>(pair[0]);
        pts->y = static_cast<float>(pair[1]);
    }
}

// Colour

void CGraphState::GetRGBColor(float rgb[3]) const noexcept {
    switch (m_nColorKind) {
        case COLOR_RGB:
            std::copy_n(m_fRGB, 3, rgb);
            break;
        case COLOR_CMYK:
            for (int i = 0; i < 3; ++i) {
                const float ink = m_fCMYK[i] + m_fCMYK[3];
                rgb[i] = 1.0F > ink ? 1.0F - ink : 0.0F;
            }
            break;
        default:
            std::fill_n(rgb, 3, m_fGray);
    }
}

void CGraphState::SetColorKind(std::int32_t kind) {
    if (kind == m_nColorKind) return;
    if (m_pColorSpace.IsEmpty()) {
        m_nColorKind = kind;
        return;
    }
    const CArrayElement* known = PeekColorSpace();
    if (known->GetLength() != 1) {
        SetNamedColorSpace(kind);
        return;
    }
    m_nColorKind = kind;
    if (!m_pColorSpace.IsOwn() && !known->m_bExec && known->m_nAccess == ACC_UNLIMITED) {
        m_pColorSpace = CStateCell();  // the array of the one name again
    } else {
        GetColorSpace()->SetAt(0, MakeElement<CSimpElement>(ColorSpaceName(kind)));
    }
}

void CGraphState::SetColorSpace(TypedPtr<CArrayElement> p) {
    const auto* name = As<CSimpElement>(p->GetAt(0));
    const std::int32_t kind = name ? ColorKindOf(name->m_pName) : -1;
    if (kind >= 0) m_nColorKind = kind;
    m_pColorSpace.Set(std::move(p));
}

void CGraphState::SetNamedColorSpace(std::int32_t kind) {
    m_nColorKind = kind;
    m_pColorSpace = CStateCell();
    // An array that is made when the program asks for it stands where the state stands.
    if (!StandsAtCurrentPlace()) m_pColorSpace.Set(NewNameArray(kind));
}

CArrayElement* CGraphState::GetColorSpace() {
    if (m_pColorSpace.IsEmpty()) {
        const CBodyPlaceScope place(PlaceOf(*this));
        m_pColorSpace.Set(NewNameArray(m_nColorKind));
    }
    return As<CArrayElement>(m_pColorSpace.Expose(*this));
}

// Other elements

void CGraphState::ClearDash() {
    m_pDash = CStateCell();
    if (!StandsAtCurrentPlace()) m_pDash.Set(MakeElement<CArrayElement>(0));
}

CArrayElement* CGraphState::GetDash() {
    if (m_pDash.IsEmpty()) {
        const CBodyPlaceScope place(PlaceOf(*this));
        m_pDash.Set(MakeElement<CArrayElement>(0));
    }
    return As<CArrayElement>(m_pDash.Expose(*this));
}

CElement* CGraphState::GetDeviceElement(CStateCell CDeviceParameters::*cell) {
    return (ChangeDevice().*cell).Expose(*this);
}

CElement* CGraphState::GetDeviceElement(CStateCell (CDeviceParameters::*cells)[4], int i) {
    return (ChangeDevice().*cells)[i].Expose(*this);
}

bool CGraphState::StandsAtCurrentPlace() const noexcept { return PlaceOf(*this) == CurrentPlace(); }
