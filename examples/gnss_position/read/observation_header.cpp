#include "read/observation_header.h"

#include <algorithm>

namespace gnss {
namespace {

constexpr int kMostTypes = 200;

std::size_t Announced(const LineReader& in, std::size_t column, std::size_t width) {
  const int count = in.Integer(column, width, "number of observation types");
  if (count < 1 || count > kMostTypes) in.Fail("impossible number of observation types: " + std::to_string(count));
  return static_cast<std::size_t>(count);
}

}  // namespace

void ObservationTypes::AddVersion2(const LineReader& in) {
  if (!in.Blank(0, 6)) {
    names.clear();
    announced = Announced(in, 0, 6);
  }
  for (std::size_t k = 0; k < 9 && names.size() < announced; ++k) {
    const std::string_view name = in.Text(10 + 6 * k, 2);
    if (name.empty()) in.Fail("fewer observation types than announced");
    names.emplace_back(name);
  }
}

void ObservationTypes::AddVersion3(const LineReader& in) {
  if (!in.Blank(0, 1)) {
    listing_gps_ = in.line()[0] == 'G';
    if (listing_gps_) {
      names.clear();
      announced = Announced(in, 3, 3);
    }
  }
  if (!listing_gps_) return;
  for (std::size_t k = 0; k < 13 && names.size() < announced; ++k) {
    const std::string_view name = in.Text(7 + 4 * k, 3);
    if (name.empty()) in.Fail("fewer observation types than announced");
    names.emplace_back(name);
  }
}

void ObservationTypes::Finish(const LineReader& in, int major) {
  if (names.size() != announced) {
    in.Fail("the header announces " + std::to_string(announced) + " GPS observation types and lists " +
            std::to_string(names.size()));
  }
  code.clear();
  const auto take = [&](const char* wanted) {
    const auto found = std::find(names.begin(), names.end(), wanted);
    if (found != names.end()) code.push_back(static_cast<std::size_t>(found - names.begin()));
  };
  if (major == 2) {
    for (const char* wanted : {"C1", "P1"}) take(wanted);
  } else {
    for (const char* wanted : {"C1C", "C1P", "C1W", "C1X", "C1L", "C1S", "C1Y", "C1M"}) take(wanted);
  }
  if (code.empty()) in.Fail("the file lists no GPS code range on the first frequency");
}

void ReadObservationHeaderLine(const LineReader& in, int major, Observations& out, ObservationTypes& types) {
  const std::string_view label = HeaderLabel(in);
  if (major == 2 && label == "# / TYPES OF OBSERV") {
    types.AddVersion2(in);
  } else if (major == 3 && label == "SYS / # / OBS TYPES") {
    types.AddVersion3(in);
  } else if (label == "MARKER NAME") {
    out.marker = std::string(in.Text(0, 60));
  } else if (label == "APPROX POSITION XYZ") {
    const Vector3 position = {in.OptionalReal(0, 14, "position").value_or(0.0),
                              in.OptionalReal(14, 14, "position").value_or(0.0),
                              in.OptionalReal(28, 14, "position").value_or(0.0)};
    // Zeros and other points far from the ground stand for "unknown".
    if (Length(position) > 6.3e6 && Length(position) < 6.5e6) out.known_position = position;
  } else if (label == "TIME OF FIRST OBS") {
    const std::string_view system = in.Text(48, 3);
    if (!system.empty() && system != "GPS" && system != "GAL" && system != "QZS") {
      in.Fail("the epochs are in the time system '" + std::string(system) + "', only GPS time is supported");
    }
  }
}

}  // namespace gnss
