// The figures of a report: what the runs of the benchmark programs printed, and the targets.
//
// A column of the tables is a peer in one build of the benchmark program. Its ratio is the time of our best form over
// that of the peer's best form within one run, and of several runs the median.

#ifndef QUORVEL_BENCHMARKS_FIGURES_H
#define QUORVEL_BENCHMARKS_FIGURES_H

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace report {

using Point = std::pair<unsigned, unsigned>;  ///< n, m

struct Best {
  double seconds;
  std::string how;
};

/// Of one run: by whose code it is.
using Contest = std::map<std::string, Best>;

struct Run {
  std::string flavour;  ///< default or native
  Contest contest;
};

struct Operation {
  std::string chapter, name;
  std::map<Point, std::vector<Run>> points;
};

struct Column {
  std::string label;    ///< as in the targets: E, O, EN, ON, ...
  std::string who, flavour;
};

/// Every column that a table can have, in their order.
const std::vector<Column>& Columns();

struct Target {
  std::string operation;
  unsigned from, to, m;  ///< orders; m = 0: any
  std::string column;
  double ratio;
};

/// Multiplications, each with an addition: cubic * n^3 + quadratic * n^2.
struct Arithmetic {
  double cubic, quadratic;
};

struct Figures {
  std::vector<std::string> machine;    ///< "key: value", of all runs
  std::vector<Operation> operations;   ///< in the order of the programme
  std::vector<Target> targets;
  std::map<std::string, Arithmetic> arithmetic;  ///< by operation
  std::map<std::string, std::string> remarks;  ///< by operation: why a peer is faster
};

/// Reads a run; its file is named <flavour>-<anything>.
void ReadRun(const std::string& path, Figures& figures);
void ReadTargets(const std::string& path, Figures& figures);
void ReadArithmetic(const std::string& path, Figures& figures);
void ReadRemarks(const std::string& path, Figures& figures);

/// The median of `who` in all runs of a flavour ("" for any), in seconds; 0 when it took no part.
double Seconds(const std::vector<Run>& runs, const std::string& who, const std::string& flavour);
/// The median ratio ours / peer; 0 when the peer took no part.
double Ratio(const std::vector<Run>& runs, const Column& column);
/// The form of the peer that was fastest in the first run of the flavour.
std::string Form(const std::vector<Run>& runs, const Column& column);
/// The target, 0 when there is none.
double TargetOf(const Figures& figures, const Operation& operation, Point point, const std::string& column);

/// Whether the target asks for less time than the operation's multiplications and additions take, not fused, at the
/// measured peak.
bool BeyondPeak(const Figures& figures, const Operation& operation, Point point, const Column& column);

/// Columns in which the operation has a ratio somewhere.
std::vector<Column> ColumnsOf(const Operation& operation);

/// An operation's name as that of a file.
std::string FileName(const std::string& operation);

inline const char* const kOurs = "Quorvel";

}  // namespace report

#endif
