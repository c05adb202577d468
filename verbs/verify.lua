-- zyl verify: compares two programs or two samples field by field.
local cli = require "cli"
local disk = require "disk"
local fields = require "fields"
local folders = require "folders"
local json = require "json"
local notes = require "notes"
local programs = require "programs"
local progress = require "progress"
local samples = require "samples"
local settings = require "samplesettings"
local text = require "text"
local values = require "values"

local options, words = cli.parse {
  verb = "verify", notes = true, repeats = true, folders = "programs", mixed = true, operands = "A B",
  about = "Compares two programs, or two samples, field by field, and prints the differences. Sample\n"
       .. "paths are relative to the program's folder, so that a folder can be compared with its copy. Of two\n"
       .. "folders, the programs and samples with the same names are compared.",
  options = { { name = "json", help = "print a JSON object with the differences; of folders, a list, one\nobject per name" } },
  resultStatus = true, status = "0 the same, 1 different, 2 wrong command line, 4 a file cannot be read",
}
if #words ~= 2 then cli.usage("give two files or two folders, A and B") end
local isFolder = disk.isFolder(words[1])
if isFolder ~= disk.isFolder(words[2]) then cli.usage("one is a folder and the other is not") end

local ORGAN = "TOLM"   -- the chunk of a program's organ extension
-- For the current pair of files:
local files, compared, differences, failure = words, 0, {}, nil

local function fail(path, reason)
  failure = failure or path .. ": " .. reason
  cli.failed(path, reason)
end

local function compare(field, keygroup, zone, a, b)
  compared = compared + 1
  if a == b then return end
  local function shown(v) return v ~= nil and field.text and field.text(v) or values.text(field, v) end
  differences[#differences + 1] = { field = field, keygroup = keygroup, zone = zone,
                                    shown(a), shown(b), a = a, b = b }
end

-- A value that is not a field of programs; `text` formats it.
local function plain(name, text_) return { name = name, text = text_, family = "PRG" } end

-- Programs --------------------------------------------------------------------------------------

