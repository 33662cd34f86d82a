// Inverses and solutions written down element by element, in the order of operations that the library promises.

#ifndef QUORVEL_TESTS_UNIT_INVERSE_LITERAL_H
#define QUORVEL_TESTS_UNIT_INVERSE_LITERAL_H

#include <cmath>
#include <vector>

#include "support/plain.h"

namespace quorvel::test {

struct Counted {
  Plain x;
  int count = 0;
};

inline bool Usable(double d) { return std::fabs(d) > 1e-200; }

// X row by row, from L's rows and the rows of X above.
inline Counted LiteralLowerInverse(Plain l) {
  const unsigned n = l.n;
  Counted result;
  for (unsigned i = 0; i < n; ++i) {
    if (Usable(l(i, i))) {
      l(i, i) = 1.0 / l(i, i);
      continue;
    }
    ++result.count;
    for (unsigned k = 0; k < n; ++k) l(i, k) = l(k, i) = 0.0;
  }
  result.x = Plain(n, n);
  Plain& x = result.x;
  if (n != 0) x(0, 0) = l(0, 0);
  for (unsigned r = 1; r < n; ++r) {
    x(r, r) = l(r, r);
    for (unsigned c = 0; c < r; ++c) {
      double w = 0.0;
      for (unsigned j = c; j < r; ++j) w += l(r, j) * x(j, c);
      if (w != 0.0) x(r, c) = -(w * x(r, r));
    }
  }
  return result;
}

inline Plain Turned(const Plain& a) {
  Plain t(a.n, a.m);
  for (unsigned i = 0; i < a.m; ++i) {
    for (unsigned j = 0; j < a.n; ++j) t(j, i) = a(i, j);
  }
  return t;
}

inline Counted LiteralUpperInverse(const Plain& u) {
  Counted result = LiteralLowerInverse(Turned(u));
  result.x = Turned(result.x);
  return result;
}

// R by one reflection per column on the whole matrix, its inverse, and the reflections from the right.
inline Counted LiteralInverse(Plain a) {
  const unsigned n = a.n;
  std::vector<double> length(n, 0.0);
  for (unsigned j = 0; j < n; ++j) {
    for (unsigned i = 0; i < n; ++i) length[j] += a(i, j) * a(i, j);
  }
  Plain v(n, n);
  for (unsigned j = 0; j < n; ++j) {
    double sigma = 0.0;
    for (unsigned i = j + 1; i < n; ++i) sigma += a(i, j) * a(i, j);
    if (j + 1 < n && sigma != 0.0) {
      const double x = a(j, j);
      const double mu = std::sqrt(sigma + x * x);
      const double v0 = x <= 0.0 ? x - mu : -sigma / (x + mu);
      v(j, j) = 2.0 * v0 * v0 / (sigma + v0 * v0);
      for (unsigned i = j + 1; i < n; ++i) v(i, j) = a(i, j) / v0;
      for (unsigned c = 0; c < n; ++c) {
        double s = a(j, c);
        for (unsigned i = j + 1; i < n; ++i) {
          if (v(i, j) != 0.0) s += a(i, c) * v(i, j);
        }
        if (s == 0.0) continue;
        s *= v(j, j);
        a(j, c) -= s;
        for (unsigned i = j + 1; i < n; ++i) {
          if (v(i, j) != 0.0) a(i, c) -= s * v(i, j);
        }
      }
    }
    if (a(j, j) * a(j, j) < length[j] * 1e-22) a(j, j) = 0.0;
  }
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = 0; j < i; ++j) a(i, j) = 0.0;
  }
  Counted result = LiteralUpperInverse(a);
  Plain& x = result.x;
  for (unsigned j = n; j-- > 0;) {
    const double beta = v(j, j);
    if (beta == 0.0) continue;
    bool single = true;
    for (unsigned k = j + 1; k < n; ++k) single = single && v(k, j) == 0.0;
    for (unsigned r = 0; r < n; ++r) {
      if (single) {
        x(r, j) = x(r, j) - x(r, j) * beta;
        continue;
      }
      double s = x(r, j);
      for (unsigned k = j + 1; k < n; ++k) {
        if (v(k, j) != 0.0) s += x(r, k) * v(k, j);
      }
      if (s == 0.0) continue;
      s *= beta;
      x(r, j) -= s;
      for (unsigned k = j + 1; k < n; ++k) {
        if (v(k, j) != 0.0) x(r, k) -= s * v(k, j);
      }
    }
  }
  return result;
}

inline Plain UpperOnBothSides(Plain a) {
  for (unsigned i = 0; i < a.n; ++i) {
    for (unsigned j = 0; j < i; ++j) a(i, j) = a(j, i);
  }
  return a;
}

// Substitution, one column of b after the other.
inline Counted LiteralSubstitution(const Plain& t, const Plain& b, bool upper) {
  const unsigned n = t.n;
  Counted result;
  result.x = Plain(n, b.n);
  for (unsigned c = 0; c < b.n; ++c) {
    for (unsigned step = 0; step < n; ++step) {
      const unsigned i = upper ? n - 1 - step : step;
      double s = 0.0;
      for (unsigned solved = 0; solved < step; ++solved) {
        const unsigned k = upper ? n - 1 - solved : solved;
        s += t(i, k) * result.x(k, c);
      }
      result.x(i, c) = Usable(t(i, i)) ? (b(i, c) - s) / t(i, i) : 0.0;
    }
  }
  for (unsigned i = 0; i < n; ++i) result.count += !Usable(t(i, i));
  return result;
}

inline Plain HilbertMatrix(unsigned n) {
  Plain h(n, n);
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = 0; j < n; ++j) h(i, j) = 1.0 / (i + j + 1);
  }
  return h;
}

// Whole numbers, rank at most `rank`: a product of n x rank and rank x n.
inline Plain OfRank(unsigned n, unsigned rank, Random& random) {
  Plain left(n, rank), right(rank, n), a(n, n);
  for (double& e : left.e) e = random.Integer(-3, 3);
  for (double& e : right.e) e = random.Integer(-3, 3);
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = 0; j < n; ++j) {
      for (unsigned k = 0; k < rank; ++k) a(i, j) += left(i, k) * right(k, j);
    }
  }
  return a;
}

inline RegularMatrix RegularOf(const Plain& p) {
  RegularMatrix a(p.m, p.n);
  a.Assign(p.e.data(), p.m, p.n);
  return a;
}

// The packed kinds, from the triangle that they keep.
template <class K>
K PackedOf(const Plain& p) {
  K a(p.n);
  double* e = a.data();
  for (unsigned i = 0; i < p.n; ++i) {
    for (unsigned j = i; j < p.n; ++j) *e++ = std::is_same_v<K, LowerTriangularMatrix> ? p(j, i) : p(i, j);
  }
  return a;
}

}  // namespace quorvel::test

#endif
