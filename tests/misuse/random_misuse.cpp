// A million calls of exported functions with random kinds, sizes, flags and indices: none crashes, none leaks, none changes
// a constant operand, and each throws only codes that are documented for it, which the callback has heard once. A call that
// is refused leaves every operand that is not dispensable as it was, but for the documented exceptions.
//
// QUORVEL_MISUSE_CALLS sets another number of calls, QUORVEL_MISUSE_SEED runs one call of a failure message again.

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <set>
#include <string>

#include "misuse/calls.h"
#include "misuse/catalogue.h"
#include "support/codes.h"

namespace quorvel::test {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr std::uint64_t kCalls = 100000;
#elif defined(__arm__)
constexpr std::uint64_t kCalls = 100000;
#else
constexpr std::uint64_t kCalls = 1000000;
#endif

struct Outcome {
  std::string wrong;
  int code = 0;
  bool thrown = false;
};

const Call& CallOf(std::uint64_t seed) { return Calls()[static_cast<std::size_t>(seed * 0x9E3779B97F4A7C15u % Calls().size())]; }

// What the callback heard during a call.
int heard_code = 0;
unsigned heard_times = 0;
void Hear(int code) {
  heard_code = code;
  ++heard_times;
}

// The callback hears every code once before it is thrown, and nothing else. M_abort and the bare 0 go past it; the other
// functions of the error scheme are not checked here.
bool HeardRightly(const char* symbol, bool thrown, int code) {
  for (const char* own : {"M_abort(", "abort_set(", "SetAbortCallback("}) {
    if (std::strncmp(symbol, own, std::strlen(own)) == 0) return true;
  }
  if (!thrown || code == 0) return heard_times == 0;
  return heard_times == 1 && heard_code == code;
}

Outcome Misuse(std::uint64_t seed) {
  const Call& call = CallOf(seed);
  Outcome outcome;
  const unsigned first_consumed = FirstConsumed(call.symbol);
  const char* unexpected = nullptr;
  Arguments arguments(call.symbol, seed, Manner::kWild);
  arguments.SetCallback(Hear);
  heard_times = 0;
  bool by_code = false;
  try {
    call.run(arguments);
  } catch (const MatrixException& e) {
    by_code = true;
    outcome.thrown = true;
    outcome.code = e.code();
    if (!arguments.pending()) NoteCode(e.code());
  } catch (const std::bad_alloc&) {  // also std::bad_array_new_length
    outcome.thrown = true;
    outcome.code = 10680;
  } catch (...) {
    unexpected = "another exception";
  }
  const bool heard_rightly = HeardRightly(call.symbol, by_code, outcome.code);
  const Change changed = by_code && outcome.code != 10680 ? arguments.Changed() : Change::kNone;
  outcome.wrong = arguments.Settle(first_consumed);
  if (changed > ChangeWhenRefused(call.symbol)) {
    outcome.wrong = "is refused after an operand has changed";
    if (changed == Change::kMark) outcome.wrong += " to not ok";
  }
  if (!heard_rightly) outcome.wrong = "the callback did not hear the code once";
  if (unexpected != nullptr) outcome.wrong = unexpected;
  const bool listed = outcome.code == 10680 || (arguments.pending() && outcome.code == Arguments::kPending) ||
                      Lists(call.symbol, outcome.code);
  if (outcome.thrown && !listed) outcome.wrong = "throws " + std::to_string(outcome.code);
  return outcome;
}

std::string Describe(std::uint64_t seed) {
  const Call& call = CallOf(seed);
  std::string text;
  Arguments arguments(call.symbol, seed, Manner::kWild);
  arguments.DescribeOnly(text);
  try {
    call.run(arguments);
  } catch (const Arguments::Described&) {
  } catch (...) {
    text = "arguments that could not be made";
  }
  arguments.Settle(Arguments::kMost);
  return std::string(call.symbol) + "\n  with " + text + "\n  QUORVEL_MISUSE_SEED=" + std::to_string(seed);
}

TEST(Misuse, RandomCalls) {
  std::uint64_t first = 1;
  std::uint64_t calls = kCalls;
  if (const char* text = std::getenv("QUORVEL_MISUSE_CALLS")) calls = std::strtoull(text, nullptr, 10);
  if (const char* text = std::getenv("QUORVEL_MISUSE_SEED")) {
    first = std::strtoull(text, nullptr, 10);
    calls = 1;
  }
  std::set<std::string> failing;
  std::uint64_t thrown = 0;
  for (std::uint64_t seed = first; seed < first + calls; ++seed) {
    const Outcome outcome = Misuse(seed);
    if (outcome.thrown) ++thrown;
    // One report per function and kind of failure.
    if (!outcome.wrong.empty() && failing.insert(CallOf(seed).symbol + outcome.wrong).second) {
      ADD_FAILURE() << Describe(seed) << "\n  " << outcome.wrong;
    }
  }
  // Wrong calls, but not only: both must be well represented.
  if (calls >= 10000) {
    EXPECT_GT(thrown, calls / 5);
    EXPECT_LT(thrown, calls - calls / 5);
  }
  std::printf("misuse: %llu calls of %zu functions, %llu thrown codes\n", static_cast<unsigned long long>(calls),
              Calls().size(), static_cast<unsigned long long>(thrown));
}

}  // namespace
}  // namespace quorvel::test
