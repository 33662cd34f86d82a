// This room brings a sincos of its own, which the library takes in place of the C library's: it gives the same bits
// everywhere, and so must everything that is computed from it.

#ifndef QUORVEL_TESTS_SINCOS_SINCOS_H
#define QUORVEL_TESTS_SINCOS_SINCOS_H

namespace quorvel::test {

struct SinCos {
  double sin;
  double cos;
};

// For |x| <= 10: the values of twice the working precision, rounded. Any other finite x is not served; the result is NaN.
SinCos PreciseSinCos(double x) noexcept;

// The C library's.
SinCos SystemSinCos(double x) noexcept;

// How often the library has asked for a sine and cosine.
unsigned long CallsOfSinCos() noexcept;

// While it lives, the library gets the C library's values.
class UseSystemSinCos {
 public:
  UseSystemSinCos() noexcept;
  ~UseSystemSinCos();
  UseSystemSinCos(const UseSystemSinCos&) = delete;
  UseSystemSinCos& operator=(const UseSystemSinCos&) = delete;
};

}  // namespace quorvel::test

#endif
