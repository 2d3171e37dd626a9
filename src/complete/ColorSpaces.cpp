// From the components of any colour space to those of a device space. Spaces that stand on another one (Indexed,
// Separation, DeviceN) go on to it; how deep they may stand on each other is bounded.
#include "complete/ColorSpaces.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "interp/FilterEPS.h"

namespace {

using Numbers = std::vector<double>;

/// How many spaces may stand on each other.
constexpr int MAX_SPACE_DEPTH = 8;

std::string_view FamilyOf(const CElement* space) {
    const auto* array = As<CArrayElement>(space);
    const auto* name = As<CSimpElement>(array ? array->GetAt(0) : space);
    return name ? name->m_pName->Text() : std::string_view();
}

const CElement* EntryOf(const CElement* space, std::int32_t index) {
    const auto* array = As<CArrayElement>(space);
    return array ? array->GetAt(index) : nullptr;
}

/// A number of an array in a dictionary; the default where there is none.
double NumberAt(const CDictionary* dict, std::string_view key, std::int32_t index, double otherwise) {
    const auto* array = dict ? As<CArrayElement>(dict->GetValue(key)) : nullptr;
    const auto* number = array ? As<CNumberElement>(array->GetAt(index)) : nullptr;
    return number && std::isfinite(number->GetReal()) ? number->GetReal() : otherwise;
}

/// The space and the range entry of the CIE-based families.
struct CieFamily {
    std::string_view name;
    int components;
    std::string_view range;
};

constexpr CieFamily kCieFamilies[] = {
    {"CIEBasedA", 1, "RangeA"},       {"CIEBasedABC", 3, "RangeABC"}, {"CIEBasedDEF", 3, "RangeDEF"},
    {"CIEBasedDEFG", 4, "RangeDEFG"}, {"CalGray", 1, "Range"},        {"CalRGB", 3, "Range"},
};

const CieFamily* FindCieFamily(std::string_view name) {
    const auto* found = std::find_if(std::begin(kCieFamilies), std::end(kCieFamilies),
                                     [&](const CieFamily& f) { return f.name == name; });
    return found != std::end(kCieFamilies) ? found : nullptr;
}

std::int32_t KindOfCount(std::size_t count) { return count == 4 ? COLOR_CMYK : count == 3 ? COLOR_RGB : COLOR_GRAY; }

/// The least and greatest value of a component: what a byte of a lookup table stretches over.
std::pair<double, double> RangeOf(const CElement* space, std::int32_t component) {
    const std::string_view family = FamilyOf(space);
    const auto* dict = As<CDictionary>(EntryOf(space, 1));
    if (family == "Lab") {
        if (component == 0) return {0, 100};
        const std::int32_t at = 2 * (component - 1);
        return {NumberAt(dict, "Range", at, -100), NumberAt(dict, "Range", at + 1, 100)};
    }
    const CieFamily* cie = FindCieFamily(family);
    const std::string_view key = cie ? cie->range : family == "ICCBased" ? "Range" : "";
    if (key.empty()) return {0, 1};
    return {NumberAt(dict, key, 2 * component, 0), NumberAt(dict, key, 2 * component + 1, 1)};
}

DeviceColor Device(const Numbers& components) {
    DeviceColor color{.kind = KindOfCount(components.size())};
    for (std::size_t i = 0; i < std::min(components.size(), color.components.size()); ++i) {
        color.components[i] = static_cast<float>(std::clamp(components[i], 0.0, 1.0));
    }
    return color;
}

/// Components brought to 0 to 1 by their ranges.
DeviceColor ByRanges(const CElement& space, Numbers components) {
    for (std::size_t i = 0; i < components.size(); ++i) {
        const auto [least, greatest] = RangeOf(&space, static_cast<std::int32_t>(i));
        components[i] = greatest > least ? (components[i] - least) / (greatest - least) : 0;
    }
    return Device(components);
}

/// CIE L*a*b* by its definition to XYZ, and on to sRGB (IEC 61966-2-1).
DeviceColor LabColor(const Numbers& lab) {
    const auto decode = [](double t) {
        constexpr double delta = 6.0 / 29;
        return t > delta ? t * t * t : 3 * delta * delta * (t - 4.0 / 29);
    };
    const double m = (lab[0] + 16) / 116;
    // Relative to the white of the space, seen as the white of sRGB (D65).
    const double x = 0.9505 * decode(m + lab[1] / 500);
    const double y = decode(m);
    const double z = 1.0890 * decode(m - lab[2] / 200);
    const auto encode = [](double v) { return v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1 / 2.4) - 0.055; };
    return Device({encode(3.2406 * x - 1.5372 * y - 0.4986 * z), encode(-0.9689 * x + 1.8758 * y + 0.0415 * z),
                   encode(0.0557 * x - 0.2040 * y + 1.0570 * z)});
}

/// Runs a lookup or tint transform over components and takes what it leaves.
int Transform(CFilterEPS& m, const CElement* procedure, const Numbers& inputs, int outputs, Numbers& result) {
    if (!procedure || !procedure->IsProcedure()) return m.Fail(PSERR_TYPECHECK);
    const ElementPtr kept = procedure->Clone();
    for (const double input : inputs) m.PushReal(input);
    if (m.ExecuteProcedure(static_cast<const CArrayElement*>(kept.get())) != 1) return -1;
    result.assign(static_cast<std::size_t>(outputs), 0);
    for (int i = outputs; i-- > 0;) {
        const ElementPtr value = m.Pop();
        if (!value) return m.Fail(PSERR_STACKUNDERFLOW);
        const auto* number = As<CNumberElement>(value.get());
        if (!number) return m.Fail(PSERR_TYPECHECK);
        result[static_cast<std::size_t>(i)] = number->GetReal();
    }
    return 1;
}

