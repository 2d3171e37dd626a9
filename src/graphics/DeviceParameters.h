// The device-dependent parameters of a graphics state. They are set and asked and have no effect on what is
// drawn, and programs rarely touch them, so states share one block until one of them changes it.
#pragma once

#include <cstdint>

#include "graphics/StateCell.h"

/// Procedures unless told otherwise. Arrays are in the order red, green, blue, gray.
struct CDeviceParameters final : public CShared {
    /// The values of the start, which no program has a reference into.
    [[nodiscard]] static CSharedRef<CDeviceParameters> Defaults();
    /// Whether a program may have a reference into one of the elements.
    [[nodiscard]] bool HasOwn() const noexcept;

    float m_fFlatness = 1.0F;
    std::int32_t m_bOverprint = 0;
    float m_fSmoothness = 0.02F;
    CStateCell m_pHalftone;        ///< dictionary
    CStateCell m_pScreenProc;      ///< spot function of setscreen, when it is a procedure
    CStateCell m_pScreenHalftone;  ///< what setscreen had in its place, when it is a dictionary; never both
    float m_fScreenFreq = 0;       ///< lines per inch
    float m_fScreenAngle = 0;      ///< degrees
    CStateCell m_pColorScreenProc[4];
    CStateCell m_pColorScreenHalftone[4];
    float m_fColorScreenFreq[4] = {};
    float m_fColorScreenAngle[4] = {};
    CStateCell m_pTransfer;
    CStateCell m_pColorTransfer[4];
    CStateCell m_pBlackGeneration;
    CStateCell m_pUnderColorRemoval;
    CStateCell m_pColorRendering;  ///< dictionary
};

/// A state's reference to its block. Copies share the block, or a snapshot of it when a program has
/// references into it, as those of CStateCell do.
class CDeviceCell {
public:
    CDeviceCell() noexcept = default;
    explicit CDeviceCell(CSharedRef<CDeviceParameters> block) noexcept : m_pBlock(std::move(block)) {}
    CDeviceCell(const CDeviceCell& other);
    CDeviceCell(CDeviceCell&&) noexcept = default;
    /// By reference, as that of CStateCell and for the same reason.
    CDeviceCell& operator=(const CDeviceCell& other) { return *this = CDeviceCell(other); }
    CDeviceCell& operator=(CDeviceCell&&) noexcept = default;
    ~CDeviceCell() = default;

    [[nodiscard]] const CDeviceParameters& Get() const;
    /// The block for writing, shared with no other state until this cell is copied again.
    [[nodiscard]] CDeviceParameters& Change();

private:
    CSharedRef<CDeviceParameters> m_pBlock;         ///< null: a block without elements, not made yet
    mutable CSharedRef<CDeviceParameters> m_pCopy;  ///< what copies share while m_pBlock has own elements
    mutable std::uint64_t m_nCopyEpoch = 0;
};
