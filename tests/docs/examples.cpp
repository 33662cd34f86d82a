// Runs the examples of one page of the documentation; the test compares what they print with the page.
#include "docs/examples.h"

#include <cstring>

#include "support/allocations.h"

#define QUORVEL_PAGE(page) void page_##page();
#include "pages.inc"
#undef QUORVEL_PAGE

namespace quorvel::test::docs {

void Begin(const char* where) { std::printf("== %s\n", where); }

void Run(void (*example)()) {
  const long before = LiveBlocks();
  try {
    example();
  } catch (const MatrixException& e) {
    std::printf("threw %d\n", e.code());
    abort_reset();
  } catch (const std::exception& e) {
    std::printf("threw %s\n", e.what());
  }
  if (ErrorState() != 0) std::printf("code %d is pending\n", GetErrorCode());
  abort_reset();
  if (LiveBlocks() != before) std::printf("%ld blocks leaked\n", LiveBlocks() - before);
  std::fflush(stdout);
}

void Expect(bool condition, const char* text) {
  if (!condition) std::printf("not true: %s\n", text);
}

}  // namespace quorvel::test::docs

int main(int argc, char** argv) {
  struct Page {
    const char* name;
    void (*run)();
  };
  const Page pages[] = {
#define QUORVEL_PAGE(page) {#page, page_##page},
#include "pages.inc"
#undef QUORVEL_PAGE
  };
  for (const Page& page : pages) {
    if (argc == 2 && std::strcmp(argv[1], page.name) == 0) {
      page.run();
      return 0;
    }
  }
  std::fprintf(stderr, "usage: docs_examples PAGE\n");
  return 2;
}
