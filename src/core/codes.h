// Operation codes and offsets: the thrown number is code + offset, unless it is one of the fixed codes. The comment behind
// a constant is its meaning in the catalogue (docs/CODES.md), a line "do:" below an offset or fixed code what to do.
#ifndef QUORVEL_CORE_CODES_H
#define QUORVEL_CORE_CODES_H

namespace quorvel::detail::offset {

inline constexpr int null_pointer = 10000;  // a required pointer is null
//   do: 10680 means that no memory is left. Any other: pass a pointer that is not null
inline constexpr int insertion = 30000;     // an insertion position lies beyond the extent
//   do: insert at 0 .. extent, where extent appends
inline constexpr int shape = 40000;         // size, shape or index range; empty or dispensable where none may be
//   do: compare nrows() and ncols() of all operands. A temporary needs a name before it is resized or written into
inline constexpr int not_ok = 50000;        // an operand is not ok
//   do: find the failed assignment that marked the operand (its code came first). Then move a good matrix in, or set_ok(true)
inline constexpr int range = 60000;         // a removal or range failure
//   do: compare index, or first + count, with the extent. The matrix must be ok and have a name

}  // namespace quorvel::detail::offset

namespace quorvel::detail::code {

// Checks whose operation has no code of its own.
inline constexpr int none = 0;  // an operation without a code of its own

// Core and dense kinds.
inline constexpr int assign = 140;             // assignment and copy of like kinds; general from packed or diagonal
inline constexpr int packed_size = 180;        // packed kinds: rows != columns in a constructor
inline constexpr int diagonal_size = 210;      // diagonal kind: rows != columns in a constructor
inline constexpr int symmetric_from_diagonal = 240;  // SymmetricMatrix from DiagonalMatrix
inline constexpr int sum_mixed = 280;          // sums of unlike dense kinds and diagonal updates
inline constexpr int sum_reversed = 293;       // difference of two sparse matrices that is formed in the second
inline constexpr int upper_from_diagonal = 330;  // UpperTriangularMatrix from DiagonalMatrix
inline constexpr int sum_like = 340;           // element-wise sums of like dense kinds
inline constexpr int lower_from_diagonal = 380;  // LowerTriangularMatrix from DiagonalMatrix
inline constexpr int negate = 450;             // unary minus
inline constexpr int allocate = 680;           // memory for dense storage
inline constexpr int print = 870;  // Print
inline constexpr int limited_col = 1513;       // GetLimitedCol, GetEntireCol
inline constexpr int limited_row = 1514;       // GetLimitedRow, GetEntireRow
inline constexpr int symmetric_from_sparse = 2300;  // SymmetricMatrix from SymmetricSparseMatrix
inline constexpr int regular_from_symmetric_sparse = 2310;  // RegularMatrix from SymmetricSparseMatrix
inline constexpr int regular_from_sparse = 2320;  // RegularMatrix from RegularSparseMatrix

// Matrix functions.
inline constexpr int triu = 390;  // triu
inline constexpr int triu_sparse = 391;  // triu of a sparse matrix
inline constexpr int tril_sparse = 393;  // tril of a sparse matrix
inline constexpr int tril = 410;  // tril
inline constexpr int sym = 420;  // sym
inline constexpr int sym_sparse = 422;  // sym of a sparse matrix
inline constexpr int scalar = 430;  // scalar
inline constexpr int diag = 460;  // diag
inline constexpr int trace = 460;  // trace
inline constexpr int transpose_triangular = 1020;  // transpose of an upper triangular matrix (a lower one is refused as in an assignment)
inline constexpr int transpose_regular = 1040;  // transpose of a RegularMatrix
inline constexpr int transpose_sparse = 1050;  // transpose of a RegularSparseMatrix

// Inverses and solve operators.
inline constexpr int inverse_triangular = 500;  // inverse of a triangular matrix
inline constexpr int inverse_diagonal = 570;  // inverse of a diagonal matrix
inline constexpr int solve = 580;  // solve operator >
inline constexpr int inverse_shape = 900;   // general inverse: not square
inline constexpr int inverse_not_ok = 940;  // general inverse: not ok

// Factorisations.
inline constexpr int rank_one = 400;  // rank-one update with a plain array
inline constexpr int cholesky = 510;  // CholeskyFactor, InverseByCholesky

// Navigation.
inline constexpr int l1_regression = 6110;  // L1Regression on matrices
inline constexpr int poly_fit = 6120;  // PolyFit

// Sparse kinds.
inline constexpr int sparse_fill = 881;         // assignment of a scalar
inline constexpr int sparse_copy = 2010;        // Copy; general sparse from symmetric sparse
inline constexpr int sparse_from_dense = 2260;  // CopyMat and the conversions made of it

// Products and structured products.
inline constexpr int sparse_product = 294;     // products with a sparse result
inline constexpr int product = 320;            // products with a dense result, and scaling

}  // namespace quorvel::detail::code

