// Operations on sparse matrices of thousands of elements, beside sorted lists: bands, and elements far from each other,
// written in any order, by a pool that was used before. All values are small whole numbers, so every sum is exact.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/random.h"
#include "support/sparse.h"

using namespace quorvel::test;

namespace {

using RS = RegularSparseMatrix;
using SS = SymmetricSparseMatrix;
using Cells = std::vector<Cell>;  // by rows, each place once

enum class Pattern { kBand, kScattered, kBorder };
enum class Order { kForwards, kBackwards, kByColumns };

// -3 .. 3, but not 0.
double Value(Random& random) {
  const int v = random.Integer(1, 3);
  return random.Chance(2) ? v : -v;
}

bool Before(const Cell& a, const Cell& b) { return std::tie(a.row, a.col) < std::tie(b.row, b.col); }

// Cells in any order, those of one place added; places that become 0 are left out.
Cells Added(Cells all) {
  std::stable_sort(all.begin(), all.end(), Before);
  Cells sums;
  sums.reserve(all.size());
  for (const Cell& c : all) {
    if (!sums.empty() && !Before(sums.back(), c)) {
      sums.back().value += c.value;
    } else {
      sums.push_back(c);
    }
  }
  sums.erase(std::remove_if(sums.begin(), sums.end(), [](const Cell& c) { return c.value == 0.0; }), sums.end());
  return sums;
}

Cells CellsFor(Pattern pattern, unsigned m, unsigned n, Random& random) {
  Cells cells;
  for (unsigned i = 0; i < m; ++i) {
    if (random.Chance(20)) continue;
    for (unsigned k = 0; k < 5; ++k) {
      const unsigned j = pattern == Pattern::kScattered ? random.Below(n) : i + k;
      if (j < n) cells.push_back({i, j, Value(random)});
    }
    if (pattern == Pattern::kBorder) {
      cells.push_back({i, n - 1, Value(random)});
      if (i < n) cells.push_back({m - 1, i, Value(random)});
    }
  }
  return Added(cells);
}

template <class Keep>
Cells Kept(const Cells& cells, Keep keep) {
  Cells kept;
  std::copy_if(cells.begin(), cells.end(), std::back_inserter(kept), keep);
  return kept;
}
Cells UpperOf(const Cells& cells) {
  return Kept(cells, [](const Cell& c) { return c.row <= c.col; });
}
Cells LowerOf(const Cells& cells) {
  return Kept(cells, [](const Cell& c) { return c.row >= c.col; });
}

Cells TransposeOf(Cells cells) {
  for (Cell& c : cells) std::swap(c.row, c.col);
  return Added(cells);
}

// Both triangles of what the symmetric kind stores.
Cells MirroredOf(Cells upper) {
  const Cells stored = upper;
  for (const Cell& c : stored) {
    if (c.row != c.col) upper.push_back({c.col, c.row, c.value});
  }
  return Added(upper);
}

// a + sign * b
Cells SumOf(Cells a, double sign, const Cells& b) {
  for (const Cell& c : b) a.push_back({c.row, c.col, sign * c.value});
  return Added(a);
}

Cells ProductOf(const Cells& a, const Cells& b) {
  Cells terms;
  for (const Cell& c : a) {
    auto e = std::lower_bound(b.begin(), b.end(), Cell{c.col, 0, 0.0}, Before);
    for (; e != b.end() && e->row == c.col; ++e) terms.push_back({c.row, e->col, c.value * e->value});
  }
  return Added(terms);
}

// Some of the cells of x with the same or the opposite value, beside y: sums and differences vanish there.
Cells Meeting(const Cells& x, const Cells& y, Random& random) {
  Cells met;
  for (const Cell& c : x) {
    if (random.Chance(3)) met.push_back({c.row, c.col, random.Chance(2) ? c.value : -c.value});
  }
  const Cells others = Kept(y, [&](const Cell& c) { return !std::binary_search(met.begin(), met.end(), c, Before); });
  return SumOf(met, 1.0, others);
}

// A matrix with these cells and no others, after other ones were in it.
template <class K>
void Write(K& a, const Cells& cells, Order order, Random& random) {
  const bool used_before = random.Chance(2);
  if (used_before) {
    for (unsigned k = 0; k < 100; ++k) {
      const unsigned i = random.Below(a.nrows());
      const unsigned j = random.Below(a.ncols());
      a.Put(i, j, 1.0);
    }
    if (random.Chance(2)) {
      a.Clear();
    } else {
      for (unsigned i = 0; i < a.nrows(); ++i) {
        while (SparseElement* e = a.GetFirstInRow(i)) a.SparseMatrixRemove(e);
      }
    }
  }
  Cells list = cells;
  if (order == Order::kBackwards) std::reverse(list.begin(), list.end());
  if (order == Order::kByColumns) {
    std::stable_sort(list.begin(), list.end(), [](const Cell& x, const Cell& y) { return x.col < y.col; });
  }
  for (const Cell& c : list) a.SparseMatrixInsert(c.row, c.col, c.value);
}

template <class K>
void Expect(const K& a, const Cells& cells, const char* what) {
  EXPECT_SOUND(a) << what;
  EXPECT_EQ(a.used, cells.size()) << what;
  EXPECT_TRUE(CellsOf(a) == cells) << what;
}

// The operand, or a dispensable copy of it.
template <class K>
const K& Passed(const K& a, Random& random) {
  if (random.Chance(2)) return a;
  K* const copy = new K(a);
  copy->set_dispensable(true);
  return *copy;
}

template <class K>
void CheckSums(const K& a, const Cells& x, const K& b, const Cells& y, Random& random) {
  const auto pass = [&](const K& m) -> const K& { return Passed(m, random); };
  {
    const K& p = pass(a);
    const K& q = pass(b);
    Expect(K(p + q), SumOf(x, 1.0, y), "a + b");
  }
  {
    const K& p = pass(a);
    const K& q = pass(b);
    Expect(K(p - q), SumOf(x, -1.0, y), "a - b");
  }
  const Cells none;
  K c(a);
  const K& itself = c;
  Expect(c, x, "copy");
  c -= itself;
  Expect(c, none, "c -= c");
  c += pass(b);
  Expect(c, y, "0 + b");
  c -= pass(a);
  Expect(c, SumOf(y, -1.0, x), "b - a");
  c += itself;
  const Cells difference = SumOf(y, -1.0, x);
  Expect(c, SumOf(difference, 1.0, difference), "c += c");
  c = a;
  c = c - pass(b);
  Expect(c, SumOf(x, -1.0, y), "c = c - b");
  c = a;
  c = pass(b) - c;
  Expect(c, SumOf(y, -1.0, x), "c = b - c");
  c = c - itself;
  Expect(c, none, "c - c");
}

void CheckRegular(Pattern pattern, Order order, unsigned m, unsigned n, Random& random) {
  const Cells x = CellsFor(pattern, m, n, random);
  const Cells y = Meeting(x, CellsFor(pattern, m, n, random), random);
  RS a(m, n), b(m, n);
  Write(a, x, order, random);
  Write(b, y, random.Chance(2) ? order : Order::kForwards, random);
  ASSERT_GT(a.used, 4096u);
  CheckSums(a, x, b, y, random);
  Expect(RS(transpose(Passed(a, random))), TransposeOf(x), "transpose");
  Expect(RS(transpose(RS(transpose(b)))), y, "transpose of the transpose");
  Expect(RS(transpose(a) + transpose(b)), TransposeOf(SumOf(x, 1.0, y)), "sum of transposes");
  if (pattern != Pattern::kBorder) {
    const RS turned(transpose(b));
    Expect(RS(Passed(a, random) * turned), ProductOf(x, TransposeOf(y)), "product");
  }
  if (m == n) {
    Expect(RS(triu(Passed(a, random))), UpperOf(x), "triu");
    Expect(RS(tril(Passed(a, random))), LowerOf(x), "tril");
    Expect(SS(sym(Passed(a, random))), UpperOf(x), "sym");
  }
}

void CheckSymmetric(Pattern pattern, Order order, unsigned n, Random& random) {
  const Cells x = UpperOf(CellsFor(pattern, n, n, random));
  const Cells y = Meeting(x, UpperOf(CellsFor(pattern, n, n, random)), random);
  const Cells z = CellsFor(pattern, n, n, random);
  SS s(n), t(n);
  RS a(n, n);
  Write(s, x, order, random);
  Write(t, y, random.Chance(2) ? order : Order::kForwards, random);
  Write(a, z, order, random);
  CheckSums(s, x, t, y, random);
  const Cells full = MirroredOf(x);
  RS both(n, n);
  both = s;
  Expect(both, full, "both triangles");
  Expect(RS(a + Passed(s, random)), SumOf(z, 1.0, full), "a + s");
  Expect(RS(Passed(a, random) - s), SumOf(z, -1.0, full), "a - s");
  Expect(RS(Passed(s, random) - a), SumOf(full, -1.0, z), "s - a");
  RS c(s);
  c -= s;
  Expect(c, Cells(), "c - s");
  Expect(RS(tril(s)), LowerOf(full), "tril of s");
  Expect(RS(triu(s)), x, "triu of s");
}

constexpr Pattern kPatterns[] = {Pattern::kBand, Pattern::kScattered, Pattern::kBorder};
constexpr Order kOrders[] = {Order::kForwards, Order::kBackwards, Order::kByColumns};

TEST(LargeSparse, RegularMatrices) {
  Random random(31);
  constexpr unsigned sizes[][2] = {{1100, 1100}, {1300, 1000}, {1050, 1700}};
  unsigned next = 0;
  for (const Pattern pattern : kPatterns) {
    for (const Order order : kOrders) {
      const auto& [m, n] = sizes[next++ % 3];
      CheckRegular(pattern, order, m, n, random);
    }
    ++next;  // so that every order meets every size
  }
}

TEST(LargeSparse, SymmetricMatrices) {
  Random random(32);
  for (const Pattern pattern : kPatterns) {
    for (const Order order : kOrders) CheckSymmetric(pattern, order, 1500, random);
  }
}

// L * L' and U * U' of triangles with powers of two on their diagonals have these triangles as their exact roots.
TEST(LargeSparse, RootsOfExactProducts) {
  Random random(33);
  constexpr unsigned n = 4200;
  for (const Pattern pattern : kPatterns) {
    Cells upper;
    for (unsigned i = 0; i < n; ++i) {
      const int power = random.Integer(0, 2);
      upper.push_back({i, i, static_cast<double>(1 << power)});
      if (i + 1 == n) break;
      unsigned j = n - 1;
      if (pattern == Pattern::kBand) j = i + 1 + random.Below(i + 3 < n ? 3 : 1);
      if (pattern == Pattern::kScattered) j = i + 1 + random.Below(n - i - 1);
      const unsigned every = pattern == Pattern::kBand ? 1 : pattern == Pattern::kScattered ? 8 : 100;
      if (i % every == 0) upper.push_back({i, j, Value(random)});
    }
    const Cells lower = TransposeOf(upper);
    SS a(n), b(n);
    Write(a, UpperOf(ProductOf(lower, upper)), Order::kForwards, random);
    Write(b, UpperOf(ProductOf(upper, lower)), Order::kForwards, random);
    Expect(RS(CholeskySquareRootLower(Passed(a, random))), lower, "lower root");
    Expect(RS(CholeskyFactor(Passed(a, random), 1e-12)), lower, "factor");
    Expect(RS(CholeskySquareRootUpper(Passed(b, random))), upper, "upper root");
  }
}

}  // namespace
