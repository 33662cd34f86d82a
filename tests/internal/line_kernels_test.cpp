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

TEST(LineKernels, MultiplesOfALine) {
  Random random(611);
  for (unsigned count = 0; count <= 70; ++count) {
    for (const Pattern pattern : kAllPatterns) {
      const double s = Line(1, pattern, random).front();
      const std::vector<double> x = Line(count, pattern, random);
      std::vector<double> y = Line(count + 9, pattern, random);  // nine more, which must stay
      std::vector<double> expected(y);
      for (unsigned i = 0; i < count; ++i) expected[i] += s * x[i];
      kernels().add_multiple(y.data(), s, x.data(), count);
      EXPECT_TRUE(SameBits(y.data(), expected.data(), y.size())) << Name(pattern) << " " << count;
      digest::Feed(y.data(), y.size());
    }
  }
}

TEST(LineKernels, SumsOfLines) {
  Random random(612);
  for (unsigned count = 1; count <= 70; count += count < 20 ? 1 : 7) {
    for (const Pattern pattern : kAllPatterns) {
      const unsigned terms = count % 6;
      const unsigned stride = count + 3;
      const std::vector<double> lines = Line(stride * (terms + 1), pattern, random);
      const std::vector<double> x = Line(terms, pattern, random);
      const std::vector<double> y = Line(count + 9, pattern, random);  // nine more, which must stay
      std::vector<double> fresh(y), on(y), expected_fresh(y), expected_on(y);
      for (unsigned i = 0; i < count; ++i) {
        expected_fresh[i] = 0.0;
        const double* line = lines.data();
        for (unsigned k = 0; k < terms; line += stride - k, ++k) {
          expected_fresh[i] += x[k] * line[i];
          expected_on[i] += x[k] * line[i];
        }
      }
      const auto step = static_cast<quorvel::detail::kernel_offset>(stride);
      kernels().sum_lines(fresh.data(), count, x.data(), terms, lines.data(), step, 1, false);
      kernels().sum_lines(on.data(), count, x.data(), terms, lines.data(), step, 1, true);
      EXPECT_TRUE(SameBits(fresh.data(), expected_fresh.data(), fresh.size())) << Name(pattern) << " " << count;
      EXPECT_TRUE(SameBits(on.data(), expected_on.data(), on.size())) << Name(pattern) << " " << count;
    }
  }
}

TEST(LineKernels, RankOneUpdates) {
  Random random(614);
  for (unsigned order = 0; order <= 70; order += order < 20 ? 1 : 7) {
    for (const Pattern pattern : kAllPatterns) {
      const double factor = Line(1, pattern, random).front();
      const std::vector<double> x = Line(order, pattern, random);
      const unsigned before = (order + static_cast<unsigned>(pattern)) % 8;  // every beginning between two boundaries
      std::vector<double> p = Line(order * (order + 1) / 2 + before + 9, pattern, random);  // what is around must stay
      std::vector<double> expected(p);
      double* element = expected.data() + before;
      for (unsigned i = 0; i < order; ++i) {
        for (unsigned j = i; j < order; ++j) *element++ += x[i] * (x[j] * factor);
      }
      kernels().rank_one(p.data() + before, order, x.data(), factor);
      EXPECT_TRUE(SameBits(p.data(), expected.data(), p.size())) << Name(pattern) << " " << order;
    }
  }
}

