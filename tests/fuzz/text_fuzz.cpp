// Any doubles in a matrix of any kind, written in every text form and read back: the grammar is the documented one, and with
// 17 digits the numbers are the same to the last bit.
#include <cmath>
#include <string>
#include <type_traits>
#include <vector>

#include "fuzz/input.h"
#include "quorvel/quorvel.h"
#include "support/text.h"

namespace {

using quorvel::fuzz::Input;
using quorvel::fuzz::Require;
using quorvel::test::TextOf;

bool SameNumber(double a, double b) {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
  return a == b && std::signbit(a) == std::signbit(b);
}

// Reads a text from front to back.
class Reader {
 public:
  explicit Reader(const std::string& text) : next_(text.c_str()), end_(text.c_str() + text.size()) {}
  void Expect(const std::string& word, const char* where) {
    Require(static_cast<std::size_t>(end_ - next_) >= word.size() && std::string(next_, word.size()) == word,
            "text is not as documented", where);
    next_ += word.size();
  }
  double Number(const char* where) {
    char* after = nullptr;
    const double x = std::strtod(next_, &after);
    Require(after != next_, "no number", where);
    next_ = after;
    return x;
  }
  unsigned Count(const char* where) {
    const double x = Number(where);
    Require(x >= 0 && x == std::floor(x), "no index", where);
    return static_cast<unsigned>(x);
  }
  void Blanks() {
    while (*next_ == ' ') ++next_;
  }
  void Space() {
    while (*next_ == ' ' || *next_ == '\n') ++next_;
  }
  bool done() const { return next_ == end_; }

 private:
  const char* next_;
  const char* end_;
};

template <class K>
constexpr bool kSparse = std::is_base_of_v<SparseMatrix, K>;
template <class K>
constexpr bool kRectangular = std::is_same_v<K, RegularMatrix> || std::is_same_v<K, RegularSparseMatrix>;

template <class K>
K Make(Input& in) {
  const unsigned m = in.Below(6);
  const unsigned n = kRectangular<K> ? in.Below(6) : m;
  K a(m, n);
  if constexpr (kSparse<K>) {
    for (unsigned count = m * n == 0 ? 0 : in.Below(12); count > 0; --count) {
      const unsigned i = in.Below(m), j = in.Below(n);
      const double x = in.AnyDouble();
      a.Put(i, j, x);
    }
  } else {
    for (unsigned k = 0; k < a.StoredCount(); ++k) a.data()[k] = in.AnyDouble();
  }
  return a;
}

// name = [ rows; ]
template <class K>
void CheckStatement(const K& a, const std::string& name) {
  const std::string text = TextOf([&](std::FILE* file) { PrintMFile(a, file, name.c_str(), "%.17g"); });
  if (a.nrows() == 0 || a.ncols() == 0) {
    Require(text.empty(), "an empty matrix is written");
    return;
  }
  Reader reader(text);
  reader.Expect(name + " = [\n", "begin");
  for (unsigned i = 0; i < a.nrows(); ++i) {
    for (unsigned j = 0; j < a.ncols(); ++j) {
      Require(SameNumber(reader.Number("element"), a(i, j)), "another number", "statement");
      if (j + 1 < a.ncols()) reader.Expect(",", "separator");
    }
    reader.Expect(i + 1 < a.nrows() ? ";\n" : "\n", "line");
  }
  reader.Expect("];\n", "end");
  Require(reader.done(), "text behind the end");
}

// Lines "row column value", and the size when no element tells it.
template <class K>
void CheckTriplets(const K& a) {
  const std::string text = TextOf([&](std::FILE* file) { PrintMFile(a, file, "%.17g"); });
  Reader reader(text);
  unsigned seen = 0, last_row = 0, last_col = 0;
  bool size_line = false;
  RegularMatrix full(a.nrows(), a.ncols());
  while (!reader.done()) {
    const unsigned i = reader.Count("row"), j = reader.Count("column");
    reader.Blanks();
    const double x = reader.Number("value");
    reader.Expect("\n", "line");
    Require(!size_line, "lines behind the size");
    Require(1 <= i && i <= a.nrows() && 1 <= j && j <= a.ncols(), "an index outside");
    Require(i > last_row || (i == last_row && j > last_col) || (i == a.nrows() && j == a.ncols()), "not row by row");
    if (a.Cell_Loc(i - 1, j - 1) == nullptr) {
      Require(i == a.nrows() && j == a.ncols() && x == 0.0, "a cell that is not stored");
      size_line = true;
    } else {
      Require(SameNumber(x, a(i - 1, j - 1)), "another number", "triplet");
      ++seen;
    }
    last_row = i;
    last_col = j;
  }
  unsigned expected = 0;
  for (unsigned i = 0; i < a.nrows(); ++i) {
    for (unsigned j = 0; j < a.ncols(); ++j) expected += a.Cell_Loc(i, j) != nullptr ? 1 : 0;
  }
  Require(seen == expected, "not all elements are written");
}

// Print and PrintArray: as many numbers as documented, to their precision.
template <class K>
void CheckArray(const K& a, Input& in) {
  const std::string text = TextOf([&](std::FILE* file) { a.PrintArray(file, "%*.*e%c", 25, 16); });
  Reader reader(text);
  for (unsigned i = 0; i < a.nrows(); ++i) {
    const bool lower = std::is_same_v<K, LowerTriangularMatrix>, diagonal = std::is_same_v<K, DiagonalMatrix>;
    const unsigned first = diagonal ? i : 0, end = lower || diagonal ? i + 1 : a.ncols();
    for (unsigned j = first; j < end; ++j) {
      Require(SameNumber(reader.Number("element"), a(i, j)), "another number", "array");
    }
  }
  reader.Space();
  Require(reader.done(), "more numbers than elements");
  const bool fixed = in.Below(2) == 1, header = in.Below(2) == 1;
  const int precision = static_cast<int>(in.Below(20)), width = static_cast<int>(in.Below(30));
  const std::string printed = TextOf([&](std::FILE* file) { a.Print(file, fixed, header, precision, width); });
  Require(!printed.empty() && printed.back() == '\n', "Print ends with an empty line");
}

template <class K>
void Check(Input& in, const std::string& name) {
  const K a = Make<K>(in);
  if constexpr (kSparse<K>) {
    CheckTriplets(a);
  } else {
    CheckStatement(a, name);
  }
  CheckArray(a, in);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input in(data, size);
  const unsigned kind = in.Below(8);
  std::string name;
  for (unsigned length = in.Below(5); length > 0; --length) name += static_cast<char>(1 + in.Below(255));
  switch (kind) {
    case 0: Check<RegularMatrix>(in, name); break;
    case 1: Check<SymmetricMatrix>(in, name); break;
    case 2: Check<UpperTriangularMatrix>(in, name); break;
    case 3: Check<LowerTriangularMatrix>(in, name); break;
    case 4: Check<DiagonalMatrix>(in, name); break;
    case 5: Check<RegularSparseMatrix>(in, name); break;
    case 6: Check<SymmetricSparseMatrix>(in, name); break;
    default: {  // an array, as a row or as a diagonal
      std::vector<double> values;
      for (unsigned count = in.Below(6); count > 0; --count) values.push_back(in.AnyDouble());
      const bool diagonal = in.Below(2) == 1;
      const auto k = static_cast<unsigned>(values.size());
      const std::string text =
          TextOf([&](std::FILE* file) { PrintMFile(values.data(), k, diagonal, file, name.c_str(), "%.17g"); });
      Require(text.empty() == values.empty(), "an array of no values");
    }
  }
  Require(GetErrorCode() == 0, "a code is pending");
  return 0;
}
