-- zyl help: describes the module's script methods.
local help = require "zyl.help"

local function show(text, reason)
  if text then
    io.write(text)
  else
    io.stderr:write("zyl help: ", reason, "\n")
    os.exit(1, true)
  end
end

if arg[1] == nil or arg[1] == "--help" then
  io.write("zyl ", (help.overview():gsub("\nhelp", "\nzyl help")))
elseif arg[1] == "--search" and arg[2] then
  show(help.search(table.move(arg, 2, #arg, 1, {})))
elseif arg[1]:sub(1, 1) == "-" or arg[2] then
  io.stderr:write("zyl help: give one NAME, or --search and words\n")
  os.exit(2, true)
else
  local name = arg[1]
  local script = name:find("^[%w_-]+$") and
                 io.open((arg[0]:match("^.*/") or "./") .. name .. ".lua", "r")
  if script and name ~= "help" then
    script:close()
    io.write(name, " is a verb: zyl ", name, " --help lists its options.\n")
    local text = help.named(name)
    if text then io.write("\n", text) end
  else
    show(help.named(name))
  end
end
