// What the script writers of the dense and the sparse kinds share: the form that creates its file.
#ifndef QUORVEL_CORE_MFILE_H
#define QUORVEL_CORE_MFILE_H

#include <cstdio>
#include <memory>

namespace quorvel::detail {

struct CloseFile {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

/// Creates the file, writes the preamble when there is one, then what `write` writes. A file that cannot be opened is
/// skipped without a word.
template <class Write>
void WriteToPath(const char* path, const char* preamble, Write write) {
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path, "w"));
  if (file == nullptr) return;
  if (preamble != nullptr) std::fputs(preamble, file.get());
  write(file.get());
}

}  // namespace quorvel::detail

#endif
