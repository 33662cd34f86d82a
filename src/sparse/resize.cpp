// Sizes: SetSize, and opening and removing rows or columns. Everything is allocated before anything changes.
#include <memory>
#include <utility>

#include "core/ownership.h"
#include "core/storage.h"
#include "sparse/axis.h"
#include "sparse/pool.h"

namespace detail = quorvel::detail;
using detail::ByCol;
using detail::ByRow;
using detail::index_t;

namespace {

using Heads = std::unique_ptr<SparseElement*[]>;

/// An array of empty lists.
// never all ways: a count of 32 bits fits, which the language asks
Heads NewHeads(index_t count) { return Heads(new SparseElement*[count]()); }

template <class Axis>
void ReplaceHeads(SparseMatrix& a, Heads heads, index_t count) noexcept {
  delete[] Axis::heads(a);
  Axis::heads(a) = heads.release();
  Axis::count(a) = count;
}

template <class Axis>
void Renumber(SparseElement* e, index_t line) noexcept {
  for (; e != nullptr; e = Axis::next(*e)) Axis::line(*e) = line;
}

/// Opens `count` empty lists at `at`; `heads` is an array of the new size.
template <class Axis>
void OpenLines(SparseMatrix& a, index_t at, index_t count, Heads heads) noexcept {
  const index_t old = Axis::count(a);
  SparseElement** const from = Axis::heads(a);
  for (index_t i = 0; i < at; ++i) heads[i] = from[i];
  for (index_t i = at; i < old; ++i) {
    heads[i + count] = from[i];
    Renumber<Axis>(from[i], i + count);
  }
  ReplaceHeads<Axis>(a, std::move(heads), old + count);
}

template <class Axis>
void InsertLines(SparseMatrix& a, index_t at, index_t count) {
  if (count == 0) return;
  a.ThrowInsert(detail::code::none, at, Axis::count(a));
  detail::RequireSize(Axis::count(a), count);
  OpenLines<Axis>(a, at, count, NewHeads(Axis::count(a) + count));
}

/// The index of the list that an element is in, while it waits to be taken out of the lists across: no list has it.
constexpr index_t condemned = Matrix::npos;

/// Takes the condemned elements out of list i, in one sweep over those whose place lies in [at, end). Each is marked as
/// taken out by a link to itself. Others stay: elements below the diagonal of a symmetric matrix are in their row list
/// only.
template <class Axis>
void CutRun(SparseMatrix& a, index_t i, index_t at, index_t end) noexcept {
  if (i >= Axis::count(a)) return;
  SparseElement** link = &Axis::heads(a)[i];
  while (*link != nullptr && Axis::along(**link) < at) link = &Axis::next(**link);
  while (*link != nullptr) {
    SparseElement* const e = *link;
    if (Axis::along(*e) == condemned) {
      *link = Axis::next(*e);
      Axis::next(*e) = e;
    } else if (Axis::along(*e) < end) {
      link = &Axis::next(*e);
    } else {
      return;
    }
  }
}

/// Removes every element of the lists [at, end): first each crossed list is swept once, then the records go back one by
/// one, list after list from its head, which is the order of removing them singly.
template <class Axis>
void EmptyLines(SparseMatrix& a, index_t at, index_t end) noexcept {
  using Cross = typename Axis::Cross;
  for (index_t i = at; i < end; ++i) Renumber<Axis>(Axis::heads(a)[i], condemned);
  for (index_t i = at; i < end; ++i) {
    for (SparseElement* e = Axis::heads(a)[i]; e != nullptr; e = Axis::next(*e)) {
      const auto taken_out = [e] { return Cross::next(*e) == e; };
      if (!taken_out()) CutRun<Cross>(a, Axis::along(*e), at, end);
      if (!taken_out()) detail::UnlinkThis<Cross>(a, e);  // the list does not ascend, or does not have the element
    }
  }
  for (index_t i = at; i < end; ++i) {
    SparseElement* next = nullptr;
    for (SparseElement* e = Axis::heads(a)[i]; e != nullptr; e = next) {
      next = Axis::next(*e);
      e->nextInRow = nullptr;
      e->nextInCol = nullptr;
      detail::ReturnRecord(a, e);
      --a.used;
    }
    Axis::heads(a)[i] = nullptr;
  }
}

/// Removes the lists [at, at + count). The array of heads keeps its size unless all lists go.
template <class Axis>
void CloseLines(SparseMatrix& a, index_t at, index_t count) noexcept {
  EmptyLines<Axis>(a, at, at + count);
  const index_t old = Axis::count(a);
  if (count == old) {
    ReplaceHeads<Axis>(a, nullptr, 0);
    return;
  }
  SparseElement** const heads = Axis::heads(a);
  for (index_t i = at + count; i < old; ++i) {
    heads[i - count] = heads[i];
    Renumber<Axis>(heads[i], i - count);
  }
  Axis::count(a) = old - count;
}

template <class Axis>
void RemoveLines(SparseMatrix& a, index_t at, index_t count) {
  if (count == 0) return;
  a.ThrowDimRange(detail::code::none, at, count, Axis::count(a));
  CloseLines<Axis>(a, at, count);
}

/// What a resized dimension needs before anything may change: the checks of opening or removing lines at the end, and
/// the new array when it grows.
template <class Axis>
Heads Prepare(SparseMatrix& a, index_t count) {
  const index_t old = Axis::count(a);
  if (count > old) {
    a.ThrowInsert(detail::code::none, old, old);
    return NewHeads(count);
  }
  if (count < old) a.ThrowDimRange(detail::code::none, count, old - count, old);
  return nullptr;
}

template <class Axis>
void Resize(SparseMatrix& a, index_t count, Heads heads) noexcept {
  const index_t old = Axis::count(a);
  if (count > old) OpenLines<Axis>(a, old, count - old, std::move(heads));
  if (count < old) CloseLines<Axis>(a, count, old - count);
}

/// The new array of a dimension of a matrix that is emptied: only a larger count needs one.
template <class Axis>
Heads PrepareEmpty(const SparseMatrix& a, index_t count) {
  return count > Axis::count(a) ? NewHeads(count) : nullptr;
}

template <class Axis>
void ResizeEmpty(SparseMatrix& a, index_t count, Heads heads) noexcept {
  if (count == 0 || count > Axis::count(a)) {
    ReplaceHeads<Axis>(a, std::move(heads), count);
  } else {
    Axis::count(a) = count;
  }
}

}  // namespace

