// SparseMatrix: the element store of the two sparse kinds, and what both can do.
//
// Every stored element is one record that sits in two lists at once: the list of its row in ascending column order and
// the list of its column in ascending row order. Records come from a pool of blocks owned by the matrix; removed ones
// go to a free chain and are reused. Indices count from 0.
#ifndef QUORVEL_SPARSEMATRIX_H
#define QUORVEL_SPARSEMATRIX_H

#include "quorvel/Matrix.h"

/// One stored element. On machines with 4-byte pointers it takes 24 bytes, value at offset 8.
struct SparseElement {
  SparseElement* nextInRow;  ///< next element of the row (larger column), or null
  SparseElement* nextInCol;  ///< next element of the column (larger row), or null; the free chain while unused
  double value;               ///< its value, which may be a stored zero
  unsigned row;               ///< its row
  unsigned col;               ///< its column
};

/// Base of RegularSparseMatrix (kind 5, any shape) and SymmetricSparseMatrix (kind 6, which stores only row <= col and
/// redirects every other cell to its mirror image).
///
/// *Stored* elements are what the operations below work on: a stored zero is an element, an absent cell is not. Put and
/// the element reference never store a zero; MultRow, Mult and the low-level inserts may.
///
/// Codes: line operations and sizes throw code + offset as dense matrices do; the fixed codes (62040 to 62240, 32020,
/// 32030, 82160) never destroy a dispensable matrix. Exhausted memory is a std::bad_alloc (no code): the call then
/// changed nothing, or, where it was filling the matrix, left it consistent with what had been filled.
///
/// Singularity count: sparse operations leave it alone, except that swaps, moves and take-overs carry it.
///
/// Cost: a lookup or a single insertion walks the row or column lists involved; whole-matrix operations (copies,
/// conversions, scalar assignment, opening and removing lines) cost the elements they touch plus rows and columns.
///
///   RegularSparseMatrix A(1000, 1000);
///   A(3, 7) = 2.5;         // stores an element
///   A(3, 7) -= 2.5;        // removes it: its value is exactly 0
///   double sum = A.SumRow(3);
class QUORVEL_API SparseMatrix : public Matrix {
 public:
  class proxy;

  ~SparseMatrix() override;

  // -------------------------------------------------------------------------------------------------------------------
  // Size, memory, state.

  /// rowCount = m, colCount = n.
  void GetSize(size_type& rowCount, size_type& colCount) const override;

  /// Elements inside both the old and the new bounds stay, whatever the third argument says; with a size of 0 in either
  /// dimension all elements go (the pool stays). Allocates first: a failure leaves the matrix unchanged. Throws 50000
  /// (not ok), 40000 (symmetric kind with different sizes). A dispensable matrix cannot be resized between non-zero
  /// sizes: growing it throws 40000, shrinking it 60000, and it is destroyed.
  void SetSize(size_type rowCount, size_type colCount, bool keep) override;

  /// 4 * (6 * slots + rows + cols), slots counting every record of every block: 24 bytes a slot, 4 a list head, the
  /// figures of the 32-bit layout on every machine. The real records of a 64-bit machine take 32 bytes.
  std::size_t HeapReserved() const override;
  /// 4 * (6 * used + rows + cols).
  std::size_t HeapUsed() const override;

  /// Number of rows, of columns.
  size_type nrows() const noexcept { return rows; }
  size_type ncols() const noexcept { return cols; }
  /// The order of a square matrix, 0 of any other.
  size_type ndim() const noexcept { return rows == cols ? rows : 0; }

  /// Makes this a new empty store of that size, for a fresh or freed one: what it held is not released.
  void Initialize(unsigned rowCount, unsigned colCount);
  /// Removes every element; pool, sizes and block size stay. All records but the block links and one end mark can be
  /// used again. Cost: slots + rows + cols.
  void Clear() noexcept;
  /// Releases everything: 0 x 0, no pool, no chosen block size.
  void FreeMemory() noexcept;

