// Closed-form kernels on plain arrays: worked examples, and every branch against formulas written out one by one.

#include "quorvel/small_inverses.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "support/digest.h"
#include "support/plain.h"
#include "support/random.h"

namespace quorvel::test {
namespace {

template <std::size_t N>
using Array = std::array<double, N>;

// Equal values; zeros of either sign are one value here.
template <std::size_t N>
void ExpectValues(const Array<N>& got, const Array<N>& expected) {
  for (std::size_t k = 0; k < N; ++k) {
    const bool same = SameBits(got[k], expected[k]) || (got[k] == 0.0 && expected[k] == 0.0);
    EXPECT_TRUE(same) << "element " << k << " is " << got[k] << " instead of " << expected[k];
  }
}

template <std::size_t N>
void Expect(int (*kernel)(const double*, double*, double), const Array<N>& a, double tol, int count,
            const Array<N>& expected) {
  Array<N> out;
  out.fill(77.0);
  EXPECT_EQ(kernel(a.data(), out.data(), tol), count);
  ExpectValues(out, expected);
  Array<N> same = a;  // in and out may be one array
  EXPECT_EQ(kernel(same.data(), same.data(), tol), count);
  ExpectValues(same, expected);
}

int Rm2(const double* a, double* out, double tol) {
  return inv2x2_rm(reinterpret_cast<const double(*)[2]>(a), reinterpret_cast<double(*)[2]>(out), tol);
}
int Rm3(const double* a, double* out, double tol) {
  return inv3x3_rm(reinterpret_cast<const double(*)[3]>(a), reinterpret_cast<double(*)[3]>(out), tol);
}
int Ulm2(const double* a, double* out, double tol) {
  std::copy_n(a, 3, out);
  return inv2x2_ulm(out, tol);
}
int Ulm3(const double* a, double* out, double tol) {
  std::copy_n(a, 6, out);
  return inv3x3_ulm(out, tol);
}

constexpr double kTol = 1e-200;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(SmallKernels, SymmetricOfOrder2) {
  Expect<3>(inv2x2_sm, {2, 0, 4}, kTol, 0, {0.5, 0, 0.25});
  Expect<3>(inv2x2_sm, {0, 2, 0}, kTol, 0, {0, 0.5, 0});
  Expect<3>(inv2x2_sm, {0, 1e-150, 0}, kTol, 1, {0, 1e150, 0});  // det = -1e-300
  Expect<3>(inv2x2_sm, {4, 2, 1}, kTol, 1, {0.25, 0, 0});
  Expect<3>(inv2x2_sm, {0, 0, 8}, kTol, 1, {0, 0, 0.125});
  Expect<3>(inv2x2_sm, {0, 0, 0}, kTol, 2, {0, 0, 0});
  Expect<3>(inv2x2_sm, {0, 2, 0}, 4.0, 2, {0, 0, 0});  // |x| = tol does not pass
  Expect<3>(inv2x2_sm, {0, 2, 0}, 3.0, 0, {0, 0.5, 0});
  Expect<3>(inv2x2_sm, {kNaN, 1, 2}, kTol, 1, {0, 0, 0.5});
}

TEST(SmallKernels, GeneralOfOrder2) {
  Expect<4>(Rm2, {1, 2, 3, 4}, kTol, 0, {-2, 1, 1.5, -0.5});
  Expect<4>(Rm2, {0, 2, 0, 0}, kTol, 1, {0, 0, 0.5, 0});
  Expect<4>(Rm2, {0, 0, 4, 0}, kTol, 1, {0, 0.25, 0, 0});
  Expect<4>(Rm2, {1, 2, 2, 4}, kTol, 1, {1, 0, 0, 0});
  Expect<4>(Rm2, {0, 2, 0, 4}, kTol, 1, {0, 0, 0, 0.25});
  Expect<4>(Rm2, {0, 0, 0, 0}, kTol, 2, {0, 0, 0, 0});
}

TEST(SmallKernels, SymmetricOfOrder3) {
  Expect<6>(inv3x3_sm, {1, 0, 0, 0, 0, 4}, kTol, 1, {1, 0, 0, 0, 0, 0.25});
  Expect<6>(inv3x3_sm, {2, 0, 0, 4, 0, 8}, kTol, 0, {0.5, 0, 0, 0.25, 0, 0.125});
  Expect<6>(inv3x3_sm, {0, 0, 0, 2, 1, 1}, kTol, 1, {0, 0, 0, 1, -1, 2});
  Expect<6>(inv3x3_sm, {2, 1, 0, 1, 0, 0}, kTol, 1, {1, -1, 0, 2, 0, 0});
  Expect<6>(inv3x3_sm, {0, 0, 0, 4, 0, 0}, kTol, 2, {0, 0, 0, 0.25, 0, 0});
  Expect<6>(inv3x3_sm, {1, 1, 1, 1, 1, 1}, kTol, 2, {1, 0, 0, 0, 0, 0});
  Expect<6>(inv3x3_sm, {0, 0, 1e-140, 0, 0, 0}, kTol, 2, {0, 0, 1e140, 0, 0, 0});
  Expect<6>(inv3x3_sm, {0, 0, 0, 0, 1e-140, 0}, kTol, 2, {0, 0, 0, 0, 1e140, 0});
  Expect<6>(inv3x3_sm, {0, 1e-140, 0, 0, 0, 0}, kTol, 2, {0, 1e140, 0, 0, 0, 0});
  Expect<6>(inv3x3_sm, {0, 0, 0, 0, 0, 0}, kTol, 3, {0, 0, 0, 0, 0, 0});
}

TEST(SmallKernels, GeneralOfOrder3) {
  Expect<9>(Rm3, {0, 1, 0, 0, 0, 1, 1, 0, 0}, kTol, 0, {0, 0, 1, 1, 0, 0, 0, 1, 0});
  Expect<9>(Rm3, {0, 0, 0, 0, 1, 2, 0, 3, 4}, kTol, 1, {0, 0, 0, 0, -2, 1, 0, 1.5, -0.5});
  Expect<9>(Rm3, {1, 0, 2, 0, 0, 0, 3, 0, 4}, kTol, 1, {-2, 0, 1, 0, 0, 0, 1.5, 0, -0.5});
  Expect<9>(Rm3, {0, 0, 0, 0, 0, 0, 0, 0, 2}, kTol, 2, {0, 0, 0, 0, 0, 0, 0, 0, 0.5});
  for (const auto& [r, c] : {std::pair{0, 1}, {0, 2}, {1, 0}, {1, 2}, {2, 0}, {2, 1}}) {
    Array<9> a{};
    Array<9> expected{};
    a[static_cast<unsigned>(3 * r + c)] = 4.0;
    expected[static_cast<unsigned>(3 * c + r)] = 0.25;
    Expect<9>(Rm3, a, kTol, 2, expected);
  }
  // The first in the order of rows wins.
  Expect<9>(Rm3, {0, 0, 4, 2, 0, 0, 0, 0, 0}, kTol, 2, {0, 0, 0, 0, 0, 0, 0.25, 0, 0});
  Expect<9>(Rm3, {0, 0, 0, 0, 0, 0, 0, 0, 0}, kTol, 3, {0, 0, 0, 0, 0, 0, 0, 0, 0});
}

TEST(SmallKernels, Triangular) {
  Expect<3>(Ulm2, {2, 3, 4}, kTol, 0, {0.5, -0.375, 0.25});
  Expect<3>(Ulm2, {0, 3, 4}, kTol, 1, {0, 0, 0.25});
  Expect<3>(Ulm2, {2, 3, 1e-200}, kTol, 1, {0.5, 0, 0});
  Expect<3>(Ulm2, {0, 3, kNaN}, kTol, 2, {0, 0, 0});
  Expect<6>(Ulm3, {1, 5, 7, 0, 3, 2}, kTol, 1, {1, 0, -3.5, 0, 0, 0.5});
  Expect<6>(Ulm3, {1, 2, 3, 4, 5, 8}, kTol, 0, {1, -0.5, -0.0625, 0.25, -0.15625, 0.125});
  Expect<6>(Ulm3, {0, 5, 7, 2, 3, 4}, kTol, 1, {0, 0, 0, 0.5, -0.375, 0.25});
  Expect<6>(Ulm3, {1, 5, 7, 2, 3, 0}, kTol, 1, {1, -2.5, 0, 0.5, 0, 0});
  Expect<6>(Ulm3, {0, 1, 1, 0, 1, 0}, kTol, 3, {0, 0, 0, 0, 0, 0});
}

// The stated formulas, element by element, on the branch they belong to.
struct Outcome {
  int count;
  Plain inverse;
};

Outcome Stated(const Plain& a, double tol) {
  const auto passes = [tol](double x) { return std::fabs(x) > tol; };
  const unsigned n = a.n;
  Outcome result{0, Plain(n, n)};
  Plain& x = result.inverse;
  if (n == 2) {
    const double det = a(0, 0) * a(1, 1) - a(0, 1) * a(1, 0);
    if (passes(det)) {
      const double r = 1.0 / det;
      x(0, 0) = a(1, 1) * r;
      x(0, 1) = -(a(0, 1) * r);
      x(1, 0) = -(a(1, 0) * r);
      x(1, 1) = a(0, 0) * r;
      return result;
    }
    result.count = 1;
    if (passes(a(0, 0))) return x(0, 0) = 1.0 / a(0, 0), result;
    if (passes(a(1, 1))) return x(1, 1) = 1.0 / a(1, 1), result;
    if (passes(a(0, 1))) return x(1, 0) = 1.0 / a(0, 1), result;
    if (passes(a(1, 0))) return x(0, 1) = 1.0 / a(1, 0), result;
    result.count = 2;
    return result;
  }
  // Cofactor (i, j): the rows and columns that are left, with its sign.
  Plain cofactor(3, 3);
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = 0; j < 3; ++j) {
      const unsigned p = i == 0 ? 1 : 0, q = i == 2 ? 1 : 2;
      const unsigned s = j == 0 ? 1 : 0, t = j == 2 ? 1 : 2;
      const double minor = a(p, s) * a(q, t) - a(p, t) * a(q, s);
      cofactor(i, j) = (i + j) % 2 == 0 ? minor : -minor;
    }
  }
  const double det = (a(0, 0) * cofactor(0, 0) + a(0, 1) * cofactor(0, 1)) + a(0, 2) * cofactor(0, 2);
  if (passes(det)) {
    const double r = 1.0 / det;
    for (unsigned i = 0; i < 3; ++i) {
      for (unsigned j = 0; j < 3; ++j) x(j, i) = cofactor(i, j) * r;
    }
    return result;
  }
  result.count = 1;
  for (unsigned left_out = 0; left_out < 3; ++left_out) {
    const double m = cofactor(left_out, left_out);
    if (!passes(m)) continue;
    const unsigned p = left_out == 0 ? 1 : 0, q = left_out == 2 ? 1 : 2;
    const double s = 1.0 / m;
    x(p, p) = a(q, q) * s;
    x(q, q) = a(p, p) * s;
    x(p, q) = -(a(p, q) * s);
    x(q, p) = -(a(q, p) * s);
    return result;
  }
  result.count = 2;
  for (unsigned i = 0; i < 3; ++i) {
    if (passes(a(i, i))) return x(i, i) = 1.0 / a(i, i), result;
  }
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = 0; j < 3; ++j) {
      if (i != j && passes(a(i, j))) return x(j, i) = 1.0 / a(i, j), result;
    }
  }
  result.count = 3;
  return result;
}

