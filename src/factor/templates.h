// Templates that dispatch on the kind tag: the dense conversions and the readers of one row or column.
//
// The tag decides which positions are visited, the static type how an element is read there. A tag that a template
// cannot handle is a broken invariant: the process ends with an assertion that names "templates" and the line number
// that belongs to that template.
#ifndef QUORVEL_FACTOR_TEMPLATES_H
#define QUORVEL_FACTOR_TEMPLATES_H

#include "core/invariant.h"
#include "core/ownership.h"
#include "dense/rules.h"
#include "ops/spell_out.h"

namespace quorvel::detail {

inline void ValidType(bool valid, unsigned line, const char* signature) {
  Invariant(valid, "!\"Invalid type\"", "templates", line, signature);
}

/// Writes the non-zero elements of a square source at the packed positions of a triangle, which is given by the tag:
/// the diagonal alone for a diagonal source.
template <class T>
void FillPacked(SquareMatrix& target, const T& source) noexcept {
  const Rule<T> from(source);
  const index_t n = from.rows();
  FillDoubles(target.data(), 0.0, packed_count(n));
  for (index_t a = 0; a < n; ++a) {
    double* const row = target.data() + packed_row(a, n) - a;
    if (source.kind() == Matrix::diagonal) {
      row[a] = from.at(a, a);
      continue;
    }
    for (index_t b = a; b < n; ++b) {
      const double v = source.kind() == Matrix::lower_triangular ? from.at(b, a) : from.at(a, b);
      if (v != 0.0) row[b] = v;
    }
  }
}

/// Writes every element of a square target: the source's where the tag says that it has one, else zero.
template <class T>
void FillVisited(RegularMatrix& target, const Rule<T>& from, Matrix::class_type kind) noexcept {
  const Rule<RegularMatrix> to(target);
  const index_t n = from.rows();
  const bool right = kind == Matrix::symmetric || kind == Matrix::upper_triangular;
  const bool left = kind == Matrix::symmetric || kind == Matrix::lower_triangular;
  for (index_t i = 0; i < n; ++i) {
    for (index_t j = 0; j < n; ++j) {
      const bool visited = i == j || (j > i ? right : left);
      // A symmetric matrix is visited in its upper triangle, whatever the type: below it stands the mirror image.
      const bool mirrored = kind == Matrix::symmetric && j < i;
      to.store(i, j) = mirrored ? from.at(j, i) : visited ? from.at(i, j) : 0.0;
    }
  }
}

}  // namespace quorvel::detail

/// target = source, implicit zeros and mirrored elements included; the singularity count is copied.
template <class T>
RegularMatrix& RM_EQ_TMat(RegularMatrix& target, const T& source) {
  using namespace quorvel::detail;
  target.ThrowEquals(code::assign, source);
  Consumed operands(source, target);
  const Rule<T> from(source);
  const index_t n = from.rows();
  if (target.nrows() != n || target.ncols() != n) SizeForResult(target, n, n);
  const Matrix::class_type kind = source.kind();
  ValidType(kind >= Matrix::symmetric && kind <= Matrix::diagonal, 124, __PRETTY_FUNCTION__);
  if (kind == KindTraits<T>::tag) {
    SpellOut(target.data(), source);
  } else {
    FillVisited(target, from, kind);
  }
  target.set_nsing(source.nsing());
  operands.release(target);
  return target;
}

/// target = the diagonal; the target keeps its singularity count.
template <class T>
SymmetricMatrix& SM_EQ_TMat(SymmetricMatrix& target, const T& source) {
  using namespace quorvel::detail;
  target.ThrowEquals(code::symmetric_from_diagonal, source);
  Consumed operands(source, target);
  if (target.ndim() != source.ndim()) target.SetSize(source.ndim(), source.ndim(), false);
  ValidType(source.kind() == Matrix::symmetric || source.kind() == Matrix::diagonal, 170, __PRETTY_FUNCTION__);
  FillPacked(target, source);
  operands.release(target);
  return target;
}

/// target = the diagonal; the singularity count is copied.
template <class T>
UpperTriangularMatrix& UT_EQ_TMat(UpperTriangularMatrix& target, const T& source) {
  using namespace quorvel::detail;
  target.ThrowEquals(code::upper_from_diagonal, source);
  Consumed operands(source, target);
  if (target.ndim() != source.ndim()) target.SetSize(source.ndim(), source.ndim(), false);
  ValidType(source.kind() == Matrix::upper_triangular || source.kind() == Matrix::diagonal, 210, __PRETTY_FUNCTION__);
  FillPacked(target, source);
  target.set_nsing(source.nsing());
  operands.release(target);
  return target;
}

