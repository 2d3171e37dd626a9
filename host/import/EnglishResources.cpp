// English texts for the string ids 4001 to 4031 and the dialog 4000. Formats take the same values in the same
// order as the plug-in's own; places and sizes of controls are dialog units.
#include "import/EnglishResources.h"

#include "platform/Dialog.h"

namespace {

constexpr CStringResource kStrings[] = {
    {4001, "EPS file filter"},
    {4002, "The EPS file's format is wrong: its information can't be read and it can't be imported!\r\n"},
    {4003, "File I/O error: the file's information can't be read and it can't be imported!\r\n"},
    {4004, "Warning"},
    {4005, "EPS file type: plain ASCII EPS file\r\n"},
    {4006, "EPS file type: EPS file with preview\r\n"},
    {4007, "DSC version: %.1f\r\n"},
    {4008, "EPS version: %.1f\r\n"},
    {4009, "PostScript language level: (unknown)\r\n"},
    {4010, "PostScript language level: %d\r\n"},
    {4011, "Title: %s\r\n"},
    {4012, "Creator: %s\r\n"},
    {4013, "Creation date: %s\r\n"},
    {4014, "Bounding box: (width: %.2fmm, height: %.2fmm)\r\n"},
    {4015, "Length of the EPS file: %d bytes\r\n"},
    {4016, "Length of the PostScript section: %d bytes"},
    {4017, "not an EPS file"},
    {4018, "operand of the wrong type"},
    {4019, "undefined name"},
    {4020, "syntax error"},
    {4021, "file I/O error"},
    {4022, "too few operands"},
    {4023, "operand out of range"},
    {4024, "no matching mark"},
    {4025, "too many end operators"},
    {4026, "too many save levels"},
    {4027, "no current point"},
    {4028, "unsupported operator"},
    {4029, "Interpreting the EPS file failed!\nError type: "},
    {4030, "Error"},
    {4031, "\r\nPlease cancel this import."},
    // The platform's own refusals of what stands in an edit control.
    {AFX_IDP_PARSE_REAL, "Enter a number."},
    {AFX_IDP_PARSE_REAL_RANGE, "Enter a number between %1 and %2."},
};

constexpr CControlTemplate kImportControls[] = {
    {IDOK, ControlKind::defaultButton, "OK", 69, 148, 50, 15},
    {IDC_STATIC, ControlKind::groupBox, "", 7, 4, 173, 36},
    {IDC_STATIC, ControlKind::staticText,
     "An EPS file mainly holds vector graphics, images, text and area fills. This import can extract only "
     "the vector "
     "graphics.",
     14, 12, 160, 26},
    {4001, ControlKind::pushButton, "File information", 13, 148, 50, 15},
    {IDCANCEL, ControlKind::pushButton, "Cancel", 123, 148, 50, 15},
    {4004, ControlKind::multiLineEdit, "", 7, 73, 173, 71},
    {IDC_STATIC, ControlKind::staticText, "Merge precision of line segments (0.0001-5.0):", 7, 47, 125, 8},
    {4005, ControlKind::edit, "", 133, 45, 37, 12},
    {3012, ControlKind::checkBox, "Import outlines of fills", 8, 59, 88, 10},
};

constexpr CDialogTemplate kDialogs[] = {{4000, "EPS import", 187, 171, "Sans", 9, kImportControls}};

}  // namespace

HINSTANCE EnglishResources() {
    static CResourceModule module(kStrings, kDialogs);
    return &module;
}

std::string_view EnglishErrorText(int code) {
    constexpr int kErrors = 12;
    constexpr unsigned kFirstError = 4017;
    if (code < 0 || code >= kErrors) return "";
    return EnglishResources()->FindString(kFirstError + static_cast<unsigned>(code))->text;
}
