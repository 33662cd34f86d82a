// Running an example program within a test: its arguments, what it prints, how it ends, and a folder for its files.

#ifndef QUORVEL_TESTS_SUPPORT_PROGRAM_H
#define QUORVEL_TESTS_SUPPORT_PROGRAM_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace quorvel::test {

// How a program ended, and what it wrote to its two streams.
struct Ending {
  int status;
  std::string out, err;
};

inline Ending EndingOf(int (*program)(const std::vector<std::string>&, std::ostream&, std::ostream&),
                       const std::vector<std::string>& arguments) {
  std::ostringstream out, err;
  const int status = program(arguments, out, err);
  return {status, out.str(), err.str()};
}

// A folder for files that a program reads and writes, of this test only.
class ProgramFolder : public ::testing::Test {
 protected:
  ProgramFolder()
      : directory_(std::filesystem::temp_directory_path() / ("quorvel_program_" + std::to_string(::getpid()))) {
    std::filesystem::create_directories(directory_);
  }
  ~ProgramFolder() override { std::filesystem::remove_all(directory_); }

  // The path of a file with that text.
  std::string File(const std::string& name, const std::string& text) const {
    const std::filesystem::path path = directory_ / name;
    std::ofstream(path, std::ios::binary) << text;
    return path.string();
  }

  std::filesystem::path directory_;
};

}  // namespace quorvel::test

#endif
