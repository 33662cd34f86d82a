// What a person reads at the end of a run.
#ifndef GNSS_POSITION_REPORT_SUMMARY_H
#define GNSS_POSITION_REPORT_SUMMARY_H

#include <ostream>
#include <vector>

#include "report/errors.h"

namespace gnss {

void PrintSummary(std::ostream& out, const Observations& observations, const Processed& processed,
                  const Reference& reference, const std::vector<ErrorRow>& errors);

}  // namespace gnss

#endif
