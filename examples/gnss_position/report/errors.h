// Errors of the results against a known position, east, north, up, and their statistics.
#ifndef GNSS_POSITION_REPORT_ERRORS_H
#define GNSS_POSITION_REPORT_ERRORS_H

#include <optional>
#include <string>
#include <vector>

#include "estimate/process.h"

namespace gnss {

/// What the results are compared with: one position for all epochs, or one per epoch.
struct Reference {
  std::vector<Vector3> positions;
  std::string origin;  ///< "the position in the file's header", ...
  bool known = true;   ///< false: only the median of the fixes, so that the errors are deviations

  const Vector3& At(std::size_t epoch) const { return positions.size() == 1 ? positions[0] : positions[epoch]; }
};

/// One row per solved epoch.
struct ErrorRow {
  std::size_t epoch = 0;  ///< index into the epochs
  Vector3 fix{};          ///< east, north, up error of the least squares
  Vector3 filtered{};     ///< of the filter
};

std::vector<ErrorRow> ErrorsAgainst(const Reference& reference, const Processed& processed);

/// Value below which the fraction p of the magnitudes lies (the smallest element with that property).
double Quantile(std::vector<double> values, double p);

/// Median and 95 % of the magnitudes of east, north, up and of the length of all three.
struct ErrorSummary {
  std::array<double, 4> median{}, most{};
  Vector3 mean{};  ///< signed
};

enum class Solution { fix, filtered };
ErrorSummary Summarise(const std::vector<ErrorRow>& rows, Solution solution);

}  // namespace gnss

#endif
