-- Generates the manual page zyl(1) from the help texts: zyl run manual.lua OUTPUT VERSION ZYL VERBS
local output, version, zyl, verbs = arg[1], arg[2], arg[3], arg[4]

local function quoted(word) return "'" .. word:gsub("'", "'\\''") .. "'" end

local function lines(command)
  local list = {}
  for line in io.popen(command):lines() do list[#list + 1] = line end
  return list
end

local page = {}
local function add(line) page[#page + 1] = line end

-- Escapes a line for roff: backslashes, hyphens, and dots and quotes at the start.
local function plain(line)
  line = line:gsub("\\", "\\e"):gsub("%-", "\\-")
  if line:match("^[.']") then line = "\\&" .. line end
  return line
end

local function block(list)
  add(".nf")
  for _, line in ipairs(list) do add(plain(line)) end
  add(".fi")
end

add((".TH ZYL 1 \"\" \"zyl %s\" \"User Commands\""):format(version))
add(".SH NAME")
add("zyl \\- sampler programs and samples from the command line")
add(".SH SYNOPSIS")
add(".B zyl\n[\\fIOPTION\\fR...] \\fIVERB\\fR [\\fIARGUMENT\\fR...]")
add(".SH DESCRIPTION")
add("zyl loads the sampler-program module and runs Lua scripts that call its methods. The verbs below\n"
    .. "are such scripts; \\fBzyl run\\fR runs your own.")
add(".SH COMMAND LINE")
block(lines(quoted(zyl) .. " --help"))
for _, path in ipairs(lines("ls " .. quoted(verbs) .. "/*.lua")) do
  local verb = path:match("([^/]+)%.lua$")
  add(".SH ZYL " .. verb:upper())
  block(lines(quoted(zyl) .. " " .. verb .. " --help"))
end
add(".SH ENVIRONMENT")
add(".TP\n.B ZYL_UNDO_LIMIT\nthe maximum size of the undo journal, such as 500M (default 1G); 0 turns it off")
add(".TP\n.B ZYL_PROFILE\nthe profile that the module reads when it is loaded")
add(".TP\n.B ZYL_MIDDLE_C\nthe octave of key 60 in note names, 2 to 6 (default 3: key 60 is C3)")
add(".SH EXIT STATUS")
add("0 success, 1 error in the script, 2 wrong command line, 3 the module could not be loaded,\n"
    .. "4 some files of a batch failed, 130 stopped by Ctrl\\-C.")

local file = assert(io.open(output, "w"))
file:write(table.concat(page, "\n"), "\n")
file:close()
