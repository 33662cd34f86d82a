#include "program.h"

#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <stdexcept>

#include "options.h"
#include "quorvel/quorvel.h"
#include "read/line_reader.h"
#include "read/navigation_reader.h"
#include "read/observation_reader.h"
#include "report/pictures.h"
#include "report/summary.h"
#include "report/tables.h"
#include "simulate/simulation.h"

namespace gnss {
namespace {

struct Input {
  Observations observations;
  NavigationData navigation;
  Reference reference;
};

Input FromFiles(const Options& options, std::ostream& out) {
  Input input;
  input.navigation = ReadNavigationFile(options.navigation);
  const ReadProgress progress = [&](std::size_t epochs) {
    if (!options.quiet) out << "  " << epochs << " epochs read" << std::endl;
  };
  if (!options.quiet) out << "Reading " << options.observations << std::endl;
  input.observations = ReadObservationFile(options.observations, progress);
  if (input.observations.known_position) {
    input.reference.positions = {*input.observations.known_position};
    input.reference.origin = "the position in the header of " + options.observations;
  }
  return input;
}

Input FromSimulation(std::ostream& out) {
  out << "No files given: a simulated drive of 50 minutes (see simulate/simulation.h). For files: --help\n";
  Simulation simulation = Simulate();
  Input input;
  input.observations = std::move(simulation.observations);
  input.navigation = std::move(simulation.navigation);
  input.reference = {std::move(simulation.true_positions), "the simulated truth", true};
  return input;
}

void PrintRemarks(const std::vector<std::string>& remarks, std::ostream& err) {
  constexpr std::size_t kMost = 20;
  for (std::size_t k = 0; k < std::min(kMost, remarks.size()); ++k) err << remarks[k] << '\n';
  if (remarks.size() > kMost) err << "... and " << remarks.size() - kMost << " more remarks\n";
}

// The reference to compare with: the one asked for, the one known, or else the middle of the fixes.
void CompleteReference(const Options& options, const Processed& processed, Reference& reference) {
  if (options.truth) {
    reference = {{*options.truth}, "the position given by --truth", true};
  } else if (reference.positions.empty()) {
    reference = {
        {MedianPosition(processed.fixes).value_or(Vector3{})}, "the median of the fixes (none is known)", false};
  }
}

void WriteResults(const Options& options, const Input& input, const Processed& processed,
                  const std::vector<ErrorRow>& errors, std::ostream& out) {
  const std::filesystem::path directory(options.directory);
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  if (error) throw std::runtime_error(options.directory + ": cannot be created: " + error.message());

  const std::string title = input.observations.marker.empty() ? "GPS positions" : input.observations.marker;
  WriteCsv((directory / "results.csv").string(), processed, errors);
  WriteMFile((directory / "results.m").string(), processed, errors);
  DrawScatter((directory / "scatter.svg").string(), title, input.reference, errors);
  DrawErrors((directory / "errors.svg").string(), title, input.reference, processed, errors);
  out << "\nWritten to " << options.directory << ": results.csv, results.m (Octave), scatter.svg, errors.svg\n";
}

int Run(const Options& options, std::ostream& out, std::ostream& err) {
  Input input = options.observations.empty() ? FromSimulation(out) : FromFiles(options, out);
  PrintRemarks(input.navigation.remarks, err);
  PrintRemarks(input.observations.remarks, err);
  if (!input.navigation.ionosphere.known) {
    err << options.navigation << ": no coefficients of the ionosphere model; its delay is left uncorrected\n";
  }

  const ProcessProgress progress = [&](std::size_t done, std::size_t all) {
    if (!options.quiet) out << "  " << done << " of " << all << " epochs solved" << std::endl;
  };
  const Processed processed = Process(input.observations, input.navigation, options.settings, progress);
  CompleteReference(options, processed, input.reference);
  const std::vector<ErrorRow> errors = ErrorsAgainst(input.reference, processed);
  PrintSummary(out, input.observations, processed, input.reference, errors);
  if (errors.empty()) {
    err << "gnss_position: no position: of " << input.observations.epochs.size()
        << " epochs none had enough usable satellites\n";
    return kNoPosition;
  }
  WriteResults(options, input, processed, errors, out);
  return kPositionFound;
}

}  // namespace

int RunProgram(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
  try {
    const Options options = ParseOptions(arguments);
    if (options.help) {
      out << kUsage;
      return kPositionFound;
    }
    return Run(options, out, err);
  } catch (const std::invalid_argument& e) {
    err << "gnss_position: " << e.what() << "\n" << kUsage;
    return kBadArguments;
  } catch (const std::exception& e) {
    err << e.what() << '\n';
  } catch (const MatrixException& e) {
    // Cannot happen as long as the program is right: the library refused an operation.
    err << "gnss_position: the matrix library reports code " << e.code() << '\n';
    abort_reset();
  }
  return kFailed;
}

}  // namespace gnss
