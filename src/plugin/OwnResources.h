// The library's own resources: ids of texts, dialog and controls.
#pragma once

#include "interp/ErrorCodes.h"
#include "platform/Resources.h"

// Texts. Those from 4017 to 4030 are the error box's (interp/ErrorCodes.h).
inline constexpr unsigned IDS_FILTER_NAME = 4001;
inline constexpr unsigned IDS_BAD_FORMAT = 4002;
inline constexpr unsigned IDS_IO_ERROR = 4003;
inline constexpr unsigned IDS_WARNING = 4004;
inline constexpr unsigned IDS_PLAIN_FILE = 4005;
inline constexpr unsigned IDS_PREVIEW_FILE = 4006;
inline constexpr unsigned IDS_DSC_VERSION = 4007;  ///< %.1f
inline constexpr unsigned IDS_EPS_VERSION = 4008;  ///< %.1f
inline constexpr unsigned IDS_LEVEL_UNKNOWN = 4009;
inline constexpr unsigned IDS_LANGUAGE_LEVEL = 4010;  ///< %d
inline constexpr unsigned IDS_TITLE = 4011;           ///< %s
inline constexpr unsigned IDS_CREATOR = 4012;         ///< %s
inline constexpr unsigned IDS_CREATION_DATE = 4013;   ///< %s
inline constexpr unsigned IDS_BOUNDING_BOX = 4014;    ///< %.2f %.2f
inline constexpr unsigned IDS_FILE_LENGTH = 4015;     ///< %d
inline constexpr unsigned IDS_SECTION_LENGTH = 4016;  ///< %d
inline constexpr unsigned IDS_PLEASE_CANCEL = 4031;

// The import dialog and its controls.
inline constexpr unsigned IDD_IMPORT = 4000;
inline constexpr int IDC_FILL_OUTLINE = 3012;
inline constexpr int IDC_FILE_INFO = 4001;
inline constexpr int IDC_INFO_TEXT = 4004;
inline constexpr int IDC_TOLERANCE = 4005;

/// String table and dialogs, Chinese as used in the PRC (language 2052), UTF-8. Constant from the start.
extern constinit CResourceModule g_OwnResources;
