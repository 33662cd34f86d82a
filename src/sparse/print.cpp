// PrintArray and PrintMFile of the sparse kinds.
#include "sparse/print.h"

#include "core/mfile.h"
#include "core/ownership.h"
#include "quorvel/output.h"
#include "sparse/cursor.h"

namespace detail = quorvel::detail;
using detail::ByCol;
using detail::index_t;
using detail::ListHead;

namespace quorvel::detail {

void PrintSparse(const SparseMatrix& a, std::FILE* file, const char* format, int width, int precision) {
  const SparseLines lines(a);
  for (index_t i = 0; i < lines.rows(); ++i) {
    LineCursor e = lines.row(i);
    for (index_t j = 0; j < lines.cols(); ++j) {
      e.skip_to(j);
      const double v = e && e.index() == j ? e.value() : 0.0;
      std::fprintf(file, format, width, precision, v, j + 1 < lines.cols() ? ' ' : '\n');
    }
  }
}

}  // namespace quorvel::detail

namespace {

void WriteTriplet(std::FILE* file, const char* element, index_t row, index_t col, double value) {
  std::fprintf(file, "%u %u ", row, col);
  std::fprintf(file, element, value);
  std::fputc('\n', file);
}

/// One line per element, rows and columns counted from 1; a symmetric matrix is written whole. A reader takes the size
/// from the largest indices, so a closing zero in the last cell is needed unless elements reach there.
void WriteTriplets(const SparseMatrix& a, std::FILE* file, const char* element) {
  if (a.rows == 0 || a.cols == 0) return;
  const bool symmetric = detail::is_symmetric_sparse(a);
  for (index_t i = 0; i < a.rows; ++i) {
    const SparseElement* mirrored = symmetric ? ListHead<ByCol>(a, i) : nullptr;
    for (; mirrored != nullptr; mirrored = mirrored->nextInCol) {
      if (mirrored->row != i) WriteTriplet(file, element, i + 1, mirrored->row + 1, mirrored->value);
    }
    for (const SparseElement* e = a.rowHeads[i]; e != nullptr; e = e->nextInRow) {
      WriteTriplet(file, element, i + 1, e->col + 1, e->value);
    }
  }
  const bool reaches_end = a.colHeads[a.cols - 1] != nullptr && (symmetric || a.rowHeads[a.rows - 1] != nullptr);
  if (!reaches_end) WriteTriplet(file, element, a.rows, a.cols, 0.0);
}

}  // namespace

void PrintMFile(const SparseMatrix& A, std::FILE* file, const char* element) {
  const detail::Consumed operand(A);
  WriteTriplets(A, file, element);
}

void PrintMFile(const SparseMatrix& A, const char* path, const char*, const char* element, const char* preamble) {
  const detail::Consumed operand(A);
  detail::WriteToPath(path, preamble, [&](std::FILE* file) { WriteTriplets(A, file, element); });
}
