#include "options.h"

#include <cmath>
#include <cstdlib>
#include <stdexcept>

namespace gnss {

const char kUsage[] =
    "usage: gnss_position [options]            works on a simulated drive\n"
    "       gnss_position [options] OBS NAV    works on RINEX 2 or 3 files: GPS observations and\n"
    "                                          GPS broadcast navigation messages\n"
    "options:\n"
    "  --out DIRECTORY     where to write results.csv, results.m, scatter.svg, errors.svg\n"
    "                      (default: gnss_position_results)\n"
    "  --truth X Y Z       known position, Earth-fixed, metres (default: the one in the header of OBS)\n"
    "  --motion WORD       standing, walking or driving (default: judged from the fixes)\n"
    "  --mask DEGREES      satellites below this elevation are not used (default: 7)\n"
    "  --quiet             no progress, only the summary\n"
    "  --help              this text\n";

namespace {

double Number(const std::string& text, const std::string& option) {
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || !std::isfinite(value)) {
    throw std::invalid_argument(option + ": '" + text + "' is not a number");
  }
  return value;
}

Motion MotionNamed(const std::string& word) {
  if (word == "standing") return Motion::standing;
  if (word == "walking") return Motion::walking;
  if (word == "driving") return Motion::driving;
  throw std::invalid_argument("--motion: '" + word + "' is none of standing, walking, driving");
}

}  // namespace

Options ParseOptions(const std::vector<std::string>& arguments) {
  Options options;
  std::vector<std::string> files;
  std::size_t at = 0;
  const auto next = [&](const std::string& option) -> const std::string& {
    if (at == arguments.size()) throw std::invalid_argument(option + " needs a value");
    return arguments[at++];
  };
  while (at < arguments.size()) {
    const std::string& word = arguments[at++];
    if (word == "--help" || word == "-h") {
      options.help = true;
    } else if (word == "--quiet") {
      options.quiet = true;
    } else if (word == "--out") {
      options.directory = next(word);
    } else if (word == "--motion") {
      options.settings.motion = MotionNamed(next(word));
    } else if (word == "--mask") {
      const double degrees = Number(next(word), word);
      if (degrees < 0.0 || degrees >= 90.0) throw std::invalid_argument("--mask: between 0 and 90 degrees");
      options.settings.solver.elevation_mask = degrees * kDegree;
    } else if (word == "--truth") {
      Vector3 truth;
      for (double& coordinate : truth) coordinate = Number(next(word), word);
      if (!(Length(truth) > 6.3e6)) throw std::invalid_argument("--truth: not a position on the ground, in metres");
      options.truth = truth;
    } else if (word.size() > 1 && word[0] == '-') {
      throw std::invalid_argument("unknown option '" + word + "'");
    } else {
      files.push_back(word);
    }
  }
  if (!files.empty() && files.size() != 2) throw std::invalid_argument("two files are needed: OBS and NAV");
  if (files.size() == 2) {
    options.observations = files[0];
    options.navigation = files[1];
  }
  return options;
}

}  // namespace gnss
