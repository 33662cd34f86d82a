#include "simulate/simulation.h"

#include <cmath>

#include "simulate/random.h"

namespace gnss {
namespace {

constexpr int kSatellites = 30;
constexpr int kUnhealthy = 7;
constexpr int kWithoutMessage = 12;
constexpr int kTunnelFrom = 2100, kTunnelTo = 2125;
const GpsTime kStart{2327, kSecondsPerWeek - 24 * 60};
const Geodetic kHome{47.06 * kDegree, 15.45 * kDegree, 400.0};

// ---------------------------------------------------------------------------------------------------------------------

// Broadcast message of satellite `prn` with reference time toe, so that successive messages describe one orbit: the
// anomaly advances, and the node is given relative to the frame at the start of the week of toe.
Ephemeris Message(int prn, const GpsTime& toe, const Ephemeris& orbit) {
  Ephemeris e = orbit;
  e.prn = prn;
  e.toe = e.toc = toe;
  const double a = e.sqrt_a * e.sqrt_a;
  const double elapsed = toe - kStart;
  e.m0 = std::remainder(orbit.m0 + (std::sqrt(kGravityConstant / (a * a * a)) + e.delta_n) * elapsed, 2.0 * kPi);
  e.omega0 =
      std::remainder(orbit.omega0 + (e.omega_dot - kEarthRotation) * elapsed + kEarthRotation * toe.seconds, 2.0 * kPi);
  e.af0 = orbit.af0 + orbit.af1 * elapsed;
  return e;
}

// The orbit at the start of the simulation.
Ephemeris Orbit(int prn, Random& random) {
  const int plane = (prn - 1) / 5;
  const int slot = (prn - 1) % 5;
  Ephemeris e;
  e.sqrt_a = 5153.65 + 0.05 * random.Normal();
  e.e = 0.012 * random.Uniform();
  e.i0 = (55.0 + random.Normal()) * kDegree;
  e.omega0 = plane * 60.0 * kDegree;
  e.omega = 2.0 * kPi * random.Uniform() - kPi;
  e.m0 = std::remainder((slot * 72.0 + plane * 15.0 + 8.0 * random.Normal()) * kDegree - e.omega, 2.0 * kPi);
  e.omega_dot = -8e-9;
  e.delta_n = 4.5e-9;
  e.crs = 60.0 * random.Normal();
  e.crc = 250.0 + 50.0 * random.Normal();
  e.cus = 8e-6 * random.Uniform();
  e.cuc = 3e-6 * random.Normal();
  e.cis = 1e-7 * random.Normal();
  e.cic = 1e-7 * random.Normal();
  e.af0 = 2e-4 * random.Normal();
  e.af1 = 3e-12 * random.Normal();
  e.tgd = 5e-9 * random.Normal();
  return e;
}

// Reference times: the end of the week and two hours before and after it.
GpsTime ReferenceTime(int k) { return GpsTime{kStart.week + 1, 0.0} + 7200.0 * (k - 1); }

void MakeSky(Random& random, NavigationData& sky) {
  sky.ionosphere.alpha = {1.1e-8, 1.5e-8, -6.0e-8, -6.0e-8};
  sky.ionosphere.beta = {8.8e4, 1.6e4, -2.0e5, -1.3e5};
  sky.ionosphere.known = true;
  for (int prn = 1; prn <= kSatellites; ++prn) {
    const Ephemeris orbit = Orbit(prn, random);
    for (int k = 0; k < 3; ++k) sky.Add(Message(prn, ReferenceTime(k), orbit));
  }
}

// What the receiver gets of it: one satellite's messages are missing, another's say that it is unhealthy.
NavigationData Published(const NavigationData& sky) {
  NavigationData out;
  out.ionosphere = sky.ionosphere;
  for (int prn = 1; prn <= kSatellites; ++prn) {
    for (int k = 0; k < 3 && prn != kWithoutMessage; ++k) {
      Usability usability;
      Ephemeris message = *sky.Find(prn, ReferenceTime(k), usability);
      message.health = prn == kUnhealthy ? 63 : 0;
      out.Add(message);
    }
  }
  return out;
}

// ---------------------------------------------------------------------------------------------------------------------

Vector3 TruePosition(int second) {
  constexpr int kDepart = 600;
  constexpr int kArrive = 2400;
  Geodetic place = kHome;
  if (second > kDepart && second < kArrive) {
    const double s = static_cast<double>(second - kDepart) / (kArrive - kDepart);
    // Two rounds, with speed growing from zero and falling to zero.
    const double angle = 4.0 * kPi * (s - std::sin(2.0 * kPi * s) / (2.0 * kPi));
    const double east = 600.0 * std::sin(angle);
    const double north = 250.0 * (1.0 - std::cos(angle));
    place.latitude += north / 6.37e6;
    place.longitude += east / (6.39e6 * std::cos(kHome.latitude));
    place.height += 15.0 * (1.0 - std::cos(3.0 * angle));
  }
  return FromGeodetic(place);
}

// What the receiver knows nothing of: errors per satellite and the clock.
struct Hidden {
  std::vector<double> orbit_error, multipath;
  double clock = 0.45e-3;  // seconds
  double drift = 6e-8;     // seconds per second

