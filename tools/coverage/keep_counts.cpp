// Linked into the library of coverage builds only: a process that an assertion ends leaves its counts behind all the
// same. (The tests of assertions end child processes so.)
#include <csignal>

extern "C" void __gcov_dump();

/// Asked for by name where the library is linked from its archive, which gives only what is asked for.
extern "C" const int quorvel_keeps_counts;
const int quorvel_keeps_counts = 1;

namespace {

struct AtAbort {
  AtAbort() {
    std::signal(SIGABRT, [](int) { __gcov_dump(); });
  }
} at_abort;

}  // namespace
