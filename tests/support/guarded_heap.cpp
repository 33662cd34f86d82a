#include "support/guarded_heap.h"

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace quorvel::test::guarded_heap {
namespace {

// What new and deleted blocks hold: a double that is no result of anything, an address that nothing has.
constexpr int filling = 0xA5;

std::size_t Page() noexcept {
  static const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  return page;
}

// A mapping is a head page, which holds its length, a guard, the pages of the block, and a guard. Mappings of few pages
// are used again: the kernel is slow to make them.
struct Head {
  Head* next;
  std::size_t pages;  // of the block
};
constexpr std::size_t kept_pages = 17;
std::array<Head*, kept_pages> unused{};
std::mutex unused_lock;

char* Body(Head* head) noexcept { return reinterpret_cast<char*>(head) + 2 * Page(); }

Head* Map(std::size_t pages) noexcept {
  if (pages < kept_pages) {
    const std::lock_guard<std::mutex> hold(unused_lock);
    if (Head* head = unused[pages]) {
      unused[pages] = head->next;
      return head;
    }
  }
  void* place = mmap(nullptr, (pages + 3) * Page(), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (place == MAP_FAILED) return nullptr;
  auto* head = static_cast<Head*>(place);
  if (mprotect(place, Page(), PROT_READ | PROT_WRITE) != 0 ||
      mprotect(Body(head), pages * Page(), PROT_READ | PROT_WRITE) != 0) {
    munmap(place, (pages + 3) * Page());
    return nullptr;
  }
  head->pages = pages;
  std::memset(Body(head), filling, pages * Page());
  return head;
}

}  // namespace

Side Asked() noexcept {
  const char* side = std::getenv("QUORVEL_GUARDED_HEAP");
  if (side == nullptr || *side == '\0') return Side::kNone;
  return std::strcmp(side, "begin") == 0 ? Side::kBegin : Side::kEnd;
}

void* Allocate(std::size_t size, std::size_t alignment, Side side) noexcept {
  if (alignment <= alignof(std::max_align_t)) alignment = size % 16 == 0 ? alignof(std::max_align_t) : 8;
  if (size > SIZE_MAX / 2) return nullptr;
  const std::size_t room = (size + alignment - 1) / alignment * alignment;
  const std::size_t pages = (room + Page() - 1) / Page();
  Head* head = Map(pages);
  if (head == nullptr) return nullptr;
  char* body = Body(head);
  return side == Side::kBegin ? body : body + pages * Page() - room;
}

void Release(void* block) noexcept {
  // A block begins in the first page of its body, two pages behind the head.
  const auto address = reinterpret_cast<std::uintptr_t>(block);
  auto* head = reinterpret_cast<Head*>(address - address % Page() - 2 * Page());
  if (head->pages >= kept_pages) {
    munmap(head, (head->pages + 3) * Page());
    return;
  }
  std::memset(Body(head), filling, head->pages * Page());
  const std::lock_guard<std::mutex> hold(unused_lock);
  head->next = unused[head->pages];
  unused[head->pages] = head;
}

}  // namespace quorvel::test::guarded_heap
