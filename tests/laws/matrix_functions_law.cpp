// The matrix functions of the dense kinds against plain arrays, over sizes, patterns and ownership.

#include "quorvel/matrix_functions.h"

#include <gtest/gtest.h>

#include "support/digest.h"
#include "support/make.h"
#include "support/plain.h"

namespace quorvel::test {
namespace {

constexpr unsigned kSizes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 31, 32, 33, 64};
constexpr unsigned kFewSizes[] = {0, 1, 2, 5, 16, 17, 33};

Plain Transposed(const Plain& a) {
  Plain t(a.n, a.m);
  for (unsigned i = 0; i < a.m; ++i) {
    for (unsigned j = 0; j < a.n; ++j) t(j, i) = a(i, j);
  }
  return t;
}

TEST(TransposeLaw, Regular) {
  Random random(101);
  for (unsigned m : kSizes) {
    for (unsigned n : kSizes) {
      const Pattern pattern = kAllPatterns[(m + n) % kAllPatterns.size()];
      RegularMatrix a = Filled<RegularMatrix>(pattern, random, m, n);
      a.set_nsing(7);
      const Plain expected = Transposed(PlainOf(a));
      SCOPED_TRACE(::testing::Message() << m << " x " << n << " " << Name(pattern));
      {
        const Held<RegularMatrix> t(transpose(a));
        EXPECT_NE(&*t, &a);
        EXPECT_TRUE(Same(*t, expected));
        EXPECT_EQ(t->nsing(), -1);
        digest::Feed(*t);
      }
      {
        const RegularMatrix& constant = a;
        const Held<RegularMatrix> t(transpose(constant));
        EXPECT_TRUE(Same(*t, expected));
      }
      {
        RegularMatrix out(3, 2);
        out.set_nsing(5);
        EXPECT_EQ(&transpose(a, &out), &out);
        EXPECT_TRUE(Same(out, expected));
        EXPECT_EQ(out.nsing(), 5);
        EXPECT_FALSE(out.dispensable());
      }
      {
        RegularMatrix out;
        EXPECT_EQ(&transpose(DispensableCopy(a), &out), &out);
        EXPECT_TRUE(Same(out, expected));
      }
      {
        RegularMatrix& temporary = DispensableCopy(a);
        const Held<RegularMatrix> t(transpose(temporary));
        EXPECT_EQ(&*t, &temporary);
        EXPECT_TRUE(Same(*t, expected));
        EXPECT_EQ(t->nsing(), m == n ? 7 : -1);
      }
      {
        RegularMatrix b(a);
        EXPECT_EQ(&transpose(b, &b), &b);
        EXPECT_TRUE(Same(b, expected));
        EXPECT_EQ(b.nsing(), m == n ? 7 : -1);
      }
    }
  }
}

template <class From, class To>
void TriangularTranspose(unsigned n, Pattern pattern, Random& random) {
  SCOPED_TRACE(::testing::Message() << "order " << n << " " << Name(pattern));
  From a = Filled<From>(pattern, random, n);
  a.set_nsing(2);
  const Plain expected = Transposed(PlainOf(a));
  const From& constant = a;
  {
    const Held<To> t(transpose(a));
    EXPECT_TRUE(Same(*t, expected));
    EXPECT_EQ(t->nsing(), 2);
    digest::Feed(*t);
  }
  {
    const Held<To> t(transpose(constant));
    EXPECT_TRUE(Same(*t, expected));
  }
  From& temporary = DispensableCopy(a);
  const double* storage = temporary.data();
  const Held<To> t(transpose(temporary));
  EXPECT_TRUE(Same(*t, expected));
  EXPECT_EQ(t->data(), storage);
  EXPECT_EQ(t->nsing(), 2);
}

TEST(TransposeLaw, Triangular) {
  Random random(102);
  for (unsigned n : kSizes) {
    for (Pattern pattern : kAllPatterns) {
      TriangularTranspose<UpperTriangularMatrix, LowerTriangularMatrix>(n, pattern, random);
      TriangularTranspose<LowerTriangularMatrix, UpperTriangularMatrix>(n, pattern, random);
    }
  }
}

// Runs `part` on a, on a const view and on a dispensable copy, and hands each result to `expect`.
template <class A, class Part, class Expect>
void OnBothOwners(const A& a, Part part, Expect expect) {
  {
    auto& result = part(a);
    const Held held(result);
    expect(result);
    digest::Feed(result);
  }
  auto& result = part(static_cast<const A&>(DispensableCopy(a)));
  const Held held(result);
  expect(result);
}

double OrPlainZero(double x) { return x != 0.0 ? x : 0.0; }

TEST(TriangleLaw, OfARegularMatrix) {
  Random random(103);
  for (unsigned n : kSizes) {
    for (Pattern pattern : kAllPatterns) {
      SCOPED_TRACE(::testing::Message() << "order " << n << " " << Name(pattern));
      RegularMatrix a = Filled<RegularMatrix>(pattern, random, n, n);
      a.set_nsing(3);
      const Plain p = PlainOf(a);
      Plain symmetric(n, n), upper(n, n), lower(n, n), diagonal(n, n);
      for (unsigned i = 0; i < n; ++i) {
        for (unsigned j = 0; j < n; ++j) {
          symmetric(i, j) = i <= j ? p(i, j) : p(j, i);
          if (i <= j) upper(i, j) = OrPlainZero(p(i, j));
          if (i >= j) lower(i, j) = OrPlainZero(p(i, j));
        }
        diagonal(i, i) = p(i, i);
      }
      OnBothOwners(
          a, [](const RegularMatrix& x) -> auto& { return sym(x); },
          [&](SymmetricMatrix& r) {
            EXPECT_TRUE(Same(r, symmetric));
            EXPECT_EQ(r.nsing(), 3);
          });
      OnBothOwners(
          a, [](const RegularMatrix& x) -> auto& { return triu(x); },
          [&](UpperTriangularMatrix& r) {
            EXPECT_TRUE(Same(r, upper));
            EXPECT_EQ(r.nsing(), -1);
          });
      OnBothOwners(
          a, [](const RegularMatrix& x) -> auto& { return tril(x); },
          [&](LowerTriangularMatrix& r) {
            EXPECT_TRUE(Same(r, lower));
            EXPECT_EQ(r.nsing(), -1);
          });
      OnBothOwners(
          a, [](const RegularMatrix& x) -> auto& { return diag(x); },
          [&](DiagonalMatrix& r) {
            EXPECT_TRUE(Same(r, diagonal));
            EXPECT_EQ(r.nsing(), -1);
          });
    }
  }
}

TEST(TriangleLaw, OfASymmetricMatrix) {
  Random random(104);
  for (unsigned n : kSizes) {
    for (Pattern pattern : kAllPatterns) {
      SCOPED_TRACE(::testing::Message() << "order " << n << " " << Name(pattern));
      SymmetricMatrix a = Filled<SymmetricMatrix>(pattern, random, n);
      a.set_nsing(3);
      const Plain p = PlainOf(a);
      Plain upper(n, n), lower(n, n);
      for (unsigned i = 0; i < n; ++i) {
        for (unsigned j = i; j < n; ++j) upper(i, j) = lower(j, i) = p(i, j);
      }
      OnBothOwners(
          a, [](const SymmetricMatrix& x) -> auto& { return triu(x); },
          [&](UpperTriangularMatrix& r) {
            EXPECT_TRUE(Same(r, upper));
            EXPECT_EQ(r.nsing(), -1);
          });
      OnBothOwners(
          a, [](const SymmetricMatrix& x) -> auto& { return tril(x); },
          [&](LowerTriangularMatrix& r) {
            EXPECT_TRUE(Same(r, lower));
            EXPECT_EQ(r.nsing(), -1);
          });
      SymmetricMatrix& temporary = DispensableCopy(a);
      const double* storage = temporary.data();
      const Held<UpperTriangularMatrix> taken(triu(temporary));
      EXPECT_EQ(taken->data(), storage);
    }
  }
}

template <class K>
void DiagonalAndNumbers(unsigned n, Pattern pattern, Random& random) {
  SCOPED_TRACE(::testing::Message() << "order " << n << " " << Name(pattern));
  const K a = Filled<K>(pattern, random, n);
  const Plain p = PlainOf(a);
  double sum = 0.0;
  Plain expected(n, n);
  for (unsigned i = 0; i < n; ++i) {
    sum += p(i, i);
    expected(i, i) = p(i, i);
  }
  EXPECT_TRUE(SameBits(trace(a), sum));
  EXPECT_TRUE(SameBits(trace(DispensableCopy(a)), sum));
  const double first = n == 0 ? 0.0 : p(0, 0);
  EXPECT_TRUE(SameBits(scalar(a), first));
  EXPECT_TRUE(SameBits(scalar(DispensableCopy(a)), first));
  digest::Feed(sum);
  if constexpr (!std::is_same_v<K, DiagonalMatrix>) {
    OnBothOwners(
        a, [](const K& x) -> auto& { return diag(x); },
        [&](DiagonalMatrix& r) {
          EXPECT_TRUE(Same(r, expected));
          EXPECT_EQ(r.nsing(), -1);
        });
  }
}

TEST(NumberLaw, SquareKinds) {
  Random random(105);
  for (unsigned n : kSizes) {
    for (Pattern pattern : kAllPatterns) {
      DiagonalAndNumbers<SymmetricMatrix>(n, pattern, random);
      DiagonalAndNumbers<UpperTriangularMatrix>(n, pattern, random);
      DiagonalAndNumbers<LowerTriangularMatrix>(n, pattern, random);
      DiagonalAndNumbers<DiagonalMatrix>(n, pattern, random);
    }
  }
}

TEST(NumberLaw, RegularKind) {
  Random random(106);
  for (unsigned m : kFewSizes) {
    for (unsigned n : kFewSizes) {
      for (Pattern pattern : kAllPatterns) {
        SCOPED_TRACE(::testing::Message() << m << " x " << n << " " << Name(pattern));
        const RegularMatrix a = Filled<RegularMatrix>(pattern, random, m, n);
        const Plain p = PlainOf(a);
        double sum = 0.0;
        for (unsigned i = 0; i < m && i < n; ++i) sum += p(i, i);
        EXPECT_TRUE(SameBits(trace(a), sum));
        EXPECT_TRUE(SameBits(trace(DispensableCopy(a)), sum));
        const double first = m == 0 || n == 0 ? 0.0 : p(0, 0);
        EXPECT_TRUE(SameBits(scalar(a), first));
        EXPECT_TRUE(SameBits(scalar(DispensableCopy(a)), first));
        digest::Feed(sum);
      }
    }
  }
}

TEST(NumberLaw, Dot) {
  Random random(107);
  for (unsigned m : kFewSizes) {
    for (unsigned n : kFewSizes) {
      for (unsigned columns : {0u, 1u, 3u}) {
        const Pattern pattern = kAllPatterns[(m + n + columns) % kAllPatterns.size()];
        SCOPED_TRACE(::testing::Message() << m << ", " << n << " rows, " << columns << " columns, " << Name(pattern));
        const RegularMatrix a = Filled<RegularMatrix>(pattern, random, m, columns);
        const RegularMatrix b = Filled<RegularMatrix>(pattern, random, n, 1u);
        double sum = 0.0;
        for (unsigned k = 0; columns != 0 && k < m && k < n; ++k) sum += PlainOf(a)(k, 0) * PlainOf(b)(k, 0);
        EXPECT_TRUE(SameBits(dot(a, b), sum));
        EXPECT_TRUE(SameBits(dot(b, a), sum));
        digest::Feed(sum);
      }
    }
  }
}

TEST(EyeLaw, EveryOrder) {
  for (unsigned n : kSizes) {
    const Held<DiagonalMatrix> d(eye(n, -2.5));
    ASSERT_EQ(d->ndim(), n);
    for (unsigned i = 0; i < n; ++i) EXPECT_EQ(d->data()[i], -2.5);
    EXPECT_EQ(d->nsing(), -1);
  }
}

// ---------------------------------------------------------------------------------------------------------------------

Plain Kronecker(const Plain& a, const Plain& b) {
  Plain c(a.m * b.m, a.n * b.n);
  for (unsigned i = 0; i < a.m; ++i) {
    for (unsigned j = 0; j < a.n; ++j) {
      for (unsigned k = 0; k < b.m; ++k) {
        for (unsigned l = 0; l < b.n; ++l) c(i * b.m + k, j * b.n + l) = a(i, j) * b(k, l);
      }
    }
  }
  return c;
}

template <class K>
K Operand(Pattern pattern, Random& random, unsigned rows, unsigned cols) {
  if constexpr (std::is_same_v<K, RegularMatrix>) {
    return Filled<K>(pattern, random, rows, cols);
  } else {
    return Filled<K>(pattern, random, rows);
  }
}

template <class Result, class A, class B>
void KroneckerPair(unsigned seed) {
  Random random(seed);
  for (unsigned m : {1u, 2u, 3u, 5u, 8u}) {
    for (unsigned n : {1u, 2u, 4u, 7u}) {
      for (Pattern pattern : kAllPatterns) {
        SCOPED_TRACE(::testing::Message() << m << ", " << n << " " << Name(pattern));
        const A a = Operand<A>(pattern, random, m, m + 1);
        const B b = Operand<B>(pattern, random, n, 3);
        Plain expected = Kronecker(PlainOf(a), PlainOf(b));
        if (std::is_same_v<Result, DiagonalMatrix>) {  // off its diagonal nothing exists, nothing is multiplied
          for (unsigned i = 0; i < expected.m; ++i) {
            for (unsigned j = 0; j < expected.n; ++j) {
              if (i != j) expected(i, j) = 0.0;
            }
          }
        }
        Result& c = kron(a, b);
        const Held<Result> held(c);
        EXPECT_TRUE(Same(c, expected));
        EXPECT_EQ(c.nsing(), -1);
        digest::Feed(c);
        // Dispensable operands survive.
        const Held<A> x(DispensableCopy(a));
        const Held<B> y(DispensableCopy(b));
        const Held<Result> again(kron(*x, *y));
        EXPECT_TRUE(Same(*again, expected));
        EXPECT_TRUE(Same(*x, PlainOf(a)));
        EXPECT_TRUE(Same(*y, PlainOf(b)));
      }
    }
  }
}

TEST(KronLaw, EveryDensePair) {
  KroneckerPair<DiagonalMatrix, DiagonalMatrix, DiagonalMatrix>(201);
  KroneckerPair<SymmetricMatrix, DiagonalMatrix, SymmetricMatrix>(202);
  KroneckerPair<SymmetricMatrix, SymmetricMatrix, DiagonalMatrix>(203);
  KroneckerPair<SymmetricMatrix, SymmetricMatrix, SymmetricMatrix>(204);
  KroneckerPair<RegularMatrix, DiagonalMatrix, RegularMatrix>(205);
  KroneckerPair<RegularMatrix, RegularMatrix, DiagonalMatrix>(206);
  KroneckerPair<RegularMatrix, SymmetricMatrix, RegularMatrix>(207);
  KroneckerPair<RegularMatrix, RegularMatrix, SymmetricMatrix>(208);
  KroneckerPair<RegularMatrix, RegularMatrix, RegularMatrix>(209);
}

TEST(KronLaw, OneObjectTwice) {
  Random random(210);
  const Held<SymmetricMatrix> a(DispensableCopy(Filled<SymmetricMatrix>(Pattern::kInteger, random, 3u)));
  const Held<SymmetricMatrix> c(kron(*a, *a));
  EXPECT_TRUE(Same(*c, Kronecker(PlainOf(*a), PlainOf(*a))));
}

}  // namespace
}  // namespace quorvel::test