// Elements from 0, small whole numbers and odd scales, so that every branch is met.
double Element(Random& random, unsigned trial) {
  switch (trial % 4) {
    case 0:
      return Draw(kAllPatterns[trial / 4 % kAllPatterns.size()], random);
    case 1:
      return random.Chance(2) ? 0.0 : random.Integer(-2, 2);
    case 2:
      return random.Chance(3) ? random.Uniform() * 1e-120 : 0.0;
    default:
      return random.Chance(2) ? random.Integer(-3, 3) : random.Integer(-3, 3) * 1e-180;
  }
}

TEST(SmallKernels, FollowTheStatedFormulasBitForBit) {
  Random random(401);
  int seen[2][4] = {};
  for (unsigned trial = 0; trial < 40000; ++trial) {
    for (unsigned n : {2u, 3u}) {
      Plain general(n, n);
      for (double& e : general.e) e = Element(random, trial);
      const Outcome expected = Stated(general, kTol);
      Plain got(n, n);
      ASSERT_EQ((n == 2 ? Rm2 : Rm3)(general.e.data(), got.e.data(), kTol), expected.count);
      ASSERT_TRUE(Same(got, expected.inverse, true));
      ++seen[n - 2][expected.count];
      digest::Feed(expected.count);

      // The symmetric kernels read the upper triangle; an element off the diagonal is put back in its own place.
      Plain symmetric = general;
      std::vector<double> packed, inverse(n * (n + 1) / 2), wanted;
      for (unsigned i = 0; i < n; ++i) {
        for (unsigned j = i; j < n; ++j) packed.push_back(symmetric(j, i) = symmetric(i, j));
      }
      const Outcome outcome = Stated(symmetric, kTol);
      for (unsigned i = 0; i < n; ++i) {
        for (unsigned j = i; j < n; ++j) wanted.push_back(outcome.inverse(j, i));
      }
      ASSERT_EQ((n == 2 ? inv2x2_sm : inv3x3_sm)(packed.data(), inverse.data(), kTol), outcome.count);
      for (std::size_t k = 0; k < wanted.size(); ++k) {
        ASSERT_TRUE(SameBits(inverse[k], wanted[k]) || (inverse[k] == 0.0 && wanted[k] == 0.0)) << trial << " " << k;
      }
      for (double e : inverse) digest::Feed(e == 0.0 ? 0.0 : e);
    }
  }
  for (int count = 0; count <= 2; ++count) EXPECT_GT(seen[0][count], 50) << count;
  for (int count = 0; count <= 3; ++count) EXPECT_GT(seen[1][count], 50) << count;
}

