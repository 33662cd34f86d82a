#include "sincos/sincos.h"

#include <dlfcn.h>

#include <cmath>
#include <cstdlib>
#include <limits>

namespace quorvel::test {
namespace {

// An unevaluated sum of two doubles (Dekker: A floating-point technique for extending the available precision, 1971).
struct Double2 {
  double hi;
  double lo;
};

Double2 QuickSum(double a, double b) noexcept {
  const double s = a + b;
  return {s, b - (s - a)};
}

Double2 Sum(double a, double b) noexcept {
  const double s = a + b;
  const double t = s - a;
  return {s, (a - (s - t)) + (b - t)};
}

Double2 Product(double a, double b) noexcept {
  const auto upper = [](double x) {
    const double c = 134217729.0 * x;  // 2^27 + 1
    return c - (c - x);
  };
  const double p = a * b;
  const double a1 = upper(a), b1 = upper(b);
  const double a2 = a - a1, b2 = b - b1;
  return {p, ((a1 * b1 - p) + a1 * b2 + a2 * b1) + a2 * b2};
}

Double2 operator+(Double2 a, Double2 b) noexcept {
  const Double2 s = Sum(a.hi, b.hi);
  const Double2 t = Sum(a.lo, b.lo);
  const Double2 u = QuickSum(s.hi, s.lo + t.hi);
  return QuickSum(u.hi, u.lo + t.lo);
}

Double2 operator*(Double2 a, Double2 b) noexcept {
  const Double2 p = Product(a.hi, b.hi);
  return QuickSum(p.hi, p.lo + (a.hi * b.lo + a.lo * b.hi));
}

Double2 operator/(Double2 a, double b) noexcept {
  const double q = a.hi / b;
  const Double2 p = Product(q, b);
  return QuickSum(q, ((a.hi - p.hi) - p.lo + a.lo) / b);
}

Double2 operator-(Double2 a) noexcept { return {-a.hi, -a.lo}; }

// x^first/first! - x^(first+2)/(first+2)! + ...: below 2^-110 after 30 terms for |x| <= pi/4.
Double2 AlternatingSeries(Double2 x, int first) noexcept {
  const Double2 square = x * x;
  Double2 term = first == 0 ? Double2{1.0, 0.0} : x;
  Double2 sum = term;
  for (int n = first + 2; n < 30; n += 2) {
    term = -(term * square) / (static_cast<double>(n - 1) * n);
    sum = sum + term;
  }
  return sum;
}

bool system_wanted = false;
unsigned long calls = 0;

}  // namespace

SinCos PreciseSinCos(double x) noexcept {
  if (!(std::fabs(x) <= 10.0)) return {std::nan(""), std::nan("")};
  if (x == 0.0) return {x, 1.0};
  // pi/2 in three parts.
  constexpr double kHalfPi[] = {0x1.921fb54442d18p+0, 0x1.1a62633145c07p-54, -0x1.f1976b7ed8fbcp-110};
  const double quarter = std::floor(x / kHalfPi[0] + 0.5);
  Double2 r = Double2{x, 0.0} + -Product(quarter, kHalfPi[0]);
  r = r + -Product(quarter, kHalfPi[1]);
  r = r + -Product(quarter, kHalfPi[2]);
  const double s = AlternatingSeries(r, 1).hi;
  const double c = AlternatingSeries(r, 0).hi;
  switch (static_cast<int>(quarter) & 3) {
    case 0: return {s, c};
    case 1: return {c, -s};
    case 2: return {-s, -c};
    default: return {-c, s};
  }
}

SinCos SystemSinCos(double x) noexcept {
  using Function = void (*)(double, double*, double*);
  static const Function next = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "sincos"));
  if (next == nullptr) std::abort();
  SinCos r;
  next(x, &r.sin, &r.cos);
  return r;
}

unsigned long CallsOfSinCos() noexcept { return calls; }

UseSystemSinCos::UseSystemSinCos() noexcept { system_wanted = true; }
UseSystemSinCos::~UseSystemSinCos() { system_wanted = false; }

}  // namespace quorvel::test

extern "C" __attribute__((visibility("default"))) void sincos(double x, double* s, double* c) noexcept {
  ++quorvel::test::calls;
  const auto r = quorvel::test::system_wanted ? quorvel::test::SystemSinCos(x) : quorvel::test::PreciseSinCos(x);
  *s = r.sin;
  *c = r.cos;
}
