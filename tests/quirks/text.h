// What a piece of code writes to a stdio stream.

#ifndef QUORVEL_TESTS_QUIRKS_TEXT_H
#define QUORVEL_TESTS_QUIRKS_TEXT_H

#include <cstdio>
#include <cstdlib>
#include <string>

namespace quorvel::test {

template <class Writer>
std::string TextOf(Writer write) {
  char* buffer = nullptr;
  std::size_t size = 0;
  std::FILE* stream = open_memstream(&buffer, &size);
  write(stream);
  std::fclose(stream);
  const std::string text(buffer, size);
  std::free(buffer);
  return text;
}

}  // namespace quorvel::test

#endif
