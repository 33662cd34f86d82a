// Every row of the structured products against the sums of their formulas.

#include "laws/structured_laws.h"

#include "../../src/ops/tables/structured.h"

namespace {

using namespace quorvel::test;
using namespace quorvel::test::laws;

#define QUORVEL_LAW(R, K)                                                                      \
  TEST(StructuredAta, K) {                                                                     \
    CheckOne<K>("ATA", 11, [](const K& a) -> R& { return ATA(a); },                            \
                [](const Masked& a) { return MaskedUpper(MaskedProduct(MaskedTranspose(a), a)); }); \
  }
QUORVEL_DENSE_ATA(QUORVEL_LAW)
QUORVEL_SPARSE_ATA(QUORVEL_LAW)
#undef QUORVEL_LAW

#define QUORVEL_LAW(R, K)                                                                      \
  TEST(StructuredAat, K) {                                                                     \
    CheckOne<K>("AAT", 12, [](const K& a) -> R& { return AAT(a); },                            \
                [](const Masked& a) { return MaskedUpper(MaskedProduct(a, MaskedTranspose(a))); }); \
  }
QUORVEL_DENSE_AAT(QUORVEL_LAW)
QUORVEL_SPARSE_AAT(QUORVEL_LAW)
#undef QUORVEL_LAW

#define QUORVEL_LAW(R, K)                                                                      \
  TEST(StructuredUtu, K) {                                                                     \
    CheckOne<K>("UTU", 13, [](const K& a) -> R& { return UTU(a); },                            \
                [](const Masked& a) { return MaskedUpper(MaskedProduct(MaskedTranspose(a), a)); }); \
  }
QUORVEL_DENSE_UTU(QUORVEL_LAW)
#undef QUORVEL_LAW

#define QUORVEL_LAW(R, K)                                                                      \
  TEST(StructuredLtl, K) {                                                                     \
    CheckOne<K>("LTL", 14, [](const K& a) -> R& { return LTL(a); },                            \
                [](const Masked& a) { return MaskedUpper(MaskedProduct(MaskedTranspose(a), a)); }); \
  }
QUORVEL_DENSE_LTL(QUORVEL_LAW)
#undef QUORVEL_LAW

#define QUORVEL_LAW(R, A, B)                                                                          \
  TEST(StructuredAtb, A##_##B) {                                                                      \
    CheckPair<A, B>("ATB(" #A ", " #B ")", 15, Fit::kRows, false,                                     \
                    [](const A& a, const B& b) -> R& { return ATB(a, b); },                           \
                    [](const Masked& a, const Masked& b) { return MaskedProduct(MaskedTranspose(a), b); }); \
  }
QUORVEL_DENSE_ATB(QUORVEL_LAW)
QUORVEL_SPARSE_ATB(QUORVEL_LAW)
#undef QUORVEL_LAW

#define QUORVEL_LAW(R, A, B)                                                                          \
  TEST(StructuredAbt, A##_##B) {                                                                      \
    CheckPair<A, B>("ABT(" #A ", " #B ")", 16, Fit::kCols, false,                                     \
                    [](const A& a, const B& b) -> R& { return ABT(a, b); },                           \
                    [](const Masked& a, const Masked& b) { return MaskedProduct(a, MaskedTranspose(b)); }); \
  }
QUORVEL_DENSE_ABT(QUORVEL_LAW)
QUORVEL_SPARSE_ABT(QUORVEL_LAW)
#undef QUORVEL_LAW

#define QUORVEL_LAW(R, A, B)                                                                                      \
  TEST(StructuredSymmetricOfProduct, A##_##B) {                                                                   \
    CheckPair<A, B>("SymmetricOfProduct(" #A ", " #B ")", 17, Fit::kProduct, true,                                \
                    [](const A& a, const B& b) -> R& { return SymmetricOfProduct(a, b); },                        \
                    [](const Masked& a, const Masked& b) { return MaskedUpper(MaskedProduct(a, b)); });           \
  }
QUORVEL_DENSE_SYMMETRIC_OF_PRODUCT(QUORVEL_LAW)
QUORVEL_SPARSE_SYMMETRIC_OF_PRODUCT(QUORVEL_LAW)
#undef QUORVEL_LAW

#define QUORVEL_LAW(R, A, B)                                                                                      \
  TEST(StructuredSymmetricOfAbt, A##_##B) {                                                                       \
    CheckPair<A, B>("SymmetricOfABT(" #A ", " #B ")", 18, Fit::kCols, true,                                       \
                    [](const A& a, const B& b) -> R& { return SymmetricOfABT(a, b); },                            \
                    [](const Masked& a, const Masked& b) {                                                        \
                      return MaskedUpper(MaskedProduct(a, MaskedTranspose(b)));                                   \
                    });                                                                                           \
  }
QUORVEL_DENSE_SYMMETRIC_OF_ABT(QUORVEL_LAW)
QUORVEL_SPARSE_SYMMETRIC_OF_ABT(QUORVEL_LAW)
#undef QUORVEL_LAW

#define QUORVEL_LAW(R, A, B)                                                                                       \
  TEST(StructuredAtpa, A##_##B) {                                                                                  \
    CheckPair<A, B>("ATPA(" #A ", " #B ")", 19, Fit::kRows, false,                                                 \
                    [](const A& a, const B& b) -> R& { return ATPA(a, b); },                                       \
                    [](const Masked& a, const Masked& b) { return CongruenceOf(MaskedTranspose(a), b); });         \
  }
QUORVEL_DENSE_ATPA(QUORVEL_LAW)
QUORVEL_SPARSE_ATPA(QUORVEL_LAW)
#undef QUORVEL_LAW

#define QUORVEL_LAW(R, A, B)                                                                                       \
  TEST(StructuredAqat, A##_##B) {                                                                                  \
    CheckPair<A, B>("AQAT(" #A ", " #B ")", 20, Fit::kProduct, false,                                              \
                    [](const A& a, const B& b) -> R& { return AQAT(a, b); },                                       \
                    [](const Masked& a, const Masked& b) { return CongruenceOf(a, b); });                          \
  }
QUORVEL_DENSE_AQAT(QUORVEL_LAW)
QUORVEL_SPARSE_AQAT(QUORVEL_LAW)
#undef QUORVEL_LAW

#define QUORVEL_LAW(R, A, B)                                                                                       \
  TEST(StructuredSqs, A##_##B) {                                                                                   \
    CheckPair<A, B>("SQS(" #A ", " #B ")", 21, Fit::kProduct, true,                                                \
                    [](const A& a, const B& b) -> R& { return SQS(a, b); },                                        \
                    [](const Masked& a, const Masked& b) { return CongruenceOf(a, b); });                          \
  }
QUORVEL_DENSE_SQS(QUORVEL_LAW)
QUORVEL_SPARSE_SQS(QUORVEL_LAW)
#undef QUORVEL_LAW

// The outer sum runs down, the inner ones up.
double NormOf(const Masked& a, const Masked& p) {
  double sum = 0.0;
  for (unsigned i = a.rows; i-- > 0;) {
    if (!a.has(i, 0)) continue;
    double inner = 0.0;
    for (unsigned k = 0; k < a.rows; ++k) {
      if (a.has(k, 0) && p.has(k, i)) inner = inner + a.at(k, 0) * p.at(k, i);
    }
    sum = sum + a.at(i, 0) * inner;
  }
  return sum;
}

template <class A, class P>
void CheckNorm(const char* name) {
  Random random(22);
  ForEachShape(22, [&](Shape3 s, Pattern pattern) {
    const A a = Sample<A>(s.k, s.m + 1, pattern, random);
    const P p = Sample<P>(s.k, s.k, pattern, random);
    const double expected = NormOf(MaskedOf(a), MaskedOf(p));
    const std::string call = Call(name, s, pattern);
    const NoLeak no_leak;
    const double norm = PWeightedNorm(a, p);
    EXPECT_TRUE(SameBits(norm, expected)) << call << ": " << norm << " instead of " << expected;
    EXPECT_TRUE(SameBits(PWeightedNorm(DispensableCopy(a), p), expected)) << call;
    EXPECT_TRUE(SameBits(PWeightedNorm(a, DispensableCopy(p)), expected)) << call;
    EXPECT_TRUE(SameBits(PWeightedNorm(DispensableCopy(a), DispensableCopy(p)), expected)) << call;
    digest::Feed(norm);
  });
}

#define QUORVEL_LAW(A, P) \
  TEST(StructuredPWeightedNorm, A##_##P) { CheckNorm<A, P>("PWeightedNorm(" #A ", " #P ")"); }
QUORVEL_DENSE_PWEIGHTED_NORM(QUORVEL_LAW)
QUORVEL_SPARSE_PWEIGHTED_NORM(QUORVEL_LAW)
#undef QUORVEL_LAW

// Several strips, scratch on the heap, and blocks of terms.
TEST(StructuredLarge, SeveralStrips) {
  Random random(23);
  const RegularMatrix a = Sample<RegularMatrix>(53, 300, Pattern::kUniform, random);
  const SymmetricMatrix q = Sample<SymmetricMatrix>(300, 300, Pattern::kUniform, random);
  const RegularMatrix at = Sample<RegularMatrix>(300, 53, Pattern::kUniform, random);
  Expect(AQAT(a, q), CongruenceOf(MaskedOf(a), MaskedOf(q)), "AQAT 53 x 300");
  Expect(ATPA(at, q), CongruenceOf(MaskedTranspose(MaskedOf(at)), MaskedOf(q)), "ATPA 300 x 53");
  Expect(ATA(at), MaskedUpper(MaskedProduct(MaskedTranspose(MaskedOf(at)), MaskedOf(at))), "ATA 300 x 53");
  Expect(AAT(a), MaskedUpper(MaskedProduct(MaskedOf(a), MaskedTranspose(MaskedOf(a)))), "AAT 53 x 300");
  const double norm = PWeightedNorm(at, q);
  EXPECT_TRUE(SameBits(norm, NormOf(MaskedOf(at), MaskedOf(q))));
}

// Triangular factors beside packed panels, in more than one block of terms.
TEST(StructuredLarge, Triangles) {
  Random random(25);
  const UpperTriangularMatrix u = Sample<UpperTriangularMatrix>(261, 261, Pattern::kUniform, random);
  Expect(UTU(u), MaskedUpper(MaskedProduct(MaskedTranspose(MaskedOf(u)), MaskedOf(u))), "UTU 261");
  const LowerTriangularMatrix l = Sample<LowerTriangularMatrix>(261, 261, Pattern::kUniform, random);
  Expect(LTL(l), MaskedUpper(MaskedProduct(MaskedTranspose(MaskedOf(l)), MaskedOf(l))), "LTL 261");
}

// One dispensable object as both operands.
TEST(StructuredAliases, OneObjectTwice) {
  Random random(24);
  const RegularMatrix a = Sample<RegularMatrix>(5, 5, Pattern::kUniform, random);
  const SymmetricMatrix s = Sample<SymmetricMatrix>(5, 5, Pattern::kUniform, random);
  const Masked m = MaskedOf(a), ms = MaskedOf(s);
  const NoLeak no_leak;
  RegularMatrix& a1 = DispensableCopy(a);
  Expect(ATB(a1, a1), MaskedProduct(MaskedTranspose(m), m), "ATB(A, A)");
  RegularMatrix& a2 = DispensableCopy(a);
  Expect(ABT(a2, a2), MaskedProduct(m, MaskedTranspose(m)), "ABT(A, A)");
  RegularMatrix& a3 = DispensableCopy(a);
  Expect(SymmetricOfProduct(a3, a3), MaskedUpper(MaskedProduct(m, m)), "SymmetricOfProduct(A, A)");
  RegularMatrix& a4 = DispensableCopy(a);
  Expect(SymmetricOfABT(a4, a4), MaskedUpper(MaskedProduct(m, MaskedTranspose(m))), "SymmetricOfABT(A, A)");
  SymmetricMatrix& s1 = DispensableCopy(s);
  Expect(SQS(s1, s1), CongruenceOf(ms, ms), "SQS(S, S)");
  RegularMatrix& a5 = DispensableCopy(a);
  EXPECT_TRUE(SameBits(PWeightedNorm(a5, a5), NormOf(m, m)));
}

}  // namespace
