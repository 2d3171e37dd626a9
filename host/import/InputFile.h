// An input file made ready for the plug-in, which takes a short path and opens files for reading and writing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "import/StopCause.h"
#include "objects/EpsHeader.h"

class CInputFile {
public:
    /// `path` as on the command line; "-" is standard input. Checks that it is a file that can be read. What
    /// the plug-in couldn't open itself (a path longer than the host's record holds, a file without write
    /// permission, a pipe) is copied to a private temporary file, until there is a cause to stop; that goes for the
    /// wait for a pipe's other end, too. See Error.
    CInputFile(const std::string& path, const CStopCause& stop);

    /// Removes the private copy.
    ~CInputFile();
    CInputFile(const CInputFile&) = delete;
    CInputFile& operator=(const CInputFile&) = delete;

    /// Why the file can't be imported; empty when it can.
    const std::string& Error() const { return m_Error; }
    /// What stopped the copying; nothing when that isn't the reason.
    std::optional<ImportEnd> StoppedBy() const { return m_StoppedBy; }

    /// The full path to give to the plug-in. Valid while this object lives.
    const std::string& PathForPlugIn() const { return m_PlugInPath; }

    /// Whether the file has the binary header of EPS files with a preview, and its PostScript section begins
    /// behind the end of the file. The plug-in takes such a section for an empty one.
    bool IsSectionMissing() const { return m_bSectionMissing; }

    /// The page that the comments of the program tell, in points; nothing without such a comment.
    const std::optional<tagEpsBox>& Page() const { return m_Page; }

private:
    void Open(const std::string& path, const CStopCause& stop);
    void CopyToPrivateFile(int source, const CStopCause& stop);
    void ReadHeader();

    std::string m_PlugInPath;
    std::string m_PrivateDirectory;  ///< empty without a copy
    std::string m_Error;
    std::optional<ImportEnd> m_StoppedBy;
    std::uint64_t m_nSize = 0;
    bool m_bSectionMissing = false;
    std::optional<tagEpsBox> m_Page;
};
