// Which instance of the kernels runs.
#include "ops/kernels/kernels.h"

namespace quorvel::detail {

const Kernels& kernels() noexcept { return kernels_portable; }

}  // namespace quorvel::detail
