// Elementary rotations and their derivatives.
//
// For axis i the rotated plane is spanned by j and k, the axes that follow i cyclically. Elements that are not written
// are the zeros of a new matrix.
#include "quorvel/rotation.h"

#include "core/ownership.h"
#include "nav/angle.h"
#include "quorvel/RegularMatrix.h"

namespace {

namespace detail = quorvel::detail;
using detail::SinCos;

/// A valid axis, checked before anything is allocated. The pending code comes first, also for a valid axis.
unsigned CheckedAxis(unsigned axis, int code) {
  if (ErrorState() != 0) detail::FailWith(GetErrorCode());
  if (axis < 1 || axis > 3) detail::FailWith(code);
  return axis;
}

/// The 3 x 3 matrix with `on_axis` at (i, i), the diagonal `d` and the off-diagonal `o`, -o in the rotated plane.
RegularMatrix& PlaneMatrix(unsigned axis, double on_axis, double d, double o) {
  const unsigned i = axis - 1;
  const unsigned j = axis % 3;
  const unsigned k = (j + 1) % 3;
  detail::NewResult<RegularMatrix> result(3u, 3u);
  double* const r = result->data();
  r[3 * i + i] = on_axis;
  r[3 * j + j] = d;
  r[3 * k + k] = d;
  r[3 * j + k] = o;
  r[3 * k + j] = -o;
  return result.hand_over();
}

}  // namespace

RegularMatrix& Primary_Axis_Rotation_Matrix_RAD(unsigned int axis, double angle) {
  axis = CheckedAxis(axis, detail::fixed::rotation_axis);
  const SinCos a = detail::sin_cos(angle);
  return PlaneMatrix(axis, 1.0, a.cos, a.sin);
}

RegularMatrix& Primary_Axis_Rotation_Matrix_DEG(unsigned int axis, double angle) {
  return Primary_Axis_Rotation_Matrix_RAD(axis, angle * detail::radians_per_degree);
}

RegularMatrix& DerivativeOfPrimary_Axis_Rotation_Matrix_RAD(unsigned int axis, double angle) {
  axis = CheckedAxis(axis, detail::fixed::rotation_derivative_axis);
  const SinCos a = detail::sin_cos(angle);
  return PlaneMatrix(axis, 0.0, -a.sin, a.cos);
}

RegularMatrix& DerivativeOfPrimary_Axis_Rotation_Matrix_DEG(unsigned int axis, double angle) {
  return DerivativeOfPrimary_Axis_Rotation_Matrix_RAD(axis, angle * detail::radians_per_degree);
}
