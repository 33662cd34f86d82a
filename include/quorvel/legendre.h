// Legendre functions: the associated ones, for spherical-harmonic models of gravity and magnetic fields.
#ifndef QUORVEL_LEGENDRE_H
#define QUORVEL_LEGENDRE_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

/// Element (n, m) of P, m <= n, becomes the unnormalised associated Legendre function of degree n and order m,
/// without the Condon-Shortley phase, at t = sin(latitude):
///   P(n, m) = (1 - t^2)^(m/2) d^m/dt^m P_n(t),   so that P(n, n) = (2n - 1)!! cos^n(latitude)
///
/// latDeg is the (geocentric) latitude in DEGREES. The order N of P is the number of degrees, 0 .. N - 1; all its
/// elements are assigned, nothing is allocated, the singularity count stays. Nothing is checked and a pending code is
/// not looked at. N = 0 does nothing.
///
/// N = 2 is special (kept): P(1, 1) is then exactly 1.0 and not cos(latitude), which it is for every N >= 3. Ask for
/// one degree more when degree 1 is the highest you need.
///
/// Range: for N up to 150 every value is finite; at N = 151 most latitudes overflow, and beyond that all do,
/// because (2N - 3)!! leaves the range of a double. Multiply by
/// sqrt((2 - d) (2n + 1) (n - m)! / (n + m)!), d = 1 for m = 0 and else 0, for the fully normalised functions.
///
/// Within a degree the functions divided by cos^m are computed downwards in the order, from
///   P(n, m) = (cos^2 P(n, m + 2) - 2 (m + 1) sin P(n, m + 1)) / (m (m + 1) - n (n + 1)),
/// and then scaled by cos^m. The order of operations is fixed; sine and cosine are the C library's.
///
/// Source: NIST Digital Library of Mathematical Functions, 14.10.1; Heiskanen, Moritz, Physical Geodesy (1967), chapter 1.
///
///   LowerTriangularMatrix P(13);
///   LegendreFunctions(P, 48.2);
QUORVEL_API void LegendreFunctions(LowerTriangularMatrix& P, double latDeg);

#endif
