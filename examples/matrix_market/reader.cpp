#include "reader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <istream>
#include <sstream>
#include <vector>

namespace market {
namespace {

constexpr unsigned kMostRows = 20000000;  // beyond that the lists of rows and columns alone fill a small machine

struct Entry {
  unsigned row, col;
  double value;
};

// Lines that hold something, with their numbers.
class Lines {
 public:
  Lines(std::istream& in, const std::string& name) : in_(in), name_(name) {}

  // The next line as it stands; false at the end.
  bool Raw(std::string& line) {
    ++number_;
    if (!std::getline(in_, line)) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return true;
  }

  // The words of the next line that is neither blank nor a comment; false at the end.
  bool Next(std::vector<std::string>& words) {
    std::string line;
    while (Raw(line)) {
      if (!line.empty() && line[0] == '%') continue;
      words.clear();
      std::istringstream stream(line);
      for (std::string word; stream >> word;) words.push_back(word);
      if (!words.empty()) return true;
    }
    return false;
  }

  [[noreturn]] void Fail(const std::string& message) const {
    throw FileError(name_ + ':' + std::to_string(number_) + ": " + message);
  }

 private:
  std::istream& in_;
  const std::string& name_;
  std::size_t number_ = 0;
};

std::size_t Count(const Lines& lines, const std::string& word, const char* what, std::size_t most) {
  std::size_t value = 0;
  const char* const end = word.data() + word.size();
  const auto read = std::from_chars(word.data(), end, value);
  if (read.ec == std::errc::invalid_argument || read.ptr != end) {
    lines.Fail(std::string(what) + " must be a whole number, not '" + word + "'");
  }
  if (read.ec != std::errc() || value > most) lines.Fail(std::string(what) + ' ' + word + " is too large");
  return value;
}

// An index that the file counts from 1, counted from 0.
unsigned Index(const Lines& lines, const std::string& word, const char* what, unsigned extent) {
  const std::size_t index = Count(lines, word, what, extent);
  if (index == 0) lines.Fail(std::string(what) + " 0: rows and columns are counted from 1");
  return static_cast<unsigned>(index - 1);
}

double Value(const Lines& lines, const std::string& word, bool integer) {
  double value = 0.0;
  const char* const end = word.data() + word.size();
  const bool plus = word.size() > 1 && word[0] == '+' && word[1] != '-';
  const char* const start = word.data() + (plus ? 1 : 0);
  const auto read = std::from_chars(start, end, value);
  if (read.ec == std::errc::result_out_of_range) lines.Fail("'" + word + "' is beyond the range of a double");
  if (read.ec != std::errc() || read.ptr != end || !std::isfinite(value)) lines.Fail("'" + word + "' is no number");
  if (integer && value != std::floor(value)) lines.Fail("'" + word + "' is no whole number, in a file of integers");
  return value;
}

std::string Lower(std::string word) {
  for (char& c : word) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return word;
}

bool OneOf(const std::string& word, std::initializer_list<const char*> known) {
  return std::any_of(known.begin(), known.end(), [&](const char* k) { return word == k; });
}

// The first line: %%MatrixMarket matrix coordinate|array real|integer|pattern general|symmetric|skew-symmetric
void ReadBanner(Lines& lines, MarketFile& file) {
  std::string line;
  if (!lines.Raw(line) || line.rfind("%%MatrixMarket", 0) != 0) {
    lines.Fail("not a Matrix Market file: it does not begin with %%MatrixMarket");
  }
  std::istringstream words(line);
  std::string banner, object, excess;
  words >> banner >> object >> file.format >> file.field >> file.symmetry;
  if (words.fail() || words >> excess) {
    lines.Fail("the first line must have five words: %%MatrixMarket matrix FORMAT FIELD SYMMETRY");
  }
  object = Lower(object);
  file.format = Lower(file.format);
  file.field = Lower(file.field);
  file.symmetry = Lower(file.symmetry);
  if (object != "matrix") lines.Fail("it holds a '" + object + "', not a matrix");
  if (!OneOf(file.format, {"coordinate", "array"})) lines.Fail("unknown format '" + file.format + "'");
  if (file.field == "double") file.field = "real";
  if (file.field == "complex" || file.symmetry == "hermitian") lines.Fail("complex matrices are not supported");
  if (!OneOf(file.field, {"real", "integer", "pattern"})) lines.Fail("unknown field '" + file.field + "'");
  if (!OneOf(file.symmetry, {"general", "symmetric", "skew-symmetric"})) {
    lines.Fail("unknown symmetry '" + file.symmetry + "'");
  }
  if (file.field == "pattern" && file.format == "array") lines.Fail("a pattern cannot be an array");
  if (file.field == "pattern" && file.symmetry == "skew-symmetric") lines.Fail("a pattern cannot be skew-symmetric");
}

struct Size {
  unsigned rows = 0, cols = 0;
  std::size_t entries = 0;  // that the file must hold
};

Size ReadSize(Lines& lines, const MarketFile& file) {
  const bool coordinate = file.format == "coordinate";
  std::vector<std::string> words;
  if (!lines.Next(words)) lines.Fail("the file ends before the line of sizes");
  if (words.size() != (coordinate ? 3u : 2u)) {
    lines.Fail(coordinate ? "the line of sizes must have three numbers: rows, columns, entries"
                          : "the line of sizes must have two numbers: rows, columns");
  }
  Size size;
  size.rows = static_cast<unsigned>(Count(lines, words[0], "the number of rows", kMostRows));
  size.cols = static_cast<unsigned>(Count(lines, words[1], "the number of columns", kMostRows));
  if (file.symmetry != "general" && size.rows != size.cols) lines.Fail("a " + file.symmetry + " matrix must be square");
  const std::size_t m = size.rows, n = size.cols;
  if (coordinate) {
    size.entries = Count(lines, words[2], "the number of entries", static_cast<std::size_t>(-1));
    if (n == 0 ? size.entries != 0 : size.entries / n > m || (size.entries / n == m && size.entries % n != 0)) {
      lines.Fail("more entries than the matrix has elements");
    }
  } else {
    if (n != 0 && m > 0xFFFFFFFFu / n) lines.Fail("an array of that size is too large");
    size.entries = file.symmetry == "general" ? m * n : file.symmetry == "symmetric" ? n * (n + 1) / 2 : n * (n - (n != 0)) / 2;
  }
  return size;
}

// The entries in the order of the file. Those of a symmetric or skew-symmetric matrix are below or on the diagonal.
std::vector<Entry> ReadEntries(Lines& lines, const MarketFile& file, const Size& size) {
  const bool coordinate = file.format == "coordinate", pattern = file.field == "pattern";
  const bool skew = file.symmetry == "skew-symmetric";
  const std::size_t expected = coordinate ? (pattern ? 2 : 3) : 1;
  std::vector<Entry> entries;
  std::vector<std::string> words;
  unsigned i = skew ? 1 : 0, j = 0;  // next element of an array, which goes down the columns
  while (entries.size() < size.entries) {
    if (!lines.Next(words)) {
      lines.Fail("the file ends after " + std::to_string(entries.size()) + " of " + std::to_string(size.entries) +
                 " entries");
    }
    if (words.size() != expected) {
      lines.Fail(coordinate ? pattern ? "an entry must have two numbers: row, column"
                                      : "an entry must have three numbers: row, column, value"
                            : "an array has one value on every line");
    }
    if (coordinate) {
      i = Index(lines, words[0], "row", size.rows);
      j = Index(lines, words[1], "column", size.cols);
      if (file.symmetry != "general" && i < j) {
        lines.Fail("an entry above the diagonal: a " + file.symmetry + " file holds the lower triangle only");
      }
      if (skew && i == j) lines.Fail("an entry on the diagonal of a skew-symmetric matrix");
    }
    entries.push_back({i, j, pattern ? 1.0 : Value(lines, words.back(), file.field == "integer")});
    if (!coordinate && ++i == size.rows) {
      ++j;
      i = file.symmetry == "general" ? 0 : skew ? j + 1 : j;
    }
  }
  if (lines.Next(words)) lines.Fail("something follows after the last of " + std::to_string(size.entries) + " entries");
  return entries;
}

// Stores entries row by row: no search is needed when they come in order.
void Fill(SparseMatrix& matrix, const std::vector<Entry>& entries) {
  unsigned row = 0;
  SparseElement* previous = nullptr;
  for (const Entry& e : entries) {
    if (e.row != row) previous = nullptr;
    row = e.row;
    previous = matrix.SparseMatrixInsert(previous, e.row, e.col, e.value);
  }
}

}  // namespace

MarketFile ReadMarketFile(std::istream& in, const std::string& name) {
  Lines lines(in, name);
  MarketFile file;
  ReadBanner(lines, file);
  const Size size = ReadSize(lines, file);
  std::vector<Entry> entries = ReadEntries(lines, file, size);

  const auto zero = [](const Entry& e) { return e.value == 0.0; };
  file.zeros = static_cast<std::size_t>(std::count_if(entries.begin(), entries.end(), zero));
  if (file.symmetry == "symmetric") {  // the library keeps the upper triangle
    for (Entry& e : entries) std::swap(e.row, e.col);
  } else if (file.symmetry == "skew-symmetric") {
    const std::size_t count = entries.size();
    for (std::size_t k = 0; k < count; ++k) entries.push_back({entries[k].col, entries[k].row, -entries[k].value});
  }
  std::sort(entries.begin(), entries.end(),
            [](const Entry& a, const Entry& b) { return a.row != b.row ? a.row < b.row : a.col < b.col; });
  const auto twice = std::adjacent_find(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    return a.row == b.row && a.col == b.col;
  });
  if (twice != entries.end()) {
    const bool turned = file.symmetry != "general";
    throw FileError(name + ": element (" + std::to_string((turned ? twice->col : twice->row) + 1) + ", " +
                    std::to_string((turned ? twice->row : twice->col) + 1) + ") is given twice");
  }
  entries.erase(std::remove_if(entries.begin(), entries.end(), zero), entries.end());

  if (file.symmetry == "symmetric") {
    Fill(file.matrix.emplace<SymmetricSparseMatrix>(size.rows), entries);
  } else {
    Fill(file.matrix.emplace<RegularSparseMatrix>(size.rows, size.cols), entries);
  }
  return file;
}

}  // namespace market
