#include "misuse/arguments.h"

#include <cstring>
#include <new>

#include "misuse/calls.h"
#include "misuse/catalogue.h"
#include "support/make.h"
#include "support/sparse.h"

namespace quorvel::test {
namespace {

bool StartsWith(const char* text, const char* prefix) { return std::strncmp(text, prefix, std::strlen(prefix)) == 0; }

std::uint64_t Mixed(std::uint64_t hash, std::uint64_t bits) { return (hash ^ bits) * 0x100000001B3u; }

std::uint64_t BitsOf(double x) {
  std::uint64_t bits;
  std::memcpy(&bits, &x, sizeof bits);
  return bits;
}

// Size and elements; reads every double, so that a sanitizer sees an array that is too small.
std::uint64_t ContentsOf(const Matrix& matrix) {
  std::uint64_t hash = Mixed(Mixed(1, matrix.nrows()), matrix.ncols());
  if (matrix.kind() >= Matrix::regular_sparse) {
    const auto& a = static_cast<const SparseMatrix&>(matrix);
    for (unsigned i = 0; i < a.rows; ++i) {
      for (const SparseElement* e = a.rowHeads[i]; e != nullptr; e = e->nextInRow) {
        hash = Mixed(Mixed(Mixed(hash, e->row), e->col), BitsOf(e->value));
      }
    }
  } else {
    const auto& a = static_cast<const SingleArrayMatrix&>(matrix);
    for (unsigned k = 0; k < a.StoredCount(); ++k) hash = Mixed(hash, BitsOf(a.data()[k]));
  }
  return hash;
}

std::string FaultIn(const Matrix& matrix, bool any_triangle) {
  if (matrix.kind() >= Matrix::regular_sparse) {
    const std::string fault = FaultOf(static_cast<const SparseMatrix&>(matrix));
    return any_triangle && fault.rfind("below the diagonal", 0) == 0 ? "" : fault;
  }
  const auto& a = static_cast<const SingleArrayMatrix&>(matrix);
  if (a.capacity() != 0 && a.data() == nullptr) return "capacity without an array";
  return "";
}

}  // namespace

std::FILE* Arguments::file_ = std::fopen("/dev/null", "w");

Arguments::Arguments(const char* symbol, std::uint64_t seed, Manner manner)
    : random_(seed), manner_(manner),
      // Infinities may keep the simplex method from ending.
      finite_(StartsWith(symbol, "L1Regression")),
      // A negative diagonal ends the process.
      covariance_(StartsWith(symbol, "CholeskyFactor") || StartsWith(symbol, "InverseByCholesky")),
      any_triangle_(MayStoreBelowDiagonal(symbol)), order_(0), pattern_(Pattern::kInteger) {
  live_before_ = LiveBlocks();
  if (manner == Manner::kFitting) {
    constexpr unsigned orders[] = {2, 3, 4, 6, 30};
    order_ = orders[random_.Below(5)];
    return;
  }
  order_ = random_.Chance(40) ? 20 + random_.Below(20) : random_.Below(6);
  if (!finite_) pattern_ = kAllPatterns[random_.Below(static_cast<unsigned>(kAllPatterns.size()))];
  pending_ = random_.Chance(12);
}

Arguments::~Arguments() = default;

unsigned Arguments::Size() {
  if (manner_ == Manner::kFitting) return random_.Chance(4) ? 1 : order_;
  if (random_.Chance(4)) return random_.Below(7);
  return order_;
}

unsigned Arguments::Index() {
  if (manner_ == Manner::kFitting) return random_.Below(4) == 0 ? order_ : random_.Below(order_);
  switch (random_.Below(16)) {
    case 0:
      return Matrix::npos;
    case 1: {
      constexpr unsigned huge[] = {0x10000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0x4000, 0x8001};
      return huge[random_.Below(6)];
    }
    case 2:
      return order_;
    case 3:
      return order_ + 1;
    case 4:
      return 0;
    default:
      return random_.Below(order_ + 1);
  }
}

double Arguments::Number() {
  if (finite_ || manner_ == Manner::kFitting) return random_.Integer(1, 9);
  if (covariance_) return 1e-12;
  return Draw(pattern_, random_);
}

double Arguments::Entry() {
  const double x = Draw(pattern_, random_);
  return covariance_ && x < 0.0 ? -x : x;
}

double* Arguments::Numbers() {
  double* const values = numbers_[arrays_++ % 3];
  for (unsigned k = 0; k < kNumbers; ++k) values[k] = static_cast<double>(k % 7) - 2.0;
  return values;
}

Matrix::class_type Arguments::AnyOf(Matrix::class_type first, Matrix::class_type last, bool same_again) {
  if (first == last) return first;
  if (same_again && base_kind_ >= 0) return static_cast<Matrix::class_type>(base_kind_);
  const auto kind = static_cast<Matrix::class_type>(first + random_.Below(static_cast<unsigned>(last - first) + 1));
  base_kind_ = kind;
  return kind;
}

Arguments::Operand* Arguments::Earlier(Matrix::class_type kind) {
  for (unsigned k = 0; k < count_; ++k) {
    if (operands_[k].matrix->kind() == kind) return &operands_[k];
  }
  return nullptr;
}

Matrix& Arguments::ObjectOf(Matrix::class_type kind, bool constant) {
  if (random_.Chance(manner_ == Manner::kWild ? 5 : 20)) {
    if (Operand* const earlier = Earlier(kind)) {
      earlier->constant = earlier->constant && constant;
      return *earlier->matrix;
    }
  }
  const unsigned rows = Size();
  unsigned cols = Size();
  const bool square = kind != Matrix::regular && kind != Matrix::regular_sparse;
  if (square && !(kind == Matrix::symmetric_sparse && manner_ == Manner::kWild && random_.Chance(10))) cols = rows;
  return Make(kind, rows, cols, constant);
}

void Arguments::FillDense(SingleArrayMatrix& a) {
  for (unsigned k = 0; k < a.StoredCount(); ++k) a.data()[k] = Entry();
}

void Arguments::FillSparse(SparseMatrix& a) {
  // Fewer in larger ones: all calls shall take about the same time.
  const unsigned one_in = a.rows > 8 ? 10 : 3;
  for (unsigned i = 0; i < a.rows; ++i) {
    for (unsigned j = 0; j < a.cols; ++j) {
      if (i != j && !random_.Chance(one_in)) continue;
      // A symmetric matrix may have been made with other than square sizes; its mirrored cell may be outside.
      if (a.kind() == Matrix::symmetric_sparse && (j >= a.rows || i >= a.cols)) continue;
      const double x = Entry();
      a.Put(i, j, x);
    }
  }
}

Matrix& Arguments::Make(Matrix::class_type kind, unsigned rows, unsigned cols, bool constant) {
  Operand& operand = operands_[count_++];
  switch (kind) {
    case Matrix::regular: operand.matrix = new RegularMatrix(rows, cols); break;
    case Matrix::symmetric: operand.matrix = new SymmetricMatrix(rows); break;
    case Matrix::upper_triangular: operand.matrix = new UpperTriangularMatrix(rows); break;
    case Matrix::lower_triangular: operand.matrix = new LowerTriangularMatrix(rows); break;
    case Matrix::diagonal: operand.matrix = new DiagonalMatrix(rows); break;
    case Matrix::regular_sparse: operand.matrix = new RegularSparseMatrix(rows, cols); break;
    case Matrix::symmetric_sparse: operand.matrix = new SymmetricSparseMatrix(rows, cols); break;
  }
  Matrix& matrix = *operand.matrix;
  if (kind >= Matrix::regular_sparse) {
    FillSparse(static_cast<SparseMatrix&>(matrix));
  } else {
    FillDense(static_cast<SingleArrayMatrix&>(matrix));
  }
  matrix.set_ok(!(manner_ == Manner::kWild && random_.Chance(12)));
  operand.dispensable = random_.Chance(3);
  matrix.set_dispensable(operand.dispensable);
  operand.constant = constant;
  operand.watch.emplace(&matrix);
  return matrix;
}

void Arguments::Begin() {
  if (describe_ != nullptr) {
    constexpr const char* names[] = {"R", "S", "U", "L", "D", "RS", "SS"};
    for (unsigned k = 0; k < count_; ++k) {
      const Operand& o = operands_[k];
      *describe_ += std::string(k == 0 ? "" : ", ") + names[o.matrix->kind()] + " " + std::to_string(o.matrix->nrows()) +
                    " x " + std::to_string(o.matrix->ncols()) + (o.dispensable ? " dispensable" : "") +
                    (o.matrix->ok() ? "" : " not ok");
    }
    if (pending_) *describe_ += ", a code pending";
    throw Described();
  }
  for (unsigned k = 0; k < count_; ++k) {
    operands_[k].contents = ContentsOf(*operands_[k].matrix);
    operands_[k].ok = operands_[k].matrix->ok();
  }
  if (pending_) {
    int code = kPending;
    abort_set(code);
  }
  if (callback_ != nullptr) SetAbortCallback(callback_);
  limit_.emplace(1u << 16);
  if (fail_at_ != 0) fail_.emplace(fail_at_, fail_mode_);
}

Change Arguments::Changed() const {
  Change most = Change::kNone;
  for (unsigned k = 0; k < count_; ++k) {
    const Operand& o = operands_[k];
    if (o.dispensable || o.watch->deleted()) continue;
    if (ContentsOf(*o.matrix) != o.contents) return Change::kContents;
    if (o.matrix->ok() != o.ok) most = Change::kMark;
  }
  return most;
}

std::string Arguments::Settle(unsigned first_consumed) {
  SetAbortCallback(nullptr);
  abort_reset();
  fail_.reset();
  limit_.reset();
  char wrong[200] = "";  // no string yet: the heap is being counted
  const auto note = [&wrong](const char* text) {
    if (wrong[0] == '\0') std::snprintf(wrong, sizeof wrong, "%s", text);
  };
  bool result_is_operand = false;
  for (unsigned k = 0; k < count_; ++k) {
    Operand& o = operands_[k];
    if (o.watch->deleted()) {
      if (!o.dispensable) note("an operand that is not dispensable was destroyed");
      continue;
    }
    const bool is_result = o.matrix == result_;
    result_is_operand = result_is_operand || is_result;
    if (o.dispensable && o.constant && k >= first_consumed && !is_result) note("a dispensable operand is still alive");
    if (describe_ == nullptr) note(FaultIn(*o.matrix, any_triangle_).c_str());
    if (describe_ == nullptr && o.constant && !o.dispensable &&
        (o.matrix->ok() != o.ok || ContentsOf(*o.matrix) != o.contents)) {
      note("a constant operand has changed");
    }
    delete o.matrix;
  }
  if (result_ != nullptr && !result_is_operand) {
    note(FaultIn(*result_, any_triangle_).c_str());
    if (result_->dispensable()) {
      delete result_;
    } else {
      note("the result is neither an operand nor dispensable");
    }
  }
  const long more = LiveBlocks() - live_before_;
  if (more != 0) std::snprintf(wrong, sizeof wrong, "%ld blocks more than before", more);
  for (unsigned k = 0; k < count_; ++k) operands_[k].watch.reset();
  return wrong;
}

}  // namespace quorvel::test
