-- zyl view: draws a program as the editor shows it.
package.path = (arg[0]:match("^.*/") or "./") .. "lib/?.lua;" .. package.path
local cli = require "cli"
local panels = require "panels"
local notes = require "program"
local text = require "text"

local options, files = cli.parse {
  verb = "view",
  about = "Draws a program as the editor shows it: the keyboard with the range of a keygroup, the list\n"
       .. "of the keygroups, and the zones of that keygroup. Notes are named as in the editor's\n"
       .. "lists: C3 is key 60.",
  options = {
    { name = "output", short = "o", kind = "text", value = "PICTURE",
      help = "the picture to write, .png or .svg" },
    { name = "keygroup", kind = "integer", value = "N", low = 1, high = 1000000, default = 1,
      help = "the keygroup on the keyboard and in the zone list, from 1 (default 1)" },
    { name = "key", kind = "integer", value = "K", low = 0, high = 127,
      help = "the key, 0 to 127, whose keygroups stand out (default: the lowest of keygroup N)" },
    { name = "scale", kind = "number", value = "S", low = 0.25, high = 16, default = 2,
      help = "pixels of the picture for one of the editor (default 2)" },
    { name = "dark", help = "light on dark" },
    { name = "quiet", help = "do not print the picture's name" },
  },
}

if not options.output then cli.usage("-o PICTURE is missing") end
if not options.output:lower():match("%.png$") and not options.output:lower():match("%.svg$") then
  cli.usage("-o " .. options.output .. ": the name must end in .png or .svg")
end
if #files > 1 then cli.usage("one FILE at a time") end
local path = files[1]

local function draw()
  local program = notes.read(path, true)
  local count, k = program:PRGkeyGroups(), options.keygroup - 1
  if k >= count then error(("there is no keygroup %d, the program has %d"):format(k + 1, count), 0) end
  local low, high = program:KGlowKey(k), program:KGhighKey(k)
  host.render({
    ("%s – keygroup %d of %d: %s"):format(program:PRGname(), k + 1, count, notes.range(low, high)),
    panels.keyboard(program, k),
    "Keygroups", panels.keygroups(program, options.key or low),
    ("Zones of keygroup %d"):format(k + 1), panels.zones(program, k),
  }, options.output, { dark = options.dark, scale = options.scale })
  return true
end

local drawn, failure = cli.try(draw)
if failure then
  cli.failed(path, failure)
elseif drawn and not options.quiet then
  print(text.printable(options.output))
end
cli.finish()
