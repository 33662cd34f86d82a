// SymmetricSparseMatrix: symmetric n x n matrix that stores only non-zero elements with row <= col. Class name
// "SymmetricSparseMatrix", kind 6.
#ifndef QUORVEL_SYMMETRICSPARSEMATRIX_H
#define QUORVEL_SYMMETRICSPARSEMATRIX_H

#include "quorvel/SparseMatrix.h"

/// Elements are read and written mirrored: (i, j) and (j, i) are one element. Line operations and memory: see
/// SparseMatrix.
///
///   SymmetricSparseMatrix N(1000);
///   N(7, 3) = -1.0;              // stored once, at (3, 7)
///   double element = N(3, 7);    // -1.0
class QUORVEL_API SymmetricSparseMatrix : public SparseMatrix {
 public:
  /// 0 x 0, no pool; the singularity count is -1.
  SymmetricSparseMatrix();
  /// n x n, nothing stored.
  explicit SymmetricSparseMatrix(size_type n);
  /// The sizes are taken as given, unchecked (SetSize refuses different ones): pass equal ones.
  SymmetricSparseMatrix(size_type rowCount, size_type colCount);

  // Copies are deep and throw 50140 when the source is not ok; a dispensable source gives its storage and is
  // destroyed. A new copy takes the block size of its source, an assignment keeps a chosen one. Moves check nothing,
  // leave the source of order 0 and destroy it when it is dispensable.
  SymmetricSparseMatrix(SymmetricSparseMatrix& source);
  SymmetricSparseMatrix(const SymmetricSparseMatrix& source);
  SymmetricSparseMatrix(SymmetricSparseMatrix&& source) noexcept;
  SymmetricSparseMatrix& operator=(SymmetricSparseMatrix& source);
  SymmetricSparseMatrix& operator=(const SymmetricSparseMatrix& source);
  SymmetricSparseMatrix& operator=(SymmetricSparseMatrix&& source) noexcept;

  // From the dense kinds: the elements that are not 0.0. The target keeps its singularity count; a dispensable source
  // is consumed. Throw 50140 (symmetric source), 52260 (diagonal).
  SymmetricSparseMatrix(const SymmetricMatrix& source);
  SymmetricSparseMatrix(const DiagonalMatrix& source);
  SymmetricSparseMatrix& operator=(const SymmetricMatrix& source);
  SymmetricSparseMatrix& operator=(const DiagonalMatrix& source);
  /// As SparseMatrix::operator=(double): every cell becomes v. Throws 50881.
  SymmetricSparseMatrix& operator=(double v);

  /// The class name is "SymmetricSparseMatrix"; the kind is symmetric.
  const char* ClassName() const override;
  bool IsSymmetric() const override;

  void PrintArray(std::FILE* file, const char* format, int width, int precision) const override;

  /// Exchanges everything but the dispensable flags, in constant time.
  void Swap(SymmetricSparseMatrix& other) noexcept;

  /// Elements of the full n x n matrix that are stored: 2 * used - (rows that begin on the diagonal). Stored zeros
  /// count. Unchecked.
  size_type NumberNonZero() const noexcept;

  /// Negates a dispensable matrix in place and returns it; otherwise a new dispensable copy, negated. Throws 50450.
  [[nodiscard]] SymmetricSparseMatrix& operator-();
  [[nodiscard]] SymmetricSparseMatrix& operator-() const;
  /// As Mult(*this, s): s = 0 removes every element, other products of zero stay stored.
  SymmetricSparseMatrix& operator*=(double s);

  // In-place sums. The kind and the singularity count stay; sums of exactly 0 are removed; a dispensable operand other
  // than *this is consumed. Throw 50000 (not ok) and 40000 (sizes); a symmetric dense operand is first converted to a
  // sparse one, which throws 50140 instead of 50000.
  SymmetricSparseMatrix& operator+=(const SymmetricSparseMatrix& b);
  SymmetricSparseMatrix& operator+=(const SymmetricMatrix& b);
  SymmetricSparseMatrix& operator+=(const DiagonalMatrix& b);
  SymmetricSparseMatrix& operator-=(const SymmetricSparseMatrix& b);
  SymmetricSparseMatrix& operator-=(const SymmetricMatrix& b);
  SymmetricSparseMatrix& operator-=(const DiagonalMatrix& b);

  /// Elements first..last of line i as a column vector in `out`, at (index, 0). Right when the range lies on one side of
  /// the diagonal (i <= first or i >= last). A range across it is put together wrongly (kept): the part right of the
  /// diagonal is buffered by column and read back from 0 on, so that out(i + k, 0) gets what column k - 1 holds there,
  /// and a column >= last - i throws 62060. Read such a line in two calls, or through a RegularSparseMatrix. Throws
  /// 62240 unless first <= last, i < cols and last < rows.
  void GetLimitedCol(unsigned i, RegularSparseMatrix& out, unsigned first, unsigned last) const;
  /// The same: rows are columns.
  void GetLimitedRow(unsigned i, RegularSparseMatrix& out, unsigned first, unsigned last) const;
  /// Always throw 62240: they ask for one element past the end (kept). Use GetLimitedCol. (A matrix made with different
  /// sizes may throw 62060, 62200 or 62210 instead.)
  void GetEntireCol(unsigned i, RegularSparseMatrix& out) const;
  void GetEntireRow(unsigned i, RegularSparseMatrix& out) const;
};

#endif
