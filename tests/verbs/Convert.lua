-- zyl convert on files whose result is known. Runs in an empty folder: zyl run Convert.lua ZYL
local audio = require "zyl.audio"
local zyl = arg[1]
local program = host.new("ZylSProgram")

local function write(path, bytes)
  local file = assert(io.open(path, "wb"))
  file:write(bytes)
  file:close()
end

local function read(path)
  local file = assert(io.open(path, "rb"))
  local bytes = file:read("a")
  file:close()
  return bytes
end

local function chunk(order, id, content)
  return id .. string.pack(order .. "I4", #content) .. content .. ("\0"):rep(#content % 2)
end

-- A WAVE file with the values of function(frame, channel), full scale 1.
local function wave(path, it)
  local channels, bits, frames = it.channels or 1, it.bits or 16, it.frames or 44100
  local values, scale = {}, 2.0 ^ (bits - 1) - 1
  for i = 0, frames - 1 do
    for c = 0, channels - 1 do
      values[#values + 1] = string.pack("<i" .. bits // 8, math.floor(it.value(i, c) * scale + 0.5))
    end
  end
  local format = string.pack("<I2I2I4I4I2I2", 1, channels, 44100, 44100 * channels * bits // 8, channels * bits // 8, bits)
  local body = "WAVE" .. chunk("<", "fmt ", format) .. (it.chunks or "") .. chunk("<", "data", table.concat(values))
  write(path, "RIFF" .. string.pack("<I4", #body) .. body)
end

-- Exit status and output of zyl convert.
local function convert(arguments)
  local pipe = io.popen(("%s convert %s 2>&1"):format(zyl, arguments))
  local text = pipe:read("a")
  local _, _, status = pipe:close()
  return status, text
end

local function converts(arguments, part)
  local status, text = convert(arguments)
  assert(status == 0 and text:find(part or "", 1, true), arguments .. ": " .. status .. " " .. text)
end

-- A file's rate, bits, channels and frames, its sound, and its sample for further methods.
local function open(path)
  local sample = assert(program:ReadTempSample(path, -1), path)
  local sound = audio.sound(program, sample)
  return sound, sample, ("%d Hz %d bits %d ch %d frames"):format(program:SampleSampleRate(sample),
         program:SampleBits(sample), sound:channels(), sound:frames())
end

local function is(path, form)
  local sound, sample, shown = open(path)
  program:DeleteTempSample(sample)
  assert(shown == form, path .. ": " .. shown .. " instead of " .. form)
  return sound
end

local function near(a, b, tolerance, label)
  assert(math.abs(a - b) <= tolerance, ("%s: %.6g instead of %.6g"):format(label or "value", a, b))
end

local function tone(hertz, level) return function(i) return level * math.sin(2 * math.pi * hertz * i / 44100) end end

-- Rate: the sound, the loops, the range that is played, cue points and regions keep their times.
local cues = chunk("<", "cue ", string.pack("<I4 I4I4c4I4I4I4 I4I4c4I4I4I4", 2, 7, 147, "data", 0, 0, 147, 8, 44100,
                                            "data", 0, 0, 44100))
             .. chunk("<", "LIST", "adtl" .. chunk("<", "ltxt", string.pack("<I4I4I4I8", 7, 294, 0, 0)))
             .. chunk("<", "abcd", "odd")
wave("a.wav", { value = tone(1000, 0.5), bits = 24, chunks = cues })
os.execute(zyl .. " sample --set key=A2 tune=-5ct loops=1000-10999x3,44000-44099 start=147 end=43658 a.wav >/dev/null")
local before = read("a.wav")
converts("--rate 48000 --dry-run a.wav", "44100 -> 48000 Hz, not written")
assert(read("a.wav") == before)
converts("--rate 48000 a.wav", "loop 2 is 13.5 ct sharp")
local sound = is("a.wav", "48000 Hz 24 bits 1 ch 48000 frames")
for i, value in ipairs(sound:values(0, 1000, 100)) do
  near(value, 0.5 * math.sin(2 * math.pi * 1000 * (999 + i) / 48000), 1e-6, "tone")
end
local _, sample = open("a.wav")
assert(program:Samplekey(sample) == 57 and program:Sampletune(sample) == -13 and program:SampleLoopTimes(sample, 0) == 3)
assert(program:SampleStart(sample) == 160 and program:SampleEnd(sample) == 47519)
for i, loop in ipairs { { 1000, 10000 }, { 44000, 100 } } do
  local length = program:SampleLoopEnd(sample, i - 1) - program:SampleLoopStart(sample, i - 1) + 1
                 + program:SampleLoopFineLen(sample, i - 1) / 4294967296
  near(program:SampleLoopStart(sample, i - 1), loop[1] * 160 / 147, 0.5, "start of loop")
  near(length, loop[2] * 160 / 147, 1e-9, "length of loop")
end
program:DeleteTempSample(sample)
local bytes = read("a.wav")
local place = bytes:find("cue ", 1, true) + 12
assert(string.unpack("<I4", bytes, place + 4) == 160 and string.unpack("<I4", bytes, place + 20) == 160)
assert(string.unpack("<I4", bytes, place + 24 + 20) == 48000)
assert(string.unpack("<I4", bytes, bytes:find("ltxt", 1, true) + 12) == 320)
assert(bytes:find(chunk("<", "abcd", "odd"), 1, true))
converts("--rate 48000 --bits 24 --mono mix a.wav", "no change")
assert(read("a.wav") == bytes)
os.execute(zyl .. " undo --last >/dev/null")
assert(read("a.wav") == before)

-- AIFF: markers of loops and others.
local marks = string.pack(">I2 I2I4s1 I2I4s1 I2I4s1", 3, 1, 4410, "b\0\0", 2, 8820, "end", 5, 22050, "cue")
local body = "AIFF" .. chunk(">", "COMM", string.pack(">I2I4I2I2I8", 1, 44100, 16, 0x400E, 0xAC44000000000000))
             .. chunk(">", "MARK", marks)
             .. chunk(">", "INST", string.pack(">BbBBBBi2I2I2I2I2I2I2", 60, 0, 0, 127, 1, 127, 0, 1, 1, 2, 0, 0, 0))
             .. chunk(">", "SSND", ("\0"):rep(8) .. ("\1\2"):rep(44100))
write("m.aif", "FORM" .. string.pack(">I4", #body) .. body)
converts("--rate 22050 m.aif")
bytes = read("m.aif")
assert(bytes:find(string.pack(">I2 I2I4s1 I2I4s1 I2I4s1", 3, 1, 2205, "b\0\0", 2, 4410, "end", 5, 11025, "cue"), 1, true))

-- Width: dither keeps what is below a step, is the same every time, and leaves values of the width alone.
wave("w.wav", { value = tone(441, 0.4 / 32768), bits = 24 })
converts("--bits 16 -o dithered.wav w.wav", "24 -> 16 bits")
converts("--bits 16 -o again.wav w.wav")
converts("--bits 16 --no-dither -o plain.wav w.wav")
assert(read("dithered.wav") == read("again.wav") and read("dithered.wav") ~= read("plain.wav"))
assert(is("plain.wav", "44100 Hz 16 bits 1 ch 44100 frames"):peak() == -math.huge)
local function level(values, hertz)
  local sum = 0
  for i, value in ipairs(values) do sum = sum + value * math.sin(2 * math.pi * hertz * (i - 1) / 44100) end
  return 2 * sum / #values
end
near(level(is("dithered.wav", "44100 Hz 16 bits 1 ch 44100 frames"):values(0), 441) * 32768, 0.4, 0.02, "level below a step")
for _, bits in ipairs { 8, 16, 24, 32 } do
  wave("x.wav", { value = tone(441, 0.99), frames = 999, bits = bits })
  before = read("x.wav")
  if bits < 32 then
    converts("--bits 32 x.wav")
    is("x.wav", "44100 Hz 32 bits 1 ch 999 frames")
  end
  converts("--bits " .. bits .. " x.wav")
  assert(read("x.wav") == before, bits)
end

-- Channels, trim, level and fades.
local function burst(i, c) return i >= 10000 and i < 30000 and (c == 0 and 0.5 or -0.1) or i == 5000 and 0.0001 or 0 end
local cases = {
  { "--mono left", "44100 Hz 16 bits 1 ch 44100 frames", -6.02 },
  { "--mono right", "44100 Hz 16 bits 1 ch 44100 frames", -20 },
  { "--mono mix", "44100 Hz 16 bits 1 ch 44100 frames", -13.98 },
  { "--trim", "44100 Hz 16 bits 2 ch 20000 frames", -6.02 },
  { "--trim=-80", "44100 Hz 16 bits 2 ch 25000 frames", -6.02 },
  { "--trim -80 --rate 22050", "22050 Hz 16 bits 2 ch 12500 frames" },
  { "--normalize peak", "44100 Hz 16 bits 2 ch 44100 frames", -1 },
  { "--normalize peak 0", "44100 Hz 16 bits 2 ch 44100 frames", 0 },
  { "--normalize=loudness -40 --mono left", "44100 Hz 16 bits 1 ch 44100 frames", nil, -40 },
  { "--normalize loudness 0", "44100 Hz 16 bits 2 ch 44100 frames", 0, nil, "would clip: normalized to" },
}
for _, case in ipairs(cases) do
  wave("c.wav", { value = burst, channels = 2 })
  converts(case[1] .. " c.wav", case[5])
  sound = is("c.wav", case[2])
  if case[3] then near(sound:peak(), case[3], 0.02, case[1]) end
  if case[4] then near(sound:loudness(), case[4], 0.05, case[1]) end
  if not case[1]:find("rate") then converts(case[1] .. " c.wav", "no change") end
end
wave("c.wav", { value = burst })
os.execute(zyl .. " sample --set loops=8000-31999 start=9000 c.wav >/dev/null")
converts("--trim --fade-in 10 --fade-out 100 c.wav", "--fade-out left out: a loop plays there")
_, sample = open("c.wav")
assert(program:SampleGetSize(sample) == 24000 and program:SampleStart(sample) == 1000)
assert(program:SampleLoopStart(sample, 0) == 0 and program:SampleLoopEnd(sample, 0) == 23999)
program:DeleteTempSample(sample)
wave("c.wav", { value = function() return 0.5 end })
converts("--fade-in 100 --fade-out 200 --no-dither c.wav")
local values = is("c.wav", "44100 Hz 16 bits 1 ch 44100 frames"):values(0)
for i, part in pairs { [1] = 0, [2206] = 0.5, [4411] = 1, [35281] = 1, [39691] = 0.5, [44100] = 0 } do
  near(values[i], 0.5 * part, 2e-4, "fade at " .. i)
end

-- To other files: structure, copies, and what is refused.
os.execute("mkdir -p in/deep && cp c.wav in/one.wav && cp c.wav in/deep/two.wav && cp m.aif in/three.aif")
before = read("c.wav")
converts("-r --bits 16 in -o out/new")
assert(read("out/new/one.wav") == before and read("out/new/deep/two.wav") == before and read("out/new/three.aif") == bytes)
converts("in/one.wav -o one.aif --bits 24")
is("one.aif", "44100 Hz 24 bits 1 ch 44100 frames")
for arguments, expected in pairs {
  ["c.wav"] = 2, ["--bits 12 c.wav"] = 2, ["--normalize rms c.wav"] = 2, ["--trim 3 c.wav"] = 2,
  ["--format aif c.wav"] = 2, ["c.wav -o ."] = 2, ["in/one.wav -r out -o out/new --force"] = 2,
  ["c.wav one.aif -o y.wav"] = 2, ["c.wav -o y.flac"] = 2,
  ["c.wav -o y.wav --format aif"] = 2, ["in/one.wav in/deep/two.wav in/one.aif -o y --format wav"] = 2,
  ["in in/one.wav c.wav -o out/new"] = 4, ["--bits 24 none.wav"] = 4, ["--rate 1000000 --bits 8 none.wav"] = 4,
} do
  if arguments:find("one.aif") then os.execute("cp one.aif in/one.aif") end
  local status, text = convert(arguments)
  assert(status == expected, arguments .. ": " .. status .. " " .. text)
  os.remove("in/one.aif")
end
assert(not host.fileType("y") and not host.fileType("y.wav") and not host.fileType("y.flac") and read("c.wav") == before)
-- Encodings other than PCM become PCM only on request.
local floats = string.pack("<I2I2I4I4I2I2", 3, 1, 44100, 176400, 4, 32)
body = "WAVE" .. chunk("<", "fmt ", floats) .. chunk("<", "data", string.pack("<f", 0.25):rep(1000))
write("f.wav", "RIFF" .. string.pack("<I4", #body) .. body)
assert(convert("--rate 48000 f.wav") == 4)
converts("--bits 24 f.wav", "float 32 bits -> WAVE PCM")
near(is("f.wav", "44100 Hz 24 bits 1 ch 1000 frames"):peak(), -12.04, 0.01)
