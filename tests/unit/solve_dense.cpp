// Left division of the dense kinds: values bit for bit, where results land, who survives, codes, memory.

#include <gtest/gtest.h>

#include <limits>

#include "quorvel/inverses.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/digest.h"
#include "support/make.h"
#include "unit/inverse_literal.h"

namespace quorvel::test {
namespace {

constexpr unsigned kSizes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 24, 33, 64};
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Elimination with the row that is largest relative to its row of A, back substitution from the right, and refinement
// whose residual is summed with the rounding errors of its products and sums; one right-hand side after the other.
class LiteralElimination {
 public:
  explicit LiteralElimination(const Plain& a) : a_(a), w_(a), n_(a.n), source_(a.n) {
    std::vector<double> size(n_, 0.0);
    for (unsigned i = 0; i < n_; ++i) {
      source_[i] = i;
      for (unsigned j = 0; j < n_; ++j) size[i] = std::fmax(size[i], std::fabs(a(i, j)));
    }
    for (unsigned c = 0; c < n_; ++c) {
      const unsigned top = static_cast<unsigned>(pivots_.size());
      unsigned p = n_;
      for (unsigned i = top; i < n_; ++i) {
        if (!Usable(w_(i, c))) continue;
        if (p == n_ || std::fabs(w_(i, c)) / size[i] > std::fabs(w_(p, c)) / size[p]) p = i;
      }
      if (p == n_) continue;
      for (unsigned j = 0; j < n_; ++j) std::swap(w_(p, j), w_(top, j));
      std::swap(size[p], size[top]);
      std::swap(source_[p], source_[top]);
      for (unsigned i = top + 1; i < n_; ++i) {
        const double l = w_(i, c) / w_(top, c);
        w_(i, c) = l;
        for (unsigned j = c + 1; j < n_; ++j) {
          if (l != 0.0) w_(i, j) = w_(i, j) - l * w_(top, j);
        }
      }
      pivots_.push_back(c);
    }
  }

  int count() const { return static_cast<int>(n_ - pivots_.size()); }

  std::vector<double> Once(const std::vector<double>& b) const {
    std::vector<double> y(n_), x(n_, 0.0);
    for (unsigned i = 0; i < n_; ++i) y[i] = b[source_[i]];
    for (unsigned k = 0; k < pivots_.size(); ++k) {
      for (unsigned i = k + 1; i < n_; ++i) {
        if (w_(i, pivots_[k]) != 0.0) y[i] = y[i] - w_(i, pivots_[k]) * y[k];
      }
    }
    for (std::size_t k = pivots_.size(); k-- > 0;) {
      const unsigned row = static_cast<unsigned>(k);
      double s = 0.0;
      for (unsigned j = n_; j-- > pivots_[k] + 1;) s += w_(row, j) * x[j];
      x[pivots_[k]] = (y[k] - s) / w_(row, pivots_[k]);
    }
    return x;
  }

  std::vector<double> Solution(const std::vector<double>& b) const {
    std::vector<double> x = Once(b);
    if (count() != 0) return x;
    double before = HUGE_VAL;
    for (int step = 0; step < 10; ++step) {
      std::vector<double> r(n_);
      for (unsigned i = 0; i < n_; ++i) r[i] = Residual(i, b[i], x);
      const std::vector<double> d = Once(r);
      double e = 0.0;
      bool finite = true, same = true;
      for (unsigned i = 0; i < n_; ++i) {
        double column = 0.0;
        for (unsigned k = 0; k < n_; ++k) column = std::fmax(column, std::fabs(a_(k, i)));
        finite = finite && std::isfinite(d[i] * column);
        e = std::fmax(e, std::fabs(d[i]) * column);
        same = same && x[i] + d[i] == x[i];
      }
      if (e == 0.0 || !finite || !(e <= before / 2) || same) break;
      for (unsigned i = 0; i < n_; ++i) x[i] += d[i];
      before = e;
    }
    return x;
  }

 private:
  // The errors come from the fused operation here and are summed the same way.
  double Residual(unsigned i, double b, const std::vector<double>& x) const {
    double high = b, low = 0.0;
    for (unsigned j = 0; j < n_; ++j) {
      const double a = a_(i, j);
      const double p = a * x[j];
      const bool splits = std::fabs(a) <= std::ldexp(1.0, 995) && std::fabs(x[j]) <= std::ldexp(1.0, 995);
      const double error = splits ? std::fma(a, x[j], -p) : 0.0;
      const double sum = high - p;
      const double minus_p = sum - high;
      const double lost = (high - (sum - minus_p)) + (-p - minus_p);
      const double rest = (low - error) + lost;
      high = sum + rest;
      low = rest - (high - sum);
    }
    return high + low;
  }