TEST(SmallKernels, TriangularOnesFollowTheStatedFormulasBitForBit) {
  Random random(402);
  int singular = 0;
  for (unsigned trial = 0; trial < 20000; ++trial) {
    Array<6> t;
    for (double& e : t) e = Element(random, trial);
    // Zero what fails, then the formulas.
    Plain u(3, 3);
    u(0, 0) = t[0], u(0, 1) = t[1], u(0, 2) = t[2], u(1, 1) = t[3], u(1, 2) = t[4], u(2, 2) = t[5];
    int count = 0;
    for (unsigned i = 0; i < 3; ++i) {
      if (std::fabs(u(i, i)) > kTol) {
        u(i, i) = 1.0 / u(i, i);
        continue;
      }
      ++count;
      for (unsigned k = 0; k < 3; ++k) u(i, k) = u(k, i) = 0.0;
    }
    const double t01 = -(u(0, 0) * u(1, 1)) * u(0, 1);
    const double t12 = -(u(1, 1) * u(2, 2)) * u(1, 2);
    const double t02 = -(t01 * u(1, 2) + u(0, 0) * u(0, 2)) * u(2, 2);
    Array<6> got = t;
    ASSERT_EQ(inv3x3_ulm(got.data(), kTol), count);
    ExpectValues<6>(got, {u(0, 0), t01, t02, u(1, 1), t12, u(2, 2)});
    singular += count != 0;
    Array<3> two = {t[0], t[1], t[3]};
    const double unlike = (u(0, 0) * u(1, 1)) * u(0, 1);
    inv2x2_ulm(two.data(), kTol);
    if (count == 0) ExpectValues<3>(two, {u(0, 0), -unlike, u(1, 1)});
  }
  EXPECT_GT(singular, 1000);
}

