// Inverses and left division of the sparse kinds: the values of the literal dense computation, nothing but non-zeros
// stored, stores sound; where results land, codes, memory.

#include <gtest/gtest.h>

#include <new>

#include "quorvel/inverses.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/exhaust.h"
#include "support/kinds.h"
#include "support/make.h"
#include "support/sparse.h"
#include "unit/inverse_literal.h"

namespace quorvel::test {
namespace {

using namespace kinds;

constexpr unsigned kSizes[] = {1, 2, 3, 4, 5, 8, 13, 31, 32, 33, 40, 70};

// About `percent` of the cells, and mostly a diagonal.
template <class K>
K Drawn(unsigned n, unsigned percent, bool whole, Random& random) {
  K a(n, n);
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = 0; j < n; ++j) {
      if (random.Below(100) < percent) a.Put(i, j, whole ? random.Integer(-3, 3) : random.Uniform());
    }
    if (!random.Chance(6)) a.Put(i, i, whole ? random.Integer(1, 5) : 2.0 + random.Uniform());
  }
  return a;
}

template <class K>
void ExpectStored(const K& x, const Plain& expected) {
  EXPECT_SOUND(x);
  EXPECT_TRUE(Same(x, expected, true));
  for (const Cell& cell : CellsOf(x)) EXPECT_NE(cell.value, 0.0);
}

// `invert(a, inPlace)` and `invert_const(a)` for every way to own a.
template <class K, class Invert, class InvertConst>
void Everywhere(const K& a, const Counted& expected, bool keeps_count, Invert invert, InvertConst invert_const) {
  const std::vector<Cell> before = CellsOf(a);
  K own(a);
  own.set_nsing(9);
  {
    const Held<K> x(invert(own, false));
    ExpectStored(*x, expected.x);
    EXPECT_EQ(x->nsing(), expected.count);
    EXPECT_EQ(CellsOf(own), before);
    EXPECT_EQ(own.nsing(), keeps_count ? 9 : 0);
    FeedDigest(*x);
  }
  {
    const Held<K> x(invert_const(own));
    ExpectStored(*x, expected.x);
    EXPECT_EQ(CellsOf(own), before);
  }
  {
    K& temporary = DispensableCopy(a);
    const Held<K> x(invert(temporary, false));
    EXPECT_EQ(&*x, &temporary);
    ExpectStored(*x, expected.x);
    EXPECT_EQ(x->nsing(), expected.count);
  }
  EXPECT_EQ(&invert(own, true), &own);
  ExpectStored(own, expected.x);
  EXPECT_EQ(own.nsing(), expected.count);
  EXPECT_FALSE(own.dispensable());
}

template <class K>
void General(const K& a, const Counted& expected) {
  Everywhere(
      a, expected, std::is_same_v<K, SS>, [](K& x, bool in_place) -> K& { return inv(x, in_place); },
      [](const K& x) -> K& { return inv(x); });
}

Counted SymmetricInverse(const SS& a) {
  if (a.nrows() == 2 || a.nrows() == 3) {
    SymmetricMatrix dense(a);
    inv(dense, true);  // the closed forms
    return {PlainOf(dense), dense.nsing()};
  }
  Counted result = LiteralInverse(PlainOf(a));
  result.x = UpperOnBothSides(result.x);
  return result;
}

TEST(SparseInverse, EqualsTheLiteralComputation) {
  Random random(621);
  for (unsigned n : kSizes) {
    for (unsigned percent : {0u, 5u, 20u, 60u, 100u}) {
      for (bool whole : {false, true}) {
        SCOPED_TRACE(::testing::Message()
                     << "order " << n << ", " << percent << " percent" << (whole ? ", whole" : ""));
        const RS r = Drawn<RS>(n, percent, whole, random);
        General(r, LiteralInverse(PlainOf(r)));
        const SS s = Drawn<SS>(n, percent, whole, random);
        General(s, SymmetricInverse(s));
      }
    }
  }
}

