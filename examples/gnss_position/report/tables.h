// The results as files for other programs.
#ifndef GNSS_POSITION_REPORT_TABLES_H
#define GNSS_POSITION_REPORT_TABLES_H

#include <string>
#include <vector>

#include "report/errors.h"

namespace gnss {

// Both throw std::runtime_error with the path when the file cannot be written.

/// One line per epoch with a heading; epochs without a fix have their reason and empty fields.
void WriteCsv(const std::string& path, const Processed& processed, const std::vector<ErrorRow>& errors);

/// An m-file (Octave): the matrix `results`, one row per solved epoch, and a vector `columns` of its headings as
/// comments; written by PrintMFile.
void WriteMFile(const std::string& path, const Processed& processed, const std::vector<ErrorRow>& errors);

}  // namespace gnss

#endif
