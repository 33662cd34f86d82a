#include "support/codes.h"

#include <bitset>
#include <cstdio>
#include <cstdlib>

namespace quorvel::test {
namespace {

constexpr int kEnd = 100000;  // beyond every code
std::bitset<kEnd> noted;

}  // namespace

void NoteCode(int code) noexcept {
  if (code >= 0 && code < kEnd) noted.set(static_cast<unsigned>(code));
}

void PrintNotedCodes(const char* room) {
  if (std::getenv("QUORVEL_LIST_CODES") == nullptr) return;
  std::printf("codes %s", room);
  for (unsigned code = 0; code < kEnd; ++code) {
    if (noted[code]) std::printf(" %u", code);
  }
  std::printf("\n");
}

}  // namespace quorvel::test
