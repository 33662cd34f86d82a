// Kernels on lines, of the instance that is chosen (QUORVEL_KERNELS selects one): the same bits as a plain loop, at
// every length, with nothing written beyond the end.
#include <gtest/gtest.h>

#include <vector>

#include "ops/kernels/kernels.h"
#include "support/digest.h"
#include "support/random.h"

using namespace quorvel::test;
using quorvel::detail::kernels;

namespace {

std::vector<double> Line(unsigned count, Pattern pattern, Random& random) {
  std::vector<double> line(count);
  Fill(line.data(), count, pattern, random);
  return line;
}

}  // namespace

TEST(LineKernels, MultiplesOfOneAndFourLines) {
  Random random(611);
  for (unsigned count = 0; count <= 70; ++count) {
    for (const Pattern pattern : kAllPatterns) {
      const std::vector<double> s = Line(4, pattern, random);
      std::vector<std::vector<double>> x;
      for (unsigned k = 0; k < 4; ++k) x.push_back(Line(count, pattern, random));
      const std::vector<double> y = Line(count + 9, pattern, random);  // nine more, which must stay
      std::vector<double> one(y), four(y), expected_one(y), expected_four(y);
      for (unsigned i = 0; i < count; ++i) {
        expected_one[i] += s[0] * x[0][i];
        for (unsigned k = 0; k < 4; ++k) expected_four[i] += s[k] * x[k][i];
      }
      kernels().add_multiple(one.data(), s[0], x[0].data(), count);
      kernels().add_four_multiples(four.data(), s.data(), x[0].data(), x[1].data(), x[2].data(), x[3].data(), count);
      EXPECT_TRUE(SameBits(one.data(), expected_one.data(), one.size())) << Name(pattern) << " " << count;
      EXPECT_TRUE(SameBits(four.data(), expected_four.data(), four.size())) << Name(pattern) << " " << count;
      digest::Feed(four.data(), four.size());
    }
  }
}
