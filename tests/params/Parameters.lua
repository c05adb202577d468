-- Compares every parameter with a golden table: its number, its field method, its type, the texts of
-- its values, and the values of typed texts.
--
--   zyl run Parameters.lua parameters.txt           fails if the table differs
--   zyl run Parameters.lua --write parameters.txt   rewrites the table
--
-- Uses script calls only. If a parameter has the same texts as an earlier one, the table refers to
-- that one.

local levels = {
  { name = "program", first = 0, last = 99, call = "PRG", at = {} },
  { name = "keygroup", first = 100, last = 199, call = "KG", at = { 1 } },
  { name = "zone", first = 200, last = 299, call = "Zone", at = { 1, 2 } },
  { name = "sample", first = 300, last = 315, call = "Sample", at = { 0, 0 } },
}

local typedTexts = { "", " ", "x", "zz", "0", "1", "3", " 3x", "9", "12", "16", "20 bit", "-5", "300",
  "o", "of", "oFf", "on", "no", "omni", "ONE", "q", "h", "n", "norm", "ho", "sq", "TRI", "pre", "!b",
  "lfo2", "external1", "Env 2", "str", "str/", "track", "co", "co/", "pi", "pi/", "re", "fo", "ro",
  "loop >", "to", "as", "hp4", "b", "LP2 r", "left", "left c", "ri", "mono", "surround" }

-- ---- The program under test ----

local prg, listener, received

-- Two keygroups, and a sample of 100 positions in keygroup 0, zone 0.
local function fresh(channels)
  prg = host.new("ZylSProgram")
  prg:Create(host.null)
  prg:KGCreate(1)
  prg:MaxIndyOut(8)
  prg:SampleCreate(0, 0, "wav", channels)
  local sample = prg:SampleGet(0, 0)
  prg:SampleSize(sample, 100)
  prg:SampleLoopCount(sample, 1)
  prg:SampleEnd(sample, 99)
  prg:SampleLoopEnd(sample, 0, 99)
  prg:SampleFilePath(sample, "folder/tone.wav")
  listener = host.algo { OnProgramParameterChanged = function(_, number) received[number] = true end }
  prg:Register(listener)
  received = {}
end