  /// Chooses n + 1 records per block, one of which links the blocks; true when no block exists yet, else nothing
  /// changes (also after Clear). The default is min(rows, cols) + 20. n = 0 counts as 1 when the first block comes;
  /// n = 2^32 - 1 means "not chosen".
  bool SetGrowBy(unsigned n) noexcept;
  /// Adds a block and makes its first record the head of the free chain; the chain there was is lost until Clear.
  void AllocateMoreSpaces();

  /// this = source, negated when asked for. Takes the size, the block size when this matrix has none, and every element,
  /// stored zeros included; a regular matrix gets both triangles of a symmetric one. Consumes nothing; copying onto
  /// itself empties the matrix. Throws 52010. Cost: elements + rows + cols.
  void Copy(const SparseMatrix& source, bool negate);

  // -------------------------------------------------------------------------------------------------------------------
  // Elements.

  /// The value of a cell, 0.0 when absent. Throws 62090.
  double operator()(size_type row, size_type col) const;
  /// A reference to the cell, stored or not. Throws 62090 here, not when it is used.
  proxy operator()(size_type row, size_type col);
  /// Throws 62090 unless row < rows and col < cols.
  void ThrowSparseMatrixAccessor(unsigned row, unsigned col) const;

  /// Sets a cell; 0.0 (of either sign) removes it. Throws 62060 for a non-zero value outside the matrix; a zero there
  /// does nothing. Reads no flag and no pending code.
  void Put(unsigned row, unsigned col, double value);

  /// The stored element of a cell, null when there is none (also outside the matrix). Walks one list: the row's for
  /// cells on or below the diagonal, the column's above it.
  SparseElement* Cell_Loc(unsigned row, unsigned col) const noexcept;

  /// The first element of a list of the store (of the symmetric kind only what that row or column stores itself).
  /// Throw 62170 (row), 62180 (column).
  SparseElement* GetFirstInRow(unsigned row) const;
  SparseElement* GetFirstInCol(unsigned col) const;

  // Low level: no check for a cell that is already stored; look it up first.

  /// Stores a new element (symmetric kind: at (min, max)). Throws 62060.
  SparseElement* SparseMatrixInsert(unsigned row, unsigned col, double value);
  /// Appends behind `prevInRow` (null: as the row's first element) without looking at the row; the indices are taken as
  /// given. Below the diagonal of a symmetric matrix the element enters its row list only. Throws 62190. Cost: one walk
  /// along the column (the operations that fill a whole matrix save it). To fill a matrix row by row:
  ///
  ///   for (unsigned i = 0; i < A.nrows(); ++i) {
  ///     SparseElement* prev = nullptr;
  ///     for (unsigned j : columns_of(i)) prev = A.SparseMatrixInsert(prev, i, j, value(i, j));  // j ascending
  ///   }
  SparseElement* SparseMatrixInsert(SparseElement* prevInRow, unsigned row, unsigned col, double value);
  /// Link a record into one list, in front of an equal index. They set nothing else. Throw 62040, 62050.
  void SparseMatrixRowInsert(unsigned row, unsigned col, SparseElement* e);
  void SparseMatrixColInsert(unsigned row, unsigned col, SparseElement* e);
  /// Unlink the record of e's indices from one list; nothing happens when the list has none.
  void SparseMatrixRowRemove(SparseElement* e) noexcept;
  void SparseMatrixColRemove(SparseElement* e) noexcept;
  /// Unlinks e from both lists (it alone, when its cell is stored twice) and returns it to the pool. When the chain is
  /// down to its end mark, the returned record becomes the end mark and the old one is lost until Clear (kept).
  void SparseMatrixRemove(SparseElement* e) noexcept;
  /// The same with the predecessor in the row given (null: e is the row's first element).
  void SparseMatrixRemove(SparseElement* prevInRow, SparseElement* e) noexcept;

  // -------------------------------------------------------------------------------------------------------------------
  // Lines.

