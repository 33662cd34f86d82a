// Matrix and the bases of the dense kinds, the error scheme.
#ifndef QUORVEL_MATRIX_H
#define QUORVEL_MATRIX_H

#include <cstddef>
#include <cstdio>

#include "quorvel/export.h"
#include "quorvel/forward.h"

namespace quorvel::detail {
struct Access;
}

/// The one exception type of the library; it carries the code that was thrown. (A request for 2^28 or more doubles
/// throws std::bad_array_new_length instead, and the sparse pool reports exhausted memory as std::bad_alloc.)
class QUORVEL_API MatrixException final {
 public:
  /// Carries `code`; nothing becomes pending.
  explicit MatrixException(int code) noexcept : code_(code) {}
  /// The number: operation code + offset, or a fixed code.
  int code() const noexcept { return code_; }

 private:
  int code_;
};

// ---------------------------------------------------------------------------------------------------------------------
// Errors. Misuse throws MatrixException, which carries one int: operation code + offset, so that the number tells
// which operation failed and why. The first code that is thrown stays *pending*: every later checked operation
// throws it again until abort_reset() is called, so that a failure cannot be followed by further work unnoticed.
//
//   offset  meaning
//   10000   a required pointer is null (out of memory: 10680)
//   30000   an insertion position lies beyond the extent
//   40000   size, shape or index range does not fit; an operand is empty; a dispensable matrix where none may be
//   50000   an operand is not ok
//   60000   a removal or a range lies beyond the extent (or its matrix is not ok or dispensable)
//
// Numerical singularity is no error: it is counted, see Matrix::nsing(). The pending code and the abort callback are two
// process-wide variables without locking: one thread at a time.

/// Installs the function that is called with every code before it is thrown; null removes it. The callback may throw
/// or exit; when it returns, the library throws MatrixException. abort_reset() inside it clears the pending code, but
/// the original code is still thrown.
QUORVEL_API void SetAbortCallback(void (*callback)(int));

/// The pending code, 0 when there is none.
QUORVEL_API int GetErrorCode();

/// 1 while a code is pending, else 0.
QUORVEL_API int ErrorState();

/// Clears the pending code. The callback stays installed. Matrices marked not ok stay so.
QUORVEL_API void abort_reset();

/// Makes `code` pending, or replaces it by the code that already is (the first failure wins), then calls the callback.
/// A code of 0 does nothing at all. With it a function of yours reports an error in the library's way:
///
///   int code = 40000 + 7000;
///   abort_set(code);
///   throw MatrixException(code);
QUORVEL_API void abort_set(int& code);

/// Throws code + 10000 (through abort_set) when p is null.
QUORVEL_API void TestNULL(const void* p, int code);

/// Throws MatrixException(code) unchanged: nothing becomes pending, no callback runs.
[[noreturn]] QUORVEL_API void M_abort(int code);

/// A new dispensable symmetric positive definite matrix of order n for trials: element (i, j) is min(i, j) + 1. It
/// lives until an operation consumes it.
[[nodiscard]] QUORVEL_API SymmetricMatrix* TestMat(unsigned n);

// ---------------------------------------------------------------------------------------------------------------------

/// Base of all kinds: singularity count, the not-ok and dispensable flags, the kind, and the checks.
///
/// A *dispensable* matrix is a temporary on the heap (the result of an operator, say) that belongs to whatever
/// operation consumes it next: that operation takes over its storage or destroys it, also when it fails. Bind such a
/// result to a value (`RegularMatrix C(A + B);`) and never use a reference to it twice.
///
/// A matrix that is *not ok* holds no valid contents: a failed assignment marks its target so. Checked operations
/// refuse it; set_ok(true), Swap, or move assignment from an ok matrix make it usable again.
class QUORVEL_API Matrix {
 public:
  using size_type = unsigned int;  ///< Sizes and indices; the largest value is npos.
  using nsing_type = int;          ///< Singularity counts; -1: not known.

  /// The kind of a matrix, as kind() reports it.
  enum class_type : unsigned char {
    regular = 0,           ///< RegularMatrix
    symmetric = 1,         ///< SymmetricMatrix
    upper_triangular = 2,  ///< UpperTriangularMatrix
    lower_triangular = 3,  ///< LowerTriangularMatrix
    diagonal = 4,          ///< DiagonalMatrix
    regular_sparse = 5,    ///< RegularSparseMatrix
    symmetric_sparse = 6   ///< SymmetricSparseMatrix
  };

