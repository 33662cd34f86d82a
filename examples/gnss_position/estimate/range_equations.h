// The range equations of an epoch, linearised at a presumed position.
//
//   range_i = |R3(w tau_i) s_i - r| + c + ionosphere + troposphere + noise
//
// r receiver position, c receiver clock error in metres, s_i transmitter, tau_i travel time, w the Earth's rotation:
// while the signal travels the Earth turns, and the frame with it.
#ifndef GNSS_POSITION_ESTIMATE_RANGE_EQUATIONS_H
#define GNSS_POSITION_ESTIMATE_RANGE_EQUATIONS_H

#include <vector>

#include "estimate/sights.h"
#include "quorvel/quorvel.h"

namespace gnss {

struct RangeEquations {
  RegularMatrix design;           ///< m x 4: row i is (-e_i, 1), e_i the unit vector to the satellite
  RegularMatrix misclosure;       ///< m x 1: observed minus computed range at the presumed position, metres
  std::vector<double> elevation;  ///< radians
  std::vector<double> sigma;      ///< standard deviation expected of each range, metres

  Matrix::size_type rows() const { return misclosure.nrows(); }
};

/// As long as `position` is no place near the ground (a cold start comes from the centre of the Earth), atmosphere and
/// elevation are left out.
RangeEquations Linearise(const std::vector<Sight>& sights, const GpsTime& time, const Ionosphere& ionosphere,
                         const Vector3& position, double clock);

}  // namespace gnss

#endif
