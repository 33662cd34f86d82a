// RegularMatrix: the general dense m x n matrix, stored by rows. Class name "RegularMatrix", kind 0.
#ifndef QUORVEL_REGULARMATRIX_H
#define QUORVEL_REGULARMATRIX_H

#include "quorvel/Matrix.h"

/// Element (i, j), counted from 0, is data()[i * n + j].
///
///   RegularMatrix A(2, 3);               // zeros
///   A(0, 2) = 1.5;
///   A.InsertRows(2, 1);                  // a zero row behind the others
///   RegularMatrix block(A(0, 1, 1, 2));  // rows 0..1, columns 1..2: [0 1.5; 0 0]
class QUORVEL_API RegularMatrix : public SingleArrayMatrix {
 public:
  /// 0 x 0, no array; the singularity count is -1.
  RegularMatrix() noexcept;
  /// rows x cols zeros. No array when either is 0 (the sizes are kept as given).
  RegularMatrix(size_type rows, size_type cols);

  // Copies are deep and throw 50140 when the source is not ok; a dispensable source gives its storage and is
  // destroyed. Moves check nothing, leave the source 0 x 0 and destroy it when it is dispensable.
  RegularMatrix(RegularMatrix& source);
  RegularMatrix(const RegularMatrix& source);
  RegularMatrix(RegularMatrix&& source) noexcept;
  RegularMatrix& operator=(RegularMatrix& source);
  RegularMatrix& operator=(const RegularMatrix& source);
  RegularMatrix& operator=(RegularMatrix&& source) noexcept;

  // From the other kinds: all elements, implicit zeros included. A dispensable source is consumed. Dense sources give
  // their singularity count and throw 50140; sparse ones leave the target's count and throw 52310 (symmetric sparse)
  // or 52320 (regular sparse).
  RegularMatrix(const SymmetricMatrix& source);
  RegularMatrix(const UpperTriangularMatrix& source);
  RegularMatrix(const LowerTriangularMatrix& source);
  RegularMatrix(const DiagonalMatrix& source);
  RegularMatrix(const RegularSparseMatrix& source);
  RegularMatrix(const SymmetricSparseMatrix& source);
  RegularMatrix& operator=(const SymmetricMatrix& source);
  RegularMatrix& operator=(const UpperTriangularMatrix& source);
  RegularMatrix& operator=(const LowerTriangularMatrix& source);
  RegularMatrix& operator=(const DiagonalMatrix& source);
  RegularMatrix& operator=(const RegularSparseMatrix& source);
  RegularMatrix& operator=(const SymmetricSparseMatrix& source);
  /// As SingleArrayMatrix::operator=(double). Throws 50000.
  RegularMatrix& operator=(double x);

  /// The class name is "RegularMatrix"; the kind is not symmetric, whatever the elements are.
  const char* ClassName() const override;
  bool IsSymmetric() const override;

  void PrintArray(std::FILE* file, const char* format, int width, int precision) const override;
  void SetSize(size_type rows, size_type cols, bool keep) override;
  size_type StoredCount() const override;
  size_type GetArrayCount(size_type rows, size_type cols) const override;

  /// Rows m and columns n.
  size_type nrows() const noexcept { return m_; }
  size_type ncols() const noexcept { return n_; }
  void GetSize(size_type& rows, size_type& cols) const override;

  /// Exchanges everything but the dispensable flags, in constant time.
  void Swap(RegularMatrix& other) noexcept;

  /// Negates a dispensable matrix in place and returns it; otherwise a new dispensable copy, negated. Throws 50450.
  [[nodiscard]] RegularMatrix& operator-();
  [[nodiscard]] RegularMatrix& operator-() const;
  /// Every stored element times s; 0 gives +0.0 everywhere, even over NaN. Neither checks anything: no flag, no
  /// pending code. The singularity count stays.
  RegularMatrix& operator*=(double s);
  /// The same with 1.0 / s (not a division per element). s = 0 gives infinities or NaN.
  RegularMatrix& operator/=(double s);

  // Element-wise; the singularity count becomes -1; a dispensable operand other than *this is consumed. Throws
  // 40340 / 50340 (regular), 40280 / 50280 (other dense kinds), 40000 / 50000 (sparse) for sizes / not ok.
  RegularMatrix& operator+=(const RegularMatrix& b);
  RegularMatrix& operator+=(const SymmetricMatrix& b);
  RegularMatrix& operator+=(const UpperTriangularMatrix& b);
  RegularMatrix& operator+=(const LowerTriangularMatrix& b);
  RegularMatrix& operator+=(const DiagonalMatrix& b);
  RegularMatrix& operator+=(const RegularSparseMatrix& b);
  RegularMatrix& operator+=(const SymmetricSparseMatrix& b);
  RegularMatrix& operator-=(const RegularMatrix& b);
  RegularMatrix& operator-=(const SymmetricMatrix& b);
  RegularMatrix& operator-=(const UpperTriangularMatrix& b);
  RegularMatrix& operator-=(const LowerTriangularMatrix& b);
  RegularMatrix& operator-=(const DiagonalMatrix& b);
  RegularMatrix& operator-=(const RegularSparseMatrix& b);
  RegularMatrix& operator-=(const SymmetricSparseMatrix& b);