  /// As a last index of a row or column operation: to the end of the line. It has no such meaning in block operations.
  static const size_type npos = 0xFFFFFFFFu;

  virtual ~Matrix();

  /// Writes the elements line by line, each by one fprintf(file, format, width, precision, value, separator) with a
  /// blank between the elements of a line and a line feed after the last. Checks and consumes nothing. A lower
  /// triangular matrix is written as a ragged triangle and a diagonal one as n lines of one value; the other kinds as
  /// full rows.
  virtual void PrintArray(std::FILE* file, const char* format, int width, int precision) const = 0;

  /// Bytes reserved on the heap. Dense: 8 per reserved double. Sparse: the figures of the 32-bit layout on every
  /// machine, 24 per pool slot and 4 per row and column head.
  virtual std::size_t HeapReserved() const = 0;

  /// Bytes in use: as HeapReserved, but only stored elements count.
  virtual std::size_t HeapUsed() const = 0;

  /// The name of the class: "RegularMatrix", "SymmetricMatrix", ...
  virtual const char* ClassName() const = 0;

  /// True for the symmetric, diagonal and symmetric sparse kinds, whatever the element values.
  virtual bool IsSymmetric() const = 0;

  /// Number of rows and columns. Checks nothing.
  virtual void GetSize(size_type& rows, size_type& cols) const = 0;

  /// Changes the size; with `keep` the elements inside both sizes keep their place and new ones are zero, without it
  /// the contents of a dense matrix are unspecified (a sparse matrix keeps its contents in any case). Storage never
  /// shrinks. Throws 50000 (not ok), 40000 (rows != cols for a square kind); with keep a dispensable matrix that would
  /// have to grow or shrink throws 40000 or 60000.
  virtual void SetSize(size_type rows, size_type cols, bool keep) = 0;

  // State. None of these checks or consumes anything.

  /// Number of rows, of columns.
  size_type nrows() const;
  size_type ncols() const;
  /// Number of pivots that the factorisation or inversion which made this matrix found singular; -1: not known.
  nsing_type nsing() const noexcept { return nsing_; }
  /// False for a matrix without valid contents, which checked operations refuse.
  bool ok() const noexcept { return (flags_ & not_ok_bit) == 0; }
  /// True for a temporary that its next user consumes.
  bool dispensable() const noexcept { return (flags_ & dispensable_bit) != 0; }
  /// The kind, constant over the life of the object.
  class_type kind() const noexcept { return kind_; }
  /// Sets the singularity count, also of a const matrix: it describes how the elements came about, and is none of them.
  void set_nsing(nsing_type count) const noexcept { nsing_ = count; }
  /// Declares the contents valid or not.
  void set_ok(bool ok) noexcept;
  /// Only an object made by plain `new` may be marked: its consumer deletes it.
  void set_dispensable(bool dispensable) noexcept;

  /// Writes a header (when asked for), the elements as "%*.*f%c" (fixed) or "%*.*e%c", and an empty line. Note the
  /// order: precision before width. Throws 50870 when not ok; consumes a dispensable matrix.
  ///
  ///   (A + B).Print(stdout, true, false, 2, 6);   // "  4.00   1.00" and so on
  void Print(std::FILE* file, bool fixed, bool header, int precision, int width) const;

