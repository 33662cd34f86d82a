// Kronecker products. The operands survive a success; a failure after the checks destroys dispensable ones.
#include "quorvel/matrix_functions.h"

#include "core/ownership.h"
#include "core/storage.h"
#include "dense/rules.h"
#include "sparse/append.h"
#include "sparse/cursor.h"

using namespace quorvel::detail;

namespace {

/// rows or columns of the result.
index_t Extent(index_t a, index_t b) {
  const std::uint64_t product = std::uint64_t{a} * b;
  RequireSize(product, 0);
  return static_cast<index_t>(product);
}

template <class K, class A, class B>
struct NewKron : NewResult<K> {
  NewKron(const A& a, const B& b) : NewResult<K>(Extent(a.nrows(), b.nrows())) {}
};

template <class K, class A, class B>
struct NewRectangularKron : NewResult<K> {
  NewRectangularKron(const A& a, const B& b)
      : NewResult<K>(Extent(a.nrows(), b.nrows()), Extent(a.ncols(), b.ncols())) {}
};

template <class A, class B>
struct NewKron<RegularMatrix, A, B> : NewRectangularKron<RegularMatrix, A, B> {
  using NewRectangularKron<RegularMatrix, A, B>::NewRectangularKron;
};

template <class A, class B>
struct NewKron<RegularSparseMatrix, A, B> : NewRectangularKron<RegularSparseMatrix, A, B> {
  using NewRectangularKron<RegularSparseMatrix, A, B>::NewRectangularKron;
};

/// Calls use(j, value) for the elements of a line that are stored, in increasing j.
template <class K, class Use>
void ForStored(const Rule<K>& a, index_t i, Use use) {
  if constexpr (is_dense<K>) {
    const Range line = a.in_row(i);
    for (index_t j = line.begin; j < line.end; ++j) use(j, a.at(i, j));
  } else {
    for (LineCursor e = a.row(i); e; e.next()) use(e.index(), e.value());
  }
}

/// Appends the products of stored elements that are not 0.0, row by row; of a symmetric result the upper triangle.
template <class K, class A, class B>
void FillSparseKron(K& to, const Rule<A>& a, const Rule<B>& b) {
  constexpr bool upper_only = std::is_same_v<K, SymmetricSparseMatrix>;
  RowWriter writer(to);
  for (index_t i = 0; i < a.rows(); ++i) {
    for (index_t k = 0; k < b.rows(); ++k) {
      const index_t row = i * b.rows() + k;
      SparseElement* prev = nullptr;
      ForStored(a, i, [&](index_t j, double factor) {
        if (upper_only && j < i) return;  // never all ways: upper_only is a constant
        ForStored(b, k, [&](index_t l, double e) {
          const index_t col = j * b.cols() + l;
          if (upper_only && col < row) return;  // never all ways: upper_only is a constant
          const double product = factor * e;
          if (product != 0.0) prev = writer.append(prev, row, col, product);
        });
      });
    }
  }
}

/// Fills row i·p + k of the result: for each j the products of A(i, j) with the row k of B, as far as they are stored.
template <class K, class A, class B>
void FillKron(const Rule<K>& to, const Rule<A>& a, const Rule<B>& b) noexcept {
  for (index_t i = 0; i < a.rows(); ++i) {
    for (index_t k = 0; k < b.rows(); ++k) {
      const index_t row = i * b.rows() + k;
      const Range stored = to.stored_in_row(row);
      for (index_t j = stored.begin / b.cols(); j < a.cols(); ++j) {
        const index_t base = j * b.cols();
        if (base >= stored.end) break;
        const Range part = common({base, base + b.cols()}, stored);
        const double factor = a.at(i, j);
        for (index_t col = part.begin; col < part.end; ++col) to.store(row, col) = factor * b.at(k, col - base);
      }
    }
  }
}

template <class K>
void CheckFactor(const K& factor) {
  factor.ThrowNotOkOrEmpty(code::none);
  // A symmetric sparse matrix may be made rectangular; the product has no place for that.
  if constexpr (std::is_same_v<K, SymmetricSparseMatrix>) factor.ThrowNotSquare(code::none);
}

template <class K, class A, class B>
K& Kron(const A& a, const B& b) {
  CheckFactor(a);
  CheckFactor(b);
  Consumed operands(a, b);
  NewKron<K, A, B> result(a, b);
  if constexpr (is_dense<K>) {
    FillKron(Rule<K>(*result), Rule<A>(a), Rule<B>(b));
  } else {
    FillSparseKron(*result, Rule<A>(a), Rule<B>(b));
  }
  operands.release(a);
  operands.release(b);
  return result.hand_over();
}

}  // namespace

DiagonalMatrix& kron(const DiagonalMatrix& A, const DiagonalMatrix& B) { return Kron<DiagonalMatrix>(A, B); }
SymmetricMatrix& kron(const DiagonalMatrix& A, const SymmetricMatrix& B) { return Kron<SymmetricMatrix>(A, B); }
SymmetricMatrix& kron(const SymmetricMatrix& A, const DiagonalMatrix& B) { return Kron<SymmetricMatrix>(A, B); }
SymmetricMatrix& kron(const SymmetricMatrix& A, const SymmetricMatrix& B) { return Kron<SymmetricMatrix>(A, B); }
RegularMatrix& kron(const DiagonalMatrix& A, const RegularMatrix& B) { return Kron<RegularMatrix>(A, B); }
RegularMatrix& kron(const RegularMatrix& A, const DiagonalMatrix& B) { return Kron<RegularMatrix>(A, B); }
RegularMatrix& kron(const SymmetricMatrix& A, const RegularMatrix& B) { return Kron<RegularMatrix>(A, B); }
RegularMatrix& kron(const RegularMatrix& A, const SymmetricMatrix& B) { return Kron<RegularMatrix>(A, B); }
RegularMatrix& kron(const RegularMatrix& A, const RegularMatrix& B) { return Kron<RegularMatrix>(A, B); }

using RS = RegularSparseMatrix;
using SS = SymmetricSparseMatrix;

RS& kron(const DiagonalMatrix& A, const RS& B) { return Kron<RS>(A, B); }
RS& kron(const RS& A, const DiagonalMatrix& B) { return Kron<RS>(A, B); }
RS& kron(const RegularMatrix& A, const RS& B) { return Kron<RS>(A, B); }
RS& kron(const RS& A, const RegularMatrix& B) { return Kron<RS>(A, B); }
RS& kron(const RS& A, const RS& B) { return Kron<RS>(A, B); }
SS& kron(const DiagonalMatrix& A, const SS& B) { return Kron<SS>(A, B); }
SS& kron(const SS& A, const DiagonalMatrix& B) { return Kron<SS>(A, B); }
SS& kron(const SS& A, const SS& B) { return Kron<SS>(A, B); }
