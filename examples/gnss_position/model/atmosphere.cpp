#include "model/atmosphere.h"

#include <algorithm>
#include <cmath>

#include "model/ephemeris.h"

namespace gnss {

double IonosphereDelay(const Ionosphere& model, const Geodetic& receiver, double elevation, double azimuth,
                       const GpsTime& t) {
  if (!model.known) return 0.0;

  // The model counts angles in semicircles; the point where the ray meets the thin layer at 350 km.
  const double el = elevation / kPi;
  const double psi = 0.0137 / (el + 0.11) - 0.022;
  const double latitude = std::clamp(receiver.latitude / kPi + psi * std::cos(azimuth), -0.416, 0.416);
  const double longitude = receiver.longitude / kPi + psi * std::sin(azimuth) / std::cos(latitude * kPi);
  const double geomagnetic = latitude + 0.064 * std::cos((longitude - 1.617) * kPi);

  double local_time = 43200.0 * longitude + t.seconds;
  local_time -= 86400.0 * std::floor(local_time / 86400.0);

  double amplitude = 0.0;
  double period = 0.0;
  for (std::size_t k = 4; k-- > 0;) {
    amplitude = amplitude * geomagnetic + model.alpha[k];
    period = period * geomagnetic + model.beta[k];
  }
  amplitude = std::max(amplitude, 0.0);
  period = std::max(period, 72000.0);

  const double slant = 1.0 + 16.0 * (0.53 - el) * (0.53 - el) * (0.53 - el);
  const double x = 2.0 * kPi * (local_time - 50400.0) / period;
  double vertical = 5e-9;
  if (std::fabs(x) < 1.57) vertical += amplitude * (1.0 - x * x / 2.0 + x * x * x * x / 24.0);
  return kSpeedOfLight * slant * vertical;
}

double TroposphereDelay(const Geodetic& receiver, double elevation) {
  if (!(receiver.height < 20000.0)) return 0.0;
  const double height = std::max(receiver.height, 0.0);

  // Standard atmosphere: pressure and water vapour pressure in hPa, temperature in K.
  const double pressure = 1013.25 * std::pow(1.0 - 2.2557e-5 * height, 5.2568);
  const double temperature = std::max(288.15 - 6.5e-3 * height, 216.65);
  const double vapour = 0.7 * 6.108 * std::exp((17.15 * temperature - 4684.0) / (temperature - 38.45));

  const double gravity = 1.0 - 0.00266 * std::cos(2.0 * receiver.latitude) - 0.00028e-3 * height;
  const double dry = 0.0022768 * pressure / gravity;
  const double wet = 0.002277 * (1255.0 / temperature + 0.05) * vapour;

  const double s = std::sin(elevation);
  return (dry + wet) * 1.001 / std::sqrt(0.002001 + s * s);
}

}  // namespace gnss
