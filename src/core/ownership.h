// When a matrix on the heap dies. Nothing else in the library deletes a matrix.
//
// The order in every exported function: check (a failing check destroys the dispensable operands itself), then take
// charge of them with Consumed, then make the result with NewResult, compute, hand the result over. Consumed destroys
// what it holds at scope exit, also when an exception passes.
#ifndef QUORVEL_CORE_OWNERSHIP_H
#define QUORVEL_CORE_OWNERSHIP_H

#include <new>
#include <type_traits>
#include <utility>

#include "core/codes.h"
#include "core/fits.h"
#include "core/kinds.h"

namespace quorvel::detail {

/// Destroys every dispensable matrix of the list, each object once, makes `value` pending (or takes the pending code)
/// and throws it. For conditions that the checks of Matrix do not cover.
[[noreturn]] void FailWith(int value, const Matrix* first = nullptr, const Matrix* second = nullptr,
                           const Matrix* third = nullptr);

/// Reports exhausted memory: 10680.
[[noreturn]] void FailToAllocate();

/// The end of a dispensable matrix that has given away what it held.
inline void DestroyEmptied(const Matrix& m) noexcept {
  delete &m;  // never all ways: the address of an object is not null
}

/// A new dense matrix of that size, whose every stored double is written next; a packed or diagonal one refuses to be
/// oblong, as in SetSize. For operands that have passed their checks: nothing is pending.
template <class K>
K* NewDense(Matrix::size_type rows, Matrix::size_type cols);

/// Holds the operands of an operation whose checks have passed; destroys each dispensable one once at scope exit.
class Consumed {
 public:
  explicit Consumed(const Matrix& a) noexcept : first_(pick(a)), second_(nullptr) {}
  Consumed(const Matrix& a, const Matrix& b) noexcept : first_(pick(a)), second_(&a == &b ? nullptr : pick(b)) {}
  /// Also holds the target of the operation, until it is complete and released.
  Consumed(const Matrix& a, const Matrix& b, const Matrix& target) noexcept
      : Consumed(a, b) {
    if (&target != &a && &target != &b) target_ = pick(target);
  }
  Consumed(const Consumed&) = delete;
  Consumed& operator=(const Consumed&) = delete;
  ~Consumed() {
    if (first_ != nullptr || second_ != nullptr || target_ != nullptr) destroy_all();
  }

  /// From now on the operand is not destroyed (it is the result, or has been handed on).
  void release(const Matrix& operand) noexcept {
    if (first_ == &operand) first_ = nullptr;
    if (second_ == &operand) second_ = nullptr;
    if (target_ == &operand) target_ = nullptr;
  }

 private:
  static const Matrix* pick(const Matrix& m) noexcept { return m.dispensable() ? &m : nullptr; }
  [[gnu::noinline]] void destroy_all() noexcept {
    delete first_;
    delete second_;
    delete target_;
  }

  const Matrix* first_;
  const Matrix* second_;
  const Matrix* target_ = nullptr;
};

/// Calls fill(), which sizes and fills a target that may be dispensable. It dies when memory runs out; when its size is
/// refused, it has died by that already.
template <class Fill>
void FillTarget(const Matrix& target, Fill fill) {
  try {
    fill();
  } catch (const std::bad_alloc&) {  // never all ways: nothing throws anything but this and codes
    target.DestroyIfDispensable();
    throw;
  } catch (const MatrixException& e) {
    if (e.code() == code::allocate + offset::null_pointer) target.DestroyIfDispensable();
    throw;
  }
}

/// Holds a new result until it is complete. It becomes dispensable last, so that nothing consumes it before (a
/// dispensable sparse matrix cannot even be resized). Memory for the object itself is reported as for its storage.
template <class K>
class NewResult {
 public:
  template <class... Args>
  explicit NewResult(Args&&... args) : result_(make(std::forward<Args>(args)...)) {}

  /// A result of that size: a dense one is not filled, a sparse one is empty.
  static NewResult sized(Matrix::size_type rows, Matrix::size_type cols) {
    if constexpr (is_dense<K>) {
      return NewResult(NewDense<K>(rows, cols));
    } else {
      return NewResult(Sized(), rows, cols);
    }
  }

  NewResult(const NewResult&) = delete;
  NewResult& operator=(const NewResult&) = delete;
  ~NewResult() { delete result_; }

  K& operator*() noexcept { return *result_; }
  K* operator->() noexcept { return result_; }

  /// Marks the result dispensable and gives it to the caller.
  [[nodiscard]] K& hand_over() noexcept {
    Access::mark_dispensable(*result_);
    return *release();
  }

  K* release() noexcept { return std::exchange(result_, nullptr); }

 private:
  explicit NewResult(K* result) noexcept : result_(result) {}

  /// By the method: the constructor of a symmetric sparse matrix does not ask whether it is square.
  struct Sized {};
  NewResult(Sized, Matrix::size_type rows, Matrix::size_type cols) : NewResult() { result_->SetSize(rows, cols, false); }

  template <class... Args>
  static K* make(Args&&... args) {
    if constexpr (is_dense<K> && sizeof...(Args) == 0) {
      static_assert(std::is_nothrow_default_constructible_v<K>);
      try {
        return new K;
      } catch (const std::bad_alloc&) {  // never all ways: operator new throws nothing else
        FailToAllocate();
      }
    } else if constexpr (is_dense<K>) {
      // never all ways: constructors allocate by code, so none fails halfway
      K* p = new (std::nothrow) K(std::forward<Args>(args)...);
      if (p == nullptr) TestNULL(p, code::allocate);
      return p;
    } else {
      return new K(std::forward<Args>(args)...);  // never all ways: the compiler keeps a flag of what is constructed
    }
  }

  K* result_;
};

/// A const operand stands for one that may be consumed: only a dispensable object is ever changed through it.
template <class K>
K& Mutable(const K& a) noexcept {
  return const_cast<K&>(a);
}

}  // namespace quorvel::detail

#endif
