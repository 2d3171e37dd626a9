// What the dialect offers, and what it adds to the start-up dictionaries.
#include "complete/CompleteDialect.h"

#include <limits>

#include "complete/BinaryObjects.h"
#include "complete/CMapOperators.h"
#include "complete/CheckedOperators.h"
#include "complete/ClipOperators.h"
#include "complete/ColorOperators.h"
#include "complete/DeviceOperators.h"
#include "complete/EexecOperators.h"
#include "complete/ErrorOperators.h"
#include "complete/ExecutionOperators.h"
#include "complete/FileOperators.h"
#include "complete/FilterOperators.h"
#include "complete/FontOperators.h"
#include "complete/ImageOperators.h"
#include "complete/KeptOperands.h"
#include "complete/PaintOperators.h"
#include "complete/ParameterOperators.h"
#include "complete/PathOperators.h"
#include "complete/PatternOperators.h"
#include "complete/ResourceOperators.h"
#include "complete/ShowOperators.h"
#include "complete/StateOperators.h"
#include "complete/SystemDictionaries.h"
#include "complete/SystemOperators.h"
#include "complete/UserPathOperators.h"
#include "interp/Keys.h"

std::span<const OpTable* const> CCompleteDialect::OperatorTables() const {
    // Operators of this room first; behind them the operators of the chain that need help to leave their operands.
    static constexpr const OpTable* tables[] = {
        &kCompletePathOperators,
        &kCompletePaintOperators,
        &kClipOperators,
        &kUserPathOperators,
        &kCompletePatternOperators,
        &kCompleteErrorOperators,
        &kCompleteSystemOperators,
        &kCompleteColorOperators,
        &kCompleteFilterOperators,
        &kCompleteFileOperators,
        &kCompleteExecutionOperators,
        &kCompleteImageOperators,
        &kCompleteResourceOperators,
        &kCompleteDeviceOperators,
        &kParameterOperators,
        &kCompleteFontOperators,
        &kCompleteShowOperators,
        &kEexecOperators,
        &kCMapOperators,
        &kCompleteStateOperators,
        &kBinaryObjectOperators,
        &kValueOperators,
        &kCheckedOperators,
        &kKeptOperands,
    };
    return tables;
}

CCompleteDialect::~CCompleteDialect() { g_nKeyLimit = MAX_KEY_LENGTH; }

std::int32_t CCompleteDialect::PathLimit() const { return std::numeric_limits<std::int32_t>::max(); }

void CCompleteDialect::FinishStartup(CFilterEPS& m) {
    m_pFonts = std::make_unique<CFontFaces>();
    g_nKeyLimit = MAX_STRING_LENGTH;
    BuildErrorHandlers(m);
    BuildResources(m);
    BuildPageDevice(m);
    BuildParameters(m);
    BuildSystemDictionaries(m);
    InitFont(m);
    InitLineParameters(*m.GetCurrentGState());
    m.m_nObjectFormat = 1;
}
