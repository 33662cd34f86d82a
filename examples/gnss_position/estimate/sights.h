// From code ranges and broadcast messages to the transmitters that an epoch sees.
#ifndef GNSS_POSITION_ESTIMATE_SIGHTS_H
#define GNSS_POSITION_ESTIMATE_SIGHTS_H

#include <vector>

#include "model/navigation_data.h"
#include "model/observations.h"

namespace gnss {

/// One usable satellite of an epoch.
struct Sight {
  int prn = 0;
  Vector3 transmitter{};  ///< where the signal left, in the Earth-fixed frame of that moment
  double range = 0.0;     ///< pseudorange freed from the satellite's clock error, metres
};

/// Satellites that could not be used, counted.
struct UnusableSatellites {
  int without_ephemeris = 0;
  int unhealthy = 0;
};

std::vector<Sight> UsableSights(const ObservationEpoch& epoch, const NavigationData& navigation,
                                UnusableSatellites& unusable);

}  // namespace gnss

#endif
