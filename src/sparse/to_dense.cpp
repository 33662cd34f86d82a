// RegularMatrix and SymmetricMatrix from the sparse kinds.
#include "core/ownership.h"
#include "core/storage.h"
#include "dense/rules.h"
#include "sparse/cursor.h"

namespace detail = quorvel::detail;
namespace code = quorvel::detail::code;
using detail::index_t;
using detail::Rule;
using detail::SparseLines;

namespace {

/// Sizes and zeroes the target, then writes every non-zero element where it is stored and, when asked for, at its
/// mirror image.
void FillRegular(RegularMatrix& target, const SparseMatrix& source, int operation, bool keep, bool mirror) {
  target.ThrowEquals(operation, source);
  const detail::Consumed operand(source);
  if (target.nrows() != source.rows || target.ncols() != source.cols) {
    detail::FillTarget(target, [&] { target.SetSize(source.rows, source.cols, keep); });
  }
  detail::ClearDoubles(target.data(), target.StoredCount());
  const Rule<RegularMatrix> to(target);
  SparseLines(source).for_each_stored([&](const SparseElement& e) {
    if (e.value == 0.0) return;
    to.store(e.row, e.col) = e.value;
    const bool fits = e.col < to.rows() && e.row < to.cols();
    if (mirror && fits) to.store(e.col, e.row) = e.value;
  });
}

}  // namespace

RegularMatrix::RegularMatrix(const RegularSparseMatrix& source) : RegularMatrix() { *this = source; }

RegularMatrix::RegularMatrix(const SymmetricSparseMatrix& source) : RegularMatrix() { *this = source; }

RegularMatrix& RegularMatrix::operator=(const RegularSparseMatrix& source) {
  FillRegular(*this, source, code::regular_from_sparse, true, false);
  return *this;
}

RegularMatrix& RegularMatrix::operator=(const SymmetricSparseMatrix& source) {
  FillRegular(*this, source, code::regular_from_symmetric_sparse, false, true);
  return *this;
}

SymmetricMatrix::SymmetricMatrix(const SymmetricSparseMatrix& source) : SymmetricMatrix() { *this = source; }

SymmetricMatrix& SymmetricMatrix::operator=(const SymmetricSparseMatrix& source) {
  // Not the usual assignment check: a dispensable target survives.
  if (ErrorState() != 0 || !ok() || !source.ok()) {
    set_ok(false);
    detail::FailWith(code::symmetric_from_sparse + detail::offset::not_ok, &source);
  }
  const detail::Consumed operand(source);
  if (ndim() != source.rows || ndim() != source.cols) {
    detail::FillTarget(*this, [&] { SetSize(source.rows, source.cols, false); });
  }
  detail::ClearDoubles(data(), StoredCount());
  const Rule<SymmetricMatrix> to(*this);
  SparseLines(source).for_each_stored([&](const SparseElement& e) {
    if (e.value != 0.0) to.store(e.row, e.col) = e.value;
  });
  return *this;
}
