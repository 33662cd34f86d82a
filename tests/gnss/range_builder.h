// Error-free epochs for a receiver anywhere, made from broadcast messages by a way of their own: the light-time
// equation is solved in a frame that does not rotate.
#ifndef QUORVEL_TESTS_GNSS_RANGE_BUILDER_H
#define QUORVEL_TESTS_GNSS_RANGE_BUILDER_H

#include <cmath>
#include <vector>

#include "estimate/sights.h"
#include "simulate/simulation.h"

namespace gnss::test {

// Turns Earth-fixed coordinates of the moment t into the frame that was Earth-fixed at the moment zero.
inline Vector3 Inertial(const Vector3& v, double t) {
  const double a = kEarthRotation * t;
  return {std::cos(a) * v[0] - std::sin(a) * v[1], std::sin(a) * v[0] + std::cos(a) * v[1], v[2]};
}

// Ranges to the satellites above the horizon, without atmosphere, for a receiver clock that is `clock` seconds fast.
inline ObservationEpoch ExactEpoch(const NavigationData& navigation, const GpsTime& shown, const Vector3& receiver,
                                   double clock) {
  ObservationEpoch epoch{shown, {}};
  const GpsTime received = shown + -clock;
  for (int prn = 1; prn <= kMaxPrn; ++prn) {
    Usability usability;
    const Ephemeris* e = navigation.Find(prn, shown, usability);
    if (!e) continue;
    double travel = 0.07;
    for (int i = 0; i < 20; ++i) {
      const Vector3 sent = Inertial(SatellitePosition(*e, received + -travel), -travel);
      travel = Length(sent - receiver) / kSpeedOfLight;
    }
    const Vector3 line = Inertial(SatellitePosition(*e, received + -travel), -travel) - receiver;
    if (EastNorthUp(ToGeodetic(receiver), (1.0 / Length(line)) * line)[2] < std::sin(8.0 * kDegree)) continue;
    const double satellite_clock = SatelliteClock(*e, received + -travel);
    epoch.ranges.push_back({prn, kSpeedOfLight * (travel + clock - satellite_clock)});
  }
  return epoch;
}

// Adds the atmosphere that the processing takes off again.
inline void AddAtmosphere(const NavigationData& navigation, const Vector3& receiver, ObservationEpoch& epoch) {
  const Geodetic place = ToGeodetic(receiver);
  for (Pseudorange& range : epoch.ranges) {
    Usability usability;
    const Ephemeris* e = navigation.Find(range.prn, epoch.time, usability);
    const GpsTime sent = TransmissionTime(*e, epoch.time, range.metres);
    const Vector3 line = Inertial(SatellitePosition(*e, sent), -(epoch.time - sent)) - receiver;
    const Vector3 enu = EastNorthUp(place, (1.0 / Length(line)) * line);
    const double elevation = std::asin(enu[2]);
    range.metres += TroposphereDelay(place, elevation) +
                    IonosphereDelay(navigation.ionosphere, place, elevation, std::atan2(enu[0], enu[1]), epoch.time);
  }
}

}  // namespace gnss::test

#endif
