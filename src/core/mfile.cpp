// PrintMFile of the dense kinds and of plain arrays: assignment statements.
#include "core/mfile.h"

#include "core/ownership.h"
#include "dense/rules.h"
#include "quorvel/output.h"

namespace detail = quorvel::detail;
using detail::index_t;

namespace {

/// name = [\n a,b;\n c,d \n];\n with element (i, j) given by `at`. Nothing for an empty matrix.
template <class At>
void WriteStatement(std::FILE* file, const char* name, const char* element, index_t rows, index_t cols, At at) {
  if (rows == 0 || cols == 0) return;
  std::fputs(name, file);
  std::fputs(" = [\n", file);
  for (index_t i = 0; i < rows; ++i) {
    if (i != 0) std::fputs(";\n", file);
    for (index_t j = 0; j < cols; ++j) {
      if (j != 0) std::fputc(',', file);
      std::fprintf(file, element, at(i, j));
    }
  }
  std::fputs("\n];\n", file);
}

template <class K>
void WriteMatrix(const K& a, std::FILE* file, const char* name, const char* element) {
  const detail::Rule<K> from(a);
  WriteStatement(file, name, element, from.rows(), from.cols(), [&](index_t i, index_t j) { return from.at(i, j); });
}

template <class K>
void ToFile(const K& a, std::FILE* file, const char* name, const char* element) {
  const detail::Consumed operand(a);
  WriteMatrix(a, file, name, element);
}

template <class K>
void ToPath(const K& a, const char* path, const char* name, const char* element, const char* preamble) {
  const detail::Consumed operand(a);
  detail::WriteToPath(path, preamble, [&](std::FILE* file) { WriteMatrix(a, file, name, element); });
}

}  // namespace

void PrintMFile(const RegularMatrix& A, std::FILE* file, const char* name, const char* element) {
  ToFile(A, file, name, element);
}

void PrintMFile(const SymmetricMatrix& A, std::FILE* file, const char* name, const char* element) {
  ToFile(A, file, name, element);
}

void PrintMFile(const UpperTriangularMatrix& A, std::FILE* file, const char* name, const char* element) {
  ToFile(A, file, name, element);
}

void PrintMFile(const LowerTriangularMatrix& A, std::FILE* file, const char* name, const char* element) {
  ToFile(A, file, name, element);
}

void PrintMFile(const DiagonalMatrix& A, std::FILE* file, const char* name, const char* element) {
  ToFile(A, file, name, element);
}

void PrintMFile(const RegularMatrix& A, const char* path, const char* name, const char* element, const char* preamble) {
  ToPath(A, path, name, element, preamble);
}

void PrintMFile(const SymmetricMatrix& A, const char* path, const char* name, const char* element,
                const char* preamble) {
  ToPath(A, path, name, element, preamble);
}

void PrintMFile(const UpperTriangularMatrix& A, const char* path, const char* name, const char* element,
                const char* preamble) {
  ToPath(A, path, name, element, preamble);
}

void PrintMFile(const LowerTriangularMatrix& A, const char* path, const char* name, const char* element,
                const char* preamble) {
  ToPath(A, path, name, element, preamble);
}

void PrintMFile(const DiagonalMatrix& A, const char* path, const char* name, const char* element,
                const char* preamble) {
  ToPath(A, path, name, element, preamble);
}

void PrintMFile(const double* values, unsigned k, bool diagonal, std::FILE* file, const char* name,
                const char* element) {
  if (diagonal) {
    WriteStatement(file, name, element, k, k, [values](index_t i, index_t j) { return i == j ? values[i] : 0.0; });
  } else if (k != 0) {
    WriteStatement(file, name, element, 1, k, [values](index_t, index_t j) { return values[j]; });
  }
}

void PrintMFile(const double* values, unsigned k, bool diagonal, const char* path, const char* name,
                const char* element, const char* preamble) {
  detail::WriteToPath(path, preamble,
                      [&](std::FILE* file) { PrintMFile(values, k, diagonal, file, name, element); });
}
