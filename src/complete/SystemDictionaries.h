// Entries of the system's dictionaries that are programs: what old files expect to find there.
#pragma once

class CFilterEPS;

/// Enters papers in systemdict, and statusdict and serverdict with what printers have there;
/// internaldict gets a superexec that runs its operand.
void BuildSystemDictionaries(CFilterEPS& m);
