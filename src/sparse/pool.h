// The pool: blocks of growBy records each. The last record of a block is never handed out: its nextInCol links to the
// next block (null in the last one), and in the first block its nextInRow remembers the last block, so that adding a
// block needs no walk.
//
// Free records form a chain through nextInCol, whose last record is an end mark and is not handed out either: in a new
// block that is the link record. A record that is returned while only the end mark (or nothing) is left becomes the
// end mark itself; the old one is then lost until Clear. The bytes reserved show this, so it is part of the behaviour.
#ifndef QUORVEL_SPARSE_POOL_H
#define QUORVEL_SPARSE_POOL_H

#include "quorvel/SparseMatrix.h"

namespace quorvel::detail {

/// The next free record; its fields are stale. Allocates a block when only the end mark is left.
inline SparseElement* TakeRecord(SparseMatrix& a) {
  if (a.freeHead == nullptr || a.freeHead->nextInCol == nullptr) a.AllocateMoreSpaces();
  SparseElement* const e = a.freeHead;
  a.freeHead = e->nextInCol;
  return e;
}

/// A new record with these contents, in no list. Counts as used.
inline SparseElement* NewElement(SparseMatrix& a, unsigned row, unsigned col, double value) {
  SparseElement* const e = TakeRecord(a);
  *e = SparseElement{nullptr, nullptr, value, row, col};
  ++a.used;
  return e;
}

/// Puts a run of unlinked records, chained through nextInCol from `first` to `last`, in front of the free chain.
inline void ReturnRun(SparseMatrix& a, SparseElement* first, SparseElement* last) noexcept {
  const bool joins = a.freeHead != nullptr && a.freeHead->nextInCol != nullptr;
  last->nextInCol = joins ? a.freeHead : nullptr;
  a.freeHead = first;
}

inline void ReturnRecord(SparseMatrix& a, SparseElement* e) noexcept { ReturnRun(a, e, e); }

}  // namespace quorvel::detail

#endif