int Find(CFilterEPS& m, const CElement& space, const Numbers& components, DeviceColor& color, int depth);

/// [/Indexed base hival lookup]: the lookup is a string of bytes or a procedure.
int FindIndexed(CFilterEPS& m, const CElement& space, double index, DeviceColor& color, int depth) {
    const CElement* base = EntryOf(&space, 1);
    const auto* greatest = As<CNumberElement>(EntryOf(&space, 2));
    const CElement* lookup = EntryOf(&space, 3);
    const int count = ComponentsOf(base);
    if (!greatest || !lookup || count == 0) return m.Fail(PSERR_TYPECHECK);
    const double at = std::clamp(std::isfinite(index) ? std::floor(index) : 0.0, 0.0,
                                 static_cast<double>(std::max(greatest->GetInt(), 0)));
    const ElementPtr kept = base->Clone();
    Numbers components;
    if (const auto* table = As<CStringElement>(lookup)) {
        const std::string_view bytes = table->Bytes();
        for (int i = 0; i < count; ++i) {
            const auto place =
                static_cast<std::size_t>(at) * static_cast<std::size_t>(count) + static_cast<std::size_t>(i);
            if (place >= bytes.size()) return m.Fail(PSERR_RANGE);
            const auto [low, high] = RangeOf(base, i);
            components.push_back(low + (high - low) * static_cast<unsigned char>(bytes[place]) / 255);
        }
    } else if (Transform(m, lookup, {at}, count, components) != 1) {
        return -1;
    }
    return Find(m, *kept, components, color, depth + 1);
}

/// [/Separation name alternative tint] and [/DeviceN names alternative tint].
int FindTinted(CFilterEPS& m, const CElement& space, const Numbers& tints, DeviceColor& color, int depth) {
    const CElement* alternative = EntryOf(&space, 2);
    const int count = ComponentsOf(alternative);
    if (count == 0) return m.Fail(PSERR_TYPECHECK);
    const ElementPtr kept = alternative->Clone();  // the transform may change the array
    Numbers components;
    if (Transform(m, EntryOf(&space, 3), tints, count, components) != 1) return -1;
    return Find(m, *kept, components, color, depth + 1);
}

int Find(CFilterEPS& m, const CElement& space, const Numbers& components, DeviceColor& color, int depth) {
    if (depth > MAX_SPACE_DEPTH) return m.Fail(PSERR_RANGE, "limitcheck");
    const std::string_view family = FamilyOf(&space);
    if (family == "Indexed") return FindIndexed(m, space, components[0], color, depth);
    if (family == "Separation" || family == "DeviceN") return FindTinted(m, space, components, color, depth);
    if (family == "ICCBased") {
        const auto* dict = As<CDictionary>(EntryOf(&space, 1));
        const CElement* alternate = dict ? dict->GetValue("Alternate") : nullptr;
        if (alternate && ComponentsOf(alternate) == static_cast<int>(components.size())) {
            const ElementPtr kept = alternate->Clone();
            return Find(m, *kept, components, color, depth + 1);
        }
    }
    color = family == "Lab" ? LabColor(components) : ByRanges(space, components);
    return 1;
}

}  // namespace

int ComponentsOf(const CElement* space, int depth) {
    const std::string_view family = FamilyOf(space);
    constexpr std::pair<std::string_view, int> families[] = {
        {"DeviceGray", 1}, {"DeviceRGB", 3}, {"DeviceCMYK", 4}, {"Indexed", 1}, {"Separation", 1}, {"Lab", 3},
    };
    for (const auto& [known, count] : families) {
        if (family == known) return count;
    }
    if (const CieFamily* cie = FindCieFamily(family)) return cie->components;
    const CElement* second = EntryOf(space, 1);
    if (family == "DeviceN") {
        const auto* names = As<CArrayElement>(second);
        return names ? names->GetLength() : 0;
    }
    if (family == "ICCBased") {
        const auto* dict = As<CDictionary>(second);
        const auto* count = dict ? As<CNumberElement>(dict->GetValue("N")) : nullptr;
        if (count) return count->GetInt() == 1 || count->GetInt() == 3 || count->GetInt() == 4 ? count->GetInt() : 0;
        return dict && depth == 0 ? ComponentsOf(dict->GetValue("Alternate"), depth + 1) : 0;
    }
    return 0;
}

int FindDeviceColor(CFilterEPS& m, const CElement& space, const std::vector<double>& components, DeviceColor& color) {
    return Find(m, space, components, color, 0);
}

std::vector<double> InitialComponents(const CElement& space) {
    const std::string_view family = FamilyOf(&space);
    const double first = family == "Separation" || family == "DeviceN" ? 1 : 0;
    std::vector<double> components(static_cast<std::size_t>(ComponentsOf(&space)), first);
    for (std::size_t i = 0; first == 0 && family != "Indexed" && i < components.size(); ++i) {
        // Zero, or what of the range comes nearest.
        const auto [least, greatest] = RangeOf(&space, static_cast<std::int32_t>(i));
        components[i] = std::max(least, std::min(0.0, greatest));
    }
    return components;
}
