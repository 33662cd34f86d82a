// Print, and PrintArray of the dense kinds. One fprintf per element; the byte layout is fixed.
#include "core/ownership.h"
#include "dense/rules.h"

namespace detail = quorvel::detail;
using detail::index_t;
using detail::Range;

void Matrix::Print(std::FILE* file, bool fixed, bool header, int precision, int width) const {
  ThrowNotOk(detail::code::print);
  const detail::Consumed self(*this);
  if (header) {
    // never all ways: only a matrix that is ok comes here
    std::fprintf(file, "type: %s %uX%u\nDispensable: %u\tOk: %u\tNumber Singularities: %d\n\n", ClassName(), nrows(),
                 ncols(), dispensable() ? 1u : 0u, ok() ? 1u : 0u, nsing());
  }
  PrintArray(file, fixed ? "%*.*f%c" : "%*.*e%c", width, precision);
  std::fputc('\n', file);
}

namespace {

/// How the elements of a kind are laid out on lines.
struct Format {
  std::FILE* file;
  const char* element;
  int width;
  int precision;
};

/// One line per row; `shown` gives the columns of row i.
template <class K, class Shown>
void PrintLines(const K& a, const Format& to, Shown shown) {
  const detail::Rule<K> from(a);
  for (index_t i = 0; i < from.rows(); ++i) {
    const Range range = shown(i);
    for (index_t j = range.begin; j < range.end; ++j) {
      std::fprintf(to.file, to.element, to.width, to.precision, from.at(i, j), j + 1 < range.end ? ' ' : '\n');
    }
  }
}

template <class K>
void PrintFull(const K& a, const Format& to) {
  PrintLines(a, to, [n = a.ncols()](index_t) { return Range{0, n}; });
}

/// Only what row i stores: the ragged triangle of the lower kind, one value per line of the diagonal kind.
template <class K>
void PrintStored(const K& a, const Format& to) {
  PrintLines(a, to, [from = detail::Rule<K>(a)](index_t i) { return from.stored_in_row(i); });
}

}  // namespace

void RegularMatrix::PrintArray(std::FILE* file, const char* format, int width, int precision) const {
  PrintFull(*this, {file, format, width, precision});
}

void SymmetricMatrix::PrintArray(std::FILE* file, const char* format, int width, int precision) const {
  PrintFull(*this, {file, format, width, precision});
}

void UpperTriangularMatrix::PrintArray(std::FILE* file, const char* format, int width, int precision) const {
  PrintFull(*this, {file, format, width, precision});
}

void LowerTriangularMatrix::PrintArray(std::FILE* file, const char* format, int width, int precision) const {
  PrintStored(*this, {file, format, width, precision});
}

void DiagonalMatrix::PrintArray(std::FILE* file, const char* format, int width, int precision) const {
  PrintStored(*this, {file, format, width, precision});
}
