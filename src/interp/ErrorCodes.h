// The error codes of a run. They are what the message box names. In the plain dialect no program can
// catch an error.
#pragma once

/// Codes of CFilterEPS::m_nError. The text of code n is string IDS_FIRST_ERROR + n.
enum ErrorCode : int {
    PSERR_NONE = -1,
    PSERR_FORMAT = 0,  ///< the file is no EPS file
    PSERR_TYPECHECK = 1,
    PSERR_UNDEFINED = 2,
    PSERR_SYNTAX = 3,
    PSERR_IO = 4,
    PSERR_STACKUNDERFLOW = 5,
    PSERR_RANGE = 6,  ///< also the guards against what would run the machine out, a table in docs/architecture.md
    PSERR_UNMATCHEDMARK = 7,
    PSERR_DICTSTACKUNDERFLOW = 8,
    PSERR_VMOVERFLOW = 9,  ///< too many saves, or no memory left
    PSERR_NOCURRENTPOINT = 10,
    PSERR_UNSUPPORTED = 11
};

/// The language's name of a code. Who knows a finer one gives it to CFilterEPS::Fail. Two codes have no error of the
/// language behind them: the file is none of this kind, and the language has what this system refuses.
[[nodiscard]] constexpr const char* ErrorName(int code) noexcept {
    constexpr const char* names[] = {"format",         "typecheck",  "undefined",     "syntaxerror",        "ioerror",
                                     "stackunderflow", "rangecheck", "unmatchedmark", "dictstackunderflow", "VMerror",
                                     "nocurrentpoint", "unsupported"};
    return code >= PSERR_FORMAT && code <= PSERR_UNSUPPORTED ? names[code] : "";
}

// The texts of the message box: those of the codes, what stands before them, and the caption.
inline constexpr unsigned IDS_FIRST_ERROR = 4017;
inline constexpr unsigned IDS_ERROR_HEAD = 4029;
inline constexpr unsigned IDS_ERROR_CAPTION = 4030;
