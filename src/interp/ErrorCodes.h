// The error codes of a run. They are what the message box names; PostScript programs can't catch them.
#pragma once

/// Codes of CFilterEPS::m_nError. The text of code n is string 4017 + n.
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
