// Making matrices for tests of ownership.

#ifndef QUORVEL_TESTS_SUPPORT_MAKE_H
#define QUORVEL_TESTS_SUPPORT_MAKE_H

#include <utility>

#include "support/random.h"

namespace quorvel::test {

// A new matrix on the heap, marked dispensable, as the operators return them: the operation that
// it is given to must reuse or destroy it.
//
//   RegularMatrix c = Dispensable<RegularMatrix>(2u, 3u);
template <class K, class... Arguments>
K& Dispensable(Arguments&&... arguments) {
  K* matrix = new K(std::forward<Arguments>(arguments)...);
  matrix->set_dispensable(true);
  return *matrix;
}

// The same with the contents of another matrix, which must not be dispensable itself.
template <class K>
K& DispensableCopy(const K& source) {
  return Dispensable<K>(source);
}

// Fills all stored doubles of a dense matrix.
template <class K>
void FillMatrix(K& matrix, Pattern pattern, Random& random) {
  Fill(matrix.data(), matrix.StoredCount(), pattern, random);
}

// A dense matrix of the given size (square kinds: the order, once) with such contents.
template <class K, class... Sizes>
K Filled(Pattern pattern, Random& random, Sizes... sizes) {
  K matrix(sizes...);
  FillMatrix(matrix, pattern, random);
  return matrix;
}

}  // namespace quorvel::test

#endif
