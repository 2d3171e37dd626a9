// Resources of a library: the string table and the dialog templates. Constant data, so that a table can be
// read before any constructor has run, and by another library. Texts are UTF-8.
#pragma once

#include <span>
#include <string_view>

struct CStringResource {
    unsigned id;
    std::string_view text;
};

enum class ControlKind {
    pushButton,
    defaultButton,
    groupBox,
    staticText,
    edit,           ///< one line, with a border
    multiLineEdit,  ///< with a border and a vertical scroll bar
    checkBox,       ///< changes its state by itself when it is pressed
};

/// The id of controls that nothing refers to: labels and frames.
inline constexpr int IDC_STATIC = -1;

/// A control of a dialog template; place and size in dialog units.
struct CControlTemplate {
    int id;
    ControlKind kind;
    std::string_view text;
    int x, y, width, height;
};

/// A dialog: a popup window with a caption and a system menu.
struct CDialogTemplate {
    unsigned id;
    std::string_view caption;
    int width, height;  ///< dialog units
    std::string_view font;
    int fontSize;                                ///< points
    std::span<const CControlTemplate> controls;  ///< in tab order
};

/// The resources of one library in one language: of the plug-in itself, or localised ones that a host offers.
/// Refers to the tables, which have to outlive it.
class CResourceModule {
public:
    constexpr CResourceModule(std::span<const CStringResource> strings,
                              std::span<const CDialogTemplate> dialogs) noexcept
        : m_Strings(strings), m_Dialogs(dialogs) {}

    /// Null when there is none of that id.
    [[nodiscard]] const CStringResource* FindString(unsigned id) const noexcept {
        for (const CStringResource& string : m_Strings) {
            if (string.id == id) return &string;
        }
        return nullptr;
    }
    [[nodiscard]] const CDialogTemplate* FindDialog(unsigned id) const noexcept {
        for (const CDialogTemplate& dialog : m_Dialogs) {
            if (dialog.id == id) return &dialog;
        }
        return nullptr;
    }

private:
    std::span<const CStringResource> m_Strings;
    std::span<const CDialogTemplate> m_Dialogs;
};

/// A resource handle, which is also what stands for the instance of a library; null when there are no
/// resources.
using HINSTANCE = CResourceModule*;

/// Copies the text of this id into a buffer of limit bytes, cut to fit (never inside a character) and
/// terminated. Answers its length; 0, with an empty text, when there is no such text or no handle. Below a
/// limit of 1 nothing is written.
int LoadStringA(HINSTANCE hInstance, unsigned id, char* buffer, int limit) noexcept;