  explicit Hidden(Random& random) : orbit_error(kSatellites + 1), multipath(kSatellites + 1) {
    for (double& error : orbit_error) error = random.Normal();
    for (double& error : multipath) error = random.Normal();
  }

  void Advance(Random& random) {
    constexpr double kCorrelation = 0.98895;  // exp(-1 s / 90 s)
    for (double& error : multipath) {
      error = kCorrelation * error + std::sqrt(1.0 - kCorrelation * kCorrelation) * random.Normal();
    }
    drift += 2e-10 * random.Normal();
    clock += drift;
    if (clock > 0.5e-3) clock -= 1e-3;
  }
};

Vector3 TurnedBy(double angle, const Vector3& v) {
  return {std::cos(angle) * v[0] + std::sin(angle) * v[1], -std::sin(angle) * v[0] + std::cos(angle) * v[1], v[2]};
}

// The pseudorange without noise, and the elevation; false when the satellite is below the horizon.
bool IdealRange(const NavigationData& sky, const Ephemeris& e, const GpsTime& received, const Vector3& receiver,
                double clock, double& range, double& elevation) {
  double travel = 0.075;
  Vector3 line{};
  for (int i = 0; i < 5; ++i) {
    line = TurnedBy(kEarthRotation * travel, SatellitePosition(e, received + -travel)) - receiver;
    travel = Length(line) / kSpeedOfLight;
  }
  const Geodetic place = ToGeodetic(receiver);
  const Vector3 enu = EastNorthUp(place, (1.0 / Length(line)) * line);
  elevation = std::asin(enu[2]);
  if (elevation < 5.0 * kDegree) return false;
  const double delay = IonosphereDelay(sky.ionosphere, place, elevation, std::atan2(enu[0], enu[1]), received);
  range = Length(line) + kSpeedOfLight * (clock - SatelliteClock(e, received + -travel)) + 1.3 * delay +
          1.03 * TroposphereDelay(place, elevation);
  return true;
}

}  // namespace

Simulation Simulate(std::uint64_t seed, int epochs) {
  Random random(seed);
  Simulation out;
  NavigationData sky;
  MakeSky(random, sky);
  Hidden hidden(random);
  out.navigation = Published(sky);
  out.observations.marker = "simulated drive";

  for (int second = 0; second < epochs; ++second) {
    const Vector3 receiver = TruePosition(second);
    const GpsTime shown = kStart + second;  // the receiver's own reading
    const GpsTime received = shown + -hidden.clock;
    const bool tunnel = second >= kTunnelFrom && second < kTunnelTo;
    ObservationEpoch epoch{shown, {}};
    for (int prn = 1; prn <= kSatellites; ++prn) {
      if (tunnel && epoch.ranges.size() == 3) break;
      Usability usability;
      const Ephemeris* ephemeris = sky.Find(prn, received, usability);
      double range = 0.0;
      double elevation = 0.0;
      if (!ephemeris || !IdealRange(sky, *ephemeris, received, receiver, hidden.clock, range, elevation)) continue;
      const double slant = 1.0 / std::sin(elevation);
      const auto at = static_cast<std::size_t>(prn);
      range += hidden.orbit_error[at] + 0.5 * slant * hidden.multipath[at] + (0.3 + 0.3 * slant) * random.Normal();
      if (random.Uniform() < 0.01) {
        range += 30.0 + 470.0 * random.Uniform();
        out.gross.emplace_back(out.observations.epochs.size(), prn);
      }
      epoch.ranges.push_back({prn, range});
    }
    out.true_positions.push_back(receiver);
    out.observations.epochs.push_back(std::move(epoch));
    hidden.Advance(random);
  }
  return out;
}

}  // namespace gnss
