# Doxygen input filter for the pages (used together with text.awk): they are written for a reader of the repository, too.
#
#   - a heading gets the anchor that other viewers derive from its text, with the page's name in front of it;
#   - links to pages and headings become references, in the list of the start page with the pages below it;
#   - $a + b$ and $$...$$ are formulas; HTML comments (directions for the test of the examples) go.

BEGIN { in_code = 0; in_comment = 0; in_formula = 0 }

FNR == 1 {
  page = FILENAME
  sub(/.*\//, "", page)
  sub(/\.md$/, "", page)
  is_index = page == "index"
}

function slug(s) {
  s = tolower(s)
  gsub(/[^a-z0-9 _-]/, "", s)
  gsub(/ /, "-", s)
  return s
}

# Name of the page that a link leads to, "" when it is none of ours.
function page_id(target) {
  sub(/.*\//, "", target)
  sub(/\.md$/, "", target)
  return "page_" tolower(target)
}

function links(s,    out, label, target, anchor, at) {
  out = ""
  while (match(s, /\[[^]]*\]\([^)]*\)/)) {
    label = substr(s, RSTART, RLENGTH)
    if (RSTART > 1 && substr(s, RSTART - 1, 1) == "!") {
      sub(/\]\(.*\//, "](", label)  # images are found by their names
      out = out substr(s, 1, RSTART - 1) label
      s = substr(s, RSTART + RLENGTH)
      continue
    }
    out = out substr(s, 1, RSTART - 1)
    s = substr(s, RSTART + RLENGTH)
    at = index(label, "](")
    target = substr(label, at + 2, length(label) - at - 2)
    label = substr(label, 2, at - 2)
    if (target ~ /^https?:/) out = out "[" label "](" target ")"
    else if (target ~ /^#/) out = out "@ref page_" tolower(page) "_" substr(target, 2) " \"" label "\""
    else if (target ~ /\.md#/) {
      anchor = target
      sub(/.*#/, "", anchor)
      sub(/#.*/, "", target)
      out = out "@ref " page_id(target) "_" anchor " \"" label "\""
    }
    else if (target ~ /include\/quorvel\/[A-Za-z_]*\.h$/) {
      sub(/.*\//, "", target)
      sub(/\.h$/, "", target)
      out = out "@ref " target " \"" label "\""
    }
    else if (target ~ /\.md$/ && target !~ /(README|CONTRIBUTING|CHANGELOG)/)
      out = out (is_index && $0 ~ /^- / ? "@subpage " : "@ref ") page_id(target) " \"" label "\""
    else out = out label  # a file of the repository
  }
  return out s
}

function formulas(s,    parts, n, k, out) {
  n = split(s, parts, /\$/)
  if (n % 2 == 0) return s
  out = parts[1]
  for (k = 2; k <= n; ++k) out = out "\\f$" parts[k]
  return out
}

# Text outside `code`.
function prose(s,    parts, n, k, out) {
  s = links(s)
  n = split(s, parts, "`")
  if (n % 2 == 0) return formulas(s)
  out = formulas(parts[1])
  for (k = 2; k <= n; ++k) out = out "`" (k % 2 ? formulas(parts[k]) : parts[k])
  return out
}

/^```/ {
  if (!in_code) sub(/^```(text|sh|gdb|cmake)$/, "```{.unparsed}")
  in_code = !in_code
  print
  next
}
in_code { print; next }

/^<!--/ { in_comment = 1 }
in_comment { if (/-->/) in_comment = 0; print ""; next }

/^\$\$$/ { print in_formula ? "\\f]" : "\\f["; in_formula = !in_formula; next }
in_formula { print; next }

/^#+ / {
  heading = $0
  sub(/^#+ /, "", heading)
  if (/^# /) print $0 " {#" (is_index ? "mainpage" : page_id(page)) "}"
  else {
    anchor = slug(heading)
    gsub(/`/, "", anchor)
    if (anchored[anchor]++) anchor = anchor "-" (anchored[anchor] - 1)  # as other viewers number them
    print prose($0) " {#page_" tolower(page) "_" anchor "}"
  }
  next
}
{ print prose($0) }