// ---------------------------------------------------------------------------------------------------------------------

Plain Full(const Array<6>& packed) {
  Plain p(3, 3);
  unsigned k = 0;
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = i; j < 3; ++j) p(i, j) = p(j, i) = packed[k++];
  }
  return p;
}

double Term(const Plain& a, const Plain& b, unsigned i, unsigned j) {
  double sum = a(i, 0) * b(0, j);
  for (unsigned k = 1; k < 3; ++k) sum += a(i, k) * b(k, j);
  return sum;
}

Array<6> Sandwich(const Plain& a, const Plain& q) {
  Plain t(3, 3), transposed(3, 3);
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = 0; j < 3; ++j) {
      t(i, j) = Term(a, q, i, j);
      transposed(j, i) = a(i, j);
    }
  }
  Array<6> out;
  unsigned k = 0;
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = i; j < 3; ++j) out[k++] = Term(t, transposed, i, j);
  }
  return out;
}

TEST(SmallProducts, FollowTheirSums) {
  Random random(403);
  for (Pattern pattern : kAllPatterns) {
    for (int trial = 0; trial < 200; ++trial) {
      Array<6> s, q, out;
      double a[3][3], v[3];
      Fill(s.data(), 6, pattern, random);
      Fill(q.data(), 6, pattern, random);
      Fill(&a[0][0], 9, pattern, random);
      Fill(v, 3, pattern, random);
      SQS3x3(out.data(), s.data(), q.data());
      EXPECT_TRUE(SameBits(out.data(), Sandwich(Full(s), Full(q)).data(), 6));
      digest::Feed(out.data(), 6);
      Plain general(3, 3);
      general.e.assign(&a[0][0], &a[0][0] + 9);
      AQAT3x3(out.data(), a, q.data());
      EXPECT_TRUE(SameBits(out.data(), Sandwich(general, Full(q)).data(), 6));
      digest::Feed(out.data(), 6);
      double norm = 0.0;
      for (unsigned i = 0; i < 3; ++i) {
        double inner = 0.0;
        for (unsigned k = 0; k < 3; ++k) inner = k == 0 ? Full(q)(i, k) * v[k] : inner + Full(q)(i, k) * v[k];
        norm = i == 0 ? v[i] * inner : norm + v[i] * inner;
      }
      EXPECT_TRUE(SameBits(PWeightedNorm3x3(v, q.data()), norm));
      digest::Feed(norm);
      // In and out may be one array.
      Array<6> same = s;
      SQS3x3(same.data(), same.data(), q.data());
      EXPECT_TRUE(SameBits(same.data(), Sandwich(Full(s), Full(q)).data(), 6));
    }
  }
}

