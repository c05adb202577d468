-- Keyboards, lists and their pictures in scripts.
local check = dofile(arg[0]:match("^(.*/)") .. "Check.lua")
local program = host.new("ZylSProgram")
program:Create(host.null)
program:KGCreate(1)

-- A keyboard: children use its coordinates and keep it alive.
local keyboard = host.keyboard { x = 7, y = 9, height = 30 }
check.equal(host.typeof(keyboard), "GOContainer")
check.equal(table.concat({ keyboard:bounds() }, " "), "0 0 378 30")
check.equal(table.concat({ keyboard:origin() }, " "), "7 9")
program:KGlowKey(0, 64)
program:KGhighKey(0, 65)
program:DrawKeyGroupKB(0, keyboard, host.null)
check.equal(keyboard.refreshes, 1)
local marker = keyboard:child("KBSelector")
check.equal(marker, keyboard:child(0))
check.equal(table.concat({ marker:bounds() }, " "), "184 0 194 30")
check.equal(keyboard:child("nothing"), nil)
for _, name in ipairs { "KBSelector", "KBBKSel", "KBBKSelClip" } do
  check.equal(math.type(keyboard:child(name).fill), "integer")
end
marker.fill = 0xFF123456
check.equal(marker.fill, 0xFF123456 - 2 ^ 32 | 0)
marker.fill = nil
check.equal(marker.fill, nil)
keyboard = nil  -- luacheck: ignore
collectgarbage()
check.equal(marker.name, "KBSelector")

-- An editor is an algorithm with the script method GetList.
local editor = host.editor {
  columns = { { width = 20, 142, 4, 1, 99 }, { 100, 5, 0, 127, title = "Low" },
              { 101, 5, 0, 127 }, { width = 378, 199, 10, 0, 0 }, { 126, 3, 0, 1 } },
}
check.equal(host.typeof(editor), "ROCAlgo")
check.equal(editor.GetList(), editor.list)
program:ListFillKeygroups(editor, true)
check.equal(editor.list:rowCount(), 2)
local cell = editor.list:cell(0, 1)
check.equal(cell.go.text, "64")
check.equal(cell.go.template, "TextTemplate")
check.equal(cell.object, nil)
check.equal(editor.list:cell(1, 0).value, 1)
check.equal(editor.list:cell(0, 4).go.template, "BtOff")
check.equal(editor.list:cell(2, 0), nil)
check.equal(editor.list:cell(0, -1), nil)
program:UpdateKeyboardSelection(64, 1.0, 2.0, 3.0, 4.0, editor)
local drawn = editor.list:cell(0, 3).go
check.equal(drawn:child("KBSelector").fill, 3)
check.equal(drawn:child("KBBKSel").fillChanges, 1)
-- A row can be removed, a text replaced.
editor.list:cell(1, 0).go.text = "second"
editor.list:remove(0)
editor.list:remove(-1)
editor.list:remove(editor.list:rowCount())
check.equal(editor.list:cell(0, 0).go.text, "second")
check.equal(select(2, editor.list:cell(0, 0).go:bounds()), 0)
check.raises("not a text", function() editor.list:cell(0, 3).go.text = "x" end)
check.raises("deleted", function() return cell.value end)
program:ListFillKeygroups(editor)
cell = editor.list:cell(0, 1)
-- Cells of a cleared list are deleted objects.
local go = cell.go
editor.list:clear()
check.raises("deleted", function() return go.text end)
check.raises("deleted", function() return cell.value end)

-- A list that shows a sample outlives the sample, its editor and the program.
program:SampleCreate(0, 1, "wav")
program:ListFillZones(0, editor)
check.equal(editor.list:cell(1, 0).object, program:SampleGet(0, 1))
local list = editor.list
program:ListFillZones(0, editor)
host.delete(program)
check.equal(list:cell(1, 0).object, nil)
editor = nil  -- luacheck: ignore
collectgarbage()
check.equal(list:rowCount(), 4)

-- An error in GetList is raised by the call; a deleted program fills nothing.
program = host.new("ZylSProgram")
program:Create(host.null)
local module = host.algo { GetList = function() error("not now") end }
check.raises("not now", program.ListFillKeygroups, program, module)
module = host.algo {}
module.GetList = function()
  host.delete(program)
  return list
end
program:ListFillKeygroups(module)
check.equal(list:rowCount(), 5)

-- Wrong options are reported.
check.raises('did you mean "rowHeight"', host.editor, { rowheight = 3, columns = {} })
check.raises("columns are missing", host.editor, {})
check.raises("display type: an integer", host.editor, { columns = { { 100, "bar", 0, 0 } } })
check.raises("width: an integer from 0", host.keyboard, { width = -1 })
check.raises("width: an integer from 0", host.keyboard, { width = 1 << 31 })
check.raises("cannot be drawn", host.render, module, "x.png")
check.raises(".png or .svg", host.render, list, "x.gif")
check.raises("scale: a number", host.render, list, "x.png", { scale = 0 })
check.raises("/nowhere/x.png", host.render, list, "/nowhere/x.png")
check.raises("too large", host.render, host.keyboard { width = 100000 }, "x.png")
check.raises('no field "colour"', function() return host.keyboard().colour end)