TEST(LineKernels, DividedAndChosenElements) {
  Random random(613);
  for (unsigned count = 0; count <= 40; ++count) {
    for (const Pattern pattern : kAllPatterns) {
      const std::vector<double> s = Line(count + 1, pattern, random);
      const std::vector<double> y = Line(count + 9, pattern, random);
      std::vector<double> x = Line(count + 1, pattern, random);
      for (double& e : x) {
        if (random.Chance(4)) e = 0.0;
      }
      const double d = s[count];
      std::vector<double> last(y), chosen(y), expected_last(y), expected_chosen(y);
      for (unsigned i = 0; i < count; ++i) {
        expected_last[i] = (y[i] - s[i]) / d;
        if (x[i] != 0.0) expected_chosen[i] -= d * x[i];
      }
      kernels().finish_line(last.data(), s.data(), d, count);
      kernels().subtract_nonzero(chosen.data(), d, x.data(), count);
      EXPECT_TRUE(SameBits(last.data(), expected_last.data(), last.size())) << Name(pattern) << " " << count;
      EXPECT_TRUE(SameBits(chosen.data(), expected_chosen.data(), chosen.size())) << Name(pattern) << " " << count;
    }
  }
}

TEST(LineKernels, ResidualsKeepWhatAProductLosesUnlessItsFactorsAreHuge) {
  // (1 + 2^-30)^2 = 1 + 2^-29 + 2^-60; halves of factors above 2^995 would overflow, their products count as they are.
  const std::vector<double> factors{1.0 + 0x1p-30, 1e300, -0x1p996, 0x1p995, -1e308, 1.0 + 0x1p-30};
  for (unsigned count = 1; count <= 20; ++count) {
    std::vector<double> a, b, r(count + 1, 7.0);
    for (unsigned i = 0; i < count; ++i) {
      a.push_back(factors[i % factors.size()]);
      b.push_back(a.back() * (1.0 + 0x1p-30));
    }
    const double x = 1.0 + 0x1p-30;
    kernels().residuals(r.data(), count, b.data(), a.data(), static_cast<quorvel::detail::kernel_offset>(count), 1, &x);
    for (unsigned i = 0; i < count; ++i) {
      const double expected = a[i] == 1.0 + 0x1p-30 ? -0x1p-60 : 0.0;  // a power of two loses nothing
      EXPECT_EQ(r[i], expected) << i << " of " << count;
    }
    EXPECT_EQ(r[count], 7.0) << count;
  }
}

// Wherever a line begins between two boundaries of the cache's lines, and in place, too.
TEST(LineKernels, SumsAndMultiplesAtEveryBeginning) {
  Random random(615);
  for (const unsigned count : {0u, 1u, 7u, 8u, 31u, 32u, 63u, 64u, 65u, 100u, 127u, 128u, 135u, 150u, 301u}) {
    for (unsigned begin = 0; begin < 9; ++begin) {
      const std::vector<double> x = Line(count, Pattern::kSpecial, random);
      const std::vector<double> y = Line(count, Pattern::kSpecial, random);
      const std::vector<double> before = Line(begin + count + 9, Pattern::kSpecial, random);
      const auto expect = [&](const char* what, auto of, auto kernel) {
        std::vector<double> expected(before), apart(before), in_place(before);
        for (unsigned k = 0; k < count; ++k) {
          expected[begin + k] = of(x[k], y[k]);
          in_place[begin + k] = x[k];
        }
        kernel(apart.data() + begin, x.data());
        kernel(in_place.data() + begin, in_place.data() + begin);
        EXPECT_TRUE(SameBits(apart.data(), expected.data(), apart.size())) << what << " " << count << " " << begin;
        EXPECT_TRUE(SameBits(in_place.data(), expected.data(), apart.size())) << what << " " << count << " " << begin;
      };
      expect("sum", [](double a, double b) { return a + b; },
             [&](double* r, const double* a) { kernels().add(r, a, y.data(), count); });
      expect("difference", [](double a, double b) { return a - b; },
             [&](double* r, const double* a) { kernels().subtract(r, a, y.data(), count); });
      expect("multiple", [](double a, double) { return 2.5 * a; },
             [&](double* r, const double* a) { kernels().scale(r, 2.5, a, count); });
      expect("negative", [](double a, double) { return -a; },
             [&](double* r, const double* a) { kernels().negate(r, a, count); });
    }
  }
}