void SparseMatrix::SetSize(size_type rowCount, size_type colCount, bool) {
  ThrowNotOk(detail::code::none);
  if (detail::is_symmetric_sparse(*this) && rowCount != colCount) detail::FailWith(detail::offset::shape, this);
  if (rowCount == 0 || colCount == 0) {
    Heads newRows = PrepareEmpty<ByRow>(*this, rowCount);
    Heads newCols = PrepareEmpty<ByCol>(*this, colCount);
    Clear();
    ResizeEmpty<ByRow>(*this, rowCount, std::move(newRows));
    ResizeEmpty<ByCol>(*this, colCount, std::move(newCols));
    return;
  }
  Heads newRows = Prepare<ByRow>(*this, rowCount);
  Heads newCols = Prepare<ByCol>(*this, colCount);
  Resize<ByRow>(*this, rowCount, std::move(newRows));
  Resize<ByCol>(*this, colCount, std::move(newCols));
}

void SparseMatrix::InsertRows(unsigned at, unsigned count) { InsertLines<ByRow>(*this, at, count); }

void SparseMatrix::InsertCols(unsigned at, unsigned count) { InsertLines<ByCol>(*this, at, count); }

void SparseMatrix::RemoveRows(unsigned at, unsigned count) { RemoveLines<ByRow>(*this, at, count); }

void SparseMatrix::RemoveCols(unsigned at, unsigned count) { RemoveLines<ByCol>(*this, at, count); }
