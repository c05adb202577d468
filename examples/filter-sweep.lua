-- Sets the filters of the selected keygroups to evenly spaced values, in many programs. Programs
-- without selected keygroups are not changed.
--
--   zyl run examples/filter-sweep.lua FROM TO PROGRAM...
--
-- Select keygroups in the editor, or with: zyl edit PROGRAM KGSelect=on --keygroups 3-6

local from, to = math.tointeger(tonumber(arg[1])), math.tointeger(tonumber(arg[2]))
if not from or not to or not arg[3] then
  error("usage: zyl run filter-sweep.lua FROM TO PROGRAM...", 0)
end

local function sweep(path)
  local program = host.new("ZylSProgram")
  if not program:Read(path, 0) then error("not a program", 0) end  -- 0: do not load the samples
  local selected = {}
  for k = 0, program:PRGkeyGroups() - 1 do
    if program:KGSelect(k) then selected[#selected + 1] = k end
  end
  for i, k in ipairs(selected) do
    local part = #selected > 1 and (i - 1) / (#selected - 1) or 0
    local before = program:KGfilterFreq(k, math.floor(from + part * (to - from) + 0.5))
    print(("%s: keygroup %d: %d -> %d"):format(path, k + 1, before, program:KGfilterFreq(k)))
  end
  if #selected == 0 then return print(path .. ": no keygroup is selected") end
  if not program:Write(path) then error("could not be written", 0) end
end

local failures = 0
for i = 3, #arg do
  local done, reason = pcall(sweep, arg[i])
  if not done then
    failures = failures + 1
    io.stderr:write(arg[i], ": ", tostring(reason), "\n")
  end
end
if failures > 0 then os.exit(4, true) end
