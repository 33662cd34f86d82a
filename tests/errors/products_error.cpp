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
TEST(ProductRefusals, SymmetricPartOfARectangle) {
  for (int state = 0; state < 4; ++state) {
    const RegularMatrix a(2, 3), b(3, 3), c(4, 3);
    const RegularMatrix& x = state & 1 ? DispensableCopy(a) : a;
    const RegularMatrix& y = state & 2 ? DispensableCopy(b) : b;
    EXPECT_CODE(Drop(SymmetricOfProduct(x, y)), 40000) << state;
    const RegularMatrix& z = state & 1 ? DispensableCopy(a) : a;
    const RegularMatrix& w = state & 2 ? DispensableCopy(c) : c;
    EXPECT_CODE(Drop(SymmetricOfABT(z, w)), 40000) << state;
  }
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

TEST(ScalingRefusals, EveryDenseKind) {
  CheckScalingRefusals<RegularMatrix>();
  CheckScalingRefusals<SymmetricMatrix>();
  CheckScalingRefusals<UpperTriangularMatrix>();
  CheckScalingRefusals<LowerTriangularMatrix>();
  CheckScalingRefusals<DiagonalMatrix>();
}

}  // namespace
