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

/// More than the end mark is left.
inline bool HasFreeRecord(const SparseMatrix& a) noexcept {
  return a.freeHead != nullptr && a.freeHead->nextInCol != nullptr;
}

/// The next free record; its fields are stale. Allocates a block when only the end mark is left.
inline SparseElement* TakeRecord(SparseMatrix& a) {
  if (!HasFreeRecord(a)) a.AllocateMoreSpaces();
  SparseElement* const e = a.freeHead;
  a.freeHead = e->nextInCol;
  return e;
}

/// Adds a block to those of the matrix and returns it; what it holds but its link record is as it comes from the heap.
SparseElement* AddBlock(SparseMatrix& a);

/// Makes `first`, the records behind it and their end mark `last` the free chain; they lie in one block.
inline void ChainRecords(SparseMatrix& a, SparseElement* first, SparseElement* last) noexcept {
  for (SparseElement* e = first; e != last; ++e) e->nextInCol = e + 1;
  a.freeHead = first;
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
  last->nextInCol = HasFreeRecord(a) ? a.freeHead : nullptr;
  a.freeHead = first;
}

inline void ReturnRecord(SparseMatrix& a, SparseElement* e) noexcept { ReturnRun(a, e, e); }

/// Makes elements as NewElement does, from the same records in the same order, for a caller who makes many: the records
/// of a new block are taken as they lie, and what is left of them is chained at the end (settle, or the destructor).
/// Until then the free chain and `used` are behind.
class RecordSupply {
 public:
  explicit RecordSupply(SparseMatrix& a) noexcept : a_(a) {}
  RecordSupply(const RecordSupply&) = delete;
  RecordSupply& operator=(const RecordSupply&) = delete;
  ~RecordSupply() { settle(); }

  SparseElement* make(unsigned row, unsigned col, double value) {
    return next_ != end_ ? make_next(row, col, value) : make_first(row, col, value);
  }

  void settle() noexcept {
    if (end_ == nullptr) return;
    ChainRecords(a_, next_, end_);
    a_.used += static_cast<unsigned>(next_ - begin_);
    begin_ = next_ = end_ = nullptr;
  }

 private:
  SparseElement* make_next(unsigned row, unsigned col, double value) noexcept {
    *next_ = SparseElement{nullptr, nullptr, value, row, col};
    return next_++;
  }

  /// From the free chain, or the first of a new block when there is none. Kept out of the loops of the callers.
  __attribute__((noinline)) SparseElement* make_first(unsigned row, unsigned col, double value) {
    settle();
    if (HasFreeRecord(a_)) return NewElement(a_, row, col, value);
    begin_ = next_ = AddBlock(a_);
    end_ = begin_ + (a_.growBy - 1);
    return make_next(row, col, value);
  }

  SparseMatrix& a_;
  SparseElement* begin_ = nullptr;  // of the block that is being handed out
  SparseElement* next_ = nullptr;
  SparseElement* end_ = nullptr;  // its link record
};

}  // namespace quorvel::detail

#endif
