// The matrix functions of the sparse kinds against plain arrays: values, what is stored, stores intact.

#include <gtest/gtest.h>

#include "quorvel/matrix_functions.h"
#include "support/digest.h"
#include "support/make.h"
#include "support/plain.h"
#include "support/sparse.h"

namespace quorvel::test {
namespace {

constexpr unsigned kSizes[] = {0, 1, 2, 3, 5, 8, 17, 33};

// About half of the cells, values of the pattern, some stored zeros among them.
template <class K>
K Sparse(unsigned m, unsigned n, Pattern pattern, Random& random) {
  K a(m, n);
  for (unsigned k = 0; m != 0 && n != 0 && k < m * n / 2 + 1; ++k) {
    const unsigned i = random.Below(m);
    const unsigned j = random.Below(n);
    a.Put(i, j, Draw(pattern, random));
    if (SparseElement* e = random.Chance(8) ? a.Cell_Loc(i, j) : nullptr) e->value = 0.0;
  }
  return a;
}

// The cells of a plain array that hold something else than zero, as Put would store them.
std::vector<Cell> NonZeros(const Plain& p, bool upper_only = false) {
  std::vector<Cell> cells;
  for (unsigned i = 0; i < p.m; ++i) {
    for (unsigned j = upper_only ? i : 0; j < p.n; ++j) {
      if (p(i, j) != 0.0) cells.push_back({i, j, p(i, j)});
    }
  }
  return cells;
}

template <class A, class Function, class Expect>
void OnBothOwners(const A& a, Function function, Expect expect) {
  for (bool dispensable : {false, true}) {
    auto& result = function(dispensable ? static_cast<const A&>(DispensableCopy(a)) : a);
    const Held held(result);
    expect(result);
    EXPECT_EQ(result.nsing(), -1);
    if constexpr (std::is_base_of_v<SparseMatrix, std::decay_t<decltype(result)>>) {
      EXPECT_SOUND(result);
      FeedDigest(result);
    }
  }
}

TEST(SparseTransposeLaw, HasEveryStoredElement) {
  Random random(501);
  for (unsigned m : kSizes) {
    for (unsigned n : kSizes) {
      for (Pattern pattern : kAllPatterns) {
        SCOPED_TRACE(::testing::Message() << m << " x " << n << " " << Name(pattern));
        RegularSparseMatrix a = Sparse<RegularSparseMatrix>(m, n, pattern, random);
        a.set_nsing(3);
        std::vector<Cell> expected;  // row by row: A's columns
        for (unsigned j = 0; j < n; ++j) {
          for (const Cell& cell : CellsOf(a)) {
            if (cell.col == j) expected.push_back({cell.col, cell.row, cell.value});
          }
        }
        OnBothOwners(
            a, [](const RegularSparseMatrix& x) -> auto& { return transpose(x); },
            [&](RegularSparseMatrix& t) {
              EXPECT_EQ(t.nrows(), n);
              EXPECT_EQ(t.ncols(), m);
              EXPECT_EQ(CellsOf(t), expected);
            });
        // The same records as one append after another.
        RegularSparseMatrix stepwise(n, m);
        for (unsigned j = 0; j < n; ++j) {
          SparseElement* prev = nullptr;
          for (const SparseElement* e = a.colHeads[j]; e != nullptr; e = e->nextInCol) {
            prev = stepwise.SparseMatrixInsert(prev, j, e->row, e->value);
          }
        }
        const Held<RegularSparseMatrix> t(transpose(a));
        EXPECT_EQ(PlacesOf(*t), PlacesOf(stepwise));
      }
    }
  }
}

template <class K>
void Triangles(unsigned n, Pattern pattern, Random& random) {
  SCOPED_TRACE(::testing::Message() << "order " << n << " " << Name(pattern));
  const K a = Sparse<K>(n, n, pattern, random);
  const Plain p = PlainOf(a);
  Plain upper(n, n), lower(n, n), diagonal(n, n);
  double sum = 0.0;
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = 0; j <= i; ++j) {
      lower(i, j) = p(i, j);
      upper(j, i) = p(j, i);
    }
    diagonal(i, i) = p(i, i);
    sum += p(i, i);
  }
  OnBothOwners(
      a, [](const K& x) -> auto& { return triu(x); },
      [&](RegularSparseMatrix& t) { EXPECT_EQ(CellsOf(t), NonZeros(upper)); });
  OnBothOwners(
      a, [](const K& x) -> auto& { return tril(x); },
      [&](RegularSparseMatrix& t) { EXPECT_EQ(CellsOf(t), NonZeros(lower)); });
  OnBothOwners(
      a, [](const K& x) -> auto& { return diag(x); }, [&](DiagonalMatrix& d) { EXPECT_TRUE(Same(d, diagonal)); });
  EXPECT_TRUE(SameBits(trace(a), sum));
  EXPECT_TRUE(SameBits(trace(DispensableCopy(a)), sum));
  const double first = n == 0 ? 0.0 : p(0, 0);
  EXPECT_TRUE(SameBits(scalar(a), first));
  EXPECT_TRUE(SameBits(scalar(DispensableCopy(a)), first));
  // Records as if each element of the column lists had been Put.
  RegularSparseMatrix stepwise(n, n);
  for (unsigned j = 0; j < n; ++j) {
    for (const SparseElement* e = a.colHeads[j]; e != nullptr; e = e->nextInCol) {
      if (e->row <= j) stepwise.Put(e->row, j, e->value);
    }
  }
  const Held<RegularSparseMatrix> t(triu(a));
  EXPECT_EQ(PlacesOf(*t), PlacesOf(stepwise));
}

