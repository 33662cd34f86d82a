// SymmetricMatrix: symmetric matrix, stored packed: the upper triangle by rows, n(n+1)/2 doubles. Kind 1.
#ifndef QUORVEL_SYMMETRICMATRIX_H
#define QUORVEL_SYMMETRICMATRIX_H

#include "quorvel/Matrix.h"

/// Elements are read mirrored: (i, j) and (j, i) are one double.
///
///   SymmetricMatrix P(2);
///   P(1, 0) = 0.5;               // P(0, 1) as well
///   P.InsertRowsAndCols(2, 3);   // three more states, without covariance to the others
class QUORVEL_API SymmetricMatrix : public TriMatrix {
 public:
  /// Order 0, no array; the singularity count is -1.
  SymmetricMatrix() noexcept;
  /// n x n zeros.
  explicit SymmetricMatrix(size_type n);
  /// Throws 40180 when rows != cols.
  SymmetricMatrix(size_type rows, size_type cols);

  // Copies are deep and throw 50140 when the source is not ok; a dispensable source gives its storage and is
  // destroyed. Moves check nothing, leave the source of order 0 and destroy it when it is dispensable.
  SymmetricMatrix(SymmetricMatrix& source);
  SymmetricMatrix(const SymmetricMatrix& source);
  SymmetricMatrix(SymmetricMatrix&& source) noexcept;
  SymmetricMatrix& operator=(SymmetricMatrix& source);
  SymmetricMatrix& operator=(const SymmetricMatrix& source);
  SymmetricMatrix& operator=(SymmetricMatrix&& source) noexcept;

  /// The diagonal, zeros elsewhere; the singularity count stays as it was (the triangular kinds take the source's);
  /// a dispensable source is consumed. Throws 50240.
  SymmetricMatrix(const DiagonalMatrix& source);
  SymmetricMatrix& operator=(const DiagonalMatrix& source);
  /// All stored elements, wherever in the source they are stored; count and source as above. Throws 52300.
  SymmetricMatrix(const SymmetricSparseMatrix& source);
  SymmetricMatrix& operator=(const SymmetricSparseMatrix& source);
  /// As SingleArrayMatrix::operator=(double): every stored double becomes x. Throws 50000.
  SymmetricMatrix& operator=(double x);

  /// The class name is "SymmetricMatrix"; the kind is symmetric.
  const char* ClassName() const override;
  bool IsSymmetric() const override;

  void PrintArray(std::FILE* file, const char* format, int width, int precision) const override;

  /// Exchanges everything but the dispensable flags, in constant time.
  void Swap(SymmetricMatrix& other) noexcept;

  /// Non-zero elements of the full n x n matrix: each stored one off the diagonal counts twice. Unchecked. (Through a
  /// base reference the stored doubles are counted instead.)
  size_type NumberNonZero() const;

  /// Exchanges rows i and j together with columns i and j. Throws 60021 when either is >= n.
  void SwapRowsAndCols(size_type i, size_type j);

  /// Negates a dispensable matrix in place and returns it; otherwise a new dispensable copy, negated. Throws 50450.
  [[nodiscard]] SymmetricMatrix& operator-();
  [[nodiscard]] SymmetricMatrix& operator-() const;
  /// Every stored element times s; 0 gives +0.0 everywhere, even over NaN. Neither checks anything: no flag, no
  /// pending code. The singularity count stays.
  SymmetricMatrix& operator*=(double s);
  /// The same with 1.0 / s (not a division per element). s = 0 gives infinities or NaN.
  SymmetricMatrix& operator/=(double s);

  // Element-wise; the singularity count becomes -1; a dispensable operand other than *this is consumed. Throws
  // 40340 / 50340 (same kind), 40280 / 50280 (diagonal),
  // 40000 / 50000 (sparse) for sizes / not ok.
  SymmetricMatrix& operator+=(const SymmetricMatrix& b);
  SymmetricMatrix& operator+=(const DiagonalMatrix& b);
  SymmetricMatrix& operator+=(const SymmetricSparseMatrix& b);
  SymmetricMatrix& operator-=(const SymmetricMatrix& b);
  SymmetricMatrix& operator-=(const DiagonalMatrix& b);
  SymmetricMatrix& operator-=(const SymmetricSparseMatrix& b);

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
