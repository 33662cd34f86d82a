// Arrays of doubles: results and scratch come from here.
#ifndef QUORVEL_CORE_STORAGE_H
#define QUORVEL_CORE_STORAGE_H

#include <cstdint>
#include <memory>

#include "core/packed.h"

namespace quorvel::detail {

/// One array holds fewer doubles than this; a request for more is a bad array length on every machine.
inline constexpr std::uint64_t max_doubles = std::uint64_t{1} << 28;

/// A new array, uninitialised; null for a count of 0. Throws std::bad_array_new_length for max_doubles or more, and
/// 10680 when memory is exhausted.
double* NewDoubles(std::uint64_t count);

/// Scratch of that many doubles, released at scope exit.
inline std::unique_ptr<double[]> Scratch(std::uint64_t count) { return std::unique_ptr<double[]>(NewDoubles(count)); }

/// Throws std::bad_array_new_length when a + b does not fit a size.
void RequireSize(std::uint64_t a, std::uint64_t b);

// Moves and fills of a number of doubles that may be 0 (then the pointers may be null).
void CopyDoubles(double* to, const double* from, std::uint64_t count) noexcept;   // no overlap
void MoveDoubles(double* to, const double* from, std::uint64_t count) noexcept;   // overlap allowed
void FillDoubles(double* to, double value, std::uint64_t count) noexcept;
void ClearDoubles(double* to, std::uint64_t count) noexcept;                      // +0.0

/// to[k] = s * from[k], the arrays being one or apart: +0.0 everywhere for s = 0, negated for -1, a copy for 1.
void ScaleDoubles(double* to, double s, const double* from, index_t count) noexcept;

}  // namespace quorvel::detail

#endif
