// The program: arguments, the road from input to results, exit status.
#ifndef GNSS_POSITION_PROGRAM_H
#define GNSS_POSITION_PROGRAM_H

#include <ostream>
#include <string>
#include <vector>

namespace gnss {

/// Exit status of the program.
enum Status : int {
  kPositionFound = 0,
  kFailed = 1,  ///< a file is unusable or cannot be written; `err` says which and where
  kBadArguments = 2,
  kNoPosition = 3  ///< the input was readable, but no epoch could be solved
};

/// Runs on the arguments after the program's name. Results and progress go to `out`, complaints to `err`.
int RunProgram(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace gnss

#endif
