// usage: bench_report TARGETS ARITHMETIC REMARKS TEMPLATE OUT RUN...
//
// Makes OUT/PERFORMANCE.md from the template (whose lines "@NAME@" are replaced by the part of that name),
// OUT/performance/figures.csv and the input of gnuplot that draws OUT/performance/*.svg, which goes to standard output.
// RUN are the files that the benchmark programs wrote, default-*.txt and native-*.txt.

#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>

#include "report/tables.h"

int main(int argc, char** argv) try {
  if (argc < 7) {
    std::fprintf(stderr, "usage: %s TARGETS ARITHMETIC REMARKS TEMPLATE OUT RUN...\n", argv[0]);
    return 2;
  }
  report::Figures figures;
  report::ReadTargets(argv[1], figures);
  report::ReadArithmetic(argv[2], figures);
  report::ReadRemarks(argv[3], figures);
  for (int k = 6; k < argc; ++k) report::ReadRun(argv[k], figures);
  if (figures.operations.empty()) {
    std::fprintf(stderr, "no figures\n");
    return 1;
  }

  const std::map<std::string, std::string> parts{
      {"@MACHINE@", report::Machine(figures)},   {"@SUMMARY@", report::Summary(figures)},
      {"@DENSE@", report::Dense(figures)},       {"@PEAK@", report::Peak(figures)},
      {"@OVERHEAD@", report::Overhead(figures)}, {"@FILTERS@", report::Filters(figures)},
      {"@GROWTH@", report::Growth(figures)},
  };
  const std::string out = argv[5];
  std::ifstream page(argv[4]);
  std::ofstream written(out + "/PERFORMANCE.md");
  for (std::string line; std::getline(page, line);) {
    const auto part = parts.find(line);
    written << (part == parts.end() ? line + "\n" : part->second);
  }
  std::ofstream(out + "/performance/figures.csv") << report::CommaSeparated(figures);
  std::cout << report::Pictures(figures, out + "/performance");
  if (!page.eof() || !written.flush()) {
    std::fprintf(stderr, "cannot read %s or write to %s\n", argv[4], out.c_str());
    return 1;
  }
  return 0;
} catch (const std::exception& e) {
  std::fprintf(stderr, "%s\n", e.what());
  return 1;
}
