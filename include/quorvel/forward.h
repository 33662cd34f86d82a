// Names of the matrix kinds, for declarations that need no more than the name.
#ifndef QUORVEL_FORWARD_H
#define QUORVEL_FORWARD_H

class Matrix;
class SingleArrayMatrix;
class SquareMatrix;
class TriMatrix;
class RegularMatrix;
class SymmetricMatrix;
class UpperTriangularMatrix;
class LowerTriangularMatrix;
class DiagonalMatrix;
class SparseMatrix;
class RegularSparseMatrix;
class SymmetricSparseMatrix;

#endif
