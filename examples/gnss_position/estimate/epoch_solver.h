// Position and clock from the ranges of one epoch: a robust start that finds gross errors, then least squares.
#ifndef GNSS_POSITION_ESTIMATE_EPOCH_SOLVER_H
#define GNSS_POSITION_ESTIMATE_EPOCH_SOLVER_H

#include <vector>

#include "estimate/range_equations.h"

namespace gnss {

struct SolverSettings {
  double elevation_mask = 7.0 * kDegree;  ///< satellites below take no part in the least squares
  bool screen = true;                     ///< look for gross errors; false: plain least squares
  double gross_error = 6.0;               ///< a residual is gross beyond that many standard deviations
};

/// Dilution of precision: the factor from the error of a range to that of the result (unweighted).
struct Dilution {
  double east = 0, north = 0, vertical = 0, time = 0;
  double horizontal() const;
  double position() const;
  double geometric() const;
};

enum class Outcome {
  solved,
  too_few,      ///< fewer than four satellites, or four in a singular constellation
  inconsistent  ///< the ranges contradict each other and too few are left to tell which are wrong
};

struct Fix {
  GpsTime time;
  Outcome outcome = Outcome::too_few;
  Vector3 position{};
  double clock = 0.0;  ///< receiver clock error, metres
  Dilution dilution;
  std::vector<int> used;     ///< satellites in the least squares, in the order of the equations
  std::vector<int> gross;    ///< satellites left out because their range is grossly wrong
  std::vector<int> low;      ///< satellites below the elevation mask
  RangeEquations equations;  ///< of the used satellites, at the solution
};

/// `start` is a presumed position, the centre of the Earth when nothing is known.
Fix SolveEpoch(const std::vector<Sight>& sights, const GpsTime& time, const Ionosphere& ionosphere,
               const Vector3& start, const SolverSettings& settings);

/// Dilutions of precision of a design matrix (m x 4, as in RangeEquations) at a place.
Dilution DilutionOf(const RegularMatrix& design, const Geodetic& place);

}  // namespace gnss

#endif
