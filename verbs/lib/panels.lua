-- The editor panels of a program, for host.render: the keyboard of a keygroup, the list of
-- keygroups, and the list of a keygroup's zones.
local notes = require "notes"
local programs = require "programs"
local stereo = require "stereo"

local panels = {}

local FIXED = 0x10000
local TEXT, BAR, MARKER, SWITCH, NUMBER, KEY, FRACTION, KEYBOARD = 7, 1, 2, 3, 4, 5, 6, 10

-- { title, parameter number, display type, minimum, maximum, width }
local function columns(rows)
  local list = {}
  for i, row in ipairs(rows) do
    list[i] = { title = row[1], width = row[6] or 36, style = row[6] and FIXED or 0, row[2], row[3],
                row[4] or 0, row[5] or 0 }
  end
  return list
end

local KEYGROUPS = {
  { "No", 142, NUMBER, 0, 0, 20 }, { "Low", 100, KEY, 0, 127, 30 }, { "High", 101, KEY, 0, 127, 30 },
  { "Keys", 199, KEYBOARD, 0, 0, 378 }, { "Tune", 102, FRACTION, 0, 0, 42 },
  { "Filter", 103, BAR, 0, 99, 60 }, { "Attack", 108, BAR, 0, 99, 44 },
  { "Release", 111, BAR, 0, 99, 44 }, { "Velocity", 105, MARKER, -50, 50, 60 },
  { "X-fade", 126, SWITCH, 0, 1, 20 },
}
local ZONES = columns {
  { "Zone", 299, NUMBER, 0, 0, 24 }, { "Low", 204, NUMBER, 0, 127, 24 },
  { "High", 205, NUMBER, 0, 127, 24 }, { "Sample", 307, TEXT }, { "Channel", 306, TEXT },
  { "Tune", 206, FRACTION, 0, 0, 42 }, { "Level", 207, MARKER, -50, 50, 60 },
  { "Pan", 209, MARKER, -50, 50, 60 }, { "Playback", 210, TEXT },
}
local NUMBER_COLUMN, CHANNEL_COLUMN = 0, 4    -- of ZONES
-- Colours of marked keys: for other keygroups, and for those that contain the selected key.
local PLAIN, PLAIN_BLACK = 0x8DB8F0, 0x2B67BD
local CHOSEN, CHOSEN_BLACK = 0xF5B04D, 0xB8700F

-- A keyboard with a keygroup's range.
function panels.keyboard(program, keygroup, height)
  local keyboard = host.keyboard { height = height or 30 }
  program:DrawKeyGroupKB(keygroup, keyboard, host.null)
  return keyboard
end

-- The keygroup list; keyboards whose range contains `key` are highlighted.
function panels.keygroups(program, key)
  local rows = KEYGROUPS
  -- The module names key 60 C3: with another octave the list shows key numbers.
  if notes.middle() ~= notes.EDITOR_MIDDLE then
    rows = {}
    for i, row in ipairs(KEYGROUPS) do
      rows[i] = row[3] == KEY and { row[1], row[2], NUMBER, table.unpack(row, 4) } or row
    end
  end
  local editor = host.editor { columns = columns(rows) }
  program:ListFillKeygroups(editor)
  program:UpdateKeyboardSelection(key, PLAIN + 0.0, PLAIN_BLACK + 0.0, CHOSEN + 0.0,
                                  CHOSEN_BLACK + 0.0, editor)
  return editor
end

-- A stereo sample is one row, panned to the centre. `channels` is the result of programs.channels.
function panels.zones(program, keygroup, channels)
  local zones = {}
  for z = 0, programs.ZONES - 1 do
    zones[z + 1] = { path = program:ZoneSamplePath(keygroup, z), low = program:ZonelowVel(keygroup, z),
                     high = program:ZonehighVel(keygroup, z), pan = program:ZonepanOffset(keygroup, z),
                     tune = program:ZonetuneOffset(keygroup, z),
                     channel = channels[keygroup * programs.ZONES + z], number = z + 1 }
  end
  stereo.pair(zones)
  local editor = host.editor { columns = ZONES }
  for z, zone in ipairs(zones) do
    if zone.pair then program:ZonepanOffset(keygroup, z - 1, stereo.CENTRE) end
  end
  program:ListFillZones(keygroup, editor)
  for z, zone in ipairs(zones) do program:ZonepanOffset(keygroup, z - 1, zone.pan) end
  for z = #zones, 1, -1 do
    local zone = zones[z]
    if zone.isRight then
      editor.list:remove(z - 1)
    elseif zone.pair then
      editor.list:cell(z - 1, NUMBER_COLUMN).go.text = z .. "+" .. zone.pair.number
      editor.list:cell(z - 1, CHANNEL_COLUMN).go.text = "Stereo"
    end
  end
  return editor
end

return panels
