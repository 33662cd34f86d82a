// A heap whose blocks touch pages that nobody may read or write: reading or writing one byte too far ends the program.
//
// The sanitizers find the same by instrumented code; this finds it in the code that users run, masked loads of the kernels
// included. Each block takes pages of its own, so it is for test programs, which choose it by the environment variable
// QUORVEL_GUARDED_HEAP: "end" puts the guard right behind each block, "begin" right before it.

#ifndef QUORVEL_TESTS_SUPPORT_GUARDED_HEAP_H
#define QUORVEL_TESTS_SUPPORT_GUARDED_HEAP_H

#include <cstddef>

namespace quorvel::test::guarded_heap {

enum class Side { kNone, kBegin, kEnd };

// What the environment asks for.
Side Asked() noexcept;

// Null when there is no memory. `size` is positive; `alignment` at most that of a page. For the sake of the guard a block
// is aligned to 8 bytes only when its size is no multiple of 16; of sizes that are no multiple of 8 a few bytes are left.
void* Allocate(std::size_t size, std::size_t alignment, Side side) noexcept;
void Release(void* block) noexcept;

}  // namespace quorvel::test::guarded_heap

#endif
