// Reading the measured and certified data sets.

#ifndef QUORVEL_TESTS_DATA_FILES_H
#define QUORVEL_TESTS_DATA_FILES_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quorvel::test::data {

// Path of a file of the data directory.
std::string Path(const std::string& name);

bool Exists(const std::string& name);

// Skips the test, saying so, when a file is not there.
#define NEEDS_DATA(name) \
  if (!::quorvel::test::data::Exists(name)) GTEST_SKIP() << "no file " << ::quorvel::test::data::Path(name)

// All lines, without their ends.
std::vector<std::string> Lines(const std::string& name);

// The fields of a line, split at a separator; quotes are not special.
std::vector<std::string> Split(const std::string& line, char separator);

// The numbers of a line that holds nothing else; empty when it does not.
std::vector<double> Numbers(const std::string& line);

// The exact decimal as the nearest double; fails the test when the text is no number.
double Number(const std::string& text);

// The last lines of a file that hold numbers only, one row each.
std::vector<std::vector<double>> NumericTail(const std::string& name);

// A table with one header line: fields by row and column.
struct Table {
  std::vector<std::string> header;
  std::vector<std::vector<std::string>> rows;
  std::size_t column(const std::string& name) const;
  const std::string& at(std::size_t row, const std::string& column_name) const { return rows[row][column(column_name)]; }
};
Table ReadCsv(const std::string& name);

}  // namespace quorvel::test::data

#endif
