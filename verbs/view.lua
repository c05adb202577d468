-- zyl view: draws a program as the editor shows it.
local cli = require "cli"
local disk = require "disk"
local journal = require "journal"
local notes = require "notes"
local panels = require "panels"
local pictures = require "pictures"
local programs = require "programs"
local progress = require "progress"
local text = require "text"

local options, files = cli.parse {
  verb = "view", notes = true, folders = "programs",
  about = "Draws a program as the editor shows it: the keyboard of a keygroup, the list of keygroups,\n"
       .. "and the zones of the keygroup.",
  options = {
    { name = "output", short = "o", kind = "text", value = "PICTURE",
      help = "the picture to write, .png or .svg; with several programs, one\n"
          .. "picture per program: PICTURE-NAME.png" },
    { name = "keygroup", kind = "integer", value = "N", low = 1, high = 1000000, default = 1,
      help = "keygroup on the keyboard and in the zone list, from 1 (default 1)" },
    { name = "key", kind = "text", value = "K",
      help = "highlight the keygroups that play a key, 0 to 127 or a note;\n"
          .. "default: the lowest key of keygroup N" },
    { name = "scale", kind = "number", value = "S", low = 0.25, high = 16, default = 2,
      help = "picture pixels per editor pixel (default 2)" },
    { name = "dark", help = "dark theme" },
    { name = "quiet", help = "do not print the picture's name" },
  },
}

if not options.output then cli.usage("-o PICTURE is missing") end
local pictureOf = pictures.names("-o PICTURE", options.output, #files)
local marked = options.key and notes.key(options.key)
if options.key and not marked then
  cli.usage("--key K: '" .. options.key .. "' is not " .. notes.accepted())
end

-- The samples of keygroups whose file does not exist, and the number of these files.
local function missingSamples(program)
  local list, seen, absent = {}, {}, 0
  for k = 0, program:PRGkeyGroups() - 1 do
    for z = 0, programs.ZONES - 1 do
      local sample = program:ZoneSamplePath(k, z)
      if sample ~= "" and seen[sample] ~= k and not disk.isFile(sample) then
        list[#list + 1] = { keygroup = k, path = sample }
        if not seen[sample] then absent = absent + 1 end
        seen[sample] = k
      end
    end
  end
  return list, absent
end

local function draw(path, picture)
  local program = programs.read(path, true)
  local count, k = program:PRGkeyGroups(), options.keygroup - 1
  if k >= count then error(("there is no keygroup %d, the program has %d"):format(k + 1, count), 0) end
  local low, high = program:KGlowKey(k), program:KGhighKey(k)
  local missing, absent = missingSamples(program)
  if absent > 0 then
    cli.warn(path, ("%d sample%s missing: %s%s"):format(absent, absent == 1 and "" or "s",
             text.printable(missing[1].path), absent > 1 and ", ..." or ""))
  end
  local here = {}
  for _, it in ipairs(missing) do
    if it.keygroup == k then here[#here + 1] = it.path:match("[^/]*$") .. " (missing)" end
  end
  journal.save(picture, host.render, {
    ("%s – keygroup %d of %d: %s   (C%d = key 60)"):format(program:PRGname(), k + 1, count,
      notes.range(low, high), notes.middle()),
    panels.keyboard(program, k),
    "Keygroups", panels.keygroups(program, marked or low),
    ("Zones of keygroup %d%s"):format(k + 1, #here > 0 and ": " .. table.concat(here, ", ") or ""),
    panels.zones(program, k, programs.channels(path)),
  }, picture, { dark = options.dark, scale = options.scale, octave = notes.middle() })
  return true
end

for i, path in ipairs(files) do
  progress.show((i - 1) / #files, path)
  local picture = pictureOf(path)
  local drawn, failure = cli.try(draw, path, picture)
  progress.hide()
  if failure then
    cli.failed(path, failure)
  elseif drawn and not options.quiet then
    print(text.printable(picture))
  end
end
cli.finish()
