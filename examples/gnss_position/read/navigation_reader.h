// Reads a RINEX 2 or 3 navigation file: the GPS messages and the coefficients of the ionosphere model.
#ifndef GNSS_POSITION_READ_NAVIGATION_READER_H
#define GNSS_POSITION_READ_NAVIGATION_READER_H

#include <istream>
#include <string>

#include "model/navigation_data.h"

namespace gnss {

/// `name` appears in complaints. Messages of other systems are passed over. A message with impossible contents, or one
/// cut off by the end of the file, is left out and named in the remarks; a line that cannot be read throws FileError.
NavigationData ReadNavigation(std::istream& in, const std::string& name);

/// The same from a path; a file that cannot be opened throws FileError.
NavigationData ReadNavigationFile(const std::string& path);

}  // namespace gnss

#endif
