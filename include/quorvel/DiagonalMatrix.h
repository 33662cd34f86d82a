// DiagonalMatrix: diagonal matrix: n doubles. Class name "DiagonalMatrix", kind 4.
#ifndef QUORVEL_DIAGONALMATRIX_H
#define QUORVEL_DIAGONALMATRIX_H

#include "quorvel/Matrix.h"

/// Elements are read zero off the diagonal; writing there throws 60090.
///
///   DiagonalMatrix W(3);
///   W = 1.0;          // the unit matrix: only the diagonal is stored
///   W(2, 2) = 0.25;
class QUORVEL_API DiagonalMatrix : public SquareMatrix {
 public:
  /// Order 0, no array; the singularity count is -1.
  DiagonalMatrix() noexcept;
  /// n x n zeros.
  explicit DiagonalMatrix(size_type n);
  /// Throws 40210 when rows != cols.
  DiagonalMatrix(size_type rows, size_type cols);

  // Copies are deep and throw 50140 when the source is not ok; a dispensable source gives its storage and is
  // destroyed. Moves check nothing, leave the source of order 0 and destroy it when it is dispensable.
  DiagonalMatrix(DiagonalMatrix& source);
  DiagonalMatrix(const DiagonalMatrix& source);
  DiagonalMatrix(DiagonalMatrix&& source) noexcept;
  DiagonalMatrix& operator=(DiagonalMatrix& source);
  DiagonalMatrix& operator=(const DiagonalMatrix& source);
  DiagonalMatrix& operator=(DiagonalMatrix&& source) noexcept;
  /// As SingleArrayMatrix::operator=(double): every stored double becomes x. Throws 50000.
  DiagonalMatrix& operator=(double x);

  /// The class name is "DiagonalMatrix"; the kind is symmetric.
  const char* ClassName() const override;
  bool IsSymmetric() const override;

  void PrintArray(std::FILE* file, const char* format, int width, int precision) const override;
  size_type StoredCount() const override;
  size_type GetArrayCount(size_type rows, size_type cols) const override;
  void InsertRowsAndCols(size_type at, size_type count) override;
  void RemoveRowsAndCols(size_type at, size_type count) override;

  /// Exchanges everything but the dispensable flags, in constant time.
  void Swap(DiagonalMatrix& other) noexcept;

  /// Throws 60090 unless i = j < n.
  void ThrowDiagonalMatrixAccessorSet(unsigned i, unsigned j) const;

  /// Negates a dispensable matrix in place and returns it; otherwise a new dispensable copy, negated. Throws 50450.
  [[nodiscard]] DiagonalMatrix& operator-();
  [[nodiscard]] DiagonalMatrix& operator-() const;
  /// Every stored element times s; 0 gives +0.0 everywhere, even over NaN. Neither checks anything: no flag, no
  /// pending code. The singularity count stays.
  DiagonalMatrix& operator*=(double s);
  /// The same with 1.0 / s (not a division per element). s = 0 gives infinities or NaN.
  DiagonalMatrix& operator/=(double s);

  // Element-wise; the singularity count becomes -1; a dispensable operand other than *this is consumed. Throws
  // 40340 / 50340 (same kind) for sizes / not ok.
  DiagonalMatrix& operator+=(const DiagonalMatrix& b);
  DiagonalMatrix& operator-=(const DiagonalMatrix& b);

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
