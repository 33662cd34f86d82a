// Every row of the structured products against the sums of their formulas.

#include "laws/product_laws.h"

#include "../../src/ops/tables/structured.h"

namespace {

using namespace quorvel::test;
using namespace quorvel::test::laws;

// Samples of both operands in every shape, the inner dimensions equal as `shapes` makes them.
struct Sizes {
  unsigned a_rows, a_cols, b_rows, b_cols;
};

// Makes square kinds square: a change of one size is taken over by whatever must equal it.
template <class A, class B>
Sizes Adapt(Sizes s, bool rows_equal, bool cols_equal) {
  for (int pass = 0; pass < 2; ++pass) {
    if (!rectangular<A>) s.a_cols = s.a_rows;
    if (!rectangular<B>) s.b_cols = s.b_rows;
    if (rows_equal) s.b_rows = s.a_rows;
    if (cols_equal) s.b_cols = s.a_cols;
    if (!rectangular<A>) s.a_rows = s.a_cols;
    if (!rectangular<B>) s.b_rows = s.b_cols;
    if (rows_equal) s.a_rows = s.b_rows;
    if (cols_equal) s.a_cols = s.b_cols;
  }
  return s;
}

enum class Fit { kRows, kCols, kProduct };  // rows equal, columns equal, columns of a = rows of b

template <class A, class B>
Sizes SizesFor(Shape3 s, Fit fit) {
  if (fit == Fit::kRows) return Adapt<A, B>({s.k, s.m, s.k, s.n}, true, false);
  if (fit == Fit::kCols) return Adapt<A, B>({s.m, s.k, s.n, s.k}, false, true);
  // As rows of the transposed a.
  const Sizes t = Adapt<A, B>({s.k, s.m, s.k, s.n}, true, false);
  return {t.a_cols, t.a_rows, t.b_rows, t.b_cols};
}

template <class A, class B, class Operation, class Oracle>
void CheckPair(const char* name, unsigned seed, Fit fit, bool square_result, Operation operation, Oracle oracle) {
  Random random(seed);
  ForEachShape(seed, [&](Shape3 s, Pattern pattern) {
    if (square_result) s.n = s.m;
    const Sizes sizes = SizesFor<A, B>(s, fit);
    const A a = Sample<A>(sizes.a_rows, sizes.a_cols, pattern, random);
    const B b = Sample<B>(sizes.b_rows, sizes.b_cols, pattern, random);
    const Masked expected = oracle(MaskedOf(a), MaskedOf(b));
    const std::string call = Call(name, s, pattern);
    if (s.m < 6 && s.k < 6 && s.n < 6) {
      ExpectInEveryState(a, b, operation, expected, call);
    } else {
      Expect(operation(a, b), expected, call);
    }
  });
}

template <class A, class Operation, class Oracle>
void CheckOne(const char* name, unsigned seed, Operation operation, Oracle oracle) {
  Random random(seed);
  ForEachShape(seed, [&](Shape3 s, Pattern pattern) {
    const A a = Sample<A>(s.m, s.k, pattern, random);
    const Masked expected = oracle(MaskedOf(a));
    const std::string call = Call(name, s, pattern);
    const NoLeak no_leak;
    Expect(operation(a), expected, call);
    Expect(operation(DispensableCopy(a)), expected, call + ", dispensable");
  });
}

// X Q X' with the inner product first, each as a sum over existing positions; w always exists.
Masked CongruenceOf(const Masked& x, const Masked& q) {
  return MaskedUpper(MaskedProduct(MaskedProduct(x, q), MaskedTranspose(x)));
}

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

// Of a sparse operand only the triangle counts; it must be square.
Masked Triangle(const Masked& a, bool upper) {
  Masked t(a.rows, a.cols);
  for (unsigned i = 0; i < a.rows; ++i) {
    for (unsigned j = 0; j < a.cols; ++j) {
      if (a.has(i, j) && (upper ? i <= j : i >= j)) t.set(i, j, a.at(i, j));
    }
  }
  return t;
}

TEST(StructuredSparseTriangles, UtuAndLtl) {
  Random random(25);
  ForEachShape(25, [&](Shape3 s, Pattern pattern) {
    const RegularSparseMatrix a = Sample<RegularSparseMatrix>(s.m, s.m, pattern, random);
    const Masked u = Triangle(MaskedOf(a), true), l = Triangle(MaskedOf(a), false);
    const NoLeak no_leak;
    Expect(UTU(a), MaskedUpper(MaskedProduct(MaskedTranspose(u), u)), Call("UTU", s, pattern));
    Expect(LTL(a), MaskedUpper(MaskedProduct(MaskedTranspose(l), l)), Call("LTL", s, pattern));
    Expect(UTU(DispensableCopy(a)), MaskedUpper(MaskedProduct(MaskedTranspose(u), u)), Call("UTU", s, pattern));
    Expect(LTL(DispensableCopy(a)), MaskedUpper(MaskedProduct(MaskedTranspose(l), l)), Call("LTL", s, pattern));
  });
}

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

TEST(StructuredThreeOperands, SymmetricOfProductIntoAResult) {
  Random random(26);
  ForEachShape(26, [&](Shape3 s, Pattern pattern) {
    const RegularSparseMatrix a = Sample<RegularSparseMatrix>(s.m, s.k, pattern, random);
    const RegularSparseMatrix b = Sample<RegularSparseMatrix>(s.k, s.m, pattern, random);
    SymmetricMatrix result(2);
    result.set_nsing(5);
    const NoLeak no_leak;
    EXPECT_EQ(&SymmetricOfProduct(result, DispensableCopy(a), DispensableCopy(b)), &result);
    EXPECT_EQ(result.nsing(), -1);
    EXPECT_FALSE(result.dispensable());
    EXPECT_TRUE(SameAs(MaskedOf(result), MaskedUpper(MaskedProduct(MaskedOf(a), MaskedOf(b)))));
    result = SymmetricMatrix(2);
  });
}

// ---------------------------------------------------------------------------------------------------------------------
// Diagonal blocks. A zero in the work row gives no term.

Masked BlocksOf(const Masked& x, const Masked& q, unsigned block) {
  Masked w = MaskedProduct(x, q);
  for (std::size_t k = 0; k < w.value.size(); ++k) w.exists[k] = w.value[k] != 0.0;
  Masked s = MaskedUpper(MaskedProduct(w, MaskedTranspose(x)));
  for (unsigned i = 0; i < s.rows; ++i) {
    for (unsigned j = 0; j < s.rows; ++j) {
      if (i / block != j / block) s.set(i, j, 0.0);
    }
  }
  return s;
}

// Every divisor of the order, and 0 for the whole.
template <class A, class Q, class Operation>
void CheckBlocks(const char* name, Fit fit, bool square_result, bool transposed, Operation operation) {
  Random random(27);
  ForEachShape(27, [&](Shape3 s, Pattern pattern) {
    if (s.m > 12 || s.k > 12) return;
    if (square_result) s.n = s.m;
    const Sizes sizes = SizesFor<A, Q>(s, fit);
    const A a = Sample<A>(sizes.a_rows, sizes.a_cols, pattern, random);
    const Q q = Sample<Q>(sizes.b_rows, sizes.b_cols, pattern, random);
    const Masked x = transposed ? MaskedTranspose(MaskedOf(a)) : MaskedOf(a);
    for (unsigned block = 0; block <= x.rows; ++block) {
      if (block != 0 && x.rows % block != 0) continue;
      const Masked expected = BlocksOf(x, MaskedOf(q), block == 0 ? x.rows : block);
      const auto of_this_size = [&](const A& l, const Q& r) -> SymmetricSparseMatrix& { return operation(l, r, block); };
      ExpectInEveryState(a, q, of_this_size, expected, Call(name, s, pattern) + " block " + std::to_string(block));
    }
  });
}

#define QUORVEL_LAW(A, Q)                                                                                  \
  TEST(StructuredBlocks, Atpa_##A##_##Q) {                                                                 \
    CheckBlocks<A, Q>("ATPA(" #A ", " #Q ")", Fit::kRows, false, true,                                     \
                      [](const A& a, const Q& q, unsigned b) -> SymmetricSparseMatrix& { return ATPA(a, q, b); }); \
  }
QUORVEL_ATPA_BLOCKS(QUORVEL_LAW)
#undef QUORVEL_LAW
#define QUORVEL_LAW(A, Q)                                                                                  \
  TEST(StructuredBlocks, Aqat_##A##_##Q) {                                                                 \
    CheckBlocks<A, Q>("AQAT(" #A ", " #Q ")", Fit::kProduct, false, false,                                 \
                      [](const A& a, const Q& q, unsigned b) -> SymmetricSparseMatrix& { return AQAT(a, q, b); }); \
  }
QUORVEL_AQAT_BLOCKS(QUORVEL_LAW)
#undef QUORVEL_LAW
#define QUORVEL_LAW(A, Q)                                                                                  \
  TEST(StructuredBlocks, Sqs_##A##_##Q) {                                                                  \
    CheckBlocks<A, Q>("SQS(" #A ", " #Q ")", Fit::kProduct, true, false,                                   \
                      [](const A& a, const Q& q, unsigned b) -> SymmetricSparseMatrix& { return SQS(a, q, b); }); \
  }
QUORVEL_SQS_BLOCKS(QUORVEL_LAW)
#undef QUORVEL_LAW

// ---------------------------------------------------------------------------------------------------------------------

template <class A, class B>
void CheckDots() {
  Random random(28);
  for (const Pattern pattern : kAllPatterns) {
    const A a = Sample<A>(7, 7, pattern, random);
    const B b = Sample<B>(7, 7, pattern, random);
    const Masked ma = MaskedOf(a), mb = MaskedOf(b);
    for (unsigned i = 0; i < 7; ++i) {
      for (unsigned j = 0; j < 7; ++j) {
        for (const unsigned first : {0u, 2u, 6u, 9u}) {
          for (const unsigned last : {Matrix::npos + 0u, 0u, 4u, 6u}) {
            double row_col = 0.0, row_row = 0.0, col_col = 0.0;
            for (unsigned k = first; k <= last && k < 7; ++k) {
              if (ma.has(i, k) && mb.has(k, j)) row_col = row_col + ma.at(i, k) * mb.at(k, j);
              if (ma.has(i, k) && mb.has(j, k)) row_row = row_row + ma.at(i, k) * mb.at(j, k);
              if (ma.has(k, i) && mb.has(k, j)) col_col = col_col + ma.at(k, i) * mb.at(k, j);
            }
            EXPECT_TRUE(SameBits(RowDotCol(a, b, i, j, first, last), row_col));
            EXPECT_TRUE(SameBits(RowDotRow(a, b, i, j, first, last), row_row));
            EXPECT_TRUE(SameBits(ColDotCol(a, b, i, j, first, last), col_col));
          }
        }
      }
    }
  }
}

TEST(SparseDots, EveryPairOfKinds) {
  CheckDots<RegularSparseMatrix, RegularSparseMatrix>();
  CheckDots<RegularSparseMatrix, SymmetricSparseMatrix>();
  CheckDots<SymmetricSparseMatrix, RegularSparseMatrix>();
  CheckDots<SymmetricSparseMatrix, SymmetricSparseMatrix>();
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