/// target = the diagonal; the singularity count is copied.
template <class T>
LowerTriangularMatrix& LT_EQ_TMat(LowerTriangularMatrix& target, const T& source) {
  using namespace quorvel::detail;
  target.ThrowEquals(code::lower_from_diagonal, source);
  Consumed operands(source, target);
  if (target.ndim() != source.ndim()) target.SetSize(source.ndim(), source.ndim(), false);
  ValidType(source.kind() == Matrix::lower_triangular || source.kind() == Matrix::diagonal, 252, __PRETTY_FUNCTION__);
  FillPacked(target, source);
  target.set_nsing(source.nsing());
  operands.release(target);
  return target;
}

namespace quorvel::detail {

/// The span of a line a reader was asked for, in the index along the line.
struct LineSpan {
  index_t first;
  index_t last;
  bool empty;
};

/// Clips the span to the line, zeroes the buffer and sets first = length + 1, last = 0: nothing found yet.
inline LineSpan OpenSpan(index_t length, double* out, index_t& first, index_t& last) noexcept {
  const index_t asked_first = first;
  const index_t end = length == 0 || last < length - 1 ? last : length - 1;
  const bool empty = length == 0 || asked_first > end;
  first = length + 1;
  last = 0;
  if (!empty) FillDoubles(out, 0.0, std::uint64_t{end - asked_first} + 1);
  return {asked_first, end, empty};
}

/// Reads the part of the span that lies in `visited` (half open) and brackets its non-zero elements.
template <class Element>
void ReadSpan(const LineSpan& span, Range visited, double* out, index_t& first, index_t& last, Element element) {
  const Range range = common(visited, {span.first, span.last + 1});
  for (index_t k = range.begin; k < range.end; ++k) {
    const double v = element(k);
    if (v == 0.0) continue;
    out[k - span.first] = v;
    last = k;
    if (k < first) first = k;
  }
}

/// The part of line `index` that a kind stores, along a row (`upper` for the upper kind) or, with upper and lower
/// exchanged, along a column.
inline Range VisitedPart(Matrix::class_type kind, Matrix::class_type ahead, index_t index, index_t length) noexcept {
  if (kind == Matrix::regular || kind == Matrix::symmetric) return {0, length};
  if (kind == Matrix::diagonal) return {index, index + 1};
  return kind == ahead ? Range{index, length} : Range{0, index + 1};
}

}  // namespace quorvel::detail

/// Columns first..min(last, end) of a row into out[0..], with the first and last non-zero column (see the kinds'
/// GetLimitedRow).
template <class T>
void GetLimitedRow_T(const T& m, Matrix::size_type row, double* out, Matrix::size_type& first,
                     Matrix::size_type& last) {
  using namespace quorvel::detail;
  m.ThrowNotOk(code::limited_row);
  const Rule<T> from(m);
  const LineSpan span = OpenSpan(from.cols(), out, first, last);
  ValidType(m.kind() <= Matrix::diagonal, 1180, __PRETTY_FUNCTION__);
  if (span.empty || row >= from.rows()) return;
  ReadSpan(span, VisitedPart(m.kind(), Matrix::upper_triangular, row, from.cols()), out, first, last,
           [&](index_t c) { return from.at(row, c); });
}

/// Rows first..min(last, end) of a column into out[0..]; the mirror image of GetLimitedRow_T.
template <class T>
void GetLimitedCol_T(const T& m, Matrix::size_type col, double* out, Matrix::size_type& first,
                     Matrix::size_type& last) {
  using namespace quorvel::detail;
  m.ThrowNotOk(code::limited_col);
  const Rule<T> from(m);
  const LineSpan span = OpenSpan(from.rows(), out, first, last);
  ValidType(m.kind() <= Matrix::diagonal, 1278, __PRETTY_FUNCTION__);
  if (span.empty || col >= from.cols()) return;
  ReadSpan(span, VisitedPart(m.kind(), Matrix::lower_triangular, col, from.rows()), out, first, last,
           [&](index_t r) { return from.at(r, col); });
}

#endif
