-- Draws a pitch track: the waveform, and below it the track on a grid of notes, with a common time
-- axis.
local notes = require "notes"

local plot = {}

local WIDTH, HEIGHT, LEFT, RIGHT = 1000, 560, 52, 984
local WAVE_TOP, WAVE_BOTTOM, NOTES_TOP, NOTES_BOTTOM = 44, 164, 184, 524
local INK, FAINT, RULE, BLACK_KEY = 0x24292F, 0x6E7781, 0xE3E7EB, 0xF3F5F7
local WAVE, TRACK, MEDIAN = 0x8FA9C4, 0xC2410C, 0x3B82C4
local MOST_LOOKS = 400  -- values read per column of the waveform

-- Lowest and highest value of each column's frames; full scale is 1.
local function extremes(sound, columns)
  local lows, highs = {}, {}
  local full = 2 ^ (8 * sound.width - 1)
  for c = 0, columns - 1 do
    local first = c * sound.frames // columns
    local last = math.max((c + 1) * sound.frames // columns - 1, first)
    local step = (last - first) // MOST_LOOKS + 1
    local low, high = math.huge, -math.huge
    for frame = first, last, step do
      local value = string.unpack(sound.format, sound.bytes, frame * sound.width + 1)
      if value < low then low = value end
      if value > high then high = value end
    end
    lows[c + 1], highs[c + 1] = low / full, high / full
  end
  return lows, highs
end

local function drawWave(surface, sound)
  local middle, half = (WAVE_TOP + WAVE_BOTTOM) / 2, (WAVE_BOTTOM - WAVE_TOP) / 2
  surface:rect(LEFT, WAVE_TOP, RIGHT - LEFT, WAVE_BOTTOM - WAVE_TOP, BLACK_KEY)
  surface:rect(LEFT, middle, RIGHT - LEFT, 1, RULE)
  if sound.frames * sound.width > #sound.bytes or sound.frames == 0 then return end
  local lows, highs = extremes(sound, RIGHT - LEFT)
  local peak = 1e-9
  for i, low in ipairs(lows) do peak = math.max(peak, -low, highs[i]) end
  -- One column per pixel, at least one pixel high.
  local outline, columns = {}, #lows
  for i, low in ipairs(lows) do
    local top = middle - highs[i] / peak * half
    local bottom = math.max(middle - low / peak * half, top + 1)
    outline[2 * i - 1], outline[2 * i] = { LEFT + i - 1, top }, { LEFT + i, top }
    outline[4 * columns - 2 * i + 2] = { LEFT + i - 1, bottom }
    outline[4 * columns - 2 * i + 1] = { LEFT + i, bottom }
  end
  surface:polygon(outline, WAVE)
end

-- The lowest and highest key of the grid: the 1st to the 99th percentile of the track, and at least
-- four semitones around the pitch.
local function keyRange(sound)
  local sorted = {}
  for _, note in ipairs(sound.values) do
    if note then sorted[#sorted + 1] = note end
  end
  if #sorted == 0 then return 57, 69 end
  table.sort(sorted)
  local low = sorted[math.ceil(#sorted * 0.01)]
  local high = sorted[math.ceil(#sorted * 0.99)]
  return math.floor(math.min(low - 1, sound.note - 4) + 0.5),
         math.floor(math.max(high + 1, sound.note + 4) + 0.5)
end

local function drawGrid(surface, low, high, yOf)
  local step = (NOTES_BOTTOM - NOTES_TOP) / (high - low + 1)
  for key = low, high do
    local top = yOf(key + 0.5)
    if notes.isBlack(key) then
      surface:rect(LEFT, top, RIGHT - LEFT, yOf(key - 0.5) - top, BLACK_KEY)
    end
    if key > low then surface:rect(LEFT, yOf(key - 0.5), RIGHT - LEFT, 1, RULE) end
    -- Depending on the available space, name all keys, the white keys, or only the Cs.
    if step >= 14 or step >= 8 and not notes.isBlack(key) or key % 12 == 0 then
      surface:text(LEFT - 8, yOf(key) + 4, notes.name(key), 11,
                   notes.isBlack(key) and FAINT or INK, "end")
    end
  end
end

local function drawTime(surface, seconds)
  local step = 10 ^ math.floor(math.log(math.max(seconds, 1e-3), 10)) / 10
  for _, factor in ipairs { 1, 2, 5, 10, 20 } do
    if seconds / (step * factor) <= 10 then
      step = step * factor
      break
    end
  end
  local digits = math.max(0, math.ceil(-math.log(step, 10) - 1e-9))
  for i = 0, math.floor(seconds / step + 1e-9) do
    local x = LEFT + i * step / seconds * (RIGHT - LEFT)
    surface:rect(x, NOTES_BOTTOM, 1, 5, FAINT)
    surface:text(x, NOTES_BOTTOM + 20, ("%." .. digits .. "f s"):format(i * step), 11, FAINT,
                 i == 0 and "start" or "middle")
  end
end

-- Draws the track. The line is interrupted where there is no pitch, outside the grid, and at jumps
-- of more than half an octave.
local function drawTrack(surface, sound, yOf, secondsAll)
  local points, before = {}, nil
  local function finish()
    if #points > 0 then surface:line(points, 2.2, TRACK) end
    points = {}
  end
  for i, note in ipairs(sound.values) do
    if note and (yOf(note) < NOTES_TOP or yOf(note) > NOTES_BOTTOM) then note = false end
    if not note or before and math.abs(note - before) > 6 then finish() end
    before = note
    if note then
      local seconds = (i - 1) * sound.block / sound.rate
      points[#points + 1] = { LEFT + seconds / secondsAll * (RIGHT - LEFT), yOf(note) }
    end
  end
  finish()
end

-- Draws to the file `path`. sound: title, rate in Hz, frames, bytes of one channel with the format
-- and width of a value, values (note numbers or false, one per `block` frames), and, if there is a
-- pitch, note and spread.
function plot.draw(path, sound)
  local surface = host.picture(path, { width = WIDTH, height = HEIGHT })
  local seconds = sound.frames / sound.rate
  local low, high = keyRange(sound)
  local function yOf(note)
    return NOTES_TOP + (high + 0.5 - note) / (high - low + 1) * (NOTES_BOTTOM - NOTES_TOP)
  end
  surface:text(LEFT, 28, sound.title, 16, INK)
  drawWave(surface, sound)
  drawGrid(surface, low, high, yOf)
  drawTime(surface, seconds)
  local says = "no pitch"
  if sound.note then
    local key, cents = notes.nearest(sound.note)
    says = ("%s %+.1f cents, spread %.1f"):format(notes.label(key), cents, sound.spread)
    surface:rect(LEFT, yOf(sound.note) - 0.5, RIGHT - LEFT, 1, MEDIAN)
  end
  surface:text(RIGHT, 28, says, 14, MEDIAN, "end")
  drawTrack(surface, sound, yOf, seconds)
  surface:write()
end

return plot
