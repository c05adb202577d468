-- A progress bar on standard error, only on a terminal. The cursor stays below the bar, so that
-- other messages (Ctrl-C) appear on a separate line.
local text = require "text"

local progress = {}
local WIDTH, LABEL = 30, 32
local terminal, onScreen

function progress.hide()
  if not onScreen then return end
  io.stderr:write("\27[A\r\27[K")
  onScreen = nil
end

-- Disables the bar.
function progress.forbid() terminal = false end

-- Shows a fraction from 0 to 1 and a label.
function progress.show(fraction, label)
  if terminal == nil then terminal = os.execute("test -t 2") == true end
  if not terminal then return end
  fraction = math.min(math.max(fraction, 0), 1)
  local full = math.floor(fraction * WIDTH + 0.5)
  local line = ("%s%s %3d%%  %s"):format(("█"):rep(full), ("░"):rep(WIDTH - full),
                                         math.floor(100 * fraction), text.fit(label, LABEL))
  if line == onScreen then return end
  progress.hide()
  io.stderr:write(line, "\n")
  onScreen = line
end

return progress
