// Reads a RINEX 2 or 3 observation file: the GPS code ranges on the first frequency.
#ifndef GNSS_POSITION_READ_OBSERVATION_READER_H
#define GNSS_POSITION_READ_OBSERVATION_READER_H

#include <functional>
#include <istream>
#include <string>

#include "model/observations.h"

namespace gnss {

/// Called every thousand epochs with the number read so far; may be empty.
using ReadProgress = std::function<void(std::size_t epochs)>;

/// `name` appears in complaints. C/A code is preferred; a satellite without it is taken by its P(Y) code or by another
/// code of the first frequency. Satellites of other systems are passed over, epochs whose flag is not 0 are counted.
/// An epoch cut off by the end of the file, or not later than the one before, is left out and named in the remarks; a
/// line that cannot be read throws FileError.
Observations ReadObservations(std::istream& in, const std::string& name, const ReadProgress& progress = {});

/// The same from a path; a file that cannot be opened throws FileError.
Observations ReadObservationFile(const std::string& path, const ReadProgress& progress = {});

}  // namespace gnss

#endif