-- A sample's path, relative to the program's folder if it is inside it.
local function fromFolder(path, program)
  local start = (host.absolutePath(program) or program):match("^.*/") or ""
  local whole = path ~= "" and host.absolutePath(path) or path
  return whole:sub(1, #start) == start and whole:sub(#start + 1) or path
end

-- Whether the program file has an organ extension. Methods that read its fields would create one.
local function hasOrgan(path)
  local found = false
  programs.chunks(path, function(id)
    found = id == ORGAN
    return found
  end)
  return found
end

local function compareOrgan(a, b)
  local has = { hasOrgan(files[1]), hasOrgan(files[2]) }
  compare(plain("organ extension"), 0, 0, has[1], has[2])
  for _, method in ipairs(has[1] and has[2] and host.methods() or {}) do
    if method:match("^TolmoPRG") then
      compare(plain(method), 0, 0, a[method](a), b[method](b))
    elseif method:match("^TolmoKG") then
      for k = 0, math.min(a:PRGkeyGroups(), b:PRGkeyGroups()) - 1 do
        compare({ name = method, family = "KG" }, k, 0, a[method](a, k), b[method](b, k))
      end
    end
  end
end

local function comparePrograms(a, b)
  compare(plain("keygroups"), 0, 0, a:PRGkeyGroups(), b:PRGkeyGroups())
  fields.walk(math.min(a:PRGkeyGroups(), b:PRGkeyGroups()), function(field, k, z)
    local mine, other = fields.read(a, field, k, z), fields.read(b, field, k, z)
    if field.method == "ZoneSamplePath" then
      mine, other = fromFolder(mine, files[1]), fromFolder(other, files[2])
    end
    compare(field, k, z, mine, other)
  end)
  local channels = { programs.channels(files[1]), programs.channels(files[2]) }
  for k = 0, math.min(a:PRGkeyGroups(), b:PRGkeyGroups()) - 1 do
    for z = 0, programs.ZONES - 1 do
      local place = k * programs.ZONES + z
      if channels[1][place] and channels[2][place] then
        compare({ name = "SampleChannel", family = "Zone" }, k, z, channels[1][place], channels[2][place])
      end
    end
  end
  compareOrgan(a, b)
end

-- Opens both files, compares them, and closes them whatever happens.
local function withBoth(open, body, close)
  local opened = {}
  local _, reason = cli.try(function()
    for i, path in ipairs(files) do
      local one, why = open(path)
      if not one then return fail(path, why) end
      opened[i] = one
    end
    body(opened[1], opened[2])
  end)
  for _, one in ipairs(opened) do close(one) end
  if reason then fail(files[1], reason) end
end

-- Samples ---------------------------------------------------------------------------------------

-- The first frame from `low` to `high` in which two byte strings of values differ.
local function firstDifference(a, b, width, low, high)
  while low < high do
    local middle = (low + high) // 2
    if a:sub(low * width + 1, (middle + 1) * width) == b:sub(low * width + 1, (middle + 1) * width) then
      low = middle + 1
    else
      high = middle
    end
  end
  return low
end

local scratch = host.new("ZylSProgram")

local function compareSound(open, facts)
  local a, b = facts[1], facts[2]
  if a.bits ~= b.bits or a.frames ~= b.frames or a.channels ~= b.channels then return end
  for c = 0, a.channels - 1 do
    local mine, _, width = samples.values(scratch, open[1], c)
    local other = samples.values(scratch, open[2], c)
    local from = mine ~= other and firstDifference(mine, other, width, 0, a.frames - 1)
    local says = from and ("differs from frame %d on"):format(from) or "sound"
    compare(plain("channel " .. c + 1), 0, 0, "sound", says)
  end
end

local SAMPLE_TEXTS = { key = notes.label, tune = settings.tune, playback = settings.playback }

local function openSample(path) return samples.open(scratch, path) end
local function closeSample(sample) samples.close(scratch, sample) end

local function compareSamples(a, b)
  local facts = { samples.facts(scratch, a), samples.facts(scratch, b) }
  for _, name in ipairs { "channels", "bits", "rate", "frames", "name", "key", "tune", "playback",
                          "first", "last" } do
    compare(plain(name, SAMPLE_TEXTS[name]), 0, 0, facts[1][name], facts[2][name])
  end
  compare(plain("loops"), 0, 0, #facts[1].loops, #facts[2].loops)
  for i = 1, math.min(#facts[1].loops, #facts[2].loops) do
    for _, name in ipairs { "first", "last", "fraction", "times" } do
      compare(plain(("loop %d %s"):format(i, name)), 0, 0, facts[1].loops[i][name],
              facts[2].loops[i][name])
    end
  end
  compareSound({ a, b }, facts)
end

local function comparePair()
  local kinds = {}
  for i, path in ipairs(files) do
    local is, reason = programs.isProgram(path)
    if is == nil then return fail(path, reason) end
    kinds[i] = is
  end
  if kinds[1] ~= kinds[2] then
    local path = kinds[1] and files[2] or files[1]
    local isSample = openSample(path)
    if isSample then closeSample(isSample) end
    if isSample and not isFolder then cli.usage("one is a program and the other a sample") end
    return fail(path, isSample and "one is a program and the other a sample"
                      or "neither a program nor a readable sound file")
  end
  if kinds[1] then
    withBoth(programs.open, comparePrograms, host.delete)
  else
    withBoth(openSample, compareSamples, closeSample)
  end
end

local function record()
  local list = {}
  for i, row in ipairs(differences) do
    list[i] = json.object("field", row.field.name,
      "keygroup", row.field.family ~= "PRG" and row.keygroup + 1 or nil,
      "zone", row.field.family == "Zone" and row.zone + 1 or nil, "a", row.a, "b", row.b)
  end
  local same
  if not failure then same = #differences == 0 end
  return json.object("a", files[1], "b", files[2], "error", failure, "same", same,
                     "compared", compared, "differences", json.list(list))
end

local function shown()
  if failure then return "" end
  if #differences == 0 then return ("the same: %d values compared\n"):format(compared) end
  local rows = fields.rows(differences)
  table.insert(rows, 1, { "field", "", "A", "B" })
  return text.columns(rows, { true, true, true, true })
         .. ("%d of %d values differ\n"):format(#differences, compared)
end

-- The names of the programs and sound files of both folders, sorted, and whether A and B have them.
local function namesOf()
  local names, has = {}, { {}, {} }
  for i, folder in ipairs(words) do
    for _, kind in ipairs { "programs", "sounds" } do
      local found, inside = folders.files(folder, kind, options.recursive)
      for n, path in ipairs(found) do
        local name = inside[n]
        if not has[1][name] and not has[2][name] then names[#names + 1] = name end
        has[i][name] = path
      end
    end
  end
  table.sort(names)
  return names, has
end

local function compareFolders()
  local names, has = namesOf()
  local printer, same, differ = cli.printer(options.json), 0, 0
  if #names == 0 then cli.failed(words[1], "no program and no sound file in these folders") end
  for i, name in ipairs(names) do
    progress.show((i - 1) / #names, name)
    files, compared, differences, failure = { has[1][name], has[2][name] }, 0, {}, nil
    if has[1][name] and has[2][name] then
      comparePair()
    else
      compare(plain("file"), 0, 0, has[1][name], has[2][name])
    end
    if not failure and #differences == 0 then same = same + 1 else differ = differ + 1 end
    local only = not has[2][name] and "only in A" or not has[1][name] and "only in B"
    local label = text.printable(name) .. (only and ": " .. only .. "\n" or ":\n")
    printer.result(i, options.json and record() or not options.json and #differences > 0
                      and label .. (only and "" or shown()) or nil)
  end
  printer.close()
  if not options.json and not options.quiet then
    io.write(("%d of %d files are the same\n"):format(same, #names))
  end
  return differ
end

local differ
if isFolder then
  differ = compareFolders()
else
  comparePair()
  differ = #differences
  if options.json then
    io.write(json.encode(record()), "\n")
  elseif differ > 0 or not options.quiet then
    io.write(shown())
  end
end
cli.finish()
if differ > 0 then os.exit(1, true) end
