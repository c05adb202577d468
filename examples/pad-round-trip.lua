-- Passes data to a DSP algorithm through data pads and reads it back: program settings as numbered
-- parameters in slots, and a sample as a WAVE image.
--
--   zyl run examples/pad-round-trip.lua PROGRAM SAMPLE

if not arg[2] then error("usage: zyl run pad-round-trip.lua PROGRAM SAMPLE", 0) end
local program = host.new("ZylSProgram")
if not program:Read(arg[1], 0) then error(arg[1] .. " is not a program", 0) end

-- Two slots in one pad: voice settings, and the speeds of the LFOs. docs/methods.md lists the
-- numbers.
local SETTINGS = { [1] = { 4, 5, 14 }, [2] = { 27, 40 } }
local pad = host.pad()
for slot, numbers in ipairs(SETTINGS) do
  program:WriteDataToPad(pad, slot, table.unpack(numbers))
end
print(("%d bytes of parameters in the pad"):format(#pad.bytes))

-- Another program reads the bytes from another pad.
local other = host.new("ZylSProgram")
other:Create(host.null)
local received = host.pad(pad.bytes)
for slot, numbers in ipairs(SETTINGS) do
  other:ReadDataFromPad(received, slot)
  for _, number in ipairs(numbers) do
    assert(other:PRGIntValue(number) == program:PRGIntValue(number), "a value was lost")
    print(("  slot %d, parameter %d: %d"):format(slot, number, other:PRGIntValue(number)))
  end
end

-- The sample: all channels, key, tuning and loops in one image.
local sample = program:ReadTempSample(arg[2], -1)
if not sample then error(arg[2] .. " is not a sample", 0) end
program:WriteSampleToPad(pad, sample)
local copy = other:ReadSampleFromPad(host.pad(pad.bytes))
assert(copy, "the pad contains no sample")
for _, method in ipairs { "SampleGetSize", "SampleChannelCount", "SampleBits", "SampleSampleRate",
                          "Samplekey", "Sampletune", "SampleLoopCount" } do
  assert(other[method](other, copy) == program[method](program, sample), method .. " differs")
end
for i = 0, program:SampleGetSize(sample) - 1, 997 do
  assert(other:SampleValue(copy, i) == program:SampleValue(sample, i), "frame " .. i .. " differs")
end
print(("%d bytes of sample, %d frames: read back unchanged"):format(#pad.bytes,
      other:SampleGetSize(copy)))
