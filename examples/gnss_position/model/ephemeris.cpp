#include "model/ephemeris.h"

#include <cmath>

namespace gnss {
namespace {

// Eccentric anomaly from Kepler's equation M = E - e sin E by Newton's method; it converges in a handful of steps
// for the eccentricities that a reader lets pass (e < 0.9).
double EccentricAnomaly(const Ephemeris& eph, const GpsTime& t) {
  const double a = eph.sqrt_a * eph.sqrt_a;
  const double mean_motion = std::sqrt(kGravityConstant / (a * a * a)) + eph.delta_n;
  const double mean_anomaly = std::remainder(eph.m0 + mean_motion * (t - eph.toe), 2.0 * kPi);
  double anomaly = mean_anomaly;
  for (int i = 0; i < 50; ++i) {
    const double step = (mean_anomaly + eph.e * std::sin(anomaly) - anomaly) / (1.0 - eph.e * std::cos(anomaly));
    anomaly += step;
    if (std::fabs(step) < 1e-14) break;
  }
  return anomaly;
}

double ClockPolynomial(const Ephemeris& eph, const GpsTime& t) {
  const double dt = t - eph.toc;
  return eph.af0 + dt * (eph.af1 + dt * eph.af2) - eph.tgd;
}

}  // namespace

Vector3 SatellitePosition(const Ephemeris& eph, const GpsTime& t) {
  const double dt = t - eph.toe;
  const double anomaly = EccentricAnomaly(eph, t);
  const double true_anomaly = std::atan2(std::sqrt(1.0 - eph.e * eph.e) * std::sin(anomaly), std::cos(anomaly) - eph.e);

  // Argument of latitude, radius and inclination with their second-harmonic corrections.
  const double phi = true_anomaly + eph.omega;
  const double s2 = std::sin(2.0 * phi);
  const double c2 = std::cos(2.0 * phi);
  const double u = phi + eph.cus * s2 + eph.cuc * c2;
  const double r = eph.sqrt_a * eph.sqrt_a * (1.0 - eph.e * std::cos(anomaly)) + eph.crs * s2 + eph.crc * c2;
  const double i = eph.i0 + eph.i_dot * dt + eph.cis * s2 + eph.cic * c2;

  // Longitude of the ascending node in the rotating frame; omega0 refers to the start of the week of toe.
  const double node = eph.omega0 + (eph.omega_dot - kEarthRotation) * dt - kEarthRotation * eph.toe.seconds;

  const double x = r * std::cos(u);
  const double y = r * std::sin(u);
  return {x * std::cos(node) - y * std::cos(i) * std::sin(node), x * std::sin(node) + y * std::cos(i) * std::cos(node),
          y * std::sin(i)};
}

double SatelliteClock(const Ephemeris& eph, const GpsTime& t) {
  const double f = -2.0 * std::sqrt(kGravityConstant) / (kSpeedOfLight * kSpeedOfLight);
  return ClockPolynomial(eph, t) + f * eph.e * eph.sqrt_a * std::sin(EccentricAnomaly(eph, t));
}

GpsTime TransmissionTime(const Ephemeris& eph, const GpsTime& received, double pseudorange) {
  const GpsTime satellite_reading = received + (-pseudorange / kSpeedOfLight);
  // The clock error changes by less than 1e-11 s per second: evaluating it at the reading itself is enough. The
  // polynomial without relativity (20 ns, 60 micrometres of orbit) would do as well.
  return satellite_reading + -(SatelliteClock(eph, satellite_reading) + eph.tgd);
}

}  // namespace gnss
