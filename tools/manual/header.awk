# Doxygen input filter for the public headers (used together with text.awk).
#
# The headers carry one comment per family of overloads. For Doxygen
#   - the comment before the include guard describes the file and, where there are functions, a topic of that name;
#   - a comment above declarations describes all of them, up to the next blank line; at namespace scope also what follows
#     that, up to the next comment, as long as it has a name of the family or one that its text mentions: they become
#     one named group with that text;
#   - a comment above another comment begins a section: a topic of its own at namespace scope, nothing in a class;
#   - protected and private members, namespaces of helpers and explicit instantiations are left out.
# Every declaration of a family gets an empty brief description of its own, which the style sheet hides. Whatever is in
# no family stays undocumented, so that Doxygen warns of it.

{ source[NR] = $0 }

function is_comment(s) { return s ~ /^ *\/\/\// || s ~ /^ *\/\// }
function is_doc(s) { return s ~ /^ *\/\/\// }
function is_ruler(s) { return s ~ /^ *\/\/ ?---/ }

# Reads the comment that begins at line i into text[1..count]; returns the line behind it.
function read_comment(i,    doc, s) {
  count = 0
  doc = is_doc(source[i])
  while (i <= NR && is_comment(source[i]) && is_doc(source[i]) == doc) {
    s = source[i]
    if (!is_ruler(s)) {
      sub(/^ *\/\/\/? ?/, "", s)
      sub(/ +$/, "", s)
      text[++count] = s
    }
    ++i
    if (is_ruler(source[i - 1]) && is_comment(source[i])) doc = is_doc(source[i])
  }
  return i
}

# The first sentence of text[] as a title; what follows it stays in text[].
function take_title(    title, k, at) {
  title = text[1]
  at = index(title, ". ")
  if (at) {
    text[1] = substr(title, at + 2)
    return substr(title, 1, at - 1)
  }
  if (title ~ /\.$/ || count == 1 || text[2] == "") {
    for (k = 1; k < count; ++k) text[k] = text[k + 1]
    --count
    sub(/\.$/, "", title)
    return title
  }
  return ""
}

function name_of(s,    at) {
  sub(/ *\/\/.*/, "", s)
  if (match(s, /operator *\(\)/)) return "operator()"
  if (match(s, /operator *[^ (A-Za-z]+/) || match(s, /operator [a-z]+/)) return substr(s, RSTART, RLENGTH)
  if (s ~ /^ *enum /) { sub(/^ *enum (class )?/, "", s); sub(/[ :{].*/, "", s); return s }
  at = index(s, "(")
  if (at) s = substr(s, 1, at - 1); else sub(/ *[=;].*/, "", s)
  sub(/ +$/, "", s)
  sub(/.*[ *&]/, "", s)
  return s
}

function braces(s,    opened, closed) {
  sub(/\/\/.*/, "", s)
  opened = gsub(/\{/, "{", s)
  closed = gsub(/\}/, "}", s)
  return opened - closed
}

# The line behind the statement that begins at line i.
function statement_end(i,    depth) {
  depth = 0
  for (; i <= NR; ++i) {
    depth += braces(source[i])
    if (depth <= 0 && source[i] ~ /[;}] *(\/\/.*)?$/) return i + 1
  }
  return i
}

# Prints, but not in the first pass, which counts the names of families.
function emit(s) { if (pass == 2) print s }

# The kinds among the parameters of the family, "(UpperTriangularMatrix, double)".
function kinds(    k, s, type, seen, n, list, scalar) {
  for (k = 1; k <= members; ++k) {
    s = member_text[k]
    sub(/^[^(]*operator *\(\)/, "", s)
    sub(/^[^(]*\(/, "", s)
    sub(/\)[^)]*$/, "", s)
    while (match(s, /[A-Za-z]*Matrix|double|size_type|unsigned/)) {
      type = substr(s, RSTART, RLENGTH)
      s = substr(s, RSTART + RLENGTH)
      if (type in seen) continue
      seen[type] = 1
      if (type !~ /Matrix/) scalar = scalar ", " type
      else { ++n; list = list ", " type }
    }
  }
  if (n > 4) list = ", any kind"
  return "(" substr(list scalar, 3) ")"
}

function family(    k, j, name, seen, n, title, invisible) {
  title = ""
  n = 0
  for (k = 1; k <= members; ++k) {
    name = name_of(member_text[k])
    if (name in seen) continue
    seen[name] = 1
    if (++n <= 8) title = title (n > 1 ? ", " : "") name
    else if (n == 9) title = title ", ..."
  }
  # Where several families have the same name, their parameters tell them apart; two groups of one title in one scope
  # would be merged, so an invisible mark keeps the rest apart.
  if (pass == 1) ++named[scope, title]
  else if (named[scope, title] > 1) title = title " " kinds()
  if (pass == 2) for (n = titled[title]++; n > 0; --n) invisible = invisible "\342\200\213"
  emit("/** @name " escape(title) invisible)
  emit(family_text)
  emit("*/\n/** @{ */")
  for (k = 1; k <= members; ++k) {
    if (member_text[k] !~ /\/\/\/</ || member_end[k] > member_first[k] + 1) emit("/** @brief <span class=\"family\"></span> */")
    for (j = member_first[k]; j < member_end[k]; ++j) emit(trailing(source[j]))
  }
  emit("/** @} */")
  members = 0
  family_open = 0
}

function is_class(i) {
  return source[i] ~ /^(class|struct) .*\{ *$/ || (source[i] ~ /^template </ && source[i + 1] ~ /^(class|struct) .*\{ *$/)
}

function flush_family() { if (members > 0) family(); family_open = 0 }

# A description behind a member is shown at length.
function trailing(s) { sub(/\/\/\/< /, "///< @details ", s); return s }

function statement(i,    end, k, all, name) {
  end = statement_end(i)
  if (source[i] ~ /^ *extern template/) return end
  all = ""
  for (k = i; k < end; ++k) all = all " " source[k]
  if (family_open && members > 0 && source[i - 1] == "") {
    name = name_of(all)
    for (k = 1; k <= members && name_of(member_text[k]) != name; ++k) {}
    if (k > members && !index(family_text, name)) flush_family()
  }
  if (family_open) {
    member_first[++members] = i
    member_end[members] = end
    member_text[members] = all
  } else {
    for (k = i; k < end; ++k) emit(trailing(source[k]))
  }
  return end
}

function end_section() { if (section_open) emit("/** @} */"); section_open = 0 }

# A section whose text would be lost: an unknown reference makes Doxygen say so.
function complain() { emit("/** @file\n@ref section_without_a_title_or_place */") }

function begin_topic() {
  if (topic_open || topic == "") return
  if (topic == "sum_operators") emit("/** @addtogroup sums\n@{ */")  # declared apart, described together
  else emit("/** @defgroup " topic " " topic_title "\n" topic_text "\n@{ */")
  topic_open = 1
}

function begin_section(title) {
  end_section()
  begin_topic()
  if (title == "") { complain(); return }
  sub(/: .*/, "", title)
  emit("/** @defgroup " file_id "_" (++sections) " " title (count > 0 ? "\n" markdown(text, count) : "") "\n@{ */")
  section_open = 1
}

END {
  for (pass = 1; pass <= 2; ++pass) read_header()
}

function read_header(    i, j, k, s) {
  topic_open = section_open = sections = 0
  scope = ""
  file = FILENAME
  sub(/.*\//, "", file)
  topic = file
  sub(/\.h$/, "", topic)
  file_id = topic
  i = 1
  if (is_comment(source[1])) {
    i = read_comment(1)
    title = take_title()
    head = markdown(text, count)
  }
  # Headers of classes have no topic: what they begin with belongs to the class.
  for (k = i; k <= NR; ++k) if (source[k] ~ /^class .*\{/) topic = ""
  if (topic ~ /^(quorvel|functions|export|forward)$/) topic = ""
  if (title != "") emit("/** @file\n@brief " escape(title) ".\n\n" (topic == "" ? head : "See @ref " (topic == "sum_operators" ? "sums" : topic) ".\n") "*/")
  if (topic != "") sub(/: .*/, "", title)
  sub("^" file_id ": ", "", title)
  topic_title = title
  topic_text = head
  level = 0  # of classes; in_class while above 0
  hidden = 0
  while (i <= NR) {
    s = source[i]
    if (s ~ /^ *$/) {
      if (level > 0) flush_family()
      ++i
    } else if (s ~ /^ *#/) {
      flush_family()
      if (s ~ /^#endif/ && i >= NR - 1) { end_section(); if (topic_open) emit("/** @} */") }
      emit(s)
      ++i
    } else if (is_comment(s)) {
      flush_family()
      i = read_comment(i)
      j = i
      while (j <= NR && source[j] ~ /^ *$/) ++j
      if (is_comment(source[j])) {
        if (level == 0 && count == 0) end_section()
        else if (level == 0) begin_section(take_title())
        else if (count > 1) complain()
        continue
      }
      if (level > 0 && j > i) { if (count > 1) complain(); continue }
      if (is_class(j)) {
        lead = source[j] ~ ("[ :]" file_id "( |$)") && topic == "" ? "@brief " escape(title) ".\n\n" head "\n" : ""
        emit("/**\n" lead markdown(text, count) "*/")
        continue
      }
      if (source[j] ~ /^(namespace|#)/) continue
      if (source[j] ~ /^(class|struct) [A-Za-z:]*;/) continue
      begin_topic()
      family_text = markdown(text, count)
      family_open = 1
      i = j
    } else if (s ~ /^namespace .*(detail|convenience) \{/) {
      flush_family()
      while (source[i] !~ /^\}(  \/\/ namespace .*)?$/ || (s ~ /convenience/ && source[i] !~ /convenience$/)) ++i
      ++i
    } else if (s ~ /^namespace .*\{/) {
      emit(s)
      ++i
    } else if (s ~ /^\}/) {
      flush_family()
      if (hidden) emit("/** @endcond */")
      hidden = 0
      if (level > 0) --level
      scope = ""
      emit(s)
      ++i
    } else if (is_class(i)) {
      flush_family()
      scope = source[s ~ /^template/ ? i + 1 : i]
      if (s ~ /^template/) emit(source[i++])
      emit(source[i++])
      ++level
    } else if (s ~ /^ (public|protected|private):/) {
      flush_family()
      emit(s)
      if (s ~ /public/) { if (hidden) emit("/** @endcond */"); hidden = 0 }
      else { if (!hidden) emit("/** @cond */"); hidden = 1 }
      ++i
    } else {
      i = statement(i)
    }
  }
}