  /// Checks, to be used by functions of your own. Each throws the pending code when there is one, else code + offset
  /// when its condition fails (nothing when that sum is 0). Before it throws, it destroys a dispensable *this and, in the
  /// two-operand checks, a dispensable `other` (once when both are the same object). Not ok: +50000.
  void ThrowNotOk(int code) const;
  /// Not ok: +50000; no rows or no columns: +40000.
  void ThrowNotOkOrEmpty(int code) const;
  /// Not ok: +50000; dispensable: +50000.
  void ThrowNotOkOrDispensable(int code) const;
  /// Not ok: +50000; dispensable: +40000; at > extent: +30000.
  void ThrowInsert(int code, unsigned at, unsigned extent) const;
  /// Not ok, dispensable, or first + count > extent: +60000 in all three cases.
  void ThrowDimRange(int code, unsigned first, unsigned count, unsigned extent) const;
  /// Not ok: +50000; unless index < count and min <= first <= last <= max: +40000.
  void ThrowForEachIn(int code, unsigned index, unsigned count, unsigned first, unsigned min, unsigned last,
                      unsigned max) const;
  /// Not ok: +50000; not rows x cols: +40000.
  void ThrowNotSize(int code, unsigned rows, unsigned cols) const;
  /// Not ok: +50000; not square: +40000.
  void ThrowNotSquare(int code) const;
  /// Assignment check: this or other not ok: +50000. Before it throws (also for a pending code) it marks *this not ok.
  void ThrowEquals(int code, const Matrix& other);
  /// This or other not ok: +50000; row counts differ: +40000.
  void ThrowNotSameRows(int code, const Matrix& other) const;
  /// This or other not ok: +50000; column counts differ: +40000.
  void ThrowNotSameCols(int code, const Matrix& other) const;
  /// This or other not ok: +50000; sizes differ: +40000.
  void ThrowNotSameDim(int code, const Matrix& other) const;
  /// This or other not ok: +50000; this is not of the other's transposed size: +40000.
  void ThrowNotOppoDim(int code, const Matrix& other) const;
  /// This or other not ok: +50000; columns of this differ from rows of other: +40000.
  void ThrowProduct(int code, const Matrix& other) const;

  /// Destroys *this when it is dispensable; otherwise does nothing. Nothing may touch the object afterwards.
  void DestroyIfDispensable() const noexcept;

 protected:
  explicit Matrix(class_type kind) noexcept : nsing_(-1), flags_(0), kind_(kind) {}
  Matrix(const Matrix&) = delete;
  Matrix& operator=(const Matrix&) = delete;
  /// Takes count and not-ok flag; the source keeps only its dispensable flag.
  Matrix(Matrix&& source) noexcept;
  Matrix& operator=(Matrix&& source) noexcept;
  /// Exchanges count and not-ok flag; each object keeps its dispensable flag and its kind.
  void SwapState(Matrix& other) noexcept;

 private:
  friend struct quorvel::detail::Access;
  static constexpr unsigned char not_ok_bit = 1;
  static constexpr unsigned char dispensable_bit = 2;

  mutable nsing_type nsing_;
  unsigned char flags_;
  class_type kind_;
};

/// Dense storage: one array of doubles, owned by the matrix; its capacity is exactly what was needed and never shrinks.
/// "Stored" doubles are the ones the kind keeps: implicit zeros of the triangular and diagonal kinds take no part in
/// the operations below. Failing to allocate throws 10680 and changes nothing; 2^28 doubles or more are a
/// std::bad_array_new_length.
class QUORVEL_API SingleArrayMatrix : public Matrix {
 public:
  ~SingleArrayMatrix() override;
  std::size_t HeapReserved() const override;
  std::size_t HeapUsed() const override;
  /// Number of stored doubles.
  virtual size_type StoredCount() const = 0;
  /// Number of doubles stored for a matrix of that size (saturated at 2^32 - 1). A square kind with rows != cols
  /// throws the bare value 0 (or the pending code) and destroys itself when dispensable.
  virtual size_type GetArrayCount(size_type rows, size_type cols) const = 0;

  /// The array, in the order of the kind's storage; null when nothing is stored. Valid until the matrix is resized,
  /// assigned to, swapped or consumed.
  double* data() noexcept { return array_; }
  const double* data() const noexcept { return array_; }
  /// Number of doubles that the array has room for.
  size_type capacity() const noexcept { return capacity_; }

