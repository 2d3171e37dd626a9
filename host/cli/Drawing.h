// What came of one import: the entities that the plug-in handed over, and all that it said and was told.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class CEntity;

struct MessageBox {
    std::string caption;
    std::string text;
    unsigned style = 0;  // as the plug-in gave it: button and icon bits

    bool HasErrorIcon() const { return (style & 0x70) == 0x10; }
};

struct DialogSettings {
    float tolerance = 0;  // mm
    bool fillOutline = false;
};

// Why an import ended. What was drawn up to then is in the drawing, whatever it is.
enum class ImportEnd {
    Whole,
    NotOpened,  // the file can't be read
    Refused,    // the dialog was cancelled, or refused a value
    Failed,     // an error box was shown
    NoSection,  // the file's binary header points outside the file
    TimedOut,
    Interrupted,
    OutOfMemory,
};

struct Drawing {
    Drawing() = default;
    ~Drawing();  // releases the entities
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    std::string source;  // the input file's name, without its folder
    unsigned hostVersion = 5;
    std::optional<DialogSettings> settings;
    std::optional<std::string> information;
    std::vector<MessageBox> messages;
    std::vector<CEntity*> entities;  // owned, in the order of the host's list
    ImportEnd end = ImportEnd::Whole;

    // One host unit in millimetres.
    double UnitInMillimetres() const { return hostVersion >= 5 ? 1.0 : 1.0 / 40; }
};
