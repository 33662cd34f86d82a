// The pending code, the abort callback, and the ways to throw.
#include "core/invariant.h"
#include "core/ownership.h"
#include "core/pending.h"

#include <cstdio>
#include <cstdlib>

#include <errno.h>  // program_invocation_short_name

int quorvel::detail::pending_code = 0;

using quorvel::detail::pending_code;

namespace {

void (*abort_callback)(int) = nullptr;

}  // namespace

void SetAbortCallback(void (*callback)(int)) { abort_callback = callback; }

int GetErrorCode() { return pending_code; }

int ErrorState() { return pending_code != 0 ? 1 : 0; }

void abort_reset() { pending_code = 0; }

void abort_set(int& code) {
  if (code == 0) return;
  if (pending_code != 0) {
    code = pending_code;
  } else {
    pending_code = code;
  }
  // The callback may reset the pending code or throw; the value to throw is already settled.
  if (abort_callback != nullptr) {
    const int settled = code;
    abort_callback(settled);
  }
}

void TestNULL(const void* p, int code) {
  if (p == nullptr) quorvel::detail::FailWith(code + quorvel::detail::offset::null_pointer);
}

void M_abort(int code) { throw MatrixException(code); }

namespace quorvel::detail {

void FailWith(int value, const Matrix* first, const Matrix* second, const Matrix* third) {
  // Which objects die is settled before the first is gone: an object given twice must not be looked at again.
  const bool same_second = second == first;
  const bool same_third = third == first || third == second;
  if (first != nullptr) first->DestroyIfDispensable();
  if (second != nullptr && !same_second) second->DestroyIfDispensable();
  // never all ways: a result that is an operand, too, has been refused as one before
  if (third != nullptr && !same_third) third->DestroyIfDispensable();
  abort_set(value);
  throw MatrixException(value);
}

void FailToAllocate() { FailWith(code::allocate + offset::null_pointer); }

void InvariantFailed(const char* condition, const char* file, unsigned line, const char* signature) {
  std::fprintf(stderr, "%s: %s:%u: %s: Assertion `%s' failed.\n", program_invocation_short_name, file, line, signature,
               condition);
  std::abort();
}

}  // namespace quorvel::detail
