// Block copies: worked examples and the corners of each target kind.

#include "quorvel/blocks.h"

#include <gtest/gtest.h>

#include "support/allocations.h"
#include "support/codes.h"
#include "support/digest.h"
#include "support/plain.h"
#include "support/sparse.h"
#include "support/sums.h"

namespace quorvel::test {
namespace {

// 10 i + j + 11: the position can be read off the value.
RegularMatrix Numbered(unsigned m, unsigned n) {
  RegularMatrix a(m, n);
  for (unsigned i = 0; i < m; ++i) {
    for (unsigned j = 0; j < n; ++j) a(i, j) = 10.0 * i + j + 11.0;
  }
  return a;
}

TEST(Blocks, SourceLargerThanTargetIsRefused) {
  RegularMatrix target = Numbered(2, 2);
  EXPECT_CODE(CopySubMat(target, 0, 0, Numbered(3, 2)), 40000);
  EXPECT_TRUE(Same(target, PlainOf(Numbered(2, 2))));
}

TEST(Blocks, RowOfAMatrix) {
  RegularMatrix out;
  EXPECT_EQ(&GetSubMat(out, Numbered(3, 3), 1, 1, 0, 2), &out);
  EXPECT_EQ(out.nrows(), 1u);
  EXPECT_EQ(out.ncols(), 3u);
  EXPECT_EQ(out(0, 0), 21.0);
  EXPECT_EQ(out(0, 1), 22.0);
  EXPECT_EQ(out(0, 2), 23.0);
}

TEST(Blocks, DiagonalAwayFromItsDiagonalIsZero) {
  DiagonalMatrix d(6);
  d = 7.0;
  RegularMatrix& block = SubMat(d, 0, 1, 3, 5);
  EXPECT_EQ(block.nrows(), 2u);
  EXPECT_EQ(block.ncols(), 3u);
  EXPECT_TRUE(block == 0.0);
  EXPECT_TRUE(block.dispensable());
  Drop(block);
}

TEST(Blocks, AcrossTheDiagonalOfASymmetricMatrix) {
  SymmetricMatrix s(4);
  EXPECT_CODE(CopySubMat(s, 0, 0, Numbered(2, 2)), 40000);
}

TEST(Blocks, SymmetricTargetStoresBlockAndMirrorImage) {
  SymmetricMatrix s(4);
  CopySubMat(s, 0, 2, Numbered(2, 2));
  EXPECT_EQ(s(0, 3), 12.0);
  EXPECT_EQ(s(3, 0), 12.0);
  CopySubMat(s, 2, 0, Numbered(2, 2));  // below the diagonal: the same elements, transposed
  EXPECT_EQ(s(0, 3), 21.0);
  CopySubMat(s, 1, 2, Numbered(2, 2));  // the corner (2, 2) is on the diagonal
  EXPECT_EQ(s(2, 2), 21.0);
  EXPECT_EQ(s(3, 2), 22.0);
}

TEST(Blocks, ZeroSideOfATriangularTarget) {
  UpperTriangularMatrix u(4);
  CopySubMat(u, 1, 0, Numbered(2, 2));  // only the corner (1, 1) is stored
  Plain expected(4, 4);
  expected(1, 1) = 12.0;
  EXPECT_TRUE(Same(u, expected));
  LowerTriangularMatrix l(4);
  CopySubMat(l, 0, 1, Numbered(2, 2));
  expected(1, 1) = 21.0;
  EXPECT_TRUE(Same(l, expected));
}

TEST(Blocks, SparseTargetEqualsTheBlock) {
  RegularSparseMatrix target(3, 3);
  target.SetRandom(1.0, 2.0, 9);
  RegularMatrix block(2, 2);
  block(0, 1) = 5.0;
  CopySubMat(target, 1, 1, block);
  EXPECT_EQ(target.used, 6u);
  EXPECT_EQ(target(1, 2), 5.0);
  EXPECT_EQ(target.Cell_Loc(1, 1), nullptr);
  EXPECT_SOUND(target);
}

TEST(Blocks, StoredZerosOfASourceRemove) {
  RegularSparseMatrix src(2, 2), target(2, 2);
  src.SparseMatrixInsert(0, 0, 0.0);
  target.Put(0, 0, 3.0);
  CopySubMat(target, 0, 0, src);
  EXPECT_EQ(target.used, 0u);
}

// A block over both (0, 1) and (1, 0): the lower one wins, a zero there too.
TEST(Blocks, SymmetricSparseTargetTakesTheLowerElement) {
  SymmetricSparseMatrix s(2);
  CopySubMat(s, 0, 0, Numbered(2, 2));
  EXPECT_EQ(s(0, 0), 11.0);
  EXPECT_EQ(s(0, 1), 21.0);
  EXPECT_EQ(s(1, 1), 22.0);
  RegularMatrix upper = Numbered(2, 2);
  upper(1, 0) = 0.0;
  CopySubMat(s, 0, 0, upper);
  EXPECT_EQ(s.Cell_Loc(0, 1), nullptr);
  EXPECT_SOUND(s);
}

TEST(Blocks, SymmetricSparseTargetThatIsNotSquare) {
  SymmetricSparseMatrix s(2, 4);
  EXPECT_CODE(CopySubMat(s, 0, 2, Numbered(2, 2)), 40000);
}

TEST(Blocks, DiagonalTarget) {
  DiagonalMatrix d(5);
  EXPECT_EQ(&CopySubMat(d, 2, Numbered(2, 2)), &d);
  EXPECT_EQ(d(2, 2), 11.0);
  EXPECT_EQ(d(3, 3), 22.0);
  CopySubMat(d, 0, Numbered(4, 4), 1, 2);  // two elements of the source's diagonal
  EXPECT_EQ(d(0, 0), 22.0);
  EXPECT_EQ(d(1, 1), 33.0);
  CopySubMat(d, 0, Numbered(4, 4), 1, 0, 3, 2);  // the diagonal of a 3 x 2 block
  EXPECT_EQ(d(0, 0), 21.0);
  EXPECT_EQ(d(1, 1), 32.0);
  EXPECT_EQ(d(2, 2), 11.0);
  EXPECT_CODE(CopySubMat(d, 3, Numbered(4, 4), 0, 0, 3, 2), 40000);  // the whole block must fit
}

TEST(Blocks, EmptyBlockConsumesItsSource) {
  RegularMatrix a = Numbered(3, 3);
  EXPECT_EQ(&CopySubMat(a, 3, 0, DispensableCopy(a), 3, 0, 0, 3), &a);
  EXPECT_TRUE(Same(a, PlainOf(Numbered(3, 3))));
  RegularMatrix& none = SubMat(a, 2, 1, 0, 2);
  EXPECT_EQ(none.nrows(), 0u);
  EXPECT_EQ(none.ncols(), 3u);
  Drop(none);
  RegularMatrix& all_bits_set = SubMat(a, 0, Matrix::npos, 0, 2);  // no "to the end" here
  EXPECT_EQ(all_bits_set.nrows(), 0u);
  Drop(all_bits_set);
}

// SubMat and GetSubMat against the elements of the source, for every range of a small matrix.
template <class S>
void CheckEveryRange() {
  SCOPED_TRACE(S().ClassName());
  Random random(3);
  const unsigned m = 4, n = kRectangular<S> ? 3 : 4;
  const S a = SumSample<S>(m, n, Pattern::kUniform, random);
  const Plain p = PlainOf(a);
  for (unsigned r0 = 0; r0 < m; ++r0) {
    for (unsigned r1 = r0; r1 < m; ++r1) {
      for (unsigned c0 = 0; c0 < n; ++c0) {
        for (unsigned c1 = c0; c1 < n; ++c1) {
          Plain expected(r1 + 1 - r0, c1 + 1 - c0);
          for (unsigned i = 0; i < expected.m; ++i) {
            for (unsigned j = 0; j < expected.n; ++j) expected(i, j) = p(r0 + i, c0 + j);
          }
          const Held<RegularMatrix> block(SubMat(a, r0, r1, c0, c1));
          EXPECT_TRUE(Same(*block, expected));
          EXPECT_EQ(block->nsing(), -1);
          digest::Feed(*block);
          RegularMatrix out(2, 2);
          out.set_nsing(6);
          GetSubMat(out, DispensableCopy(a), r0, r1, c0, c1);
          EXPECT_TRUE(Same(out, expected));
          EXPECT_EQ(out.nsing(), 6);
          if constexpr (std::is_same_v<S, RegularMatrix>) {
            RegularMatrix itself(a);
            itself.set_nsing(6);
            EXPECT_EQ(&GetSubMat(itself, itself, r0, r1, c0, c1), &itself);
            EXPECT_TRUE(Same(itself, expected));
            EXPECT_EQ(itself.nsing(), 6);
          }
        }
      }
    }
  }
}

TEST(Blocks, ExtractionOfEveryRange) {
  CheckEveryRange<RegularMatrix>();
  CheckEveryRange<SymmetricMatrix>();
  CheckEveryRange<UpperTriangularMatrix>();
  CheckEveryRange<LowerTriangularMatrix>();
  CheckEveryRange<DiagonalMatrix>();
}

template <class K>
void CheckEveryPrincipalBlock() {
  SCOPED_TRACE(K().ClassName());
  Random random(4);
  const K a = SumSample<K>(5, 5, Pattern::kUniform, random);
  const Plain p = PlainOf(a);
  for (unsigned first = 0; first < 6; ++first) {
    for (unsigned last = first == 0 ? 0 : first - 1; last < 5; ++last) {
      const unsigned n = last + 1 - first;
      Plain expected(n, n);
      for (unsigned i = 0; i < n; ++i) {
        for (unsigned j = 0; j < n; ++j) expected(i, j) = p(first + i, first + j);
      }
      const Held<K> block(SubMat(a, first, last));
      EXPECT_TRUE(Same(*block, expected));
      K out(3);
      out.set_nsing(6);
      EXPECT_EQ(&GetSubMat(out, DispensableCopy(a), first, last), &out);
      EXPECT_TRUE(Same(out, expected));
      EXPECT_EQ(out.nsing(), 6);
      K& itself = DispensableCopy(a);
      EXPECT_EQ(&GetSubMat(itself, itself, first, last), &itself);
      EXPECT_TRUE(Same(itself, expected));
      Drop(itself);
    }
  }
}

TEST(Blocks, ExtractionOfEveryPrincipalBlock) {
  CheckEveryPrincipalBlock<SymmetricMatrix>();
  CheckEveryPrincipalBlock<DiagonalMatrix>();
}

TEST(Blocks, CopyWithinOneMatrixIsAsIfReadFirst) {
  RegularMatrix a = Numbered(4, 4);
  CopySubMat(a, 1, 1, a, 0, 0, 3, 3);
  EXPECT_EQ(a(1, 1), 11.0);
  EXPECT_EQ(a(3, 3), 33.0);
  EXPECT_EQ(a(3, 1), 31.0);
  RegularMatrix& both = DispensableCopy(a);
  EXPECT_EQ(&CopySubMat(both, 0, 0, both, 1, 1, 3, 3), &both);
  EXPECT_EQ(both(2, 2), 33.0);
  Drop(both);
}

TEST(Blocks, AllocateNothingBetweenDenseMatrices) {
  RegularMatrix f(15, 15), out(6, 6);
  const SymmetricMatrix p(15);
  const long before = Allocations();
  CopySubMat(f, 0, 0, p);
  GetSubMat(out, p, 3, 8, 3, 8);
  EXPECT_EQ(Allocations(), before);
}

}  // namespace
}  // namespace quorvel::test

