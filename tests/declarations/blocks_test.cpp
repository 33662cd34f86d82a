// Blocks: the declarations are the rows of the tables.

#include "quorvel/blocks.h"

#include "../src/ops/tables/blocks.h"
#include "declarations/declared.h"
#include "quorvel/quorvel.h"

namespace quorvel::test {
namespace {

#define AT_POSITION(T, S)                                                                                        \
  OVERLOAD(T&, CopySubMat, (T&, unsigned, unsigned, const S&, unsigned, unsigned, unsigned, unsigned)),        \
      OVERLOAD(T&, CopySubMat, (T&, unsigned, unsigned, const S&)),
#define ON_DIAGONAL(T, S)                                                                                        \
  OVERLOAD(T&, CopySubMat, (T&, unsigned, const S&, unsigned, unsigned, unsigned, unsigned)),                   \
      OVERLOAD(T&, CopySubMat, (T&, unsigned, const S&, unsigned, unsigned)),                                    \
      OVERLOAD(T&, CopySubMat, (T&, unsigned, const S&)),
#define EXTRACTION(T, S)                                                                     \
  OVERLOAD(T&, GetSubMat, (T&, const S&, unsigned, unsigned, unsigned, unsigned)),          \
      OVERLOAD(T&, SubMat, (const S&, unsigned, unsigned, unsigned, unsigned)),
#define PRINCIPAL(K) \
  OVERLOAD(K&, GetSubMat, (K&, const K&, unsigned, unsigned)), OVERLOAD(K&, SubMat, (const K&, unsigned, unsigned)),

TEST(BlockDeclarations, AreTheRowsOfTheTables) {
  const std::vector<Overload> rows = {
      QUORVEL_DENSE_BLOCK_TARGETS(QUORVEL_DENSE_BLOCK_SOURCES, AT_POSITION)
      QUORVEL_DENSE_BLOCK_TARGETS(QUORVEL_SPARSE_BLOCK_SOURCES, AT_POSITION)
      QUORVEL_SPARSE_BLOCK_TARGETS(QUORVEL_DENSE_BLOCK_SOURCES, AT_POSITION)
      QUORVEL_SPARSE_BLOCK_TARGETS(QUORVEL_SPARSE_BLOCK_SOURCES, AT_POSITION)
      QUORVEL_DENSE_BLOCK_SOURCES(ON_DIAGONAL, DiagonalMatrix)
      QUORVEL_SPARSE_BLOCK_SOURCES(ON_DIAGONAL, DiagonalMatrix)
      QUORVEL_DENSE_BLOCK_SOURCES(EXTRACTION, RegularMatrix)
      QUORVEL_PRINCIPAL_BLOCKS(PRINCIPAL)};
  EXPECT_EQ(rows.size(), 6u * 7 * 2 + 7 * 3 + 5 * 2 + 2 * 2);
  ExpectDeclarations(DeclaredIn("blocks.h"), rows);
}

}  // namespace
}  // namespace quorvel::test
