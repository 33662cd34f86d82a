// The main program of every room: GoogleTest with a leak check around each test and the digest.

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "support/allocations.h"
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

int main(int argc, char** argv) {
  const std::string room = RoomOf(argv[0]);
  ::testing::InitGoogleTest(&argc, argv);
  { SCOPED_TRACE("the first trace of a program allocates a list that GoogleTest keeps"); }
  // Innermost, so that what the other listeners keep is not counted.
  ::testing::TestEventListeners& listeners = ::testing::UnitTest::GetInstance()->listeners();
  ::testing::TestEventListener* printer = listeners.Release(listeners.default_result_printer());
  listeners.Append(printer);
  listeners.Append(new EachTest);
  { SCOPED_TRACE(""); }  // GoogleTest keeps the room that its first trace takes
  const int result = RUN_ALL_TESTS();
  quorvel::test::digest::Report(room.c_str());
  return result;
}
