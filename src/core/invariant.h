// Assertions on the library's own invariants. They stay alive in every build type: a broken one ends the process with
//   <program>: <file>:<line>: <signature>: Assertion `<condition>' failed.
// `file` is the base name that users see ("templates" or "utility"), `line` a fixed number per assertion.
#ifndef QUORVEL_CORE_INVARIANT_H
#define QUORVEL_CORE_INVARIANT_H

namespace quorvel::detail {

[[noreturn]] void InvariantFailed(const char* condition, const char* file, unsigned line, const char* signature);

/// Ends the process unless `holds`.
inline void Invariant(bool holds, const char* condition, const char* file, unsigned line, const char* signature) {
  if (!holds) InvariantFailed(condition, file, line, signature);
}

}  // namespace quorvel::detail

#endif
