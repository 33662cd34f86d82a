#include "misuse/catalogue.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <string>

#include "misuse/arguments.h"

namespace quorvel::test {
namespace {

struct Rule {
  const char* pattern;  // the symbol begins with it, or it begins with "::" and is the member's name up to its parameters
  std::initializer_list<int> codes;
};

bool Matches(const char* symbol, const char* pattern) {
  if (pattern[0] == ':') return std::strstr(symbol, pattern) != nullptr;
  return std::strncmp(symbol, pattern, std::strlen(pattern)) == 0;
}

// A dispensable target that would have to be resized with its contents: 40000 (growing), 60000 (shrinking).
// The first rule that matches holds.
const Rule kRules[] = {
    // References to elements.
    {"SquareMatrix::proxy::", {60090, 60021}},
    {"SparseMatrix::proxy::operator/=", {62090, 62060, 82160}},
    {"SparseMatrix::proxy::", {62090, 62060}},
    // Sums: two of one dense kind, two unlike dense ones, with a sparse operand, reversed sparse difference.
    {"operator+(", {40340, 50340, 40280, 50280, 40000, 50000}},
    {"operator-(", {40340, 50340, 40280, 50280, 40000, 50000, 40293, 50293}},
    {"Plus(", {40340, 50340, 40280, 50280, 40000, 50000, 60000}},
    {"Minus(", {40340, 50340, 40280, 50280, 40000, 50000, 40293, 50293, 60000}},
    {"::operator+=(", {40340, 50340, 40280, 50280, 40000, 50000, 52260, 50140}},
    {"::operator-=(", {40340, 50340, 40280, 50280, 40000, 50000, 52260, 50140}},
    // Products.
    // A symmetric sparse matrix that was made with different sizes is refused where it would be copied.
    {"operator*(double, SymmetricSparse", {50320, 40000}},
    {"operator*(SymmetricSparseMatrix const&, double", {50320, 40000}},
    {"operator*(SymmetricSparseMatrix&, double", {50320, 40000}},
    {"SymmetricSparseMatrix::operator-(", {50450, 40000}},
    {"SymmetricSparseMatrix::SymmetricSparseMatrix(SymmetricSparse", {50140, 40000}},
    {"operator*(", {40320, 50320, 40294, 50294}},
    {"Mult(", {40320, 50320, 40294, 50294, 50000, 40000, 60000}},
    {"ATA(", {50320}},
    {"AAT(", {50320}},
    {"ATB(", {40320, 50320}},
    {"ABT(", {40320, 50320}},
    {"SymmetricOfProduct(", {40320, 50320, 40000, 50000}},
    {"SymmetricOfABT(", {40320, 50320, 40000}},
    {"UTU(", {50320, 40320}},
    {"LTL(", {50320, 40320}},
    {"ATPA(", {40000, 50000, 0}},
    {"AQAT(", {40000, 50000, 0}},
    {"SQS(", {40000, 50000, 0}},
    {"PWeightedNorm(", {40000, 50000}},
    {"RowDotCol(", {62170, 62180}},
    {"RowDotRow(", {62170}},
    {"ColDotCol(", {62180}},
    {"kron(", {40000, 50000}},
    // Blocks.
    {"CopySubMat(", {40000, 50000}},
    {"GetSubMat(", {40000, 50000, 60000}},
    {"SubMat(", {40000, 50000}},
    {"::operator()(unsigned int, unsigned int, unsigned int, unsigned int)", {40000, 50000}},
    // Matrix functions.
    {"transpose(RegularMatrix", {51040, 50000, 40000, 60000}},
    {"transpose(UpperTriangularMatrix", {51020}},
    {"transpose(LowerTriangularMatrix", {50140}},
    {"transpose(RegularSparseMatrix", {51050}},
    {"sym(RegularMatrix", {50420, 40420}},
    {"sym(RegularSparseMatrix", {50422, 40422}},
    {"triu(SparseMatrix", {50391, 40391}},
    {"triu(", {50390, 40390}},
    {"tril(SparseMatrix", {50393, 40393}},
    {"tril(", {50410, 40410}},
    {"diag(", {50460, 40460}},
    {"trace(", {50460}},
    {"scalar(", {50430}},
    // Inverses and factorisations.
    {"inv2x2(", {50000, 40000}},
    {"inv3x3(", {50000, 40000}},
    {"inv_ut(", {50500, 40500}},
    {"inv_lt(", {50500, 40500}},
    {"inv(DiagonalMatrix", {50570}},
    {"inv(UpperTriangularMatrix", {50500, 50000}},
    {"inv(LowerTriangularMatrix", {50500, 50000}},
    {"inv(", {50940, 40900, 50000}},
    {"Invert3x3BlockDiagMatrix(", {50000, 40000, 60000}},
    {"operator>(", {50580, 40580}},
    {"CholeskyFactor(double", {}},
    {"CholeskyFactor(SymmetricMatrix", {50510}},
    {"CholeskyFactor(", {50510, 40393}},
    {"CholeskySquareRoot", {50000, 40000}},
    {"InverseByCholesky(SymmetricMatrix", {50510, 50000}},
    {"InverseByCholesky(", {50510, 50000, 40393}},
    {"HouseholderTransformation(", {50000, 40000}},
    {"VecEqMatrixTimesSelf(", {50000, 40000}},
    {"MOutPrd(", {50000, 40000}},
    {"SetNonZeros(", {40360, 60360}},
    {"UDFactor(", {50000, 40000, 60000}},
    {"UDDecomposition(", {50000, 40000, 60000}},
    {"UDMeasurementUpdate(", {50000, 40000, 60000}},
    {"UDTimeUpdate(", {50000, 40000}},
    {"RankOneUpdate(SymmetricMatrix&, double", {50400}},
    {"RankOneUpdateNZ(SparseMatrix", {62060}},
    // Navigation.
    {"L1Regression(RegularMatrix", {56110, 46110, 50000, 40000, 60000}},
    {"PolyFit(", {56120, 46120, 50140}},
    {"Phi_", {50000}},
    {"Q_PV", {50000}},
    {"Primary_Axis", {30120}},
    {"DerivativeOfPrimary_Axis", {30121}},
    // Errors themselves.
    {"M_abort(", {123}},
    {"TestNULL(", {10123}},
    // Constructors and assignments.
    {"RegularMatrix::RegularMatrix(RegularSparse", {52320}},
    {"RegularMatrix::RegularMatrix(SymmetricSparse", {52310}},
    {"RegularMatrix::operator=(RegularSparse", {52320, 40000, 60000}},
    {"RegularMatrix::operator=(SymmetricSparse", {52310, 40000, 60000}},
    {"RegularMatrix::operator=(double", {50000}},
    {"RegularMatrix::RegularMatrix(", {50140}},
    {"RegularMatrix::operator=(", {50140}},
    {"SymmetricMatrix::SymmetricMatrix(Diagonal", {50240}},
    {"SymmetricMatrix::operator=(Diagonal", {50240}},
    {"SymmetricMatrix::SymmetricMatrix(SymmetricSparse", {52300, 40000}},
    {"SymmetricMatrix::operator=(SymmetricSparse", {52300, 40000, 60000}},
    {"UpperTriangularMatrix::UpperTriangularMatrix(Diagonal", {50330}},
    {"UpperTriangularMatrix::operator=(Diagonal", {50330}},
    {"LowerTriangularMatrix::LowerTriangularMatrix(Diagonal", {50380}},
    {"LowerTriangularMatrix::operator=(Diagonal", {50380}},
    {"DiagonalMatrix::DiagonalMatrix(unsigned int, unsigned int", {40210}},
    {"SymmetricMatrix::SymmetricMatrix(unsigned int, unsigned int", {40180}},
    {"UpperTriangularMatrix::UpperTriangularMatrix(unsigned int, unsigned int", {40180}},
    {"LowerTriangularMatrix::LowerTriangularMatrix(unsigned int, unsigned int", {40180}},
    {"SymmetricMatrix::SymmetricMatrix(", {50140}},
    {"UpperTriangularMatrix::UpperTriangularMatrix(", {50140}},
    {"LowerTriangularMatrix::LowerTriangularMatrix(", {50140}},
    {"DiagonalMatrix::DiagonalMatrix(", {50140}},
    {"SymmetricMatrix::operator=(double", {50000}},
    {"UpperTriangularMatrix::operator=(double", {50000}},
    {"LowerTriangularMatrix::operator=(double", {50000}},
    {"DiagonalMatrix::operator=(double", {50000}},
    {"SymmetricMatrix::operator=(", {50140}},
    {"UpperTriangularMatrix::operator=(", {50140}},
    {"LowerTriangularMatrix::operator=(", {50140}},
    {"DiagonalMatrix::operator=(", {50140}},
    {"SingleArrayMatrix::operator=(double", {50000}},
    {"RegularSparseMatrix::RegularSparseMatrix(RegularSparse", {50140}},
    {"RegularSparseMatrix::operator=(RegularSparse", {50140, 40000, 60000}},
    {"RegularSparseMatrix::RegularSparseMatrix(SymmetricSparse", {52010}},
    {"RegularSparseMatrix::operator=(SymmetricSparse", {52010, 40000, 60000}},
    {"RegularSparseMatrix::operator=(double", {50881}},
    {"RegularSparseMatrix::RegularSparseMatrix(", {52260}},
    {"RegularSparseMatrix::operator=(", {52260, 40000, 60000}},
    {"SymmetricSparseMatrix::operator=(double", {50881}},
    {"SymmetricSparseMatrix::SymmetricSparseMatrix(DiagonalMatrix", {52260}},
    {"SymmetricSparseMatrix::operator=(DiagonalMatrix", {52260, 40000, 60000}},
    {"SymmetricSparseMatrix::SymmetricSparseMatrix(", {50140}},
    {"SymmetricSparseMatrix::operator=(", {50140, 40000, 60000}},
    {"SparseMatrix::operator=(double", {50881}},
    {"void SparseMatrix::CopyMat<", {52260, 40000, 60000}},
    // Element access.
    {"RegularMatrix::operator()(", {60080}},
    {"RegularMatrix::ThrowRegularMatrixAccessor(", {60080}},
    {"SquareMatrix::operator()(", {60090}},
    {"SquareMatrix::ThrowSquareMatrixAccessorGet(", {60090}},
    {"TriMatrix::ThrowTriMatrixAccessorSet(", {60021}},
    {"DiagonalMatrix::ThrowDiagonalMatrixAccessorSet(", {60090}},
    {"SparseMatrix::operator()(", {62090}},
    {"SparseMatrix::ThrowSparseMatrixAccessor(", {62090}},
    {"SymmetricMatrix::SwapRowsAndCols(", {60021}},
    // Members of all kinds.
    {"::Print(", {50870}},
    {"::SetSize(", {50000, 40000, 60000}},
    {"::FreeMemory(", {50000, 40000, 60000}},
    {"::GetArrayCount(", {0}},
    {"::Reserve(", {0}},
    {"SingleArrayMatrix::Copy(", {50000, 40000, 60000}},
    {"SingleArrayMatrix::Mult(", {50000, 40000, 60000}},
    {"::Assign(", {50000, 40000, 60000}},
    {"::operator-(", {50450}},
    {"::SetRows(", {60000}},
    {"::SetCols(", {60000}},
    {"::InsertRowsAndCols(", {50000, 40000, 30000}},
    {"::InsertRows(", {50000, 40000, 30000}},
    {"::InsertCols(", {50000, 40000, 30000}},
    {"::RemoveRowsAndCols(", {60000}},
    {"::RemoveRows(", {60000}},
    {"::RemoveCols(", {60000}},
    {"SparseMatrix::ClearRow(", {32020}},
    {"SparseMatrix::ClearCol(", {32030}},
    {"::ClearRow(", {50000, 40000}},
    {"::ClearCol(", {50000, 40000}},
    {"::SumRow(", {50000, 40000}},
    {"::SumCol(", {50000, 40000}},
    {"::SumSqRow(", {50000, 40000}},
    {"::SumSqCol(", {50000, 40000}},
    {"::NegateRow(", {50000, 40000}},
    {"::NegateCol(", {50000, 40000}},
    {"::MultRow(", {50000, 40000}},
    {"::MultCol(", {50000, 40000}},
    {"::SetRow(", {50000, 40000}},
    {"::SetCol(", {50000, 40000}},
    // 62200 and 62210: only where the matrix was made with different sizes.
    {"SymmetricSparseMatrix::GetLimitedRow(", {62240, 62060, 62200, 62210}},
    {"SymmetricSparseMatrix::GetLimitedCol(", {62240, 62060, 62200, 62210}},
    {"SymmetricSparseMatrix::GetEntire", {62240, 62060, 62200, 62210}},
    {"RegularSparseMatrix::GetLimitedRow(", {62200, 62060}},
    {"RegularSparseMatrix::GetLimitedCol(", {62210, 62060}},
    {"RegularSparseMatrix::GetEntireRow(", {62230, 62200, 62060}},
    {"RegularSparseMatrix::GetEntireCol(", {62220, 62210, 62060}},
    {"::GetLimitedRow(", {51514}},
    {"::GetEntireRow(", {51514}},
    {"::GetLimitedCol(", {51513}},
    {"::GetEntireCol(", {51513}},
    // Members of the sparse kinds.
    {"SparseMatrix::GetRowElements(", {62200, 62060}},
    {"SparseMatrix::GetColElements(", {62210, 62060}},
    {"SparseMatrix::GetFirstInRow(", {62170}},
    {"SparseMatrix::GetFirstInCol(", {62180}},
    {"SparseMatrix::IsRowEmpty(", {62170}},
    {"SparseMatrix::IsColEmpty(", {62180}},
    {"SparseMatrix::Put(", {62060}},
    {"SparseMatrix::SetRandom(", {62060}},  // only where a symmetric matrix was made with different sizes
    {"SparseMatrix::SparseMatrixInsert(SparseElement", {62190}},
    {"SparseMatrix::SparseMatrixInsert(", {62060}},
    {"SparseMatrix::SparseMatrixRowInsert(", {62040}},
    {"SparseMatrix::SparseMatrixColInsert(", {62050}},
    {"RegularSparseMatrix::operator*=(", {50000}},
    {"SymmetricSparseMatrix::operator*=(", {50000}},
    {"SparseMatrix::Copy(", {52010, 40000, 60000}},
    {"SparseMatrix::Mult(", {50000, 52010, 40000, 60000}},
};

// Documented to leave dispensable operands alive (all of them, or those in front of the given one).
struct Consumption {
  const char* pattern;
  unsigned first;
};
constexpr unsigned kNone = Arguments::kMost;

const Consumption kConsumption[] = {
    {"operator>(", 1},  // the matrix of the equations stays
    {"kron(", kNone},
    {"dot(", kNone},
    {"SingularityCountULD(", kNone},
    {"RowDotCol(", kNone},
    {"RowDotRow(", kNone},
    {"ColDotCol(", kNone},
    {"RankOneUpdateNZ(", kNone},
};

}  // namespace

bool Lists(const char* symbol, int code) {
  // The checks take an operation code, 0 .. 20 here.
  if (std::strncmp(symbol, "Matrix::Throw", 13) == 0) {
    const int offset = code / 10000 * 10000;
    const int operation = code - offset;
    return operation >= 0 && operation <= 20 && (offset == 30000 || offset == 40000 || offset == 50000 || offset == 60000);
  }
  for (const Rule& rule : kRules) {
    if (Matches(symbol, rule.pattern)) return std::find(rule.codes.begin(), rule.codes.end(), code) != rule.codes.end();
  }
  return false;
}

unsigned FirstConsumed(const char* symbol) {
  for (const Consumption& c : kConsumption) {
    if (Matches(symbol, c.pattern)) return c.first;
  }
  const std::string name(symbol, std::strchr(symbol, '('));
  // Members consume only what is written in their family; those of the kinds' operators take operands like functions.
  if (name.find("::") == std::string::npos) return 0;
  return name.find("::operator") != std::string::npos && std::strstr(symbol, "Matrix const&") != nullptr ? 1 : kNone;
}

bool MayStoreBelowDiagonal(const char* symbol) {
  for (const char* pattern : {"SparseMatrix::InsertRows(", "SparseMatrix::InsertCols(", "SparseMatrix::RemoveRows(",
                              "SparseMatrix::RemoveCols(", "SparseMatrix::Copy(", "SparseMatrix::Mult(",
                              "SparseMatrix::SparseMatrixInsert(SparseElement"}) {
    if (Matches(symbol, pattern)) return true;
  }
  return false;
}

Change ChangeWhenRefused(const char* symbol) {
  // A refused assignment leaves its target not ok. What gets its elements one by one is emptied before, GetSubMat sizes its
  // result first, and the U-D factors are sized one after the other.
  constexpr struct {
    const char* pattern;
    Change change;
  } kChanges[] = {
      {"SymmetricSparseMatrix::operator=(", Change::kContents},
      {"::operator=(", Change::kMark},
      {"Matrix::ThrowEquals(", Change::kMark},
      {"void SparseMatrix::CopyMat<", Change::kMark},
      {"SparseMatrix::Copy(", Change::kContents},
      {"SparseMatrix::Mult(", Change::kContents},
      {"Mult(SymmetricSparseMatrix&", Change::kContents},
      {"GetSubMat(", Change::kContents},
      {"SparseMatrix::GetRowElements(", Change::kContents},
      {"SparseMatrix::GetColElements(", Change::kContents},
      {"RegularSparseMatrix::GetEntire", Change::kContents},
      {"RegularSparseMatrix::GetLimited", Change::kContents},
      {"SymmetricSparseMatrix::GetLimited", Change::kContents},
      {"UDDecomposition(", Change::kContents},
      {"UDFactor(", Change::kContents},
  };
  for (const auto& row : kChanges) {
    if (Matches(symbol, row.pattern)) return row.change;
  }
  return Change::kNone;
}

bool NeverSucceeds(const char* symbol) {
  return Matches(symbol, "SymmetricSparseMatrix::GetEntire") || Matches(symbol, "M_abort(");
}

}  // namespace quorvel::test
