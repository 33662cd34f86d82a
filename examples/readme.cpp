#include <cstdio>
#include <quorvel/quorvel.h>

int main() {
  const double measured[] = {1.2, 3.1, 4.8, 7.3, 9.1, 10.9};  // m, one per second
  const double variance = 0.25;                               // m^2

  UpperTriangularMatrix Phi;  // transition over 1 s: position, velocity
  SymmetricMatrix Q, P(2);    // process noise, covariance
  RegularMatrix x(2, 1), H(1, 2);
  Phi_PV(Phi, 1.0);
  Q_PV(Q, 1.0, 0.1);
  P(0, 0) = P(1, 1) = 100.0;
  H(0, 0) = 1.0;  // the sensor sees the position

  for (double z : measured) {
    x = Phi * x;
    P = AQAT(Phi, P) + Q;
    RegularMatrix PHt = ABT(P, H);
    const double s = scalar(H * PHt) + variance;
    x += PHt * ((z - scalar(H * x)) / s);
    P -= AAT(PHt) * (1.0 / s);
    std::printf("position %6.3f m, velocity %5.3f m/s\n", x(0), x(1));
  }
}
