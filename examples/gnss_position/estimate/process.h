// The whole estimation: from observations and broadcast messages to fixes and a filtered track.
#ifndef GNSS_POSITION_ESTIMATE_PROCESS_H
#define GNSS_POSITION_ESTIMATE_PROCESS_H

#include <functional>
#include <optional>
#include <vector>

#include "estimate/epoch_solver.h"
#include "estimate/tracker.h"

namespace gnss {

enum class Motion { unknown, standing, walking, driving };

struct ProcessSettings {
  SolverSettings solver;
  Motion motion = Motion::unknown;  ///< unknown: judged from the fixes
};

struct EpochCounts {
  int solved = 0, too_few = 0, inconsistent = 0;
  int gross_ranges = 0;
  UnusableSatellites unusable;
};

struct Processed {
  std::vector<Fix> fixes;  ///< one per epoch
  EpochCounts counts;
  Motion motion = Motion::standing;  ///< the one that the filters assumed
  Track track;                       ///< one point per solved fix
  double fix_seconds = 0.0;          ///< time for all fixes
};

/// Called every thousand epochs with the number done; may be empty.
using ProcessProgress = std::function<void(std::size_t done, std::size_t all)>;

/// The fix of every epoch; each starts from the last solved one, the first from the centre of the Earth.
std::vector<Fix> SolveAll(const Observations& observations, const NavigationData& navigation,
                          const SolverSettings& settings, EpochCounts& counts, const ProcessProgress& progress = {});

/// Standing when 99 % of the fixes lie within 30 m of their median, else driving: to take a standing receiver for a
/// driving one only costs some smoothing.
Motion JudgeMotion(const std::vector<Fix>& fixes);

/// Median of each coordinate over the solved fixes; nothing when there are none.
std::optional<Vector3> MedianPosition(const std::vector<Fix>& fixes);

Processed Process(const Observations& observations, const NavigationData& navigation, const ProcessSettings& settings,
                  const ProcessProgress& progress = {});

}  // namespace gnss

#endif
