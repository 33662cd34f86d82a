// In-place sums of sparse matrices put and take records exactly as one step after another would, row by row: the same
// lists, the same records of the pool, the same free chain.

#include <gtest/gtest.h>

#include <vector>

#include "support/sparse.h"
#include "support/sums.h"

namespace quorvel::test {
namespace {

enum class Form { kSum, kDifference, kReversed };

// The value of a cell of `b` as the row of a matrix of a's kind sees it, and whether it is there.
const SparseElement* Seen(const SparseMatrix& b, unsigned i, unsigned j) { return b.Cell_Loc(i, j); }

// One cell after another, in row order, with the store's own single steps.
void OneByOne(SparseMatrix& a, const SparseMatrix& b, Form form) {
  const bool upper_only = a.kind() == Matrix::symmetric_sparse;
  for (unsigned i = 0; i < a.nrows(); ++i) {
    SparseElement* prev = nullptr;
    for (unsigned j = upper_only ? i : 0; j < a.ncols(); ++j) {
      SparseElement* const mine = a.Cell_Loc(i, j);
      const SparseElement* const other = Seen(b, i, j);
      if (mine == nullptr) {
        if (other == nullptr || other->value == 0.0) continue;
        prev = a.SparseMatrixInsert(prev, i, j, form == Form::kDifference ? -other->value : other->value);
      } else if (other == nullptr) {
        if (form == Form::kReversed) mine->value = -mine->value;
        prev = mine;
      } else {
        const double x = mine->value, y = other->value;
        const double v = form == Form::kSum ? x + y : form == Form::kDifference ? x - y : y - x;
        if (v != 0.0) {
          mine->value = v;
          prev = mine;
        } else {
          a.SparseMatrixRemove(prev, mine);
        }
      }
    }
  }
}

// A matrix with a history: elements came and went, so that its pool is in disorder.
template <class K>
void Grow(K& a, Random& random) {
  a.SetGrowBy(5 + random.Below(9));
  Scatter(a, 30 + random.Below(60), random);
  for (unsigned k = random.Below(40); k-- > 0;) {
    const unsigned i = random.Below(a.nrows());
    const unsigned j = random.Below(a.ncols());
    a.Put(i, j, 0.0);
  }
}

template <class K, class O>
void CheckMerges(std::uint64_t seed) {
  SCOPED_TRACE(::testing::Message() << K().ClassName() << ", " << O().ClassName() << ", seed " << seed);
  for (const Form form : {Form::kSum, Form::kDifference, Form::kReversed}) {
    const unsigned n = 1 + static_cast<unsigned>(seed % 13);
    K target(n, n), model(n, n);
    O other(n, n);
    Random first(seed), second(seed), third(seed + 1);
    Grow(target, first);
    Grow(model, second);
    Grow(other, third);
    ASSERT_EQ(PlacesOf(target), PlacesOf(model));
    OneByOne(model, other, form);
    if (form == Form::kSum) target += other;
    if (form == Form::kDifference) target -= other;
    if (form == Form::kReversed) Minus(target, other, target);
    EXPECT_SOUND(target);
    EXPECT_EQ(CellsOf(target), CellsOf(model));
    EXPECT_EQ(PlacesOf(target), PlacesOf(model));
    EXPECT_EQ(target.HeapReserved(), model.HeapReserved());
  }
}

TEST(SparseMerge, TakesAndReturnsRecordsAsSingleSteps) {
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    CheckMerges<RegularSparseMatrix, RegularSparseMatrix>(seed);
    CheckMerges<RegularSparseMatrix, SymmetricSparseMatrix>(seed);
    CheckMerges<SymmetricSparseMatrix, SymmetricSparseMatrix>(seed);
    if (HasFailure()) return;
  }
}

TEST(SparseMerge, DiagonalFromTheLastRowToTheFirst) {
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    const unsigned n = 3 + static_cast<unsigned>(seed % 9);
    RegularSparseMatrix target(n, n), model(n, n);
    Random first(seed), second(seed), third(seed);
    Grow(target, first);
    Grow(model, second);
    const DiagonalMatrix d = SumSample<DiagonalMatrix>(n, n, Pattern::kInteger, third);
    for (unsigned i = n; i-- > 0;) {
      const double x = d.data()[i];
      SparseElement* const e = model.Cell_Loc(i, i);
      if (e == nullptr) {
        if (x != 0.0) model.SparseMatrixInsert(i, i, -x);
      } else if (e->value - x == 0.0) {
        model.SparseMatrixRemove(e);
      } else {
        e->value -= x;
      }
    }
    target -= d;
    EXPECT_EQ(CellsOf(target), CellsOf(model));
    EXPECT_EQ(PlacesOf(target), PlacesOf(model));
  }
}

