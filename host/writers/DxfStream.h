// dxflib's stream of DXF groups, led into an output file of ours.
#pragma once

#include <dxflib/dl_writer_ascii.h>

#include <map>
#include <string>

#include "drawing/Figure.h"
#include "writers/OutputFile.h"

/// dxflib writes group by group to a file of its own, flushing after each number, with sixteen decimals. This
/// stream takes its place: buffered, and with the shortest decimals that read back to the same value. On the
/// way it mends three things that dxflib writes as constants: the handle seed, which must lie above every
/// handle; the view, so that a drawing opens fitted to the window; and the owners of objects, which it leaves
/// out.
class CDxfStream : public DL_WriterA {
public:
    CDxfStream(COutputFile& out, const CBox& box, int handleSeed);

    void BeginObjects() { m_bObjects = true; }

    void dxfReal(int code, double value) const override;
    void dxfInt(int code, int value) const override;
    void dxfHex(int code, int value) const override;
    void dxfString(int code, const char* value) const override;
    void dxfString(int code, const std::string& value) const override { dxfString(code, value.c_str()); }

private:
    COutputFile& m_Out;
    const CBox& m_Box;
    const int m_nHandleSeed;
    bool m_bObjects = false;
    /// The interface of dxflib is const throughout.
    mutable bool m_bInView = false;             ///< the last value of group 0, 2 or 9 was *Active
    mutable bool m_bInSeed = false;             ///< it was $HANDSEED
    mutable int m_nObject = 0;                  ///< handle of the object being written
    mutable std::map<int, int> m_ObjectOwners;  ///< by handle
};
