-- The measure of a recording's root key for scripts that have no sound yet. Verbs use sound:root of
-- zyl.audio directly.
local audio = require "zyl.audio"

local rootpitch = {}

-- The settings of the tracker for a note of any pitch and level.
function rootpitch.settings(program, sample)
  return audio.trackSettings(audio.sound(program, sample))
end

-- The pitch of a sample with that track: a table as of sound:root, or nil and the reason. `sound`
-- is the sample's sound if the caller has it already.
function rootpitch.of(program, sample, track, sound)
  return (sound or audio.sound(program, sample)):root(track)
end

return rootpitch
