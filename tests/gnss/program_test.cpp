// The program as a user meets it: messages, exit status, files.
#include "program.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "gnss/written_files.h"
#include "support/program.h"

namespace gnss {
namespace {

using namespace gnss::test;
using namespace quorvel::test;
namespace fs = std::filesystem;

Ending RunOn(const std::vector<std::string>& arguments) { return EndingOf(RunProgram, arguments); }

std::string Contents(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

class Program : public ProgramFolder {
 protected:
  std::string Navigation() const { return files_.Navigation(); }
  std::string Observations(int epochs) const { return files_.Observations(epochs); }
  std::string Out() const { return (directory_ / "out").string(); }

  WrittenFiles files_;
  Vector3 place_ = files_.place();
};

TEST_F(Program, FindsThePositionOfWrittenFiles) {
  const std::string obs = File("site.24o", Observations(40));
  const std::string nav = File("site.24n", Navigation());
  const Ending r = RunOn({obs, nav, "--out", Out()});
  EXPECT_EQ(r.status, kPositionFound) << r.err;
  EXPECT_EQ(r.err, "");
  EXPECT_NE(r.out.find("TESTSITE"), std::string::npos);
  EXPECT_NE(r.out.find("40 read, 40 solved, 0 rejected"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("Reading"), std::string::npos);
  EXPECT_EQ(RunOn({obs, nav, "--out", Out(), "--quiet"}).out.find("Reading"), std::string::npos);

  // Heading and one line per epoch, all with the same number of fields; the errors are below a centimetre.
  std::istringstream csv(Contents(directory_ / "out" / "results.csv"));
  std::string line;
  std::getline(csv, line);
  const auto fields = std::count(line.begin(), line.end(), ',');
  int lines = 0;
  while (std::getline(csv, line)) {
    EXPECT_EQ(std::count(line.begin(), line.end(), ','), fields) << line;
    EXPECT_NE(line.find(",solved,"), std::string::npos) << line;
    ++lines;
  }
  EXPECT_EQ(lines, 40);
  EXPECT_NE(Contents(directory_ / "out" / "results.m").find("results = [\n0,"), std::string::npos);
  for (const char* name : {"scatter.svg", "errors.svg"}) {
    const std::string svg = Contents(directory_ / "out" / name);
    EXPECT_EQ(svg.rfind("<svg xmlns=\"http://www.w3.org/2000/svg\"", 0), 0u);
    EXPECT_EQ(svg.substr(svg.size() - 7), "</svg>\n");
    EXPECT_EQ(svg.find("nan"), std::string::npos);
    EXPECT_EQ(svg.find("inf"), std::string::npos);
  }
}

TEST_F(Program, SaysWhichFileIsMissingOrForeignAndWhere) {
  const std::string obs = File("site.24o", Observations(3));
  const std::string nav = File("site.24n", Navigation());
  const std::string text = File("letter.txt", "Dear sir,\n");
  struct Case {
    std::string observations, navigation, message;
  };
  const Case cases[] = {
      {directory_ / "none.24o", nav, (directory_ / "none.24o").string() + ": No such file"},
      {obs, directory_ / "none.24n", (directory_ / "none.24n").string() + ": No such file"},
      {nav, obs, obs + ":1: the file holds observations"},
      {obs, text, text + ":1: not a RINEX file"},
      {text, nav, text + ":1: not a RINEX file"},
      {directory_, nav, directory_.string() + ":0: the file is empty"},
  };
  for (const Case& c : cases) {
    const Ending r = RunOn({c.observations, c.navigation, "--out", Out()});
    EXPECT_EQ(r.status, kFailed) << c.message;
    EXPECT_EQ(r.err.rfind(c.message, 0), 0u) << r.err << "expected " << c.message;
    EXPECT_FALSE(fs::exists(Out()));
  }
}

TEST_F(Program, UsesATruncatedFileAsFarAsItGoes) {
  const std::string whole = Observations(5);
  const std::string obs = File("cut.24o", whole.substr(0, whole.size() - 40));
  const std::string nav = File("site.24n", Navigation());
  const Ending r = RunOn({obs, nav, "--out", Out()});
  EXPECT_EQ(r.status, kPositionFound);
  EXPECT_NE(r.err.find("the file ends inside this epoch"), std::string::npos) << r.err;
  EXPECT_NE(r.out.find("4 read, 4 solved"), std::string::npos) << r.out;
}

TEST_F(Program, EndsWithoutSuccessWhenNoPositionComesOut) {
  const std::string nav = File("site.24n", Navigation());
  const std::string no_epochs = File("header.24o", Observations(0));
  const Ending empty = RunOn({no_epochs, nav, "--out", Out()});
  EXPECT_EQ(empty.status, kNoPosition);
  EXPECT_NE(empty.err.find("no position"), std::string::npos);

  // Observations of another day: no message is valid.
  std::string other_day = Observations(3);
  for (std::size_t at = 0; (at = other_day.find(" 24  8 18", at)) != std::string::npos;) other_day[at + 8] = '1';
  const Ending r = RunOn({File("other.24o", other_day), nav, "--out", Out()});
  EXPECT_EQ(r.status, kNoPosition) << r.out;
  EXPECT_NE(r.out.find("without a valid broadcast message"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("3 with too few satellites"), std::string::npos) << r.out;
  EXPECT_FALSE(fs::exists(Out()));
}

TEST_F(Program, ComparesWithTheTruthItIsGiven) {
  const std::string obs = File("site.24o", Observations(3));
  const std::string nav = File("site.24n", Navigation());
  char x[40], y[40], z[40];
  std::snprintf(x, sizeof x, "%.3f", place_[0] + 3.0);
  std::snprintf(y, sizeof y, "%.3f", place_[1] + 4.0);
  std::snprintf(z, sizeof z, "%.3f", place_[2]);
  const Ending r = RunOn({obs, nav, "--truth", x, y, z, "--out", Out(), "--motion", "walking"});
  EXPECT_EQ(r.status, kPositionFound);
  EXPECT_NE(r.out.find("position given by --truth"), std::string::npos);
  EXPECT_NE(r.out.find("    5.00"), std::string::npos) << r.out;  // the 3D error
  EXPECT_NE(r.out.find("receiver taken as walking"), std::string::npos);
}

TEST_F(Program, SaysWhenItCannotWrite) {
  const std::string obs = File("site.24o", Observations(3));
  const std::string nav = File("site.24n", Navigation());
  const std::string occupied = File("occupied", "");
  const Ending r = RunOn({obs, nav, "--out", occupied + "/here"});
  EXPECT_EQ(r.status, kFailed);
  EXPECT_NE(r.err.find("cannot be created"), std::string::npos) << r.err;
}

TEST_F(Program, ExplainsItsArguments) {
  EXPECT_EQ(RunOn({"--help"}).status, kPositionFound);
  EXPECT_NE(RunOn({"--help"}).out.find("usage: gnss_position"), std::string::npos);
  const std::vector<std::vector<std::string>> wrong = {
      {"one.24o"},         {"a", "b", "c"},       {"--colour"},
      {"--out"},           {"--mask", "ten"},     {"--mask", "95"},
      {"--motion", "fly"}, {"--truth", "1", "2"}, {"--truth", "1", "2", "3"},
  };
  for (const auto& arguments : wrong) {
    const Ending r = RunOn(arguments);
    EXPECT_EQ(r.status, kBadArguments) << arguments[0];
    EXPECT_NE(r.err.find("usage: gnss_position"), std::string::npos) << arguments[0];
    EXPECT_EQ(r.out, "");
  }
}

TEST_F(Program, RunsWithoutFiles) {
  if (sizeof(void*) == 4) GTEST_SKIP() << "3000 epochs take too long under an emulator";
  const Ending r = RunOn({"--out", Out()});
  EXPECT_EQ(r.status, kPositionFound);
  EXPECT_NE(r.out.find("No files given"), std::string::npos);
  EXPECT_NE(r.out.find("3000 of 3000 epochs"), std::string::npos);
  EXPECT_NE(r.out.find("simulated truth"), std::string::npos);
  EXPECT_TRUE(fs::exists(directory_ / "out" / "errors.svg"));
}

}  // namespace
}  // namespace gnss
