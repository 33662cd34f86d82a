#include "support/grid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace quorvel::test {

namespace {

template <class K>
K Packed(const Grid& g, bool upper) {
  K a(g.n);
  double* to = a.data();
  for (unsigned r = 0; r < g.n; ++r) {
    for (unsigned c = r; c < g.n; ++c) *to++ = upper ? g(r, c) : g(c, r);
  }
  return a;
}

}  // namespace

RegularMatrix RegularOf(const Grid& g) {
  RegularMatrix a(g.m, g.n);
  for (std::size_t k = 0; k < g.e.size(); ++k) a.data()[k] = g.e[k];
  return a;
}

SymmetricMatrix SymmetricOf(const Grid& g) { return Packed<SymmetricMatrix>(g, true); }
UpperTriangularMatrix UpperOf(const Grid& g) { return Packed<UpperTriangularMatrix>(g, true); }
LowerTriangularMatrix LowerOf(const Grid& g) { return Packed<LowerTriangularMatrix>(g, false); }

void ExpectSameValues(const Grid& actual, const Grid& expected, const char* what) {
  ASSERT_EQ(actual.m, expected.m) << what;
  ASSERT_EQ(actual.n, expected.n) << what;
  for (unsigned i = 0; i < actual.m; ++i) {
    for (unsigned j = 0; j < actual.n; ++j) {
      const double a = actual(i, j);
      const double b = expected(i, j);
      if (a == b || (std::isnan(a) && std::isnan(b))) continue;
      ADD_FAILURE() << what << ", order " << actual.m << ": element (" << i << ", " << j << ") is " << std::hexfloat
                    << a << ", expected " << b;
      return;
    }
  }
}

Grid Times(const Grid& a, const Grid& b) {
  Grid c(a.m, b.n);
  for (unsigned i = 0; i < c.m; ++i) {
    for (unsigned j = 0; j < c.n; ++j) {
      for (unsigned k = 0; k < a.n; ++k) c(i, j) += a(i, k) * b(k, j);
    }
  }
  return c;
}

Grid Transposed(const Grid& a) {
  Grid t(a.n, a.m);
  for (unsigned i = 0; i < a.m; ++i) {
    for (unsigned j = 0; j < a.n; ++j) t(j, i) = a(i, j);
  }
  return t;
}

double Norm1(const Grid& a) {
  double norm = 0.0;
  for (unsigned j = 0; j < a.n; ++j) {
    double sum = 0.0;
    for (unsigned i = 0; i < a.m; ++i) sum += std::fabs(a(i, j));
    if (!(sum <= norm)) norm = sum;
  }
  return norm;
}

Grid RandomGrid(unsigned rows, unsigned cols, Random& random) {
  Grid g(rows, cols);
  for (double& e : g.e) e = random.Uniform();
  return g;
}

const char* Name(Family family) noexcept {
  switch (family) {
    case Family::kDefinite: return "definite";
    case Family::kHilbert: return "Hilbert";
    case Family::kDeficient: return "rank-deficient";
    case Family::kHuge: return "huge";
    case Family::kTiny: return "tiny";
    case Family::kDominant: return "diagonally dominant";
    default: return "with NaN and infinities";
  }
}

namespace {

Grid Definite(unsigned n, double scale, Random& random) {
  const Grid g = RandomGrid(n, n, random);
  Grid a = Times(g, Transposed(g));
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = i; j < n; ++j) a(i, j) = a(j, i) = (a(i, j) / n + (i == j ? 0.1 : 0.0)) * scale;
  }
  return a;
}

Grid Special(unsigned n, Random& random) {
  constexpr double inf = std::numeric_limits<double>::infinity();
  const double strange[] = {std::nan(""), inf, -inf};
  Grid a = Definite(n, 1.0, random);
  for (unsigned i = 0; i < n; ++i) {
    if (random.Chance(16)) a(i, i) = strange[random.Below(2)];
    for (unsigned j = i + 1; j < n; ++j) {
      if (random.Chance(8 * n)) a(i, j) = a(j, i) = strange[random.Below(3)];
    }
  }
  return a;
}

}  // namespace

Grid SymmetricSample(Family family, unsigned n, Random& random) {
  Grid a(n, n);
  switch (family) {
    case Family::kDefinite: return Definite(n, 1.0, random);
    case Family::kHuge: return Definite(n, 1e150, random);
    case Family::kTiny: return Definite(n, 1e-150, random);
    case Family::kSpecial: return Special(n, random);
    case Family::kHilbert:
      for (unsigned i = 0; i < n; ++i) {
        for (unsigned j = 0; j < n; ++j) a(i, j) = 1.0 / (i + j + 1);
      }
      return a;
    case Family::kDeficient: {
      std::vector<double> d(n);
      for (double& e : d) e = random.Chance(3) ? 0.0 : random.Integer(1, 9);
      return SymmetricOfFactors(d, random);
    }
    default:
      for (unsigned i = 0; i < n; ++i) {
        for (unsigned j = i; j < n; ++j) a(i, j) = a(j, i) = random.Uniform() + (i == j ? n + 1.0 : 0.0);
      }
      return a;
  }
}

Grid SymmetricOfFactors(const std::vector<double>& d, Random& random) {
  const unsigned n = static_cast<unsigned>(d.size());
  Grid l(n, n);
  for (unsigned i = 0; i < n; ++i) {
    l(i, i) = 1.0;
    bool touched = false;
    for (unsigned k = 0; k < i; ++k) {
      l(i, k) = random.Integer(-1, 1);
      touched = touched || (l(i, k) != 0.0 && d[k] != 0.0);
    }
    for (unsigned k = 0; k < i && !touched; ++k) {
      if (d[k] == 0.0) continue;
      l(i, k) = 1.0;
      touched = true;
    }
  }
  Grid a(n, n);
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = 0; j < n; ++j) {
      for (unsigned k = 0; k < n; ++k) a(i, j) += l(i, k) * d[k] * l(j, k);
    }
  }
  return a;
}

RankSample SampleOfKnownRank(unsigned n, Random& random) {
  const double pivots[] = {0.0, 1.0, 4.0, 16.0};
  RankSample sample;
  for (unsigned i = 0; i < n; ++i) {
    sample.d.push_back(pivots[i == 0 ? 1 + random.Below(3) : random.Below(4)]);
    sample.zeros += sample.d.back() == 0.0 ? 1 : 0;
  }
  sample.a = SymmetricOfFactors(sample.d, random);
  return sample;
}

}  // namespace quorvel::test
