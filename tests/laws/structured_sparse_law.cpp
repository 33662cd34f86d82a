// Structured products that only sparse kinds have: triangles of sparse operands, a given result, diagonal blocks, and the
// dot products of lines.

#include "laws/structured_laws.h"

#include "../../src/ops/tables/structured.h"

namespace {

using namespace quorvel::test;
using namespace quorvel::test::laws;

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
      const auto of_this_size = [&](const A& l, const Q& r) -> auto& { return operation(l, r, block); };
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

}  // namespace
