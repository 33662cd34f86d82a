// Arguments for any exported function, drawn at random from its parameter types.
//
// Every matrix that is handed out is on the heap, so that any of them may be dispensable, and is watched: after the call
// it is known which ones the library destroyed. The same number draws the same arguments again, on every platform.

#ifndef QUORVEL_TESTS_MISUSE_ARGUMENTS_H
#define QUORVEL_TESTS_MISUSE_ARGUMENTS_H

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <type_traits>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/random.h"

namespace quorvel::test {

enum class Manner {
  kWild,    // anything a caller can get wrong: sizes, indices, flags, NaN, the same object twice, a pending code
  kFitting  // small whole numbers, sizes that often fit, no flag but dispensable
};

enum class Change { kNone, kMark, kContents };  // of an operand: nothing, "not ok", elements or size

class Arguments {
 public:
  static constexpr unsigned kMost = 6;
  static constexpr int kPending = 40999;

  Arguments(const char* symbol, std::uint64_t seed, Manner manner);
  ~Arguments();
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

  // What calls ask for.
  template <class K>
  K& Object(bool constant);
  unsigned Index();
  unsigned Size();
  unsigned SmallIndex(unsigned count) { return count == 0 ? 0 : random_.Below(count); }
  double Number();
  double SmallNumber() { return random_.Integer(-9, 9); }
  int Small() { return random_.Integer(0, 20); }
  bool Coin() { return random_.Chance(2); }
  double* Numbers();  // kNumbers doubles
  std::FILE* File() const { return file_; }
  static constexpr unsigned kNumbers = 512;
  // A matrix that fits a precondition: of the kind and size, ok; dispensable like any other.
  template <class K>
  K& Exactly(unsigned rows, unsigned cols, bool constant);

  // Called between the drawing of the arguments and the call: from here on memory and pending code are as the test wants.
  void Begin();
  // The call came back with this matrix.
  void Returned(const Matrix* result) noexcept { result_ = result; }

  // The test's part.
  void FailFrom(unsigned k, Fail mode) { fail_at_ = k, fail_mode_ = mode; }
  // Installed during the call.
  void SetCallback(void (*callback)(int)) { callback_ = callback; }
  bool failed() const { return fail_ && fail_->failed(); }
  bool pending() const { return pending_; }
  // From now on Begin() only notes what the operands are, and throws Described.
  struct Described {};
  void DescribeOnly(std::string& text) { describe_ = &text; }
  // After the call: ends failing and limits, destroys what is left, and says what is wrong, if anything. Constant
  // dispensable operands from number `first_consumed` on should be gone.
  std::string Settle(unsigned first_consumed);
  // What became of the operands that are not dispensable, at most. To be asked before Settle.
  Change Changed() const;

 private:
  struct Operand {
    Matrix* matrix = nullptr;
    bool constant = false;
    bool dispensable = false;
    std::uint64_t contents = 0;  // size and elements
    bool ok = true;
    std::optional<WatchedBlock> watch;
  };

  Matrix& Make(Matrix::class_type kind, unsigned rows, unsigned cols, bool constant);
  Operand* Earlier(Matrix::class_type kind);
  void FillDense(SingleArrayMatrix& a);
  void FillSparse(SparseMatrix& a);
  double Entry();

  Random random_;
  Manner manner_;
  bool finite_;
  bool covariance_;
  bool any_triangle_;
  unsigned order_;
  Pattern pattern_;
  int base_kind_ = -1;
  Operand operands_[kMost];
  unsigned count_ = 0;
  const Matrix* result_ = nullptr;
  bool pending_ = false;
  long live_before_ = 0;
  double numbers_[3][kNumbers];
  unsigned arrays_ = 0;
  static std::FILE* file_;
  unsigned fail_at_ = 0;
  Fail fail_mode_ = Fail::kOnce;
  void (*callback_)(int) = nullptr;
  std::string* describe_ = nullptr;
  std::optional<FailAllocations> fail_;
  std::optional<LimitAllocations> limit_;

