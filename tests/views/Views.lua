-- Keyboards and lists of the editor: what each shows, and where.
local check = dofile(arg[0]:match("^(.*/)") .. "../zyl/Check.lua")
local kFixedWidth, kInt32Min = 0x10000, -0x80000000
local prg = host.new("ZylSProgram")

local function make(keygroups)
  prg:Create(host.null)
  for k = 1, keygroups - 1 do prg:KGCreate(k) end
end
local function setRange(k, low, high)
  prg:KGlowKey(k, low)
  prg:KGhighKey(k, high)
end
-- An editor with rows of 20 pixels; columns are { number, type, minimum, maximum, width =, style = }.
local function editorOf(...) return host.editor { rowHeight = 20, columns = { ... } } end
local function go(editor, row, column) return editor.list:cell(row, column).go end
-- Left, top, width and height in absolute coordinates.
local function place(object)
  local left, top, right, bottom = object:bounds()
  local x, y = object:origin()
  return ("%d %d %d %d"):format(left + x, top + y, right - left, bottom - top)
end

-- The marker of a range covers its white keys, a clipped one its black keys.
make(1)
local board = host.keyboard { x = 10, y = 30 }
for i, row in ipairs {
  { 60, 60, "184 30 5 24", "187 30 0 24" }, { 61, 61, "189 30 0 24", "187 30 5 24" },
  { 64, 65, "194 30 10 24", "197 30 5 24" }, { 0, 127, "9 30 375 24", "12 30 370 24" },
  { 127, 127, "379 30 5 24", "382 30 0 24" }, { 62, 66, "189 30 15 24", "192 30 15 24" },
  { 70, 58, "214 30 0 24", "212 30 0 24" }, { 255, 255, "754 30 0 24", "752 30 5 24" },
} do
  setRange(0, row[1], row[2])
  check.equal(select("#", prg:DrawKeyGroupKB(0, board, host.null)), 0)
  check.equal(place(board:child("KBSelector")), row[3], row[1])
  check.equal(place(board:child("KBBKSelClip")), row[4], row[1])
  check.equal(place(board:child("KBBKSel")), "10 30 378 22")
  check.equal(board.refreshes, i)
end
prg:DrawKeyGroupKB(-1, board, host.null)
prg:DrawKeyGroupKB(0, host.null, host.null)
check.equal(board.refreshes, 8, "nothing is drawn without a keygroup or a keyboard")

-- The selected key colours the keyboards of the rows whose range has it.
make(3)
for k, range in pairs { [0] = { 10, 20 }, { 21, 30 }, { 20, 40 } } do
  setRange(k, table.unpack(range))
end
local boards = editorOf({ 199, 4, 0, 0, width = 10 }, { 100, 4, 0, 0 }, { 101, 4, 0, 0 },
                        { 199, 10, 0, 0 })
