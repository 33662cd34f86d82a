#include "report/tables.h"

#include <cstdarg>
#include <cstdio>
#include <set>

namespace report {
namespace {

std::string Text(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string Text(const char* format, ...) {
  char buffer[512];
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(buffer, sizeof buffer, format, arguments);
  va_end(arguments);
  return buffer;
}

std::string Duration(double seconds) {
  if (seconds < 1e-6) return Text("%.0f ns", seconds * 1e9);
  if (seconds < 1e-3) return Text("%.3g µs", seconds * 1e6);
  return Text("%.3g ms", seconds * 1e3);
}

// A name in running text: its asterisks are no emphasis.
std::string Escaped(const std::string& name) {
  std::string text;
  for (const char c : name) text += c == '*' ? std::string("\\*") : std::string(1, c);
  return text;
}

std::string Name(Point point) {
  return point.second == 0 ? Text("%u", point.first) : Text("%u × %u", point.first, point.second);
}

// Two figures decide; a target that is missed by less than the measurement can tell is met.
bool Meets(double ratio, double target) { return ratio <= target * 1.02; }

constexpr const char* kBeyond = "†";  // behind a target that the arithmetic alone misses

// "0.38", with its target in parentheses; bold when it misses it.
std::string Cell(const Figures& figures, const Operation& operation, Point point, const Column& column) {
  const double ratio = Ratio(operation.points.at(point), column);
  const double target = TargetOf(figures, operation, point, column.label);
  if (!(ratio > 0.0)) return "";
  if (!(target > 0.0)) return Text("%.2f", ratio);
  if (Meets(ratio, target)) return Text("%.2f (%.2f)", ratio, target);
  return Text("**%.2f** (%.2f%s)", ratio, target, BeyondPeak(figures, operation, point, column) ? kBeyond : "");
}

bool Slower(const Operation& operation) {
  for (const Column& column : ColumnsOf(operation)) {
    for (const auto& [point, runs] : operation.points) {
      if (Ratio(runs, column) > 1.0) return true;
    }
  }
  return false;
}

std::string Remark(const Figures& figures, const Operation& operation) {
  const auto found = figures.remarks.find(operation.name);
  if (found == figures.remarks.end() || !Slower(operation)) return "";
  return "\n" + found->second + "\n";
}

std::string Picture(const Operation& operation) {
  return "\n![" + Escaped(operation.name) + "](performance/" + FileName(operation.name) + ".svg)\n";
}

// One row per size: our time, and the ratio in every column.
std::string RatioTable(const Figures& figures, const Operation& operation) {
  const std::vector<Column> columns = ColumnsOf(operation);
  const std::string sizes = operation.points.begin()->first.second == 0 ? "n" : "n × m";
  std::string head = "| " + sizes + " | ours |", line = "|---|---|", body;
  for (const Column& column : columns) head += " " + column.label + " |", line += "---|";
  for (const auto& [point, runs] : operation.points) {
    body += "| " + Name(point) + " | " + Duration(Seconds(runs, kOurs, "")) + " |";
    for (const Column& column : columns) {
      body += " " + Cell(figures, operation, point, column) + " |";
    }
    body += "\n";
  }
  return head + "\n" + line + "\n" + body;
}

// Which forms of the peers were the fastest somewhere.
std::string Forms(const Operation& operation) {
  std::string text;
  for (const Column& column : ColumnsOf(operation)) {
    if (column.flavour != "default") continue;
    std::set<std::string> forms;
    for (const auto& [point, runs] : operation.points) forms.insert(Form(runs, column));
    text += (text.empty() ? "Fastest forms: " : "; ") + column.who + " ";
    for (const std::string& form : forms) text += (form == *forms.begin() ? "" : " / ") + form;
  }
  return text.empty() ? "" : "\n" + text + ".\n";
}

std::string Chapter(const Figures& figures, const char* chapter) {
  std::string text;
  for (const Operation& operation : figures.operations) {
    if (operation.chapter != chapter) continue;
    text += "### " + Escaped(operation.name) + "\n\n" + RatioTable(figures, operation) + Forms(operation) +
            Remark(figures, operation) + Picture(operation) + "\n";
  }
  return text;
}

struct Score {
  unsigned met = 0, all = 0;
  std::string missed;
};

Score ScoreOf(const Figures& figures, const Operation& operation) {
  Score score;
  for (const Column& column : ColumnsOf(operation)) {
    std::string missed;
    for (const auto& [point, runs] : operation.points) {
      const double ratio = Ratio(runs, column), target = TargetOf(figures, operation, point, column.label);
      if (!(ratio > 0.0) || !(target > 0.0)) continue;
      ++score.all;
      if (Meets(ratio, target)) {
        ++score.met;
      } else {
        missed += (missed.empty() ? "" : ", ") + Name(point);
        if (BeyondPeak(figures, operation, point, column)) missed += kBeyond;
      }
    }
    if (!missed.empty()) score.missed += (score.missed.empty() ? "" : "; ") + column.label + " at " + missed;
  }
  return score;
}

}  // namespace

std::string Machine(const Figures& figures) {
  std::string text;
  for (const std::string& entry : figures.machine) text += "- " + entry + "\n";
  return text;
}

std::string Summary(const Figures& figures) {
  std::string text = "| operation | targets met | missed | slower than a peer |\n|---|---|---|---|\n";
  for (const Operation& operation : figures.operations) {
    if (operation.chapter == "overhead" || operation.chapter == "peak") continue;
    const Score score = ScoreOf(figures, operation);
    std::string slower;
    for (const Column& column : ColumnsOf(operation)) {
      unsigned count = 0;
      double worst = 0.0;
      for (const auto& [point, runs] : operation.points) {
        const double ratio = Ratio(runs, column);
        if (ratio > 1.0) ++count;
        if (ratio > worst) worst = ratio;
      }
      if (count > 0) slower += (slower.empty() ? "" : "; ") + Text("%s (up to %.2f)", column.label.c_str(), worst);
    }
    text += "| " + Escaped(operation.name) + " | " + (score.all == 0 ? "" : Text("%u of %u", score.met, score.all)) + " | " +
            score.missed + " | " + slower + " |\n";
  }
  return text;
}

std::string Dense(const Figures& figures) { return Chapter(figures, "dense"); }
std::string Filters(const Figures& figures) { return Chapter(figures, "filter"); }

std::string Peak(const Figures& figures) {
  std::string text = "| n | product | peak | share |\n|---|---|---|---|\n";
  for (const Operation& operation : figures.operations) {
    if (operation.chapter != "peak") continue;
    for (const auto& [point, runs] : operation.points) {
      const double flops = 2.0 * point.first * point.first * point.first;
      const double ratio = Ratio(runs, {"peak", "peak", "default"});
      text += Text("| %u | %.1f GFlop/s | %.1f GFlop/s | %.1f %% |\n", point.first,
                   flops / Seconds(runs, kOurs, "default") * 1e-9, flops / Seconds(runs, "peak", "default") * 1e-9,
                   100.0 / ratio);
    }
  }
  return text;
}

std::string Overhead(const Figures& figures) {
  std::string text = "| operation | ours | two allocations and the arithmetic | overhead |\n|---|---|---|---|\n";
  for (const Operation& operation : figures.operations) {
    if (operation.chapter != "overhead") continue;
    for (const auto& [point, runs] : operation.points) {
      const double ours = Seconds(runs, kOurs, "default") * 1e9, bare = Seconds(runs, "bare", "default") * 1e9;
      const double overhead = ours - bare;
      text += Text(overhead <= 25.0 ? "| %s | %.1f ns | %.1f ns | %.1f ns |\n" : "| %s | %.1f ns | %.1f ns | **%.1f ns** |\n",
                   Escaped(operation.name.substr(operation.name.find("of ") + 3)).c_str(), ours, bare, overhead);
    }
  }
  return text;
}

std::string Growth(const Figures& figures) {
  std::string text;
  for (const Operation& operation : figures.operations) {
    if (operation.chapter != "growth") continue;
    const std::vector<Column> columns = ColumnsOf(operation);
    text += "### " + Escaped(operation.name) + "\n\n| stored elements | ours | per element |";
    std::string line = "|---|---|---|";
    for (const Column& column : columns) text += " ours / " + column.who + " |", line += "---|";
    text += "\n" + line + "\n";
    for (const auto& [point, runs] : operation.points) {
      const double seconds = Seconds(runs, kOurs, "default");
      text += Text("| %u | %s | %.1f ns |", point.first, Duration(seconds).c_str(), seconds / point.first * 1e9);
      for (const Column& column : columns) {
        text += " " + Cell(figures, operation, point, column) + " |";
      }
      text += "\n";
    }
    text += Forms(operation) + Remark(figures, operation) + Picture(operation) + "\n";
  }
  return text;
}

std::string CommaSeparated(const Figures& figures) {
  std::string text = "chapter,operation,n,m,column,peer,form,ours [s],peer [s],ratio,target\n";
  for (const Operation& operation : figures.operations) {
    for (const auto& [point, runs] : operation.points) {
      for (const Column& column : ColumnsOf(operation)) {
        const double ratio = Ratio(runs, column), target = TargetOf(figures, operation, point, column.label);
        if (!(ratio > 0.0)) continue;
        text += Text("%s,%s,%u,%u,%s,%s,\"%s\",%.4g,%.4g,%.4f,", operation.chapter.c_str(), operation.name.c_str(),
                     point.first, point.second, column.label.c_str(), column.who.c_str(),
                     Form(runs, column).c_str(), Seconds(runs, kOurs, column.flavour),
                     Seconds(runs, column.who, column.flavour), ratio);
        text += (target > 0.0 ? Text("%.2f", target) : "") + "\n";
      }
    }
  }
  return text;
}

}  // namespace report
