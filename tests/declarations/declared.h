// Comparing the declarations of a header with a list of overloads.

#ifndef QUORVEL_TESTS_DECLARATIONS_DECLARED_H
#define QUORVEL_TESTS_DECLARATIONS_DECLARED_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

namespace quorvel::test {

// One overload: its signature without parameter names, and its address, which makes the linker look for it.
struct Overload {
  std::string signature;
  void (*address)();
};

// The overload of NAME with exactly this signature; anything else does not compile. TEXT is how it reads in the header.
#define OVERLOAD(R, NAME, PARAMETERS)                                       \
  ::quorvel::test::Overload {                                               \
    #R " " #NAME #PARAMETERS, reinterpret_cast<void (*)()>(static_cast<R(*) PARAMETERS>(&NAME)) \
  }

inline std::string WithoutBlanks(std::string text) {
  text.erase(std::remove_if(text.begin(), text.end(), [](unsigned char c) { return std::isspace(c) != 0; }), text.end());
  return text;
}

// The exported functions of a header, blanks removed: "RegularMatrix&Plus(RegularMatrix&,constRegularMatrix&,...)".
inline std::vector<std::string> DeclaredIn(const std::string& header) {
  std::ifstream file(QUORVEL_INCLUDE_DIR "/quorvel/" + header);
  EXPECT_TRUE(file.is_open()) << header;
  std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  text = std::regex_replace(text, std::regex("//[^\n]*"), "");
  const std::regex parameter_name("([&]|unsigned)\\s*\\b[A-Za-z]+\\s*(?=[,)])");
  std::vector<std::string> found;
  const std::string mark = "QUORVEL_API";
  for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at)) {
    at += mark.size();
    const std::string declaration = text.substr(at, text.find(';', at) - at);
    found.push_back(WithoutBlanks(std::regex_replace(declaration, parameter_name, "$1")));
  }
  std::sort(found.begin(), found.end());
  return found;
}

inline void ExpectDeclarations(std::vector<std::string> declared, const std::vector<Overload>& overloads) {
  std::vector<std::string> expected;
  for (const Overload& overload : overloads) {
    expected.push_back(WithoutBlanks(overload.signature));
    EXPECT_NE(overload.address, nullptr);
  }
  std::sort(expected.begin(), expected.end());
  std::sort(declared.begin(), declared.end());
  std::vector<std::string> missing, surplus;
  std::set_difference(expected.begin(), expected.end(), declared.begin(), declared.end(), std::back_inserter(missing));
  std::set_difference(declared.begin(), declared.end(), expected.begin(), expected.end(), std::back_inserter(surplus));
  EXPECT_EQ(missing, std::vector<std::string>()) << "in the tables, not in the header";
  EXPECT_EQ(surplus, std::vector<std::string>()) << "in the header, not in the tables";
}

}  // namespace quorvel::test

#endif
