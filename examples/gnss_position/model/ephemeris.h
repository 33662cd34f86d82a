// Where a GPS satellite is and what its clock shows, from its broadcast message.
#ifndef GNSS_POSITION_MODEL_EPHEMERIS_H
#define GNSS_POSITION_MODEL_EPHEMERIS_H

#include "model/gps_time.h"
#include "model/vector3.h"

namespace gnss {

constexpr double kSpeedOfLight = 299792458.0;       // m/s
constexpr double kEarthRotation = 7.2921151467e-5;  // rad/s, the value of the GPS interface document
constexpr double kGravityConstant = 3.986005e14;    // m^3/s^2, likewise (not the newer WGS 84 value)

/// Clock and orbit parameters of one satellite, with the names of the GPS interface document IS-GPS-200.
/// Angles in radians, times in seconds, sqrt_a in sqrt(m).
struct Ephemeris {
  int prn = 0;
  GpsTime toc, toe;  // reference times of clock and orbit
  double af0 = 0, af1 = 0, af2 = 0, tgd = 0;
  double sqrt_a = 0, e = 0, i0 = 0, omega0 = 0, omega = 0, m0 = 0;
  double delta_n = 0, i_dot = 0, omega_dot = 0;
  double cuc = 0, cus = 0, crc = 0, crs = 0, cic = 0, cis = 0;
  int health = 0;        // 0: all signals usable
  double fit_hours = 4;  // the message describes the orbit this long, centred on toe
};

/// Position in the Earth-fixed frame *of the moment t* (IS-GPS-200, table 20-IV).
Vector3 SatellitePosition(const Ephemeris& eph, const GpsTime& t);

/// Clock error in seconds for users of the first frequency alone: af0 + af1 dt + af2 dt^2 + relativity - TGD
/// (IS-GPS-200, 20.3.3.3.3.1 and .2).
double SatelliteClock(const Ephemeris& eph, const GpsTime& t);

/// The moment at which the signal left, given the receiver's reading at arrival and the pseudorange in metres: their
/// difference is the satellite clock's reading, whatever the receiver clock's error.
GpsTime TransmissionTime(const Ephemeris& eph, const GpsTime& received, double pseudorange);

}  // namespace gnss

#endif