TEST(SparseTriangleLaw, BothKinds) {
  Random random(502);
  for (unsigned n : kSizes) {
    for (Pattern pattern : kAllPatterns) {
      Triangles<RegularSparseMatrix>(n, pattern, random);
      Triangles<SymmetricSparseMatrix>(n, pattern, random);
    }
  }
}

TEST(SparseTriangleLaw, Sym) {
  Random random(503);
  for (unsigned n : kSizes) {
    for (Pattern pattern : kAllPatterns) {
      RegularSparseMatrix a = Sparse<RegularSparseMatrix>(n, n, pattern, random);
      a.set_nsing(3);
      OnBothOwners(
          a, [](const RegularSparseMatrix& x) -> auto& { return sym(x); },
          [&](SymmetricSparseMatrix& s) { EXPECT_EQ(CellsOf(s), NonZeros(PlainOf(a), true)); });
    }
  }
}

TEST(SparseNumberLaw, TraceOfAnyShape) {
  RegularSparseMatrix a(2, 3);
  a.Put(0, 0, 1.5);
  a.Put(1, 1, 2.0);
  a.Put(1, 2, 9.0);
  EXPECT_EQ(trace(a), 3.5);
  EXPECT_EQ(scalar(RegularSparseMatrix(0, 4)), 0.0);
}

// ---------------------------------------------------------------------------------------------------------------------

// Which elements an operand stores.
template <class K>
std::vector<std::vector<bool>> StoredIn(const K& a) {
  std::vector<std::vector<bool>> stored(a.nrows(), std::vector<bool>(a.ncols(), false));
  for (unsigned i = 0; i < a.nrows(); ++i) {
    for (unsigned j = 0; j < a.ncols(); ++j) {
      if constexpr (std::is_base_of_v<SparseMatrix, K>) {
        stored[i][j] = a.Cell_Loc(i, j) != nullptr;
      } else {
        stored[i][j] = std::is_same_v<K, RegularMatrix> || i == j;
      }
    }
  }
  return stored;
}

template <class K>
K Operand(unsigned m, unsigned n, Pattern pattern, Random& random) {
  if constexpr (std::is_same_v<K, DiagonalMatrix>) {
    return Filled<K>(pattern, random, m);
  } else if constexpr (std::is_same_v<K, RegularMatrix>) {
    return Filled<K>(pattern, random, m, n);
  } else {
    return Sparse<K>(m, std::is_same_v<K, SymmetricSparseMatrix> ? m : n, pattern, random);
  }
}

