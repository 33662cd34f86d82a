// Writing a sparse matrix row by row at a constant cost per element.
//
//   RowWriter writer(target);                        // target already has its size
//   for (rows i, ascending) {
//     SparseElement* prev = nullptr;                  // or the last element of row i before the insertion
//     for (columns j, ascending) prev = writer.append(prev, i, j, value);
//   }
//
// append(prev, i, j, v) does what target.SparseMatrixInsert(prev, i, j, v) does - same lists, same record from the
// pool, same code 62190 - and remove(prev, e) stands for target.SparseMatrixRemove(prev, e). No column is walked:
//
// - A target whose lists are empty when the writer comes gets its columns when the writer goes, all at once and from the
//   last row to the first: every element then comes to the head of its list, and nothing but the elements themselves
//   is touched, in the order in which they lie in memory. Until then the column lists are not there. Rows may come in
//   any order. A cell that is written twice is written again behind the first one.
// - A target with elements, or any on request (Columns::at_once), has its columns linked element by element: for each
//   column the writer remembers an element and goes on from there. Rows should not descend: an element that is not
//   behind the remembered one costs a walk from the head, nothing else. Scratch: one pointer per column, on the stack
//   up to 64 columns.
//
// A merge may go through the rows once more, also of what the same writer wrote; all removals then go through the
// writer. Total cost: elements of the target + calls + rows or columns.
//
// Until the writer goes, the free chain and `used` are behind. Constructing a writer may throw std::bad_alloc, and an
// append when the pool must grow; then, too, the writer leaves consistent lists of what was written.
#ifndef QUORVEL_SPARSE_APPEND_H
#define QUORVEL_SPARSE_APPEND_H

#include <algorithm>
#include <memory>

#include "core/ownership.h"
#include "sparse/axis.h"
#include "sparse/pool.h"

namespace quorvel::detail {

/// For each list of one direction an element that a walk along it may start from; null: its head.
template <class Axis>
class ListHints {
 public:
  /// For nothing, until `begin`.
  explicit ListHints(SparseMatrix& target) noexcept : target_(target) {}
  ListHints(const ListHints&) = delete;
  ListHints& operator=(const ListHints&) = delete;

  void begin() {
    const index_t count = Axis::count(target_);
    if (count > inline_count) {
      heap_.reset(new SparseElement*[count]());
      hints_ = heap_.get();
    } else {
      std::fill_n(inline_, inline_count, nullptr);
      hints_ = inline_;
    }
  }
  bool begun() const noexcept { return hints_ != nullptr; }

  /// Links e at its place in list i, as LinkSorted does.
  void link(index_t i, index_t along, SparseElement* e) noexcept {
    SparseElement*& place = find(i, along);
    Axis::next(*e) = place;
    place = e;
    hints_[i] = e;
  }

  /// Takes e out of list i, as UnlinkThis does.
  void unlink(index_t i, SparseElement* e) noexcept {
    SparseElement** link = &find(i, Axis::along(*e));
    while (*link != nullptr && *link != e) link = &Axis::next(**link);
    if (*link != nullptr) *link = Axis::next(*e);
    Axis::next(*e) = nullptr;
  }

 private:
  /// The link to the first element of list i that is not before `along`. The hint becomes the element before it.
  SparseElement*& find(index_t i, index_t along) noexcept {
    SparseElement*& hint = hints_[i];
    if (hint != nullptr && Axis::along(*hint) >= along) hint = nullptr;
    SparseElement** link = hint != nullptr ? &Axis::next(*hint) : &Axis::heads(target_)[i];
    while (*link != nullptr && Axis::along(**link) < along) {
      hint = *link;
      link = &Axis::next(*hint);
    }
    return *link;
  }

  static constexpr index_t inline_count = 64;
  SparseMatrix& target_;
  SparseElement** hints_ = nullptr;
  std::unique_ptr<SparseElement*[]> heap_;
  SparseElement* inline_[inline_count];
};

/// No list holds anything, records that a user has linked by hand (which `used` does not count) included.
inline bool ListsAreEmpty(const SparseMatrix& a) noexcept {
  const auto none = [](SparseElement* const* heads, index_t count) noexcept {
    return std::all_of(heads, heads + count, [](const SparseElement* head) { return head == nullptr; });
  };
  return a.used == 0 && none(a.rowHeads, a.rows) && none(a.colHeads, a.cols);
}

class RowWriter {
 public:
  enum class Columns { when_done, at_once };

  explicit RowWriter(SparseMatrix& target, Columns columns = Columns::when_done)
      : target_(target), records_(target), hints_(target) {
    if (columns == Columns::at_once || !ListsAreEmpty(target)) hints_.begin();
  }
  RowWriter(const RowWriter&) = delete;
  RowWriter& operator=(const RowWriter&) = delete;
  ~RowWriter() {
    if (!hints_.begun()) link_columns();
  }

  SparseElement* append(SparseElement* prevInRow, index_t row, index_t col, double value) {
    if (row >= target_.rows || col >= target_.cols) FailWith(fixed::sparse_append);
    SparseElement* const e = records_.make(row, col, value);
    SparseElement*& link = prevInRow != nullptr ? prevInRow->nextInRow : target_.rowHeads[row];
    e->nextInRow = link;
    link = e;
    if (prevInRow == nullptr) begin_row(row);
    if (hints_.begun() && in_column_list(target_, row, col)) hints_.link(col, row, e);
    return e;
  }

  void remove(SparseElement* prevInRow, SparseElement* e) noexcept {
    (prevInRow != nullptr ? prevInRow->nextInRow : target_.rowHeads[e->row]) = e->nextInRow;
    e->nextInRow = nullptr;
    if (hints_.begun() && e->col < target_.cols) hints_.unlink(e->col, e);
    records_.settle();
    ReturnRecord(target_, e);
    --target_.used;
  }

 private:
  void begin_row(index_t row) noexcept {
    if (row < first_) first_ = row;
    if (row >= end_) end_ = row + 1;
  }

  /// From the last row to the first, so that every element comes to the head of its list: no list is walked.
  void link_columns() noexcept {
    for (index_t i = end_; i-- > first_;) {
      for (SparseElement* e = target_.rowHeads[i]; e != nullptr; e = e->nextInRow) {
        if (!in_column_list(target_, e->row, e->col)) continue;
        SparseElement*& head = target_.colHeads[e->col];
        e->nextInCol = head;
        head = e;
      }
    }
  }

  SparseMatrix& target_;
  RecordSupply records_;
  ListHints<ByCol> hints_;  // when columns are linked at once
  index_t first_ = Matrix::npos;           // the rows that have got elements: first .. end - 1
  index_t end_ = 0;
};

}  // namespace quorvel::detail

#endif
