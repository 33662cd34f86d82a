// Kronecker products. The operands survive a success; a failure after the checks destroys dispensable ones.
#include "quorvel/matrix_functions.h"

#include "core/ownership.h"
#include "core/storage.h"
#include "dense/rules.h"

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

template <class A, class B>
struct NewKron<RegularMatrix, A, B> : NewResult<RegularMatrix> {
  NewKron(const A& a, const B& b)
      : NewResult<RegularMatrix>(Extent(a.nrows(), b.nrows()), Extent(a.ncols(), b.ncols())) {}
};

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

template <class K, class A, class B>
K& Kron(const A& a, const B& b) {
  a.ThrowNotOkOrEmpty(code::none);
  b.ThrowNotOkOrEmpty(code::none);
  Consumed operands(a, b);
  NewKron<K, A, B> result(a, b);
  FillKron(Rule<K>(*result), Rule<A>(a), Rule<B>(b));
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
