// One number over all results of a test program, to compare platforms bit for bit.
//
// Feed it results whose order of floating-point operations is fixed, and nothing that depends on
// the machine (pointers, sizeof, sincos). Each test has its own FNV-1a hash, mixed with its name;
// the room's digest is the sum of these, so the order in which tests run does not matter. main.cpp
// prints it as "digest <room> <hex>"; with QUORVEL_DIGEST_DETAIL=1 in the environment each test's
// too, which shows where two platforms part.

#ifndef QUORVEL_TESTS_SUPPORT_DIGEST_H
#define QUORVEL_TESTS_SUPPORT_DIGEST_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace quorvel::test::digest {

void Feed(std::uint64_t bits) noexcept;
void Feed(double value) noexcept;  // all NaNs alike; the sign of zero counts
void Feed(int value) noexcept;
void Feed(unsigned value) noexcept;
void Feed(bool value) noexcept;
void Feed(const double* values, std::size_t count) noexcept;
void Feed(const std::string& text) noexcept;

// A dense matrix: sizes, singularity count and stored doubles. (Any class with these members.)
template <class M>
auto Feed(const M& a) noexcept -> decltype(a.data(), a.StoredCount(), void()) {
  Feed(a.nrows());
  Feed(a.ncols());
  Feed(a.nsing());
  Feed(a.data(), a.StoredCount());
}

// The hash of what the current test has fed so far.
std::uint64_t Current() noexcept;

// For main.cpp.
void BeginTest() noexcept;
void EndTest(const char* suite, const char* name) noexcept;
void Report(const char* room) noexcept;

}  // namespace quorvel::test::digest

#endif
