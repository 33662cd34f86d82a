// The set of columns that the sparse factors visit in order, against the standard one.
#include "factor/column_set.h"

#include <gtest/gtest.h>

#include <iterator>
#include <set>

#include "support/random.h"

using namespace quorvel::test;
using quorvel::detail::ColumnSet;

namespace {

// As the factors do: members come in ahead of the one that was taken, until the set is empty.
TEST(ColumnSet, GivesOutItsMembersInOrder) {
  for (const unsigned n : {1u, 2u, 63u, 64u, 65u, 4095u, 4096u, 4097u, 262144u, 300000u}) {
    for (const bool upwards : {true, false}) {
      Random random(n);
      ColumnSet set(n);
      std::set<unsigned> expected;
      for (unsigned round = 0; round < 20; ++round) {
        ASSERT_TRUE(set.empty());
        unsigned begin = 0, end = n;
        const auto add = [&] {
          const unsigned j = begin + random.Below(end - begin);
          set.add(j);
          expected.insert(j);
        };
        add();
        add();
        for (unsigned taken = 0; !expected.empty(); ++taken) {
          ASSERT_FALSE(set.empty());
          const auto next = upwards ? expected.begin() : std::prev(expected.end());
          const unsigned j = upwards ? set.take_first() : set.take_last();
          ASSERT_EQ(j, *next) << n;
          expected.erase(next);
          (upwards ? begin : end) = upwards ? j + 1 : j;
          if (begin < end && taken < 40 && random.Chance(2)) add();
          if (begin < end && taken < 40 && random.Chance(3)) add();
        }
      }
    }
  }
}

}  // namespace
