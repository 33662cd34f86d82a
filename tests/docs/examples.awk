# usage: awk -v page=NAME -v expected=FILE [-v without="lapack eigen"] -f examples.awk PAGE.md > PAGE.cpp
#
# The ```cpp blocks of a page as one C++ function page_NAME(), and what they are to print: the ```text block that follows
# each, or nothing. HTML comments in front of a block, which readers do not see, say more about it:
#
#   <!-- example: given CODE -->        code in front of the block (may run over several lines)
#   <!-- example: after CODE -->        code behind it, for checks: EXPECT(condition)
#   <!-- example: continued -->         the block goes on where the one before ended
#   <!-- example: file scope -->        definitions, seen by the blocks that follow
#   <!-- example: throws 40340 -->      the block ends in this code
#   <!-- example: compiled only -->     the block shows what must not be done
#   <!-- example: needs lapack -->      left out when the word stands in `without`
#
# A block with `int main()` is a whole program. Lines with #include go to the top. Also reads what the filter of the
# manual makes of a header (@code{.cpp} ... @endcode); see headers.given for the code around those examples.

# Whether what the direction "needs" names is not there.
function missing(direction) {
  sub(/^<!-- example: needs /, "", direction)
  sub(/ *-->.*/, "", direction)
  return index(" " without " ", " " direction " ") > 0
}

function flush_block() {
  if (body != "") print "void " name "() {\n" body "}\n"
  body = ""
}

function expect(line) { print line > expected }

function start() {
  if (!continued) {
    flush_block()
    name = "example_" FNR
    names[++count] = name
    flags[count] = only ? "Compiled" : "Run"
  }
  where = page ":" FNR
  if (!only) expect("== " where)
  body = body "  Begin(\"" where "\");\n#line " (FNR + 1) " \"" FILENAME "\"\n" given
}

function finish() {
  gsub(/\n#include[^\n]*/, "", code)
  if (skipped) { }
  else if (code ~ /int main\(/) {
    sub(/int main\(/, "int " name "_main(", code)
    sub(/\}\n$/, "  return 0;\n}\n", code)
    print "#line " first " \"" FILENAME "\"\n" code
    body = body "  " name "_main();\n"
  } else if (file_scope) print "#line " first " \"" FILENAME "\"\n" code
  else body = body code after
  if (throws != "") expect("threw " throws)
  given = after = throws = ""
  continued = file_scope = only = skipped = 0
}

BEGIN {
  print "// Made by tests/docs/examples.awk."
  print "#include \"docs/examples.h\""
  printf "" > expected
}

# First pass over the file: its includes.
FNR == 1 {
  left_out = 0
  while ((getline line < FILENAME) > 0) {
    if (line ~ /^<!-- example: needs /) left_out = missing(line)
    else if (line ~ /^(```|@endcode)$/) left_out = 0
    else if (line ~ /^#include </ && !left_out && !(line in included)) {
      included[line] = 1
      print line
    }
  }
  close(FILENAME)
  id = page
  gsub(/[^A-Za-z0-9]/, "_", id)
  print "namespace examples_" id " {\nusing namespace quorvel::test::docs;\n"
}

in_directive {
  if (sub(/ *-->.*/, "")) in_directive = 0
  if (what == "given") given = given $0 "\n"; else after = after $0 "\n"
  next
}

/^<!-- example: / {
  line = $0
  sub(/^<!-- example: /, "", line)
  ended = sub(/ *-->.*/, "", line)
  what = line
  sub(/ .*/, "", what)
  sub(/^[a-z]+ ?/, "", line)
  if (what == "given") given = given line "\n"
  else if (what == "after") after = after line "\n"
  else if (what == "continued") continued = 1
  else if (what == "file") file_scope = 1
  else if (what == "throws") throws = line
  else if (what == "compiled") only = 1
  else if (what == "needs") skipped = missing($0)
  else { print "#error " FILENAME ":" FNR ": unknown direction " what; exit 1 }
  in_directive = !ended
  next
}

/^(```cpp|@code\{\.cpp\})$/ {
  in_code = 1
  first = FNR + 1
  code = "\n"
  printed = ""
  if (header_given != "") read_given()
  if (!file_scope && !skipped) start()
  if (printed != "") printf "%s", printed > expected
  shown = skipped
  next
}
/^(```|@endcode)/ && in_code { in_code = 0; finish(); pending = 1; next }
in_code { code = code $0 "\n"; next }

/^```text$/ {
  if (!pending) { print "#error " FILENAME ":" FNR ": output of no example"; exit 1 }
  in_output = 1
  next
}
/^```/ && in_output { in_output = pending = 0; next }
in_output { if (!shown) expect($0); next }
/^```/ { in_other = !in_other }

# Code around the examples of a header, from the file headers.given.
function read_given(    line, part) {
  ++example
  while ((getline line < header_given) > 0) {
    if (line ~ /^== /) {
      part = ""
      if (line == "== " page) part = "given"
      if (line == "== " page " " example " after") part = "after"
      if (line == "== " page " " example " prints") part = "prints"
      if (line == "== " page " " example " throws") part = "throws"
    }
    else if (part == "given") given = given line "\n"
    else if (part == "after") after = after line "\n"
    else if (part == "throws") throws = line
    else if (part == "prints") printed = printed line "\n"
  }
  close(header_given)
  given = given "{\n"
  after = after "}\n"
}

END {
  flush_block()
  print "}\n\nvoid page_" id "() {\n  using namespace examples_" id ";"
  for (k = 1; k <= count; ++k) print "  " flags[k] "(" names[k] ");"
  print "}"
}
