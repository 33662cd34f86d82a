// docs/QUIRKS.md, "Errors": each statement as a test.

#include <gtest/gtest.h>

#include <new>
#include <utility>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/text.h"
#include "support/codes.h"
#include "support/make.h"

namespace quorvel::test {
namespace {

// Leaves `code` pending until the end of the scope.
class Pending {
 public:
  explicit Pending(int code) { abort_set(code); }
  ~Pending() { abort_reset(); }
};

int Thrown(void (*call)()) {
  try {
    call();
  } catch (const MatrixException& e) {
    return e.code();
  }
  ADD_FAILURE() << "nothing was thrown";
  return 0;
}

TEST(ErrorQuirks, TheFirstFailureIsThrownAgainUntilReset) {
  EXPECT_EQ(Thrown([] {
              RegularMatrix a(2, 2);
              a.SumRow(7);
            }),
            40000);
  EXPECT_EQ(Thrown([] {
              RegularMatrix a(2, 2);
              a.SumRow(0);
            }),
            40000);
  EXPECT_EQ(ErrorState(), 1);
  abort_reset();
  RegularMatrix a(2, 2);
  EXPECT_EQ(a.SumRow(0), 0.0);
}

TEST(ErrorQuirks, TheMarkOfAFailedAssignmentOutlivesTheReset) {
  RegularMatrix a(1, 1);
  RegularMatrix b(1, 1);
  b(0) = 3.0;
  EXPECT_CODE_WHILE_PENDING(77, a = b, 77);
  EXPECT_FALSE(a.ok());
  EXPECT_CODE(a = b, 50140);
  a = RegularMatrix(2, 2);
  EXPECT_TRUE(a.ok());
  EXPECT_NO_CODE(a = b);

  EXPECT_CODE_WHILE_PENDING(77, a = b, 77);
  RegularMatrix fresh(1, 1);
  a.Swap(fresh);
  EXPECT_TRUE(a.ok());

  EXPECT_CODE_WHILE_PENDING(77, a = b, 77);
  a.set_ok(true);
  EXPECT_NO_CODE(a = b);
}

TEST(ErrorQuirks, SomeOperationsDoNotLookAtThePendingCode) {
  RegularMatrix a(1, 1);
  SymmetricMatrix s(1);
  RegularMatrix other;
  EXPECT_NO_CODE_WHILE_PENDING(5, RegularMatrix(3, 3));
  EXPECT_NO_CODE_WHILE_PENDING(5, other = std::move(a));
  EXPECT_NO_CODE_WHILE_PENDING(5, a.Swap(other));
  EXPECT_NO_CODE_WHILE_PENDING(5, a == 0.0);
  EXPECT_NO_CODE_WHILE_PENDING(5, a.NumberNonZero());
  EXPECT_NO_CODE_WHILE_PENDING(5, a *= 2.0);
  EXPECT_EQ(TextOf([&](std::FILE* file) {
              EXPECT_NO_CODE_WHILE_PENDING(5, PrintMFile(a, file, "a", "%g"));
            }),
            "a = [\n0\n];\n");
  EXPECT_CODE_WHILE_PENDING(5, RegularMatrix(a), 5);
  EXPECT_CODE_WHILE_PENDING(5, a.SetSize(2, 2, true), 5);
  EXPECT_CODE_WHILE_PENDING(5, -a, 5);
  EXPECT_CODE_WHILE_PENDING(5, a(0, 0), 5);
  EXPECT_NO_CODE_WHILE_PENDING(5, static_cast<double>(s(0, 0)));
}

TEST(ErrorQuirks, AThrownZeroLeavesNothingPending) {
  EXPECT_EQ(Thrown([] { M_abort(0); }), 0);
  EXPECT_EQ(Thrown([] { SymmetricMatrix(2).GetArrayCount(2, 3); }), 0);
  EXPECT_EQ(GetErrorCode(), 0);
}

std::vector<int>* heard = nullptr;
void Hear(int code) { heard->push_back(code); }

TEST(ErrorQuirks, MAbortLeavesNoTraceAndTheCallbackHearsTheFirstCode) {
  std::vector<int> codes;
  heard = &codes;
  SetAbortCallback(&Hear);
  EXPECT_EQ(Thrown([] { M_abort(9); }), 9);
  EXPECT_TRUE(codes.empty());
  EXPECT_EQ(GetErrorCode(), 0);
  {
    RegularMatrix a(2, 2);
    EXPECT_EQ(Thrown([] {
                RegularMatrix b(2, 2);
                b(5, 5) = 1.0;
              }),
              60080);
    EXPECT_EQ(Thrown([] {
                RegularMatrix b(2, 2);
                b.SumRow(9);
              }),
              60080);
  }
  SetAbortCallback(nullptr);
  abort_reset();
  EXPECT_EQ(codes, (std::vector<int>{60080, 60080}));
}

TEST(ErrorQuirks, TooManyDoublesAreABadArrayLength) {
  EXPECT_THROW(RegularMatrix(1u << 14, 1u << 14), std::bad_array_new_length);
  EXPECT_THROW(RegularMatrix(65536, 65536), std::bad_array_new_length);
  EXPECT_EQ(GetErrorCode(), 0);
}

TEST(ErrorQuirks, TheSameFaultHasDifferentOffsets) {
  EXPECT_CODE(Dispensable<RegularMatrix>(2u, 2u).InsertRows(0, 1), 40000);
  EXPECT_CODE(Dispensable<RegularMatrix>(2u, 2u).RemoveRows(0, 1), 60000);
  EXPECT_CODE(Dispensable<RegularMatrix>(2u, 2u).ThrowNotOkOrDispensable(0), 50000);
  RegularMatrix bad(2, 2);
  bad.set_ok(false);
  EXPECT_CODE(bad.InsertRows(0, 1), 50000);
  EXPECT_CODE(bad.RemoveRows(0, 1), 60000);
}

}  // namespace
}  // namespace quorvel::test
