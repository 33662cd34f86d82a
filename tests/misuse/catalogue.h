// What the documentation says of each exported function: the codes that it may throw, and what it consumes.

#ifndef QUORVEL_TESTS_MISUSE_CATALOGUE_H
#define QUORVEL_TESTS_MISUSE_CATALOGUE_H

#include "misuse/arguments.h"

namespace quorvel::test {

// Whether the documentation of the function lists the code. Exhausted memory and the pending code are everybody's.
bool Lists(const char* symbol, int code);

// The first operand that the function consumes when it is dispensable and constant, success or not.
unsigned FirstConsumed(const char* symbol);

// The function works on one triangle or one dimension only, and so may leave elements of a symmetric sparse matrix where
// that kind has none.
bool MayStoreBelowDiagonal(const char* symbol);

// What becomes of operands, at most, when the function refuses them with a code.
Change ChangeWhenRefused(const char* symbol);

// The function refuses every argument by its contract.
bool NeverSucceeds(const char* symbol);

}  // namespace quorvel::test

#endif
