#include "support/random.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace quorvel::test {

std::uint64_t Random::Bits() noexcept {
  std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  return z ^ (z >> 31);
}

double Random::Uniform() noexcept {
  return static_cast<double>(Bits() >> 11) * 0x1p-52 - 1.0;
}

double Random::Uniform(double lo, double hi) noexcept {
  return lo + (hi - lo) * (0.5 * (Uniform() + 1.0));
}

unsigned Random::Below(unsigned count) noexcept {
  return static_cast<unsigned>((Bits() >> 32) * count >> 32);
}

int Random::Integer(int lo, int hi) noexcept {
  return lo + static_cast<int>(Below(static_cast<unsigned>(hi - lo) + 1U));
}

bool Random::Chance(unsigned one_in) noexcept { return Below(one_in) == 0; }

const char* Name(Pattern pattern) noexcept {
  switch (pattern) {
    case Pattern::kUniform: return "uniform";
    case Pattern::kInteger: return "integer";
    case Pattern::kHuge: return "huge";
    case Pattern::kTiny: return "tiny";
    case Pattern::kSpecial: return "special";
    case Pattern::kSignedZero: return "signed zero";
  }
  return "?";
}

double Draw(Pattern pattern, Random& random) noexcept {
  switch (pattern) {
    case Pattern::kUniform: return random.Uniform();
    case Pattern::kInteger: return random.Integer(-9, 9);
    case Pattern::kHuge: return random.Uniform() * 1e+150;
    case Pattern::kTiny: return random.Uniform() * 1e-150;
    case Pattern::kSpecial:
      switch (random.Below(12)) {
        case 0: return std::numeric_limits<double>::quiet_NaN();
        case 1: return std::numeric_limits<double>::infinity();
        case 2: return -std::numeric_limits<double>::infinity();
        case 3: return 0.0;
        default: return random.Uniform();
      }
    case Pattern::kSignedZero:
      switch (random.Below(3)) {
        case 0: return 0.0;
        case 1: return -0.0;
        default: return random.Integer(-3, 3);
      }
  }
  return 0.0;
}

void Fill(double* values, std::size_t count, Pattern pattern, Random& random) noexcept {
  for (std::size_t k = 0; k < count; ++k) values[k] = Draw(pattern, random);
}

bool SameBits(double a, double b) noexcept {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
  return std::memcmp(&a, &b, sizeof a) == 0;
}

bool SameBits(const double* a, const double* b, std::size_t count) noexcept {
  for (std::size_t k = 0; k < count; ++k) {
    if (!SameBits(a[k], b[k])) return false;
  }
  return true;
}

}  // namespace quorvel::test
