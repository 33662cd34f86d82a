#include "support/big_integer.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quorvel::test {

BigInteger::BigInteger(long long value) : negative_(value < 0) {
  auto magnitude = value < 0 ? 0 - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value);
  for (; magnitude != 0; magnitude >>= 32) words_.push_back(static_cast<std::uint32_t>(magnitude));
}

BigInteger BigInteger::Scaled(double value, int shift) {
  int exponent = 0;
  const double fraction = std::frexp(value, &exponent);
  BigInteger whole(static_cast<long long>(std::ldexp(fraction, 53)));
  const int places = exponent - 53 + shift;
  if (places >= 0) return whole.ShiftedLeft(static_cast<unsigned>(places));
  return ExactQuotient(whole, BigInteger(1).ShiftedLeft(static_cast<unsigned>(-places)));
}

void BigInteger::Trim() {
  while (!words_.empty() && words_.back() == 0) words_.pop_back();
  if (words_.empty()) negative_ = false;
}

int BigInteger::Compare(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b) {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  for (std::size_t k = a.size(); k-- > 0;) {
    if (a[k] != b[k]) return a[k] < b[k] ? -1 : 1;
  }
  return 0;
}

BigInteger BigInteger::operator-() const {
  BigInteger result = *this;
  result.negative_ = !negative_ && !IsZero();
  return result;
}

BigInteger BigInteger::Magnitude() const { return negative_ ? -*this : *this; }

BigInteger BigInteger::ShiftedLeft(unsigned bits) const {
  BigInteger result;
  result.negative_ = negative_;
  result.words_.assign(bits / 32, 0);
  std::uint64_t carry = 0;
  for (const std::uint32_t word : words_) {
    carry |= static_cast<std::uint64_t>(word) << bits % 32;
    result.words_.push_back(static_cast<std::uint32_t>(carry));
    carry >>= 32;
  }
  result.words_.push_back(static_cast<std::uint32_t>(carry));
  result.Trim();
  return result;
}

BigInteger operator+(const BigInteger& a, const BigInteger& b) {
  BigInteger result;
  const std::size_t size = std::max(a.words_.size(), b.words_.size());
  const auto word = [](const BigInteger& x, std::size_t k) -> std::int64_t {
    return k < x.words_.size() ? x.words_[k] : 0;
  };
  std::int64_t carry = 0;
  if (a.negative_ == b.negative_) {
    result.negative_ = a.negative_;
    for (std::size_t k = 0; k < size; ++k) {
      carry += word(a, k) + word(b, k);
      result.words_.push_back(static_cast<std::uint32_t>(carry));
      carry >>= 32;
    }
    result.words_.push_back(static_cast<std::uint32_t>(carry));
  } else {
    const bool a_larger = BigInteger::Compare(a.words_, b.words_) >= 0;
    const BigInteger& larger = a_larger ? a : b;
    const BigInteger& smaller = a_larger ? b : a;
    result.negative_ = larger.negative_;
    for (std::size_t k = 0; k < size; ++k) {
      carry += word(larger, k) - word(smaller, k);
      result.words_.push_back(static_cast<std::uint32_t>(carry));
      carry >>= 32;  // arithmetic: -1 is a borrow
    }
  }
  result.Trim();
  return result;
}

