#include <sys/types.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "report/errors.h"
#include "report/plot.h"

namespace gnss {
namespace {

TEST(Quantile, IsTheSmallestValueWithTheFractionBelow) {
  EXPECT_EQ(Quantile({5, 1, 4, 2, 3}, 0.5), 3.0);
  EXPECT_EQ(Quantile({4, 1, 3, 2}, 0.5), 2.0);
  EXPECT_EQ(Quantile({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, 0.95), 10.0);
  EXPECT_EQ(Quantile({7}, 0.95), 7.0);
  EXPECT_EQ(Quantile({3, 1, 2}, 0.0), 1.0);
  EXPECT_TRUE(std::isnan(Quantile({}, 0.5)));
}

TEST(Summarise, GivesEachComponentAndTheWhole) {
  std::vector<ErrorRow> rows;
  for (const double s : {1.0, -1.0, 1.0}) rows.push_back({0, {2.0 * s, 1.0, -2.0}, {0.0, 0.0, s}});
  const ErrorSummary fix = Summarise(rows, Solution::fix);
  EXPECT_EQ(fix.median, (std::array<double, 4>{2.0, 1.0, 2.0, 3.0}));
  EXPECT_EQ(fix.most, (std::array<double, 4>{2.0, 1.0, 2.0, 3.0}));
  EXPECT_NEAR(fix.mean[0], 2.0 / 3.0, 1e-15);
  EXPECT_NEAR(fix.mean[2], -2.0, 1e-15);
  EXPECT_EQ(Summarise(rows, Solution::filtered).median[3], 1.0);
}

TEST(TickStep, IsPleasant) {
  EXPECT_DOUBLE_EQ(TickStep({0.0, 10.0}, 5), 2.0);
  EXPECT_DOUBLE_EQ(TickStep({-3.4, 3.4}, 6), 2.0);
  EXPECT_DOUBLE_EQ(TickStep({0.0, 24.0}, 8), 5.0);
  EXPECT_DOUBLE_EQ(TickStep({0.0, 0.04}, 5), 0.01);
  EXPECT_DOUBLE_EQ(TickStep({0.0, 96.0}, 10), 10.0);
}

// The picture as a reader of XML sees it: every element closed, one path per series, dots where they belong.
TEST(Picture, DrawsWhatItIsGiven) {
  Panel panel(100.0, 50.0, 200.0, 100.0, {0.0, 10.0}, {-1.0, 1.0});
  panel.Grid(5, 4, true);
  panel.Label("time <s>", "error & more");
  panel.Dots({{0.0, 0.0}, {5.0, 1.0}, {11.0, 0.0}}, "#123456", 3.0, 0.5);
  panel.Line({{0.0, -1.0}, {1.0, 1.0}, {9.0, 0.0}, {9.5, 5.0}, {10.0, 0.0}}, "#abcdef", 1.0, 2.0);
  Picture picture(400, 200, "a \"title\" <b>");
  picture.Legend({{"one", "#123456"}});
  picture.Add(panel);
  const std::filesystem::path path =
      std::filesystem::temp_directory_path() / ("gnss_plot_" + std::to_string(::getpid()) + ".svg");
  picture.Write(path.string());
  std::ifstream in(path);
  std::stringstream stream;
  stream << in.rdbuf();
  const std::string svg = stream.str();
  std::filesystem::remove(path);

  EXPECT_NE(svg.find("d=\"M100.0 100.0h0M200.0 50.0h0\""), std::string::npos) << svg;
  EXPECT_NE(svg.find("d=\"M100.0 150.0L120.0 50.0M280.0 100.0M300.0 100.0\""), std::string::npos) << svg;
  EXPECT_NE(svg.find("time &lt;s&gt;"), std::string::npos);
  EXPECT_NE(svg.find("error &amp; more"), std::string::npos);
  int open = 0;
  for (std::size_t at = 0; (at = svg.find('<', at)) != std::string::npos; ++at) {
    const std::size_t end = svg.find('>', at);
    ASSERT_NE(end, std::string::npos);
    if (svg[at + 1] == '/')
      --open;
    else if (svg[end - 1] != '/')
      ++open;
    EXPECT_GE(open, 0);
  }
  EXPECT_EQ(open, 0);
}

TEST(Picture, SaysWhenItCannotBeWritten) {
  EXPECT_THROW(Picture(10, 10, "x").Write("/no/such/directory/x.svg"), std::runtime_error);
}

}  // namespace
}  // namespace gnss
