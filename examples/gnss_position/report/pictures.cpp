#include "report/pictures.h"

#include <algorithm>
#include <cmath>

#include "report/plot.h"

namespace gnss {
namespace {

constexpr const char* kFixColour = "#7aa6c2";
constexpr const char* kFilterColour = "#c0392b";
constexpr const char* kTruthColour = "#222222";

const char* Noun(const Reference& reference) { return reference.known ? "error" : "deviation"; }

// A range around zero that shows 99.5 % of the given magnitudes with some room.
double Reach(std::vector<double> magnitudes) {
  const double most = magnitudes.empty() ? 1.0 : Quantile(std::move(magnitudes), 0.995);
  return std::max(1.15 * most, 0.1);
}

}  // namespace

void DrawScatter(const std::string& path, const std::string& title, const Reference& reference,
                 const std::vector<ErrorRow>& errors) {
  std::vector<std::pair<double, double>> fixes;
  std::vector<std::pair<double, double>> filtered;
  std::vector<double> reach;
  std::vector<double> distance;
  for (const ErrorRow& row : errors) {
    fixes.emplace_back(row.fix[0], row.fix[1]);
    filtered.emplace_back(row.filtered[0], row.filtered[1]);
    reach.push_back(std::hypot(row.fix[0], row.fix[1]));
    distance.push_back(std::hypot(row.filtered[0], row.filtered[1]));
  }
  const double most = Reach(reach);
  Picture picture(640, 680, title);
  picture.Legend({{"least squares, each epoch by itself", kFixColour}, {"filtered", kFilterColour}});
  Panel panel(75, 65, 540, 540, {-most, most}, {-most, most});
  panel.Grid(6, 6, true);
  panel.Label(std::string("east ") + Noun(reference) + " (m); the dashed circle holds 95 % of the filtered positions",
              std::string("north ") + Noun(reference) + " (m)");
  panel.Dots(fixes, kFixColour, 4.0, 0.6);
  panel.Dots(filtered, kFilterColour, 3.0, 0.6);
  const double circle = Quantile(distance, 0.95);
  if (circle < most) panel.Circle(circle, kFilterColour);
  panel.Cross(0.0, 0.0, kTruthColour);
  picture.Add(panel);
  picture.Write(path);
}

void DrawErrors(const std::string& path, const std::string& title, const Reference& reference,
                const Processed& processed, const std::vector<ErrorRow>& errors) {
  static constexpr const char* kAxis[] = {"east", "north", "up"};
  std::vector<double> reach;
  std::vector<double> hours;
  for (const ErrorRow& row : errors) {
    for (const double e : row.fix) reach.push_back(std::fabs(e));
    hours.push_back((processed.fixes[row.epoch].time - processed.fixes[errors.front().epoch].time) / 3600.0);
  }
  const double most = Reach(reach);
  const bool minutes = hours.empty() || hours.back() < 2.0;
  const double unit = minutes ? 60.0 : 1.0;
  const double end = hours.empty() ? 1.0 : std::max(hours.back() * unit, 1e-3);

  Picture picture(900, 640, title);
  picture.Legend({{"least squares, each epoch by itself", kFixColour}, {"filtered", kFilterColour}});
  for (std::size_t axis = 0; axis < 3; ++axis) {
    std::vector<std::pair<double, double>> fixes;
    std::vector<std::pair<double, double>> filtered;
    for (std::size_t k = 0; k < errors.size(); ++k) {
      fixes.emplace_back(hours[k] * unit, errors[k].fix[axis]);
      filtered.emplace_back(hours[k] * unit, errors[k].filtered[axis]);
    }
    Panel panel(75, 65 + 178 * static_cast<double>(axis), 800, 165, {0.0, end}, {-most, most});
    panel.Grid(8, 5, axis == 2);
    panel.Label(axis == 2 ? (minutes ? "minutes since the first epoch" : "hours since the first epoch") : "",
                std::string(kAxis[axis]) + " " + Noun(reference) + " (m)");
    panel.Dots(fixes, kFixColour, 2.5, 0.6);
    panel.Line(filtered, kFilterColour, 1.2, 10.0 * end / std::max<double>(1.0, static_cast<double>(errors.size())));
    picture.Add(panel);
  }
  picture.Write(path);
}

}  // namespace gnss
