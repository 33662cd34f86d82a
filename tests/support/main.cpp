// The main program of every room: GoogleTest with a leak check around each test and the digest.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "support/allocations.h"
#include "support/codes.h"
#include "support/digest.h"

namespace {

using quorvel::test::digest::BeginTest;
using quorvel::test::digest::EndTest;

class EachTest : public ::testing::EmptyTestEventListener {
  void OnTestStart(const ::testing::TestInfo&) override {
    BeginTest();
    quorvel::test::leak_check::Begin();
  }
  void OnTestEnd(const ::testing::TestInfo& info) override {
    quorvel::test::leak_check::End();
    EndTest(info.test_suite_name(), info.name());
  }
};

// The room's name is the program's, without "test_".
const char* RoomOf(const char* program) {
  const char* slash = std::strrchr(program, '/');
  const char* name = slash != nullptr ? slash + 1 : program;
  return std::strncmp(name, "test_", 5) == 0 ? name + 5 : name;
}

}  // namespace

// Asked by the library which of its kernels to use: QUORVEL_KERNELS in the environment names them (portable, sse2, avx2,
// avx512). A name that cannot run here ends the program, so that no comparison passes by comparing a thing with itself.
extern "C" __attribute__((visibility("default"))) const char* quorvel_choose_kernels(const char* const* names,
                                                                                   unsigned count) {
  const char* const wanted = std::getenv("QUORVEL_KERNELS");
  if (wanted == nullptr) return nullptr;
  for (unsigned k = 0; k < count; ++k) {
    if (std::strcmp(wanted, names[k]) == 0) {
      std::printf("kernels %s\n", names[k]);
      return names[k];
    }
  }
  std::fprintf(stderr, "QUORVEL_KERNELS=%s: no such kernels on this processor\n", wanted);
  std::_Exit(3);
}

int main(int argc, char** argv) {
  const std::string room = RoomOf(argv[0]);
  ::testing::InitGoogleTest(&argc, argv);
  { SCOPED_TRACE("the first trace of a program allocates a list that GoogleTest keeps"); }
  // Innermost, so that what the other listeners keep is not counted.
  ::testing::TestEventListeners& listeners = ::testing::UnitTest::GetInstance()->listeners();
  ::testing::TestEventListener* printer = listeners.Release(listeners.default_result_printer());
  listeners.Append(printer);
  listeners.Append(new EachTest);
  const int result = RUN_ALL_TESTS();
  quorvel::test::digest::Report(room.c_str());
  quorvel::test::PrintNotedCodes(room.c_str());
  return result;
}
