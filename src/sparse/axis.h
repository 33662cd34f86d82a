// The two directions of the element store. An algorithm on lists is written once over an axis: ByRow means row lists
// (one per row, ascending columns), ByCol column lists.
//
// A list whose index is not below its count is empty: a symmetric matrix that is not square (made so by its constructor
// or by opening and removing rows alone) may look at lines that it does not have.
#ifndef QUORVEL_SPARSE_AXIS_H
#define QUORVEL_SPARSE_AXIS_H

#include "core/packed.h"
#include "quorvel/SparseMatrix.h"

namespace quorvel::detail {

struct ByCol;

struct ByRow {
  using Cross = ByCol;
  /// Which list the element is in, and its place along that list.
  static index_t& line(SparseElement& e) noexcept { return e.row; }
  static index_t& along(SparseElement& e) noexcept { return e.col; }
  static SparseElement*& next(SparseElement& e) noexcept { return e.nextInRow; }
  /// The matrix's lists of this direction: their heads and their count.
  template <class M>
  static auto& heads(M& a) noexcept {
    return a.rowHeads;
  }
  template <class M>
  static auto& count(M& a) noexcept {
    return a.rows;
  }
};

struct ByCol {
  using Cross = ByRow;
  static index_t& line(SparseElement& e) noexcept { return e.col; }
  static index_t& along(SparseElement& e) noexcept { return e.row; }
  static SparseElement*& next(SparseElement& e) noexcept { return e.nextInCol; }
  template <class M>
  static auto& heads(M& a) noexcept {
    return a.colHeads;
  }
  template <class M>
  static auto& count(M& a) noexcept {
    return a.cols;
  }
};

/// First element of list i.
template <class Axis>
SparseElement* ListHead(const SparseMatrix& a, index_t i) noexcept {
  return i < Axis::count(a) ? Axis::heads(a)[i] : nullptr;
}

/// Links e into list i, in front of the first element that is not before it.
template <class Axis>
void LinkSorted(SparseMatrix& a, index_t i, index_t along, SparseElement* e) noexcept {
  SparseElement** link = &Axis::heads(a)[i];
  while (*link != nullptr && Axis::along(**link) < along) link = &Axis::next(**link);
  Axis::next(*e) = *link;
  *link = e;
}

/// Takes the first element that `is` names out of e's list, if the list has one; clears e's own link in any case.
template <class Axis, class Is>
void UnlinkFirst(SparseMatrix& a, SparseElement* e, Is is) noexcept {
  const index_t i = Axis::line(*e);
  if (i < Axis::count(a)) {
    SparseElement** link = &Axis::heads(a)[i];
    while (*link != nullptr && !is(*link)) link = &Axis::next(**link);
    if (*link != nullptr) *link = Axis::next(**link);
  }
  Axis::next(*e) = nullptr;
}

/// Takes out the element that has e's indices.
template <class Axis>
void Unlink(SparseMatrix& a, SparseElement* e) noexcept {
  UnlinkFirst<Axis>(a, e, [e](SparseElement* other) { return Axis::along(*other) == Axis::along(*e); });
}

/// Takes out e itself: of elements with the same indices the others stay. So an element on its way to the pool is in no
/// list, and one that stays is in both.
template <class Axis>
void UnlinkThis(SparseMatrix& a, SparseElement* e) noexcept {
  UnlinkFirst<Axis>(a, e, [e](const SparseElement* other) { return other == e; });
}

inline bool is_symmetric_sparse(const SparseMatrix& a) noexcept { return a.kind() == Matrix::symmetric_sparse; }

/// Cells below the diagonal of the symmetric kind are in no column list.
inline bool in_column_list(const SparseMatrix& a, index_t row, index_t col) noexcept {
  return row <= col || a.kind() == Matrix::regular_sparse;
}

}  // namespace quorvel::detail

#endif
