// Every operand check as a truth table: {nothing pending, pending} x {ok, not ok} x {dispensable or not} of each
// operand x {condition holds or not}.
#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/codes.h"

using namespace quorvel::test;

namespace {

// A matrix that tells when it dies.
class Mortal : public RegularMatrix {
 public:
  Mortal(unsigned rows, unsigned cols, int& deaths) : RegularMatrix(rows, cols), deaths_(&deaths) {}
  ~Mortal() override { ++*deaths_; }

 private:
  int* deaths_;
};

struct State {
  bool ok;
  bool dispensable;
};
constexpr State kStates[] = {{true, false}, {false, false}, {true, true}, {false, true}};

constexpr std::nullopt_t none = std::nullopt;
constexpr int kCode = 1000;
constexpr int kPending = 777;

using Single = std::function<void(Matrix&, int code)>;

struct SingleCase {
  const char* name;
  unsigned rows, cols;
  Single call;
  // offset expected with nothing pending, by state
  std::function<std::optional<int>(State)> offset;
};

std::optional<int> NotOkThen(State s, std::optional<int> otherwise) {
  return s.ok ? otherwise : std::optional<int>(50000);
}

std::vector<SingleCase> SingleCases() {
  return {
      {"ThrowNotOk", 2, 3, [](Matrix& a, int c) { a.ThrowNotOk(c); }, [](State s) { return NotOkThen(s, none); }},
      {"ThrowNotOkOrEmpty full", 2, 3, [](Matrix& a, int c) { a.ThrowNotOkOrEmpty(c); },
       [](State s) { return NotOkThen(s, none); }},
      {"ThrowNotOkOrEmpty no rows", 0, 3, [](Matrix& a, int c) { a.ThrowNotOkOrEmpty(c); },
       [](State s) { return NotOkThen(s, 40000); }},
      {"ThrowNotOkOrEmpty no columns", 3, 0, [](Matrix& a, int c) { a.ThrowNotOkOrEmpty(c); },
       [](State s) { return NotOkThen(s, 40000); }},
      {"ThrowNotOkOrDispensable", 2, 3, [](Matrix& a, int c) { a.ThrowNotOkOrDispensable(c); },
       [](State s) { return s.ok && !s.dispensable ? none : std::optional<int>(50000); }},
      {"ThrowInsert at the end", 2, 3, [](Matrix& a, int c) { a.ThrowInsert(c, 5, 5); },
       [](State s) { return NotOkThen(s, s.dispensable ? std::optional<int>(40000) : none); }},
      {"ThrowInsert behind the end", 2, 3, [](Matrix& a, int c) { a.ThrowInsert(c, 6, 5); },
       [](State s) { return NotOkThen(s, s.dispensable ? 40000 : 30000); }},
      {"ThrowDimRange inside", 2, 3, [](Matrix& a, int c) { a.ThrowDimRange(c, 2, 3, 5); },
       [](State s) { return s.ok && !s.dispensable ? none : std::optional<int>(60000); }},
      {"ThrowDimRange beyond", 2, 3, [](Matrix& a, int c) { a.ThrowDimRange(c, 3, 3, 5); },
       [](State) { return 60000; }},
      {"ThrowDimRange wrapping", 2, 3, [](Matrix& a, int c) { a.ThrowDimRange(c, 1, 0xFFFFFFFFu, 5); },
       [](State) { return 60000; }},
      {"ThrowForEachIn inside", 2, 3, [](Matrix& a, int c) { a.ThrowForEachIn(c, 1, 2, 0, 0, 4, 4); },
       [](State s) { return NotOkThen(s, none); }},
      {"ThrowForEachIn index", 2, 3, [](Matrix& a, int c) { a.ThrowForEachIn(c, 2, 2, 0, 0, 4, 4); },
       [](State s) { return NotOkThen(s, 40000); }},
      {"ThrowForEachIn below", 2, 3, [](Matrix& a, int c) { a.ThrowForEachIn(c, 1, 2, 0, 1, 4, 4); },
       [](State s) { return NotOkThen(s, 40000); }},
      {"ThrowForEachIn reversed", 2, 3, [](Matrix& a, int c) { a.ThrowForEachIn(c, 1, 2, 3, 0, 2, 4); },
       [](State s) { return NotOkThen(s, 40000); }},
      {"ThrowForEachIn above", 2, 3, [](Matrix& a, int c) { a.ThrowForEachIn(c, 1, 2, 3, 0, 5, 4); },
       [](State s) { return NotOkThen(s, 40000); }},
      {"ThrowNotSize same", 2, 3, [](Matrix& a, int c) { a.ThrowNotSize(c, 2, 3); },
       [](State s) { return NotOkThen(s, none); }},
      {"ThrowNotSize rows", 2, 3, [](Matrix& a, int c) { a.ThrowNotSize(c, 3, 3); },
       [](State s) { return NotOkThen(s, 40000); }},
      {"ThrowNotSize columns", 2, 3, [](Matrix& a, int c) { a.ThrowNotSize(c, 2, 2); },
       [](State s) { return NotOkThen(s, 40000); }},
      {"ThrowNotSquare square", 3, 3, [](Matrix& a, int c) { a.ThrowNotSquare(c); },
       [](State s) { return NotOkThen(s, none); }},
      {"ThrowNotSquare oblong", 2, 3, [](Matrix& a, int c) { a.ThrowNotSquare(c); },
       [](State s) { return NotOkThen(s, 40000); }},
  };
}

TEST(Checks, OneOperand) {
  for (const SingleCase& c : SingleCases()) {
    for (const State state : kStates) {
      for (const int pending : {0, kPending}) {
        SCOPED_TRACE(::testing::Message() << c.name << ", ok " << state.ok << ", dispensable " << state.dispensable
                                          << ", pending " << pending);
        int deaths = 0;
        Mortal* a = new Mortal(c.rows, c.cols, deaths);
        a->set_ok(state.ok);
        a->set_dispensable(state.dispensable);
        const std::optional<int> offset = c.offset(state);
        std::optional<int> expected;
        if (pending != 0) {
          expected = pending;
        } else if (offset) {
          expected = kCode + *offset;
        }
        const std::optional<int> got = CodeWhilePending(pending, [&] { c.call(*a, kCode); });
        EXPECT_EQ(got, expected);
        const bool dies = expected.has_value() && state.dispensable;
        EXPECT_EQ(deaths, dies ? 1 : 0);
        if (!dies) {
          EXPECT_EQ(a->ok(), state.ok);
          delete a;
        }
        // A thrown value of 0 is no failure.
        if (pending == 0 && offset) {
          Mortal* b = new Mortal(c.rows, c.cols, deaths);
          b->set_ok(state.ok);
          b->set_dispensable(state.dispensable);
          EXPECT_EQ(CodeOf([&] { c.call(*b, -*offset); }), std::nullopt);
          delete b;
        }
      }
    }
  }
}

struct PairCase {
  const char* name;
  unsigned rows, cols, other_rows, other_cols;
  void (*call)(Matrix&, int, const Matrix&);
  bool fits;
};

const PairCase kPairCases[] = {
    {"ThrowEquals", 2, 3, 4, 5, [](Matrix& a, int c, const Matrix& b) { a.ThrowEquals(c, b); }, true},
    {"ThrowNotSameRows same", 2, 3, 2, 5, [](Matrix& a, int c, const Matrix& b) { a.ThrowNotSameRows(c, b); }, true},
    {"ThrowNotSameRows other", 2, 3, 3, 3, [](Matrix& a, int c, const Matrix& b) { a.ThrowNotSameRows(c, b); }, false},
    {"ThrowNotSameCols same", 2, 3, 5, 3, [](Matrix& a, int c, const Matrix& b) { a.ThrowNotSameCols(c, b); }, true},
    {"ThrowNotSameCols other", 2, 3, 2, 2, [](Matrix& a, int c, const Matrix& b) { a.ThrowNotSameCols(c, b); }, false},
    {"ThrowNotSameDim same", 2, 3, 2, 3, [](Matrix& a, int c, const Matrix& b) { a.ThrowNotSameDim(c, b); }, true},
    {"ThrowNotSameDim rows", 2, 3, 4, 3, [](Matrix& a, int c, const Matrix& b) { a.ThrowNotSameDim(c, b); }, false},
    {"ThrowNotSameDim columns", 2, 3, 2, 4, [](Matrix& a, int c, const Matrix& b) { a.ThrowNotSameDim(c, b); }, false},
    {"ThrowNotOppoDim opposite", 2, 3, 3, 2, [](Matrix& a, int c, const Matrix& b) { a.ThrowNotOppoDim(c, b); }, true},
    {"ThrowNotOppoDim rows", 2, 3, 2, 2, [](Matrix& a, int c, const Matrix& b) { a.ThrowNotOppoDim(c, b); }, false},
    {"ThrowNotOppoDim columns", 2, 3, 3, 3, [](Matrix& a, int c, const Matrix& b) { a.ThrowNotOppoDim(c, b); }, false},
    {"ThrowProduct fits", 2, 3, 3, 7, [](Matrix& a, int c, const Matrix& b) { a.ThrowProduct(c, b); }, true},
    {"ThrowProduct does not", 2, 3, 2, 3, [](Matrix& a, int c, const Matrix& b) { a.ThrowProduct(c, b); }, false},
};

TEST(Checks, TwoOperands) {
  for (const PairCase& c : kPairCases) {
    const bool equals = c.name == std::string("ThrowEquals");
    for (const State sa : kStates) {
      for (const State sb : kStates) {
        for (const int pending : {0, kPending}) {
          SCOPED_TRACE(::testing::Message() << c.name << ", a ok " << sa.ok << " dispensable " << sa.dispensable
                                            << ", b ok " << sb.ok << " dispensable " << sb.dispensable << ", pending "
                                            << pending);
          int a_deaths = 0, b_deaths = 0;
          Mortal* a = new Mortal(c.rows, c.cols, a_deaths);
          Mortal* b = new Mortal(c.other_rows, c.other_cols, b_deaths);
          a->set_ok(sa.ok);
          a->set_dispensable(sa.dispensable);
          b->set_ok(sb.ok);
          b->set_dispensable(sb.dispensable);
          std::optional<int> expected;
          if (pending != 0) {
            expected = pending;
          } else if (!sa.ok || !sb.ok) {
            expected = kCode + 50000;
          } else if (!c.fits) {
            expected = kCode + 40000;
          }
          EXPECT_EQ(CodeWhilePending(pending, [&] { c.call(*a, kCode, *b); }), expected);
          EXPECT_EQ(a_deaths, expected && sa.dispensable ? 1 : 0);
          EXPECT_EQ(b_deaths, expected && sb.dispensable ? 1 : 0);
          if (a_deaths == 0) {
            EXPECT_EQ(a->ok(), sa.ok && !(equals && expected));  // a failed assignment marks its target
            delete a;
          }
          if (b_deaths == 0) {
            EXPECT_EQ(b->ok(), sb.ok);
            delete b;
          }
        }
      }
    }
  }
}

TEST(Checks, TheSameDispensableObjectTwiceDiesOnce) {
  for (const PairCase& c : kPairCases) {
    SCOPED_TRACE(c.name);
    int deaths = 0;
    Mortal* a = new Mortal(2, 3, deaths);
    a->set_dispensable(true);
    EXPECT_EQ(CodeWhilePending(kPending, [&] { c.call(*a, kCode, *a); }), std::optional<int>(kPending));
    EXPECT_EQ(deaths, 1);
  }
}

TEST(Checks, ElementAccessorsNeverDestroy) {
  RegularMatrix r(2, 3);
  SymmetricMatrix s(3);
  DiagonalMatrix d(3);
  for (Matrix* m : std::initializer_list<Matrix*>{&r, &s, &d}) m->set_dispensable(true);
  EXPECT_CODE(r.ThrowRegularMatrixAccessor(2, 0), 60080);
  EXPECT_CODE(r.ThrowRegularMatrixAccessor(0, 3), 60080);
  EXPECT_CODE(r.ThrowRegularMatrixAccessor(0), 60080);  // neither a row nor a column vector
  EXPECT_NO_CODE(r.ThrowRegularMatrixAccessor(1, 2));
  EXPECT_CODE(s.ThrowSquareMatrixAccessorGet(3, 0), 60090);
  EXPECT_CODE(s.ThrowSquareMatrixAccessorGet(0, 3), 60090);
  EXPECT_CODE(s.ThrowTriMatrixAccessorSet(1, 0), 60021);
  EXPECT_CODE(s.ThrowTriMatrixAccessorSet(0, 3), 60021);
  EXPECT_CODE(d.ThrowDiagonalMatrixAccessorSet(0, 1), 60090);
  EXPECT_CODE(d.ThrowDiagonalMatrixAccessorSet(3, 3), 60090);
  // The regular checks look at the pending code first, the others only when the index is bad.
  EXPECT_CODE_WHILE_PENDING(kPending, r.ThrowRegularMatrixAccessor(1, 2), kPending);
  EXPECT_NO_CODE_WHILE_PENDING(kPending, s.ThrowSquareMatrixAccessorGet(1, 1));
  EXPECT_NO_CODE_WHILE_PENDING(kPending, s.ThrowTriMatrixAccessorSet(1, 2));
  EXPECT_NO_CODE_WHILE_PENDING(kPending, d.ThrowDiagonalMatrixAccessorSet(1, 1));
  EXPECT_CODE_WHILE_PENDING(kPending, s.ThrowTriMatrixAccessorSet(2, 1), kPending);
  EXPECT_CODE_WHILE_PENDING(kPending, d.ThrowDiagonalMatrixAccessorSet(2, 1), kPending);
  for (Matrix* m : std::initializer_list<Matrix*>{&r, &s, &d}) m->set_dispensable(false);
}

TEST(Checks, VectorAccess) {
  RegularMatrix col(4, 1), row(1, 5), one(1, 1);
  EXPECT_NO_CODE(col.ThrowRegularMatrixAccessor(3));
  EXPECT_CODE(col.ThrowRegularMatrixAccessor(4), 60080);
  EXPECT_NO_CODE(row.ThrowRegularMatrixAccessor(4));
  EXPECT_CODE(row.ThrowRegularMatrixAccessor(5), 60080);
  EXPECT_NO_CODE(one.ThrowRegularMatrixAccessor(0));
  EXPECT_CODE(one.ThrowRegularMatrixAccessor(1), 60080);
  EXPECT_CODE_WHILE_PENDING(kPending, one.ThrowRegularMatrixAccessor(0), kPending);
}

}  // namespace
