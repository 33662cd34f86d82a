// Rotations: elementary rotations of a coordinate frame about one of its axes, and their derivatives.
//
// These are passive rotations: R v gives the components of the unchanged vector v in axes that were turned by `angle`
// about axis 1 (x), 2 (y) or 3 (z), counter-clockwise seen from the tip of that axis. For axis 3
//
//        c  s  0          -s  c  0
//   R = -s  c  0     R' = -c -s  0      c = cos(angle), s = sin(angle)
//        0  0  1           0  0  0
//
// and cyclically for the others. Transposing R reverses the rotation.
//
// Each returns a new dispensable 3 x 3 matrix (two allocations, singularity count -1). They throw the pending code, else
// 30120 (rotation) or 30121 (derivative) when axis is none of 1, 2, 3, and 10680 when memory is exhausted. Sine and
// cosine are the C library's, so the last bit may differ between platforms; elements that are zero may be -0.0.
//
// Source: IERS Conventions (2010), chapter 5 (the matrices R1, R2, R3).
//
//   RegularMatrix R(Primary_Axis_Rotation_Matrix_DEG(3, 30.0));
//   RegularMatrix turned(R * v);
#ifndef QUORVEL_ROTATION_H
#define QUORVEL_ROTATION_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

/// R for an angle in radians.
[[nodiscard]] QUORVEL_API RegularMatrix& Primary_Axis_Rotation_Matrix_RAD(unsigned int axis, double angle);

/// R for an angle in degrees: the radian form of angle * 0.017453292519943295.
[[nodiscard]] QUORVEL_API RegularMatrix& Primary_Axis_Rotation_Matrix_DEG(unsigned int axis, double angle);

/// dR/dangle for an angle in radians, per radian.
[[nodiscard]] QUORVEL_API RegularMatrix& DerivativeOfPrimary_Axis_Rotation_Matrix_RAD(unsigned int axis, double angle);

/// dR/dangle at an angle in degrees. The derivative is still per radian: multiply it by pi/180 for a change in degrees.
[[nodiscard]] QUORVEL_API RegularMatrix& DerivativeOfPrimary_Axis_Rotation_Matrix_DEG(unsigned int axis, double angle);

#endif
