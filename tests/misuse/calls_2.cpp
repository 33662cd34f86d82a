#include "misuse/calls_rows.h"

namespace quorvel::test {
namespace {

#include "misuse/calls_2.inc"

}  // namespace
}  // namespace quorvel::test
