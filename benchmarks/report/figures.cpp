#include "report/figures.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace report {
namespace {

std::vector<std::string> Split(const std::string& line, char separator) {
  std::vector<std::string> fields;
  std::istringstream stream(line);
  for (std::string field; std::getline(stream, field, separator);) fields.push_back(field);
  return fields;
}

std::ifstream Open(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  return file;
}

unsigned Number(const std::string& text) { return static_cast<unsigned>(std::stoul(text)); }

double Median(std::vector<double> x) {
  if (x.empty()) return 0.0;
  std::sort(x.begin(), x.end());
  const std::size_t half = x.size() / 2;
  return x.size() % 2 == 1 ? x[half] : (x[half - 1] + x[half]) / 2.0;
}

}  // namespace

const std::vector<Column>& Columns() {
  static const std::vector<Column> columns{
      {"E", "Eigen", "default"},   {"F", "Eigen new", "default"}, {"O", "OpenBLAS", "default"},  {"A", "Armadillo", "default"},
      {"EN", "Eigen", "native"},   {"FN", "Eigen new", "native"}, {"ON", "OpenBLAS", "native"},  {"S", "CHOLMOD", "default"},
      {"peak", "peak", "default"}, {"bare", "bare", "default"},
  };
  return columns;
}

void ReadRun(const std::string& path, Figures& figures) {
  const std::string name = path.substr(path.rfind('/') + 1), flavour = name.substr(0, name.find('-'));
  std::ifstream file = Open(path);
  std::map<std::string, std::map<Point, std::size_t>> begun;  // where this run's figures are
  for (std::string line; std::getline(file, line);) {
    if (line.rfind("# ", 0) == 0) {
      const std::string entry = (line.find("# OpenBLAS") == 0 || line.find("# Eigen") == 0)
                                    ? line.substr(2) + (flavour == "default" ? "" : " (" + flavour + ")")
                                    : line.substr(2);
      if (std::find(figures.machine.begin(), figures.machine.end(), entry) == figures.machine.end()) {
        figures.machine.push_back(entry);
      }
      continue;
    }
    const std::vector<std::string> f = Split(line, ';');
    if (f.size() != 7) throw std::runtime_error(path + ": not a figure: " + line);
    auto operation = std::find_if(figures.operations.begin(), figures.operations.end(),
                                  [&f](const Operation& o) { return o.name == f[1]; });
    if (operation == figures.operations.end()) {
      operation = figures.operations.insert(operation, Operation{f[0], f[1], {}});
    }
    const Point point{Number(f[2]), Number(f[3])};
    std::vector<Run>& runs = operation->points[point];
    const auto [at, fresh] = begun[f[1]].try_emplace(point, runs.size());
    if (fresh) runs.push_back({flavour, {}});
    const double seconds = std::stod(f[6]);
    const auto [best, first] = runs[at->second].contest.try_emplace(f[4], Best{seconds, f[5]});
    if (!first && seconds < best->second.seconds) best->second = {seconds, f[5]};
  }
}

void ReadTargets(const std::string& path, Figures& figures) {
  std::ifstream file = Open(path);
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    const std::vector<std::string> f = Split(line, ',');
    if (f.size() != 6) throw std::runtime_error(path + ": not a target: " + line);
    figures.targets.push_back({f[0], Number(f[1]), Number(f[2]), Number(f[3]), f[4], std::stod(f[5])});
  }
}

void ReadArithmetic(const std::string& path, Figures& figures) {
  std::ifstream file = Open(path);
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    const std::vector<std::string> f = Split(line, ',');
    if (f.size() != 3) throw std::runtime_error(path + ": not an operation: " + line);
    figures.arithmetic[f[0]] = {std::stod(f[1]), std::stod(f[2])};
  }
}

void ReadRemarks(const std::string& path, Figures& figures) {
  std::ifstream file = Open(path);
  for (std::string line; std::getline(file, line);) {
    const std::size_t bar = line.find(" | ");
    if (bar == std::string::npos || line[0] == '#') continue;
    figures.remarks[line.substr(0, bar)] = line.substr(bar + 3);
  }
}

double Seconds(const std::vector<Run>& runs, const std::string& who, const std::string& flavour) {
  std::vector<double> x;
  for (const Run& run : runs) {
    const auto found = run.contest.find(who);
    if (found != run.contest.end() && (flavour.empty() || run.flavour == flavour)) x.push_back(found->second.seconds);
  }
  return Median(x);
}

double Ratio(const std::vector<Run>& runs, const Column& column) {
  std::vector<double> x;
  for (const Run& run : runs) {
    const auto ours = run.contest.find(kOurs), peer = run.contest.find(column.who);
    if (run.flavour == column.flavour && ours != run.contest.end() && peer != run.contest.end()) {
      x.push_back(ours->second.seconds / peer->second.seconds);
    }
  }
  return Median(x);
}

std::string Form(const std::vector<Run>& runs, const Column& column) {
  for (const Run& run : runs) {
    const auto found = run.contest.find(column.who);
    if (run.flavour == column.flavour && found != run.contest.end()) return found->second.how;
  }
  return {};
}

double TargetOf(const Figures& figures, const Operation& operation, Point point, const std::string& column) {
  for (const Target& t : figures.targets) {
    if (t.operation == operation.name && t.column == column && t.from <= point.first && point.first <= t.to &&
        (t.m == 0 || t.m == point.second)) {
      return t.ratio;
    }
  }
  return 0.0;
}

namespace {

// Multiplications, each with an addition, per second at the best; 0 when the peak was not measured.
double PeakRate(const Figures& figures) {
  double best = 0.0;
  for (const Operation& operation : figures.operations) {
    if (operation.chapter != "peak") continue;
    for (const auto& [point, runs] : operation.points) {
      const double n = point.first;
      best = std::max(best, n * n * n / Seconds(runs, "peak", "default"));
    }
  }
  return best;
}

}  // namespace

bool BeyondPeak(const Figures& figures, const Operation& operation, Point point, const Column& column) {
  const auto arithmetic = figures.arithmetic.find(operation.name);
  const double rate = PeakRate(figures);
  if (arithmetic == figures.arithmetic.end() || rate == 0.0) return false;
  const double n = point.first;
  const double pairs = (arithmetic->second.cubic * n + arithmetic->second.quadratic) * n * n;
  const double peer = Seconds(operation.points.at(point), column.who, column.flavour);
  return TargetOf(figures, operation, point, column.label) * peer < pairs / rate;
}

std::vector<Column> ColumnsOf(const Operation& operation) {
  std::vector<Column> present;
  for (const Column& column : Columns()) {
    for (const auto& [point, runs] : operation.points) {
      if (Ratio(runs, column) > 0.0) {
        present.push_back(column);
        break;
      }
    }
  }
  return present;
}

std::string FileName(const std::string& operation) {
  std::string name;
  for (const char c : operation) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
      name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    } else if (c == '*') {
      name += "_times_";
    } else if (c == '>') {
      name += "solve";
    } else if (!name.empty() && name.back() != '_') {
      name += '_';
    }
  }
  while (!name.empty() && name.back() == '_') name.pop_back();
  return name;
}

}  // namespace report
