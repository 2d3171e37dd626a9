// The most memory that one import may take.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// What an import may take when nobody says otherwise: three quarters of the memory that the machine has, or that the
/// control group of the process is allowed. Nothing when neither can be told. `root` is the folder that /proc and /sys
/// stand in.
std::optional<std::uint64_t> UsualMemoryLimit(const std::string& root = "");

/// Bytes of address space that the process has now.
std::uint64_t UsedAddressSpace();

/// While it lives, the process may take so many bytes of address space beyond what it has, or had when `used` was asked
/// for; allocations beyond fail. Without a value it does nothing.
class CMemoryLimit {
public:
    explicit CMemoryLimit(std::optional<std::uint64_t> bytes, std::optional<std::uint64_t> used = std::nullopt);
    ~CMemoryLimit() { Lift(); }
    CMemoryLimit(const CMemoryLimit&) = delete;
    CMemoryLimit& operator=(const CMemoryLimit&) = delete;

    /// Ends the limit early: what has been imported must still be delivered.
    void Lift();

private:
    std::optional<std::uint64_t> m_nBefore;  ///< the limit to go back to, once one is set
};
