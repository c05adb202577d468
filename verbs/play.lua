-- zyl play: plays programs, or renders them to sound files.
local cli = require "cli"
local disk = require "disk"
local instrument = require "formats.instrument"
local json = require "json"
local midi = require "midi"
local notes = require "notes"
local progress = require "progress"
local sf2 = require "formats.sf2"
local text = require "text"

local LOWEST_RATE, HIGHEST_RATE, BITS = 8000, 96000, 24
local DEFAULT_VELOCITY, DEFAULT_SECONDS, MOST_SECONDS = 100, 1, 600
local WAIT_SECONDS = 0.05

local options, words = cli.parse {
  verb = "play", notes = true, operands = "PROGRAM [KEY[+KEY…][:VELOCITY[:SECONDS]]…|SONG.mid]", repeats = true,
  about = "Plays a program on the machine's audio output: the notes one after another, or a standard MIDI\n"
       .. "file. Without notes plays the middle of each key range.",
  options = {
    { name = "output", short = "o", kind = "text", value = "OUT.wav",
      help = "write a sound file instead, stereo, 24 bits" },
    { name = "rate", kind = "integer", value = "HZ", low = LOWEST_RATE, high = HIGHEST_RATE, default = 44100,
      help = "sample rate (default 44100)" },
    { name = "gain", kind = "number", value = "DB", low = -60, high = 20, default = -6,
      help = "level (default -6)" },
    { name = "force", help = "replace a sound file that exists" },
    { name = "dry-run", help = "render, but neither play nor write" },
    { name = "json", help = "print a JSON object" },
  },
  more = "KEY is a note such as C3 or a number from 0 to 127. VELOCITY is 1 to 127 (default 100), SECONDS the\n"
      .. "length (default 1). The program is played as `zyl export` writes it, through FluidSynth.",
}

-- The notes of a word: one, or a chord.
local function notesOf(word)
  local parts, chord = {}, {}
  for part in (word .. ":"):gmatch("(.-):") do parts[#parts + 1] = part end
  local velocity = math.tointeger(tonumber(parts[2] or DEFAULT_VELOCITY))
  local seconds = tonumber(parts[3] or DEFAULT_SECONDS)
  local valid = #parts <= 3 and velocity and velocity >= 1 and velocity <= 127 and seconds and seconds > 0
                and seconds <= MOST_SECONDS
  for name in (parts[1] .. "+"):gmatch("(.-)%+") do
    chord[#chord + 1] = { key = notes.key(name), velocity = velocity, seconds = seconds }
    valid = valid and notes.key(name)
  end
  if not valid then
    cli.usage(("'%s' is not KEY[:VELOCITY[:SECONDS]], such as C3:100:2; KEY is %s"):format(word,
              notes.accepted()))
  end
  return chord
end

local path, song, list = table.remove(words, 1), nil, {}
for _, word in ipairs(words) do
  if word:lower():match("%.midi?$") then
    song = not song and word or cli.usage("only one song can be played")
  else
    list[#list + 1] = notesOf(word)
  end
end
if options.output then
  if not options.output:lower():find("%.wav$") then cli.usage(options.output .. ": the extension is not wav") end
  if host.fileType(options.output) and not options.force then
    cli.usage(options.output .. " exists (see --force)")
  end
end
if song and #list > 0 then cli.usage("a song and notes cannot be played together") end

-- The middle of each key range, once.
local function everyRange(it)
  local taken, keys = {}, {}
  for _, region in ipairs(it.regions) do
    local key = (region.low + region.high) // 2
    if not taken[key] then keys[#keys + 1] = key end
    taken[key] = true
  end
  table.sort(keys)
  for i, key in ipairs(keys) do
    keys[i] = { { key = key, velocity = DEFAULT_VELOCITY, seconds = DEFAULT_SECONDS } }
  end
  return keys
end

local function load(synth, it)
  local bank = os.tmpname()
  local loaded, failure = cli.try(function()
    sf2.write(sf2.bank({ it }, it.name), bank, progress.show)
    local accepted, reason = synth:load(bank, it.bank, it.preset)
    return accepted or error(reason, 0)
  end)
  os.remove(bank)
  if not loaded then error(failure, 0) end
end

local function render()
  local present, player = pcall(require, "zyl.player")
  if not present then error("the player is not installed (FluidSynth's library is missing)", 0) end
  local it = instrument.read(path, function(fraction) progress.show(fraction, path) end)
  local synth = player.new { rate = options.rate, gain = 10 ^ (options.gain / 20) }
  load(synth, it)
  if song then
    local data, failure = cli.try(midi.read, song)
    local _, damage = cli.try(midi.parse, data or "")
    if failure or damage then error(song .. ": " .. (failure or damage), 0) end
    synth:song(data)
  end
  if not song and #list == 0 then list = everyRange(it) end
  local at = 0.0
  for _, chord in ipairs(list) do
    for _, note in ipairs(chord) do
      synth:note { at = at, key = note.key, velocity = note.velocity, seconds = note.seconds }
    end
    at = at + chord[1].seconds
  end
  progress.hide()
  return synth:render(), player
end

local function sounded(sound, player)
  if options["dry-run"] then return "would be played" end
  if options.output then
    local written, reason = disk.write(options.output, (sound:wave(BITS)))
    return written and "written to " .. text.printable(options.output)
           or error(options.output .. ": " .. reason, 0)
  end
  local playback, reason = player.listen(sound)
  if not playback then error(reason .. " (-o OUT.wav writes a sound file)", 0) end
  while playback:playing() do host.pump(WAIT_SECONDS) end
  return "played"
end

local printer = cli.printer(options.json)
local sound, player = cli.try(render)
local failure = not sound and player or nil
local seconds, done
if sound then
  seconds = sound:frames() / options.rate
  done, failure = cli.try(sounded, sound, player)
end
if failure then cli.failed(path, failure) end
if options.json then
  printer.result(1, json.object("file", path, "error", failure, "seconds", seconds, "peak_db",
                                sound and sound:peak(), "output", done and options.output or nil))
elseif done then
  printer.result(1, ("%s: %.1f s, peak %.1f dB, %s\n"):format(text.printable(path), seconds, sound:peak(), done))
end
printer.close()
cli.finish()
