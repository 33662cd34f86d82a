// The pending code, for checks that read it in line.
#ifndef QUORVEL_CORE_PENDING_H
#define QUORVEL_CORE_PENDING_H

namespace quorvel::detail {

/// What GetErrorCode gives. Written by abort_set and abort_reset only.
extern int pending_code;

}  // namespace quorvel::detail

#endif
