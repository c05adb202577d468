-- The batches of the undo journal on disk. Each is a folder, numbered from 1, below batches.root():
--   head    format, time, process, folder, verb and arguments
--   N.old   the file that entry N replaced: a hard link if possible, otherwise a copy
--   index   one line per event; N.old is complete before its line is written, and the line is on disk
--           before the file is replaced:
--             keep N PATH SIZE MODIFIED   (SIZE is - if the file did not exist)
--             done N DIGEST               the content after the write; - if the file does not exist
--             same N                      the file was not changed
--             move N FROM TO
--             made FOLDER                 the verb has created the folder
--             undoes NUMBER               the verb restores the batch of that number
--             end                         the verb has ended
-- A line without a line feed was cut by a crash and is ignored.
local folders = require "folders"

local batches = {}

local FORMAT = "zyl-undo 1"
local MOST_TRIES = 1000     -- to find a free number
local MOST_BATCHES = 1000
local UNITS = { [""] = 1, K = 1 << 10, M = 1 << 20, G = 1 << 30 }

local ESCAPES = { ["\\"] = "\\\\", ["\t"] = "\\t", ["\n"] = "\\n" }
local UNESCAPES = { ["\\\\"] = "\\", ["\\t"] = "\t", ["\\n"] = "\n" }

function batches.line(...)
  local fields = table.pack(...)
  for i = 1, fields.n do fields[i] = tostring(fields[i]):gsub("[\\\t\n]", ESCAPES) end
  return table.concat(fields, "\t") .. "\n"
end