  /// One row or column, elements first..last (npos: to the end): sum, sum of squares, negate, scale. In the symmetric
  /// kind a line is the whole row, both sides of the diagonal. Sums start at 0.0 and add stored elements in increasing
  /// index. MultRow and MultCol leave products of zero stored. Throw 50000 (not ok), 40000 (index or range).
  double SumRow(unsigned row, unsigned first = 0, unsigned last = npos) const;
  double SumCol(unsigned col, unsigned first = 0, unsigned last = npos) const;
  double SumSqRow(unsigned row, unsigned first = 0, unsigned last = npos) const;
  double SumSqCol(unsigned col, unsigned first = 0, unsigned last = npos) const;
  void NegateRow(unsigned row, unsigned first = 0, unsigned last = npos);
  void NegateCol(unsigned col, unsigned first = 0, unsigned last = npos);
  void MultRow(unsigned row, double factor, unsigned first = 0, unsigned last = npos);
  void MultCol(unsigned col, double factor, unsigned first = 0, unsigned last = npos);

  /// Removes the stored elements of row `row` in columns first..last, where `last` is clamped to rows - 1 (to the number
  /// of rows, kept): in a matrix wider than high, columns from `rows` on stay. Of the symmetric kind only the part that
  /// the row stores goes. Throws 32020 when row >= rows or first > last.
  void ClearRow(unsigned row, unsigned first = 0, unsigned last = npos);
  /// The same for a column, clamped to cols - 1. Throws 32030.
  void ClearCol(unsigned col, unsigned first = 0, unsigned last = npos);

  /// No stored element in the line (symmetric kind: in the whole line). Throw 62170 (row), 62180 (column).
  bool IsRowEmpty(unsigned row) const;
  bool IsColEmpty(unsigned col) const;

  /// Clears `out` and copies the non-zero elements first..last of the row to out(column, 0). `out` keeps its size: an
  /// element that does not fit throws 62060, the earlier ones stay. Symmetric kind: only what the row stores itself
  /// (see GetLimitedRow). No npos here. Throws 62200 when row >= rows, first > last or last >= cols.
  void GetRowElements(unsigned row, unsigned first, unsigned last, SparseMatrix& out) const;
  /// The same for a column, to out(row, 0). Throws 62210 when first > last, last >= rows, col >= cols or col >= rows:
  /// a matrix wider than high refuses its columns from `rows` on (kept).
  void GetColElements(unsigned col, unsigned first, unsigned last, SparseMatrix& out) const;

  /// Opening and removing rows or columns; count 0 does nothing, unchecked. The symmetric kind is not kept symmetric by
  /// one of them alone: use SetSize there. Insertions throw 50000 (not ok), 40000 (dispensable), 30000 (position),
  /// removals 60000.
  void InsertRows(unsigned at, unsigned count);
  void InsertCols(unsigned at, unsigned count);
  void RemoveRows(unsigned at, unsigned count);
  void RemoveCols(unsigned at, unsigned count);

  // -------------------------------------------------------------------------------------------------------------------
  // The whole matrix.

  /// Every cell becomes v (symmetric kind: its upper triangle is stored); v = 0 empties the matrix. Throws 50881.
  SparseMatrix& operator=(double v);
  /// Changes the sign of every stored element.
  SparseMatrix& Negate() noexcept;
  /// this = factor * source. factor = 0 empties this matrix and leaves its size; products of zero stay stored; consumes
  /// nothing. Throws 50000, 52010. Hides the free function Mult inside members: write ::Mult there.
  void Mult(const SparseMatrix& source, double factor);
  /// Largest and smallest stored value: absent cells take no part. -infinity and +infinity when nothing is stored.
  /// Consumes a dispensable matrix.
  double Max() const;
  double Min() const;