  template <class K>
  static K& As(Matrix& m) {
    return static_cast<K&>(m);
  }
  Matrix& ObjectOf(Matrix::class_type kind, bool constant);
  Matrix::class_type AnyOf(Matrix::class_type first, Matrix::class_type last, bool same_again);
};

template <class K>
struct KindTag;
template <> struct KindTag<RegularMatrix> { static constexpr auto first = Matrix::regular, last = Matrix::regular; };
template <> struct KindTag<SymmetricMatrix> { static constexpr auto first = Matrix::symmetric, last = Matrix::symmetric; };
template <> struct KindTag<UpperTriangularMatrix> {
  static constexpr auto first = Matrix::upper_triangular, last = Matrix::upper_triangular;
};
template <> struct KindTag<LowerTriangularMatrix> {
  static constexpr auto first = Matrix::lower_triangular, last = Matrix::lower_triangular;
};
template <> struct KindTag<DiagonalMatrix> { static constexpr auto first = Matrix::diagonal, last = Matrix::diagonal; };
template <> struct KindTag<RegularSparseMatrix> {
  static constexpr auto first = Matrix::regular_sparse, last = Matrix::regular_sparse;
};
template <> struct KindTag<SymmetricSparseMatrix> {
  static constexpr auto first = Matrix::symmetric_sparse, last = Matrix::symmetric_sparse;
};
// Bases: any of their kinds.
template <> struct KindTag<SparseMatrix> {
  static constexpr auto first = Matrix::regular_sparse, last = Matrix::symmetric_sparse;
};
template <> struct KindTag<TriMatrix> {
  static constexpr auto first = Matrix::symmetric, last = Matrix::lower_triangular;
};
template <> struct KindTag<SquareMatrix> { static constexpr auto first = Matrix::symmetric, last = Matrix::diagonal; };
template <> struct KindTag<SingleArrayMatrix> { static constexpr auto first = Matrix::regular, last = Matrix::diagonal; };
template <> struct KindTag<Matrix> { static constexpr auto first = Matrix::regular, last = Matrix::symmetric_sparse; };

template <class K>
K& Arguments::Object(bool constant) {
  // Two matrices that share a storage layout, where a base of the dense kinds is asked for twice.
  const auto kind = AnyOf(KindTag<K>::first, KindTag<K>::last, std::is_base_of_v<SingleArrayMatrix, K>);
  return As<K>(ObjectOf(kind, constant));
}

template <class K>
K& Arguments::Exactly(unsigned rows, unsigned cols, bool constant) {
  return As<K>(Make(KindTag<K>::first, rows, cols, constant));
}

// One parameter of type T, drawn when it is made.
template <class T, class = void>
struct Holder;
template <class K>
struct Holder<K&, std::enable_if_t<std::is_base_of_v<Matrix, K>>> {
  explicit Holder(Arguments& a) : object(a.Object<std::remove_const_t<K>>(std::is_const_v<K>)) {}
  K& get() { return object; }
  K& object;
};
template <class K>
struct Holder<K&&, std::enable_if_t<std::is_base_of_v<Matrix, K>>> {
  explicit Holder(Arguments& a) : object(a.Object<K>(false)) {}
  K&& get() { return static_cast<K&&>(object); }
  K& object;
};
template <>
struct Holder<RegularMatrix*> {
  explicit Holder(Arguments& a) : object(a.Coin() ? nullptr : &a.Object<RegularMatrix>(false)) {}
  RegularMatrix* get() { return object; }
  RegularMatrix* object;
};
template <class T>
struct Value {
  explicit Value(T v) : value(v) {}
  T get() { return value; }
  T value;
};
template <>
struct Holder<unsigned> : Value<unsigned> {
  explicit Holder(Arguments& a) : Value(a.Index()) {}
};
template <>
struct Holder<double> : Value<double> {
  explicit Holder(Arguments& a) : Value(a.Number()) {}
};
template <>
struct Holder<int> : Value<int> {
  explicit Holder(Arguments& a) : Value(a.Small()) {}
};
template <>
struct Holder<bool> : Value<bool> {
  explicit Holder(Arguments& a) : Value(a.Coin()) {}
};
template <>
struct Holder<std::FILE*> : Value<std::FILE*> {
  explicit Holder(Arguments& a) : Value(a.File()) {}
};
template <>
struct Holder<double*> : Value<double*> {
  explicit Holder(Arguments& a) : Value(a.Numbers()) {}
};
template <>
struct Holder<const double*> : Value<const double*> {
  explicit Holder(Arguments& a) : Value(a.Numbers()) {}
};
template <>
struct Holder<unsigned&> {
  explicit Holder(Arguments& a) : value(a.Index()) {}
  unsigned& get() { return value; }
  unsigned value;
};
template <>
struct Holder<double&> {
  explicit Holder(Arguments& a) : value(a.Number()) {}
  double& get() { return value; }
  double value;
};

}  // namespace quorvel::test

#endif
