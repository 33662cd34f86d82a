// The two pictures of a run.
#ifndef GNSS_POSITION_REPORT_PICTURES_H
#define GNSS_POSITION_REPORT_PICTURES_H

#include <string>
#include <vector>

#include "report/errors.h"

namespace gnss {

/// Horizontal errors, north over east: every fix a dot, the filtered positions on top, a circle that holds 95 % of the
/// latter.
void DrawScatter(const std::string& path, const std::string& title, const Reference& reference,
                 const std::vector<ErrorRow>& errors);

/// Errors east, north and up over time in three panels.
void DrawErrors(const std::string& path, const std::string& title, const Reference& reference,
                const Processed& processed, const std::vector<ErrorRow>& errors);

}  // namespace gnss

#endif
