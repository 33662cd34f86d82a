#include "report/errors.h"

#include <algorithm>
#include <cmath>

namespace gnss {

std::vector<ErrorRow> ErrorsAgainst(const Reference& reference, const Processed& processed) {
  std::vector<ErrorRow> rows;
  std::size_t point = 0;
  for (std::size_t k = 0; k < processed.fixes.size(); ++k) {
    const Fix& fix = processed.fixes[k];
    if (fix.outcome != Outcome::solved) continue;
    const Vector3& truth = reference.At(k);
    const Geodetic place = ToGeodetic(truth);
    rows.push_back({k, EastNorthUp(place, fix.position - truth),
                    EastNorthUp(place, processed.track.points[point].position - truth)});
    ++point;
  }
  return rows;
}

double Quantile(std::vector<double> values, double p) {
  if (values.empty()) return std::nan("");
  const double rank = std::ceil(p * static_cast<double>(values.size()));
  const auto at = static_cast<std::ptrdiff_t>(std::max(rank, 1.0)) - 1;
  std::nth_element(values.begin(), values.begin() + at, values.end());
  return values[static_cast<std::size_t>(at)];
}

ErrorSummary Summarise(const std::vector<ErrorRow>& rows, Solution solution) {
  ErrorSummary out;
  std::array<std::vector<double>, 4> magnitudes;
  for (const ErrorRow& row : rows) {
    const Vector3& error = solution == Solution::fix ? row.fix : row.filtered;
    for (std::size_t k = 0; k < 3; ++k) {
      magnitudes[k].push_back(std::fabs(error[k]));
      out.mean[k] += error[k] / static_cast<double>(rows.size());
    }
    magnitudes[3].push_back(Length(error));
  }
  for (std::size_t k = 0; k < 4; ++k) {
    out.median[k] = Quantile(magnitudes[k], 0.5);
    out.most[k] = Quantile(magnitudes[k], 0.95);
  }
  return out;
}

}  // namespace gnss