  Plain a_, w_;
  unsigned n_;
  std::vector<unsigned> source_, pivots_;
};

Counted LiteralSolution(const Plain& a, const Plain& b) {
  const LiteralElimination elimination(a);
  Counted result{Plain(a.n, b.n), elimination.count()};
  for (unsigned c = 0; c < b.n; ++c) {
    std::vector<double> side(a.n);
    for (unsigned i = 0; i < a.n; ++i) side[i] = b(i, c);
    const std::vector<double> x = elimination.Solution(side);
    for (unsigned i = 0; i < a.n; ++i) result.x(i, c) = x[i];
  }
  return result;
}

// A > b for every way to own them.
template <class K>
void Everywhere(const K& a, const RegularMatrix& b, const Counted& expected) {
  const Plain a_before = PlainOf(a);
  const Plain b_before = PlainOf(b);
  RegularMatrix side(b);
  side.set_nsing(6);
  K own(a);
  {
    const Held<RegularMatrix> x(own > side);
    EXPECT_TRUE(Same(*x, expected.x, true));
    EXPECT_EQ(x->nsing(), 6);
    EXPECT_EQ(own.nsing(), expected.count);
    EXPECT_TRUE(Same(own, a_before));
    EXPECT_TRUE(Same(side, b_before));
    digest::Feed(own.nsing());
    for (double e : PlainOf(*x).e) digest::Feed(e == 0.0 ? 0.0 : e);
  }
  {
    const K& constant = a;
    constant.set_nsing(-1);
    const Held<RegularMatrix> x(constant > static_cast<const RegularMatrix&>(side));
    EXPECT_TRUE(Same(*x, expected.x, true));
    EXPECT_EQ(constant.nsing(), expected.count);
  }
  K& temporary = DispensableCopy(a);  // not consumed
  RegularMatrix& consumed = DispensableCopy(side);
  const Held<K> kept(temporary);
  const Held<RegularMatrix> x(temporary > consumed);
  EXPECT_EQ(&*x, &consumed);
  EXPECT_TRUE(Same(*x, expected.x, true));
  EXPECT_EQ(x->nsing(), 6);
  EXPECT_EQ(temporary.nsing(), expected.count);
  EXPECT_TRUE(Same(temporary, a_before));
}

void EveryKind(const Plain& a, const RegularMatrix& b) {
  const Plain side = PlainOf(b);
  Everywhere(RegularOf(a), b, LiteralSolution(a, side));
  Everywhere(PackedOf<SymmetricMatrix>(a), b, LiteralSolution(UpperOnBothSides(a), side));
  const UpperTriangularMatrix upper = PackedOf<UpperTriangularMatrix>(a);
  Everywhere(upper, b, LiteralSubstitution(PlainOf(upper), side, true));
  const LowerTriangularMatrix lower = PackedOf<LowerTriangularMatrix>(a);
  Everywhere(lower, b, LiteralSubstitution(PlainOf(lower), side, false));
  DiagonalMatrix d(a.n);
  Counted scaled{side, 0};
  for (unsigned i = 0; i < a.n; ++i) {
    d.data()[i] = a(i, i);
    if (!Usable(a(i, i))) {
      ++scaled.count;
      continue;
    }
    for (unsigned c = 0; c < side.n; ++c) scaled.x(i, c) = side(i, c) * (1.0 / a(i, i));
  }
  Everywhere(d, b, scaled);
}

TEST(Solve, EqualsTheLiteralComputation) {
  Random random(611);
  for (unsigned n : kSizes) {
    for (Pattern pattern : kAllPatterns) {
      for (unsigned q : {0u, 1u, 3u}) {
        SCOPED_TRACE(::testing::Message() << "order " << n << ", " << q << " columns, " << Name(pattern));
        Plain a(n, n);
        Fill(a.e.data(), a.e.size(), pattern, random);
        const RegularMatrix b = Filled<RegularMatrix>(pattern, random, n, q);
        EveryKind(a, b);
        if (n > 24) continue;
        for (unsigned i = 0; i < n; ++i) a(i, i) = a(i, i) + (a(i, i) < 0.0 ? -n : n);
        EveryKind(a, b);
      }
    }
    SCOPED_TRACE(::testing::Message() << "order " << n);
    const RegularMatrix b = Filled<RegularMatrix>(Pattern::kUniform, random, n, 2u);
    EveryKind(HilbertMatrix(n), b);
    EveryKind(Plain(n, n), b);
    EveryKind(OfRank(n, (n + 1) / 2, random), b);
  }
}

// Blocks of rows and strips of columns, whole and not.
TEST(Solve, TrianglesOfAnySizeWithAnyNumberOfSides) {
  Random random(614);
  for (unsigned n : {1u, 3u, 7u, 8u, 9u, 12u, 13u, 16u, 23u, 31u, 32u, 45u, 129u}) {
    for (Pattern pattern : kAllPatterns) {
      for (unsigned q : {1u, 2u, 4u, 5u, 8u, 9u, 24u, 25u, 41u}) {
        if (n > 32 && q > 1 && q != 25) continue;
        SCOPED_TRACE(::testing::Message() << "order " << n << ", " << q << " columns, " << Name(pattern));
        Plain a(n, n);
        Fill(a.e.data(), a.e.size(), pattern, random);
        if (n > 4) a(n / 2, n / 2) = -1e-200;
        const RegularMatrix b = Filled<RegularMatrix>(pattern, random, n, q);
        const Plain side = PlainOf(b);
        const UpperTriangularMatrix upper = PackedOf<UpperTriangularMatrix>(a);
        Everywhere(upper, b, LiteralSubstitution(PlainOf(upper), side, true));
        const LowerTriangularMatrix lower = PackedOf<LowerTriangularMatrix>(a);
        Everywhere(lower, b, LiteralSubstitution(PlainOf(lower), side, false));
      }
    }
  }
}

TEST(Solve, EqualsTheLiteralComputationOnSparsePatterns) {
  Random random(612);
  for (int trial = 0; trial < 200; ++trial) {
    const unsigned n = 1 + random.Below(10);
    Plain a(n, n);
    for (double& e : a.e) e = random.Chance(3) ? random.Integer(-2, 2) : 0.0;
    if (random.Chance(8)) {
      const unsigned i = random.Below(n);  // drawn one after the other: the order is the same everywhere
      const unsigned j = random.Below(n);
      a(i, j) = random.Chance(2) ? kNaN : 1e-201;
    }
    EveryKind(a, Filled<RegularMatrix>(Pattern::kInteger, random, n, 1u + random.Below(3)));
  }
}

// Beyond 2^995 products are taken as they are.
TEST(Solve, AtTheEndOfTheRange) {
  Random random(613);
  for (double scale : {1e300, 1e305, 1e-300}) {
    Plain a(4, 4);
    for (double& e : a.e) e = random.Uniform() * scale;
    EveryKind(a, Filled<RegularMatrix>(Pattern::kUniform, random, 4u, 1u));
  }
}

TEST(Solve, DiagonalRowsWithoutAPivotStay) {
  DiagonalMatrix d(3);
  d(0, 0) = 2;
  d(2, 2) = 4;
  RegularMatrix b(3, 2);
  const double values[] = {2, 4, 7, 7, 8, 12};
  b.Assign(values, 3, 2);
  const Held<RegularMatrix> x(d > b);
  EXPECT_EQ(d.nsing(), 1);
  Plain expected(3, 2);
  expected.e = {1, 2, 7, 7, 2, 3};
  EXPECT_TRUE(Same(*x, expected));
}

// Two unknowns, one equation twice: the second unknown is 0.
TEST(Solve, SingularButConsistent) {
  RegularMatrix a(2, 2), b(2, 1);
  const double values[] = {2, 4, 1, 2};
  a.Assign(values, 2, 2);
  b(0) = 6;
  b(1) = 3;
  const Held<RegularMatrix> x(a > b);
  EXPECT_EQ(a.nsing(), 1);
  EXPECT_EQ((*x)(0), 3.0);
  EXPECT_EQ((*x)(1), 0.0);
}

// An indefinite matrix with a zero diagonal is as good as any.
TEST(Solve, SymmetricIndefinite) {
  SymmetricMatrix a(2);
  a(0, 1) = 2.0;
  RegularMatrix b(2, 1);
  b(0) = 6.0;
  b(1) = 4.0;
  const Held<RegularMatrix> x(a > b);
  EXPECT_EQ(a.nsing(), 0);
  EXPECT_EQ((*x)(0), 2.0);
  EXPECT_EQ((*x)(1), 3.0);
}

TEST(Solve, AMatrixByItself) {
  Random random(614);
  const RegularMatrix a = Filled<RegularMatrix>(Pattern::kUniform, random, 5u, 5u);
  Plain identity(5, 5);
  for (unsigned i = 0; i < 5; ++i) identity(i, i) = 1.0;
  RegularMatrix own(a);
  {
    const Held<RegularMatrix> x(own > own);
    EXPECT_NE(&*x, &own);
    EXPECT_TRUE(Same(*x, identity, true));
    EXPECT_TRUE(Same(own, PlainOf(a)));
  }
  RegularMatrix& temporary = DispensableCopy(a);
  const Held<RegularMatrix> x(temporary > temporary);
  EXPECT_EQ(&*x, &temporary);
  EXPECT_TRUE(Same(*x, identity, true));
}

TEST(Solve, ReadsInAnExpression) {
  RegularMatrix a(1, 1), b(1, 1);
  a(0) = 2.0;
  b(0) = 3.0;
  const RegularMatrix x(a > b);
  EXPECT_EQ(x(0), 1.5);
  EXPECT_TRUE(a > 1.0);  // the comparison with a number is another operator
}

// ---------------------------------------------------------------------------------------------------------------------

template <class K>
void Codes(int other_columns) {
  K a(3, 3);
  K bad(3, 3);
  bad.set_ok(false);
  const RegularMatrix b(3, 1);
  RegularMatrix wrong(static_cast<unsigned>(other_columns), 1);
  RegularMatrix bad_side(3, 1);
  bad_side.set_ok(false);
  EXPECT_CODE(bad > b, 50580);
  EXPECT_CODE(a > bad_side, 50580);
  EXPECT_CODE(a > wrong, 40580);
  EXPECT_CODE(Dispensable<K>(3u, 3u) > wrong, 40580);
  EXPECT_CODE(a > Dispensable<RegularMatrix>(2u, 1u), 40580);
  EXPECT_CODE(Dispensable<K>(3u, 3u) > Dispensable<RegularMatrix>(2u, 1u), 40580);
  EXPECT_CODE_WHILE_PENDING(321, a > b, 321);
  EXPECT_CODE_WHILE_PENDING(321, (Dispensable<K>(3u, 3u) > Dispensable<RegularMatrix>(3u, 1u)), 321);
}

TEST(SolveCodes, EveryKind) {
  Codes<DiagonalMatrix>(4);
  Codes<UpperTriangularMatrix>(4);
  Codes<LowerTriangularMatrix>(2);
  Codes<SymmetricMatrix>(0);
  Codes<RegularMatrix>(4);
}

TEST(SolveCodes, NoLeastSquares) {
  RegularMatrix tall(4, 3);
  const RegularMatrix b(3, 1);
  EXPECT_CODE(tall > b, 40580);
  EXPECT_CODE(Dispensable<RegularMatrix>(4u, 3u) > Dispensable<RegularMatrix>(3u, 1u), 40580);
  tall.set_ok(false);
  EXPECT_CODE(tall > b, 50580);
}

TEST(SolveMemory, SmallSystemsNeedNoScratch) {
  for (unsigned n : {1u, 6u, 24u}) {
    const SymmetricMatrix a(n);
    const RegularMatrix b(n, 1);
    const long before = Allocations();
    RegularMatrix& x = a > b;
    EXPECT_EQ(Allocations() - before, 2);
    Drop(x);
    RegularMatrix& consumed = DispensableCopy(b);
    const long middle = Allocations();
    RegularMatrix& y = a > consumed;
    EXPECT_EQ(Allocations() - middle, 0);
    Drop(y);
  }
}

template <class K>
void RunsOutOfMemory() {
  const K a(60, 60);
  const RegularMatrix b(60, 50);
  for (unsigned k = 1;; ++k) {
    std::optional<int> code;
    RegularMatrix* x = nullptr;
    bool failed;
    {
      FailAllocations fail(k, Fail::kFromThenOn);
      code = CodeOf([&] { x = &(a > b); });
      failed = fail.failed();
    }
    K& temporary = DispensableCopy(a);
    RegularMatrix& consumed = DispensableCopy(b);
    bool failed_too;
    RegularMatrix* y = nullptr;
    {
      FailAllocations fail(k, Fail::kFromThenOn);
      code = CodeOf([&] { y = &(temporary > consumed); });
      failed_too = fail.failed();
    }
    if (failed_too) {
      EXPECT_EQ(code, 10680);  // both temporaries are gone
    } else {
      Drop(temporary);
      Drop(*y);
    }
    if (!failed) {
      Drop(*x);
      break;
    }
  }
}

TEST(SolveMemory, RunsOutCleanly) {
  RunsOutOfMemory<RegularMatrix>();
  RunsOutOfMemory<SymmetricMatrix>();
  RunsOutOfMemory<LowerTriangularMatrix>();
  RunsOutOfMemory<DiagonalMatrix>();
}

}  // namespace
}  // namespace quorvel::test
