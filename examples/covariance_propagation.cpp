// How uncertain is a vehicle's position when no measurement comes in?
//
// State: position (m) and velocity (m/s) along three axes. Between two epochs the velocity is disturbed
// by white acceleration noise. The covariance P of the state grows as P <- F P F' + Q.

#include <cmath>
#include <cstdio>

#include "quorvel/quorvel.h"

namespace {

constexpr double kStep = 1.0;    // s
constexpr double kNoise = 0.01;  // (m/s^2)^2/Hz, spectral density of the acceleration noise
constexpr unsigned kAxes = 3;
constexpr unsigned kStates = 2 * kAxes;

// Position advances by velocity times the time step.
RegularMatrix Transition() {
  RegularMatrix F(kStates, kStates);
  for (unsigned i = 0; i < kStates; ++i) F(i, i) = 1.0;
  for (unsigned i = 0; i < kAxes; ++i) F(i, i + kAxes) = kStep;
  return F;
}

// What the noise adds during one step.
SymmetricMatrix ProcessNoise() {
  SymmetricMatrix Q(kStates);
  for (unsigned i = 0; i < kAxes; ++i) {
    Q(i, i) = kNoise * kStep * kStep * kStep / 3.0;
    Q(i, i + kAxes) = kNoise * kStep * kStep / 2.0;
    Q(i + kAxes, i + kAxes) = kNoise * kStep;
  }
  return Q;
}

}  // namespace

int main() {
  const RegularMatrix F = Transition();
  const SymmetricMatrix Q = ProcessNoise();

  SymmetricMatrix P(kStates);
  for (unsigned i = 0; i < kAxes; ++i) {
    P(i, i) = 5.0 * 5.0;                  // position known to 5 m
    P(i + kAxes, i + kAxes) = 0.5 * 0.5;  // velocity known to 0.5 m/s
  }

  std::puts("  t [s]   position sigma [m]   velocity sigma [m/s]");
  for (int t = 0; t <= 10; ++t) {
    std::printf("  %5d   %18.3f   %20.3f\n", t, std::sqrt(P(0, 0)), std::sqrt(P(kAxes, kAxes)));
    if (t < 10) P = AQAT(F, P) + Q;
  }

  std::puts("\nCovariance after 10 s:");
  P.Print(stdout, true, false, 3, 9);
}
