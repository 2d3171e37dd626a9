// The block of device parameters: its values at the start and when it is shared.
#include "graphics/DeviceParameters.h"

#include <algorithm>
#include <bit>

#include "objects/Array.h"
#include "objects/Dictionary.h"
#include "objects/Number.h"
#include "objects/SimpleElements.h"

namespace {

ElementPtr NewProcedure(std::vector<ElementPtr> elements) {
    auto procedure = MakeElement<CArrayElement>(std::move(elements));
    procedure->m_bExec = true;
    return procedure;
}

/// { pop 0 }: no black generation, no undercolour removal.
ElementPtr NewZeroProcedure() {
    std::vector<ElementPtr> elements;
    elements.push_back(MakeElement<COperatorElement>("pop"));
    elements.push_back(NewInt(0));
    return NewProcedure(std::move(elements));
}

ElementPtr NewHalftone() {
    auto halftone = MakeElement<CDictionary>(4);
    halftone->Put("HalftoneType", NewInt(1));
    halftone->Put("Frequency", NewReal(5.999));
    halftone->Put("Angle", NewReal(0.0));
    halftone->Put("SpotFunction", NewProcedure({}));
    return halftone;
}

}  // namespace

CSharedRef<CDeviceParameters> CDeviceParameters::Defaults() {
    CSharedRef<CDeviceParameters> block(new CDeviceParameters);
    // Programs meet these procedures as copies of their own, and the copy of a packed array is an array, so
    // that one empty procedure stands for all.
    const CStateCell empty(CSnapshot::Built([] { return NewProcedure({}); }));
    const CStateCell zero(CSnapshot::Built(NewZeroProcedure));
    block->m_pHalftone = CStateCell(CSnapshot::Built(NewHalftone));
    block->m_pScreenProc = empty;
    block->m_fScreenFreq = std::bit_cast<float>(0x40B332E5U);  // 5.5999627
    std::fill(std::begin(block->m_pColorScreenProc), std::end(block->m_pColorScreenProc), empty);
    std::fill(std::begin(block->m_fColorScreenFreq), std::end(block->m_fColorScreenFreq),
              std::bit_cast<float>(0x40BFFCEFU));  // 5.9996257
    block->m_pTransfer = empty;
    std::fill(std::begin(block->m_pColorTransfer), std::end(block->m_pColorTransfer), empty);
    block->m_pBlackGeneration = zero;
    block->m_pUnderColorRemoval = zero;
    block->m_pColorRendering = CStateCell(CSnapshot::Built([] { return MakeElement<CDictionary>(8); }));
    return block;
}

bool CDeviceParameters::HasOwn() const noexcept {
    const auto own = [](const CStateCell& cell) { return cell.IsOwn(); };
    const auto anyOwn = [&](const CStateCell(&cells)[4]) { return std::any_of(cells, cells + 4, own); };
    return own(m_pHalftone) || own(m_pScreenProc) || own(m_pScreenHalftone) || anyOwn(m_pColorScreenProc) ||
           anyOwn(m_pColorScreenHalftone) || own(m_pTransfer) || anyOwn(m_pColorTransfer) || own(m_pBlackGeneration) ||
           own(m_pUnderColorRemoval) || own(m_pColorRendering);
}

CDeviceCell::CDeviceCell(const CDeviceCell& other) {
    if (!other.m_pBlock || other.m_pBlock.IsShared() || !other.m_pBlock->HasOwn()) {
        m_pBlock = other.m_pBlock;
        return;
    }
    if (other.m_pCopy && other.m_nCopyEpoch == g_nSnapshotEpoch) {
        m_pBlock = other.m_pCopy;
        return;
    }
    m_pBlock = CSharedRef<CDeviceParameters>(new CDeviceParameters(*other.m_pBlock));
    // A value that has no snapshot came over as an own element, which no two states may share.
    if (m_pBlock->HasOwn()) return;
    other.m_pCopy = m_pBlock;
    other.m_nCopyEpoch = g_nSnapshotEpoch;
}

const CDeviceParameters& CDeviceCell::Get() const {
    static const CDeviceParameters blank;
    return m_pBlock ? *m_pBlock : blank;
}

CDeviceParameters& CDeviceCell::Change() {
    if (!m_pBlock || m_pBlock.IsShared()) m_pBlock = CSharedRef<CDeviceParameters>(new CDeviceParameters(Get()));
    m_pCopy = {};
    return *m_pBlock;
}
