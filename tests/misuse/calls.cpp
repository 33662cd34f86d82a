#include "misuse/calls.h"

#include <algorithm>
#include <cstring>

namespace quorvel::test {
namespace {

std::vector<Call>& Added() {
  static std::vector<Call> calls;
  return calls;
}

}  // namespace

AddCall::AddCall(const char* symbol, void (*run)(Arguments&)) { Added().push_back({symbol, run}); }

const std::vector<Call>& Calls() {
  static const bool sorted = [] {
    std::sort(Added().begin(), Added().end(),
              [](const Call& a, const Call& b) { return std::strcmp(a.symbol, b.symbol) < 0; });
    return true;
  }();
  static_cast<void>(sorted);
  return Added();
}

}  // namespace quorvel::test