TEST(SparseInverse, OfNothingAndOfOneRank) {
  for (unsigned n : {1u, 4u, 40u}) {
    General(RS(n, n), {Plain(n, n), static_cast<int>(n)});
    General(SS(n), {Plain(n, n), static_cast<int>(n)});
  }
  Random random(622);
  const RS a(RegularOf(OfRank(9, 1, random)));
  General(a, LiteralInverse(PlainOf(a)));
}

TEST(SparseInverse, OfADiagonalMatrixStaysOne) {
  RS a(3000, 3000);
  for (unsigned i = 0; i < 3000; ++i) a.SparseMatrixInsert(nullptr, i, i, i % 2 == 0 ? 2.0 : -4.0);
  inv(a, true);
  EXPECT_EQ(a.used, 3000u);
  EXPECT_EQ(a(0, 0), 0.5);
  EXPECT_EQ(a(2999, 2999), -0.25);
  EXPECT_EQ(a.nsing(), 0);
}

TEST(SparseInverse, KeepsTheBlockSize) {
  RS a(4, 4);
  a.SetGrowBy(7);
  for (unsigned i = 0; i < 4; ++i) a.Put(i, i, 2.0);
  inv(a, true);
  EXPECT_EQ(a.growBy, 8u);
  const Held<RS> x(inv(a));
  EXPECT_EQ(x->growBy, 8u);
}

// The inverse of a symmetric matrix is made by sym, also where it replaces the matrix.
TEST(SparseInverse, OfASymmetricMatrixHasTheBlocksOfSym) {
  SS a(4, 4);
  a.SetGrowBy(2);
  for (unsigned i = 0; i < 4; ++i) a.Put(i, i, 2.0);
  a.Put(0, 3, 1.0);
  const RS whole(a);
  const Held<SS> expected(sym(inv(whole)));
  const Held<SS> x(inv(a));
  EXPECT_EQ(x->growBy, expected->growBy);
  EXPECT_EQ(x->HeapReserved(), expected->HeapReserved());
  inv(a, true);
  EXPECT_EQ(a.growBy, expected->growBy);
  EXPECT_EQ(a.HeapReserved(), expected->HeapReserved());
}

TEST(SparseTriangularInverse, EqualsTheLiteralComputation) {
  Random random(623);
  int singular = 0;
  for (unsigned n : kSizes) {
    for (unsigned percent : {0u, 5u, 30u, 100u}) {
      SCOPED_TRACE(::testing::Message() << "order " << n << ", " << percent << " percent");
      RS upper = Drawn<RS>(n, percent, false, random);
      RS lower(upper);
      for (const Cell& cell : CellsOf(upper)) {
        if (cell.row > cell.col) upper.Put(cell.row, cell.col, 0.0);
        if (cell.row < cell.col) lower.Put(cell.row, cell.col, 0.0);
      }
      const Counted u = LiteralUpperInverse(PlainOf(upper));
      const Counted l = LiteralLowerInverse(PlainOf(lower));
      singular += u.count != 0;
      Everywhere(
          upper, u, true, [](RS& x, bool in_place) -> RS& { return inv_ut(x, in_place); },
          [](const RS& x) -> RS& { return inv_ut(x); });
      Everywhere(
          lower, l, true, [](RS& x, bool in_place) -> RS& { return inv_lt(x, in_place); },
          [](const RS& x) -> RS& { return inv_lt(x); });
    }
  }
  EXPECT_GT(singular, 5);
}

TEST(SparseTriangularInverse, OfASmallMatrix) {
  RS u(2, 2);
  u.Put(0, 0, 2.0);
  u.Put(0, 1, 3.0);
  u.Put(1, 1, 4.0);
  inv_ut(u, true);
  EXPECT_EQ(CellsOf(u), (std::vector<Cell>{{0, 0, 0.5}, {0, 1, -0.375}, {1, 1, 0.25}}));
  RS without(2, 2);  // no diagonal: singular pivots
  without.Put(0, 1, 3.0);
  inv_ut(without, true);
  EXPECT_EQ(without.nsing(), 2);
  EXPECT_EQ(without.used, 0u);
}