// Codes that are thrown as they stand.
namespace quorvel::detail::fixed {

inline constexpr int triangular_index = 60021;  // triangular or symmetric matrix: write outside the stored part
//   do: write where the kind stores: i <= j (upper), i >= j (lower), below the order (all)
inline constexpr int regular_index = 60080;  // regular matrix: index outside the matrix
//   do: compare i with nrows() and j with ncols(). A pending code is thrown here, too
inline constexpr int square_index = 60090;  // square dense matrix: index outside the matrix, or write off a diagonal
//   do: compare both with ndim(). To write off the diagonal take another kind

inline constexpr int non_zeros_columns = 40360;   // SetNonZeros: not a column
//   do: pass an n x 1 matrix
inline constexpr int non_zeros_range = 60360;     // SetNonZeros: more elements than rows
//   do: pass no more elements than both have rows, and an output with a column
inline constexpr int rank_one_kind = 70400;       // rank-one update: the target's kind tag is none it can update
//   do: the object is destroyed or overwritten: look for a temporary that was used twice

// Navigation.
inline constexpr int rotation_axis = 30120;             // the axis of a rotation is none of 1, 2, 3
//   do: pass 1, 2 or 3 (x, y, z)
inline constexpr int rotation_derivative_axis = 30121;  // the same for its derivative
//   do: pass 1, 2 or 3 (x, y, z)

// Sparse kinds.
inline constexpr int sparse_clear_row = 32020;       // sparse ClearRow: row or range outside
//   do: row below nrows(), first <= last, and first below nrows() too (a kept limit)
inline constexpr int sparse_clear_col = 32030;       // sparse ClearCol: column or range outside
//   do: column below ncols(), first <= last, and first below ncols() too (a kept limit)
inline constexpr int sparse_link_row = 62040;      // SparseMatrixRowInsert: cell outside the matrix
//   do: low level: pass indices inside the matrix, or use Put
inline constexpr int sparse_link_col = 62050;      // SparseMatrixColInsert: cell outside the matrix
//   do: low level: pass indices inside the matrix, or use Put
inline constexpr int sparse_insert = 62060;        // sparse insertion (SparseMatrixInsert, Put): cell outside the matrix
//   do: compare with nrows() and ncols(). An output vector must be long enough before it is filled
inline constexpr int sparse_index = 62090;         // sparse matrix: index outside the matrix
//   do: compare with nrows() and ncols()
inline constexpr int sparse_row = 62170;           // GetFirstInRow, IsRowEmpty, and products: row outside the matrix
//   do: compare with nrows()
inline constexpr int sparse_col = 62180;           // GetFirstInCol, IsColEmpty, and products: column outside the matrix
//   do: compare with ncols()
inline constexpr int sparse_append = 62190;        // SparseMatrixInsert behind a predecessor: cell outside the matrix
//   do: low level: pass indices inside the matrix, or use Put
inline constexpr int sparse_row_elements = 62200;  // sparse GetRowElements, GetLimitedRow: row or range outside
//   do: row below nrows(), first <= last < ncols(). npos is no index here
inline constexpr int sparse_col_elements = 62210;  // sparse GetColElements, GetLimitedCol: column or range outside
//   do: column below ncols() and nrows(), first <= last < nrows(). npos is no index here
inline constexpr int sparse_entire_col = 62220;    // RegularSparseMatrix::GetEntireCol: column outside the matrix
//   do: compare with ncols()
inline constexpr int sparse_entire_row = 62230;    // RegularSparseMatrix::GetEntireRow: row outside the matrix
//   do: compare with nrows()
inline constexpr int symmetric_sparse_line = 62240;  // SymmetricSparseMatrix line extraction: line or range outside
//   do: pass first <= last inside the matrix. For a whole line take RegularSparseMatrix(A).GetEntireRow
inline constexpr int sparse_division = 82160;      // division of an element reference by zero
//   do: test the divisor. And mind that A(i, j) /= d is d / A(i, j): write A(i, j) = A(i, j) / d

}  // namespace quorvel::detail::fixed

#endif
