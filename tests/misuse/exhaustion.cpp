// Every exported function when memory runs out: with arguments that it accepts, allocation k fails for k = 1, 2, ... until
// the call succeeds, once alone and once with all that follow. Each failure is reported as exhausted memory (10680 or
// std::bad_alloc); nothing leaks, constant operands are as they were, dispensable ones are consumed, every matrix that is
// left is sound; and then the same call works.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>

#include "misuse/calls.h"
#include "misuse/catalogue.h"

namespace quorvel::test {
namespace {

enum class End { kReturned, kOutOfMemory, kRefused };

struct Attempt {
  End end = End::kReturned;
  bool failed = false;  // an allocation was
  int code = 0;
  std::string wrong;
};

Attempt Try(const Call& call, std::uint64_t seed, unsigned k, Fail mode) {
  Attempt attempt;
  const unsigned first_consumed = FirstConsumed(call.symbol);
  Arguments arguments(call.symbol, seed, Manner::kFitting);
  if (k != 0) arguments.FailFrom(k, mode);
  try {
    call.run(arguments);
  } catch (const MatrixException& e) {
    attempt.end = e.code() == 10680 ? End::kOutOfMemory : End::kRefused;
    attempt.code = e.code();
  } catch (const std::bad_array_new_length&) {
    attempt.end = End::kRefused;
  } catch (const std::bad_alloc&) {
    attempt.end = End::kOutOfMemory;
  }
  attempt.failed = arguments.failed();
  attempt.wrong = arguments.Settle(first_consumed);
  return attempt;
}

std::string Describe(const Call& call, std::uint64_t seed, unsigned k, Fail mode) {
  std::string text;
  Arguments arguments(call.symbol, seed, Manner::kFitting);
  arguments.DescribeOnly(text);
  try {
    call.run(arguments);
  } catch (const Arguments::Described&) {
  }
  arguments.Settle(Arguments::kMost);
  return std::string(call.symbol) + " with " + text + ", arguments " + std::to_string(seed) + ", allocation " +
         std::to_string(k) + (mode == Fail::kOnce ? " fails" : " and all later ones fail");
}

// Allocations of the call; 0 when it needs none. Stops at the first thing that is wrong.
unsigned Exhaust(const Call& call, std::uint64_t seed) {
  unsigned needed = 0;
  for (const Fail mode : {Fail::kOnce, Fail::kFromThenOn}) {
    for (unsigned k = 1; k < 2000; ++k) {
      const Attempt attempt = Try(call, seed, k, mode);
      std::string wrong = attempt.wrong;
      if (attempt.end == End::kRefused) wrong = "throws " + std::to_string(attempt.code);
      if (attempt.failed != (attempt.end == End::kOutOfMemory)) wrong = "the failure is not reported";
      if (!wrong.empty()) {
        ADD_FAILURE() << Describe(call, seed, k, mode) << ": " << wrong;
        return needed;
      }
      if (!attempt.failed) break;
      needed = k;
    }
  }
  return needed;
}

TEST(Exhaustion, EveryExportedFunction) {
  constexpr unsigned kSets = 8;       // of arguments per function
  constexpr unsigned kTries = 4000;   // to find them
  unsigned long long failures = 0;
  unsigned allocating = 0, never = 0;
  for (const Call& call : Calls()) {
    unsigned sets = 0, most = 0;
    // A set with and a set without dispensable operands, and more where the call depends on more, come by themselves.
    for (std::uint64_t seed = 1; seed <= kTries && sets < kSets; ++seed) {
      const Attempt whole = Try(call, seed, 0, Fail::kOnce);
      if (!whole.wrong.empty()) ADD_FAILURE() << Describe(call, seed, 0, Fail::kOnce) << ": " << whole.wrong;
      if (whole.end != End::kReturned) continue;
      ++sets;
      const unsigned needed = Exhaust(call, seed);
      failures += 2 * needed;
      if (needed > most) most = needed;
    }
    if (NeverSucceeds(call.symbol)) {
      ++never;
      EXPECT_EQ(sets, 0u) << call.symbol;
    } else {
      EXPECT_EQ(sets, kSets) << call.symbol << ": no arguments found that it accepts";
    }
    if (most != 0) ++allocating;
  }
  std::printf("exhaustion: %zu functions, %u of them allocate, %u never succeed, %llu failed allocations\n",
              Calls().size(), allocating, never, failures);
  EXPECT_GT(allocating, 600u);
}

// What the checks are for, they see.

std::string WrongWith(void (*run)(Arguments&), unsigned k = 0) {
  const Call call{"pretended(", run};
  return Try(call, 5, k, Fail::kOnce).wrong;
}

Matrix* kept = nullptr;

TEST(Exhaustion, SeesWhatIsWrong) {
  EXPECT_EQ(WrongWith([](Arguments& a) { a.Begin(); }), "");
  EXPECT_NE(WrongWith([](Arguments& a) {
              a.Begin();
              kept = new DiagonalMatrix(0);
            }),
            "");
  delete kept;
  EXPECT_NE(WrongWith([](Arguments& a) {
              const RegularMatrix& m = a.Exactly<RegularMatrix>(2, 2, true);
              a.Begin();
              const_cast<RegularMatrix&>(m).data()[3] += 1.0;
              const_cast<RegularMatrix&>(m).set_dispensable(false);
            }),
            "");
  EXPECT_NE(WrongWith([](Arguments& a) {
              RegularSparseMatrix& m = a.Exactly<RegularSparseMatrix>(2, 2, false);
              a.Begin();
              ++m.used;
            }),
            "");
  // A failure that is kept quiet.
  const Call quiet{"pretended(", [](Arguments& a) {
                     a.Begin();
                     delete new (std::nothrow) RegularMatrix;
                   }};
  const Attempt attempt = Try(quiet, 5, 1, Fail::kOnce);
  EXPECT_TRUE(attempt.failed);
  EXPECT_EQ(attempt.end, End::kReturned);
}

// A constant dispensable operand that is left alive is reported, whichever arguments make it dispensable.
TEST(Exhaustion, SeesWhatIsNotConsumed) {
  const Call call{"pretended(", [](Arguments& a) {
                    a.Exactly<RegularMatrix>(2, 2, true);
                    a.Begin();
                  }};
  unsigned seen = 0;
  for (std::uint64_t seed = 1; seed <= 100; ++seed) seen += Try(call, seed, 0, Fail::kOnce).wrong.empty() ? 0 : 1;
  EXPECT_GT(seen, 20u);
  EXPECT_LT(seen, 50u);
}

TEST(Calls, List) {
  if (std::getenv("QUORVEL_LIST_CALLS") != nullptr) {
    for (const Call& call : Calls()) std::printf("call %s\n", call.symbol);
  }
  EXPECT_GT(Calls().size(), 1000u);
}

}  // namespace
}  // namespace quorvel::test
