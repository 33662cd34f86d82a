// A small writer of line and scatter plots in SVG.
#ifndef GNSS_POSITION_REPORT_PLOT_H
#define GNSS_POSITION_REPORT_PLOT_H

#include <string>
#include <utility>
#include <vector>

namespace gnss {

struct Range {
  double low = 0.0, high = 1.0;
};

/// A pleasant distance between tick marks (1, 2 or 5 times a power of ten) so that about `wanted` fit into the range.
double TickStep(const Range& range, int wanted);

/// One pair of axes in a picture: the frame in pixels, the ranges in the units of the data.
class Panel {
 public:
  Panel(double left, double top, double width, double height, Range x, Range y);

  void Grid(int x_ticks, int y_ticks, bool label_x);
  void Label(const std::string& x, const std::string& y);
  /// Points outside the ranges are left out.
  void Dots(const std::vector<std::pair<double, double>>& points, const char* colour, double size, double opacity);
  /// Broken where the abscissa advances by more than `gap`.
  void Line(const std::vector<std::pair<double, double>>& points, const char* colour, double width, double gap);
  void Cross(double x, double y, const char* colour);
  void Circle(double radius, const char* colour);  ///< around the origin, in units of the data

  const std::string& svg() const { return svg_; }

 private:
  double X(double x) const { return left_ + (x - x_.low) / (x_.high - x_.low) * width_; }
  double Y(double y) const { return top_ + height_ - (y - y_.low) / (y_.high - y_.low) * height_; }

  double left_, top_, width_, height_;
  Range x_, y_;
  std::string svg_;
};

/// A picture of several panels with a title and a legend of coloured words.
class Picture {
 public:
  Picture(int width, int height, const std::string& title);
  void Legend(const std::vector<std::pair<std::string, const char*>>& entries);
  void Add(const Panel& panel) { body_ += panel.svg(); }
  /// Throws std::runtime_error with the path when the file cannot be written.
  void Write(const std::string& path) const;

 private:
  int width_, height_;
  std::string body_;
};

}  // namespace gnss

#endif
