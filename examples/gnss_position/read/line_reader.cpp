#include "read/line_reader.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>

namespace gnss {

bool LineReader::Next() {
  if (!std::getline(in_, line_)) return false;
  if (!line_.empty() && line_.back() == '\r') line_.pop_back();
  ++number_;
  return true;
}

std::string_view LineReader::Text(std::size_t column, std::size_t width) const {
  if (column >= line_.size()) return {};
  std::string_view field = std::string_view(line_).substr(column, width);
  while (!field.empty() && field.front() == ' ') field.remove_prefix(1);
  while (!field.empty() && field.back() == ' ') field.remove_suffix(1);
  return field;
}

std::optional<double> LineReader::OptionalReal(std::size_t column, std::size_t width, const char* what) const {
  const std::string_view field = Text(column, width);
  if (field.empty()) return std::nullopt;

  // strtod would also take "nan", "0x10" and the like: only what a fixed-column number consists of may pass.
  char buffer[40];
  bool good = field.size() < sizeof buffer && field.find_first_not_of("0123456789+-.eEdD") == std::string_view::npos;
  double value = 0.0;
  if (good) {
    for (std::size_t k = 0; k < field.size(); ++k) {
      buffer[k] = field[k] == 'D' || field[k] == 'd' ? 'E' : field[k];
    }
    buffer[field.size()] = '\0';
    char* end = nullptr;
    value = std::strtod(buffer, &end);
    good = end == buffer + field.size() && std::isfinite(value);
  }
  if (!good) Fail("'" + std::string(field) + "' is not a number (" + what + ")");
  return value;
}

double LineReader::Real(std::size_t column, std::size_t width, const char* what) const {
  const std::optional<double> value = OptionalReal(column, width, what);
  if (!value) Fail(std::string(what) + " is missing");
  return *value;
}

int LineReader::Integer(std::size_t column, std::size_t width, const char* what) const {
  const double value = Real(column, width, what);
  if (value != std::floor(value) || std::fabs(value) > 1e9) {
    Fail("'" + std::string(Text(column, width)) + "' is not a whole number (" + what + ")");
  }
  return static_cast<int>(value);
}

std::string LineReader::Place() const { return name_ + ":" + std::to_string(number_) + ": "; }

void LineReader::Fail(const std::string& reason) const { throw FileError(Place() + reason); }

}  // namespace gnss
