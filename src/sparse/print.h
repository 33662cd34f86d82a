// Text output of the sparse kinds.
#ifndef QUORVEL_SPARSE_PRINT_H
#define QUORVEL_SPARSE_PRINT_H

#include <cstdio>

#include "quorvel/SparseMatrix.h"

namespace quorvel::detail {

/// PrintArray of both kinds: full rows, absent elements as 0.0.
void PrintSparse(const SparseMatrix& a, std::FILE* file, const char* format, int width, int precision);

}  // namespace quorvel::detail

#endif