prg:ListFillKeygroups(boards)
local function child(row, name) return go(boards, row, 3):child(name) end
local function select_(key) prg:UpdateKeyboardSelection(key, 255.9, 2.0, 3.0, 4.0, boards) end
-- The markers' and backgrounds' colours and how often they changed, row by row.
local initial = {}
local function state()
  local texts = {}
  for row = 0, 2 do
    for _, name in ipairs { "KBSelector", "KBBKSel" } do
      local one = child(row, name)
      initial[name] = initial[name] or one.fill
      check.equal(one.fillChanges, one.refreshes)
      local fill = one.fill == initial[name] and "-" or one.fill
      texts[#texts + 1] = ("%sx%d"):format(fill, one.fillChanges)
    end
  end
  return table.concat(texts, " ")
end
check.equal(state(), "-x0 -x0 -x0 -x0 -x0 -x0")
for _, step in ipairs {
  { 20, "3x1 4x1 255x1 2x1 3x1 4x1" }, { 20, "3x1 4x1 255x1 2x1 3x1 4x1" },
  { 21, "255x2 2x2 3x2 4x2 3x1 4x1" }, { -5, "255x2 2x2 255x3 2x3 255x2 2x2" },
} do
  select_(step[1])
  check.equal(state(), step[2], step[1])
end
for _, case in ipairs { { -1.9, -1 }, { 4294967295.0, -1 }, { 2147483648.0, kInt32Min },
                        { 1e300, 0 }, { 0 / 0, 0 } } do
  prg:UpdateKeyboardSelection(20, 1.0, 1.0, case[1], 7.0, boards)
  check.equal(child(0, "KBSelector").fill, case[2], case[1])
  select_(99)
end
boards.list:cell(0, 0).value = -1
boards.list:cell(1, 0).value = 3
select_(20)
check.equal(child(0, "KBSelector").fill, 255, "rows without a keygroup are skipped")
check.equal(child(2, "KBSelector").fill, 3)

-- ---- Columns ----

local function showTune(editor, value, keyAsValue)
  editor.list:clear()
  prg:KGtune(0, value)
  prg:ListFillKeygroups(editor, keyAsValue or false)
end
for _, row in ipairs {  -- type, minimum, maximum, value, text
  { 4, 0, 0, -7, "-7" }, { 9, 0, 0, 200, "200" }, { 4, 0, 127, 200, "127" }, { 4, 5, 127, -9, "5" },
  { 5, 0, 127, 60, "C3" }, { 5, 0, 127, 60, "60", true }, { 5, 0, 127, 61, "C#3" },
  { 5, 0, 0, 0, "C-2" }, { 5, 0, 0, 127, "G8" }, { 5, 0, 0, -1, "B-3" }, { 5, 0, 0, -11, "C#-3" },
  { 5, 0, 0, -12, "C-3" }, { 5, 0, 0, -13, "B-4" }, { 6, 0, 0, 384, "1.50" },
  { 6, 0, 0, -1, "-0.00" }, { 7, 0, 0, 5, "" }, { 8, 0, 0, 5, "" }, { 77, 0, 0, 5, "" },
} do
  local editor = editorOf { 102, row[1], row[2], row[3], width = 30 }
  showTune(editor, row[4], row[6])
  check.equal(go(editor, 0, 0).text, row[5], row[1] .. " " .. row[4])
  check.equal(go(editor, 0, 0).template, "TextTemplate")
  check.equal(place(go(editor, 1, 0)), "0 20 30 10")
end
for _, row in ipairs {  -- width, minimum, maximum, value, width of the bar, place of the marker
  { 64, 0, 100, 50, 30, 30 }, { 64, 0, 100, 99, 59, 59 }, { 64, 0, 100, 400, 60, 60 },
  { 64, -50, 50, -50, 0, 0 }, { 64, 7, 7, 90, 0, 0 }, { 52, 0, 49, 1, 0, 0 },
  { 53, 0, 49, 1, 1, 1 }, { 3, 0, 100, 100, 0, -1 }, { 64, 100, 0, 5000, 60, 60 },
  { 64, kInt32Min, 0x7FFFFFFF, 0, 30, 30 },
} do
  local width, minimum, maximum, value, bar, marker = table.unpack(row)
  local editor = editorOf({ 199, 4, 0, 0, width = 10 }, { 102, 1, minimum, maximum, width = width },
                          { 102, 2, minimum, maximum, width = width })
  showTune(editor, value)
  check.equal(place(go(editor, 0, 1)), ("10 0 %d 18"):format(width))
  check.equal(place(go(editor, 0, 1):child(0)), ("12 2 %d 14"):format(bar), value)
  check.equal(place(go(editor, 0, 2):child(0)), ("%d 2 2 14"):format(12 + width + marker), value)
end
local switches = editorOf({ 102, 3, 0, 0, width = 20 }, { 199, 10, 0, 0, width = 378 },
                          { 102, 10, 0, 0, width = 378 })
setRange(1, 64, 65)
for value, name in pairs { [0] = "BtOff", [-3] = "BtOn" } do
  showTune(switches, value)
  check.equal(go(switches, 0, 0).template, name)
end
check.equal(place(go(switches, 1, 1):child("KBSelector")), "204 20 10 18", "in its cell")
check.equal(place(go(switches, 0, 2):child("KBSelector")):match("^%d+ %d+ (%d+)"), "0")
check.equal(go(switches, 0, 2).refreshes, 0, "a value that is not a keygroup marks nothing")

-- Keygroups are appended, with their index in the first cell; a negative width moves nothing.
local appended = editorOf({ 142, 4, 0, 0, width = -1, style = kFixedWidth },
                          { 100, 4, 0, 0, style = kFixedWidth })
for _ = 1, 2 do prg:ListFillKeygroups(appended) end
check.equal(appended.list:rowCount(), 6)
for row = 0, 5 do
  check.equal(appended.list:cell(row, 0).value, row % 3)
  check.equal(go(appended, row, 0).text, tostring(row % 3 + 1))
end
check.equal(place(go(appended, 0, 1)):match("^%d+"), "0")

-- Zones refill the same four rows.
prg:SampleCreate(1, 2, "wav")
prg:ZonelowVel(1, 0, 33)
local zones = editorOf({ 204, 4, 0, 127, width = 50, style = kFixedWidth },
                       { 313, 7, 0, 0, width = 50 }, { 210, 7, 0, 0, width = 50, style = kFixedWidth })
prg:ListFillZones(-1, zones)
check.equal(zones.list:rowCount(), 0)
prg:ListFillZones(0, zones)
check.equal(zones.list:cell(2, 0).object, nil)
for _ = 1, 2 do
  prg:ListFillZones(1, zones)
  check.equal(zones.list:rowCount(), 4)
  for zone = 0, 3 do check.equal(zones.list:cell(zone, 0).value, zone) end
  check.equal(go(zones, 0, 0).text, "33")
  check.equal(go(zones, 2, 1).text, prg:SampleStringValue(1, 2, 313))
  check.equal(go(zones, 2, 2).text, prg:ZoneStringValue(1, 2, 210))
  check.equal(zones.list:cell(2, 0).object, prg:SampleGet(1, 2))
  check.equal(zones.list:cell(1, 0).object, nil)
end
check.equal(place(go(zones, 2, 2)):match("(%d+) %d+$"), "50")
check.equal(place(go(zones, 2, 1)):match("(%d+) %d+$") ~= "50", true, "its text's width")

-- A module may have no list, and GetList may change the program.
local module = host.algo {}
prg:ListFillKeygroups(module)
for _, result in ipairs { host.var(5), host.var(prg), host.var(host.null) } do
  module.GetList = function() return result.value end
  prg:ListFillKeygroups(module)
  prg:ListFillZones(0, module)
  prg:UpdateKeyboardSelection(1, 1.0, 1.0, 1.0, 1.0, module)
end
zones.list:clear()
module.GetList = function()
  prg:Create(host.null)
  return zones.list
end
prg:ListFillZones(2, module)
check.equal(zones.list:rowCount(), 0)
make(3)
prg:ListFillKeygroups(module)
check.equal(zones.list:rowCount(), 1)
