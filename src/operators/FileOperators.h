// Operators on files and filters, and those that print, which here means nothing.
#pragma once

#include "interp/OperatorTable.h"
#include "platform/FileSystem.h"

/// file to currentfile.
extern constinit const OpTable kFileCoreOperators;

/// filter to currentobjectformat.
extern constinit const OpTable kFileOperators;

/// Pushes what `status` tells of a file that is there: its pages of 1,024 bytes, its bytes, and when it was last
/// changed and created.
void PushFileStatus(CFilterEPS& m, const FileSystem::FileStatus& status);
