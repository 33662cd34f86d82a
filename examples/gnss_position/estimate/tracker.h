// Runs the filters over the fixes of all epochs.
#ifndef GNSS_POSITION_ESTIMATE_TRACKER_H
#define GNSS_POSITION_ESTIMATE_TRACKER_H

#include <array>
#include <vector>

#include "estimate/epoch_solver.h"
#include "estimate/filter_bank.h"
#include "estimate/motion_model.h"

namespace gnss {

/// The filtered state after one solved epoch.
struct TrackPoint {
  Vector3 position{};
  Vector3 velocity{};
  double clock = 0.0;         ///< metres
  Vector3 sigma{};            ///< standard deviations east, north, up that the filter claims, metres
  double disagreement = 0.0;  ///< between the positions of the three forms, metres
};

struct Track {
  std::vector<TrackPoint> points;  ///< one per solved fix, in order
  int clock_jumps = 0;
  int contradicted_ranges = 0;  ///< left out because the filter's prediction contradicts them
  int restarts = 0;             ///< the filters began anew: after a long gap, or because nothing fitted any more
  double worst_disagreement = 0.0;
  std::array<double, FilterBank::kForms> seconds{};  ///< spent in each form
  std::array<const char*, FilterBank::kForms> names{};
};

/// The measurement is the set of ranges of each fix, not its position: rows (-e, 1) at the positions and the clock,
/// seen from `origin` (position and clock error that stand for the state zero).
Measurement RangesOf(const Fix& fix, const Vector3& origin, double origin_clock);

/// A range whose innovation exceeds six of its predicted standard deviations is left out of the update. When that
/// happens to most ranges of an epoch, the fix as a whole is not used, and after ten such fixes in a row the filters
/// restart. Fixes that are not solved are passed over; the next transition is so much longer.
Track RunFilters(const std::vector<Fix>& fixes, const MotionModel& model);

}  // namespace gnss

#endif
