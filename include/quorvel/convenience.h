// Conveniences: values, rows, streams and comparisons for callers.
//
// All inline: nothing here adds to the shared library, and nothing in the library uses it.
//
//   using namespace quorvel;
//   auto C = own(A + B);                                     // a value, whatever the operator returned
//   auto P = from_rows<SymmetricMatrix>({{4, 1}, {1, 3}});
//   const bool same = near(P, C, 1e-12);
//   std::cout << std::setw(10) << P << formatted(A + B, "10.3f");
#ifndef QUORVEL_CONVENIENCE_H
#define QUORVEL_CONVENIENCE_H

#include <cmath>
#include <initializer_list>
#include <limits>
#include <ostream>
#include <type_traits>
#include <utility>

#include "quorvel/formatted.h"

namespace quorvel {

/// A matrix of kind K that owns itself: constructing or assigning it from an operator's result takes the result over,
/// so it may be used any number of times. It is a K and goes wherever a K does.
template <class K>
class Owned : public K {
 public:
  Owned() = default;
  /// Takes the storage of a dispensable matrix (which is gone afterwards), copies any other. Throws 50140 (not ok).
  explicit Owned(K& result) : K(result) {}
  explicit Owned(const K& result) : K(result) {}
  Owned(const Owned& other) : K(static_cast<const K&>(other)) {}
  Owned(Owned&& other) noexcept : K(static_cast<K&&>(other)) {}
  Owned& operator=(const Owned& other) {
    K::operator=(static_cast<const K&>(other));
    return *this;
  }
  Owned& operator=(Owned&& other) noexcept {
    K::operator=(static_cast<K&&>(other));
    return *this;
  }
  Owned& operator=(K& result) {
    K::operator=(result);
    return *this;
  }
  Owned& operator=(const K& result) {
    K::operator=(result);
    return *this;
  }
  Owned& operator=(double x) {
    K::operator=(x);
    return *this;
  }
};

/// The value behind a returned reference: `auto C = own(A + B);`.
template <class K>
[[nodiscard]] Owned<K> own(K& result) {
  return Owned<K>(result);
}
template <class K>
[[nodiscard]] Owned<K> own(const K& result) {
  return Owned<K>(result);
}

namespace convenience {

template <class K>
inline constexpr bool is_symmetric_kind =
    std::is_same_v<K, SymmetricMatrix> || std::is_same_v<K, SymmetricSparseMatrix>;

/// Whether element (i, j) of a kind has a place of its own (the mirror images of a symmetric kind have none).
template <class K>
constexpr bool stores(unsigned i, unsigned j) {
  if (std::is_same_v<K, UpperTriangularMatrix> || is_symmetric_kind<K>) return i <= j;
  if (std::is_same_v<K, LowerTriangularMatrix>) return i >= j;
  if (std::is_same_v<K, DiagonalMatrix>) return i == j;
  return true;
}

}  // namespace convenience

/// A matrix of kind K from its full rows. Throws 40000 for rows of unequal length, a shape that the kind cannot have,
/// or an element that it could not keep: non-zero outside a triangle or off a diagonal, or different from its mirror.
template <class K>
[[nodiscard]] K from_rows(std::initializer_list<std::initializer_list<double>> rows) {
  const auto m = static_cast<unsigned>(rows.size());
  const auto n = static_cast<unsigned>(rows.size() == 0 ? 0 : rows.begin()->size());
  constexpr bool square = !std::is_same_v<K, RegularMatrix> && !std::is_same_v<K, RegularSparseMatrix>;
  if (square && m != n) convenience::refuse(40000);
  for (const auto& row : rows) {
    if (row.size() != n) convenience::refuse(40000);
  }
  const auto at = [&](unsigned i, unsigned j) { return *((rows.begin() + i)->begin() + j); };
  K a(m, n);
  for (unsigned i = 0; i < m; ++i) {
    for (unsigned j = 0; j < n; ++j) {
      if (convenience::stores<K>(i, j)) {
        a(i, j) = at(i, j);
      } else if (at(i, j) != (convenience::is_symmetric_kind<K> ? at(j, i) : 0.0)) {
        convenience::refuse(40000);
      }
    }
  }
  return a;
}

/// A column vector from its elements.
[[nodiscard]] inline RegularMatrix column(std::initializer_list<double> elements) {
  RegularMatrix v(static_cast<unsigned>(elements.size()), 1);
  unsigned i = 0;
  for (const double e : elements) v.data()[i++] = e;
  return v;
}

/// A diagonal matrix from its diagonal.
[[nodiscard]] inline DiagonalMatrix diagonal(std::initializer_list<double> elements) {
  DiagonalMatrix d(static_cast<unsigned>(elements.size()));
  unsigned i = 0;
  for (const double e : elements) d.data()[i++] = e;
  return d;
}

/// Pointer to element (i, 0) of a dense matrix: row i is row(A, i)[0 .. n - 1]. Unchecked.
inline double* row(RegularMatrix& a, unsigned i) {
  return a.data() + static_cast<std::size_t>(i) * a.ncols();
}
inline const double* row(const RegularMatrix& a, unsigned i) {
  return a.data() + static_cast<std::size_t>(i) * a.ncols();
}

/// Pointer to the diagonal element of row i of the packed upper triangle: it holds columns i .. n - 1. Of a lower
/// triangular matrix it is column i, rows i .. n - 1. Unchecked.
inline double* packed_row(TriMatrix& a, unsigned i) {
  return a.data() + (i + static_cast<std::size_t>(i) * (2u * a.ndim() - 1u - i) / 2u);
}
inline const double* packed_row(const TriMatrix& a, unsigned i) {
  return a.data() + (i + static_cast<std::size_t>(i) * (2u * a.ndim() - 1u - i) / 2u);
}

namespace convenience {

/// |x - y|, and 0 of equal infinities.
inline double distance(double x, double y) {
  return x == y ? 0.0 : std::fabs(x - y);
}

/// Consumes both operands of a comparison, once when they are the same object.
class Compared {
 public:
  Compared(const Matrix& a, const Matrix& b) noexcept : a_(a), b_(b) {}
  Compared(const Compared&) = delete;
  Compared& operator=(const Compared&) = delete;
  ~Compared() {
    if (&a_ != &b_) b_.DestroyIfDispensable();
    a_.DestroyIfDispensable();
  }

