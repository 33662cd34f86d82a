// Included by the programs that examples.awk makes of the pages.
#ifndef QUORVEL_TESTS_DOCS_EXAMPLES_H
#define QUORVEL_TESTS_DOCS_EXAMPLES_H

#include <cmath>
#include <cstdio>
#include <iomanip>
#include <iostream>
#include <utility>
#include <vector>

#include "quorvel/convenience.h"
#include "quorvel/quorvel.h"

namespace quorvel::test::docs {

// Marks in the output where the next example begins.
void Begin(const char* where);

// Runs one example: prints what it throws, and how many blocks of memory it leaves behind.
void Run(void (*example)());

// For an example that shows a mistake: it only has to compile.
inline void Compiled(void (*)()) {}

// Prints the condition when it does not hold.
void Expect(bool condition, const char* text);

}  // namespace quorvel::test::docs

#define EXPECT(condition) ::quorvel::test::docs::Expect((condition), #condition)

#endif
