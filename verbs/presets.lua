-- zyl presets: lists the presets of SoundFont banks.
local cli = require "cli"
local disk = require "disk"
local json = require "json"
local text = require "text"

local options, files = cli.parse {
  verb = "presets", folders = "banks", operands = "BANK|FOLDER…",
  about = "Lists the presets of SoundFont banks (.sf2, .sf3) by bank and program number.",
  options = { { name = "json", help = "print a JSON list, one object per file" } },
}

local function presetsOf(path)
  local file, reason = disk.open(path)
  if not file then error(reason, 0) end
  file:close()
  local presets
  presets, reason = host.presets(path)
  if not presets then error(reason, 0) end
  if #presets == 0 then error("a SoundFont bank without presets", 0) end
  for place, preset in ipairs(presets) do preset.place = place end
  table.sort(presets, function(a, b)
    if a.bank ~= b.bank then return a.bank < b.bank end
    if a.program ~= b.program then return a.program < b.program end
    return a.place < b.place
  end)
  return presets
end

local function record(path, presets, failure)
  local list = {}
  for i, preset in ipairs(presets or {}) do
    list[i] = json.object("bank", preset.bank, "program", preset.program, "name", preset.name)
  end
  return json.object("file", path, "error", failure, "presets", json.list(list))
end

local function shown(path, presets)
  local rows = { { "bank", "program", "name" } }
  for _, preset in ipairs(presets) do
    rows[#rows + 1] = { tostring(preset.bank), tostring(preset.program), text.printable(preset.name) }
  end
  local head = #files > 1 and text.printable(path) .. "\n" or ""
  return head .. text.columns(rows, { [3] = true }, #files > 1 and "  " or "")
end

local printer = cli.printer(options.json)
for i, path in ipairs(files) do
  local presets, failure = cli.try(presetsOf, path)
  if failure then cli.failed(path, failure) end
  if options.json then
    printer.result(i, record(path, presets, failure))
  else
    printer.result(i, presets and shown(path, presets) or nil)
  end
end
printer.close()
cli.finish()
