// What is in a Matrix Market file: structure, norms and a factorisation of the matrix. See kUsage in program.cpp.
//
// Where to look:
//   reader.cpp         from the text to a RegularSparseMatrix or a SymmetricSparseMatrix, row by row
//   structure.cpp      walks the stored elements; norms by SumSqRow and the element lists
//   factorisation.cpp  CholeskyFactor and HouseholderTransformation of the sparse kinds, and how good they are
#include <iostream>
#include <string>
#include <vector>

#include "program.h"

int main(int argc, char** argv) {
  return market::RunProgram(std::vector<std::string>(argv + 1, argv + argc), std::cout, std::cerr);
}
