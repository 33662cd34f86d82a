// Random numbers that are the same with every compiler and library.
#ifndef GNSS_POSITION_SIMULATE_RANDOM_H
#define GNSS_POSITION_SIMULATE_RANDOM_H

#include <cmath>
#include <cstdint>

namespace gnss {

/// Steele, Lea, Flood, Fast splittable pseudorandom number generators (2014).
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  /// In [0, 1).
  double Uniform() {
    state_ += 0x9e3779b97f4a7c15u;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
    z ^= z >> 31;
    return static_cast<double>(z >> 11) * 0x1p-53;
  }

  /// Standard normal, by the method of Box and Muller (1958).
  double Normal() {
    const double radius = std::sqrt(-2.0 * std::log(1.0 - Uniform()));
    return radius * std::cos(6.283185307179586 * Uniform());
  }

 private:
  std::uint64_t state_;
};

}  // namespace gnss

#endif
