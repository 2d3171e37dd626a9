// The page device (PLRM, Device Control). CFilterEPS::m_pPageDevice holds what the program has set.
//
// Departure: the device is not a part of the graphics state. A restore takes back what was set, a grestore does not.
#include "complete/DeviceOperators.h"

#include <iterator>
#include <string_view>
#include <vector>

#include "complete/CompleteDialect.h"
#include "complete/PathBridge.h"
#include "interp/Keys.h"
#include "interp/Operands.h"

namespace {

constexpr std::string_view PAGE_SIZE = "PageSize";
constexpr std::string_view POLICIES = "Policies";

/// Why a page ends (PLRM, EndPage).
enum class PageEnd : std::int32_t { shown = 0, copied = 1, deviceLeft = 2 };

/// Width and height, both above zero. PSERR_NONE, PSERR_TYPECHECK, PSERR_RANGE.
ErrorCode ReadPageSize(const CElement& e, geometry::Box& page) {
    std::vector<double> size;
    if (!e.IsArrayKind() || ReadNumbers(e, size) != PSERR_NONE || size.size() != 2) return PSERR_TYPECHECK;
    if (!(size[0] > 0 && size[1] > 0)) return PSERR_RANGE;
    page = {0, 0, size[0], size[1]};
    return PSERR_NONE;
}

/// Tests a request: PSERR_NONE, PSERR_TYPECHECK, PSERR_RANGE.
ErrorCode TestRequest(const CDictionary& request) {
    for (const std::string_view key : {"Install", "BeginPage", "EndPage"}) {
        const CElement* procedure = request.GetValue(key);
        if (procedure && !procedure->IsProcedure()) return PSERR_TYPECHECK;
    }
    const CElement* size = request.GetValue(PAGE_SIZE);
    geometry::Box page;
    return size && size->m_nType != ET_NULL ? ReadPageSize(*size, page) : PSERR_NONE;
}

/// Runs a procedure of the device, if the program has set it. 1 or -1.
int RunProcedure(CFilterEPS& m, std::string_view key) {
    const auto* found = As<CArrayElement>(m.m_pPageDevice->GetValue(key));
    if (!found || !found->IsProcedure()) return 1;
    const ElementPtr procedure = found->Clone();
    return m.ExecuteProcedure(static_cast<const CArrayElement*>(procedure.get()));
}

int BeginPage(CFilterEPS& m) {
    if (!m.m_pPageDevice->Find("BeginPage")) return 1;
    m.PushInt(CCompleteDialect::Of(m).PageCount());
    return RunProcedure(m, "BeginPage");
}

int EndPage(CFilterEPS& m, PageEnd reason) {
    std::int32_t& count = CCompleteDialect::Of(m).PageCount();
    bool isShown = reason != PageEnd::deviceLeft;
    if (m.m_pPageDevice->Find("EndPage")) {
        m.PushInt(count);
        m.PushInt(static_cast<std::int32_t>(reason));
        if (RunProcedure(m, "EndPage") != 1) return -1;
        Operands in(m);
        isShown = in.Bool(0);
        if (!in) return -1;
        m.Drop(1);
    }
    if (isShown) ++count;
    return 1;
}

/// The device with another request in it; what a dictionary of policies doesn't name stays.
void Merge(CDictionary& device, const CDictionary& request) {
    const auto* policies = As<CDictionary>(device.GetValue(POLICIES));
    const auto* asked = As<CDictionary>(request.GetValue(POLICIES));
    TypedPtr<CDictionary> merged{nullptr};
    if (policies && asked) {
        merged = MakeElement<CDictionary>(policies->GetCount() + asked->GetCount());
        static_cast<void>(policies->CopyTo(merged.get()));
        static_cast<void>(asked->CopyTo(merged.get()));
    }
    static_cast<void>(request.CopyTo(&device));
    if (merged) device.Put(POLICIES, std::move(merged));
}

int Reset(CFilterEPS& m) {
    if (RunProcedure(m, "Install") != 1) return -1;
    LeaveNowhere(m);
    if (m.ExecuteOperator("initgraphics") != 1) return -1;
    CCompleteDialect::Of(m).PageCount() = 0;
    return BeginPage(m);
}

// dict  setpagedevice  -                     stackunderflow typecheck rangecheck
int OpSetpagedevice(CFilterEPS& m) {
    Operands in(m);
    const CDictionary* dict = in.Dict(0);
    if (!in) return -1;
    if (const ErrorCode error = TestRequest(*dict); error != PSERR_NONE) return m.Fail(error);
    const auto request = Take<CDictionary>(m);
    if (EndPage(m, PageEnd::deviceLeft) != 1) return -1;
    Merge(*m.m_pPageDevice, *request);
    return Reset(m);
}

// width height  .setpagesize  -              stackunderflow typecheck rangecheck
// What the procedures named after papers do.
int OpSetpagesize(CFilterEPS& m) {
    Operands in(m);
    const double height = in.Real(0);
    const double width = in.Real(1);
    in.Require(width > 0 && height > 0, PSERR_RANGE);
    if (!in) return -1;
    std::vector<ElementPtr> size;
    size.push_back(m.m_OperandStack.AtFromTop(1)->Clone());
    size.push_back(m.m_OperandStack.Top()->Clone());
    m.Drop(2);
    m.m_pPageDevice->Put(PAGE_SIZE, MakeElement<CArrayElement>(std::move(size)));
    return Reset(m);
}

// What a device answers that nobody has told anything (PLRM, Page Device Parameters).
constexpr std::string_view kOff[] = {"AntiAlias",   "Collate",       "Duplex",      "ManualFeed",
                                     "MirrorPrint", "NegativePrint", "Separations", "Trapping",
                                     "TraySwitch",  "Tumble",        "UseCIEColor"};
constexpr std::string_view kNone[] = {"ImagingBBox", "MediaClass", "MediaColor", "MediaPosition", "MediaType",
                                      "MediaWeight", "NumCopies",  "OutputType", "PageDeviceName"};
constexpr std::string_view kZero[] = {"AdvanceDistance", "AdvanceMedia", "CutMedia", "Jog", "Orientation"};
constexpr std::string_view kEmptyDicts[] = {"InputAttributes", "OutputAttributes", "TrappingDetails"};
constexpr double RESOLUTION = 1200;  // pixels per inch, as Flatness has it

ElementPtr Pair(double first, double second) {
    std::vector<ElementPtr> numbers;
    numbers.push_back(NewReal(first));
    numbers.push_back(NewReal(second));
    return MakeElement<CArrayElement>(std::move(numbers));
}

ElementPtr EmptyProcedure() {
    auto procedure = MakeElement<CArrayElement>(0);
    procedure->m_bExec = true;
    return procedure;
}

// -  currentpagedevice  dict
int OpCurrentpagedevice(CFilterEPS& m) {
    auto dict = MakeElement<CDictionary>(50);
    for (const std::string_view key : kOff) dict->Put(key, MakeElement<CBoolElement>(false));
    for (const std::string_view key : kNone) dict->Put(key, MakeElement<CNullElement>());
    for (const std::string_view key : kZero) dict->Put(key, NewInt(0));
    for (const std::string_view key : kEmptyDicts) dict->Put(key, MakeElement<CDictionary>(0));
    for (const std::string_view key : {"Install", "BeginPage", "EndPage"}) dict->Put(key, EmptyProcedure());
    const geometry::Box page = CCompleteDialect::Of(m).Page(m);
    dict->Put(PAGE_SIZE, Pair(page.right - page.left, page.top - page.bottom));
    dict->Put("HWResolution", Pair(RESOLUTION, RESOLUTION));
    dict->Put("Margins", Pair(0, 0));
    dict->Put("PageOffset", Pair(0, 0));
    dict->Put("OutputDevice", MakeElement<CSimpElement>(std::string_view("Default")));
    dict->Put("ProcessColorModel", MakeElement<CSimpElement>(std::string_view("DeviceRGB")));
    dict->Put("SeparationColorNames", MakeElement<CArrayElement>(0));
    dict->Put("SeparationOrder", MakeElement<CArrayElement>(0));
    auto policies = MakeElement<CDictionary>(3);
    policies->Put("PolicyNotFound", NewInt(1));
    policies->Put("PageSize", NewInt(0));
    policies->Put("PolicyReport", EmptyProcedure());
    dict->Put(POLICIES, std::move(policies));
    Merge(*dict, *m.m_pPageDevice);
    dict->m_nAccess = ACC_READONLY;
    m.Push(std::move(dict));
    return 1;
}

// -  showpage  -
int OpShowpage(CFilterEPS& m) {
    if (EndPage(m, PageEnd::shown) != 1) return -1;
    if (m.ExecuteOperator("initgraphics") != 1) return -1;
    return BeginPage(m);
}

// -  copypage  -
int OpCopypage(CFilterEPS& m) { return EndPage(m, PageEnd::copied) == 1 ? BeginPage(m) : -1; }

constexpr OpRow kRows[] = {
    {"setpagedevice", OpSetpagedevice}, {".setpagesize", OpSetpagesize}, {"currentpagedevice", OpCurrentpagedevice},
    {"showpage", OpShowpage},           {"copypage", OpCopypage},
};

}  // namespace

constinit const OpTable kCompleteDeviceOperators{kRows};

void BuildPageDevice(CFilterEPS& m) {
    const CBodyPlaceScope local(PlaceOfLevel(0));
    m.m_pPageDevice = MakeElement<CDictionary>(50);
}

std::optional<geometry::Box> SetPageSize(const CFilterEPS& m) {
    const CElement* size = m.m_pPageDevice->GetValue(PAGE_SIZE);
    geometry::Box page;
    if (!size || ReadPageSize(*size, page) != PSERR_NONE) return std::nullopt;
    return page;
}
