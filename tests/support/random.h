// Random numbers and fill patterns that are the same on every platform.

#ifndef QUORVEL_TESTS_SUPPORT_RANDOM_H
#define QUORVEL_TESTS_SUPPORT_RANDOM_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace quorvel::test {

// SplitMix64 (Steele, Lea, Flood: Fast splittable pseudorandom number generators, 2014).
class Random {
 public:
  explicit Random(std::uint64_t seed) noexcept : state_(seed) {}

  std::uint64_t Bits() noexcept;
  double Uniform() noexcept;                       // in [-1, 1), a multiple of 2^-52
  double Uniform(double lo, double hi) noexcept;   // in [lo, hi]
  int Integer(int lo, int hi) noexcept;            // in [lo, hi]
  unsigned Below(unsigned count) noexcept;         // in [0, count); count > 0
  bool Chance(unsigned one_in) noexcept;           // true once in so many

 private:
  std::uint64_t state_;
};

enum class Pattern {
  kUniform,      // [-1, 1)
  kInteger,      // whole numbers from -9 to 9
  kHuge,         // [-1, 1) * 1e+150
  kTiny,         // [-1, 1) * 1e-150
  kSpecial,      // uniform, with NaN, +inf, -inf and zeros strewn in
  kSignedZero    // small whole numbers, with many 0.0 and -0.0
};

constexpr std::array<Pattern, 6> kAllPatterns = {Pattern::kUniform, Pattern::kInteger,
                                                 Pattern::kHuge,    Pattern::kTiny,
                                                 Pattern::kSpecial, Pattern::kSignedZero};

// Patterns without NaN and infinities, for results that are compared within a tolerance.
constexpr std::array<Pattern, 5> kFinitePatterns = {Pattern::kUniform, Pattern::kInteger,
                                                    Pattern::kHuge, Pattern::kTiny,
                                                    Pattern::kSignedZero};

const char* Name(Pattern pattern) noexcept;  // for failure messages

double Draw(Pattern pattern, Random& random) noexcept;
void Fill(double* values, std::size_t count, Pattern pattern, Random& random) noexcept;

// Same bits; any NaN equals any other.
bool SameBits(double a, double b) noexcept;
bool SameBits(const double* a, const double* b, std::size_t count) noexcept;

}  // namespace quorvel::test

#endif
