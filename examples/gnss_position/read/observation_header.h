// The header of an observation file, and where in a satellite's record the wanted ranges stand.
#ifndef GNSS_POSITION_READ_OBSERVATION_HEADER_H
#define GNSS_POSITION_READ_OBSERVATION_HEADER_H

#include <string>
#include <vector>

#include "model/observations.h"
#include "read/rinex_header.h"

namespace gnss {

/// Names of the GPS observation types in the order of the columns.
struct ObservationTypes {
  std::vector<std::string> names;
  std::size_t announced = 0;      ///< how many the first line of the list promised
  std::vector<std::size_t> code;  ///< positions of the usable code ranges, best first

  /// Takes one line "# / TYPES OF OBSERV" (version 2) or "SYS / # / OBS TYPES" (version 3).
  void AddVersion2(const LineReader& in);
  void AddVersion3(const LineReader& in);
  /// Checks the list against its announced length and finds the code ranges; complains when there is none.
  void Finish(const LineReader& in, int major);

 private:
  bool listing_gps_ = false;
};

/// Takes one header line. Used for the header itself and for header lines repeated between epochs.
void ReadObservationHeaderLine(const LineReader& in, int major, Observations& out, ObservationTypes& types);

}  // namespace gnss

#endif
