// Builds RINEX files in memory, with every field in its column.
#ifndef QUORVEL_TESTS_GNSS_RINEX_TEXT_H
#define QUORVEL_TESTS_GNSS_RINEX_TEXT_H

#include <cstdio>
#include <sstream>
#include <string>

#include "read/line_reader.h"
#include "read/navigation_reader.h"
#include "read/observation_reader.h"

namespace gnss::test {

inline std::string Padded(std::string text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

inline std::string HeaderLine(const std::string& contents, const std::string& label) {
  return Padded(contents, 60) + label + "\n";
}

inline std::string FirstLine(const std::string& version, const std::string& type, const std::string& system = "G") {
  return HeaderLine(Padded(Padded("     " + version, 20) + type, 40) + system, "RINEX VERSION / TYPE");
}

inline std::string End() { return HeaderLine("", "END OF HEADER"); }

inline std::string Value(double metres) {
  char text[40];
  std::snprintf(text, sizeof text, "%14.3f  ", metres);
  return text;
}

inline Observations ParseObservations(const std::string& text) {
  std::istringstream in(text);
  return ReadObservations(in, "test.obs");
}

inline NavigationData ParseNavigation(const std::string& text) {
  std::istringstream in(text);
  return ReadNavigation(in, "test.nav");
}

// The complaint that reading ends with; "" when there is none.
template <typename Parse>
std::string Complaint(Parse parse, const std::string& text) {
  try {
    (void)parse(text);
  } catch (const FileError& error) {
    return error.what();
  }
  return "";
}

}  // namespace gnss::test

#endif
