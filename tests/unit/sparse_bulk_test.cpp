// Bulk operations leave what the same single steps leave: the same elements on the same records, the same free chain.
#include <gtest/gtest.h>

#include <utility>

#include "quorvel/quorvel.h"
#include "support/random.h"
#include "support/sparse.h"

using namespace quorvel::test;

namespace {

template <class K>
constexpr bool kSymmetric = std::is_same_v<K, SymmetricSparseMatrix>;

// Sizes below and above what fits the scratch on the stack.
constexpr unsigned kSizes[] = {1, 2, 5, 17, 63, 64, 65, 90};

template <class K>
K Sample(unsigned n, Random& random) {
  K a(n, n);
  if (random.Chance(2)) a.SetGrowBy(random.Below(12));
  Scatter(a, 4 * n, random);
  return a;
}

// A matrix with some history: blocks, and a chain that is not in order.
template <class K>
K Used(unsigned n, Random& random) {
  K a = Sample<K>(n, random);
  if (random.Chance(2)) a.Clear();
  Scatter(a, n, random);
  return a;
}

SparseElement* LastOf(const SparseMatrix& a, unsigned row) {
  SparseElement* e = a.rowHeads[row];
  while (e != nullptr && e->nextInRow != nullptr) e = e->nextInRow;
  return e;
}

// The documented meaning of Copy, in single insertions.
void CopyOneByOne(SparseMatrix& to, const SparseMatrix& from) {
  to.Clear();
  to.SetSize(from.rows, from.cols, true);
  if (to.growBy == 0) to.growBy = from.growBy;
  const bool mirror = from.kind() == Matrix::symmetric_sparse && to.kind() == Matrix::regular_sparse;
  for (unsigned i = 0; i < from.rows; ++i) {
    SparseElement* prev = mirror ? LastOf(to, i) : nullptr;
    for (const SparseElement* e = from.rowHeads[i]; e != nullptr; e = e->nextInRow) {
      prev = to.SparseMatrixInsert(prev, e->row, e->col, e->value);
      if (mirror && e->row != e->col) to.SparseMatrixInsert(e->col, e->row, e->value);
    }
  }
}

template <class To, class From>
void CompareCopies() {
  for (const unsigned n : kSizes) {
    for (unsigned trial = 0; trial < 6; ++trial) {
      SCOPED_TRACE(::testing::Message() << "order " << n << ", trial " << trial);
      Random sample(n + 100 * trial), history(trial);
      const From source = Sample<From>(n, sample);
      Random again = history;
      To bulk = Used<To>(9, history);
      To single = Used<To>(9, again);
      bulk.Copy(source, false);
      CopyOneByOne(single, source);
      EXPECT_EQ(PlacesOf(bulk), PlacesOf(single));
      EXPECT_EQ(CellsOf(bulk), CellsOf(single));
      EXPECT_EQ(bulk.HeapReserved(), single.HeapReserved());
      EXPECT_SOUND(bulk);
      FeedDigest(bulk);
    }
  }
}

TEST(SparseBulk, CopyRegular) { CompareCopies<RegularSparseMatrix, RegularSparseMatrix>(); }
TEST(SparseBulk, CopySymmetric) { CompareCopies<SymmetricSparseMatrix, SymmetricSparseMatrix>(); }
TEST(SparseBulk, CopyBothTriangles) { CompareCopies<RegularSparseMatrix, SymmetricSparseMatrix>(); }

// Elements below the diagonal of a symmetric matrix, and elements stored twice, are copied as single steps copy them.
TEST(SparseBulk, CopyOfUnusualElements) {
  for (unsigned trial = 0; trial < 200; ++trial) {
    SCOPED_TRACE(trial);
    Random random(trial);
    SymmetricSparseMatrix source(6);
    Scatter(source, 10, random);
    for (unsigned k = random.Below(4); k-- > 0;) {
      const unsigned i = random.Below(6);
      if (random.Chance(2)) {
        source.SparseMatrixInsert(nullptr, i, random.Below(i + 1), 1.0 + k);  // in front, may be below the diagonal
      } else {
        source.SparseMatrixInsert(i, random.Below(6), -1.0 - k);  // may be there already
      }
    }
    RegularSparseMatrix bulk, single;
    bulk.Copy(source, false);
    CopyOneByOne(single, source);
    EXPECT_EQ(PlacesOf(bulk), PlacesOf(single));
    EXPECT_EQ(CellsOf(bulk), CellsOf(single));
    SymmetricSparseMatrix same, same_single;
    same.Copy(source, false);
    CopyOneByOne(same_single, source);
    EXPECT_EQ(PlacesOf(same), PlacesOf(same_single));
  }
}

// A first row that is one cell, stored twice: the order of its mirror images is that of single steps, too.
TEST(SparseBulk, CopyOfACellStoredTwice) {
  SymmetricSparseMatrix source(3);
  source.SparseMatrixInsert(0, 2, 1.0);
  source.SparseMatrixInsert(0, 2, 2.0);
  source.SparseMatrixInsert(1, 1, 3.0);
  RegularSparseMatrix bulk, single;
  bulk.Copy(source, false);
  CopyOneByOne(single, source);
  EXPECT_EQ(PlacesOf(bulk), PlacesOf(single));
  EXPECT_EQ(CellsOf(bulk), CellsOf(single));
}

// The regular kind into the symmetric one: below the diagonal an element is in its row list only.
TEST(SparseBulk, CopyRegularIntoSymmetric) {
  for (unsigned trial = 0; trial < 50; ++trial) {
    Random random(trial);
    const RegularSparseMatrix source = Sample<RegularSparseMatrix>(8, random);
    SymmetricSparseMatrix bulk, single;
    bulk.Copy(source, false);
    CopyOneByOne(single, source);
    EXPECT_EQ(PlacesOf(bulk), PlacesOf(single));
    EXPECT_EQ(bulk.used, source.used);
  }
}

template <class K>
void CompareFills() {
  for (const unsigned n : kSizes) {
    Random history(n);
    Random again = history;
    K bulk = Used<K>(n, history);
    K single = Used<K>(n, again);
    bulk = 2.5;
    single.Clear();
    for (unsigned i = 0; i < n; ++i) {
      SparseElement* prev = nullptr;
      for (unsigned j = kSymmetric<K> ? i : 0; j < n; ++j) prev = single.SparseMatrixInsert(prev, i, j, 2.5);
    }
    EXPECT_EQ(PlacesOf(bulk), PlacesOf(single)) << n;
    EXPECT_SOUND(bulk);
  }
}

TEST(SparseBulk, FillRegular) { CompareFills<RegularSparseMatrix>(); }
TEST(SparseBulk, FillSymmetric) { CompareFills<SymmetricSparseMatrix>(); }

// Removing lines: row after row (column after column), each from its head, each record on its own.
template <class K>
void RemoveOneByOne(K& a, unsigned at, unsigned count, bool rows) {
  for (unsigned i = at; i < at + count; ++i) {
    while (SparseElement* e = rows ? a.rowHeads[i] : a.colHeads[i]) a.SparseMatrixRemove(e);
  }
}

TEST(SparseBulk, RemovedLinesComeBackInOrder) {
  for (unsigned trial = 0; trial < 300; ++trial) {
    SCOPED_TRACE(trial);
    Random random(trial);
    const unsigned n = 2 + random.Below(20), at = random.Below(n), count = 1 + random.Below(n - at);
    const bool rows = random.Chance(2);
    Random again = random;
    RegularSparseMatrix bulk = Used<RegularSparseMatrix>(n, random);
    RegularSparseMatrix single = Used<RegularSparseMatrix>(n, again);
    RemoveOneByOne(single, at, count, rows);
    rows ? single.RemoveRows(at, count) : single.RemoveCols(at, count);
    rows ? bulk.RemoveRows(at, count) : bulk.RemoveCols(at, count);
    EXPECT_EQ(PlacesOf(bulk), PlacesOf(single));
    EXPECT_EQ(CellsOf(bulk), CellsOf(single));
    EXPECT_SOUND(bulk);
  }
}

TEST(SparseBulk, ShrinkingASymmetricMatrix) {
  for (unsigned trial = 0; trial < 100; ++trial) {
    SCOPED_TRACE(trial);
    Random random(trial);
    Random again = random;
    SymmetricSparseMatrix bulk = Used<SymmetricSparseMatrix>(15, random);
    SymmetricSparseMatrix single = Used<SymmetricSparseMatrix>(15, again);
    const unsigned n = 1 + trial % 15;
    RemoveOneByOne(single, n, 15 - n, true);
    RemoveOneByOne(single, n, 15 - n, false);
    single.SetSize(n, n, false);
    bulk.SetSize(n, n, false);
    EXPECT_EQ(PlacesOf(bulk), PlacesOf(single));
    EXPECT_SOUND(bulk);
  }
}

template <class K>
void CompareDense(const K& source) {
  RegularSparseMatrix bulk(source), single(source.nrows(), source.ncols());
  for (unsigned i = 0; i < source.nrows(); ++i) {
    SparseElement* prev = nullptr;
    for (unsigned j = 0; j < source.ncols(); ++j) {
      const double v = source(i, j);
      if (v != 0.0) prev = single.SparseMatrixInsert(prev, i, j, v);
    }
  }
  EXPECT_EQ(PlacesOf(bulk), PlacesOf(single));
  EXPECT_EQ(CellsOf(bulk), CellsOf(single));
  EXPECT_SOUND(bulk);
  FeedDigest(bulk);
}

TEST(SparseBulk, FromDenseKinds) {
  for (const unsigned n : kSizes) {
    Random random(n);
    RegularMatrix r(n, n + 3);
    SymmetricMatrix s(n);
    UpperTriangularMatrix u(n);
    LowerTriangularMatrix l(n);
    DiagonalMatrix d(n);
    for (SingleArrayMatrix* a : std::initializer_list<SingleArrayMatrix*>{&r, &s, &u, &l, &d}) {
      Fill(a->data(), a->StoredCount(), Pattern::kSignedZero, random);
    }
    CompareDense(r);
    CompareDense(s);
    CompareDense(u);
    CompareDense(l);
    CompareDense(d);
  }
}

}  // namespace
