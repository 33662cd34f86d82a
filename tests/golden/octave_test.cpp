// What PrintMFile writes is read by GNU Octave and comes back bit for bit.
//
// Each kind is written with %.17g; an Octave script runs the statements (builds sparse matrices from the triplets) and
// writes the sizes and the elements by rows as raw doubles. Values include the smallest and largest doubles, numbers
// with 17 digits, and negative zeros in dense matrices.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/model.h"
#include "support/text.h"

using namespace quorvel::test;

namespace {

#if defined(__arm__)
constexpr bool kHost = false;  // in an emulator, beside a host that runs this test itself
#else
constexpr bool kHost = true;
#endif

bool OctaveIsThere() { return std::system("command -v octave-cli >/dev/null 2>&1") == 0; }

// A folder of its own, removed at the end.
class Folder {
 public:
  Folder() : path_(::testing::TempDir() + "quorvel_octave_XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) ADD_FAILURE() << "cannot create " << path_;
  }
  ~Folder() {
    for (const std::string& name : names_) std::remove(name.c_str());
    rmdir(path_.c_str());
  }
  std::string operator/(const char* name) {
    names_.push_back(path_ + "/" + name);
    return names_.back();
  }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
  std::vector<std::string> names_;
};

double Value(Random& random) {
  switch (random.Below(8)) {
    case 0: return std::numeric_limits<double>::denorm_min();
    case 1: return -std::numeric_limits<double>::max();
    case 2: return std::numeric_limits<double>::min() * random.Uniform();
    case 3: return random.Uniform() * 1e+300;
    case 4: return -1.0 / 3.0;
    default: return random.Uniform();
  }
}

void FillWith(SingleArrayMatrix& a, Random& random) {
  for (unsigned k = 0; k < a.StoredCount(); ++k) a.data()[k] = random.Chance(6) ? -0.0 : Value(random);
}

// Reads what the script wrote: for each matrix its sizes and its elements by rows.
std::vector<Model> ReadBack(const std::string& path) {
  std::vector<Model> all;
  std::FILE* file = std::fopen(path.c_str(), "rb");
  double size[2];
  while (file != nullptr && std::fread(size, sizeof(double), 2, file) == 2) {
    Model m = Zeros(static_cast<unsigned>(size[0]), static_cast<unsigned>(size[1]));
    for (auto& row : m) {
      if (std::fread(row.data(), sizeof(double), row.size(), file) != row.size()) ADD_FAILURE() << "too short";
    }
    all.push_back(m);
  }
  if (file != nullptr) std::fclose(file);
  return all;
}

// Not for the digest: this test runs on some machines only.
void ExpectBits(const Model& expected, const Model& got) {
  ASSERT_EQ(expected.size(), got.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    ASSERT_EQ(expected[i].size(), got[i].size());
    EXPECT_TRUE(SameBits(expected[i].data(), got[i].data(), got[i].size())) << "row " << i;
  }
}

TEST(Octave, ReadsEveryKindBitForBit) {
  if (!kHost) GTEST_SKIP() << "runs on the host only";
  if (!OctaveIsThere()) GTEST_SKIP() << "octave-cli is not installed (Debian package octave): nothing is compared";
  Random random(5);
  RegularMatrix r(4, 3);
  SymmetricMatrix s(4);
  UpperTriangularMatrix u(4);
  LowerTriangularMatrix l(3);
  DiagonalMatrix d(3);
  for (SingleArrayMatrix* a : {static_cast<SingleArrayMatrix*>(&r), static_cast<SingleArrayMatrix*>(&s),
                               static_cast<SingleArrayMatrix*>(&u), static_cast<SingleArrayMatrix*>(&l),
                               static_cast<SingleArrayMatrix*>(&d)}) {
    FillWith(*a, random);
  }
  RegularSparseMatrix rs(6, 5), ends(2, 2);
  SymmetricSparseMatrix ss(6), low(5);
  const auto scatter = [&random](SparseMatrix& a, unsigned m, unsigned n) {
    for (unsigned k = 0; k < 9; ++k) {
      const unsigned i = random.Below(m);
      const unsigned j = random.Below(n);
      a.Put(i, j, Value(random));
    }
  };
  scatter(rs, 5, 4);  // neither last row nor last column: a closing triplet
  scatter(ss, 6, 6);
  scatter(low, 4, 4);
  ss.Put(5, 5, 1.0);
  ends = 0.1;

  Folder folder;
  const std::string script = folder / "read.m", output = folder / "out.bin";
  std::FILE* file = std::fopen(script.c_str(), "w");
  ASSERT_NE(file, nullptr);
  std::fputs("f = fopen('out.bin', 'w');\n", file);
  const auto dense = [file](const auto& a) {
    PrintMFile(a, file, "M", "%.17g");
    std::fputs("fwrite(f, size(M), 'double'); fwrite(f, M.', 'double');\n", file);
  };
  dense(r);
  dense(s);
  dense(u);
  dense(l);
  dense(d);
  const double v[] = {0.1, -1e-300, 3.0};
  PrintMFile(v, 3, false, file, "M", "%.17g");
  std::fputs("fwrite(f, size(M), 'double'); fwrite(f, M.', 'double');\n", file);
  unsigned count = 0;
  for (const SparseMatrix* a : {static_cast<const SparseMatrix*>(&rs), static_cast<const SparseMatrix*>(&ss),
                                static_cast<const SparseMatrix*>(&low), static_cast<const SparseMatrix*>(&ends)}) {
    const std::string name = "triplets" + std::to_string(count++) + ".txt";
    PrintMFile(*a, (folder / name.c_str()).c_str(), "", "%.17g");
    std::fprintf(file, "M = full(spconvert(load('%s')));\n", name.c_str());
    std::fputs("fwrite(f, size(M), 'double'); fwrite(f, M.', 'double');\n", file);
  }
  std::fputs("fclose(f);\n", file);
  std::fclose(file);

  const std::string command = "cd '" + folder.path() + "' && octave-cli --no-gui --norc --quiet read.m >octave.log 2>&1";
  const std::string log = folder / "octave.log";
  ASSERT_EQ(std::system(command.c_str()), 0) << "octave says: " << TextOfFile(log);
  const std::vector<Model> read = ReadBack(output);
  ASSERT_EQ(read.size(), 10u);
  ExpectBits(FullOf(std::as_const(r)), read[0]);
  ExpectBits(FullOf(std::as_const(s)), read[1]);
  ExpectBits(FullOf(std::as_const(u)), read[2]);
  ExpectBits(FullOf(std::as_const(l)), read[3]);
  ExpectBits(FullOf(std::as_const(d)), read[4]);
  ExpectBits({{0.1, -1e-300, 3.0}}, read[5]);
  ExpectBits(FullOf(std::as_const(rs)), read[6]);
  ExpectBits(FullOf(std::as_const(ss)), read[7]);
  ExpectBits(FullOf(std::as_const(low)), read[8]);
  ExpectBits(FullOf(std::as_const(ends)), read[9]);
}

}  // namespace
