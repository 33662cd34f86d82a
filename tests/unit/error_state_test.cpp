// The pending code and the abort callback.
#include <gtest/gtest.h>

#include <stdexcept>
#include <type_traits>
#include <vector>

#include "quorvel/RegularMatrix.h"
#include "quorvel/SymmetricMatrix.h"
#include "support/codes.h"
#include "support/make.h"

using namespace quorvel::test;

namespace {

std::vector<int> calls;

void Record(int code) { calls.push_back(code); }
void RecordAndReset(int code) {
  calls.push_back(code);
  abort_reset();
}
void RecordAndThrow(int code) {
  calls.push_back(code);
  throw std::runtime_error("stop");
}

class ErrorState_ : public ::testing::Test {
 protected:
  void SetUp() override {
    calls.clear();
    calls.reserve(64);
    abort_reset();
  }
  void TearDown() override {
    SetAbortCallback(nullptr);
    abort_reset();
    calls.shrink_to_fit();
    std::vector<int>().swap(calls);
  }
};

int Thrown(const Matrix& a, int code) {
  try {
    a.ThrowNotOk(code);
  } catch (const MatrixException& e) {
    return e.code();
  }
  return -1;
}

TEST_F(ErrorState_, StartsClear) {
  EXPECT_EQ(GetErrorCode(), 0);
  EXPECT_EQ(ErrorState(), 0);
}

TEST_F(ErrorState_, AbortSetOfZeroDoesNothing) {
  SetAbortCallback(Record);
  int code = 0;
  abort_set(code);
  EXPECT_EQ(code, 0);
  EXPECT_EQ(ErrorState(), 0);
  EXPECT_TRUE(calls.empty());
  int first = 7;
  abort_set(first);
  code = 0;
  abort_set(code);  // even while a code is pending
  EXPECT_EQ(code, 0);
  EXPECT_EQ(calls, (std::vector<int>{7}));
}

TEST_F(ErrorState_, TheFirstCodeWins) {
  SetAbortCallback(Record);
  int first = 40340, second = -5;
  abort_set(first);
  abort_set(second);
  EXPECT_EQ(first, 40340);
  EXPECT_EQ(second, 40340);
  EXPECT_EQ(GetErrorCode(), 40340);
  EXPECT_EQ(ErrorState(), 1);
  EXPECT_EQ(calls, (std::vector<int>{40340, 40340}));
  abort_reset();
  EXPECT_EQ(GetErrorCode(), 0);
  int third = -5;
  abort_set(third);  // the callback is still installed
  EXPECT_EQ(calls, (std::vector<int>{40340, 40340, -5}));
}

TEST_F(ErrorState_, OneFailureCallsTheCallbackOnce) {
  SetAbortCallback(Record);
  RegularMatrix a(1, 1);
  a.set_ok(false);
  EXPECT_EQ(Thrown(a, 870), 50870);
  EXPECT_EQ(GetErrorCode(), 50870);
  EXPECT_EQ(calls, (std::vector<int>{50870}));
  // A second failure of another kind throws the first code again, and calls again with it.
  EXPECT_EQ(Thrown(a, 450), 50870);
  EXPECT_EQ(calls, (std::vector<int>{50870, 50870}));
}

TEST_F(ErrorState_, PendingCodeStopsGoodOperandsAndDestroysTemporaries) {
  int pending = 123;
  abort_set(pending);
  EXPECT_EQ(Thrown(RegularMatrix(1, 1), 870), 123);
  EXPECT_EQ(Thrown(Dispensable<RegularMatrix>(1u, 1u), 870), 123);  // the leak check sees it die
}

TEST_F(ErrorState_, ACallbackThatResetsStillLeavesTheThrow) {
  SetAbortCallback(RecordAndReset);
  RegularMatrix a(1, 1);
  a.set_ok(false);
  EXPECT_EQ(Thrown(a, 870), 50870);
  EXPECT_EQ(GetErrorCode(), 0);
}

TEST_F(ErrorState_, AnExceptionFromTheCallbackPassesWithTheCodePending) {
  SetAbortCallback(RecordAndThrow);
  RegularMatrix& a = Dispensable<RegularMatrix>(1u, 1u);
  a.set_ok(false);
  EXPECT_THROW(a.ThrowNotOk(870), std::runtime_error);  // a is gone by now
  EXPECT_EQ(GetErrorCode(), 50870);
}

TEST_F(ErrorState_, AFailureInsideTheCallbackIsAnOrdinaryFailure) {
  static int inner;
  SetAbortCallback([](int) {
    SetAbortCallback(nullptr);
    inner = Thrown(RegularMatrix(1, 1), 1);
  });
  RegularMatrix a(1, 1);
  a.set_ok(false);
  EXPECT_EQ(Thrown(a, 870), 50870);
  EXPECT_EQ(inner, 50870);
}

TEST_F(ErrorState_, TestNull) {
  int something = 0;
  EXPECT_NO_CODE(TestNULL(&something, 5));
  EXPECT_CODE(TestNULL(nullptr, 680), 10680);
  EXPECT_CODE_WHILE_PENDING(77, TestNULL(nullptr, 680), 77);
  EXPECT_NO_CODE_WHILE_PENDING(77, TestNULL(&something, 680));
}

TEST_F(ErrorState_, MAbortThrowsUnchangedAndRecordsNothing) {
  SetAbortCallback(Record);
  int pending = 9;
  abort_set(pending);
  calls.clear();
  try {
    M_abort(31);
    FAIL() << "returned";
  } catch (const MatrixException& e) {
    EXPECT_EQ(e.code(), 31);
  }
  EXPECT_EQ(GetErrorCode(), 9);
  EXPECT_TRUE(calls.empty());
  abort_reset();
  EXPECT_CODE(M_abort(0), 0);
}

TEST_F(ErrorState_, TestMatIsTheMinimumMatrix) {
  SymmetricMatrix* t = TestMat(3);
  EXPECT_TRUE(t->dispensable());
  const SymmetricMatrix a(*t);  // consumes it
  const double rows[3][3] = {{1, 1, 1}, {1, 2, 2}, {1, 2, 3}};
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = 0; j < 3; ++j) EXPECT_EQ(a(i, j), rows[i][j]);
  }
  SymmetricMatrix* empty = TestMat(0);
  EXPECT_EQ(empty->ndim(), 0u);
  empty->DestroyIfDispensable();
}

TEST_F(ErrorState_, TheExceptionIsPlain) {
  EXPECT_TRUE((std::is_final_v<MatrixException>));
  EXPECT_EQ(sizeof(MatrixException), sizeof(int));
  EXPECT_FALSE((std::is_convertible_v<int, MatrixException>));
  EXPECT_EQ(MatrixException(-3).code(), -3);
}

}  // namespace