TEST(SmallProducts, KnownNumbers) {
  const double s[6] = {1, 0, 0, 2, 0, 3};
  const double q[6] = {1, 1, 1, 1, 1, 1};
  Array<6> out;
  SQS3x3(out.data(), s, q);
  ExpectValues<6>(out, {1, 2, 3, 4, 6, 9});
  const double a[3][3] = {{1, 0, 0}, {1, 1, 0}, {0, 0, 2}};
  const double identity[6] = {1, 0, 0, 1, 0, 1};
  AQAT3x3(out.data(), a, identity);
  ExpectValues<6>(out, {1, 1, 0, 2, 0, 4});
  const double v[3] = {1, 2, 3};
  EXPECT_EQ(PWeightedNorm3x3(v, identity), 14.0);
}

// The library's users have it too, under the name of the factors of matrices.
TEST(SmallCholeskyFactor, AnExactlyZeroPivotIsSingularWithoutTolerance) {
  const Array<6> a = {4, 2, 1, 0, 0, 9};  // (1, 1): 1 - (2/2)^2
  Array<6> u = {};
  EXPECT_EQ(CholeskyFactor(a.data(), 3, u.data(), 0.0), 1);
  ExpectValues(u, {2, 0, 0, 0, 0, 3});
  const Array<6> b = {4, 2, 5, 0, 0, 9};
  EXPECT_EQ(CholeskyFactor(b.data(), 3, u.data(), 1e-12), 0);
  ExpectValues(u, {2, 1, 2, 0, 0, 3});
}

