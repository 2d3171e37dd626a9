// What an import is to do and how much it may take, whatever front asks for it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct ImportSettings {
    bool complete = false;  ///< the complete dialect; else the plain one
    std::uint16_t hostVersion = 5;
    bool english = false;                      ///< the import's texts in English; else the plug-in's own Chinese
    std::vector<std::string> fontFolders;      ///< where fonts are looked for first, in this order
    bool wantsInformation = false;             ///< ask for the file information first, in a dialog of its own
    bool allowFileAccess = false;              ///< let the program in the file touch files
    std::optional<double> timeout;             ///< seconds for each import, which the caller's CStopCause counts
    std::optional<std::uint64_t> memoryLimit;  ///< bytes for each import, beyond what the process has
};