// ---------------------------------------------------------------------------------------------------------------------

// The dense operator is measured elsewhere: here the sparse ones must equal it.
TEST(SparseSolve, EqualsTheDenseOne) {
  Random random(624);
  for (unsigned n : {0u, 1u, 2u, 5u, 17u, 30u}) {
    for (unsigned percent : {5u, 30u, 100u}) {
      for (unsigned q : {0u, 1u, 4u}) {
        SCOPED_TRACE(::testing::Message() << "order " << n << ", " << percent << " percent, " << q << " columns");
        RS a = Drawn<RS>(n, percent, percent == 30, random);
        SS s = Drawn<SS>(n, percent, percent == 30, random);
        RegularMatrix b(n, q);
        for (unsigned k = 0; k < n * q; ++k) b.data()[k] = random.Chance(2) ? random.Integer(-9, 9) : 0.0;
        const RS sparse_b(b);
        RegularMatrix dense(a);
        const Held<RegularMatrix> expected(dense > b);
        {
          const Held<RegularMatrix> x(a > b);
          EXPECT_TRUE(Same(*x, PlainOf(*expected), true));
          EXPECT_EQ(a.nsing(), dense.nsing());
        }
        a.set_nsing(-1);
        {
          const Held<RS> x(a > sparse_b);
          ExpectStored(*x, PlainOf(*expected));
          EXPECT_EQ(a.nsing(), dense.nsing());
          EXPECT_TRUE(Same(sparse_b, PlainOf(b), true));
          FeedDigest(*x);
        }
        const Held<RS> kept(DispensableCopy(a));
        RS& consumed = DispensableCopy(sparse_b);
        {
          const Held<RS> x(*kept > consumed);
          EXPECT_EQ(&*x, &consumed);
          ExpectStored(*x, PlainOf(*expected));
        }
        const SymmetricMatrix full(s);
        const Held<RegularMatrix> symmetric(full > b);
        const Held<RS> y(s > sparse_b);
        ExpectStored(*y, PlainOf(*symmetric));
        EXPECT_EQ(s.nsing(), full.nsing());
        const SS& constant = s;
        const Held<RS> z(constant > sparse_b);
        EXPECT_EQ(CellsOf(*z), CellsOf(*y));
      }
    }
  }
}

TEST(SparseSolve, AMatrixByItself) {
  RS& a = Dispensable<RS>(3u, 3u);
  a.Put(0, 1, 2.0);
  a.Put(1, 0, 4.0);
  a.Put(2, 2, 8.0);
  const Held<RS> x(a > a);
  EXPECT_EQ(&*x, &a);
  EXPECT_EQ(CellsOf(a), (std::vector<Cell>{{0, 0, 1.0}, {1, 1, 1.0}, {2, 2, 1.0}}));
}

// ---------------------------------------------------------------------------------------------------------------------

template <class K, class Call>
void Refuses(unsigned n, int code, Call call) {
  K bad(n, n);
  bad.set_ok(false);
  EXPECT_CODE(call(bad), code);
  K& temporary = Dispensable<K>(n, n);
  temporary.set_ok(false);
  EXPECT_CODE(call(temporary), code);
  EXPECT_CODE_WHILE_PENDING(321, call(Dispensable<K>(n, n)), 321);
}

