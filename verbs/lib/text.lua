-- Text output: columns, and printable file names.
local text = {}

-- Replaces control characters in a file name, which could move the cursor.
function text.printable(name) return (name:gsub("%c", "?")) end

function text.width(s) return utf8.len(s) or #s end

-- Shortens a text to `width` characters: an ellipsis and its end.
function text.fit(s, width)
  s = text.printable(s)
  local length = utf8.len(s)
  if not length then return #s <= width and s or "…" .. s:sub(#s - width + 2) end
  if length <= width then return s end
  return "…" .. s:sub(utf8.offset(s, length - width + 2))
end

function text.left(s, width) return s .. (" "):rep(width - text.width(s)) end
function text.right(s, width) return (" "):rep(width - text.width(s)) .. s end

-- Formats rows of texts as aligned columns. `left` is the set of left-aligned columns.
function text.columns(rows, left, indent)
  local widths, lines = {}, {}
  for _, row in ipairs(rows) do
    for c, cell in ipairs(row) do widths[c] = math.max(widths[c] or 0, text.width(cell)) end
  end
  for r, row in ipairs(rows) do
    local cells = {}
    for c, cell in ipairs(row) do
      cells[c] = left[c] and text.left(cell, widths[c]) or text.right(cell, widths[c])
    end
    lines[r] = (indent or "") .. table.concat(cells, "  "):gsub("%s+$", "") .. "\n"
  end
  return table.concat(lines)
end

-- The width of the widest printable file name.
function text.widest(names)
  local widest = 0
  for _, name in ipairs(names) do
    widest = math.max(widest, text.width(text.printable(name)))
  end
  return widest
end

return text