  /// Puts random values on random cells until `count` (at most all) are stored: rand() % rows for the row, rand() % cols
  /// for the column, lo + rand() * ((hi - lo) / 2147483647.0) for the value, in this order. Draws nothing when enough is
  /// stored or every value would be 0. Throws 62060 for a mirror image outside (symmetric kind with different sizes).
  void SetRandom(double lo, double hi, unsigned count);
  /// Every diagonal cell, from the last to the first; values of magnitude 1e-200 or less become -1e-200 or 1e-200.
  void SetRandomDiagonal(double lo, double hi);

  /// this = source, for T one of the five dense kinds: non-zero elements only (NaN is one), row by row. A regular sparse
  /// matrix gets both triangles of a symmetric source; a symmetric one the elements that such a source stores, and
  /// should be given no other source than a symmetric or diagonal one. Consumes a dispensable source. Throws 52260.
  template <class T>
  void CopyMat(const T& source);

  // -------------------------------------------------------------------------------------------------------------------
  // The store, to be read: only the library writes it.

  SparseElement* freeHead;    ///< free chain, linked through nextInCol; its last record is an end mark, never handed out
  SparseElement* firstBlock;  ///< the last record of a block links to the next block
  SparseElement** rowHeads;   ///< first element of each row; null when there are no rows
  SparseElement** colHeads;   ///< first element of each column
  unsigned used;              ///< number of stored elements
  size_type rows;             ///< number of rows
  size_type cols;             ///< number of columns
  unsigned growBy;            ///< records per block; 0: not chosen yet

 protected:
  SparseMatrix(class_type kind, unsigned rowCount, unsigned colCount);
  /// Takes the whole store, its size and its block size, and leaves the source 0 x 0; a dispensable source is destroyed.
  SparseMatrix(SparseMatrix&& source) noexcept;
  SparseMatrix& operator=(SparseMatrix&& source) noexcept;
  /// Exchanges everything but kinds and dispensable flags.
  void SwapStore(SparseMatrix& other) noexcept;

 private:
  explicit SparseMatrix(class_type kind) noexcept;
  void TakeStore(SparseMatrix& source) noexcept;
};

/// Reference to a cell, stored or not. It looks the cell up at every use, so it outlives insertions and removals.
class QUORVEL_API SparseMatrix::proxy {
 public:
  /// What operator()(row, col) of the matrix returns: it refers to the matrix, which must outlive it.
  proxy(SparseMatrix& matrix, size_type row, size_type col) noexcept : matrix_(&matrix), row_(row), col_(col) {}
  proxy(const proxy&) = default;
  /// 0.0 when the cell is absent.
  operator double() const;
  /// Copies the value that `other` refers to.
  proxy& operator=(const proxy& other);
  /// Changes the cell. One whose new value is exactly 0 is removed, and an absent one stays absent when it would become
  /// 0.
  proxy& operator=(double value);
  proxy& operator+=(double d);
  proxy& operator-=(double d);
  proxy& operator*=(double d);
  /// Sets the cell to d / value: the divisor over the stored value, not the reverse (kept). To divide, write
  /// `a(i, j) = a(i, j) / d`. Throws 82160 for d = 0, also on an absent cell, which otherwise stays absent.
  proxy& operator/=(double d);

 private:
  /// The stored cell gets the value, or goes when that is 0.
  void Change(SparseElement* e, double value) const;
  SparseMatrix* matrix_;
  size_type row_;
  size_type col_;
};

inline SparseMatrix::proxy SparseMatrix::operator()(size_type row, size_type col) {
  ThrowSparseMatrixAccessor(row, col);
  return proxy(*this, row, col);
}

extern template void SparseMatrix::CopyMat(const RegularMatrix& source);
extern template void SparseMatrix::CopyMat(const SymmetricMatrix& source);
extern template void SparseMatrix::CopyMat(const UpperTriangularMatrix& source);
extern template void SparseMatrix::CopyMat(const LowerTriangularMatrix& source);
extern template void SparseMatrix::CopyMat(const DiagonalMatrix& source);

#endif
