// Every write of the text forms fails in turn: nothing is thrown or lost, a dispensable matrix is consumed as always, and
// what did arrive are the bytes that an untroubled call writes there.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/make.h"
#include "support/sums.h"
#include "support/text.h"

using namespace quorvel::test;

namespace {

// A stream without a buffer whose write number `fail_at` fails (counted from 1; 0: none), and all later ones too unless
// `once`. Keeps the pieces that arrived.
class TroubledStream {
 public:
  TroubledStream(unsigned fail_at, bool once) : fail_at_(fail_at), once_(once) {
    cookie_io_functions_t functions{};
    functions.write = &Write;
    file_ = fopencookie(this, "w", functions);
    std::setvbuf(file_, nullptr, _IONBF, 0);
  }
  ~TroubledStream() { std::fclose(file_); }
  TroubledStream(const TroubledStream&) = delete;
  TroubledStream& operator=(const TroubledStream&) = delete;

  std::FILE* file() const { return file_; }
  unsigned writes() const { return writes_; }
  const std::vector<std::string>& pieces() const { return pieces_; }

 private:
  static ssize_t Write(void* cookie, const char* bytes, std::size_t count) {
    auto& self = *static_cast<TroubledStream*>(cookie);
    ++self.writes_;
    if (self.fail_at_ != 0 && (self.once_ ? self.writes_ == self.fail_at_ : self.writes_ >= self.fail_at_)) {
      errno = ENOSPC;
      return 0;  // as fopencookie wants it: an error is nothing written
    }
    self.pieces_.emplace_back(bytes, count);
    return static_cast<ssize_t>(count);
  }

