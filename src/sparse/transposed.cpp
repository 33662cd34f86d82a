// The transpose. Row j of it is column j of A, and its records come from the pool row by row.
//
// So A may be read by its columns. Where these lead through memory in leaps, each step waits for a record: then A is
// read by its rows, twice. First the elements of each column are counted, which tells the place of every row of the
// transpose in its pool; then every element goes to its place.
#include "sparse/transposed.h"

#include <cstdint>
#include <vector>

#include "sparse/append.h"
#include "sparse/pool.h"

namespace quorvel::detail {
namespace {

/// The first `count` records of a matrix that has no blocks, by their number in the pool.
class NumberedRecords {
 public:
  NumberedRecords(SparseMatrix& a, index_t count) {
    for (index_t left = count; left != 0;) {
      SparseElement* const block = AddBlock(a);
      blocks_.push_back(block);
      per_block_ = a.growBy - 1;
      const index_t taken = left < per_block_ ? left : per_block_;
      ChainRecords(a, block + taken, block + per_block_);
      left -= taken;
    }
    a.used = count;
  }
  SparseElement* operator[](index_t k) const noexcept { return blocks_[k / per_block_] + k % per_block_; }

  /// The elements that a block ends and the next one begins become neighbours in their row, as all others are.
  void join_blocks() const noexcept {
    for (std::size_t b = 1; b < blocks_.size(); ++b) blocks_[b - 1][per_block_ - 1].nextInRow = blocks_[b];
  }

 private:
  std::vector<SparseElement*> blocks_;
  index_t per_block_ = 1;
};

/// begins[j + 1] = elements in the columns up to j. False when the rows do not tell what the columns are: when one does
/// not ascend strictly inside the matrix or holds an element of another row, or when a column holds other elements than
/// the rows.
bool CountColumns(const SparseMatrix& a, std::vector<index_t>& begins) {
  std::vector<const SparseElement*> next(a.colHeads, a.colHeads + a.cols);
  for (index_t i = 0; i < a.rows; ++i) {
    index_t least = 0;
    for (const SparseElement* e = a.rowHeads[i]; e != nullptr; e = e->nextInRow) {
      if (e->row != i || e->col - least >= a.cols - least || next[e->col] != e) return false;
      next[e->col] = e->nextInCol;
      least = e->col + 1;
      ++begins[e->col + 1];
    }
  }
  for (index_t j = 0; j < a.cols; ++j) begins[j + 1] += begins[j];
  return begins[a.cols] == a.used;
}

void PlaceElements(SparseMatrix& result, const SparseMatrix& a, std::vector<index_t>& places) {
  const NumberedRecords records(result, a.used);
  for (index_t i = 0; i < a.rows; ++i) {
    SparseElement** link = &result.colHeads[i];
    for (const SparseElement* e = a.rowHeads[i]; e != nullptr; e = e->nextInRow) {
      SparseElement* const placed = records[places[e->col]++];
      *placed = SparseElement{placed + 1, nullptr, e->value, e->col, i};
      *link = placed;
      link = &placed->nextInCol;
    }
  }
  records.join_blocks();
  index_t begin = 0;
  for (index_t j = 0; j < result.rows; ++j) {
    const index_t end = places[j];
    if (begin != end) {
      result.rowHeads[j] = records[begin];
      records[end - 1]->nextInRow = nullptr;
    }
    begin = end;
  }
}

/// Whether the columns lead through memory in leaps, judged by the first steps of some of them.
bool ColumnsLeap(const SparseMatrix& a) noexcept {
  constexpr index_t few = 4096;  // elements that lie together in a cache
  constexpr index_t probes = 64;
  constexpr std::uintptr_t leap = 4096;  // bytes
  if (a.used < few) return false;
  const auto address = [](const SparseElement* e) { return reinterpret_cast<std::uintptr_t>(e); };
  index_t steps = 0;
  index_t leaps = 0;
  for (std::uint64_t p = 0; p < probes; ++p) {
    const SparseElement* const e = a.colHeads[p * a.cols / probes];
    if (e == nullptr || e->nextInCol == nullptr) continue;
    const std::uintptr_t from = address(e);
    const std::uintptr_t to = address(e->nextInCol);
    ++steps;
    if ((from < to ? to - from : from - to) > leap) ++leaps;
  }
  return 2 * leaps > steps;
}

void AppendColumns(SparseMatrix& result, const SparseMatrix& a) {
  RowWriter writer(result);
  for (index_t c = 0; c < a.cols; ++c) {
    SparseElement* prev = nullptr;
    for (const SparseElement* e = a.colHeads[c]; e != nullptr; e = e->nextInCol) {
      prev = writer.append(prev, c, e->row, e->value);
    }
  }
}

}  // namespace

void FillTransposed(RegularSparseMatrix& result, const RegularSparseMatrix& A) {
  if (ColumnsLeap(A)) {
    std::vector<index_t> begins(std::size_t{A.cols} + 1);
    if (CountColumns(A, begins)) return PlaceElements(result, A, begins);
  }
  AppendColumns(result, A);
}

}  // namespace quorvel::detail