// Elements that were put below the diagonal by hand are in no column list; a merge neither finds nor breaks them.
TEST(SparseMerge, ElementsBelowTheDiagonalOfASymmetricMatrix) {
  SymmetricSparseMatrix a(4), b(4);
  SparseElement* const e = a.SparseMatrixInsert(nullptr, 2, 1, 5.0);
  a.SparseMatrixInsert(e, 2, 3, 6.0);
  b.Put(2, 3, 1.0);
  b.Put(0, 0, 2.0);
  a += b;
  a -= b;
  EXPECT_EQ(a.used, 2u);
  EXPECT_EQ(a(2, 3), 6.0);
  RegularMatrix r(4, 4);
  r += a;  // dense updates read the row lists, at both places
  EXPECT_EQ(r(2, 1), 5.0);
  EXPECT_EQ(r(1, 2), 5.0);
}

// Symmetric sparse matrices can be built with unlike sizes.
TEST(SparseMerge, SymmetricMatrixThatIsNotSquare) {
  SymmetricSparseMatrix a(2, 5), b(2, 5);
  a.Put(1, 4, 3.0);
  b.Put(0, 3, 4.0);
  a += b;
  EXPECT_EQ(a(0, 3), 4.0);
  EXPECT_EQ(a(1, 4), 3.0);
  RegularMatrix r(2, 5);
  r -= a;
  EXPECT_EQ(r(1, 4), -3.0);
  RegularSparseMatrix s(2, 5);
  s += a;
  EXPECT_EQ(s(0, 3), 4.0);
}

// A record of the user's own is not counted: the matrix that holds nothing else is not a new one.
TEST(SparseMerge, IntoAMatrixThatHoldsRecordsOfTheUserOnly) {
  const auto column_of = [](const SparseMatrix& a, unsigned j) {
    std::vector<unsigned> rows;
    for (const SparseElement* e = a.colHeads[j]; e != nullptr && rows.size() < 9; e = e->nextInCol) rows.push_back(e->row);
    return rows;
  };
  RegularSparseMatrix b(3, 3);
  for (unsigned i = 0; i < 3; ++i) b.Put(i, 1, i + 1.0);
  b.Put(1, 2, 5.0);
  for (const bool in_row : {true, false}) {
    RegularSparseMatrix a(3, 3);
    SparseElement own{nullptr, nullptr, 7.0, 1, 1};
    if (in_row) a.SparseMatrixRowInsert(1, 1, &own);
    a.SparseMatrixColInsert(1, 1, &own);
    a += b;
    EXPECT_EQ(column_of(a, 1), in_row ? (std::vector<unsigned>{0, 1, 2}) : (std::vector<unsigned>{0, 1, 1, 2}));
    EXPECT_EQ(column_of(a, 2), (std::vector<unsigned>{1}));
    EXPECT_EQ(own.value, in_row ? 9.0 : 7.0);
    a.SparseMatrixColRemove(&own);
    if (in_row) a.SparseMatrixRowRemove(&own);
  }
}

}  // namespace
}  // namespace quorvel::test
