// The operand checks of Matrix where the kinds are known: the common case, in which they find nothing, is settled here
// without a call; any other goes to the member, which decides what is thrown and who dies. At small sizes a call costs as
// much as the check, so these are inlined by force.
#ifndef QUORVEL_CORE_FITS_H
#define QUORVEL_CORE_FITS_H

#include "core/pending.h"
#include "quorvel/Matrix.h"

namespace quorvel::detail {

/// Nothing is pending, and the matrices are ok.
__attribute__((always_inline)) inline bool Usable(const Matrix& a) noexcept { return pending_code == 0 && a.ok(); }
__attribute__((always_inline)) inline bool Usable(const Matrix& a, const Matrix& b) noexcept {
  return Usable(a) && b.ok();
}

__attribute__((always_inline)) inline void RequireOk(const Matrix& a, int code) {
  if (!Usable(a)) a.ThrowNotOk(code);
}

template <class A>
__attribute__((always_inline)) inline void RequireSquareShape(const A& a, int code) {
  if (!Usable(a) || a.nrows() != a.ncols()) a.ThrowNotSquare(code);
}

template <class A, class B>
__attribute__((always_inline)) inline void RequireSameRows(const A& a, const B& b, int code) {
  if (!Usable(a, b) || a.nrows() != b.nrows()) a.ThrowNotSameRows(code, b);
}

template <class A, class B>
__attribute__((always_inline)) inline void RequireSameCols(const A& a, const B& b, int code) {
  if (!Usable(a, b) || a.ncols() != b.ncols()) a.ThrowNotSameCols(code, b);
}

template <class A, class B>
__attribute__((always_inline)) inline void RequireSameDim(const A& a, const B& b, int code) {
  if (!Usable(a, b) || a.nrows() != b.nrows() || a.ncols() != b.ncols()) a.ThrowNotSameDim(code, b);
}

/// The columns of a are the rows of b.
template <class A, class B>
__attribute__((always_inline)) inline void RequireProduct(const A& a, const B& b, int code) {
  if (!Usable(a, b) || a.ncols() != b.nrows()) a.ThrowProduct(code, b);
}

__attribute__((always_inline)) inline void RequireAssignable(Matrix& target, const Matrix& source, int code) {
  if (!Usable(target, source)) target.ThrowEquals(code, source);
}

}  // namespace quorvel::detail

#endif
