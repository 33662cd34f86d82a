// Text output: assignment statements (dense) and triplet lists (sparse) for scripts.
//
// `element` is the caller's printf format for one double ("%.17g" reads back exactly). Nothing is checked. The forms
// with a path create the file, write `preamble` first when it is not null, and do nothing when the file cannot be
// opened; a dispensable matrix is consumed in every case.
//
//   PrintMFile(A + B, stdout, "S", "%.17g");
#ifndef QUORVEL_OUTPUT_H
#define QUORVEL_OUTPUT_H

#include <cstdio>

#include "quorvel/export.h"
#include "quorvel/forward.h"

// A line `name = [`, a line `a,b;` per row (the last one without its semicolon), a line `];`: all rows and columns,
// implicit zeros included. Nothing at all is written for an empty matrix.
QUORVEL_API void PrintMFile(const RegularMatrix& A, std::FILE* file, const char* name, const char* element);
QUORVEL_API void PrintMFile(const SymmetricMatrix& A, std::FILE* file, const char* name, const char* element);
QUORVEL_API void PrintMFile(const UpperTriangularMatrix& A, std::FILE* file, const char* name, const char* element);
QUORVEL_API void PrintMFile(const LowerTriangularMatrix& A, std::FILE* file, const char* name, const char* element);
QUORVEL_API void PrintMFile(const DiagonalMatrix& A, std::FILE* file, const char* name, const char* element);
QUORVEL_API void PrintMFile(const RegularMatrix& A, const char* path, const char* name, const char* element,
                            const char* preamble = nullptr);
QUORVEL_API void PrintMFile(const SymmetricMatrix& A, const char* path, const char* name, const char* element,
                            const char* preamble = nullptr);
QUORVEL_API void PrintMFile(const UpperTriangularMatrix& A, const char* path, const char* name, const char* element,
                            const char* preamble = nullptr);
QUORVEL_API void PrintMFile(const LowerTriangularMatrix& A, const char* path, const char* name, const char* element,
                            const char* preamble = nullptr);
QUORVEL_API void PrintMFile(const DiagonalMatrix& A, const char* path, const char* name, const char* element,
                            const char* preamble = nullptr);

// Lines "row column value", counted from 1, row by row; of a symmetric sparse matrix both triangles. A last line
// "m n 0" gives the size, unless stored elements in the last column (and last row, for a regular sparse matrix) do.
QUORVEL_API void PrintMFile(const SparseMatrix& A, std::FILE* file, const char* element);
/// The second string is not used.
QUORVEL_API void PrintMFile(const SparseMatrix& A, const char* path, const char* unused, const char* element,
                            const char* preamble = nullptr);

// k values as one row, or as the diagonal of a k x k matrix. Nothing is written for k = 0.
QUORVEL_API void PrintMFile(const double* values, unsigned k, bool diagonal, std::FILE* file, const char* name,
                            const char* element);
QUORVEL_API void PrintMFile(const double* values, unsigned k, bool diagonal, const char* path, const char* name,
                            const char* element, const char* preamble = nullptr);

#endif