  /// Replaces the array by a new one of exactly `count` doubles, zeroed when asked for. The sizes stay: for classes that
  /// set them next.
  void AllocateMemory(size_type count, bool zero);
  /// Makes room for a matrix of that size; keeps the stored doubles at their place in the array.
  void Reserve(size_type rows, size_type cols);
  /// Size 0 x 0 and no array. Throws like SetSize, and then frees nothing.
  void FreeMemory();
  /// Takes size, singularity count and stored doubles of a matrix of the same storage layout, negated when asked for.
  /// Consumes nothing. Throws what SetSize throws.
  void Copy(const SingleArrayMatrix& source, bool negate);
  /// Takes the size and StoredCount() doubles in storage order. Throws 50000 when not ok.
  void Assign(const double* values, size_type rows, size_type cols);
  /// Every stored double becomes x. Throws 50000 when not ok. Only x = 0.0 resets the singularity count to -1; any
  /// other value leaves it (kept on purpose).
  SingleArrayMatrix& operator=(double x);
  /// this = s * source (size taken from source). s = 0 gives +0.0 everywhere, even over NaN; s = -1 negates; s = 1
  /// copies. The singularity count stays. Throws what SetSize throws where the sizes differ. Hides the free function Mult
  /// inside members: write ::Mult there.
  void Mult(const SingleArrayMatrix& source, double s);
  /// Changes the sign of every stored double. Checks nothing.
  void Negate();
  /// Fills from the last stored double to the first with lo + rand() * ((hi - lo) / 2147483647.0). Checks nothing.
  void SetRandom(double lo, double hi);
  /// Stored doubles that are not 0.0 (NaN counts).
  size_type NumberNonZero() const;
  /// Largest and smallest stored double; -infinity and +infinity when nothing is stored. NaN is never selected.
  /// Consumes a dispensable matrix.
  double Max() const;
  double Min() const;
  /// True when every stored double is in the closed interval. Consumes nothing, like the comparisons below.
  bool AllElementsOnInterval(double lo, double hi) const;
  /// AllElementsOnInterval(x - tol, x + tol).
  bool Equals(double x, double tol) const;

  // True when *every* stored double satisfies the relation (so an empty matrix satisfies all six). `A != x` means
  // that no stored double equals x: it is not the negation of `A == x`.
  bool operator==(double x) const;
  bool operator!=(double x) const;
  bool operator<(double x) const;
  bool operator>(double x) const;
  bool operator<=(double x) const;
  bool operator>=(double x) const;

 protected:
  explicit SingleArrayMatrix(class_type kind) noexcept : Matrix(kind), array_(nullptr), capacity_(0) {}
  SingleArrayMatrix(SingleArrayMatrix&& source) noexcept;
  SingleArrayMatrix& operator=(SingleArrayMatrix&& source) noexcept;
  void SwapArray(SingleArrayMatrix& other) noexcept;

 private:
  friend struct quorvel::detail::Access;
  double* array_;
  size_type capacity_;
};

/// Not provided: compiled as C++20, `x != A` would silently mean !(A == x). Write `A != x`.
bool operator!=(double x, const SingleArrayMatrix& A) = delete;

/// Base of the dense kinds with as many rows as columns.
class QUORVEL_API SquareMatrix : public SingleArrayMatrix {
 public:
  class proxy;

  void SetSize(size_type rows, size_type cols, bool keep) override;

  /// Opens `count` zero rows and columns before index `at` (at = n appends); count 0 does nothing, unchecked. Throws
  /// 50000 (not ok), 40000 (dispensable), 30000 (at > n).
  virtual void InsertRowsAndCols(size_type at, size_type count) = 0;
  /// Removes rows and columns at .. at + count - 1; count 0 does nothing, unchecked. Throws 60000 for any failure.
  virtual void RemoveRowsAndCols(size_type at, size_type count) = 0;

  /// The order n, of rows and columns.
  size_type nrows() const noexcept { return n_; }
  size_type ncols() const noexcept { return n_; }
  size_type ndim() const noexcept { return n_; }
  void GetSize(size_type& rows, size_type& cols) const override;

  /// Throws 60090 unless i < n and j < n.
  void ThrowSquareMatrixAccessorGet(unsigned i, unsigned j) const;

  /// Element (i, j): mirrored in a symmetric matrix, zero outside the stored part of the other kinds. Throws 60090.
  double operator()(size_type i, size_type j) const;
  /// The same to read; a write must hit the stored part: throws 60021 (symmetric, triangular) or 60090 (diagonal).
  proxy operator()(size_type i, size_type j);

 protected:
  explicit SquareMatrix(class_type kind) noexcept : SingleArrayMatrix(kind), n_(0) {}
  SquareMatrix(SquareMatrix&& source) noexcept;
  SquareMatrix& operator=(SquareMatrix&& source) noexcept;
  void SwapSquare(SquareMatrix& other) noexcept;

