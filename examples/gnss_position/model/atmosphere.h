// What the atmosphere adds to a range, in metres.
#ifndef GNSS_POSITION_MODEL_ATMOSPHERE_H
#define GNSS_POSITION_MODEL_ATMOSPHERE_H

#include <array>

#include "model/gps_time.h"
#include "model/vector3.h"

namespace gnss {

/// Coefficients of the broadcast ionosphere model, in the units of the message.
struct Ionosphere {
  std::array<double, 4> alpha{}, beta{};
  bool known = false;
};

/// Delay on the first frequency by the broadcast model (Klobuchar; IS-GPS-200, 20.3.3.5.2.5). Zero when no
/// coefficients are known.
double IonosphereDelay(const Ionosphere& model, const Geodetic& receiver, double elevation, double azimuth,
                       const GpsTime& t);

/// Delay by Saastamoinen's zenith formulas (1972) in the standard atmosphere with 70 % humidity at the receiver's
/// height, mapped to the elevation by Black and Eisner (1984). Zero above 20 km.
double TroposphereDelay(const Geodetic& receiver, double elevation);

}  // namespace gnss

#endif
