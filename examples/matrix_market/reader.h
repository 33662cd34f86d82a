// Matrix Market files as sparse matrices.
#ifndef MATRIX_MARKET_READER_H
#define MATRIX_MARKET_READER_H

#include <iosfwd>
#include <stdexcept>
#include <string>
#include <variant>

#include "quorvel/RegularSparseMatrix.h"
#include "quorvel/SymmetricSparseMatrix.h"

namespace market {

// What is wrong with a file: "name:line: message".
struct FileError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The content of a file. A symmetric matrix comes as a SymmetricSparseMatrix; a general and a skew-symmetric one, whose
// other triangle is filled in, as a RegularSparseMatrix.
struct MarketFile {
  std::string format;    // "coordinate" or "array"
  std::string field;     // "real", "integer" or "pattern" (every element is 1)
  std::string symmetry;  // "general", "symmetric" or "skew-symmetric"
  std::size_t zeros = 0;  // elements that the file holds although they are 0; they are not stored
  std::variant<RegularSparseMatrix, SymmetricSparseMatrix> matrix;
};

// Throws FileError for everything that is not such a file. `name` is for the messages.
//
// R. F. Boisvert, R. Pozo, K. A. Remington, The Matrix Market Exchange Formats: Initial Design, NISTIR 5935, 1996.
MarketFile ReadMarketFile(std::istream& in, const std::string& name);

}  // namespace market

#endif