BigInteger operator*(const BigInteger& a, const BigInteger& b) {
  BigInteger result;
  result.negative_ = a.negative_ != b.negative_;
  result.words_.assign(a.words_.size() + b.words_.size(), 0);
  for (std::size_t i = 0; i < a.words_.size(); ++i) {
    std::uint64_t carry = 0;
    for (std::size_t j = 0; j < b.words_.size(); ++j) {
      carry += result.words_[i + j] + static_cast<std::uint64_t>(a.words_[i]) * b.words_[j];
      result.words_[i + j] = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
    result.words_[i + b.words_.size()] = static_cast<std::uint32_t>(carry);
  }
  result.Trim();
  return result;
}

// Word by word from the top; a word of the quotient is found by bisection, which is slow and hard to get wrong.
BigInteger ExactQuotient(const BigInteger& a, const BigInteger& b) {
  BigInteger quotient;
  const BigInteger divisor = b.Magnitude();
  BigInteger rest = a.Magnitude();
  const std::size_t top = a.words_.size() >= b.words_.size() ? a.words_.size() - b.words_.size() + 1 : 0;
  quotient.words_.assign(top, 0);
  for (std::size_t k = top; k-- > 0;) {
    const BigInteger unit = divisor.ShiftedLeft(static_cast<unsigned>(32 * k));
    if (rest < unit) continue;
    std::uint64_t low = 1;
    std::uint64_t high = std::uint64_t{1} << 32;
    while (high - low > 1) {
      const std::uint64_t middle = (low + high) / 2;
      if (rest < unit * BigInteger(static_cast<long long>(middle))) {
        high = middle;
      } else {
        low = middle;
      }
    }
    quotient.words_[k] = static_cast<std::uint32_t>(low);
    rest = rest - unit * BigInteger(static_cast<long long>(low));
  }
  EXPECT_TRUE(rest.IsZero()) << "the division leaves a remainder";
  quotient.negative_ = a.negative_ != b.negative_;
  quotient.Trim();
  return quotient;
}

double BigInteger::Leading(int& exponent) const {
  double value = 0.0;
  const std::size_t size = words_.size();
  for (std::size_t k = 0; k < 3; ++k) value = value * 4294967296.0 + (k < size ? words_[size - 1 - k] : 0);
  int places = 0;
  value = std::frexp(value, &places);
  exponent = places + 32 * (static_cast<int>(size) - 3);
  return negative_ ? -value : value;
}

namespace {

// The smallest power of two that makes all of them whole.
int WholeShift(const double* values, std::size_t count) {
  int shift = 0;
  for (std::size_t k = 0; k < count; ++k) {
    if (values[k] == 0.0) continue;
    int exponent = 0;
    double fraction = std::frexp(values[k], &exponent);
    int places = 0;
    for (; fraction != std::floor(fraction); fraction *= 2.0) ++places;
    shift = std::max(shift, places - exponent);
  }
  return shift;
}

}  // namespace

// Fraction-free elimination: Bareiss, Sylvester's identity and multistep integer-preserving Gaussian elimination, 1968.
// The right-hand side is one more column; afterwards the matrix is reduced to its determinant on the diagonal.
ExactSolution Solve(const Plain& a, const std::vector<double>& b) {
  const unsigned n = a.n;
  const int matrix_shift = WholeShift(a.e.data(), a.e.size());
  const int side_shift = WholeShift(b.data(), b.size());
  std::vector<std::vector<BigInteger>> w(n, std::vector<BigInteger>(n + 1));
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = 0; j < n; ++j) w[i][j] = BigInteger::Scaled(a(i, j), matrix_shift);
    w[i][n] = BigInteger::Scaled(b[i], side_shift);
  }
  ExactSolution result{{}, BigInteger(1), side_shift - matrix_shift, false};
  BigInteger previous(1);
  for (unsigned k = 0; k < n; ++k) {
    unsigned p = k;
    while (p < n && w[p][k].IsZero()) ++p;
    if (p == n) {
      result.singular = true;
      return result;
    }
    std::swap(w[p], w[k]);
    for (unsigned i = 0; i < n; ++i) {
      if (i == k) continue;
      for (unsigned j = 0; j <= n; ++j) {
        if (j == k) continue;
        w[i][j] = ExactQuotient(w[k][k] * w[i][j] - w[i][k] * w[k][j], previous);
      }
      w[i][k] = BigInteger();
    }
    previous = w[k][k];
  }
  result.denominator = previous;
  for (unsigned i = 0; i < n; ++i) result.numerators.push_back(w[i][n]);
  return result;
}

double UlpsOff(double x, const ExactSolution& exact, unsigned i) {
  // exact = numerator / (denominator·2^shift); with x = whole / 2^places the difference is
  // (whole·denominator·2^shift - numerator·2^places) / (denominator·2^(shift + places)).
  int exponent = 0;
  std::frexp(x == 0.0 ? 1.0 : x, &exponent);
  const int unit = std::max(exponent - 53, std::numeric_limits<double>::min_exponent - 53);  // ulp(x) = 2^unit
  const BigInteger whole(static_cast<long long>(std::ldexp(x, -unit)));
  BigInteger left = whole * exact.denominator;
  BigInteger right = exact.numerators[i];
  // In ulps: whole - numerator / (denominator·2^(shift + unit)).
  const int places = exact.shift + unit;
  BigInteger denominator = exact.denominator;
  if (places >= 0) {
    left = left.ShiftedLeft(static_cast<unsigned>(places));
    denominator = denominator.ShiftedLeft(static_cast<unsigned>(places));
  } else {
    right = right.ShiftedLeft(static_cast<unsigned>(-places));
  }
  const BigInteger difference = left - right;
  // Whether it is at most one half is decided exactly.
  if (!(denominator.Magnitude() < difference.Magnitude() + difference.Magnitude()))
    return difference.IsZero() ? 0.0 : 0.5;
  int over = 0;
  int under = 0;
  const double ratio = difference.Leading(over) / denominator.Leading(under);
  return std::max(std::ldexp(std::fabs(ratio), over - under), std::nextafter(0.5, 1.0));
}

}  // namespace quorvel::test
