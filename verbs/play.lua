-- zyl play: renders notes of a program to a sound file.
local cli = require "cli"
local core = require "zyl.player.core"
local instrument = require "formats.instrument"
local journal = require "journal"
local json = require "json"
local notes = require "notes"
local progress = require "progress"
local sf2 = require "formats.sf2"
local text = require "text"

local BLOCK = 4096          -- frames rendered at once, and the resolution of the end
local LONGEST_TAIL = 20     -- seconds after the last release
local MOST_SECONDS = 3600
local CHANNELS, BYTES = 2, 3

local options, words = cli.parse {
  verb = "play", notes = true, operands = "PROGRAM [KEY[+KEY…][:VELOCITY[:SECONDS]]…] -o OUT.wav", repeats = true,
  about = "Plays notes of a program, one after the other, into a WAVE file of 24 bits. KEY+KEY is a chord.\n"
       .. "Without notes plays C3 (60). Uses libfluidsynth, if it is installed.",
  options = {
    { name = "output", short = "o", kind = "text", value = "OUT.wav", help = "the file to write" },
    { name = "gain", kind = "number", value = "DB", low = -96, high = 96, default = 0, help = "added to the level (default 0)" },
    { name = "rate", kind = "integer", value = "HZ", low = 8000, high = 96000, default = 44100, help = "sample rate (default 44100)" },
    { name = "force", help = "replace a file that exists" },
    { name = "dry-run", help = "print what would be played, but write nothing" },
    { name = "json", help = "print a JSON object" },
  },
  more = "Default velocity is 100, default length 1 second; the sound ends when the last note has faded. What\n"
      .. "the program has beyond a SoundFont bank (see zyl export) is not heard.",
}

local function noteOf(word)
  local keys, velocity, seconds = word:match("^([^:]+):?([^:]*):?([^:]*)$")
  local it = { keys = {}, velocity = velocity == "" and 100 or math.tointeger(tonumber(velocity or "")),
               seconds = seconds == "" and 1 or tonumber(seconds or "") }
  for name in ((keys or "") .. "+"):gmatch("(.-)%+") do
    local key = notes.key(name)
    if not key then cli.usage(("'%s' is not %s"):format(name, notes.accepted())) end
    it.keys[#it.keys + 1] = key
  end
  if not it.velocity or it.velocity < 1 or it.velocity > 127 then cli.usage(word .. ": the velocity is not 1 to 127") end
  if not it.seconds or not (it.seconds > 0 and it.seconds <= MOST_SECONDS) then
    cli.usage(("%s: the length is not up to %d seconds"):format(word, MOST_SECONDS))
  end
  return it
end

local path, output = words[1], options.output
if not output then cli.usage("-o OUT.wav is missing") end
if not output:lower():find("%.wav$") then cli.usage(output .. ": the extension is not wav") end
local list, total = {}, 0
for i = 2, math.max(#words, 2) do
  list[#list + 1] = noteOf(words[i] or "60")
  total = total + list[#list].seconds
end
if total > MOST_SECONDS then cli.usage(("more than %d seconds"):format(MOST_SECONDS)) end
if host.fileType(output) and not options.force then
  cli.usage(output .. " exists (see --force)")
end

local function header(bytes)
  local frame = CHANNELS * BYTES
  return "RIFF" .. string.pack("<I4", 36 + bytes) .. "WAVEfmt "
         .. string.pack("<I4I2I2I4I4I2I2", 16, 1, CHANNELS, options.rate, options.rate * frame, frame, 8 * BYTES)
         .. "data" .. string.pack("<I4", bytes)
end

-- Plays the notes and calls write with the bytes of each block; returns frames and peak.
local function play(player, write)
  local gain, frames, peak = 10 ^ (options.gain / 20), 0, 0
  local function render(count)
    while count > 0 do
      local block = math.min(count, BLOCK)
      local bytes, highest = player:render(block, gain)
      write(bytes)
      frames, peak, count = frames + block, math.max(peak, highest), count - block
    end
  end
  for i, it in ipairs(list) do
    progress.show((i - 1) / #list, output)
    for _, key in ipairs(it.keys) do player:noteOn(key, it.velocity) end
    render(math.floor(it.seconds * options.rate + 0.5))
    for _, key in ipairs(it.keys) do player:noteOff(key) end
  end
  local most = frames + LONGEST_TAIL * options.rate
  while player:voices() > 0 and frames < most do render(BLOCK) end
  return frames, peak
end

-- The bank is stored in the temporary file of the output, which the player has read before the sound
-- replaces it.
local function perform(it, temporary)
  sf2.write(sf2.bank({ it }, it.name), temporary, progress.show)
  local player, reason = core.new(temporary, it.bank, it.preset, options.rate, it.voices)
  if not player then return nil, reason end
  local file <close> = assert(io.open(temporary, "wb"))
  assert(file:write(header(0)))
  it.frames, it.peak = play(player, function(bytes) assert(file:write(bytes)) end)
  file:seek("set", 0)
  assert(file:write(header(it.frames * CHANNELS * BYTES)))
  assert(file:flush())
  return true
end

local it, failure = cli.try(instrument.read, path, function(fraction) progress.show(fraction, path) end)
if it and not options["dry-run"] then
  local function write(temporary) return perform(it, temporary) end
  local done, reason = cli.try(journal.save, output, host.replaceFile, output, write)
  if not done then failure = reason end
end
progress.hide()
if failure then
  cli.failed(path, failure)
elseif it.peak and it.peak > 1 then
  cli.warn(output, ("louder than full scale by %.1f dB (see --gain)"):format(20 * math.log(it.peak, 10)))
end
local seconds = it and it.frames and it.frames / options.rate
local decibels = it and it.peak and 20 * math.log(it.peak, 10)
if options.json then
  io.write(json.encode(json.object("file", path, "error", failure, "to", output, "notes", #list, "seconds", seconds,
                                   "peak", decibels, "written", seconds ~= nil and not failure)), "\n")
elseif not failure then
  io.write(("%s: %d note%s %s %s%s\n"):format(text.printable(path), #list, #list == 1 and "" or "s",
           seconds and "in" or "would be played to", text.printable(output),
           seconds and (", %.2f s, peak %.1f dB"):format(seconds, decibels) or ""))
end
cli.finish()
