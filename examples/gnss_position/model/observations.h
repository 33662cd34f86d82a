// Code ranges of one receiver, epoch by epoch, whether read from a file or simulated.
#ifndef GNSS_POSITION_MODEL_OBSERVATIONS_H
#define GNSS_POSITION_MODEL_OBSERVATIONS_H

#include <optional>
#include <string>
#include <vector>

#include "model/gps_time.h"
#include "model/vector3.h"

namespace gnss {

struct Pseudorange {
  int prn = 0;
  double metres = 0.0;
};

struct ObservationEpoch {
  GpsTime time;  ///< as the receiver's clock showed it
  std::vector<Pseudorange> ranges;
};

struct Observations {
  std::string marker;
  std::optional<Vector3> known_position;  ///< of the file's header: surveyed, or just approximate
  std::vector<ObservationEpoch> epochs;   ///< in strictly increasing time

  // What did not become an epoch or a range, counted.
  int flagged_epochs = 0;            ///< epoch flag not 0: power failure, or an event instead of observations
  int blank_ranges = 0;              ///< GPS satellite listed without a code range on the first frequency
  std::vector<std::string> remarks;  ///< "file:line: what was wrong with an epoch that was left out"
};

}  // namespace gnss

#endif
