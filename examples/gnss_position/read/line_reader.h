// Lines of a fixed-column text file, with the place for every complaint.
#ifndef GNSS_POSITION_READ_LINE_READER_H
#define GNSS_POSITION_READ_LINE_READER_H

#include <istream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace gnss {

/// A file that cannot be used; what() is "file:line: reason".
class FileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads line after line and takes fields out of the present one by column (counted from 0). A field beyond the end
/// of the line is blank: writers cut trailing blanks off.
class LineReader {
 public:
  LineReader(std::istream& in, std::string name) : in_(in), name_(std::move(name)) {}

  /// Goes to the next line; false at the end of the file. The end-of-line mark, LF or CR LF, is not part of it.
  bool Next();

  const std::string& line() const { return line_; }
  int number() const { return number_; }

  /// The field without blanks at either end.
  std::string_view Text(std::size_t column, std::size_t width) const;
  bool Blank(std::size_t column, std::size_t width) const { return Text(column, width).empty(); }

  /// A number, or nothing when the field is blank. D and d are accepted for the exponent. Anything else in the field
  /// is an error that names `what`.
  std::optional<double> OptionalReal(std::size_t column, std::size_t width, const char* what) const;
  double Real(std::size_t column, std::size_t width, const char* what) const;
  int Integer(std::size_t column, std::size_t width, const char* what) const;

  /// "name:line: "
  std::string Place() const;
  [[noreturn]] void Fail(const std::string& reason) const;

 private:
  std::istream& in_;
  std::string name_;
  std::string line_;
  int number_ = 0;
};

}  // namespace gnss

#endif
