// What came of one import: the entities that the plug-in handed over, and all that it said and was told.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hostout/HostModel.h"
#include "objects/EpsHeader.h"
#include "platform/Window.h"

struct MessageBox {
    std::string caption;
    std::string text;
    unsigned style = 0;  ///< as the plug-in gave it: button and icon bits

    bool HasErrorIcon() const { return (style & 0x70) == MB_ICONERROR; }
};

struct DialogSettings {
    float tolerance = 0;  ///< mm
    bool fillOutline = false;
};

/// Why an import ended. What was drawn up to then is in the drawing, whatever it is.
enum class ImportEnd {
    Whole,
    NotOpened,  ///< the file can't be read
    Refused,    ///< the dialog was cancelled, or refused a value
    Failed,     ///< an error box was shown, or the program ended itself before its end
    NoSection,  ///< the file's binary header points outside the file
    TimedOut,
    Interrupted,
    OutOfMemory,
};

struct Drawing {
    std::string source;  ///< the input file's name, without its folder
    unsigned hostVersion = 5;
    bool complete = false;  ///< the dialect: complete or plain
    std::optional<DialogSettings> settings;
    std::optional<std::string> information;
    std::vector<MessageBox> messages;
    tagRunReport report;              ///< what failed, was left out and did not run
    std::shared_ptr<void> library;    ///< whose code the entities run: it stays loaded for as long as they are here
    std::vector<EntityPtr> entities;  ///< in the order of the host's list
    std::optional<tagEpsBox> page;    ///< of the file's comments, in points
    bool fileAccessDenied = false;    ///< the program asked for a file, and had no leave
    ImportEnd end = ImportEnd::Whole;
    std::string openError;  ///< with ImportEnd::NotOpened: the reason

    /// One host unit in millimetres.
    double UnitInMillimetres() const { return hostVersion >= 5 ? 1.0 : 1.0 / 40; }
};