local function invoke(level, form, number, ...)
  local arguments = table.move(level.at, 1, #level.at, 2, { prg })
  arguments[#arguments + 1] = number
  for i = 1, select("#", ...) do arguments[#arguments + 1] = (select(i, ...)) end
  return prg[level.call .. form](table.unpack(arguments))
end
local function value(level, number, new) return invoke(level, "IntValue", number, new) end
local function text(level, number, new) return invoke(level, "StringValue", number, new) end

local function clean()
  prg:Dirty(false)
  prg:SampleDirty(0, 0, false)
  received = {}
end

-- ---- The methods by name ----

local byName = {}  -- level name -> list of { name, read(new) }
do
  local notFields = {}
  for name in ([[PRGIntValue PRGStringValue PRGtmMidiChannel KGDelete KGCreate KGMove KGSort
      KGFindByKey KGSelect KGIntValue KGStringValue ZoneIntValue ZoneStringValue ZoneSampleSet
      ZoneSampleExists ZoneSamplePath Zonename]]):gmatch("%S+") do notFields[name] = true end
  local function add(level, name, ...)
    local at = { ... }
    local function read(new)
      local arguments = { prg }
      for i, index in ipairs(at) do arguments[i + 1] = index == "sample" and prg:SampleGet(0, 0) or index end
      arguments[#arguments + 1] = new
      return prg[name](table.unpack(arguments))
    end
    byName[level] = byName[level] or {}
    table.insert(byName[level], { name = name, read = read })
  end
  for _, name in ipairs(host.methods()) do
    if not notFields[name] then
      if name == "PRGmasterDetune" then add("program", name, 1)
      elseif name:find("^PRG") or name:find("^TolmoPRG") then add("program", name)
      elseif name:find("^KG") or name:find("^TolmoKG") then add("keygroup", name, 1)
      elseif name:find("^Zone") then add("zone", name, 1, 2) end
    end
  end
  for name in ([[Samplekey SampleplaybackType SampleholdLoopTuneOff Sampletune SampleSampleRate
      SampleStart SampleEnd SampleBits SampleFilePath]]):gmatch("%S+") do
    add("sample", name, "sample")
  end
  for name in ("SampleLoopStart SampleLoopEnd SampleLoopFineLen"):gmatch("%S+") do
    add("sample", name, "sample", 0)
  end
  add("sample", "SampleChannel", 0, 0)
  add("sample", "SampleFileName", 0, 0)
end

-- The name of the field method that reads the values stored by `write(a)` and `write(b)`.
local function methodOf(level, write, a, b)
  local before = {}
  write(a)
  for i, method in ipairs(byName[level.name]) do before[i] = method.read() end
  write(b)
  for i, method in ipairs(byName[level.name]) do
    local now = method.read()
    local isFirstDetune = method.name == "PRGmasterDetune" and now == ("two"):byte(2)
    if before[i] ~= now and (now == b or isFirstDetune) then return method.name end
  end
end

-- ---- Texts ----

local types = { [128] = "u8", [-128] = "i8", [32896] = "u16", [-32640] = "i16", [98432] = "i32" }
local kProbe = 0x18080

local function quoted(given) return '"' .. given:gsub('[\\"]', "\\%0") .. '"' end

-- Appends a heading and its items, wrapped into lines.
local function wrapped(lines, heading, items, separator)
  local line = heading
  for i, item in ipairs(items) do
    local piece = (i == 1 and " " or separator .. " ") .. item
    if #line + #piece > 98 and i > 1 then
      lines[#lines + 1] = line .. separator
      line, piece = "      ", item
    end
    line = line .. piece
  end
  lines[#lines + 1] = line
end

-- The texts of a parameter's values; consecutive equal texts are merged.
local function shownTexts(level, number, lines, values)
  local texts, numbers = {}, {}
  for _, written in ipairs(values) do
    value(level, number, written)
    local now = value(level, number)
    if not texts[now] then numbers[#numbers + 1] = now end
    texts[now] = text(level, number)
  end
  table.sort(numbers)
  local items, i = {}, 1
  while i <= #numbers do
    local last = i
    while last < #numbers and texts[numbers[last + 1]] == texts[numbers[i]] do last = last + 1 end
    local range = last > i and numbers[i] .. ".." .. numbers[last] or numbers[i]
    items[#items + 1] = range .. " " .. quoted(texts[numbers[i]])
    i = last + 1
  end
  wrapped(lines, "    shows", items, ",")
  return texts
end

-- The value that each typed text stores and the text that replaces it, grouped by result. Each is
-- tried with two initial values, to distinguish a store from no effect. An unreplaced text is shown
-- only if it is a name.
local function takenTexts(level, number, lines, typed, names, read, reset)
  local outcomes, groups, isName = {}, {}, {}
  for _, name in pairs(names) do isName[name] = name ~= "" end
  for _, given in ipairs(typed) do
    local stored, marks, replaced, numbers = {}, false, nil, {}
    for start = 1, 2 do
      reset(start)
      clean()
      local new = host.var(given)
      text(level, number, new)
      stored[start], replaced = read(), new.value
      marks = prg:Dirty() or marks
      for one in pairs(received) do numbers[one] = true end
    end
    reset(1)
    local first = read()
    reset(2)
    local nothing = stored[1] == first and stored[2] == read()
    local outcome = nothing and "nothing" or
        type(stored[1]) == "string" and quoted(stored[1]) or tostring(stored[1])
    if replaced ~= given or isName[given] and not nothing then outcome = outcome .. " " .. quoted(replaced) end
    if marks then outcome = outcome .. " dirty" end
    local sorted = {}
    for one in pairs(numbers) do sorted[#sorted + 1] = one end
    table.sort(sorted)
    for _, one in ipairs(sorted) do
      outcome = outcome .. " notifies " .. (one == number and "itself" or one)
    end
    if not groups[outcome] then
      groups[outcome] = {}
      outcomes[#outcomes + 1] = outcome
    end
    table.insert(groups[outcome], quoted(given))
  end
  for _, outcome in ipairs(outcomes) do
    wrapped(lines, "    " .. outcome .. " <-", groups[outcome], "")
  end
  return #outcomes == 1 and outcomes[1] == "nothing"
end

-- The texts to type: the common ones and the names of the parameter.
local function typedFor(texts)
  local typed, known = {}, {}
  local function add(given)
    if not known[given] then typed[#typed + 1] = given end
    known[given] = true
  end
  for _, given in ipairs(typedTexts) do add(given) end
  local names = {}
  for _, name in pairs(texts) do
    if name:find("^[!%a]") then names[#names + 1] = name end
  end
  table.sort(names)
  for _, name in ipairs(names) do add(name) end
  return typed
end

local starts = { [306] = { 0, 1 }, [313] = { 16, 24 }, [314] = { 2, 3 } }
local shown = { -1 }
for v = 0, 25 do shown[#shown + 1] = v end
table.move({ 31, 32, 99, 127, 128, 255 }, 1, 6, #shown + 1, shown)

-- The lines about a parameter's texts; nil if it neither shows nor accepts any.
local function textLines(level, number)
  local lines = {}
  local start = starts[number] or { 1, 2 }
  local function read() return value(level, number) end
  local function reset(which) value(level, number, start[which]) end
  local texts = shownTexts(level, number, lines, shown)
  local hasText = false
  for _, one in pairs(texts) do hasText = hasText or one ~= "" end
  local ignored = takenTexts(level, number, lines, typedFor(texts), texts, read, reset)
  return (hasText or not ignored) and lines or nil
end

local function textFieldLines(level, number)
  local lines = {}
  local function read() return text(level, number) end
  local function reset(which) text(level, number, which == 1 and "one" or "two") end
  takenTexts(level, number, lines, { "", "ab", "twelve chars", "twelve chars and more" }, {},
             read, reset)
  return lines
end

-- ---- The table ----

local function describe(level, number, lines, claimed, blocks)
  fresh(2)
  local isPitchData, isMemory = number == 315, number >= 90 and number <= 95
  local write = function(new) value(level, number, new) end
  local a, b = 3, 5
  if number == 306 then a, b = 0, 1 end
  if isPitchData or isMemory then write = function() end end
  write(a)
  local first = value(level, number)
  write(b)
  local stores = value(level, number) ~= first
  local row = level.name .. " " .. number
  if stores then
    local name = methodOf(level, write, a, b) or "-"
    claimed[name] = true
    write(kProbe)
    local kept = value(level, number)
    row = row .. " " .. name .. " " .. (types[kept] or kProbe .. " becomes " .. kept)
    local texts = textLines(level, number)
    local block = texts and table.concat(texts, "\n")
    if block and blocks[block] then
      row = row .. " with the texts of " .. blocks[block]
    elseif block then
      row = row .. " with texts\n" .. block
      blocks[block] = number
    end
  elseif isMemory then
    row = row .. " - memory"
  else
    local before = text(level, number)
    text(level, number, "one")
    text(level, number, "two")
    local takes = text(level, number) ~= before
    if first == -1 and before == "" and not takes then return false end
    if takes then
      write = function(new) text(level, number, new) end
      local name = methodOf(level, write, "one", "two") or "-"
      claimed[name] = true
      row = row .. " " .. name .. " text\n" .. table.concat(textFieldLines(level, number), "\n")
    else
      row = row .. " - reads " .. first .. " " .. quoted(before)
    end
  end
  lines[#lines + 1] = row
  return true
end

local function describeLevel(level, lines, blocks)
  local claimed, unnamed = {}, {}
  for number = level.first, level.last do
    if not describe(level, number, lines, claimed, blocks) then unnamed[#unnamed + 1] = number end
  end
  fresh(2)
  for _, method in ipairs(byName[level.name]) do
    local read = method.read
    if not claimed[method.name] and math.type(read()) == "integer" then
      read(kProbe)
      lines[#lines + 1] = level.name .. " - " .. method.name .. " " .. (types[read()] or read())
    end
  end
  wrapped(lines, level.name .. " numbers that name nothing:", unnamed, "")
end

local function describeChannels(channels, lines)
  fresh(channels)
  local level, number = levels[4], 306
  local names = { "m", "l", "left", "Left center", "c", "ri", "Right", "right center", "su", "x", "" }
  local all = {}
  for c = 0, channels - 1 do all[#all + 1] = c end
  lines[#lines + 1] = "a file with " .. channels .. " channels"
  local texts = shownTexts(level, number, lines, all)
  local function read() return value(level, number) end
  local function reset(which) value(level, number, which == 1 and 0 or channels - 1) end
  takenTexts(level, number, lines, names, texts, read, reset)
end

-- Typed outputs of a program object with that number of outputs.
local function describeOutputs(outputs, lines)
  fresh(2)
  prg:MaxIndyOut(outputs)
  local level, number = levels[1], 10
  lines[#lines + 1] = outputs .. " individual outputs"
  local function read() return value(level, number) end
  local function reset(which) value(level, number, which) end
  takenTexts(level, number, lines, { "", "1", "3", "0", "off" }, {}, read, reset)
end

local lines, blocks = {}, {}
for _, level in ipairs(levels) do describeLevel(level, lines, blocks) end
for _, outputs in ipairs { 1, 0, -5 } do describeOutputs(outputs, lines) end
for _, channels in ipairs { 1, 2, 3, 4, 5, 6, 7 } do describeChannels(channels, lines) end
local found = table.concat(lines, "\n") .. "\n"

local path, read = arg[#arg], arg[1] == "--write" and "wb" or "rb"
local file <close> = assert(io.open(path, read))
if read == "wb" then
  assert(file:write(found))
  return
end
local expected = file:read("a")
if found == expected then return end
local function printMissing(mark, from, among)
  for line in from:gmatch("[^\n]+") do
    if not among:find(line .. "\n", 1, true) then print(mark .. line) end
  end
end
printMissing("- ", expected, found)
printMissing("+ ", found, expected)
error("The parameters differ from " .. path .. " (- the table, + found). If they should, run\n" ..
      "build/bin/zyl run tests/params/Parameters.lua --write tests/params/parameters.txt\n" ..
      "and review what changed.", 0)
