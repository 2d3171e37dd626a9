// What the fuzz targets run, and the ordinary tests with the files of the corpora.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "interp/Dialect.h"

/// Makes the dialect that a run is in.
using DialectMaker = std::unique_ptr<CDialect> (*)();

/// Imports the bytes as a file, within bounds of steps, and gives what was drawn to the export face, with curves as
/// curves and as lines. Traps when a second import of the same bytes, in blocks of another size and without the code of
/// procedures, draws anything else.
void FuzzRun(const std::uint8_t* data, std::size_t size, DialectMaker dialect = MakeLibraryDialect);

/// Analyses the bytes in blocks of two sizes, which must say the same, and has the import dialog do it with a file.
void FuzzFileInfo(const std::uint8_t* data, std::size_t size);

/// Scans the bytes as an input file, in blocks of several sizes, and as an executed text. Traps when the lexemes are
/// other ones than a slow reference scanner finds.
void FuzzScanner(const std::uint8_t* data, std::size_t size);

/// Makes glyphs of the bytes as a font program of the kind that the first of them tells. Traps when a glyph has an
/// outline with an open contour or a coordinate that isn't finite, when a second face of the same bytes has another
/// one, or when encrypted charstrings draw anything else than plain ones.
void FuzzFont(const std::uint8_t* data, std::size_t size);

/// Makes figures of the bytes, or of what they draw as a program, has the passes that the second byte asks for change
/// them, and writes all formats. Traps on a coordinate that isn't finite and on output that isn't valid JSON, SVG or
/// DXF.
void FuzzWriters(const std::uint8_t* data, std::size_t size);

/// Runs a chain of one or two decoders over the bytes, with parameters that the first of them tell, and some encoders.
/// Traps when other sizes of blocks and reads give other bytes or another end, or when what was encoded decodes to
/// something else.
void FuzzFilter(const std::uint8_t* data, std::size_t size);
