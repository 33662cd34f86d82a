// Every pair of the product table, with operator* and Mult, against the triple loop over existing positions.

#include <type_traits>

#include "laws/product_laws.h"

#include "../../src/ops/tables/products.h"

namespace {

using namespace quorvel::test;
using namespace quorvel::test::laws;

template <class R, class A, class B>
void CheckProduct(const char* name, unsigned seed) {
  Random random(seed);
  ForEachShape(seed, [&](Shape3 s, Pattern pattern) {
    if (!rectangular<A>) s.m = s.k;
    if (!rectangular<B>) s.n = s.k;
    const A a = Sample<A>(s.m, s.k, pattern, random);
    const B b = Sample<B>(s.k, s.n, pattern, random);
    const Masked expected = MaskedProduct(MaskedOf(a), MaskedOf(b));
    const std::string call = Call(name, s, pattern);
    const auto times = [](const A& x, const B& y) -> R& { return x * y; };
    if (s.m < 6 && s.k < 6 && s.n < 6) {
      ExpectInEveryState(a, b, times, expected, call);
    } else {
      Expect(times(a, b), expected, call);
    }
    const unsigned old_rows = random.Below(4), old_cols = random.Below(4);
    R result(Sample<R>(old_rows, old_cols, pattern, random));
    result.set_nsing(3);
    EXPECT_EQ(&Mult(result, a, b), &result) << call;
    EXPECT_EQ(result.nsing(), -1) << call;
    EXPECT_TRUE(SameAs(MaskedOf(result), expected)) << call << " by Mult";
    EXPECT_TRUE(HoldsNoZero(result)) << call << " by Mult";
  });
}

// The result is one of the factors, or both; and one dispensable object is both factors.
template <class K>
void CheckAliases(const char* name, unsigned seed) {
  Random random(seed);
  for (const unsigned n : {0u, 1u, 3u, 8u, 17u}) {
    const K a = Sample<K>(n, n, Pattern::kUniform, random);
    const K b = Sample<K>(n, n, Pattern::kUniform, random);
    const Masked ab = MaskedProduct(MaskedOf(a), MaskedOf(b)), aa = MaskedProduct(MaskedOf(a), MaskedOf(a));
    const std::string call = std::string(name) + " " + std::to_string(n);
    const NoLeak no_leak;
    K x(a), y(b), z(a);
    EXPECT_TRUE(SameAs(MaskedOf(Mult(x, x, b)), ab)) << call;
    EXPECT_TRUE(SameAs(MaskedOf(Mult(y, a, y)), ab)) << call;
    EXPECT_TRUE(SameAs(MaskedOf(Mult(z, z, z)), aa)) << call;
    // A dispensable result that is a factor survives and stays dispensable.
    K& d = DispensableCopy(a);
    EXPECT_EQ(&Mult(d, d, b), &d) << call;
    EXPECT_TRUE(d.dispensable()) << call;
    Expect(d, ab, call);
    K& twice = DispensableCopy(a);
    Expect(twice * twice, aa, call);
    K target;
    K& both = DispensableCopy(a);
    EXPECT_TRUE(SameAs(MaskedOf(Mult(target, both, both)), aa)) << call;
  }
}

#define QUORVEL_LAW(R, A, B) \
  TEST(Products, A##_times_##B) { CheckProduct<R, A, B>(#A " * " #B, 1); }
QUORVEL_DENSE_PRODUCTS(QUORVEL_LAW)
QUORVEL_MIXED_PRODUCTS(QUORVEL_LAW)
QUORVEL_SPARSE_PRODUCTS(QUORVEL_LAW)
#undef QUORVEL_LAW

TEST(Products, ResultIsAFactor) {
  CheckAliases<RegularMatrix>("RegularMatrix", 2);
  CheckAliases<UpperTriangularMatrix>("UpperTriangularMatrix", 3);
  CheckAliases<LowerTriangularMatrix>("LowerTriangularMatrix", 4);
  CheckAliases<DiagonalMatrix>("DiagonalMatrix", 5);
  CheckAliases<RegularSparseMatrix>("RegularSparseMatrix", 6);
}

// Blocks of terms, packed panels, and several strips need larger products than the other laws use.
TEST(Products, LongSums) {
  Random random(6);
  const RegularMatrix a = Sample<RegularMatrix>(9, 700, Pattern::kUniform, random);
  const RegularMatrix b = Sample<RegularMatrix>(700, 37, Pattern::kUniform, random);
  Expect(a * b, MaskedProduct(MaskedOf(a), MaskedOf(b)), "9 x 700 x 37");
  const RegularMatrix c = Sample<RegularMatrix>(13, 300, Pattern::kUniform, random);
  const SymmetricMatrix s = Sample<SymmetricMatrix>(300, 300, Pattern::kUniform, random);
  Expect(c * s, MaskedProduct(MaskedOf(c), MaskedOf(s)), "13 x 300 times symmetric");
  const UpperTriangularMatrix u = Sample<UpperTriangularMatrix>(300, 300, Pattern::kUniform, random);
  Expect(c * u, MaskedProduct(MaskedOf(c), MaskedOf(u)), "13 x 300 times upper");
  const LowerTriangularMatrix l = Sample<LowerTriangularMatrix>(300, 300, Pattern::kUniform, random);
  Expect(c * l, MaskedProduct(MaskedOf(c), MaskedOf(l)), "13 x 300 times lower");
}

// Sums of no terms in results of more than one panel.
TEST(Products, NoTerms) {
  Random random(9);
  const RegularMatrix a = Sample<RegularMatrix>(29, 0, Pattern::kUniform, random);
  const RegularMatrix b = Sample<RegularMatrix>(0, 27, Pattern::kUniform, random);
  Expect(a * b, MaskedProduct(MaskedOf(a), MaskedOf(b)), "29 x 0 x 27");
  Expect(AAT(a), MaskedUpper(MaskedProduct(MaskedOf(a), MaskedTranspose(MaskedOf(a)))), "AAT 29 x 0");
}

// More rows than one block has.
TEST(Products, ManyRows) {
  Random random(8);
  const RegularMatrix a = Sample<RegularMatrix>(531, 70, Pattern::kUniform, random);
  const RegularMatrix b = Sample<RegularMatrix>(70, 301, Pattern::kUniform, random);
  Expect(a * b, MaskedProduct(MaskedOf(a), MaskedOf(b)), "531 x 70 x 301");
  const Masked upper = MaskedUpper(MaskedProduct(MaskedOf(a), MaskedTranspose(MaskedOf(a))));
  Expect(AAT(a), upper, "AAT 531 x 70");
}

// Triangular results beside packed panels, in more than one block of terms.
TEST(Products, LargeTriangles) {
  Random random(7);
  const UpperTriangularMatrix u = Sample<UpperTriangularMatrix>(259, 259, Pattern::kUniform, random);
  const UpperTriangularMatrix u2 = Sample<UpperTriangularMatrix>(259, 259, Pattern::kUniform, random);
  Expect(u * u2, MaskedProduct(MaskedOf(u), MaskedOf(u2)), "upper times upper, 259");
  const LowerTriangularMatrix l = Sample<LowerTriangularMatrix>(259, 259, Pattern::kUniform, random);
  const LowerTriangularMatrix l2 = Sample<LowerTriangularMatrix>(259, 259, Pattern::kUniform, random);
  Expect(l * l2, MaskedProduct(MaskedOf(l), MaskedOf(l2)), "lower times lower, 259");
}

// ---------------------------------------------------------------------------------------------------------------------

// A sparse copy starts with an unknown count.
constexpr int CopiedCount(const SingleArrayMatrix*) { return 4; }
constexpr int CopiedCount(const SparseMatrix*) { return -1; }

template <class K>
void CheckScaled(const char* name, const K& a, double s) {
  Masked expected = MaskedOf(a);
  for (unsigned i = 0; i < expected.rows; ++i) {
    for (unsigned j = 0; j < expected.cols; ++j) {
      double& x = expected.at(i, j);
      if (expected.has(i, j)) x = s == 0.0 ? 0.0 : s * x;
    }
  }
  const NoLeak no_leak;
  const auto check = [&](K& returned) {
    const K result(returned);
    EXPECT_EQ(result.nsing(), CopiedCount(&a)) << name;
    EXPECT_TRUE(SameAs(MaskedOf(result), expected)) << name << " scaled by " << s;
    FeedDigest(MaskedOf(result));
  };
  K other(a);
  other.set_nsing(4);
  check(other * s);
  check(s * other);
  check(a * s);
  check(s * a);
  K& d = DispensableCopy(a);
  K& scaled = d * s;
  EXPECT_EQ(&scaled, &d) << name;
  check(scaled);
  const K& e = DispensableCopy(a);
  check(s * e);
  K in_place(a);
  EXPECT_TRUE(SameAs(MaskedOf(Mult(in_place, in_place, s)), expected)) << name;
  K target;
  target.set_nsing(9);
  EXPECT_EQ(&Mult(target, DispensableCopy(a), s), &target) << name;
  EXPECT_EQ(target.nsing(), 9) << name;
  if (s == 0.0 && !std::is_base_of_v<SingleArrayMatrix, K>) {
    EXPECT_EQ(target.nrows(), 0u) << "a sparse result scaled by zero keeps its own size";
  } else {
    EXPECT_TRUE(SameAs(MaskedOf(target), expected)) << name;
  }
}

template <class K>
void CheckScaling(const char* name) {
  Random random(7);
  for (const Pattern pattern : kAllPatterns) {
    for (const double s : {0.0, -0.0, 1.0, -1.0, 2.0, 1e-300, -3.7}) {
      for (const unsigned n : {0u, 1u, 2u, 7u}) {
        K a = Sample<K>(n, n + 1, pattern, random);
        a.set_nsing(4);
        CheckScaled(name, a, s);
      }
    }
  }
}

#define QUORVEL_LAW(K) \
  TEST(Scaling, K) { CheckScaling<K>(#K); }
QUORVEL_DENSE_SCALED(QUORVEL_LAW)
QUORVEL_SPARSE_SCALED(QUORVEL_LAW)
#undef QUORVEL_LAW

}  // namespace