template <class Result, class A, class B>
void KroneckerPair(unsigned seed) {
  Random random(seed);
  for (unsigned m : {1u, 2u, 4u, 7u}) {
    for (unsigned n : {1u, 3u, 5u}) {
      for (Pattern pattern : kAllPatterns) {
        SCOPED_TRACE(::testing::Message() << m << ", " << n << " " << Name(pattern));
        const A a = Operand<A>(m, m + 1, pattern, random);
        const B b = Operand<B>(n, 2, pattern, random);
        const auto in_a = StoredIn(a);
        const auto in_b = StoredIn(b);
        const Plain p = PlainOf(a), q = PlainOf(b);
        std::vector<Cell> expected;
        for (unsigned i = 0; i < p.m; ++i) {
          for (unsigned k = 0; k < q.m; ++k) {
            for (unsigned j = 0; j < p.n; ++j) {
              for (unsigned l = 0; l < q.n; ++l) {
                const Cell cell{i * q.m + k, j * q.n + l, p(i, j) * q(k, l)};
                if (std::is_same_v<Result, SymmetricSparseMatrix> && cell.col < cell.row) continue;
                if (in_a[i][j] && in_b[k][l] && cell.value != 0.0) expected.push_back(cell);
              }
            }
          }
        }
        const Held<Result> c(kron(a, b));
        EXPECT_SOUND(*c);
        EXPECT_EQ(CellsOf(*c), expected);
        EXPECT_EQ(c->nrows(), p.m * q.m);
        EXPECT_EQ(c->ncols(), p.n * q.n);
        EXPECT_EQ(c->nsing(), -1);
        FeedDigest(*c);
        const Held<A> x(DispensableCopy(a));
        const Held<B> y(DispensableCopy(b));
        const Held<Result> again(kron(*x, *y));
        EXPECT_EQ(CellsOf(*again), expected);
        EXPECT_TRUE(Same(*x, p));
        EXPECT_TRUE(Same(*y, q));
      }
    }
  }
}

TEST(SparseKronLaw, EveryPair) {
  KroneckerPair<RegularSparseMatrix, DiagonalMatrix, RegularSparseMatrix>(511);
  KroneckerPair<RegularSparseMatrix, RegularSparseMatrix, DiagonalMatrix>(512);
  KroneckerPair<RegularSparseMatrix, RegularMatrix, RegularSparseMatrix>(513);
  KroneckerPair<RegularSparseMatrix, RegularSparseMatrix, RegularMatrix>(514);
  KroneckerPair<RegularSparseMatrix, RegularSparseMatrix, RegularSparseMatrix>(515);
  KroneckerPair<SymmetricSparseMatrix, DiagonalMatrix, SymmetricSparseMatrix>(516);
  KroneckerPair<SymmetricSparseMatrix, SymmetricSparseMatrix, DiagonalMatrix>(517);
  KroneckerPair<SymmetricSparseMatrix, SymmetricSparseMatrix, SymmetricSparseMatrix>(518);
}

TEST(SparseSwap, ExchangesStores) {
  RegularSparseMatrix a(2, 3), b(1, 1);
  a.Put(1, 2, 5.0);
  a.set_nsing(2);
  std::swap(a, b);
  EXPECT_EQ(CellsOf(b), (std::vector<Cell>{{1, 2, 5.0}}));
  EXPECT_EQ(b.nsing(), 2);
  EXPECT_EQ(a.nrows(), 1u);
  SymmetricSparseMatrix s(2), t(3);
  s.Put(1, 0, 4.0);
  std::swap(s, t);
  EXPECT_EQ(t.nrows(), 2u);
  EXPECT_EQ(CellsOf(t), (std::vector<Cell>{{0, 1, 4.0}}));
  std::swap(t, t);
  EXPECT_EQ(t.nrows(), 2u);
}

}  // namespace
}  // namespace quorvel::test
