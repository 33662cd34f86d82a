// Geodesy: rotation into the local level frame, and derivatives of geodetic coordinates.
//
// Frames: x, y, z are Earth-centred, Earth-fixed (z to the north pole, x to the meridian of longitude 0); east, north,
// up are the local level axes at geodetic latitude lat and longitude lon. Angles in radians, lengths in metres (or any
// unit, the same for h and a).
//
// Each returns a new dispensable 3 x 3 matrix (two allocations, singularity count -1). No argument is checked and a
// pending code is not looked at; only exhausted memory throws, 10680. Sine and cosine are the C library's, so the last
// bit may differ between platforms; elements that are zero may be -0.0.
//
// Source: Torge, Mueller, Geodesy (2012), chapter 4; Hofmann-Wellenhof, Lichtenegger, Wasle, GNSS (2008), chapter 8.
#ifndef QUORVEL_GEODESY_H
#define QUORVEL_GEODESY_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

/// Turns a difference of Earth-fixed coordinates into east, north, up (rows; columns x, y, z):
///        -sin lon            cos lon           0
///   E =  -cos lon sin lat   -sin lon sin lat   cos lat
///         cos lon cos lat    sin lon cos lat   sin lat
/// E is orthogonal: its transpose turns east, north, up back into x, y, z.
///
///   RegularMatrix E(denu_dxyz(lat, lon));
///   SymmetricMatrix local(AQAT(E, covariance));   // 3 x 3 position covariance in east, north, up
[[nodiscard]] QUORVEL_API RegularMatrix& denu_dxyz(double lat, double lon);

/// Partial derivatives of x, y, z (rows) by latitude, longitude (per radian) and height (columns) on an ellipsoid with
/// semi-major axis a and first eccentricity squared e2 (WGS 84: 6378137.0 and 6.69437999014e-3):
///   -(M + h) sin lat cos lon   -(N + h) cos lat sin lon   cos lat cos lon
///   -(M + h) sin lat sin lon    (N + h) cos lat cos lon   cos lat sin lon
///    (M + h) cos lat                       0              sin lat
/// with w = 1 - e2 sin^2 lat, the prime-vertical radius N = a / sqrt(w) and the meridian radius M = (1 - e2) N / w.
/// Where w < 0 (e2 beyond 1) the result is NaN, where w = 0 infinite.
///
///   RegularMatrix J(dxyz_dblh(lat, lon, h, 6378137.0, 6.69437999014e-3));
///   SymmetricMatrix xyz(AQAT(J, blh));   // covariance of latitude, longitude, height (rad, rad, m) to x, y, z (m)
[[nodiscard]] QUORVEL_API RegularMatrix& dxyz_dblh(double lat, double lon, double h, double a, double e2);

#endif
