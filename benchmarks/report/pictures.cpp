#include <cstdio>
#include <set>

#include "report/tables.h"

namespace report {
namespace {

std::string Number(double x) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.5g", x);
  return buffer;
}

struct Curve {
  std::string title, data;  // lines "x y"
};

// Ratio over n, a curve per column, and per m where there are several.
std::vector<Curve> RatioCurves(const Operation& operation) {
  std::set<unsigned> second;
  for (const auto& [point, runs] : operation.points) second.insert(point.second);
  const bool by_m = operation.chapter == "filter" && second.size() > 1;
  if (!by_m) second = {0};

  std::vector<Curve> curves;
  for (const Column& column : ColumnsOf(operation)) {
    for (const unsigned m : second) {
      const std::string form = column.flavour == "native" ? column.who + ", native" : column.who;
      Curve curve{form + (by_m ? ", m = " + std::to_string(m) : ""), ""};
      for (const auto& [point, runs] : operation.points) {
        if (by_m && point.second != m) continue;
        const double ratio = Ratio(runs, column);
        if (ratio > 0.0) curve.data += std::to_string(point.first) + " " + Number(ratio) + "\n";
      }
      curves.push_back(curve);
    }
  }
  return curves;
}

// Nanoseconds per stored element, ours and the peers'.
std::vector<Curve> GrowthCurves(const Operation& operation) {
  std::vector<Curve> curves;
  for (const std::string who : {"Quorvel", "Eigen", "CHOLMOD"}) {
    Curve curve{who, ""};
    for (const auto& [point, runs] : operation.points) {
      const double seconds = Seconds(runs, who, "default");
      if (seconds > 0.0) curve.data += std::to_string(point.first) + " " + Number(seconds / point.first * 1e9) + "\n";
    }
    if (!curve.data.empty()) curves.push_back(curve);
  }
  return curves;
}

}  // namespace

bool HasPicture(const Operation& operation) {
  return operation.chapter == "dense" || operation.chapter == "filter" || operation.chapter == "growth";
}

std::string Pictures(const Figures& figures, const std::string& folder) {
  std::string script =
      "set terminal svg size 720,380 font 'sans,12' background '#ffffff'\n"
      "set logscale xy\nset grid\nset key outside right top samplen 2 noenhanced\nset title noenhanced\n";
  for (const Operation& operation : figures.operations) {
    if (!HasPicture(operation)) continue;
    const bool growth = operation.chapter == "growth";
    const std::vector<Curve> curves = growth ? GrowthCurves(operation) : RatioCurves(operation);
    script += "set output '" + folder + "/" + FileName(operation.name) + ".svg'\n";
    script += "set xrange [" + Number(operation.points.begin()->first.first / 1.2) + ":" +
              Number(operation.points.rbegin()->first.first * 1.2) + "]\n";
    script += "set title \"" + operation.name + "\"\n";
    if (growth) {
      script += "set xlabel 'stored elements'\nset ylabel 'nanoseconds per element'\nset xtics auto\nset ytics auto\n";
    } else {
      script += "set xlabel 'n'\nset ylabel 'ours / peer (below 1: ours is faster)'\nset xtics (";
      std::set<unsigned> orders;
      for (const auto& [point, runs] : operation.points) orders.insert(point.first);
      for (const unsigned n : orders) {
        script += (n == *orders.begin() ? "" : ", ") + std::to_string(n);
      }
      script += ")\nset ytics (0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10, 20)\n";
    }
    std::string plot = "plot";
    if (!growth) plot += " 1 with lines linecolor '#808080' dashtype 2 notitle,";
    for (std::size_t k = 0; k < curves.size(); ++k) {
      script += "$curve" + std::to_string(k) + " << END\n" + curves[k].data + "END\n";
      plot += (k == 0 ? " " : ", ") + ("$curve" + std::to_string(k)) + " using 1:2 with linespoints linewidth 2 title \"" +
              curves[k].title + "\"";
    }
    script += plot + "\n";
  }
  return script;
}

}  // namespace report