TEST(SparseInverseCodes, EveryOne) {
  for (unsigned n : {0u, 1u, 2u, 3u, 4u}) {
    Refuses<RS>(n, 50940, [](RS& a) -> RS& { return inv(a); });
    Refuses<SS>(n, n == 2 || n == 3 ? 50000 : 50940, [](SS& a) -> SS& { return inv(a); });
    Refuses<RS>(n, 50500, [](RS& a) -> RS& { return inv_ut(a); });
    Refuses<RS>(n, 50500, [](RS& a) -> RS& { return inv_lt(a); });
  }
  RS wide(2, 3);
  EXPECT_CODE(inv(wide), 40900);
  EXPECT_CODE(inv_ut(wide), 40500);
  EXPECT_CODE(inv_lt(wide, true), 40500);
  EXPECT_CODE(inv(Dispensable<RS>(2u, 3u)), 40900);
  RS none;
  SS nothing;
  none.set_nsing(9);
  EXPECT_THROW(inv(none), std::bad_array_new_length);
  EXPECT_EQ(none.nsing(), 9);
  EXPECT_THROW(inv(none, true), std::bad_array_new_length);
  EXPECT_EQ(none.nsing(), 0);  // as that of a dense matrix
  EXPECT_THROW(inv(Dispensable<RS>()), std::bad_array_new_length);
  EXPECT_THROW(inv(nothing), std::bad_array_new_length);
  EXPECT_THROW(inv(Dispensable<SS>()), std::bad_array_new_length);
  EXPECT_THROW(inv_ut(none), std::bad_array_new_length);
  EXPECT_THROW(inv_lt(Dispensable<RS>()), std::bad_array_new_length);
}

TEST(SparseSolveCodes, EveryOne) {
  RS a(3, 3), bad(3, 3), wide(2, 3), b(3, 1), wrong(2, 1);
  SS s(3);
  RegularMatrix dense(3, 1);
  bad.set_ok(false);
  EXPECT_CODE(bad > b, 50580);
  EXPECT_CODE(a > bad, 50580);
  EXPECT_CODE(a > wrong, 40580);
  EXPECT_CODE(s > wrong, 40580);
  EXPECT_CODE(wide > b, 40580);
  EXPECT_CODE(wide > dense, 40580);
  EXPECT_CODE(Dispensable<RS>(2u, 3u) > Dispensable<RegularMatrix>(3u, 1u), 40580);
  EXPECT_CODE(Dispensable<SS>(3u) > Dispensable<RS>(2u, 1u), 40580);
  EXPECT_CODE_WHILE_PENDING(321, (Dispensable<SS>(3u) > Dispensable<RS>(3u, 1u)), 321);
}

TEST(SparseInverseMemory, RunsOutCleanly) {
  Random random(625);
  const RS a = Drawn<RS>(70, 5, false, random);
  const SS s = Drawn<SS>(70, 5, false, random);
  const RS b = Drawn<RS>(70, 5, false, random);
  RS own(a);
  const std::vector<Cell> before = CellsOf(a);
  ExhaustMemory([&]() -> RS& { return own; }, [](RS& x) -> RS& { return inv(x); });
  ExhaustMemory([&]() -> RS& { return DispensableCopy(a); }, [](RS& x) -> RS& { return inv(x); });
  ExhaustMemory(
      [&]() -> RS& {
        EXPECT_EQ(CellsOf(own), before);
        return own;
      },
      [](RS& x) -> RS& { return inv(x, true); });
  ExhaustMemory([&]() -> SS& { return DispensableCopy(s); }, [](SS& x) -> SS& { return inv(x); });
  ExhaustMemory([&]() -> RS& { return DispensableCopy(a); }, [](RS& x) -> RS& { return inv_ut(x); });
  ExhaustMemory([&]() -> RS& { return DispensableCopy(a); }, [](RS& x) -> RS& { return inv_lt(x); });
  ExhaustMemory([&]() -> RS& { return DispensableCopy(b); }, [&](RS& x) -> RS& { return a > x; });
  ExhaustMemory([&]() -> RS& { return DispensableCopy(b); }, [&](RS& x) -> RS& { return s > x; });
}

}  // namespace
}  // namespace quorvel::test