 private:
  friend struct quorvel::detail::Access;
  friend class TriMatrix;
  friend class DiagonalMatrix;
  size_type n_;
};

/// Reference to element (i, j) of a square dense matrix. Reading follows the kind (mirror, implicit zero) and throws
/// 60090 outside the matrix; writing outside the stored part throws 60021 (diagonal: 60090), also for a value of 0.0.
class QUORVEL_API SquareMatrix::proxy {
 public:
  /// What operator()(i, j) of the matrix returns: it refers to the matrix, which must outlive it.
  proxy(SquareMatrix& matrix, size_type i, size_type j) noexcept : matrix_(&matrix), i_(i), j_(j) {}
  proxy(const proxy&) = default;
  /// The value, as the const element access gives it.
  operator double() const;
  /// Copies the value that `other` refers to.
  proxy& operator=(const proxy& other);
  /// Changes the stored element.
  proxy& operator=(double value);
  proxy& operator+=(double value);
  proxy& operator-=(double value);
  proxy& operator*=(double value);
  proxy& operator/=(double value);

 private:
  double& Target() const;
  SquareMatrix* matrix_;
  size_type i_;
  size_type j_;
};

inline SquareMatrix::proxy SquareMatrix::operator()(size_type i, size_type j) { return proxy(*this, i, j); }

/// Base of the packed kinds. All three store n(n+1)/2 doubles by rows of the upper triangle: position (a, b), a <= b,
/// is at b + a(2n - 1 - a)/2. An upper matrix keeps element (r, c) at position (r, c), a lower one at (c, r), a
/// symmetric one at (min, max).
///
/// Line operations work on the stored part of row or column `index`: columns index..n-1 of an upper row, 0..index of a
/// lower row, the whole line of a symmetric matrix (where a row and the column of the same index are the same data).
/// `last` = npos means the end of that part; `first` = npos, together with it, its beginning. They throw 40000 when
/// the range leaves the stored part, 50000 when not ok.
class QUORVEL_API TriMatrix : public SquareMatrix {
 public:
  size_type StoredCount() const override;
  size_type GetArrayCount(size_type rows, size_type cols) const override;
  void InsertRowsAndCols(size_type at, size_type count) override;
  void RemoveRowsAndCols(size_type at, size_type count) override;

  /// Throws 60021 unless r <= c < n, the pair being a position of the packed array.
  void ThrowTriMatrixAccessorSet(unsigned r, unsigned c) const;

  /// Line operations, as described above: set, clear, sum (in increasing index from 0.0), sum of squares, negate, scale.
  void SetRow(size_type index, double value, size_type first = npos, size_type last = npos);
  void SetCol(size_type index, double value, size_type first = npos, size_type last = npos);
  void ClearRow(size_type index, size_type first = npos, size_type last = npos);
  void ClearCol(size_type index, size_type first = npos, size_type last = npos);
  double SumRow(size_type index, size_type first = npos, size_type last = npos) const;
  double SumCol(size_type index, size_type first = npos, size_type last = npos) const;
  double SumSqRow(size_type index, size_type first = npos, size_type last = npos) const;
  double SumSqCol(size_type index, size_type first = npos, size_type last = npos) const;
  void NegateRow(size_type index, size_type first = npos, size_type last = npos);
  void NegateCol(size_type index, size_type first = npos, size_type last = npos);
  void MultRow(size_type index, double factor, size_type first = npos, size_type last = npos);
  void MultCol(size_type index, double factor, size_type first = npos, size_type last = npos);

  /// Sets the stored part of rows (columns) at .. at + count - 1; count 0 does nothing, unchecked. Throws 60000.
  void SetRows(double value, size_type at, size_type count);
  void SetCols(double value, size_type at, size_type count);

 protected:
  TriMatrix(class_type kind, size_type n);
  /// Throws 40180 when rows != cols.
  TriMatrix(class_type kind, size_type rows, size_type cols);
  /// Takes kind and contents of the source, and the storage of a dispensable one. Throws 50140.
  TriMatrix(TriMatrix& source);
  TriMatrix(TriMatrix&& source) noexcept = default;
  TriMatrix& operator=(TriMatrix&& source) noexcept = default;
};

#endif
