#include "structure.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "quorvel/convenience.h"

namespace market {
namespace {

// The squares of elements beyond 1e154 would overflow; scaled by a power of two, they do not.
double Frobenius(const RegularSparseMatrix& A, double largest) {
  if (largest == 0.0) return 0.0;
  RegularSparseMatrix scaled(A);
  int exponent = 0;
  std::frexp(largest, &exponent);
  exponent = std::clamp(exponent, -1000, 1000);
  scaled *= std::ldexp(1.0, -exponent);
  double sum = 0.0;
  for (unsigned i = 0; i < scaled.nrows(); ++i) sum += scaled.SumSqRow(i);
  return std::ldexp(std::sqrt(sum), exponent);
}

template <class K>
void Print(const K& A, const MarketFile& file, std::ostream& out) {
  using quorvel::NumberFormat;
  const Structure s = StructureOf(A);
  const Norms n = NormsOf(A);
  const double cells = static_cast<double>(A.nrows()) * A.ncols();
  out << "  " << A.nrows() << " x " << A.ncols() << ", " << file.field << ' ' << file.symmetry << ", as "
      << A.ClassName() << ": " << s.stored << " stored";
  if (s.stored != s.nonzeros) out << ", " << s.nonzeros << " in the whole matrix";
  if (cells > 0) out << " (" << NumberFormat(".3g")(100.0 * static_cast<double>(s.nonzeros) / cells) << " %)";
  if (file.zeros > 0) out << "; " << file.zeros << " zeros of the file left out";
  out << "\n  bandwidth " << s.below << " below and " << s.above << " above the diagonal, " << s.shortest_row << " to "
      << s.longest_row << " elements in a row, " << s.empty_rows << " empty rows, " << s.empty_cols << " empty columns\n";
  if (A.nrows() == A.ncols()) {
    out << "  " << s.diagonal << " of " << A.nrows() << " diagonal elements, pattern ";
    if (s.mirrored == s.off_diagonal) {
      out << "symmetric\n";
    } else {
      out << NumberFormat(".0f")(100.0 * static_cast<double>(s.mirrored) / static_cast<double>(s.off_diagonal))
          << " % symmetric\n";
    }
  }
  const NumberFormat norm(".10g");
  out << "  norms: one " << norm(n.one) << ", infinity " << norm(n.infinity) << ", Frobenius " << norm(n.frobenius)
      << ", largest element " << norm(n.largest) << '\n';
}

}  // namespace

Structure StructureOf(const RegularSparseMatrix& A) {
  Structure s;
  s.stored = s.nonzeros = A.used;
  s.shortest_row = A.nrows() == 0 ? 0 : A.ncols();
  for (unsigned i = 0; i < A.nrows(); ++i) {
    unsigned length = 0;
    for (const SparseElement* e = A.GetFirstInRow(i); e != nullptr; e = e->nextInRow) {
      ++length;
      if (e->col == i) {
        ++s.diagonal;
        continue;
      }
      ++s.off_diagonal;
      if (e->col < i) s.below = std::max(s.below, i - e->col);
      if (e->col > i) s.above = std::max(s.above, e->col - i);
      if (A.Cell_Loc(e->col, i) != nullptr) ++s.mirrored;
    }
    s.shortest_row = std::min(s.shortest_row, length);
    s.longest_row = std::max(s.longest_row, length);
    s.empty_rows += length == 0;
  }
  for (unsigned j = 0; j < A.ncols(); ++j) s.empty_cols += A.IsColEmpty(j);
  return s;
}

Structure StructureOf(const SymmetricSparseMatrix& A) {
  Structure s = StructureOf(RegularSparseMatrix(A));
  s.stored = A.used;
  return s;
}

Norms NormsOf(const RegularSparseMatrix& A) {
  Norms n;
  for (unsigned i = 0; i < A.nrows(); ++i) {
    double sum = 0.0;
    for (const SparseElement* e = A.GetFirstInRow(i); e != nullptr; e = e->nextInRow) {
      sum += std::fabs(e->value);
      n.largest = std::fmax(n.largest, std::fabs(e->value));
    }
    n.infinity = std::fmax(n.infinity, sum);
  }
  for (unsigned j = 0; j < A.ncols(); ++j) {
    double sum = 0.0;
    for (const SparseElement* e = A.GetFirstInCol(j); e != nullptr; e = e->nextInCol) sum += std::fabs(e->value);
    n.one = std::fmax(n.one, sum);
  }
  n.frobenius = Frobenius(A, n.largest);
  return n;
}

Norms NormsOf(const SymmetricSparseMatrix& A) { return NormsOf(RegularSparseMatrix(A)); }

void PrintStructure(const RegularSparseMatrix& A, const MarketFile& file, std::ostream& out) { Print(A, file, out); }
void PrintStructure(const SymmetricSparseMatrix& A, const MarketFile& file, std::ostream& out) { Print(A, file, out); }

}  // namespace market
