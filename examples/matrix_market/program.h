// The program matrix_market without its main(), so that tests can run it.
#ifndef MATRIX_MARKET_PROGRAM_H
#define MATRIX_MARKET_PROGRAM_H

#include <iosfwd>
#include <string>
#include <vector>

namespace market {

// The exit status: 0 when every file was read and reported, 1 when one was not, 2 when the arguments make no sense.
int RunProgram(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace market

#endif
