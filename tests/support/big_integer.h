// Whole numbers of any size, and exact solutions of linear systems: the truth that solvers are measured against.

#ifndef QUORVEL_TESTS_SUPPORT_BIG_INTEGER_H
#define QUORVEL_TESTS_SUPPORT_BIG_INTEGER_H

#include <cstdint>
#include <vector>

#include "support/plain.h"

namespace quorvel::test {

class BigInteger {
 public:
  BigInteger() = default;
  BigInteger(long long value);  // NOLINT: numbers are meant to be written where a BigInteger is expected
  // value·2^shift, which must be whole.
  static BigInteger Scaled(double value, int shift);

  bool IsZero() const { return words_.empty(); }
  bool IsNegative() const { return negative_; }
  BigInteger operator-() const;
  BigInteger Magnitude() const;
  BigInteger ShiftedLeft(unsigned bits) const;
  friend BigInteger operator+(const BigInteger& a, const BigInteger& b);
  friend BigInteger operator-(const BigInteger& a, const BigInteger& b) { return a + -b; }
  friend BigInteger operator*(const BigInteger& a, const BigInteger& b);
  // The quotient of a division without remainder; a remainder fails the test.
  friend BigInteger ExactQuotient(const BigInteger& a, const BigInteger& b);
  friend bool operator<(const BigInteger& a, const BigInteger& b) { return (a - b).negative_; }
  friend bool operator==(const BigInteger& a, const BigInteger& b) { return (a - b).IsZero(); }
  // Roughly: good to 1e-9, and with any exponent as value·2^exponent, 0.5 <= value < 1.
  double Leading(int& exponent) const;

 private:
  void Trim();
  static int Compare(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b);

  bool negative_ = false;
  std::vector<std::uint32_t> words_;  // lowest first, no zero on top
};

// The exact solution of a regular system of doubles: x(i) = numerators[i] / denominator·2^-shift.
struct ExactSolution {
  std::vector<BigInteger> numerators;
  BigInteger denominator;
  int shift;  // the right-hand side was scaled by 2^shift more than the matrix
  bool singular;
};
ExactSolution Solve(const Plain& a, const std::vector<double>& b);

// |x - exact| in units of x's last place; 0.5 at most means that x is the exact solution rounded.
double UlpsOff(double x, const ExactSolution& exact, unsigned i);

}  // namespace quorvel::test

#endif
