#include "report/plot.h"

#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include "report/format.h"

namespace gnss {
namespace {

constexpr const char* kInk = "#333333";
constexpr const char* kFaint = "#dddddd";

std::string Escaped(const std::string& text) {
  std::string out;
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      default:
        if (static_cast<unsigned char>(c) >= 32) out += c;
    }
  }
  return out;
}

std::string TextAt(double x, double y, const char* anchor, const char* colour, const std::string& text) {
  return Formatted("<text x=\"%.1f\" y=\"%.1f\" text-anchor=\"%s\" fill=\"%s\">", x, y, anchor, colour) +
         Escaped(text) + "</text>\n";
}

std::string Segment(double x1, double y1, double x2, double y2, const char* colour) {
  return Formatted("<path d=\"M%.1f %.1fL%.1f %.1f\" stroke=\"%s\" fill=\"none\"/>\n", x1, y1, x2, y2, colour);
}

bool Inside(double value, const Range& range) { return value >= range.low && value <= range.high; }

}  // namespace

double TickStep(const Range& range, int wanted) {
  const double rough = (range.high - range.low) / wanted;
  const double power = std::pow(10.0, std::floor(std::log10(rough)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= rough) return factor * power;
  }
  return 10.0 * power;
}

Panel::Panel(double left, double top, double width, double height, Range x, Range y)
    : left_(left), top_(top), width_(width), height_(height), x_(x), y_(y) {}

void Panel::Grid(int x_ticks, int y_ticks, bool label_x) {
  const double x_step = TickStep(x_, x_ticks);
  for (double k = std::ceil(x_.low / x_step); k * x_step <= x_.high; ++k) {
    svg_ += Segment(X(k * x_step), top_, X(k * x_step), top_ + height_, kFaint);
    if (label_x) svg_ += TextAt(X(k * x_step), top_ + height_ + 17, "middle", kInk, Formatted("%g", k * x_step));
  }
  const double y_step = TickStep(y_, y_ticks);
  for (double k = std::ceil(y_.low / y_step); k * y_step <= y_.high; ++k) {
    svg_ += Segment(left_, Y(k * y_step), left_ + width_, Y(k * y_step), kFaint);
    svg_ += TextAt(left_ - 7, Y(k * y_step) + 4, "end", kInk, Formatted("%g", k * y_step));
  }
  svg_ += Formatted("<rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"%.1f\" fill=\"none\" stroke=\"%s\"/>\n", left_,
                    top_, width_, height_, kInk);
}

void Panel::Label(const std::string& x, const std::string& y) {
  if (!x.empty()) svg_ += TextAt(left_ + width_ / 2, top_ + height_ + 38, "middle", kInk, x);
  svg_ += Formatted("<g transform=\"translate(%.1f %.1f) rotate(-90)\">", left_ - 45, top_ + height_ / 2) +
          TextAt(0, 0, "middle", kInk, y) + "</g>\n";
}

// All dots are one path of empty strokes with round ends: far smaller than one circle each.
void Panel::Dots(const std::vector<std::pair<double, double>>& points, const char* colour, double size,
                 double opacity) {
  svg_ += Formatted(
      "<path fill=\"none\" stroke=\"%s\" stroke-width=\"%.1f\" stroke-linecap=\"round\" "
      "stroke-opacity=\"%.2f\" d=\"",
      colour, size, opacity);
  for (const auto& [x, y] : points) {
    if (Inside(x, x_) && Inside(y, y_)) svg_ += Formatted("M%.1f %.1fh0", X(x), Y(y));
  }
  svg_ += "\"/>\n";
}

void Panel::Line(const std::vector<std::pair<double, double>>& points, const char* colour, double width, double gap) {
  svg_ += Formatted("<path fill=\"none\" stroke=\"%s\" stroke-width=\"%.1f\" stroke-linejoin=\"round\" d=\"", colour,
                    width);
  bool drawing = false;
  double last = 0.0;
  for (const auto& [x, y] : points) {
    const bool visible = Inside(x, x_) && Inside(y, y_);
    if (visible) svg_ += Formatted("%c%.1f %.1f", drawing && x - last <= gap ? 'L' : 'M', X(x), Y(y));
    drawing = visible;
    last = x;
  }
  svg_ += "\"/>\n";
}

void Panel::Cross(double x, double y, const char* colour) {
  svg_ += Segment(X(x) - 9, Y(y), X(x) + 9, Y(y), colour) + Segment(X(x), Y(y) - 9, X(x), Y(y) + 9, colour);
}

void Panel::Circle(double radius, const char* colour) {
  svg_ +=
      Formatted("<circle cx=\"%.1f\" cy=\"%.1f\" r=\"%.1f\" fill=\"none\" stroke=\"%s\" stroke-dasharray=\"5 4\"/>\n",
                X(0.0), Y(0.0), X(radius) - X(0.0), colour);
}

Picture::Picture(int width, int height, const std::string& title) : width_(width), height_(height) {
  body_ = Formatted("<text x=\"%d\" y=\"26\" text-anchor=\"middle\" font-size=\"16\" fill=\"%s\">", width / 2, kInk) +
          Escaped(title) + "</text>\n";
}

void Picture::Legend(const std::vector<std::pair<std::string, const char*>>& entries) {
  body_ += Formatted("<text x=\"%d\" y=\"46\" text-anchor=\"middle\">", width_ / 2);
  for (const auto& [text, colour] : entries) {
    body_ += Formatted("<tspan fill=\"%s\" dx=\"12\">&#9679; ", colour) + Escaped(text) + "</tspan>";
  }
  body_ += "</text>\n";
}

void Picture::Write(const std::string& path) const {
  std::ofstream out(path);
  out << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " << width_ << ' ' << height_ << "\" width=\""
      << width_ << "\" height=\"" << height_ << "\" font-family=\"sans-serif\" font-size=\"12\">\n"
      << "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n"
      << body_ << "</svg>\n";
  out.close();
  if (!out) throw std::runtime_error(path + ": cannot be written: " + std::strerror(errno));
}

}  // namespace gnss
