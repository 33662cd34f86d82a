// What a sparse matrix must be at every moment, and what is in it, read from the store itself.

#ifndef QUORVEL_TESTS_SUPPORT_SPARSE_H
#define QUORVEL_TESTS_SUPPORT_SPARSE_H

#include <gtest/gtest.h>

#include <iosfwd>
#include <string>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/random.h"

namespace quorvel::test {

// What is wrong with the store; empty when nothing is. Checked: row lists and column lists are sorted and hold the same
// records (symmetric kind: all of them with row <= col), `used` counts them, every record lies in a block and is not its
// link, and is in use or in the free chain once, not both; the chain ends. Records may be in neither: those are lost
// until Clear.
std::string FaultOf(const SparseMatrix& a);

#define EXPECT_SOUND(matrix) EXPECT_EQ(::quorvel::test::FaultOf(matrix), "")

struct Cell {
  unsigned row;
  unsigned col;
  double value;
};
bool operator==(const Cell& a, const Cell& b);  // bit for bit
std::ostream& operator<<(std::ostream& out, const Cell& cell);

// The stored elements row by row.
std::vector<Cell> CellsOf(const SparseMatrix& a);

// Blocks of the pool, and records in the free chain, the end mark included.
unsigned BlocksOf(const SparseMatrix& a);
unsigned ChainOf(const SparseMatrix& a);

// Where everything is: for each element, row by row and then column by column, the number of its record in the pool,
// then the numbers of the free chain. Two matrices that were built by the same single steps agree.
std::vector<unsigned> PlacesOf(const SparseMatrix& a);

// Feeds sizes, count and elements to the digest.
void FeedDigest(const SparseMatrix& a);

// A matrix with these elements.
template <class K>
K SparseOf(unsigned m, unsigned n, const std::vector<Cell>& cells) {
  K a(m, n);
  for (const Cell& c : cells) a.Put(c.row, c.col, c.value);
  return a;
}

// Puts `count` times a whole number from -9 to 9 on a random cell (zeros remove).
void Scatter(SparseMatrix& a, unsigned count, Random& random);

}  // namespace quorvel::test

#endif
