// Products and congruences of small operands by the kernels of the instance that is chosen: every form of the factors,
// and every number of rows, columns and terms around those at which another way of computing begins.
#include "product_cases.h"

using namespace quorvel::test;

namespace {

constexpr unsigned kOrders[] = {1, 2, 4, 5, 7, 8, 9, 10, 12};

void CheckWhole(const Layout& a, const Layout& b, const Layout& c, Random& random) {
  for (const unsigned rows : kOrders) {
    for (const unsigned depth : kOrders) {
      for (const unsigned cols : kOrders) {
        if ((IsSquare(a) && rows != depth) || (IsSquare(b) && depth != cols) || (IsSquare(c) && rows != cols)) continue;
        Check({a, b, c, rows, depth, cols, {0, rows, 0, cols, depth}}, Pattern::kUniform, random);
      }
    }
  }
}

TEST(SmallProducts, EveryOrder) {
  Random random(821);
  const Layout &rows = kLayouts[0], &columns = kLayouts[1], &upper = kLayouts[2], &symmetric = kLayouts[4];
  for (const Layout& c : {rows, upper}) {
    for (const Layout& a : {rows, columns, symmetric}) {
      for (const Layout& b : {rows, columns, symmetric}) CheckWhole(a, b, c, random);
    }
  }
}

void CheckCongruence(const Layout& layout, unsigned n, unsigned m, Random& random) {
  const Layout& symmetric = kLayouts[4];
  const std::vector<double> x = Array(layout, n, m, Pattern::kUniform, random);
  const std::vector<double> q = Array(symmetric, m, m, Pattern::kUniform, random);
  const auto at = [&](unsigned i, unsigned t) { return x[Place(layout, n, m, i, t)]; };
  std::vector<double> expected, w(m), s(n * (n + 1) / 2, -7.0);
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned k = 0; k < m; ++k) {
      double sum = 0.0;
      for (unsigned t = 0; t < m; ++t) sum += at(i, t) * q[Place(symmetric, m, m, t, k)];
      w[k] = sum;
    }
    for (unsigned j = i; j < n; ++j) {
      double sum = 0.0;
      for (unsigned t = 0; t < m; ++t) sum += w[t] * at(j, t);
      expected.push_back(sum);
    }
  }
  const Factor left{x.data(), StrideOf(layout, n, m), layout.packed ? 1 : 0, layout.form, layout.shape};
  const Factor middle{q.data(), StrideOf(symmetric, m, m), 1, symmetric.form, symmetric.shape};
  kernels().congruence(s.data(), left, middle, n, m);
  EXPECT_TRUE(SameBits(s.data(), expected.data(), s.size())) << layout.name << ", " << n << " x " << m;
  digest::Feed(s.data(), s.size());
}

TEST(SmallProducts, CongruencesOfEveryOrder) {
  Random random(822);
  for (const unsigned n : kOrders) {
    for (const unsigned m : kOrders) {
      CheckCongruence(kLayouts[0], n, m, random);
      CheckCongruence(kLayouts[1], n, m, random);
      if (n == m) CheckCongruence(kLayouts[4], n, m, random);
    }
  }
}

}  // namespace
