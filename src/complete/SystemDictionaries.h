// Entries of the system's dictionaries that are programs: what old files expect to find there.
#pragma once

class CFilterEPS;

/// Enters papers and old names in systemdict, statusdict and serverdict with what printers have there, the procedure
/// sets that are no operators, and what programs expect in userdict; internaldict gets a superexec that runs its
/// operand.
void BuildSystemDictionaries(CFilterEPS& m);
