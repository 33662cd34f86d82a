// The other helpers: codes, random numbers, digest.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "quorvel/RegularMatrix.h"
#include "support/codes.h"
#include "support/digest.h"
#include "support/make.h"
#include "support/random.h"

namespace quorvel::test {
namespace {

TEST(Codes, EveryCodeIsACode) {
  for (int code : {0, -5, 40340}) {
    EXPECT_EQ(CodeOf([&] { throw MatrixException(code); }), code);
  }
  EXPECT_EQ(CodeOf([] {}), std::nullopt);
}

TEST(Codes, OtherExceptionsPass) {
  EXPECT_THROW(CodeOf([] { throw std::bad_alloc(); }), std::bad_alloc);
}

TEST(Codes, NothingIsPendingAfterwards) {
  RegularMatrix a(2, 2);
  EXPECT_CODE(a(2, 0), 60080);
  EXPECT_EQ(GetErrorCode(), 0);
  EXPECT_NO_CODE(a(1, 1));
  EXPECT_CODE_WHILE_PENDING(123, a(1, 1), 123);
  EXPECT_NO_CODE_WHILE_PENDING(123, a.NumberNonZero());
  EXPECT_EQ(GetErrorCode(), 0);
}

// Published outputs of the generator for the seed 1234567.
TEST(RandomNumbers, AreThoseOfTheGenerator) {
  Random random(1234567);
  EXPECT_EQ(random.Bits(), 6457827717110365317ULL);
  EXPECT_EQ(random.Bits(), 3203168211198807973ULL);
  EXPECT_EQ(random.Bits(), 9817491932198370423ULL);
  EXPECT_EQ(random.Bits(), 4593380528125082431ULL);
  EXPECT_EQ(random.Bits(), 16408922859458223821ULL);
}

TEST(RandomNumbers, StayInTheirRanges) {
  Random random(7);
  bool low = false;
  bool high = false;
  for (int k = 0; k < 1000; ++k) {
    const double u = random.Uniform();
    EXPECT_TRUE(u >= -1.0 && u < 1.0) << u;
    const double v = random.Uniform(2.0, 3.0);
    EXPECT_TRUE(v >= 2.0 && v <= 3.0) << v;
    const int i = random.Integer(-2, 2);
    EXPECT_TRUE(i >= -2 && i <= 2) << i;
    low = low || i == -2;
    high = high || i == 2;
    EXPECT_LT(random.Below(5), 5u);
  }
  EXPECT_TRUE(low && high);
}

TEST(RandomNumbers, PatternsHoldWhatTheyPromise) {
  Random random(3);
  int nan = 0, inf = 0, minus_zero = 0;
  for (int k = 0; k < 1000; ++k) {
    const double special = Draw(Pattern::kSpecial, random);
    nan += std::isnan(special) ? 1 : 0;
    inf += std::isinf(special) ? 1 : 0;
    const double zero = Draw(Pattern::kSignedZero, random);
    minus_zero += zero == 0.0 && std::signbit(zero) ? 1 : 0;
    const double whole = Draw(Pattern::kInteger, random);
    EXPECT_EQ(whole, std::floor(whole));
    EXPECT_LT(std::fabs(Draw(Pattern::kTiny, random)), 1.1e-150);
    EXPECT_LT(std::fabs(Draw(Pattern::kHuge, random)), 1.1e+150);
  }
  EXPECT_GT(nan, 20);
  EXPECT_GT(inf, 20);
  EXPECT_GT(minus_zero, 20);
}

TEST(Bits, AreCompared) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(SameBits(nan, -nan));
  EXPECT_FALSE(SameBits(nan, 1.0));
  EXPECT_FALSE(SameBits(0.0, -0.0));
  EXPECT_FALSE(SameBits(1.0, std::nextafter(1.0, 2.0)));
  const double a[] = {1.0, 2.0};
  const double b[] = {1.0, 3.0};
  EXPECT_TRUE(SameBits(a, a, 2));
  EXPECT_FALSE(SameBits(a, b, 2));
}

// Published test vector of the 64-bit FNV-1a hash.
TEST(Digest, IsTheHash) {
  EXPECT_EQ(digest::Current(), 0xCBF29CE484222325ULL);
  digest::Feed(std::string("foobar"));
  EXPECT_EQ(digest::Current(), 0x85944171F73967E8ULL);
}

std::uint64_t After(double value) {
  digest::BeginTest();
  digest::Feed(value);
  const std::uint64_t hash = digest::Current();
  digest::BeginTest();
  return hash;
}

TEST(Digest, SeesBitsButNotTheKindOfNaN) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(After(nan), After(-nan));
  EXPECT_NE(After(0.0), After(-0.0));
  EXPECT_NE(After(1.0), After(std::nextafter(1.0, 2.0)));
}

TEST(Digest, SeesAMatrix) {
  Random random(11);
  const RegularMatrix a = Filled<RegularMatrix>(Pattern::kUniform, random, 2u, 3u);
  digest::Feed(a);
  const std::uint64_t wide = digest::Current();
  digest::BeginTest();
  RegularMatrix b(3, 2);
  b.Assign(a.data(), 3, 2);
  digest::Feed(b);
  EXPECT_NE(digest::Current(), wide);
}

}  // namespace
}  // namespace quorvel::test
