// Formatted text: matrices with the fields of std::format.
//
// Width, precision, alignment and notation; all inline, and a part of convenience.h.
//
//   using namespace quorvel;
//   std::cout << formatted(P, "10.3f");
//   std::string line = formatted(A + B, "+.2e");    // the result of A + B is consumed
#ifndef QUORVEL_FORMATTED_H
#define QUORVEL_FORMATTED_H

#include <charconv>
#include <cmath>
#include <string>
#include <string_view>
#include <system_error>

#include "quorvel/DiagonalMatrix.h"
#include "quorvel/LowerTriangularMatrix.h"
#include "quorvel/RegularMatrix.h"
#include "quorvel/RegularSparseMatrix.h"
#include "quorvel/SymmetricMatrix.h"
#include "quorvel/SymmetricSparseMatrix.h"
#include "quorvel/UpperTriangularMatrix.h"

namespace quorvel {

namespace convenience {

/// Calls f with the matrix as its concrete kind.
template <class F>
auto visit(const Matrix& a, F f) {
  switch (a.kind()) {
    case Matrix::regular:
      return f(static_cast<const RegularMatrix&>(a));
    case Matrix::symmetric:
      return f(static_cast<const SymmetricMatrix&>(a));
    case Matrix::upper_triangular:
      return f(static_cast<const UpperTriangularMatrix&>(a));
    case Matrix::lower_triangular:
      return f(static_cast<const LowerTriangularMatrix&>(a));
    case Matrix::diagonal:
      return f(static_cast<const DiagonalMatrix&>(a));
    case Matrix::regular_sparse:
      return f(static_cast<const RegularSparseMatrix&>(a));
    default:
      return f(static_cast<const SymmetricSparseMatrix&>(a));
  }
}

[[noreturn]] inline void refuse(int code) {
  abort_set(code);
  throw MatrixException(code);
}

/// Destroys a dispensable matrix at the end of its scope, also when an exception passes.
class Consumed {
 public:
  explicit Consumed(const Matrix& matrix) noexcept : matrix_(matrix) {}
  Consumed(const Consumed&) = delete;
  Consumed& operator=(const Consumed&) = delete;
  ~Consumed() { matrix_.DestroyIfDispensable(); }

 private:
  const Matrix& matrix_;
};

}  // namespace convenience

/// One number as text, as std::format would write it with the same fields:
///
///   [[fill]align][sign][0][width][.precision][type]
///
/// align < left, > right (as without it), ^ centred; sign + always, blank for a place in front of positive numbers;
/// 0 fills with zeros behind the sign; type e E f F g G a A. Without a type: as g when there is a precision, otherwise
/// the shortest text that reads back to the same bits. No locale takes part.
class NumberFormat {
 public:
  /// Throws 40000 for a text that is no such list of fields, or a width or precision above 999.
  explicit NumberFormat(std::string_view fields) {
    const auto is_align = [](char c) { return c == '<' || c == '>' || c == '^'; };
    if (fields.size() > 1 && is_align(fields[1])) {
      fill_ = fields[0];
      align_ = fields[1];
      fields.remove_prefix(2);
    } else if (!fields.empty() && is_align(fields[0])) {
      align_ = fields[0];
      fields.remove_prefix(1);
    }
    if (!fields.empty() && (fields[0] == '+' || fields[0] == '-' || fields[0] == ' ')) {
      sign_ = fields[0];
      fields.remove_prefix(1);
    }
    if (!fields.empty() && fields[0] == '0') {
      zeros_ = align_ == '\0';
      fields.remove_prefix(1);
    }
    width_ = Digits(fields);
    if (!fields.empty() && fields[0] == '.') {
      fields.remove_prefix(1);
      const std::size_t left = fields.size();
      precision_ = static_cast<int>(Digits(fields));
      if (fields.size() == left) convenience::refuse(40000);
    }
    if (!fields.empty()) {
      type_ = fields[0];
      fields.remove_prefix(1);
      if (std::string_view("eEfFgGaA").find(type_) == std::string_view::npos) convenience::refuse(40000);
    }
    if (!fields.empty()) convenience::refuse(40000);
  }

  /// The number as text.
  std::string operator()(double x) const {
    const bool upper = type_ == 'E' || type_ == 'F' || type_ == 'G' || type_ == 'A';
    std::string number = Number(std::fabs(x));
    if (upper) {
      for (char& c : number) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    std::string head;
    if (std::signbit(x)) {
      head = "-";
    } else if (sign_ == '+' || sign_ == ' ') {
      head = std::string(1, sign_);
    }
    const std::size_t length = head.size() + number.size();
    const std::size_t missing = width_ > length ? width_ - length : 0;
    if (zeros_ && std::isfinite(x)) return head + std::string(missing, '0') + number;
    const std::size_t behind = align_ == '<' ? missing : align_ == '^' ? missing - missing / 2 : 0;
    return std::string(missing - behind, fill_) + head + number + std::string(behind, fill_);
  }

 private:
  static std::size_t Digits(std::string_view& text) {
    std::size_t value = 0;
    while (!text.empty() && text[0] >= '0' && text[0] <= '9') {
      value = 10 * value + static_cast<std::size_t>(text[0] - '0');
      if (value > 999) convenience::refuse(40000);
      text.remove_prefix(1);
    }
    return value;
  }

  std::string Number(double x) const {
    char digits[1400];  // 309 before the point, 999 behind it
    char* const end = digits + sizeof digits;
    std::to_chars_result done{};
    if (type_ == '\0' && precision_ < 0) {
      done = std::to_chars(digits, end, x);
    } else if ((type_ == 'a' || type_ == 'A') && precision_ < 0) {
      done = std::to_chars(digits, end, x, std::chars_format::hex);
    } else {
      const std::chars_format notation = type_ == 'e' || type_ == 'E'   ? std::chars_format::scientific
                                         : type_ == 'f' || type_ == 'F' ? std::chars_format::fixed
                                         : type_ == 'a' || type_ == 'A' ? std::chars_format::hex
                                                                        : std::chars_format::general;
      done = std::to_chars(digits, end, x, notation, precision_ < 0 ? 6 : precision_);
    }
    return std::string(digits, done.ptr);
  }

  char fill_ = ' ', align_ = '\0', sign_ = '-', type_ = '\0';
  bool zeros_ = false;
  std::size_t width_ = 0;
  int precision_ = -1;
};

/// All rows and columns of any kind, implicit zeros included: one line per row, a blank between elements, each written
/// by NumberFormat. Consumes a dispensable matrix. Throws 40000 (see NumberFormat) and a pending code.
[[nodiscard]] inline std::string formatted(const Matrix& a, std::string_view fields) {
  const convenience::Consumed end(a);
  const NumberFormat number(fields);
  std::string text;
  convenience::visit(a, [&](const auto& matrix) {
    for (unsigned i = 0; i < matrix.nrows(); ++i) {
      for (unsigned j = 0; j < matrix.ncols(); ++j) {
        if (j != 0) text += ' ';
        text += number(matrix(i, j));
      }
      text += '\n';
    }
  });
  return text;
}

}  // namespace quorvel

#endif
