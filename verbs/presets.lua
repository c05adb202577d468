-- zyl presets: lists the presets of sound banks.
local cli = require "cli"
local disk = require "disk"
local json = require "json"
local text = require "text"

local options, files = cli.parse {
  verb = "presets", operands = "BANK…",
  about = "Lists the presets of SoundFont banks in the order of the file.",
  options = { { name = "json", help = "print a JSON list, one object for each file" } },
}

local function presets(program, path)
  local file, reason = disk.open(path)
  if not file then error(reason, 0) end
  file:close()
  local names = {}
  if program:GetSFPresetArray(path, names) == 0 then error("no presets: not a SoundFont bank", 0) end
  return names
end

local program = host.new("ZylSProgram")
local printer = cli.printer(options.json)
for i, path in ipairs(files) do
  local names, failure = cli.try(presets, program, path)
  if failure then cli.failed(path, failure) end
  if options.json then
    printer.result(i, json.object("file", path, "error", failure, "presets", json.list(names or {})))
  elseif names then
    local rows = {}
    for n, name in ipairs(names) do rows[n] = { tostring(n), text.printable(name) } end
    local head = #files > 1 and text.printable(path) .. "\n" or ""
    printer.result(i, head .. text.columns(rows, { [2] = true }, #files > 1 and "  " or ""))
  end
end
printer.close()
cli.finish()