// A matrix that becomes a block of itself keeps its array, as one that becomes a block of another.
TEST(GetSubMat, StorageOfAMatrixNeverShrinks) {
  RegularMatrix a(10, 10);
  for (unsigned i = 0; i < 10; ++i) {
    for (unsigned j = 0; j < 10; ++j) a(i, j) = 10.0 * i + j;
  }
  GetSubMat(a, a, 2, 3, 4, 6);
  EXPECT_EQ(a.HeapReserved(), 800u);
  ASSERT_EQ(a.nrows(), 2u);
  ASSERT_EQ(a.ncols(), 3u);
  for (unsigned i = 0; i < 2; ++i) {
    for (unsigned j = 0; j < 3; ++j) EXPECT_EQ(a(i, j), 10.0 * (i + 2) + (j + 4));
  }
  SymmetricMatrix s(10);
  for (unsigned i = 0; i < 10; ++i) {
    for (unsigned j = i; j < 10; ++j) s(i, j) = 10.0 * i + j;
  }
  GetSubMat(s, s, 3, 5);
  EXPECT_EQ(s.HeapReserved(), 440u);
  ASSERT_EQ(s.ndim(), 3u);
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = i; j < 3; ++j) EXPECT_EQ(static_cast<double>(s(i, j)), 10.0 * (i + 3) + (j + 3));
  }
}