-- Pictures: equal input gives equal bytes; a failure keeps the old file.
local function bytes(path)
  local file <close> = assert(io.open(path, "rb"))
  return file:read("a")
end
local path = os.tmpname()
os.remove(path)
for _, kind in ipairs { ".png", ".svg" } do
  host.render({ "A heading", host.keyboard(), list }, path .. kind)
  local first = bytes(path .. kind)
  host.render({ "A heading", host.keyboard(), list }, path .. kind)
  assert(bytes(path .. kind) == first, kind)
  host.render({ "A heading", host.keyboard(), list }, path .. kind, { dark = true })
  assert(bytes(path .. kind) ~= first)
  pcall(host.render, host.keyboard { width = 100000 }, path .. kind, { scale = 16 })
  assert(#bytes(path .. kind) > 100)
  os.remove(path .. kind)
end

-- The keys that a picture of this range marks, by the places of their fills: how many, first, last.
local KEY_AT = { [0] = 0, [5] = 2, [10] = 4, [15] = 5, [20] = 7, [25] = 9, [30] = 11,
                 [3.25] = 1, [8.25] = 3, [18.25] = 6, [23.25] = 8, [28.25] = 10 }
local function marked(low, high)
  local keys, marks, prg = host.keyboard(), {}, host.new("ZylSProgram")
  prg:Create(host.null)
  prg:KGlowKey(0, low)
  prg:KGhighKey(0, high)
  prg:DrawKeyGroupKB(0, keys, host.null)
  keys:child("KBSelector").fill, keys:child("KBBKSel").fill = 0xFF0000, 0x00FF00
  host.render(keys, path .. ".svg", { scale = 1 })
  for fill, x in bytes(path .. ".svg"):gmatch('fill:rgb%(([^)]*)[^\n]* d="M ([%d.]+) ') do
    local left = tonumber(x) - 2
    local black = left % 5 ~= 0
    if fill == (black and "0%,100%,0%" or "100%,0%,0%") then
      marks[#marks + 1] = 12 * (left // 35) + KEY_AT[left % 35] | 0
    end
  end
  table.sort(marks)
  return ("%d %d %d"):format(#marks, marks[1], marks[#marks])
end
for _, range in ipairs { { 0, 127 }, { 60, 60 }, { 61, 61 }, { 64, 66 }, { 127, 127 } } do
  local low, high = table.unpack(range)
  check.equal(marked(low, high), ("%d %d %d"):format(high - low + 1, low, high))
end

local function draw(file)
  local picture = host.picture(file, { width = 40, height = 20, scale = 2 })
  picture:rect(0, 0, 10, 10, 0xFF0000)
  picture:line({ { 0, 0 }, { 40, 20 } }, 2, 0x00FF00)
  picture:polygon({ { 20, 0 }, { 40, 0 }, { 40, 10 } }, 0x0000FF)
  picture:text(40, 18, "a<b\1", 8, 0x123456, "end")
  picture:write()
  check.raises("has been written", picture.write, picture)
  return bytes(file)
end
local svg = draw(path .. ".svg")
check.equal(svg, draw(path .. ".svg"))
-- Four characters of 4.8 pixels end at x = 40; the scale doubles everything.
assert(svg:find('x="41.6" y="36" font-size="16" textLength="38.4" fill="#123456">a&lt;b\u{FFFD}</text>',
                1, true), svg)
check.equal(draw(path .. ".png"):sub(2, 4), "PNG")
os.remove(path .. ".svg")
os.remove(path .. ".png")
local picture = host.picture("x.svg")
check.raises(".png or .svg", host.picture, "x.gif")
check.raises("too large", host.picture, "x.png", { width = 32767, height = 32767 })
check.raises("0xRRGGBB", picture.rect, picture, 0, 0, 1, 1, 0x1000000)
check.raises("{ x, y }", picture.line, picture, { { 1 } }, 1, 0)
check.raises("above 0", picture.text, picture, 0, 0, "x", 0, 0)

-- ---- Finalizers that change objects and arguments in the middle of a call ----

-- Runs `again` at every collection.
local function atEveryCollection(again)
  setmetatable({}, { __gc = function() again() atEveryCollection(again) end })
end

local other = host.new("ZylSProgram")
other:Create(host.null)
local swapping = host.editor { columns = { { width = 60, 142, 4, 1, 99 } } }
local swappingList, value = swapping.list, host.var(swapping)
swapping.GetList = function()
  value.value = host.object("Thing")
  return swappingList
end
other:ListFillKeygroups(value)
check.equal(swappingList:rowCount(), 1)

local many, changing = {}, host.var{ 1 }
for i = 1, 200 do many[i] = ("string %d "):format(i):rep(20) end
atEveryCollection(function()
  other:DeleteTempSample()
  changing.value = 5
  swappingList:clear()
end)
for i = 1, 3000 do
  other:CreateTempSample("x" .. i .. ".wav")
  changing.value = many
  check.equal(type(changing.value) ~= "nil", true)
  swapping.GetList = function() return swappingList end
  other:ListFillKeygroups(swapping)
  local first = swappingList:cell(0, 0)
  check.equal(first == nil or host.typeof(first) ~= nil, true)
end
