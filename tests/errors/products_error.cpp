// Products, scaling and structured products: every refusal, with and without dispensable operands. (The leak check of
// the room shows that refused dispensable operands die.)

#include "support/codes.h"
#include "support/operations.h"

namespace {

using namespace quorvel::test;

template <class K>
K Square(unsigned n) {
  Random random(1);
  return Sample<K>(n, n, Pattern::kInteger, random);
}

// Calls with each choice of dispensable operands; both operands are modified by `spoil` first.
template <class A, class B, class Call, class Spoil>
void ExpectRefused(const std::string& name, int code, unsigned na, unsigned nb, Call call, Spoil spoil) {
  for (int state = 0; state < 4; ++state) {
    A a(Square<A>(na));
    B b(Square<B>(nb));
    A& x = state & 1 ? DispensableCopy(a) : a;
    B& y = state & 2 ? DispensableCopy(b) : b;
    spoil(x, y);
    EXPECT_CODE(Drop(call(x, y)), code) << name << ", dispensable operands: " << state;
  }
}

struct CheckRefusals {
  template <class A, class B, class Call>
  void operator()(const char* name, int code, A*, B*, Call call) const {
    const auto nothing = [](A&, B&) {};
    ExpectRefused<A, B>(name, code + 40000, 3, 2, call, nothing);
    ExpectRefused<A, B>(name, code + 40000, 0, 2, call, nothing);
    ExpectRefused<A, B>(name, code + 50000, 3, 3, call, [](A& a, B&) { a.set_ok(false); });
    ExpectRefused<A, B>(name, code + 50000, 3, 3, call, [](A&, B& b) { b.set_ok(false); });
    ExpectRefused<A, B>(name, code + 50000, 3, 2, call, [](A& a, B& b) {
      a.set_ok(false);
      b.set_ok(false);
    });
    ExpectRefused<A, B>(name, 4711, 3, 3, call, [](A&, B&) {
      int pending = 4711;
      abort_set(pending);
    });
  }
};

TEST(ProductRefusals, EveryDensePair) { ForEachDensePair(CheckRefusals()); }

TEST(ProductRefusals, EverySparsePair) { ForEachSparsePair(CheckRefusals()); }

TEST(ProductRefusals, EveryPairWithBlocks) {
  ForEachBlockPair(0, CheckRefusals());
  ForEachBlockPair(5, CheckRefusals());  // the shape comes before the block size
}

// A block size that does not divide the order throws the bare value 0, which does not become pending.
struct CheckBlockSize {
  template <class A, class B, class Call>
  void operator()(const char* name, int, A*, B*, Call call) const {
    for (int state = 0; state < 4; ++state) {
      const A a(Square<A>(order));
      const B b(Square<B>(order));
      const A& x = state & 1 ? DispensableCopy(a) : a;
      const B& y = state & 2 ? DispensableCopy(b) : b;
      bool thrown = false;
      try {
        Drop(call(x, y));
      } catch (const MatrixException& e) {
        thrown = true;
        EXPECT_EQ(e.code(), 0) << name;
      }
      EXPECT_TRUE(thrown) << name;
      EXPECT_EQ(GetErrorCode(), 0) << name;
    }
  }
  unsigned order;
};

int callbacks = 0;

TEST(ProductRefusals, BlockSizes) {
  callbacks = 0;
  SetAbortCallback([](int) { ++callbacks; });
  ForEachBlockPair(3, CheckBlockSize{4});
  ForEachBlockPair(5, CheckBlockSize{4});
  ForEachBlockPair(8, CheckBlockSize{4});
  ForEachBlockPair(0xFFFFFFFFu, CheckBlockSize{4});
  ForEachBlockPair(1, CheckBlockSize{0});
  SetAbortCallback(nullptr);
  EXPECT_EQ(callbacks, 0);
  SymmetricMatrix& one = Dispensable<SymmetricMatrix>(4u);
  EXPECT_CODE(Drop(AQAT(Dispensable<RegularMatrix>(4u, 4u), one, 3)), 0);
}

// A symmetric sparse matrix can be made with unlike sizes; its lines would lead outside the work row.
TEST(ProductRefusals, SymmetricFactorsThatAreNotSquare) {
  for (const unsigned cols : {2u, 5u}) {
    const auto unlike = [cols]() -> SymmetricSparseMatrix& {
      SymmetricSparseMatrix& q = *new SymmetricSparseMatrix(3, cols);
      q.SparseMatrixInsert(0, cols - 1, 1.0);
      q.set_dispensable(true);
      return q;
    };
    const auto dense = []() -> RegularMatrix& { return Dispensable<RegularMatrix>(3u, 3u); };
    const auto sparse = []() -> RegularSparseMatrix& { return Dispensable<RegularSparseMatrix>(3u, 3u); };
    EXPECT_CODE(Drop(ATPA(dense(), unlike())), 40000);
    EXPECT_CODE(Drop(ATPA(dense(), unlike(), 3)), 40000);
    EXPECT_CODE(Drop(ATPA(sparse(), unlike(), 2)), 40000);
    EXPECT_CODE(Drop(AQAT(dense(), unlike())), 40000);
    EXPECT_CODE(Drop(AQAT(dense(), unlike(), 0)), 40000);
    EXPECT_CODE(Drop(AQAT(sparse(), unlike())), 40000);
    EXPECT_CODE(Drop(AQAT(sparse(), unlike(), 1)), 40000);
    EXPECT_CODE(Drop(SQS(Dispensable<SymmetricMatrix>(3u), unlike())), 40000);
    EXPECT_CODE(Drop(SQS(unlike(), Dispensable<SymmetricMatrix>(cols))), 40000);
    EXPECT_CODE(Drop(SQS(unlike(), Dispensable<SymmetricMatrix>(cols), 1)), 40000);
    EXPECT_CODE(Drop(SQS(Dispensable<SymmetricSparseMatrix>(3u), unlike(), 1)), 40000);
  }
}

TEST(ProductRefusals, SparseTriangles) {
  for (const bool dispensable : {false, true}) {
    const auto operand = [&](const RegularSparseMatrix& m) -> RegularSparseMatrix& {
      return dispensable ? DispensableCopy(m) : const_cast<RegularSparseMatrix&>(m);
    };
    RegularSparseMatrix wide(2, 3), square(2, 2);
    EXPECT_CODE(Drop(UTU(operand(wide))), 40320);
    EXPECT_CODE(Drop(LTL(operand(wide))), 40320);
    RegularSparseMatrix& a = operand(square);
    a.set_ok(false);
    EXPECT_CODE(Drop(UTU(a)), 50320);
    square.set_ok(true);
    RegularSparseMatrix& b = operand(square);
    b.set_ok(false);
    EXPECT_CODE(Drop(LTL(b)), 50320);
    square.set_ok(true);
    RegularSparseMatrix& c = operand(square);
    c.set_ok(false);
    EXPECT_CODE(Drop(ATA(c)), 50320);
    square.set_ok(true);
    RegularSparseMatrix& d = operand(square);
    d.set_ok(false);
    EXPECT_CODE(Drop(AAT(d)), 50320);
  }
}

TEST(ProductRefusals, SymmetricOfProductIntoAResult) {
  const RegularSparseMatrix a(2, 3), b(3, 2), wide(3, 3);
  SymmetricMatrix result(1);
  result.set_nsing(6);
  EXPECT_CODE(SymmetricOfProduct(result, DispensableCopy(a), DispensableCopy(a)), 40320);
  EXPECT_CODE(SymmetricOfProduct(result, DispensableCopy(a), DispensableCopy(wide)), 40000);
  EXPECT_EQ(result.ndim(), 1u);
  EXPECT_EQ(result.nsing(), 6);
  EXPECT_CODE(SymmetricOfProduct(Dispensable<SymmetricMatrix>(2u), a, wide), 40000);
  result.set_ok(false);
  EXPECT_CODE(SymmetricOfProduct(result, DispensableCopy(a), DispensableCopy(b)), 50000);
}

// The dot kernels check the line indices only and destroy nothing.
TEST(ProductRefusals, SparseDots) {
  RegularSparseMatrix& a = Dispensable<RegularSparseMatrix>(2u, 3u);
  const SymmetricSparseMatrix s(4);
  EXPECT_CODE(RowDotCol(a, s, 2, 0, 0, 9), 62170);
  EXPECT_CODE(RowDotCol(a, s, 0, 4, 0, 9), 62180);
  EXPECT_CODE(RowDotRow(a, s, 0, 4, 0, 9), 62170);
  EXPECT_CODE(ColDotCol(a, s, 3, 0, 0, 9), 62180);
  EXPECT_CODE(ColDotCol(s, a, 0, 3, 0, 9), 62180);
  EXPECT_NO_CODE_WHILE_PENDING(5, RowDotCol(a, s, 0, 0, 0, 9));
  a.DestroyIfDispensable();
}

TEST(ProductRefusals, OneObjectTwice) {
  const auto spoiled = []() -> RegularMatrix& {
    RegularMatrix& a = Dispensable<RegularMatrix>(2u, 3u);
    return a;
  };
  RegularMatrix& a = spoiled();
  EXPECT_CODE(Drop(a * a), 40320);
  RegularMatrix& b = spoiled();
  b.set_ok(false);
  EXPECT_CODE(Drop(ATB(b, b)), 50320);
  RegularMatrix& c = spoiled();
  c.set_ok(false);
  EXPECT_CODE(Drop(ATA(c)), 50320);
  RegularMatrix& d = spoiled();
  d.set_ok(false);
  EXPECT_CODE(Drop(AAT(d)), 50320);
  SymmetricMatrix& s = Dispensable<SymmetricMatrix>(2u);
  s.set_ok(false);
  EXPECT_CODE(Drop(SQS(s, s)), 50000);
  RegularMatrix& e = spoiled();
  EXPECT_CODE(PWeightedNorm(e, e), 40000);
}

template <class K, class Call>
void CheckTriangleRefusals(Call call) {
  for (const bool dispensable : {false, true}) {
    K here(3);
    K& a = dispensable ? Dispensable<K>(3u) : here;
    a.set_ok(false);
    EXPECT_CODE(Drop(call(a)), 50320);
    K& b = dispensable ? Dispensable<K>(3u) : here;
    b.set_ok(true);
    EXPECT_CODE_WHILE_PENDING(99, Drop(call(b)), 99);
  }
}

TEST(ProductRefusals, GramOfTriangles) {
  CheckTriangleRefusals<UpperTriangularMatrix>([](const auto& u) -> decltype(auto) { return UTU(u); });
  CheckTriangleRefusals<LowerTriangularMatrix>([](const auto& l) -> decltype(auto) { return LTL(l); });
}

TEST(ProductRefusals, Rectangles) {
  const RegularMatrix a(3, 2), b(4, 2), c(3, 3);
  EXPECT_CODE(Drop(ATB(a, b)), 40320);
  EXPECT_CODE(Drop(ABT(a, c)), 40320);
  EXPECT_CODE(Drop(a * b), 40320);
  EXPECT_CODE(Drop(AQAT(a, SymmetricMatrix(3))), 40000);
  EXPECT_CODE(Drop(ATPA(a, SymmetricMatrix(2))), 40000);
}

// A result of unequal sides fits no symmetric matrix, whatever the operands.
template <class A, class B>
void ExpectNoSymmetricPart() {
  for (int state = 0; state < 4; ++state) {
    SCOPED_TRACE(::testing::Message() << A().ClassName() << ", " << B().ClassName() << ", state " << state);
    const A a(2, 3);
    const B b(3, 3), c(4, 3);
    const A& x = state & 1 ? DispensableCopy(a) : a;
    const B& y = state & 2 ? DispensableCopy(b) : b;
    EXPECT_CODE(Drop(SymmetricOfProduct(x, y)), 40000);
    const A& z = state & 1 ? DispensableCopy(a) : a;
    const B& w = state & 2 ? DispensableCopy(c) : c;
    EXPECT_CODE(Drop(SymmetricOfABT(z, w)), 40000);
  }
}

TEST(ProductRefusals, SymmetricPartOfARectangle) {
  ExpectNoSymmetricPart<RegularMatrix, RegularMatrix>();
  ExpectNoSymmetricPart<RegularMatrix, RegularSparseMatrix>();
  ExpectNoSymmetricPart<RegularSparseMatrix, RegularMatrix>();
  ExpectNoSymmetricPart<RegularSparseMatrix, RegularSparseMatrix>();
}

TEST(ProductRefusals, WeightsThatAreNotSquare) {
  for (int state = 0; state < 4; ++state) {
    const RegularMatrix v(3, 1), narrow(3, 2), none(3, 0), square(3, 3);
    const RegularMatrix& a = state & 1 ? DispensableCopy(v) : v;
    const RegularMatrix& p = state & 2 ? DispensableCopy(narrow) : narrow;
    EXPECT_CODE(PWeightedNorm(a, p), 40000) << state;
    const RegularMatrix& e = state & 1 ? DispensableCopy(none) : none;
    const RegularMatrix& q = state & 2 ? DispensableCopy(square) : square;
    EXPECT_CODE(PWeightedNorm(e, q), 40000) << state;
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Mult

TEST(MultRefusals, OperandsComeFirst) {
  RegularMatrix result(2, 2), a(2, 3), b(2, 2);
  result.set_ok(false);
  EXPECT_CODE(Mult(result, a, b), 40320);
  EXPECT_CODE(Mult(result, Dispensable<RegularMatrix>(2u, 3u), Dispensable<RegularMatrix>(2u, 3u)), 40320);
}

TEST(MultRefusals, ResultNotOk) {
  for (int state = 0; state < 4; ++state) {
    RegularMatrix result(2, 2), a(2, 2), b(2, 2);
    result.set_ok(false);
    result.set_nsing(7);
    const RegularMatrix& x = state & 1 ? DispensableCopy(a) : a;
    const RegularMatrix& y = state & 2 ? DispensableCopy(b) : b;
    EXPECT_CODE(Mult(result, x, y), 50000);
    EXPECT_EQ(result.nsing(), 7);
    EXPECT_FALSE(result.ok());
  }
  UpperTriangularMatrix packed(2);
  packed.set_ok(false);
  EXPECT_CODE(Mult(packed, UpperTriangularMatrix(2), UpperTriangularMatrix(2)), 50000);
}

TEST(MultRefusals, ResultIsAnOperandThatIsNotOk) {
  RegularMatrix a(2, 2), b(2, 2);
  a.set_ok(false);
  EXPECT_CODE(Mult(a, a, b), 50320);
  RegularMatrix& d = Dispensable<RegularMatrix>(2u, 2u);
  d.set_ok(false);
  EXPECT_CODE(Mult(d, b, d), 50320);
}

TEST(MultRefusals, NothingIsWrittenBeforeTheCheck) {
  RegularMatrix result(1, 1);
  result(0, 0) = 5.0;
  EXPECT_CODE(Mult(result, RegularMatrix(2, 3), RegularMatrix(2, 3)), 40320);
  EXPECT_EQ(result.nrows(), 1u);
  EXPECT_EQ(result.data()[0], 5.0);
}

// ---------------------------------------------------------------------------------------------------------------------
// Scaling

TEST(MultRefusals, SparseResult) {
  const RegularSparseMatrix a(2, 2);
  for (int state = 0; state < 4; ++state) {
    RegularSparseMatrix result(2, 2);
    result.Put(0, 0, 3.0);
    result.set_ok(false);
    const RegularSparseMatrix& x = state & 1 ? DispensableCopy(a) : a;
    const RegularSparseMatrix& y = state & 2 ? DispensableCopy(a) : a;
    EXPECT_CODE(Mult(result, x, y), 50000);
    EXPECT_EQ(result.used, 1u);
  }
  RegularSparseMatrix spoiled(2, 2);
  spoiled.set_ok(false);
  EXPECT_CODE(Mult(spoiled, a, spoiled), 50294);
  RegularSparseMatrix wide(2, 3), result(1, 1);
  EXPECT_CODE(Mult(result, wide, DispensableCopy(wide)), 40294);
}

template <class K>
void CheckScalingRefusals() {
  K a(Square<K>(2)), result;
  a.set_ok(false);
  const K& constant = a;
  EXPECT_CODE(Drop(a * 2.0), 50320);
  EXPECT_CODE(Drop(2.0 * a), 50320);
  EXPECT_CODE(Drop(constant * 2.0), 50320);
  EXPECT_CODE(Drop(2.0 * constant), 50320);
  EXPECT_CODE(Mult(result, a, 2.0), 50320);
  EXPECT_CODE(Mult(a, a, 2.0), 50320);
  K& d = Dispensable<K>(Square<K>(2));
  d.set_ok(false);
  EXPECT_CODE(Drop(d * 2.0), 50320);
  K& e = Dispensable<K>(Square<K>(2));
  EXPECT_CODE_WHILE_PENDING(17, Drop(2.0 * e), 17);
  K& f = Dispensable<K>(Square<K>(2));
  result.set_ok(false);
  EXPECT_CODE(Mult(result, f, 2.0), 50000);
}

TEST(ScalingRefusals, EverySparseKind) {
  CheckScalingRefusals<RegularSparseMatrix>();
  CheckScalingRefusals<SymmetricSparseMatrix>();
}

TEST(ScalingRefusals, EveryDenseKind) {
  CheckScalingRefusals<RegularMatrix>();
  CheckScalingRefusals<SymmetricMatrix>();
  CheckScalingRefusals<UpperTriangularMatrix>();
  CheckScalingRefusals<LowerTriangularMatrix>();
  CheckScalingRefusals<DiagonalMatrix>();
}

}  // namespace
