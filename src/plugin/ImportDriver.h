// The import driver: one import from the dialog to the last clean-up.
#pragma once

class CPtrList;
struct tagPlugImportJob;

/// Shows the dialog and, on OK, runs the file and appends its entities, which are the list owner's from then
/// on. A null list, a cancelled dialog or a file that can't be opened leave the list as it was. An
/// interpreter error has been shown by the run; what was drawn before it is delivered.
void ImportEpsFile(tagPlugImportJob* pJob, CPtrList* pList);
