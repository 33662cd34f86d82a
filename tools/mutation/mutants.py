"""Where a source file can be changed by one token, and into what.

A site is (line, column, length, replacement, kind). The code of this library is formatted, which this reading relies on:
binary operators stand between blanks, template brackets and declarators do not.
"""
import re

BINARY = [
    # kind, token, replacements
    ("comparison", "<", ["<=", ">="]),
    ("comparison", "<=", ["<", ">"]),
    ("comparison", ">", [">=", "<="]),
    ("comparison", ">=", [">", "<"]),
    ("comparison", "==", ["!="]),
    ("comparison", "!=", ["=="]),
    ("logic", "&&", ["||"]),
    ("logic", "||", ["&&"]),
    ("sign", "+", ["-"]),
    ("sign", "-", ["+"]),
    ("sign", "+=", ["-="]),
    ("sign", "-=", ["+="]),
    ("sign", "*", ["/"]),
    ("sign", "/", ["*"]),
    ("sign", "*=", ["/="]),
    ("sign", "/=", ["*="]),
]
INTEGER = re.compile(r"(?<![\w.\"'])(0x[0-9A-Fa-f]+|\d+)(u?)(?![\w.\"'])")
FLOATING = re.compile(r"(?<![\w.])(\d+\.\d*(?:e[+-]?\d+)?|\d+e[+-]?\d+)(?![\w.])")
STEP = re.compile(r"\+\+|--")
UNARY_MINUS = re.compile(r"(?<=[(,=?:] )-(?=[\w(*])|(?<=\()-(?=[\w(*])|(?<=return )-(?=[\w(*])")
NOT = re.compile(r"(?<![\w)])!(?=[\w(])")
WORD = re.compile(r"\b(true|false)\b")
# Left alone, since no test of results could tell: sizes of blocks and of scratch on the stack (beyond it scratch comes
# from the heap), and what is reserved or fetched ahead. The counted instructions and the benchmarks hold these.
TUNING = re.compile(r"constexpr .*\b(ahead|block|direct_limit|long_panels|many_rows|near_lines|on_stack|panel_width|row_block|"
                    r"small_sums|stack|stack_lines|term_block|wide_strip) = .*|"
                    r"WorkArea<.*?> |\breserve\(.*|__builtin_prefetch\(.*|\bask_for\(.*")


def blank_out(text):
    """The text with comments, strings and preprocessor lines replaced by blanks, of the same length."""
    def blanks(match):
        return re.sub(r"[^\n]", " ", match.group())
    text = re.sub(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'', blanks, text, flags=re.S)
    return re.sub(r"^[ \t]*#(?:[^\n]*\\\n)*[^\n]*", blanks, text, flags=re.M)


def sites(text):
    code = blank_out(text)
    for number, line in enumerate(code.split("\n")):
        stripped = line.strip()
        line = TUNING.sub(lambda match: " " * len(match.group()), line)
        # Checked by the compiler, or no code of its own.
        if re.match(r"(static_assert|template\b|using\b|friend\b|namespace\b|\[\[)", stripped):
            continue
        if "= default" in line or "= delete" in line or re.search(r"\boperator *[^\w\s(]", line):
            continue
        for kind, token, replacements in BINARY:
            for match in re.finditer(r"(?<= )" + re.escape(token) + r"(?= )", line):
                for new in replacements:
                    yield number, match.start(), len(token), new, kind
        for match in STEP.finditer(line):
            yield number, match.start(), 2, "--" if match.group() == "++" else "++", "sign"
        for match in UNARY_MINUS.finditer(line):
            yield number, match.start(), 1, "", "sign"
        for match in NOT.finditer(line):
            yield number, match.start(), 1, "", "logic"
        for match in WORD.finditer(line):
            yield number, match.start(), len(match.group()), "false" if match.group() == "true" else "true", "constant"
        for match in INTEGER.finditer(line):
            value = int(match.group(1), 0)
            kind = "bound" if stripped.startswith(("for (", "while (")) else "constant"
            yield number, match.start(1), len(match.group(1)), str(value + 1), kind
            if value == 1:
                yield number, match.start(1), len(match.group(1)), "0", kind
        for match in FLOATING.finditer(line):
            value = float(match.group(1))
            new = {0.0: "1.0", 1.0: "2.0"}.get(value, "(%s * 1.5)" % match.group(1))
            yield number, match.start(), len(match.group()), new, "constant"


def apply(text, site):
    number, column, length, new, _ = site
    lines = text.split("\n")
    line = lines[number]
    lines[number] = line[:column] + new + line[column + length:]
    return "\n".join(lines)