  /// Element (i, j), or element i of a row or column vector, counted from 0. All four throw 60080 for a bad index, and
  /// a pending code even for a valid one. For loops take data() and the formula above.
  double operator()(size_type i, size_type j) const;
  double& operator()(size_type i, size_type j);
  double operator()(size_type i) const;
  double& operator()(size_type i);
  /// The check of the access: throws 60080 unless i < m and j < n (one index: a vector with more than i elements).
  void ThrowRegularMatrixAccessor(unsigned i, unsigned j) const;
  void ThrowRegularMatrixAccessor(unsigned i) const;

  /// The block of rows firstRow..lastRow and columns firstCol..lastCol (inclusive) as a new dispensable matrix;
  /// consumes a dispensable *this. Throws 50000, 40000. `npos` is not special here: last = first - 1 is the empty
  /// block, and any other reversed range asks for too many doubles (std::bad_array_new_length).
  [[nodiscard]] RegularMatrix& operator()(size_type firstRow, size_type lastRow, size_type firstCol,
                                          size_type lastCol) const;

  // One row or column, elements first..last (npos: to the end). Throw 50000 (not ok) and 40000 (index or range).
  double SumRow(size_type row, size_type first = 0, size_type last = npos) const;
  double SumCol(size_type col, size_type first = 0, size_type last = npos) const;
  double SumSqRow(size_type row, size_type first = 0, size_type last = npos) const;
  double SumSqCol(size_type col, size_type first = 0, size_type last = npos) const;
  void NegateRow(size_type row, size_type first = 0, size_type last = npos);
  void NegateCol(size_type col, size_type first = 0, size_type last = npos);
  void MultRow(size_type row, double factor, size_type first = 0, size_type last = npos);
  void MultCol(size_type col, double factor, size_type first = 0, size_type last = npos);
  void SetRow(size_type row, double value, size_type first = 0, size_type last = npos);
  void SetCol(size_type col, double value, size_type first = 0, size_type last = npos);
  void ClearRow(size_type row, size_type first = 0, size_type last = npos);
  void ClearCol(size_type col, size_type first = 0, size_type last = npos);

  /// Sets rows first .. first + count - 1. Throws 60000 for any failure, also for a count of 0.
  void SetRows(double value, size_type first, size_type count);
  /// For a square matrix sets columns first .. first + count - 1. For any other shape it steps by the row count
  /// instead of the column count, n times (kept; positions beyond the last element are skipped): use SetCol per column.
  /// Throws 60000.
  void SetCols(double value, size_type first, size_type count);
  /// Opens zero rows before row `at`. Exact when appending (at = m). Before existing rows of a matrix with more than
  /// one column only the first m - at doubles of the rows behind move (kept): to insert in the middle, append and copy
  /// blocks. Throws 50000 (not ok), 40000 (dispensable), 30000 (position); a count of 0 does nothing, unchecked.
  void InsertRows(size_type at, size_type count);
  /// Opens zero columns before column `at`. Codes as InsertRows.
  void InsertCols(size_type at, size_type count);
  /// Removes lines first .. first + count - 1. Throws 60000 for any failure; a count of 0 does nothing, unchecked.
  void RemoveRows(size_type first, size_type count);
  void RemoveCols(size_type first, size_type count);

  // Copies elements first..min(last, end) of a row (column) to out[0..], zeros included, then reports where the first
  // and the last non-zero element lie; first = n + 1 and last = 0 (columns: m + 1) when there is none. first > end is
  // an empty span, an index outside the matrix a line of zeros. Throw 51514 (rows), 51513 (columns) when not ok.
  void GetLimitedRow(size_type row, double* out, size_type& first, size_type& last) const;
  void GetLimitedCol(size_type col, double* out, size_type& first, size_type& last) const;
  /// The whole line: sets first = 0 and last = end before anything else, then as above.
  void GetEntireRow(size_type row, double* out, size_type& first, size_type& last) const;
  void GetEntireCol(size_type col, double* out, size_type& first, size_type& last) const;

 private:
  friend struct quorvel::detail::Access;
  size_type m_;
  size_type n_;
};

#endif
