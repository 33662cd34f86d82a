// The readers and the writer of sparse matrices that the operations are built on.
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "sparse/append.h"
#include "sparse/column_writer.h"
#include "sparse/cursor.h"
#include "support/codes.h"
#include "support/kinds.h"
#include "support/random.h"
#include "support/sparse.h"

using namespace quorvel::test;
using namespace quorvel::test::kinds;
using quorvel::detail::ColumnWriter;
using quorvel::detail::LineCursor;
using quorvel::detail::NewElement;
using quorvel::detail::ReturnRecord;
using quorvel::detail::RowWriter;
using quorvel::detail::Rule;

namespace {

using Line = std::vector<std::pair<unsigned, double>>;

Line Read(LineCursor e) {
  Line line;
  for (; e; e.next()) line.emplace_back(e.index(), e.value());
  return line;
}

template <class K>
class SparseRule : public ::testing::Test {};
using Kinds = ::testing::Types<RS, SS>;
TYPED_TEST_SUITE(SparseRule, Kinds);

TYPED_TEST(SparseRule, LinesHoldEachStoredCellInOrder) {
  for (unsigned n = 1; n < 12; ++n) {
    Random random(n);
    TypeParam a(n, n);
    Scatter(a, 3 * n, random);
    if (n > 3) a.MultRow(n / 2, 0.0);  // stored zeros are cells
    const Rule<TypeParam> rule(a);
    ASSERT_EQ(rule.stored(), a.used);
    for (unsigned i = 0; i < n; ++i) {
      Line row, col;
      for (unsigned j = 0; j < n; ++j) {
        if (a.Cell_Loc(i, j) != nullptr) row.emplace_back(j, rule.at(i, j));
        if (a.Cell_Loc(j, i) != nullptr) col.emplace_back(j, rule.at(j, i));
      }
      EXPECT_EQ(Read(rule.row(i)), row);
      EXPECT_EQ(Read(rule.col(i)), col);
      for (unsigned k = 0; k <= n; ++k) {
        LineCursor e = rule.row(i);
        e.skip_to(k);
        EXPECT_EQ(static_cast<bool>(e), !row.empty() && row.back().first >= k);
        if (e) {
          EXPECT_GE(e.index(), k);
        }
      }
    }
    unsigned stored = 0;
    rule.for_each_stored([&](const SparseElement& e) {
      ++stored;
      EXPECT_EQ(a.Cell_Loc(e.row, e.col), &e);
    });
    EXPECT_EQ(stored, a.used);
  }
}

TEST(SparseRule, LinesStayInsideAMatrixThatIsNotSquare) {
  SS wide(2, 5);
  wide.Put(1, 1, 1.0);
  wide.Put(1, 2, 3.0);
  wide.Put(1, 4, 2.0);
  const Rule<SS> rule(wide);
  EXPECT_EQ(Read(rule.row(1)), (Line{{1, 1.0}, {2, 3.0}, {4, 2.0}}));
  EXPECT_EQ(Read(rule.col(1)), (Line{{1, 1.0}}));  // rows 2 and 4 do not exist
  EXPECT_EQ(Read(rule.col(4)), (Line{{1, 2.0}}));
  EXPECT_FALSE(rule.row(7));
  SS below(3);
  SparseElement* e = below.SparseMatrixInsert(nullptr, 2, 0, 4.0);
  below.SparseMatrixInsert(e, 2, 2, 5.0);
  EXPECT_EQ(Read(Rule<SS>(below).row(2)), (Line{{2, 5.0}}));  // below the diagonal: not in a line
  SS torn(4);
  torn.SparseMatrixInsert(nullptr, 3, 2, 1.0);
  torn.RemoveCols(2, 2);
  unsigned seen = 0;
  Rule<SS>(torn).for_each_stored([&seen](const SparseElement&) { ++seen; });
  EXPECT_EQ(seen, 0u) << "an element outside the matrix";
}

// Changes one row of a matrix, through the writer or in single steps: elements come in and go, now and then a cell
// comes again. Equal generators make equal choices.
template <class Append, class Remove>
void ChangeRow(SparseMatrix& a, unsigned i, unsigned first, bool twice_behind, Random random, Append append,
               Remove remove) {
  SparseElement* prev = nullptr;
  SparseElement* e = a.rowHeads[i];
  const auto pass = [&] { prev = std::exchange(e, e->nextInRow); };
  for (unsigned j = first; j < a.cols; ++j) {
    while (e != nullptr && e->col < j) pass();
    const bool here = e != nullptr && e->col == j;
    const unsigned action = random.Below(6);
    if (here && action == 0) {
      remove(prev, std::exchange(e, e->nextInRow));
    } else if (action == 1 && (!here || random.Chance(3))) {
      while (twice_behind && e != nullptr && e->col == j) pass();
      prev = append(prev, i, j, 10.0 * i + j);
    }
  }
}

// A merge in single steps, and through the writer: the same records everywhere.
TYPED_TEST(SparseRule, WriterDoesWhatSingleStepsDo) {
  constexpr bool symmetric = std::is_same_v<TypeParam, SS>;
  for (unsigned trial = 0; trial < 600; ++trial) {
    SCOPED_TRACE(trial);
    Random random(trial);
    const unsigned n = 1 + random.Below(trial % 10 == 0 ? 80 : 12);
    const bool empty = trial % 2 == 0;
    const auto columns = trial % 3 == 0 ? RowWriter::Columns::at_once : RowWriter::Columns::when_done;
    TypeParam bulk(n, n);
    if (random.Chance(2)) bulk.SetGrowBy(random.Below(7));
    Random again = random;
    TypeParam single(n, n);
    if (bulk.growBy != 0) single.SetGrowBy(bulk.growBy - 1);
    Scatter(bulk, 2 * n, random);
    Scatter(single, 2 * n, again);
    if (empty) {  // with a pool that was used
      bulk.Clear();
      single.Clear();
    }
    const bool linked_late = bulk.used == 0 && columns == RowWriter::Columns::when_done;
    {
      RowWriter writer(bulk, columns);
      for (unsigned round = 0; round < (empty ? 2 : 1); ++round) {
        unsigned turns = 2;
        for (unsigned i = 0; i < n; ++i) {
          if (turns != 0 && random.Chance(10)) {  // going back is allowed
            i -= random.Below(i + 1);
            --turns;
          }
          const unsigned first = symmetric && !random.Chance(8) ? i : 0;
          ChangeRow(
              bulk, i, first, linked_late, random,
              [&](auto... of) { return writer.append(of...); }, [&](auto... of) { writer.remove(of...); });
          ChangeRow(
              single, i, first, linked_late, random,
              [&](auto... of) { return single.SparseMatrixInsert(of...); },
              [&](auto... of) { single.SparseMatrixRemove(of...); });
          random.Below(1000);
          if (!linked_late) {
            ASSERT_EQ(CellsOf(bulk), CellsOf(single)) << "row " << i;
          }
        }
      }
    }
    ASSERT_EQ(PlacesOf(bulk), PlacesOf(single));
    EXPECT_EQ(bulk.used, single.used);
    EXPECT_EQ(bulk.HeapReserved(), single.HeapReserved());
  }
}

// Column by column, the same: each element behind the one before in its column, and sorted into its row.
TYPED_TEST(SparseRule, ColumnWriterDoesWhatSingleStepsDo) {
  for (unsigned trial = 0; trial < 100; ++trial) {
    SCOPED_TRACE(trial);
    Random random(trial);
    const unsigned n = 1 + random.Below(trial % 10 == 0 ? 80 : 12);
    TypeParam bulk(n, n);
    TypeParam single(n, n);
    if (random.Chance(2)) {  // with a pool that was used
      bulk.Put(0, 0, 1.0);
      single.Put(0, 0, 1.0);
      bulk.Clear();
      single.Clear();
    }
    {
      ColumnWriter writer(bulk);
      for (unsigned j = 0; j < n; ++j) {
        SparseElement* prev = nullptr;
        SparseElement* prev_single = nullptr;
        for (unsigned i = 0; i < (std::is_same_v<TypeParam, SS> ? j + 1 : n); ++i) {
          for (unsigned times = random.Chance(9) ? 2 : random.Below(2); times != 0; --times) {
            prev = writer.append(prev, i, j, 1.0 + times);
            SparseElement* const e = NewElement(single, i, j, 1.0 + times);
            (prev_single != nullptr ? prev_single->nextInCol : single.colHeads[j]) = e;
            single.SparseMatrixRowInsert(i, j, e);
            prev_single = e;
          }
        }
      }
    }
    ASSERT_EQ(PlacesOf(bulk), PlacesOf(single));
    EXPECT_EQ(bulk.used, single.used);
  }
}

// An element that lies outside the matrix, as the loss of columns alone can leave it, is in no column list.
TEST(SparseRule, WriterRemovesWhatLiesOutside) {
  const auto torn = [] {
    SS a(4);
    a.SparseMatrixInsert(nullptr, 3, 2, 1.0);
    a.SparseMatrixInsert(nullptr, 1, 1, 2.0);
    a.RemoveCols(2, 2);
    return a;
  };
  SS bulk = torn(), single = torn();
  RowWriter(bulk).remove(nullptr, bulk.rowHeads[3]);
  single.SparseMatrixRemove(nullptr, single.rowHeads[3]);
  EXPECT_EQ(PlacesOf(bulk), PlacesOf(single));
  EXPECT_EQ(CellsOf(bulk), (std::vector<Cell>{{1, 1, 2.0}}));
  EXPECT_EQ(bulk.used, 1u);
  EXPECT_SOUND(bulk);
}

// A record that comes to a matrix without any becomes the end mark, which is never handed out.
TEST(SparseRule, TheFirstRecordThatComesBackIsTheEndMark) {
  RS a(2, 2);
  SparseElement other{};
  ReturnRecord(a, &other);
  EXPECT_EQ(a.freeHead, &other);
  EXPECT_EQ(other.nextInCol, nullptr);
  SparseElement* const e = NewElement(a, 1, 1, 3.0);
  EXPECT_NE(e, &other);
  EXPECT_EQ(BlocksOf(a), 1u);
}

TEST(SparseRule, WriterChecksIndices) {
  RS a(2, 2);
  RowWriter writer(a);
  EXPECT_CODE(writer.append(nullptr, 2, 0, 1.0), 62190);
  EXPECT_CODE(writer.append(nullptr, 0, 2, 1.0), 62190);
  EXPECT_EQ(BlocksOf(a), 0u);
}

}  // namespace
