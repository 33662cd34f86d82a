// Command line of the program.
#ifndef GNSS_POSITION_OPTIONS_H
#define GNSS_POSITION_OPTIONS_H

#include <optional>
#include <string>
#include <vector>

#include "estimate/process.h"

namespace gnss {

struct Options {
  bool help = false;
  bool quiet = false;
  std::string observations, navigation;  ///< both empty: simulate
  std::string directory = "gnss_position_results";
  std::optional<Vector3> truth;
  ProcessSettings settings;
};

extern const char kUsage[];

/// Throws std::invalid_argument with a sentence for the user.
Options ParseOptions(const std::vector<std::string>& arguments);

}  // namespace gnss

#endif
