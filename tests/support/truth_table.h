// Every operand of a call in every state: ordinary or dispensable, ok or not, with and without a pending code.

#ifndef QUORVEL_TESTS_SUPPORT_TRUTH_TABLE_H
#define QUORVEL_TESTS_SUPPORT_TRUTH_TABLE_H

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "support/codes.h"

namespace quorvel::test {

// Makes the operands of one call; the k-th one made can be not ok, and all can be dispensable.
class Operand {
 public:
  Operand(bool dispensable, int not_ok) : dispensable_(dispensable), not_ok_(not_ok) {}

  template <class K, class... Sizes>
  K& Make(Sizes... sizes) {
    K* matrix = new K(sizes...);
    if (made_++ == not_ok_) matrix->set_ok(false);
    matrix->set_dispensable(dispensable_);
    if (!dispensable_) kept_.emplace_back(matrix);
    return *matrix;
  }

 private:
  bool dispensable_;
  int not_ok_;
  int made_ = 0;
  std::vector<std::unique_ptr<Matrix>> kept_;
};

// `call(Operand&)` makes its operands in order, runs the operation, and when that returns drops its dispensable result
// and the dispensable operands that survive. codes[k] is what operand k, not ok, makes it throw; 0: it is not looked at.
template <class Call>
void TruthTable(std::initializer_list<int> codes, Call call) {
  constexpr int pending = 40999;
  for (const bool dispensable : {false, true}) {
    for (int bad = -1; bad < static_cast<int>(codes.size()); ++bad) {
      const int code = bad < 0 ? 0 : codes.begin()[bad];
      Operand operand(dispensable, bad);
      EXPECT_EQ(CodeOf([&] { call(operand); }), code == 0 ? std::nullopt : std::optional<int>(code))
          << "operand " << bad << (dispensable ? ", dispensable" : "");
      Operand again(dispensable, bad);
      EXPECT_EQ(CodeWhilePending(pending, [&] { call(again); }), std::optional<int>(pending))
          << "pending, operand " << bad << (dispensable ? ", dispensable" : "");
    }
  }
}

// The call refuses operands that are ok, ordinary and dispensable ones, with this code.
template <class Call>
void Refuses(int code, Call call) {
  for (const bool dispensable : {false, true}) {
    Operand operand(dispensable, -1);
    EXPECT_EQ(CodeOf([&] { call(operand); }), std::optional<int>(code)) << (dispensable ? "dispensable" : "ordinary");
  }
}

template <class K>
void Release(K& matrix) {
  matrix.DestroyIfDispensable();
}

template <class K, class... More>
void Release(K& matrix, More&... more) {
  matrix.DestroyIfDispensable();
  Release(more...);
}

}  // namespace quorvel::test

#endif
