#include "data/files.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace quorvel::test::data {

std::string Path(const std::string& name) { return std::string(QUORVEL_DATA_DIR) + "/" + name; }

bool Exists(const std::string& name) { return std::ifstream(Path(name)).good(); }

std::vector<std::string> Lines(const std::string& name) {
  std::ifstream file(Path(name));
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    while (!line.empty() && (line.back() == '\r' || line.back() == '\n')) line.pop_back();
    lines.push_back(line);
  }
  EXPECT_FALSE(lines.empty()) << "nothing to read in " << Path(name);
  return lines;
}

std::vector<std::string> Split(const std::string& line, char separator) {
  std::vector<std::string> fields;
  std::istringstream stream(line);
  for (std::string field; std::getline(stream, field, separator);) fields.push_back(field);
  if (!line.empty() && line.back() == separator) fields.emplace_back();
  return fields;
}

std::vector<double> Numbers(const std::string& line) {
  std::vector<double> numbers;
  std::istringstream stream(line);
  for (std::string word; stream >> word;) {
    char* end = nullptr;
    numbers.push_back(std::strtod(word.c_str(), &end));
    if (*end != '\0') return {};
  }
  return numbers;
}

double Number(const std::string& text) {
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  EXPECT_TRUE(end != text.c_str() && *end == '\0') << "no number: '" << text << "'";
  return value;
}

std::vector<std::vector<double>> NumericTail(const std::string& name) {
  const std::vector<std::string> lines = Lines(name);
  std::vector<std::vector<double>> rows;
  for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
    const std::vector<double> numbers = Numbers(*line);
    const bool blank = line->find_first_not_of(" \t") == std::string::npos;
    if (numbers.empty() && (!blank || !rows.empty())) break;
    if (!blank) rows.push_back(numbers);
  }
  std::reverse(rows.begin(), rows.end());
  return rows;
}

std::size_t Table::column(const std::string& name) const {
  const auto found = std::find(header.begin(), header.end(), name);
  if (found == header.end()) {
    ADD_FAILURE() << "no column " << name;
    std::abort();
  }
  return static_cast<std::size_t>(found - header.begin());
}

Table ReadCsv(const std::string& name) {
  Table table;
  for (const std::string& line : Lines(name)) {
    if (line.empty() || line[0] == '#') continue;
    if (table.header.empty()) {
      table.header = Split(line, ',');
    } else {
      table.rows.push_back(Split(line, ','));
      EXPECT_EQ(table.rows.back().size(), table.header.size()) << name << ": " << line;
    }
  }
  return table;
}

namespace {

// Says at the end how much of the data was there.
class Summary : public ::testing::Environment {
  void TearDown() override {
    const ::testing::UnitTest& all = *::testing::UnitTest::GetInstance();
    std::printf("data tests: %d ran, %d skipped because their data is not there (QUORVEL_DATA_DIR is %s)\n",
                all.successful_test_count() + all.failed_test_count(), all.skipped_test_count(), QUORVEL_DATA_DIR);
  }
};

const ::testing::Environment* const summary = ::testing::AddGlobalTestEnvironment(new Summary);

}  // namespace
}  // namespace quorvel::test::data
