// Block copies between all kinds against plain arrays: random blocks, sizes and contents; blocks that do not fit.

#include <gtest/gtest.h>

#include "../src/ops/tables/blocks.h"
#include "laws/sum_law.h"
#include "support/codes.h"
#include "support/sparse.h"

namespace quorvel::test {
namespace {

struct At {
  unsigned row, col, src_row, src_col, rows, cols;
};

std::ostream& operator<<(std::ostream& out, const At& b) {
  return out << b.rows << " x " << b.cols << " from (" << b.src_row << ", " << b.src_col << ") to (" << b.row << ", "
             << b.col << ")";
}

template <class T>
constexpr bool kPacked = std::is_same_v<T, SymmetricMatrix> || std::is_same_v<T, UpperTriangularMatrix> ||
                         std::is_same_v<T, LowerTriangularMatrix>;
template <class T>
constexpr bool kMirrored = std::is_same_v<T, SymmetricMatrix> || std::is_same_v<T, SymmetricSparseMatrix>;

// Whether the target takes the block: it fits, and for a packed target no two cells of it lie strictly on different
// sides of the diagonal, nor two cells on the diagonal.
template <class T>
bool Takes(const At& b, const Plain& target, const Plain& src) {
  if (b.row + b.rows > target.m || b.col + b.cols > target.n) return false;
  if (b.src_row + b.rows > src.m || b.src_col + b.cols > src.n) return false;
  if (!kPacked<T>) return true;
  unsigned above = 0, on = 0, below = 0;
  for (unsigned i = b.row; i < b.row + b.rows; ++i) {
    for (unsigned j = b.col; j < b.col + b.cols; ++j) ++(i < j ? above : i > j ? below : on);
  }
  return on <= 1 && (above == 0 || below == 0);
}

// The target afterwards, cell by cell in row order.
template <class T>
Plain After(const Plain& target, const Plain& src, const At& b) {
  Plain r = target;
  for (unsigned i = 0; i < b.rows; ++i) {
    for (unsigned j = 0; j < b.cols; ++j) {
      double v = src(b.src_row + i, b.src_col + j);
      if (kSparse<T> && v == 0.0) v = 0.0;
      if (!Has<T>(b.row + i, b.col + j)) continue;
      r(b.row + i, b.col + j) = v;
      if (kMirrored<T>) r(b.col + j, b.row + i) = v;
    }
  }
  return r;
}

template <class T, class S>
T& Copy(T& target, const S& src, const At& b) {
  if constexpr (std::is_same_v<T, DiagonalMatrix>) {
    return CopySubMat(target, b.row, src, b.src_row, b.src_col, b.rows, b.cols);
  } else {
    return CopySubMat(target, b.row, b.col, src, b.src_row, b.src_col, b.rows, b.cols);
  }
}

// The target after a refused or an accepted copy is as expected, and sound.
template <class T>
void ExpectTarget(const T& target, const Plain& expected) {
  EXPECT_TRUE(Same(target, expected));
  EXPECT_EQ(target.nsing(), 5);
  EXPECT_TRUE(target.ok());
  if constexpr (kSparse<T>) {
    EXPECT_SOUND(target);
  }
}

template <class T, class S>
void CheckBlock(T& target, const S& src, const At& b, bool dispensable_source) {
  SCOPED_TRACE(::testing::Message() << b);
  const Plain before = PlainOf(target);
  const Plain from = PlainOf(src);
  target.set_nsing(5);
  const S& given = dispensable_source ? DispensableCopy(src) : src;
  if (!Takes<T>(b, before, from)) {
    EXPECT_CODE(Copy(target, given, b), 40000);
    ExpectTarget(target, before);
    return;
  }
  EXPECT_EQ(&Copy(target, given, b), &target);
  ExpectTarget(target, After<T>(before, from, b));
}

// A block that usually fits both, with every degenerate one among them.
At RandomBlock(const Matrix& target, const Matrix& src, bool one_side, Random& random) {
  const auto upto = [&](unsigned limit) { return random.Below(limit + 1); };
  const unsigned slack = random.Chance(8) ? 1 : 0;  // one too far, now and then
  At b;
  b.row = upto(target.nrows());
  b.col = upto(target.ncols());
  b.rows = upto(target.nrows() - b.row + slack);
  b.cols = upto(target.ncols() - b.col + slack);
  if (b.rows > src.nrows() + slack) b.rows = src.nrows() + slack;
  if (b.cols > src.ncols() + slack) b.cols = src.ncols() + slack;
  if (one_side && !random.Chance(5) && b.rows > 0 && b.cols > 0) {
    if (b.row <= b.col && b.row + b.rows - 1 > b.col) b.rows = b.col + 1 - b.row;
    if (b.col < b.row && b.col + b.cols - 1 > b.row) b.cols = b.row + 1 - b.col;
  }
  b.src_row = b.rows <= src.nrows() ? upto(src.nrows() - b.rows) : 0;
  b.src_col = b.cols <= src.ncols() ? upto(src.ncols() - b.cols) : 0;
  return b;
}

template <class K>
K RandomMatrix(unsigned size, Pattern pattern, Random& random) {
  return SumSample<K>(size, kRectangular<K> ? random.Below(size + 2) : size, pattern, random);
}

template <class T, class S>
void CheckPair(std::uint64_t seed) {
  SCOPED_TRACE(::testing::Message() << S().ClassName() << " into " << T().ClassName() << ", seed " << seed);
  Random random(seed);
  for (int trial = 0; trial < 80; ++trial) {
    const Pattern pattern = kAllPatterns[random.Below(kAllPatterns.size())];
    const unsigned size = trial % 16 == 0 ? 60 + random.Below(12) : random.Below(12);
    T target = RandomMatrix<T>(size, pattern, random);
    const S src = RandomMatrix<S>(trial % 3 == 0 ? size : random.Below(size + 4), pattern, random);
    At b = RandomBlock(target, src, kPacked<T>, random);
    if (std::is_same_v<T, DiagonalMatrix>) b.col = b.row;
    CheckBlock(target, src, b, trial % 2 == 0);
    digest::Feed(PlainOf(target).e.data(), PlainOf(target).e.size());
    if constexpr (std::is_same_v<T, S>) {
      At within = RandomBlock(target, target, kPacked<T>, random);
      if (std::is_same_v<T, DiagonalMatrix>) within.col = within.row;
      CheckBlock(target, target, within, false);
    }
    if (::testing::Test::HasFailure()) return;
  }
}

#define PAIR(T, S) CheckPair<T, S>(2000 + __COUNTER__);

TEST(BlockLaw, DenseIntoDense){QUORVEL_DENSE_BLOCK_TARGETS(QUORVEL_DENSE_BLOCK_SOURCES, PAIR)} TEST(BlockLaw,
                                                                                                    SparseIntoDense){
    QUORVEL_DENSE_BLOCK_TARGETS(QUORVEL_SPARSE_BLOCK_SOURCES, PAIR)} TEST(BlockLaw, DenseIntoSparse){
    QUORVEL_SPARSE_BLOCK_TARGETS(QUORVEL_DENSE_BLOCK_SOURCES, PAIR)} TEST(BlockLaw, SparseIntoSparse){
    QUORVEL_SPARSE_BLOCK_TARGETS(QUORVEL_SPARSE_BLOCK_SOURCES, PAIR)} TEST(BlockLaw, IntoDiagonal) {
  QUORVEL_DENSE_BLOCK_SOURCES(PAIR, DiagonalMatrix)
  QUORVEL_SPARSE_BLOCK_SOURCES(PAIR, DiagonalMatrix)
}

// The short forms are the long ones with the whole source, or with a stretch of its diagonal.
template <class T, class S>
void CheckShortForms() {
  SCOPED_TRACE(::testing::Message() << S().ClassName() << " into " << T().ClassName());
  Random random(2900);
  const S src = SumSample<S>(4, 4, Pattern::kInteger, random);
  const T target = SumSample<T>(9, 9, Pattern::kUniform, random);
  T a(target), b(target);
  if constexpr (std::is_same_v<T, DiagonalMatrix>) {
    Copy(a, src, {3, 3, 0, 0, 4, 4});
    EXPECT_EQ(&CopySubMat(b, 3, src), &b);
    EXPECT_TRUE(Same(b, PlainOf(a)));
    Copy(a, src, {6, 6, 1, 1, 3, 3});
    EXPECT_EQ(&CopySubMat(b, 6, src, 1, 3), &b);
  } else {
    Copy(a, src, {5, 1, 0, 0, 4, 4});
    EXPECT_EQ(&CopySubMat(b, 5, 1, src), &b);
  }
  EXPECT_TRUE(Same(b, PlainOf(a)));
}

#define SHORT(T, S) CheckShortForms<T, S>();

TEST(BlockLaw, ShortForms) {
  QUORVEL_DENSE_BLOCK_TARGETS(QUORVEL_DENSE_BLOCK_SOURCES, SHORT)
  QUORVEL_DENSE_BLOCK_TARGETS(QUORVEL_SPARSE_BLOCK_SOURCES, SHORT)
  QUORVEL_SPARSE_BLOCK_TARGETS(QUORVEL_DENSE_BLOCK_SOURCES, SHORT)
  QUORVEL_SPARSE_BLOCK_TARGETS(QUORVEL_SPARSE_BLOCK_SOURCES, SHORT)
  QUORVEL_DENSE_BLOCK_SOURCES(SHORT, DiagonalMatrix)
  QUORVEL_SPARSE_BLOCK_SOURCES(SHORT, DiagonalMatrix)
}

}  // namespace
}  // namespace quorvel::test
