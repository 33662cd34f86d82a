#include "program.h"

#include <charconv>
#include <exception>
#include <fstream>
#include <new>
#include <ostream>
#include <variant>

#include "factorisation.h"
#include "quorvel/convenience.h"
#include "quorvel/quorvel.h"
#include "reader.h"
#include "structure.h"

namespace market {
namespace {

constexpr char kUsage[] =
    "usage: matrix_market [--print] [--tolerance T] FILE...\n"
    "\n"
    "Reads Matrix Market files (coordinate or array; real, integer or pattern; general, symmetric or\n"
    "skew-symmetric) and prints the structure of each matrix, its norms and a factorisation: Cholesky when it is\n"
    "symmetric with a positive diagonal, otherwise the triangular factor by Householder reflections.\n"
    "\n"
    "  --print        also prints the elements, of matrices up to 20 x 20\n"
    "  --tolerance T  a pivot below T times its diagonal element counts as singular in Cholesky's factor (1e-12)\n";

struct Options {
  bool print = false;
  double tolerance = 1e-12;
  std::vector<std::string> files;
};

// False, with a message, when the arguments make no sense.
bool Understand(const std::vector<std::string>& arguments, Options& options, std::ostream& err) {
  for (std::size_t k = 0; k < arguments.size(); ++k) {
    const std::string& argument = arguments[k];
    if (argument == "--print") {
      options.print = true;
    } else if (argument == "--tolerance") {
      if (++k == arguments.size()) {
        err << "matrix_market: --tolerance needs a number\n";
        return false;
      }
      const char* const end = arguments[k].data() + arguments[k].size();
      const auto read = std::from_chars(arguments[k].data(), end, options.tolerance);
      if (read.ec != std::errc() || read.ptr != end || !(options.tolerance >= 0.0 && options.tolerance < 1.0)) {
        err << "matrix_market: --tolerance needs a number from 0 to 1, not '" << arguments[k] << "'\n";
        return false;
      }
    } else if (argument.size() > 1 && argument[0] == '-') {
      err << "matrix_market: unknown option '" << argument << "'\n" << kUsage;
      return false;
    } else {
      options.files.push_back(argument);
    }
  }
  if (options.files.empty()) err << kUsage;
  return !options.files.empty();
}

void Report(const std::string& path, const Options& options, std::ostream& out) {
  std::ifstream in(path);
  if (!in) throw FileError(path + ": cannot be opened");
  const MarketFile file = ReadMarketFile(in, path);
  out << path << '\n';
  std::visit(
      [&](const auto& A) {
        PrintStructure(A, file, out);
        PrintFactorisation(A, options.tolerance, out);
        if (options.print && A.nrows() <= 20 && A.ncols() <= 20) out << quorvel::formatted(A, "11.4g");
      },
      file.matrix);
}

}  // namespace

int RunProgram(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
  for (const std::string& argument : arguments) {
    if (argument == "--help") {
      out << kUsage;
      return 0;
    }
  }
  Options options;
  if (!Understand(arguments, options, err)) return 2;
  int status = 0;
  for (const std::string& path : options.files) {
    try {
      Report(path, options, out);
    } catch (const FileError& e) {
      err << e.what() << '\n';
      status = 1;
    } catch (const MatrixException& e) {
      abort_reset();  // the next file starts afresh
      err << path << ": the library refused an operation with code " << e.code() << '\n';
      status = 1;
    } catch (const std::bad_alloc&) {
      err << path << ": the matrix does not fit into memory\n";
      status = 1;
    }
  }
  return status;
}

}  // namespace market
