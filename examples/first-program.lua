-- Builds a multisampled program from a folder of recordings, sets a filter on some of its
-- keygroups, writes it, reads it back and lists it.
--
--   zyl run examples/first-program.lua [FOLDER [OUTPUT]]
--
-- FOLDER contains WAVE, AIFF or FLAC files. Without it, the recordings installed by "./dev setup"
-- are used, or generated tones if those are missing.

local INSTALLED = "/usr/share/sonic-pi/samples"
local KEYS_EACH = 5      -- keys per recording
local LOWEST_KEY = 36
local MOST = 12          -- maximum number of recordings

-- The sound files of a folder, sorted by name.
local function recordings(folder, pattern)
  local files = {}
  local quoted = "'" .. folder:gsub("'", "'\\''") .. "'"
  local listing = io.popen("ls " .. quoted .. " 2>/dev/null")
  for name in listing:lines() do
    local extension = name:lower():match("%.(%w+)$")
    local sound = extension == "wav" or extension == "aif" or extension == "aiff"
                  or extension == "aifc" or extension == "flac"
    if sound and name:match(pattern or "") and #files < MOST then
      files[#files + 1] = folder .. "/" .. name
    end
  end
  listing:close()
  return files
end

-- Fills a zone with a tone of one second; the tones are a third of an octave apart.
local function tone(program, keygroup)
  local rate = math.tointeger(host.sampleRate // 1)
  program:SampleCreate(keygroup, 0, "wav")
  local sample = program:SampleGet(keygroup, 0)
  program:SampleSize(sample, rate)
  local hertz = 110 * 2 ^ (keygroup / 3)
  for i = 0, rate - 1 do
    program:SampleValue(sample, i, math.floor(20000 * math.sin(2 * math.pi * hertz * i / rate)))
  end
  program:SampleEnd(sample, program:SampleGetSize(sample) - 1)
  program:SampleName(sample, ("tone %d Hz"):format(math.floor(hertz)))
end

local folder = arg[1] ~= "" and arg[1] or nil
local output = arg[2] or "first-program.zprg"
local files = recordings(folder or INSTALLED, not folder and "^bass_" or nil)
if folder and #files == 0 then error("no WAVE, AIFF or FLAC file in " .. folder, 0) end
if #files == 0 then print("The recordings are not installed: using generated tones.") end

-- The program: one keygroup per recording, side by side on the keyboard.
local program = host.new("ZylSProgram")
program:Create(host.null)
program:PRGname("First Light")
local count = #files > 0 and #files or 6
for k = 0, count - 1 do
  if k > 0 then program:KGCreate(k) end
  if files[k + 1] then program:ZoneSampleSet(k, 0, files[k + 1]) else tone(program, k) end
  program:KGlowKey(k, LOWEST_KEY + KEYS_EACH * k)
  program:KGhighKey(k, LOWEST_KEY + KEYS_EACH * (k + 1) - 1)
end

-- Select every other keygroup and set the filter of the selected ones.
for k = 0, count - 1, 2 do program:KGSelect(k, true) end
program:KGfilterFreq(-2, 80)

assert(program:Write(output), "the program could not be written")

-- Read it back into a second object: every parameter must be the same.
local copy = host.new("ZylSProgram")
assert(copy:Read(output), "the program could not be read")
local notParameters = "KGSelect KGMove KGSort KGFindByKey KGCreate KGDelete ZoneSampleSet "
                      .. "PRGmasterDetune PRGIntValue PRGStringValue KGIntValue KGStringValue "
                      .. "ZoneIntValue ZoneStringValue "
local compared = 0
for _, name in ipairs(host.methods()) do
  local family = name:match("^PRG") or name:match("^KG") or name:match("^Zone")
  if family and not notParameters:find(name .. " ", 1, true) then
    for k = 0, family == "PRG" and 0 or count - 1 do
      local where = family == "PRG" and {} or family == "KG" and { k } or { k, 0 }
      local before = program[name](program, table.unpack(where))
      local after = copy[name](copy, table.unpack(where))
      assert(before == after, ("%s: %s is read back as %s"):format(name, before, after))
      compared = compared + 1
    end
  end
end

print(("%s: %d keygroups in %s"):format(copy:PRGname(), copy:PRGkeyGroups(), output))
print("keys      filter  frames    sample")
for k = 0, copy:PRGkeyGroups() - 1 do
  local sample = copy:SampleGet(k, 0)
  print(("%3d-%-3d   %4d%s  %8d   %s"):format(copy:KGlowKey(k), copy:KGhighKey(k),
        copy:KGfilterFreq(k), copy:KGSelect(k) and " *" or "  ", copy:SampleGetSize(sample),
        copy:Zonename(k, 0)))
end
print(("read back unchanged: %d values compared (* = selected keygroups)"):format(compared))
