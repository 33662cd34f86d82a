// Writing a sparse matrix row by row at a constant cost per element.
//
//   RowWriter writer(target);                        // target already has its size
//   for (rows i, ascending) {
//     SparseElement* prev = nullptr;                  // or the last element of row i before the insertion
//     for (columns j, ascending) prev = writer.append(prev, i, j, value);
//   }
//
// append(prev, i, j, v) does what target.SparseMatrixInsert(prev, i, j, v) does - same lists, same record from the
// pool, same code 62190 - without walking column j from its head: for each column the writer remembers an element in an
// earlier row and goes on from there. remove(prev, e) likewise stands for target.SparseMatrixRemove(prev, e). Rows
// should not descend: an element in an earlier row than the remembered one costs a walk from the head, nothing else.
//
// The target need not be empty, so a merge that goes row by row may insert into it and remove from it; all removals
// must then go through the writer. Total cost: elements of the target + calls + columns.
//
// Scratch: one pointer per column, on the stack up to 64 columns. Constructing a writer may throw std::bad_alloc, an
// append std::bad_alloc when the pool must grow; lists and pool are consistent at every moment.
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
  explicit ListHints(SparseMatrix& target) : target_(target), hints_(inline_) {
    const index_t count = Axis::count(target);
    if (count > inline_count) {
      heap_.reset(new SparseElement*[count]());
      hints_ = heap_.get();
    } else {
      std::fill_n(inline_, inline_count, nullptr);
    }
  }
  ListHints(const ListHints&) = delete;
  ListHints& operator=(const ListHints&) = delete;

  /// Links e at its place in list i, as LinkSorted does.
  void link(index_t i, index_t along, SparseElement* e) noexcept {
    SparseElement*& place = find(i, along);
    Axis::next(*e) = place;
    place = e;
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
  SparseElement** hints_;
  std::unique_ptr<SparseElement*[]> heap_;
  SparseElement* inline_[inline_count];
};

class RowWriter {
 public:
  explicit RowWriter(SparseMatrix& target) : target_(target), columns_(target) {}

  SparseElement* append(SparseElement* prevInRow, index_t row, index_t col, double value) {
    if (row >= target_.rows || col >= target_.cols) FailWith(fixed::sparse_append);
    SparseElement* const e = NewElement(target_, row, col, value);
    SparseElement*& link = prevInRow != nullptr ? prevInRow->nextInRow : target_.rowHeads[row];
    e->nextInRow = link;
    link = e;
    if (in_column_list(target_, row, col)) columns_.link(col, row, e);
    return e;
  }

  void remove(SparseElement* prevInRow, SparseElement* e) noexcept {
    (prevInRow != nullptr ? prevInRow->nextInRow : target_.rowHeads[e->row]) = e->nextInRow;
    e->nextInRow = nullptr;
    if (e->col < target_.cols) columns_.unlink(e->col, e);
    ReturnRecord(target_, e);
    --target_.used;
  }

 private:
  SparseMatrix& target_;
  ListHints<ByCol> columns_;
};

}  // namespace quorvel::detail

#endif
