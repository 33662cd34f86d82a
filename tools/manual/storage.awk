# One picture: the matrix with the place of each element in the array, and the array below it (see storage.sh).

function rect(x, y, w, h, style) { printf "<rect x=\"%g\" y=\"%g\" width=\"%g\" height=\"%g\" %s/>\n", x, y, w, h, style }
function text(x, y, s, style) { printf "<text x=\"%g\" y=\"%g\" %s>%s</text>\n", x, y, style, s }
function line(x1, y1, x2, y2, style) {
  printf "<path d=\"M%g %g L%g %g\" %s/>\n", x1, y1, x2, y2, style
}
function shade(r) { return colours[r % 4 + 1] }

# Place of (i, j), -1 for an implicit zero; sets run to the stored run (row or column) and mirror.
function place(i, j,    a, b) {
  mirror = 0
  if (kind == "regular") { run = i; return i * n + j }
  if (kind == "diagonal") { run = i; return i == j ? i : -1 }
  if (kind == "upper" && i > j) return -1
  if (kind == "lower" && i < j) return -1
  a = i < j ? i : j
  b = i < j ? j : i
  mirror = kind == "symmetric" && i > j
  run = a
  return b + a * (2 * n - 1 - a) / 2
}

function dense(    i, j, k, x, y, count, label, style) {
  for (i = 0; i < m; ++i) {
    text(left - 14, top + i * cell + 27, i, "class=\"index\"")
    for (j = 0; j < n; ++j) {
      x = left + j * cell
      y = top + i * cell
      if (i == 0) text(x + cell / 2, top - 8, j, "class=\"index\"")
      k = place(i, j)
      style = "stroke=\"#5b6b7b\" fill=\"" (k < 0 ? "#ffffff" : mirror ? "#f4f4f4" : shade(run)) "\""
      if (mirror || k < 0) style = style " stroke-dasharray=\"3 3\""
      rect(x, y, cell, cell, style)
      text(x + cell / 2, y + 27, k < 0 ? "0.0" : k, k < 0 || mirror ? "class=\"pale\"" : "class=\"place\"")
      if (k >= 0 && !mirror) { at[k] = "(" i "," j ")"; of[k] = run; if (k >= count) count = k + 1 }
    }
  }
  y = top + m * cell + 46
  text(left, y - 12, "data()", "class=\"note\"")
  for (k = 0; k < count; ++k) {
    rect(left + k * strip, y, strip, 36, "stroke=\"#5b6b7b\" fill=\"" shade(of[k]) "\"")
    text(left + (k + 0.5) * strip, y + 23, at[k], "class=\"pair\"")
    text(left + (k + 0.5) * strip, y + 50, k, "class=\"index\"")
  }
}

function arrow(x1, y1, x2, y2, colour) {
  line(x1, y1, x2, y2, "stroke=\"" colour "\" stroke-width=\"1.6\" fill=\"none\" marker-end=\"url(#" substr(colour, 2) ")\"")
}
function marker(colour) {
  printf "<marker id=\"%s\" viewBox=\"0 0 10 10\" refX=\"9\" refY=\"5\" markerWidth=\"7\" markerHeight=\"7\" orient=\"auto\">", substr(colour, 2)
  printf "<path d=\"M0 0 L10 5 L0 10 z\" fill=\"%s\"/></marker>\n", colour
}

# The elements of the sparse example on the page, each a record in the list of its row and of its column.
function sparse(    r, c, k, count, rows, cols, values, x, y, last_row, last_col) {
  print "<defs>"
  marker("#2a6f97")
  marker("#b5651d")
  print "</defs>"
  count = split("0 0 1 2 2", rows, " ")
  split("0 2 1 0 2", cols, " ")
  split("4 1 3 2 5", values, " ")
  for (r = 0; r < 3; ++r) {
    rect(left - 8, top + 66 + r * 62, 44, 30, "stroke=\"#2a6f97\" fill=\"#ffffff\"")
    text(left + 14, top + 86 + r * 62, "row " r, "class=\"pair\"")
    last_row[r] = left + 36
  }
  for (c = 0; c < 3; ++c) {
    rect(left + 74 + c * 108, top, 62, 30, "stroke=\"#b5651d\" fill=\"#ffffff\"")
    text(left + 105 + c * 108, top + 20, "col " c, "class=\"pair\"")
    last_col[c] = top + 30
  }
  for (k = 1; k <= count; ++k) {
    r = rows[k]
    c = cols[k]
    x = left + 70 + c * 108
    y = top + 64 + r * 62
    arrow(last_row[r], y + 17, x, y + 17, "#2a6f97")
    arrow(x + 35, last_col[c], x + 35, y, "#b5651d")
    rect(x, y, 70, 34, "rx=\"6\" stroke=\"#5b6b7b\" fill=\"" shade(r) "\"")
    text(x + 35, y + 15, "(" r "," c ")", "class=\"pair\"")
    text(x + 35, y + 29, values[k] ".0", "class=\"value\"")
    last_row[r] = x + 70
    last_col[c] = y + 34
  }
}

BEGIN {
  split("#cfe3f1 #fde2c4 #d5ecd4 #e6d8ef", colours, " ")
  m = kind == "regular" ? 3 : 4
  n = 4
  cell = 44
  strip = 46
  left = 40
  top = 34
  stored = kind == "regular" ? 12 : kind == "diagonal" ? 4 : 10
  width = kind == "sparse" ? 420 : left + stored * strip + 20
  if (width < 240) width = 240
  height = kind == "sparse" ? 276 : top + m * cell + 110
  printf "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" viewBox=\"0 0 %d %d\">\n", width, height, width, height
  print "<style>text { font-family: 'DejaVu Sans', Verdana, sans-serif; text-anchor: middle; fill: #222 }"
  print ".place { font-size: 16px } .pale { font-size: 14px; fill: #aaa } .index { font-size: 12px; fill: #777 }"
  print ".pair { font-size: 13px } .value { font-size: 12px; fill: #555 } .note { font-size: 13px; text-anchor: start; fill: #555 }</style>"
  rect(0, 0, width, height, "fill=\"#ffffff\"")
  if (kind == "sparse") sparse(); else dense()
  print "</svg>"
}
