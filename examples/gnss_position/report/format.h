// printf into a string.
#ifndef GNSS_POSITION_REPORT_FORMAT_H
#define GNSS_POSITION_REPORT_FORMAT_H

#include <string>

namespace gnss {

std::string Formatted(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace gnss

#endif
