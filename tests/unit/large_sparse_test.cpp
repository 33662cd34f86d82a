// Operations on sparse matrices of thousands of elements, beside sorted maps: bands, and elements far from each other,
// written in any order, by a pool that was used before. All values are small whole numbers, so every sum is exact.
#include <gtest/gtest.h>

#include <map>
#include <utility>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/random.h"
#include "support/sparse.h"

using namespace quorvel::test;

namespace {

using RS = RegularSparseMatrix;
using SS = SymmetricSparseMatrix;
using Map = std::map<std::pair<unsigned, unsigned>, double>;

enum class Pattern { kBand, kScattered, kBorder };
enum class Order { kForwards, kBackwards, kByColumns };

// -3 .. 3, but not 0.
double Value(Random& random) {
  const int v = random.Integer(1, 3);
  return random.Chance(2) ? v : -v;
}

Map CellsFor(Pattern pattern, unsigned m, unsigned n, Random& random) {
  Map cells;
  for (unsigned i = 0; i < m; ++i) {
    if (random.Chance(20)) continue;
    for (unsigned k = 0; k < 5; ++k) {
      const unsigned j = pattern == Pattern::kScattered ? random.Below(n) : i + k;
      if (j < n) cells[{i, j}] = Value(random);
    }
    if (pattern == Pattern::kBorder) {
      cells[{i, n - 1}] = Value(random);
      if (i < n) cells[{m - 1, i}] = Value(random);
    }
  }
  return cells;
}

Map UpperOf(const Map& cells) {
  Map upper;
  for (const auto& [at, value] : cells) {
    if (at.first <= at.second) upper.insert({at, value});
  }
  return upper;
}

Map LowerOf(const Map& cells) {
  Map lower;
  for (const auto& [at, value] : cells) {
    if (at.first >= at.second) lower.insert({at, value});
  }
  return lower;
}

Map TransposeOf(const Map& cells) {
  Map turned;
  for (const auto& [at, value] : cells) turned[{at.second, at.first}] = value;
  return turned;
}

// Both triangles of what the symmetric kind stores.
Map MirroredOf(const Map& upper) {
  Map full = upper;
  for (const auto& [at, value] : upper) full[{at.second, at.first}] = value;
  return full;
}

void Store(Map& cells, std::pair<unsigned, unsigned> at, double value) {
  if (value != 0.0) {
    cells[at] = value;
  } else {
    cells.erase(at);
  }
}

// a + sign * b without the cells that become 0.
Map SumOf(const Map& a, double sign, const Map& b) {
  Map sum = a;
  for (const auto& [at, value] : b) {
    const auto found = sum.find(at);
    Store(sum, at, (found == sum.end() ? 0.0 : found->second) + sign * value);
  }
  return sum;
}

Map ProductOf(const Map& a, const Map& b) {
  Map sums, product;
  for (const auto& [at, value] : a) {
    for (auto e = b.lower_bound({at.second, 0u}); e != b.end() && e->first.first == at.second; ++e) {
      sums[{at.first, e->first.second}] += value * e->second;
    }
  }
  for (const auto& [at, value] : sums) Store(product, at, value);
  return product;
}

// A matrix with these cells and no others, after other ones were in it.
template <class K>
void Write(K& a, const Map& cells, Order order, Random& random) {
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
  std::vector<std::pair<std::pair<unsigned, unsigned>, double>> list(cells.begin(), cells.end());
  if (order == Order::kByColumns) {
    list.clear();
    for (const auto& [at, value] : TransposeOf(cells)) list.push_back({{at.second, at.first}, value});
  }
  for (std::size_t k = 0; k < list.size(); ++k) {
    const auto& [at, value] = list[order == Order::kBackwards ? list.size() - 1 - k : k];
    a.SparseMatrixInsert(at.first, at.second, value);
  }
}

template <class K>
void Expect(const K& a, const Map& cells, const char* what) {
  EXPECT_SOUND(a) << what;
  EXPECT_EQ(a.used, cells.size()) << what;
  const std::vector<Cell> got = CellsOf(a);
  ASSERT_EQ(got.size(), cells.size()) << what;
  auto expected = cells.begin();
  for (const Cell& cell : got) {
    const Cell wanted{expected->first.first, expected->first.second, expected->second};
    ASSERT_EQ(cell, wanted) << what;
    ++expected;
  }
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
void CheckSums(const K& a, const Map& x, const K& b, const Map& y, Random& random) {
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
  const Map none;
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
  const Map difference = SumOf(y, -1.0, x);
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
  const Map x = CellsFor(pattern, m, n, random);
  Map y = CellsFor(pattern, m, n, random);
  for (const auto& [at, value] : x) {
    if (random.Chance(3)) y[at] = random.Chance(2) ? value : -value;  // so that sums vanish
  }
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
  const Map x = UpperOf(CellsFor(pattern, n, n, random));
  Map y = UpperOf(CellsFor(pattern, n, n, random));
  const Map z = CellsFor(pattern, n, n, random);
  for (const auto& [at, value] : x) {
    if (random.Chance(3)) y[at] = random.Chance(2) ? value : -value;
  }
  SS s(n), t(n);
  RS a(n, n);
  Write(s, x, order, random);
  Write(t, y, random.Chance(2) ? order : Order::kForwards, random);
  Write(a, z, order, random);
  CheckSums(s, x, t, y, random);
  const Map full = MirroredOf(x);
  RS both(n, n);
  both = s;
  Expect(both, full, "both triangles");
  Expect(RS(a + Passed(s, random)), SumOf(z, 1.0, full), "a + s");
  Expect(RS(Passed(a, random) - s), SumOf(z, -1.0, full), "a - s");
  Expect(RS(Passed(s, random) - a), SumOf(full, -1.0, z), "s - a");
  RS c(s);
  c -= s;
  Expect(c, Map(), "c - s");
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
    Map upper;
    for (unsigned i = 0; i < n; ++i) {
      const int power = random.Integer(0, 2);
      upper[{i, i}] = 1 << power;
      if (i + 1 == n) break;
      unsigned j = n - 1;
      if (pattern == Pattern::kBand) j = i + 1 + random.Below(i + 3 < n ? 3 : 1);
      if (pattern == Pattern::kScattered) j = i + 1 + random.Below(n - i - 1);
      const unsigned every = pattern == Pattern::kBand ? 1 : pattern == Pattern::kScattered ? 8 : 100;
      if (i % every == 0) upper[{i, j}] = Value(random);
    }
    const Map lower = TransposeOf(upper);
    SS a(n), b(n);
    Write(a, UpperOf(ProductOf(lower, upper)), Order::kForwards, random);
    Write(b, UpperOf(ProductOf(upper, lower)), Order::kForwards, random);
    Expect(RS(CholeskySquareRootLower(Passed(a, random))), lower, "lower root");
    Expect(RS(CholeskyFactor(Passed(a, random), 1e-12)), lower, "factor");
    Expect(RS(CholeskySquareRootUpper(Passed(b, random))), upper, "upper root");
  }
}

}  // namespace
