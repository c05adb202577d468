-- Runs the commands that a document shows and compares their output with the document.
--
--   zyl run RunDocument.lua DOCUMENT SOURCE BIN SCRATCH [machines]
--
-- In a fenced block that begins with "$ ", the lines after a command are its expected output, both
-- standard output and standard error. A line "..." matches any number of lines, "..." in a line any
-- text. A Lua block whose first line is "-- NAME.lua" is first written to that file. The commands run
-- in order in the folder SCRATCH, which contains links to examples/ and, as build/bin and in the PATH,
-- to the programs. If GNU parallel is missing, a command that needs it ends the run with status 77.
-- Commands for the machines anna and bert run only if the last argument is "machines" (TwoMachines.sh).

local document, source, bin, scratch, machines = table.unpack(arg)

local function quoted(word) return "'" .. word:gsub("'", "'\\''") .. "'" end

-- The commands { line, command, expected = { lines } } and the files of a document.
local function read(path)
  local commands, fence, block, first = {}, nil, {}, 0
  local number = 0
  local function finish()
    local name = fence == "lua" and (block[1] or ""):match("^%-%- ([%w%-]+%.lua)$")
    if name then
      commands[#commands + 1] = { file = name, text = table.concat(block, "\n") .. "\n" }
    elseif (block[1] or ""):match("^%$ ") then
      for i, line in ipairs(block) do
        local command = line:match("^%$ (.*)$")
        if command then
          commands[#commands + 1] = { line = first + i, command = command, expected = {} }
        else
          table.insert(commands[#commands].expected, line)
        end
      end
    end
  end
  for line in io.lines(path) do
    number = number + 1
    local mark = line:match("^```(.*)$")
    if mark and not fence then
      fence, block, first = mark, {}, number
    elseif mark then
      finish()
      fence = nil
    elseif fence then
      block[#block + 1] = line
    end
  end
  return commands
end

local function trimmed(line) return (line:gsub("%s+$", "")) end

-- Whether the lines from `a` on are what is expected from `e` on.
local function fits(lines, a, expected, e)
  if e > #expected then return a > #lines end
  if expected[e]:match("^%s*%.%.%.$") then
    for from = a, #lines + 1 do
      if fits(lines, from, expected, e + 1) then return true end
    end
    return false
  end
  if a > #lines then return false end
  local pattern = trimmed(expected[e]):gsub("[%^%$%(%)%%%.%[%]%*%+%-%?]", "%%%0"):gsub("%%%.%%%.%%%.", ".*")
  return trimmed(lines[a]):match("^" .. pattern .. "$") ~= nil
         and fits(lines, a + 1, expected, e + 1)
end

local function has(program)
  return os.execute("command -v " .. program .. " >/dev/null 2>&1") == true
end

assert(os.execute("rm -rf " .. quoted(scratch) .. " && mkdir -p " .. quoted(scratch .. "/build")))
assert(os.execute(("ln -s %s %s && ln -s %s %s"):format(quoted(bin), quoted(scratch .. "/build/bin"),
       quoted(source .. "/examples"), quoted(scratch .. "/examples"))))

local failures, ran = 0, 0
for _, it in ipairs(read(document)) do
  if it.file then
    local file = assert(io.open(scratch .. "/" .. it.file, "w"))
    file:write(it.text)
    file:close()
  elseif it.command:match("anna,bert") and not machines then
    print(document .. ":" .. it.line .. ": needs two machines")
  elseif it.command:match("parallel") and not has("parallel") then
    print(document .. ":" .. it.line .. ": skipped, GNU parallel is not installed")
    os.exit(77, true)
  else
    ran = ran + 1
    local pipe = io.popen(("cd %s && export PATH=%s:\"$PATH\" LC_ALL=C.UTF-8 XDG_STATE_HOME=$PWD/state && { %s\n} 2>&1 "
                           .. "</dev/null"):format(quoted(scratch), quoted(bin), it.command))
    local lines = {}
    for line in pipe:lines() do lines[#lines + 1] = line end
    pipe:close()
    if not fits(lines, 1, it.expected, 1) then
      failures = failures + 1
      print(("%s:%d: $ %s"):format(document, it.line, it.command))
      print("  expected:\n    " .. table.concat(it.expected, "\n    "))
      print("  got:\n    " .. table.concat(lines, "\n    "))
    end
  end
end
print(("%s: %d commands, %d failures"):format(document, ran, failures))
if failures > 0 or ran == 0 then os.exit(1, true) end