 private:
  const Matrix& a_;
  const Matrix& b_;
};

}  // namespace convenience

/// Largest |a(i, j) - b(i, j)| over all elements of two matrices of any kinds, implicit ones included; equal infinities
/// differ by 0. NaN when a NaN takes part, infinity when the sizes differ. Consumes dispensable operands.
template <class A, class B>
[[nodiscard]] double max_difference(const A& a, const B& b) {
  const convenience::Compared end(a, b);
  if (a.nrows() != b.nrows() || a.ncols() != b.ncols()) return std::numeric_limits<double>::infinity();
  double largest = 0.0;
  for (unsigned i = 0; i < a.nrows(); ++i) {
    for (unsigned j = 0; j < a.ncols(); ++j) {
      const double d = convenience::distance(a(i, j), b(i, j));
      if (!(d <= largest)) largest = d;
      if (std::isnan(largest)) return largest;
    }
  }
  return largest;
}

/// Same size, and |a(i, j) - b(i, j)| <= absolute + relative * |b(i, j)| everywhere. An infinity is near the same
/// infinity only, NaN near nothing. Consumes dispensable operands.
template <class A, class B>
[[nodiscard]] bool near(const A& a, const B& b, double absolute, double relative = 0.0) {
  const convenience::Compared end(a, b);
  if (a.nrows() != b.nrows() || a.ncols() != b.ncols()) return false;
  for (unsigned i = 0; i < a.nrows(); ++i) {
    for (unsigned j = 0; j < a.ncols(); ++j) {
      const double e = b(i, j);
      const double d = convenience::distance(a(i, j), e);
      if (d != 0.0 && (!(d <= absolute + relative * std::fabs(e)) || std::isinf(d))) return false;
    }
  }
  return true;
}

}  // namespace quorvel

/// All rows and columns, one line per row, a blank before every element but the first of a row. The stream's width
/// applies to each element (and is reset, as ever), its precision and notation as they stand. Consumes a dispensable
/// matrix, so `stream << A + B` leaks nothing. Throws a pending code through the checked access.
inline std::ostream& operator<<(std::ostream& stream, const Matrix& a) {
  const quorvel::convenience::Consumed end(a);
  const std::streamsize width = stream.width(0);
  quorvel::convenience::visit(a, [&](const auto& matrix) {
    for (unsigned i = 0; i < matrix.nrows(); ++i) {
      for (unsigned j = 0; j < matrix.ncols(); ++j) {
        if (j != 0) stream << ' ';
        stream.width(width);
        stream << matrix(i, j);
      }
      stream << '\n';
    }
  });
  return stream;
}

#endif
