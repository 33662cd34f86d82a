// Uses everything in convenience.h: a test looks at what this object defines itself and what it wants from the library.
#include "quorvel/convenience.h"

#include <iomanip>
#include <sstream>

#include "quorvel/sums.h"

std::string ConvenienceSample(const RegularMatrix& a, SymmetricMatrix& s);

std::string ConvenienceSample(const RegularMatrix& a, SymmetricMatrix& s) {
  using namespace quorvel;
  auto sum = own(a + a);
  sum = a;
  const auto rows = from_rows<SymmetricMatrix>({{4, 1}, {1, 3}});
  const auto sparse = from_rows<RegularSparseMatrix>({{4, 0}, {1, 3}});
  std::ostringstream out;
  out << std::setw(10) << rows << formatted(sparse, "8.3f") << column({1, 2}) << diagonal({1, 2}) << row(sum, 0)[0]
      << packed_row(s, 0)[0] << near(rows, s, 1e-12) << max_difference(rows, s) << row(a, 0)[0];
  return out.str();
}
