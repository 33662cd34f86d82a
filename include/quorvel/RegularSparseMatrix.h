// RegularSparseMatrix: general m x n matrix that stores only non-zero elements. Kind 5.
#ifndef QUORVEL_REGULARSPARSEMATRIX_H
#define QUORVEL_REGULARSPARSEMATRIX_H

#include "quorvel/SparseMatrix.h"

/// Elements, line operations and memory: see SparseMatrix.
///
///   RegularSparseMatrix A(3, 2);
///   A(0, 1) = 2.0;
///   A(2, 0) = -1.0;
///   SymmetricMatrix N(ATA(A));   // [1 0; 0 4]
class QUORVEL_API RegularSparseMatrix : public SparseMatrix {
 public:
  /// 0 x 0, no pool; the singularity count is -1.
  RegularSparseMatrix();
  /// rows x cols, nothing stored.
  RegularSparseMatrix(size_type rowCount, size_type colCount);

  // Copies are deep and throw 50140 when the source is not ok; a dispensable source gives its storage and is
  // destroyed. A new copy takes the block size of its source, an assignment keeps a chosen one. Moves check nothing,
  // leave the source 0 x 0 and destroy it when it is dispensable.
  RegularSparseMatrix(RegularSparseMatrix& source);
  RegularSparseMatrix(const RegularSparseMatrix& source);
  RegularSparseMatrix(RegularSparseMatrix&& source) noexcept;
  RegularSparseMatrix& operator=(RegularSparseMatrix& source);
  RegularSparseMatrix& operator=(const RegularSparseMatrix& source);
  RegularSparseMatrix& operator=(RegularSparseMatrix&& source) noexcept;

  /// Both triangles; the target keeps its singularity count; a dispensable source is consumed. Throws 52010.
  RegularSparseMatrix(const SymmetricSparseMatrix& source);
  RegularSparseMatrix& operator=(const SymmetricSparseMatrix& source);

  // From the dense kinds: the elements that are not 0.0, both triangles of a symmetric one. The target keeps its
  // singularity count; a dispensable source is consumed. Throw 52260.
  RegularSparseMatrix(const RegularMatrix& source);
  RegularSparseMatrix(const SymmetricMatrix& source);
  RegularSparseMatrix(const UpperTriangularMatrix& source);
  RegularSparseMatrix(const LowerTriangularMatrix& source);
  RegularSparseMatrix(const DiagonalMatrix& source);
  RegularSparseMatrix& operator=(const RegularMatrix& source);
  RegularSparseMatrix& operator=(const SymmetricMatrix& source);
  RegularSparseMatrix& operator=(const UpperTriangularMatrix& source);
  RegularSparseMatrix& operator=(const LowerTriangularMatrix& source);
  RegularSparseMatrix& operator=(const DiagonalMatrix& source);
  /// As SparseMatrix::operator=(double): every cell becomes v. Throws 50881.
  RegularSparseMatrix& operator=(double v);

  /// The class name is "RegularSparseMatrix"; the kind is not symmetric, whatever the elements are.
  const char* ClassName() const override;
  bool IsSymmetric() const override;

  void PrintArray(std::FILE* file, const char* format, int width, int precision) const override;

  /// Exchanges everything but the dispensable flags, in constant time.
  void Swap(RegularSparseMatrix& other) noexcept;

  /// Negates a dispensable matrix in place and returns it; otherwise a new dispensable copy, negated. Throws 50450.
  [[nodiscard]] RegularSparseMatrix& operator-();
  [[nodiscard]] RegularSparseMatrix& operator-() const;
  /// As Mult(*this, s): s = 0 removes every element, other products of zero stay stored.
  RegularSparseMatrix& operator*=(double s);

  // In-place sums. The kind and the singularity count stay; sums of exactly 0 are removed; a dispensable operand other
  // than *this is consumed. Throw 50000 (not ok) and 40000 (sizes); a dense operand that is not diagonal is first
  // converted to a sparse one, which throws 52260 instead of 50000.
  RegularSparseMatrix& operator+=(const RegularSparseMatrix& b);
  RegularSparseMatrix& operator+=(const SymmetricSparseMatrix& b);
  RegularSparseMatrix& operator+=(const RegularMatrix& b);
  RegularSparseMatrix& operator+=(const SymmetricMatrix& b);
  RegularSparseMatrix& operator+=(const UpperTriangularMatrix& b);
  RegularSparseMatrix& operator+=(const LowerTriangularMatrix& b);
  RegularSparseMatrix& operator+=(const DiagonalMatrix& b);
  RegularSparseMatrix& operator-=(const RegularSparseMatrix& b);
  RegularSparseMatrix& operator-=(const SymmetricSparseMatrix& b);
  RegularSparseMatrix& operator-=(const RegularMatrix& b);
  RegularSparseMatrix& operator-=(const SymmetricMatrix& b);
  RegularSparseMatrix& operator-=(const UpperTriangularMatrix& b);
  RegularSparseMatrix& operator-=(const LowerTriangularMatrix& b);
  RegularSparseMatrix& operator-=(const DiagonalMatrix& b);

  // Elements first..last of a line as a column vector: GetRowElements and GetColElements, with their codes. `out` must
  // be long enough and may be *this, which then ends up empty.
  void GetLimitedRow(unsigned row, RegularSparseMatrix& out, unsigned first, unsigned last) const;
  void GetLimitedCol(unsigned col, RegularSparseMatrix& out, unsigned first, unsigned last) const;
  /// The whole line. Throws 62230 when row >= rows; 62200 when there are no columns.
  void GetEntireRow(unsigned row, RegularSparseMatrix& out) const;
  /// Throws 62220 when col >= cols; 62210 when col >= rows or there are no rows.
  void GetEntireCol(unsigned col, RegularSparseMatrix& out) const;
};

#endif