TEST(CholeskyInverse, OfAKnownMatrix) {
  // U = [2 1 0; 0 2 1; 0 0 1] gives a = UᵀU, i_utc packed.
  const double a[6] = {4, 2, 5, 0, 2, 2};
  Array<6> out;
  EXPECT_EQ(CholeskyInverse3x3(a, out.data(), 0.0), 0);
  // U⁻¹ = [1/2 -1/4 1/4; 0 1/2 -1/2; 0 0 1], times its transpose.
  ExpectValues<6>(out, {0.375, -0.25, 0.5, 0.25, -0.5, 1});
}

TEST(CholeskyInverse, CountsSingularPivots) {
  const double a[6] = {4, 2, 1, 0, 0, 9};
  Array<6> out;
  EXPECT_EQ(CholeskyInverse3x3(a, out.data(), 0.0), 1);
  ExpectValues<6>(out, {0.25, 0, 0, 0, 0, 1.0 / 3.0 * (1.0 / 3.0)});
  const double zero[6] = {};
  EXPECT_EQ(CholeskyInverse3x3(zero, out.data(), 0.0), 3);
  ExpectValues<6>(out, {});
}

TEST(CholeskyInverse, FollowsItsSums) {
  Random random(404);
  for (int trial = 0; trial < 2000; ++trial) {
    // A Gram matrix, sometimes of rank 2.
    double g[3][3];
    Fill(&g[0][0], 9, trial % 2 == 0 ? Pattern::kUniform : Pattern::kInteger, random);
    if (random.Chance(4)) std::copy_n(g[0], 3, g[2]);
    Plain a(3, 3);
    for (unsigned i = 0; i < 3; ++i) {
      for (unsigned j = 0; j < 3; ++j) a(i, j) = g[i][0] * g[j][0] + g[i][1] * g[j][1] + g[i][2] * g[j][2];
    }
    const double tol = 1e-9;
    Plain u(3, 3), left = a;
    int count = 0;
    for (unsigned i = 0; i < 3; ++i) {
      for (unsigned j = i; j < 3; ++j) {
        double x = left(i, j);
        for (int k = static_cast<int>(i) - 1; k >= 0; --k) {
          x = x - u(static_cast<unsigned>(k), i) * u(static_cast<unsigned>(k), j);
        }
        if (i == j && tol >= x) {
          ++count;
          for (unsigned k = 0; k < 3; ++k) u(i, k) = u(k, i) = left(i, k) = left(k, i) = 0.0;
          break;
        }
        u(i, j) = i == j ? std::sqrt(x) : x / u(i, i);
      }
    }
    Plain x(3, 3);
    for (unsigned i = 0; i < 3; ++i) x(i, i) = u(i, i) != 0.0 ? 1.0 / u(i, i) : 0.0;
    x(1, 2) = -(u(1, 2) * x(2, 2)) * x(1, 1);
    x(0, 1) = -(u(0, 1) * x(1, 1)) * x(0, 0);
    x(0, 2) = -(u(0, 1) * x(1, 2) + u(0, 2) * x(2, 2)) * x(0, 0);
    Array<6> packed, expected, out;
    unsigned k = 0;
    for (unsigned j = 0; j < 3; ++j) {
      for (unsigned i = 0; i <= j; ++i) {
        packed[k] = a(i, j);
        double sum = 0.0;
        for (unsigned l = j; l < 3; ++l) sum = l == j ? x(i, l) * x(j, l) : sum + x(i, l) * x(j, l);
        expected[k++] = sum;
      }
    }
    ASSERT_EQ(CholeskyInverse3x3(packed.data(), out.data(), tol), count);
    ExpectValues<6>(out, expected);
    for (double e : out) digest::Feed(e == 0.0 ? 0.0 : e);
  }
}

}  // namespace
}  // namespace quorvel::test
