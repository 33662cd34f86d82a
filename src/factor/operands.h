// The operands of a routine that writes some of them: what is checked, and what dies when.
#ifndef QUORVEL_FACTOR_OPERANDS_H
#define QUORVEL_FACTOR_OPERANDS_H

#include <cstddef>

#include "core/ownership.h"

namespace quorvel::detail {

/// Holds the dispensable operands of one call, targets first. When the call fails, all of them die; when it succeeds
/// (Succeed), the targets live on, and those that were only read die. An object given twice dies once, and lives when
/// one of its roles is that of a target.
class Operands {
 public:
  template <class... M>
  explicit Operands(std::size_t targets, const M&... m) noexcept
      : targets_(targets), count_(sizeof...(m)), all_{&m...} {
    static_assert(sizeof...(m) <= most);
    for (std::size_t k = 0; k < count_; ++k) {
      ok_ = ok_ && all_[k]->ok();
      if (!all_[k]->dispensable() || Seen(k)) all_[k] = nullptr;
    }
  }
  Operands(const Operands&) = delete;
  Operands& operator=(const Operands&) = delete;
  ~Operands() { Destroy(succeeded_ ? targets_ : 0); }

  /// Throws the pending code, 50000 when an operand is not ok, 40000 when the sizes do not fit.
  void Require(bool fits) { Require(ok_, fits); }

  /// The same with a condition of its own in place of "all ok".
  void Require(bool ok, bool fits) {
    if (ErrorState() != 0) Fail(GetErrorCode());
    if (!ok) Fail(offset::not_ok);
    if (!fits) Fail(offset::shape);
  }

  [[noreturn]] void Fail(int value) {
    Destroy(0);
    count_ = 0;
    FailWith(value);
  }

  void Succeed() noexcept { succeeded_ = true; }

 private:
  static constexpr std::size_t most = 5;

  bool Seen(std::size_t k) const noexcept {
    for (std::size_t i = 0; i < k; ++i) {
      if (all_[i] == all_[k]) return true;
    }
    return false;
  }

  void Destroy(std::size_t first) const noexcept {
    for (std::size_t k = first; k < count_; ++k) {
      if (all_[k] != nullptr) all_[k]->DestroyIfDispensable();
    }
  }

  std::size_t targets_;
  std::size_t count_;
  const Matrix* all_[most];
  bool ok_ = true;
  bool succeeded_ = false;
};

}  // namespace quorvel::detail

#endif
