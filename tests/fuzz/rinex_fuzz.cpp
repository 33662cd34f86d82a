// Any bytes as an observation and a navigation file: the readers must end with data or with FileError, and whatever
// they let pass must go through the whole estimation.
//
// The input is two texts with a line "---" between them: observations, then navigation messages.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "estimate/process.h"
#include "read/line_reader.h"
#include "read/navigation_reader.h"
#include "read/observation_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::size_t middle = text.find("\n---\n");
  const std::string first = text.substr(0, middle == std::string::npos ? size : middle + 1);
  const std::string second = middle == std::string::npos ? text : text.substr(middle + 5);

  gnss::Observations observations;
  gnss::NavigationData navigation;
  try {
    std::istringstream in(first);
    observations = gnss::ReadObservations(in, "fuzz");
  } catch (const gnss::FileError&) {
  }
  try {
    std::istringstream in(second);
    navigation = gnss::ReadNavigation(in, "fuzz");
  } catch (const gnss::FileError&) {
  }
  if (observations.epochs.size() > 8) observations.epochs.resize(8);
  for (gnss::ObservationEpoch& epoch : observations.epochs) {
    if (epoch.ranges.size() > 16) epoch.ranges.resize(16);
  }
  const gnss::Processed processed = gnss::Process(observations, navigation, gnss::ProcessSettings());
  for (const gnss::TrackPoint& point : processed.track.points) {
    // Solved epochs give numbers.
    if (!(gnss::Length(point.position) < 1e12)) std::abort();
  }
  return 0;
}
