// Text as programs see it: what a piece of code writes to a stdio stream, and what is in a file.

#ifndef QUORVEL_TESTS_SUPPORT_TEXT_H
#define QUORVEL_TESTS_SUPPORT_TEXT_H

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

// Empty when there is no such file.
inline std::string TextOfFile(const std::string& path) {
  std::string text;
  std::FILE* file = std::fopen(path.c_str(), "r");
  for (int c; file != nullptr && (c = std::fgetc(file)) != EOF;) text += static_cast<char>(c);
  if (file != nullptr) std::fclose(file);
  return text;
}

}  // namespace quorvel::test

#endif
