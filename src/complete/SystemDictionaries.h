// Entries of the system's dictionaries that are programs: what old files expect to find there.
#pragma once

class CFilterEPS;

/// Enters papers in systemdict, and statusdict and serverdict with what printers have there.
void BuildSystemDictionaries(CFilterEPS& m);
