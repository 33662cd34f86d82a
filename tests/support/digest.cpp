#include "support/digest.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace quorvel::test::digest {
namespace {

constexpr std::uint64_t kOffset = 0xCBF29CE484222325ULL;
constexpr std::uint64_t kPrime = 0x100000001B3ULL;
constexpr std::uint64_t kNaN = 0x7FF8000000000000ULL;

std::uint64_t current = kOffset;
std::uint64_t room = 0;
bool fed = false;

std::uint64_t Step(std::uint64_t hash, unsigned char byte) noexcept {
  return (hash ^ byte) * kPrime;
}

std::uint64_t Step(std::uint64_t hash, const char* text) noexcept {
  for (; *text != '\0'; ++text) hash = Step(hash, static_cast<unsigned char>(*text));
  return hash;
}

}  // namespace

void Feed(std::uint64_t bits) noexcept {
  fed = true;
  for (int k = 0; k < 8; ++k, bits >>= 8) {
    current = Step(current, static_cast<unsigned char>(bits & 0xFF));
  }
}

void Feed(double value) noexcept {
  std::uint64_t bits = kNaN;
  if (!std::isnan(value)) std::memcpy(&bits, &value, sizeof bits);
  Feed(bits);
}

void Feed(int value) noexcept { Feed(static_cast<std::uint64_t>(static_cast<std::int64_t>(value))); }
void Feed(unsigned value) noexcept { Feed(static_cast<std::uint64_t>(value)); }
void Feed(bool value) noexcept { Feed(static_cast<std::uint64_t>(value ? 1 : 0)); }

void Feed(const double* values, std::size_t count) noexcept {
  for (std::size_t k = 0; k < count; ++k) Feed(values[k]);
}

void Feed(const std::string& text) noexcept {
  fed = true;
  current = Step(current, text.c_str());
}

std::uint64_t Current() noexcept { return current; }

void BeginTest() noexcept {
  current = kOffset;
  fed = false;
}

void EndTest(const char* suite, const char* name) noexcept {
  if (!fed) return;
  std::uint64_t hash = current;
  hash = Step(hash, suite);
  hash = Step(hash, ".");
  hash = Step(hash, name);
  room += hash;
  if (std::getenv("QUORVEL_DIGEST_DETAIL") != nullptr) {
    std::printf("digest-of %s.%s %016llx\n", suite, name, static_cast<unsigned long long>(hash));
  }
}

void Report(const char* name) noexcept {
  std::printf("digest %s %016llx\n", name, static_cast<unsigned long long>(room));
  std::fflush(stdout);
}

}  // namespace quorvel::test::digest
