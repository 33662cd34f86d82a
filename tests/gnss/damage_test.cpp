// Files damaged at random, the same way on every machine: the readers end with data or with a complaint, and what they
// let pass goes through the whole estimation. (tests/fuzz searches further.)
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "estimate/process.h"
#include "gnss/written_files.h"
#include "simulate/random.h"

namespace gnss {
namespace {

using namespace gnss::test;

class Damage {
 public:
  explicit Damage(std::uint64_t seed) : random_(seed) {}

  std::string To(std::string text) {
    const std::size_t strokes = 1 + Below(6);
    for (std::size_t k = 0; k < strokes && !text.empty(); ++k) {
      const std::size_t at = Below(text.size());
      switch (Below(7)) {
        case 0:
          text[at] = static_cast<char>(Below(256));
          break;
        case 1:
          text[at] = "0123456789-+.eED GRN>\n"[Below(22)];
          break;
        case 2:
          text.erase(at, 1 + Below(90));
          break;
        case 3:
          text.insert(at, text.substr(Below(text.size()), 1 + Below(90)));
          break;
        case 4:
          text.resize(at);
          break;
        case 5:
          std::swap(text[at], text[Below(text.size())]);
          break;
        default:
          text.insert(at, 1 + Below(40), text[at]);
      }
    }
    return text;
  }

 private:
  std::size_t Below(std::size_t n) { return static_cast<std::size_t>(random_.Uniform() * static_cast<double>(n)); }
  Random random_;
};

TEST(DamagedFiles, AreReadOrRefusedButNeverBelieved) {
  const WrittenFiles files;
  const std::string observations = files.Observations(3);
  const std::string navigation = files.Navigation();
  const int trials = sizeof(void*) > 4 ? 3000 : 300;
  int refused = 0;
  int solved = 0;
  for (int trial = 0; trial < trials; ++trial) {
    Damage damage(static_cast<std::uint64_t>(trial));
    gnss::Observations o = ParseObservations(observations);
    NavigationData n = files.sky();
    try {
      if (trial % 2 == 0)
        o = ParseObservations(damage.To(observations));
      else
        n = ParseNavigation(damage.To(navigation));
    } catch (const FileError& error) {
      // "name:line: reason"
      EXPECT_EQ(std::string(error.what()).rfind("test.", 0), 0u) << error.what();
      ++refused;
      continue;
    }
    if (o.epochs.size() > 5) o.epochs.resize(5);
    const Processed p = Process(o, n, ProcessSettings());
    for (const TrackPoint& point : p.track.points) {
      ASSERT_LT(Length(point.position), 1e12) << "trial " << trial;
    }
    solved += p.counts.solved;
  }
  EXPECT_GT(refused, trials / 10);
  EXPECT_GT(solved, trials / 10);
}

}  // namespace
}  // namespace gnss
