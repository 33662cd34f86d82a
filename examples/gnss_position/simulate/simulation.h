// A simulated drive, so that the example has something to work on without any file.
//
// What is simulated, all of it fixed by one seed:
//   sky        30 satellites in six planes, inclination 55 degrees, eccentricities up to 0.012, with broadcast messages
//              every two hours. True orbits and clocks differ from the broadcast ones by a constant error per satellite
//              (1 m standard deviation in range). Satellite 7 is marked unhealthy; for satellite 12 no message exists.
//   receiver   starts on Saturday, 24 minutes before the GPS week ends, at 47.06 N 15.45 E, 400 m: stands for ten
//   minutes,
//              drives two rounds of an ellipse of 1200 m by 500 m in half an hour (6 m/s on average), with hills of 30
//              m, stands again. One epoch per second, 50 minutes, across the end of the week.
//   tunnel     35 minutes after the start, for 25 seconds: three satellites are left.
//   clock      starts at 0.45 ms, runs 60 ns/s fast with a random walk of the drift, and jumps back by 1 ms when it
//              passes 0.5 ms.
//   ranges     noise of 0.3 m + 0.3 m / sin(elevation); multipath of a first-order Gauss-Markov process per satellite
//              (0.5 m / sin(elevation), time constant 90 s); ionosphere 1.3 times the broadcast model; troposphere 1.03
//              times the standard one; one range in a hundred is wrong by 30 to 500 m. Satellites above 5 degrees.
#ifndef GNSS_POSITION_SIMULATE_SIMULATION_H
#define GNSS_POSITION_SIMULATE_SIMULATION_H

#include <cstdint>
#include <utility>
#include <vector>

#include "model/navigation_data.h"
#include "model/observations.h"

namespace gnss {

constexpr std::uint64_t kDefaultSeed = 20240817;
constexpr int kSimulatedEpochs = 3000;

struct Simulation {
  Observations observations;
  NavigationData navigation;
  std::vector<Vector3> true_positions;             ///< one per epoch
  std::vector<std::pair<std::size_t, int>> gross;  ///< epoch and satellite of every grossly wrong range
};

/// The first `epochs` seconds of the drive.
Simulation Simulate(std::uint64_t seed = kDefaultSeed, int epochs = kSimulatedEpochs);

}  // namespace gnss

#endif
