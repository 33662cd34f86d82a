// The bytes of a fuzzer as choices: past the end all are 0, so that every input is a finite test.

#ifndef QUORVEL_TESTS_FUZZ_INPUT_H
#define QUORVEL_TESTS_FUZZ_INPUT_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace quorvel::fuzz {

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

  bool empty() const { return next_ == end_; }
  unsigned Byte() { return empty() ? 0u : *next_++; }
  unsigned Below(unsigned count) { return Byte() % count; }  // count <= 256
  int Integer(int lo, int hi) { return lo + static_cast<int>(Below(static_cast<unsigned>(hi - lo) + 1)); }
  double AnyDouble() {
    std::uint8_t bytes[sizeof(double)];
    for (std::uint8_t& b : bytes) b = static_cast<std::uint8_t>(Byte());
    double x;
    std::memcpy(&x, bytes, sizeof x);
    return x;
  }

 private:
  const std::uint8_t* next_;
  const std::uint8_t* end_;
};

// Ends the process, which is how libFuzzer learns of a finding.
[[noreturn]] inline void Finding(const char* what, const char* where = "") {
  std::fprintf(stderr, "finding: %s %s\n", what, where);
  std::abort();
}
inline void Require(bool holds, const char* what, const char* where = "") {
  if (!holds) Finding(what, where);
}

}  // namespace quorvel::fuzz

#endif
