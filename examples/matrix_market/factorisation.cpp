#include "factorisation.h"

#include <cmath>
#include <ostream>

#include "quorvel/convenience.h"
#include "quorvel/quorvel.h"

namespace market {
namespace {

using quorvel::own;

RegularMatrix Ones(unsigned n) {
  RegularMatrix ones(n, 1);
  ones = 1.0;
  return ones;
}

// |x - y| relative to |y|, both by their largest element.
double Relative(const RegularMatrix& x, const RegularMatrix& y) {
  const RegularMatrix nothing(y.nrows(), y.ncols());
  const double size = quorvel::max_difference(y, nothing);
  const double difference = quorvel::max_difference(x, y);
  return difference == 0.0 ? 0.0 : difference / size;
}

// What the diagonal of a triangular factor tells.
void ReadDiagonal(const RegularSparseMatrix& factor, Factorisation& f) {
  f.elements = factor.used;
  f.smallest = HUGE_VAL;
  for (unsigned i = 0; i < factor.nrows(); ++i) {
    const double d = std::fabs(factor(i, i));
    f.smallest = std::fmin(f.smallest, d);
    f.largest = std::fmax(f.largest, d);
    f.singular += d == 0.0;
    f.log_determinant += std::log(d);
  }
}

bool HasPositiveDiagonal(const SymmetricSparseMatrix& A) {
  for (unsigned i = 0; i < A.nrows(); ++i) {
    if (!(A(i, i) > 0.0)) return false;
  }
  return true;
}

// A negative pivot leaves NaN in the factor.
bool IsFinite(const RegularSparseMatrix& A) {
  for (unsigned i = 0; i < A.nrows(); ++i) {
    if (!std::isfinite(A.SumRow(i))) return false;
  }
  return true;
}

template <class K>
void Print(const K& A, double tolerance, std::ostream& out) {
  using quorvel::NumberFormat;
  const Factorisation f = Factorise(A, tolerance);
  const NumberFormat number(".4g"), digits(".10g");
  if (f.method == Factorisation::none) {
    out << "  nothing to factorise\n";
    return;
  }
  if (f.method == Factorisation::cholesky) {
    out << "  Cholesky: A = L L', ";
  } else {
    out << (A.IsSymmetric() ? "  not positive definite; reflections: A = Q R, "
                            : A.nrows() < A.ncols() ? "  reflections: A' = Q R, " : "  reflections: A = Q R, ");
  }
  out << f.elements << " elements in the factor\n  its diagonal from " << number(f.smallest) << " to " << number(f.largest)
      << ", " << f.singular << " singular; ";
  if (f.singular == 0) {
    out << (A.nrows() == A.ncols() ? "log|det A| " : "log det(A'A)/2 ") << digits(f.log_determinant) << "; ";
  }
  out << "misfit " << number(f.misfit) << '\n';
}

}  // namespace

Factorisation Factorise(const RegularSparseMatrix& A, double) {
  Factorisation f;
  if (A.nrows() == 0 || A.ncols() == 0) return f;
  f.method = Factorisation::reflections;
  const auto tall = A.nrows() < A.ncols() ? own(transpose(A)) : own(A);
  RegularSparseMatrix R(tall);
  HouseholderTransformation(R, true);
  ReadDiagonal(R, f);
  // R'R 1 against A'A 1: what Q does cancels.
  const RegularMatrix ones = Ones(R.ncols());
  const auto by_factor = own(ATB(R, own(R * ones)));
  const auto by_matrix = own(ATB(tall, own(tall * ones)));
  f.misfit = Relative(by_factor, by_matrix);
  return f;
}

Factorisation Factorise(const SymmetricSparseMatrix& A, double tolerance) {
  if (A.nrows() != 0 && HasPositiveDiagonal(A)) {
    const auto L = own(CholeskyFactor(A, tolerance));
    if (IsFinite(L)) {
      Factorisation f;
      f.method = Factorisation::cholesky;
      ReadDiagonal(L, f);
      f.log_determinant *= 2.0;
      const RegularMatrix ones = Ones(A.nrows());
      f.misfit = Relative(own(L * own(ATB(L, ones))), own(A * ones));
      return f;
    }
  }
  return Factorise(RegularSparseMatrix(A), tolerance);
}

void PrintFactorisation(const SymmetricSparseMatrix& A, double tolerance, std::ostream& out) { Print(A, tolerance, out); }
void PrintFactorisation(const RegularSparseMatrix& A, double tolerance, std::ostream& out) { Print(A, tolerance, out); }

}  // namespace market