-- The lines of a file as lists of fields; nil if it cannot be read.
local function lines(path)
  local file = io.open(path, "rb")
  if not file then return nil end
  local list = {}
  for text in (file:read("a") or ""):gmatch("([^\n]*)\n") do
    local fields = {}
    for field in (text .. "\t"):gmatch("(.-)\t") do
      fields[#fields + 1] = field:gsub("\\[\\tn]", UNESCAPES)
    end
    list[#list + 1] = fields
  end
  file:close()
  return list
end

-- "PID:START" of a running process. A later process with the same number has another start time.
function batches.process(pid)
  local file = io.open("/proc/" .. pid .. "/stat", "r")
  if not file then return "?" end
  local number, rest = (file:read("a") or ""):match("^(%d+) .*%) (.*)$")
  file:close()
  local start = rest and not rest:match("^[ZX]") and rest:match(("%S+ "):rep(19) .. "(%d+)")
  return start and number .. ":" .. start or "?"
end

local function isRunning(id)
  local pid = id and id:match("^(%d+):")
  return pid ~= nil and batches.process(pid) == id
end

-- The folder of the journal; nil if the environment names none.
function batches.root()
  local state, home = os.getenv("XDG_STATE_HOME") or "", os.getenv("HOME") or ""
  if state:sub(1, 1) ~= "/" then
    if home:sub(1, 1) ~= "/" then return nil end
    state = home .. "/.local/state"
  end
  return state .. "/zyl/undo"
end

-- A size for display.
function batches.bytes(count)
  for _, unit in ipairs { "G", "M", "K" } do
    if count >= UNITS[unit] then return ("%.1f %sB"):format(count / UNITS[unit], unit) end
  end
  return count .. " B"
end

-- The bytes of a size such as 500M; nil if the text is not one.
function batches.size(text)
  local number, unit = text:upper():match("^(%d+)([KMG]?)$")
  return number and tonumber(number) * UNITS[unit]
end

local function output(command)
  local pipe = io.popen(command)
  local text = pipe and pipe:read("a") or ""
  if pipe then pipe:close() end
  return text
end

-- The numbers of all batches, sorted, and the size of each in bytes.
local function sizes(root)
  local size, numbers = {}, {}
  for number, bytes in output("find " .. folders.quoted(root)
                              .. " -mindepth 2 -type f -printf '/%P\\t%s\\n' 2>/dev/null")
                       :gmatch("/(%d+)/[^\t\n]*\t(%d+)\n") do
    number = tonumber(number)
    if not size[number] then numbers[#numbers + 1] = number end
    size[number] = (size[number] or 0) + tonumber(bytes)
  end
  table.sort(numbers)
  return numbers, size
end

-- Reads a batch: folder, time, process, cwd, command (verb and arguments), entries, bytes (of the
-- kept files), ended and running. An entry has id, path, size and modified of the kept file (nil if
-- there was none), after (digest, "-" or nil if unknown), same; or from and to of a move. `made` are the
-- folders that it created, and `undoes` is the number of the batch that it restores.
-- Returns nil if there is no such batch.
function batches.read(number)
  local root = batches.root()
  local folder = root and root .. "/" .. number
  local head = folder and lines(folder .. "/head")
  if not head or not head[1] or head[1][1] ~= FORMAT then return nil end
  local found = { number = number, folder = folder, time = math.tointeger(tonumber(head[1][2])) or 0,
                  process = head[1][3], cwd = head[1][4],
                  command = table.move(head[1], 5, #head[1], 1, {}), entries = {}, made = {}, bytes = 0 }
  local byId = {}
  for _, it in ipairs(lines(folder .. "/index") or {}) do
    local event, id = it[1], it[2]
    if event == "keep" or event == "move" then
      local entry = { id = id, path = it[3] }
      if event == "move" then
        entry.from, entry.to = it[3], it[4]
      else
        entry.size, entry.modified = tonumber(it[4]), tonumber(it[5])
        found.bytes = found.bytes + (entry.size or 0)
      end
      byId[id] = entry
      found.entries[#found.entries + 1] = entry
    elseif event == "done" and byId[id] then
      byId[id].after, byId[id].same = it[3], nil
    elseif event == "same" and byId[id] then
      byId[id].same = true
    elseif event == "made" then
      found.made[#found.made + 1] = it[2]
    elseif event == "undoes" then
      found.undoes = math.tointeger(tonumber(it[2]))
    elseif event == "end" then
      found.ended = true
    end
  end
  found.running = not found.ended and isRunning(found.process)
  return found
end

-- All batches, oldest first.
function batches.list()
  local list = {}
  for _, number in ipairs((sizes(batches.root() or "/nowhere"))) do list[#list + 1] = batches.read(number) end
  return list
end

-- Marks a batch as being read, so that other processes do not remove it to gain space.
function batches.hold(found) host.writeFile(found.folder .. "/reader", batches.process("self")) end

local function isHeld(found)
  local file = io.open(found.folder .. "/reader", "r")
  local id = file and file:read("a")
  if file then file:close() end
  return isRunning(id)
end

function batches.remove(folder) os.execute("rm -rf -- " .. folders.quoted(folder)) end

-- Removes the oldest batches until the others and `bytes` more fit into `limit` bytes, and all but the
-- newest MOST_BATCHES. Batch `kept` and those in use stay.
function batches.trim(limit, bytes, kept)
  local root = batches.root()
  local numbers, size = sizes(root)
  local total = bytes
  for _, number in ipairs(numbers) do total = total + size[number] end
  for i, number in ipairs(numbers) do
    if total <= limit and #numbers - i < MOST_BATCHES then break end
    local old = batches.read(number)
    if number ~= kept and not (old and (old.running or isHeld(old))) then
      -- Rename first, so that a partly removed batch is never listed.
      local gone = ("%s/new.%d.%d"):format(root, number, os.time())
      if os.rename(root .. "/" .. number, gone) then
        batches.remove(gone)
        total = total - size[number]
      end
    end
  end
end

-- Creates a batch for a command; returns its number, or nil. The head is complete before the folder
-- gets its number. Removes unnumbered folders that crashed processes left.
function batches.create(root, ...)
  local quoted = folders.quoted(root)
  local made = output(("umask 077; mkdir -p %s 2>/dev/null; find %s -maxdepth 1 -name 'new.*' -mmin +1440 "
                       .. "-exec rm -rf {} + 2>/dev/null; mktemp -d %s/new.XXXXXX 2>/dev/null && pwd")
                      :format(quoted, quoted, quoted))
  local folder, cwd = made:match("^([^\n]+)\n(.*)\n$")
  if not folder or not host.writeFile(folder .. "/head",
                                      batches.line(FORMAT, os.time(), batches.process("self"), cwd, ...)) then
    return nil
  end
  local numbers = sizes(root)
  local first = (numbers[#numbers] or 0) + 1
  for number = first, first + MOST_TRIES do
    if os.rename(folder, root .. "/" .. number) then return number end
  end
  return nil
end

return batches