  unsigned fail_at_;
  bool once_;
  unsigned writes_ = 0;
  std::vector<std::string> pieces_;
  std::FILE* file_ = nullptr;
};

std::string Joined(const std::vector<std::string>& pieces) {
  std::string text;
  for (const std::string& piece : pieces) text += piece;
  return text;
}

// Something that writes to a stream, and its name for messages.
struct Form {
  std::string name;
  std::function<void(std::FILE*)> write;
};

// Something that writes to a path.
struct PathForm {
  std::string name;
  std::function<void(const char*)> write;
};

constexpr const char* kElement = "%.17g";

template <class K>
void AddForms(std::vector<Form>& to, unsigned m, unsigned n) {
  Random random(1 + m + 8 * n);
  const K a = SumSample<K>(m, n, Pattern::kUniform, random);
  const std::string name = a.ClassName() + (" " + std::to_string(m)) + " x " + std::to_string(n);
  to.push_back({name + ", Print with header", [a](std::FILE* f) { a.Print(f, true, true, 3, 9); }});
  to.push_back({name + ", Print without header", [a](std::FILE* f) { a.Print(f, false, false, 3, 9); }});
  to.push_back({name + ", PrintArray", [a](std::FILE* f) { a.PrintArray(f, "%*.*f%c", 9, 3); }});
  to.push_back({name + ", Print of a dispensable", [a](std::FILE* f) { DispensableCopy(a).Print(f, true, true, 3, 9); }});
  if constexpr (kSparse<K>) {
    to.push_back({name + ", PrintMFile", [a](std::FILE* f) { PrintMFile(a, f, kElement); }});
    to.push_back({name + ", PrintMFile of a dispensable", [a](std::FILE* f) { PrintMFile(DispensableCopy(a), f, kElement); }});
  } else {
    to.push_back({name + ", PrintMFile", [a](std::FILE* f) { PrintMFile(a, f, "A", kElement); }});
    to.push_back({name + ", PrintMFile of a dispensable", [a](std::FILE* f) { PrintMFile(DispensableCopy(a), f, "A", kElement); }});
  }
}

template <class K>
void AddPathForms(std::vector<PathForm>& to, unsigned m, unsigned n) {
  Random random(1 + m + 8 * n);
  const K a = SumSample<K>(m, n, Pattern::kUniform, random);
  const std::string name = a.ClassName();
  to.push_back({name, [a](const char* path) { PrintMFile(a, path, "A", kElement); }});
  to.push_back({name + ", dispensable, with a preamble",
                [a](const char* path) { PrintMFile(DispensableCopy(a), path, "A", kElement, "% first\n"); }});
}

const double kVector[] = {1.0, -0.5, 1.0 / 3.0, 1e300};

std::vector<Form> StreamForms() {
  std::vector<Form> forms;
  AddForms<RegularMatrix>(forms, 2, 3);
  AddForms<RegularMatrix>(forms, 1, 1);
  AddForms<SymmetricMatrix>(forms, 3, 3);
  AddForms<UpperTriangularMatrix>(forms, 3, 3);
  AddForms<LowerTriangularMatrix>(forms, 3, 3);
  AddForms<DiagonalMatrix>(forms, 3, 3);
  AddForms<RegularSparseMatrix>(forms, 4, 3);
  AddForms<SymmetricSparseMatrix>(forms, 4, 4);
  for (const bool diagonal : {false, true}) {
    forms.push_back({diagonal ? "values as a diagonal" : "values as a row",
                     [diagonal](std::FILE* f) { PrintMFile(kVector, 4, diagonal, f, "v", kElement); }});
  }
  return forms;
}

// Large enough for several buffers of the C library.
std::vector<PathForm> PathForms() {
  std::vector<PathForm> forms;
  AddPathForms<RegularMatrix>(forms, 30, 29);
  AddPathForms<SymmetricMatrix>(forms, 30, 30);
  AddPathForms<UpperTriangularMatrix>(forms, 40, 40);
  AddPathForms<LowerTriangularMatrix>(forms, 40, 40);
  AddPathForms<DiagonalMatrix>(forms, 80, 80);
  AddPathForms<RegularSparseMatrix>(forms, 40, 39);
  AddPathForms<SymmetricSparseMatrix>(forms, 30, 30);
  for (const bool diagonal : {false, true}) {
    forms.push_back({diagonal ? "values as a diagonal" : "values as a row", [diagonal](const char* path) {
                       double values[700];
                       for (unsigned k = 0; k < 700; ++k) values[k] = 1.0 / (k + 1);
                       PrintMFile(values, diagonal ? 70 : 700, diagonal, path, "v", kElement, "% first\n");
                     }});
  }
  return forms;
}

TEST(WriteFailure, EveryWriteToAStreamFailsOnce) {
  for (const Form& form : StreamForms()) {
    TroubledStream whole(0, false);
    EXPECT_NO_CODE(form.write(whole.file())) << form.name;
    ASSERT_GT(whole.writes(), 0u) << form.name;
    ASSERT_EQ(Joined(whole.pieces()), TextOf(form.write)) << form.name;
    for (unsigned k = 1; k <= whole.writes(); ++k) {
      TroubledStream once(k, true);
      EXPECT_NO_CODE(form.write(once.file())) << form.name;
      EXPECT_NE(std::ferror(once.file()), 0) << form.name << ", write " << k << ": the caller sees it by ferror";
      std::vector<std::string> expected = whole.pieces();
      expected.erase(expected.begin() + (k - 1));
      EXPECT_EQ(once.pieces(), expected) << form.name << ", write " << k;
    }
  }
}

TEST(WriteFailure, EveryWriteToAStreamFailsFromThenOn) {
  for (const Form& form : StreamForms()) {
    TroubledStream whole(0, false);
    EXPECT_NO_CODE(form.write(whole.file())) << form.name;
    for (unsigned k = 1; k <= whole.writes(); ++k) {
      TroubledStream broken(k, false);
      EXPECT_NO_CODE(form.write(broken.file())) << form.name;
      EXPECT_NE(std::ferror(broken.file()), 0) << form.name << ", write " << k;
      const std::vector<std::string> expected(whole.pieces().begin(), whole.pieces().begin() + (k - 1));
      EXPECT_EQ(broken.pieces(), expected) << form.name << ", write " << k;
    }
  }
}

TEST(WriteFailure, AFullDeviceBehindABuffer) {
  for (const Form& form : StreamForms()) {
    std::FILE* full = std::fopen("/dev/full", "w");
    ASSERT_NE(full, nullptr) << "no /dev/full";
    EXPECT_NO_CODE(form.write(full)) << form.name;
    EXPECT_NE(std::fclose(full), 0) << form.name << ": the caller sees it when closing";
  }
}

TEST(WriteFailure, AStreamWhoseFileWasClosedBelowIt) {
  for (const Form& form : StreamForms()) {
    std::FILE* stream = std::tmpfile();
    ASSERT_NE(stream, nullptr);
    std::setvbuf(stream, nullptr, _IONBF, 0);
    ASSERT_EQ(close(fileno(stream)), 0);
    EXPECT_NO_CODE(form.write(stream)) << form.name;
    EXPECT_NE(std::ferror(stream), 0) << form.name;
    std::fclose(stream);
  }
}

TEST(WriteFailure, AFullDeviceGivenAsAPath) {
  for (const PathForm& form : PathForms()) EXPECT_NO_CODE(form.write("/dev/full")) << form.name;
}

// While it lives, files of this process cannot grow beyond so many bytes: a device that fills up.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit limit = before_;
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int);
};

TEST(WriteFailure, ADeviceThatFillsUpBehindAPath) {
  const std::string path = ::testing::TempDir() + "quorvel_write_failure_" + std::to_string(getpid());
  for (const PathForm& form : PathForms()) {
    EXPECT_NO_CODE(form.write(path.c_str())) << form.name;
    const std::string whole = TextOfFile(path);
    ASSERT_GT(whole.size(), 8192u) << form.name;
    // Steps that no buffer's size divides: writes fail whole, and in their middle.
    for (std::size_t size = 0; size < whole.size(); size += 2039) {
      std::remove(path.c_str());
      {
        const FileSizeLimit limit(size);
        EXPECT_NO_CODE(form.write(path.c_str())) << form.name;
      }
      EXPECT_EQ(TextOfFile(path), whole.substr(0, size)) << form.name << ", room for " << size << " bytes";
    }
  }
  std::remove(path.c_str());
}

}  // namespace
