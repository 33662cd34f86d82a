// UpperTriangularMatrix: upper triangular matrix, stored packed by rows. Class name "UpperTriangularMatrix", kind 2.
#ifndef QUORVEL_UPPERTRIANGULARMATRIX_H
#define QUORVEL_UPPERTRIANGULARMATRIX_H

#include "quorvel/Matrix.h"

/// Elements are read zero below the diagonal; writing there throws 60021.
///
///   UpperTriangularMatrix U(2);
///   U(0, 1) = 2.0;
///   double below = U(1, 0);   // 0.0
class QUORVEL_API UpperTriangularMatrix : public TriMatrix {
 public:
  /// Order 0, no array; the singularity count is -1.
  UpperTriangularMatrix() noexcept;
  /// n x n zeros.
  explicit UpperTriangularMatrix(size_type n);
  /// Throws 40180 when rows != cols.
  UpperTriangularMatrix(size_type rows, size_type cols);

  // Copies are deep and throw 50140 when the source is not ok; a dispensable source gives its storage and is
  // destroyed. Moves check nothing, leave the source of order 0 and destroy it when it is dispensable.
  UpperTriangularMatrix(UpperTriangularMatrix& source);
  UpperTriangularMatrix(const UpperTriangularMatrix& source);
  UpperTriangularMatrix(UpperTriangularMatrix&& source) noexcept;
  UpperTriangularMatrix& operator=(UpperTriangularMatrix& source);
  UpperTriangularMatrix& operator=(const UpperTriangularMatrix& source);
  UpperTriangularMatrix& operator=(UpperTriangularMatrix&& source) noexcept;

  /// The diagonal, zeros elsewhere; the singularity count is taken over;
  /// a dispensable source is consumed. Throws 50330.
  UpperTriangularMatrix(const DiagonalMatrix& source);
  UpperTriangularMatrix& operator=(const DiagonalMatrix& source);
  /// As SingleArrayMatrix::operator=(double): every stored double becomes x. Throws 50000.
  UpperTriangularMatrix& operator=(double x);

  /// The class name is "UpperTriangularMatrix"; the kind is not symmetric, whatever the elements are.
  const char* ClassName() const override;
  bool IsSymmetric() const override;

  void PrintArray(std::FILE* file, const char* format, int width, int precision) const override;

  /// Exchanges everything but the dispensable flags, in constant time.
  void Swap(UpperTriangularMatrix& other) noexcept;

  /// Negates a dispensable matrix in place and returns it; otherwise a new dispensable copy, negated. Throws 50450.
  [[nodiscard]] UpperTriangularMatrix& operator-();
  [[nodiscard]] UpperTriangularMatrix& operator-() const;
  /// Every stored element times s; 0 gives +0.0 everywhere, even over NaN. Neither checks anything: no flag, no
  /// pending code. The singularity count stays.
  UpperTriangularMatrix& operator*=(double s);
  /// The same with 1.0 / s (not a division per element). s = 0 gives infinities or NaN.
  UpperTriangularMatrix& operator/=(double s);

  // Element-wise; the singularity count becomes -1; a dispensable operand other than *this is consumed. Throws
  // 40340 / 50340 (same kind), 40280 / 50280 (diagonal) for sizes / not ok.
  UpperTriangularMatrix& operator+=(const UpperTriangularMatrix& b);
  UpperTriangularMatrix& operator+=(const DiagonalMatrix& b);
  UpperTriangularMatrix& operator-=(const UpperTriangularMatrix& b);
  UpperTriangularMatrix& operator-=(const DiagonalMatrix& b);

  using SquareMatrix::operator();
  /// The inclusive block as a new dispensable matrix, implicit elements included; consumes a dispensable *this. Throws
  /// 50000, 40000. `npos` is not special here: last = first - 1 is the empty block, and any other reversed range asks
  /// for too many doubles (std::bad_array_new_length).
  [[nodiscard]] RegularMatrix& operator()(size_type firstRow, size_type lastRow, size_type firstCol,
                                          size_type lastCol) const;

  // Copies elements first..min(last, n - 1) of a row (column) to out[0..], zeros included, then reports where the
  // first and the last non-zero element lie; first = n + 1 and last = 0 when there is none. first > end is an empty
  // span, an index outside the matrix a line of zeros. Throw 51514 (rows), 51513 (columns) when not ok.
  void GetLimitedRow(size_type row, double* out, size_type& first, size_type& last) const;
  void GetLimitedCol(size_type col, double* out, size_type& first, size_type& last) const;
  /// The whole line: sets first = 0 and last = n - 1 before anything else, then as above.
  void GetEntireRow(size_type row, double* out, size_type& first, size_type& last) const;
  void GetEntireCol(size_type col, double* out, size_type& first, size_type& last) const;
};

#endif
