# Comment text to Doxygen's Markdown. The headers are written to be read as they are; what would be taken for markup in
# them is escaped here, outside `code`.

function escape_plain(s,    out, i, c, before, after) {
  out = ""
  for (i = 1; i <= length(s); ++i) {
    c = substr(s, i, 1)
    before = i == 1 ? " " : substr(s, i - 1, 1)
    after = substr(s, i + 1, 1)
    if (c == "<") c = "&lt;"
    else if (c == ">") c = "&gt;"
    else if (c == "&") c = "&amp;"
    else if (c == "\"") c = "&quot;"
    else if (c ~ /[#@%\\]/) c = "\\" c
    else if (c == "*" && !((before ~ /[ (]/ && after ~ /[A-Za-z]/) || (before ~ /[A-Za-z]/ && after !~ /[A-Za-z0-9(]/))) c = "\\*"
    out = out c
  }
  return out
}

# One line of text; what stands between backticks stays as it is.
function escape(s,    parts, n, k, out) {
  n = split(s, parts, "`")
  if (n % 2 == 0) return escape_plain(s)  # an odd number of backticks: none of them means code
  out = ""
  for (k = 1; k <= n; ++k) out = out (k > 1 ? "`" : "") (k % 2 ? escape_plain(parts[k]) : parts[k])
  if (out ~ /^[+=]/) out = "\\" out
  return out
}

# Lines text[1..n] without their comment marks. What is indented by two blanks or more, outside a list, is a table, a
# formula or an example, and keeps its form.
function markdown(text, n,    k, j, line, list, out, block, is_code) {
  list = 0
  out = ""
  for (k = 1; k <= n; ++k) {
    line = text[k]
    if (line == "") { list = 0; out = out "\n"; continue }
    if (line ~ /^- /) list = 1
    if (line ~ /^  / && !list) {
      block = ""
      is_code = 0
      for (j = k; j <= n && (text[j] ~ /^  / || (text[j] == "" && text[j + 1] ~ /^  /)); ++j) {
        block = block text[j] "\n"
        if (text[j] ~ /[A-Za-z0-9)}"];( *\/\/.*)?$/) is_code = 1
      }
      out = out "\n" (is_code ? "@code{.cpp}" : "@verbatim") "\n" block (is_code ? "@endcode" : "@endverbatim") "\n"
      if (text[j] != "") out = out "\n"
      k = j - 1
      continue
    }
    out = out (line ~ /^- / ? "- " escape(substr(line, 3)) : escape(line)) "\n"
  }
  return out
}
