// The one place in this room that knows the operator families: an include that runs upwards, for the sake of having
// the chain in one list.
#include "interp/OperatorChain.h"

#include "graphics/ArcOperators.h"
#include "graphics/ColorOperators.h"
#include "graphics/DeviceParameterOperators.h"
#include "graphics/GraphStateOperators.h"
#include "graphics/ImageOperators.h"
#include "graphics/MatrixOperators.h"
#include "graphics/PaintOperators.h"
#include "graphics/PathOperators.h"
#include "graphics/PathUtilityOperators.h"
#include "graphics/PatternOperators.h"
#include "interp/FilterEPS.h"
#include "operators/ArithmeticOperators.h"
#include "operators/ArrayOperators.h"
#include "operators/ControlOperators.h"
#include "operators/DictionaryOperators.h"
#include "operators/FileOperators.h"
#include "operators/RelationalOperators.h"
#include "operators/ResourceOperators.h"
#include "operators/SaveOperators.h"
#include "operators/StackOperators.h"
#include "operators/StringOperators.h"
#include "operators/SystemOperators.h"
#include "operators/TypeOperators.h"
#include "text/FontOperators.h"
#include "text/ShowOperators.h"

namespace {

constexpr ChainLink g_Chain[] = {
    {1, &kPathCoreOperators},
    {1, &kArcCoreOperators},
    {1, &kPaintCoreOperators},
    {1, &kPathEndOperators},
    {2, &kStackCoreOperators},
    {2, &kArithmeticCoreOperators},
    {3, &kArrayCoreOperators},
    {4, &kDictionaryCoreOperators},
    {5, &kControlCoreOperators},
    {6, &kRelationalCoreOperators},
    {7, &kSaveOperators},
    {7, &kStateCoreOperators},
    {7, &kColorCoreOperators},
    {8, &kMatrixCoreOperators},
    {9, &kFileCoreOperators},
    {10, &kMarkOperators},
    {11, &kMathOperators},
    {12, &kPackedArrayOperators},
    {13, &kDictionaryOperators},
    {14, &kSearchOperators},
    {15, &kRelationalOperators},
    {16, &kControlOperators},
    {17, &kTypeOperators},
    {18, &kResourceOperators},
    {19, &kGlobalOperators},
    {20, &kMiscellaneousOperators},
    {21, &kStateOperators},
    {21, &kColorOperators},
    {22, &kDeviceParameterOperators},
    {23, &kMatrixOperators},
    {24, &kPathOperators},
    {24, &kTangentArcOperators},
    {24, &kPathCurveOperators},
    {24, &kPathUtilityOperators},
    {25, &kPaintOperators},
    {25, &kImageOperators},
    {26, &kPatternOperators},
    {27, &kDeviceOperators},
    {28, &kFontOperators},
    {28, &kShowOperators},
    {29, &kCacheOperators},
    {30, &kFileOperators},
    {31, &kInsidenessOperators},
};

}  // namespace

std::span<const ChainLink> OperatorChain() noexcept { return g_Chain; }

void ResolveOperators(const CDialect& dialect) {
    const auto offer = [](const OpTable& table) {
        for (const OpRow& row : table) {
            const CName* name = InternName(row.name);
            if (name->m_pfnOperator) continue;
            name->m_pfnOperator = row.run;
            name->m_pRow = &row;
        }
    };
    for (const OpTable* table : dialect.OperatorTables()) offer(*table);
    for (const ChainLink& link : g_Chain) offer(*link.table);
}

const OpRow* ChainRow(std::string_view name) noexcept {
    for (const ChainLink& link : g_Chain) {
        for (const OpRow& row : *link.table) {
            if (name == row.name) return &row;
        }
    }
    return nullptr;
}

OperatorFn ChainOperator(std::string_view name) noexcept {
    const OpRow* row = ChainRow(name);
    return row ? row->run : nullptr;
}

int OpUnsupported(CFilterEPS& m) { return m.Fail(PSERR_UNSUPPORTED); }

int OpNothing(CFilterEPS&) { return 1; }
