#include "estimate/sights.h"

#include <cmath>

namespace gnss {
namespace {

// A message whose numbers are damaged can put a satellite anywhere, or nowhere (NaN fails too).
bool IsGpsOrbit(const Vector3& position) {
  const double radius = Length(position);
  return radius > 2.0e7 && radius < 3.3e7;
}

}  // namespace

std::vector<Sight> UsableSights(const ObservationEpoch& epoch, const NavigationData& navigation,
                                UnusableSatellites& unusable) {
  std::vector<Sight> sights;
  sights.reserve(epoch.ranges.size());
  for (const Pseudorange& range : epoch.ranges) {
    Usability usability;
    const Ephemeris* ephemeris = navigation.Find(range.prn, epoch.time, usability);
    if (!ephemeris) {
      ++(usability == Usability::unhealthy ? unusable.unhealthy : unusable.without_ephemeris);
      continue;
    }
    const GpsTime sent = TransmissionTime(*ephemeris, epoch.time, range.metres);
    const Sight sight{range.prn, SatellitePosition(*ephemeris, sent),
                      range.metres + kSpeedOfLight * SatelliteClock(*ephemeris, sent)};
    if (!IsGpsOrbit(sight.transmitter) || !(std::fabs(sight.range) < 1e9)) {
      ++unusable.without_ephemeris;
      continue;
    }
    sights.push_back(sight);
  }
  return sights;
}

}  // namespace gnss
