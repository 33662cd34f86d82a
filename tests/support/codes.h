// Which code does a call throw?

#ifndef QUORVEL_TESTS_SUPPORT_CODES_H
#define QUORVEL_TESTS_SUPPORT_CODES_H

#include <gtest/gtest.h>

#include <optional>

#include "quorvel/Matrix.h"

namespace quorvel::test {

// Remembers a code that the library threw. At the end main.cpp prints all of them as "codes <room> <numbers>" when
// QUORVEL_LIST_CODES is set, for the comparison with the catalogue.
void NoteCode(int code) noexcept;
void PrintNotedCodes(const char* room);

// Runs the callable and returns the code of the MatrixException it throws (0 and negative values
// are codes like any other), or nothing when it returns. Other exceptions pass. Afterwards no code
// is pending, so that results can be inspected.
template <class Callable>
std::optional<int> CodeOf(Callable&& call) {
  struct Reset {
    ~Reset() { abort_reset(); }
  } reset;
  // A code that is pending already says nothing about this call.
  const int pending = GetErrorCode();
  try {
    call();
  } catch (const MatrixException& e) {
    if (e.code() != pending) NoteCode(e.code());
    return e.code();
  }
  return std::nullopt;
}

// Runs the callable while a code is pending (nothing else is).
template <class Callable>
std::optional<int> CodeWhilePending(int pending, Callable&& call) {
  abort_reset();
  abort_set(pending);
  return CodeOf(static_cast<Callable&&>(call));
}

}  // namespace quorvel::test

// The statement throws exactly this code. A returned matrix is ignored (and leaks, which the leak
// check reports beside the missing code).
#define EXPECT_CODE(statement, expected) \
  EXPECT_EQ(::quorvel::test::CodeOf([&] { static_cast<void>(statement); }), \
            std::optional<int>(expected)) << #statement

// The statement throws no MatrixException.
#define EXPECT_NO_CODE(statement) \
  EXPECT_EQ(::quorvel::test::CodeOf([&] { static_cast<void>(statement); }), std::nullopt) \
      << #statement

// The same while `pending` is the pending code.
#define EXPECT_CODE_WHILE_PENDING(pending, statement, expected) \
  EXPECT_EQ(::quorvel::test::CodeWhilePending( \
                (pending), [&] { static_cast<void>(statement); }), \
            std::optional<int>(expected)) << #statement

#define EXPECT_NO_CODE_WHILE_PENDING(pending, statement) \
  EXPECT_EQ(::quorvel::test::CodeWhilePending( \
                (pending), [&] { static_cast<void>(statement); }), \
            std::nullopt) << #statement

#endif
