-- The undo journal: keeps the files that verbs replace, so that `zyl undo` can restore them.
--
-- A verb writes through programs.write, samples.write or disk.write, which keep the old file here. For
-- any other way of writing, call journal.save(path, write, ...), which keeps the file, calls
-- write(...) and returns its results; or journal.keep(path) directly before the file is written,
-- created or removed. journal.move(from, to) renames a file. A verb that replaces the files of its
-- command line calls journal.expect(files) before the first one, so that the user learns in time if
-- they do not fit. journal.all(body) takes back what body has written if it raises an error. cli.finish
-- ends the batch. Nothing is stored unless a file is kept.
--
-- Each batch is a folder, numbered from 1, below ROOT:
--   head    format, time, process, folder, verb and arguments
--   N.old   the file that entry N replaced: a hard link if possible, otherwise a copy
--   index   one line per event; N.old is complete before its line is written, and the line is on disk
--           before the file is replaced:
--             keep N PATH SIZE MODIFIED   (SIZE is - if the file did not exist)
--             done N DIGEST               the content after the write; - if the file does not exist
--             same N                      the file was not changed
--             move N FROM TO
--             end                         the verb has ended
-- A line without a line feed was cut by a crash and is ignored.
local folders = require "folders"

local journal = {}

local FORMAT = "zyl-undo 1"
local DEFAULT_LIMIT = 1 << 30
local UNITS = { [""] = 1, K = 1 << 10, M = 1 << 20, G = 1 << 30 }
local MOST_TRIES = 1000       -- to find a free number
local MOST_BATCHES = 1000

local batch                   -- the open batch, nil before the first file
local off = false             -- whether nothing more is kept
local within                  -- in journal.all: the root to use; the limit does not apply

local function cli() return require "cli" end  -- cli requires this module

local ESCAPES = { ["\\"] = "\\\\", ["\t"] = "\\t", ["\n"] = "\\n" }
local UNESCAPES = { ["\\\\"] = "\\", ["\\t"] = "\t", ["\\n"] = "\n" }

local function line(...)
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
local function process(pid)
  local file = io.open("/proc/" .. pid .. "/stat", "r")
  if not file then return "?" end
  local number, rest = (file:read("a") or ""):match("^(%d+) .*%) (.*)$")
  file:close()
  local start = rest and not rest:match("^[ZX]") and rest:match(("%S+ "):rep(19) .. "(%d+)")
  return start and number .. ":" .. start or "?"
end

local function isRunning(id)
  local pid = id and id:match("^(%d+):")
  return pid ~= nil and process(pid) == id
end

-- The folder of the journal; nil if the environment names none.
function journal.root()
  local state, home = os.getenv("XDG_STATE_HOME") or "", os.getenv("HOME") or ""
  if state:sub(1, 1) ~= "/" then
    if home:sub(1, 1) ~= "/" then return nil end
    state = home .. "/.local/state"
  end
  return state .. "/zyl/undo"
end

-- The maximum size of all batches in bytes.
local function limit()
  local text = os.getenv("ZYL_UNDO_LIMIT") or ""
  local number, unit = text:upper():match("^(%d+)([KMG]?)$")
  if number then return tonumber(number) * UNITS[unit] end
  if text ~= "" and not journal.warned then
    cli().warn("undo", "ZYL_UNDO_LIMIT=" .. text .. " is not a size such as 500M: the limit is 1G")
    journal.warned = true
  end
  return DEFAULT_LIMIT
end

function journal.bytes(count)
  for _, unit in ipairs { "G", "M", "K" } do
    if count >= UNITS[unit] then return ("%.1f %sB"):format(count / UNITS[unit], unit) end
  end
  return count .. " B"
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
-- there was none), after (digest, "-" or nil if unknown), same; or from and to of a move.
-- Returns nil if there is no such batch.
function journal.read(number)
  local root = journal.root()
  local folder = root and root .. "/" .. number
  local head = folder and lines(folder .. "/head")
  if not head or not head[1] or head[1][1] ~= FORMAT then return nil end
  local found = { number = number, folder = folder, time = math.tointeger(tonumber(head[1][2])) or 0,
                  process = head[1][3], cwd = head[1][4],
                  command = table.move(head[1], 5, #head[1], 1, {}), entries = {}, bytes = 0 }
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
    elseif event == "end" then
      found.ended = true
    end
  end
  found.running = not found.ended and isRunning(found.process)
  return found
end

-- All batches, oldest first.
function journal.list()
  local list = {}
  for _, number in ipairs((sizes(journal.root() or "/nowhere"))) do list[#list + 1] = journal.read(number) end
  return list
end

-- Marks a batch as being read, so that other processes do not remove it to gain space.
function journal.hold(found) host.writeFile(found.folder .. "/reader", process("self")) end

local function isHeld(root, number)
  local file = io.open(("%s/%d/reader"):format(root, number), "r")
  local id = file and file:read("a")
  if file then file:close() end
  return isRunning(id)
end

-- Removes the oldest batches until `bytes` more fit, and all but the newest MOST_BATCHES. Running
-- batches stay.
local function makeRoom(root, bytes)
  local numbers, size = sizes(root)
  local total = bytes
  for _, number in ipairs(numbers) do total = total + size[number] end
  for i, number in ipairs(numbers) do
    if total <= limit() and #numbers - i < MOST_BATCHES then break end
    local old = journal.read(number)
    if not (batch and batch.number == number) and not (old and old.running)
       and not isHeld(root, number) then
      -- Renamed first: a batch is there completely or not at all.
      local gone = ("%s/new.%d.%d"):format(root, number, os.time())
      if os.rename(root .. "/" .. number, gone) then
        os.execute("rm -rf " .. folders.quoted(gone))
        total = total - size[number]
      end
    end
  end
end

local function disable(reason)
  off = true
  cli().warn("undo", reason)
end

-- Creates the folder of the batch. Its head is complete before it gets its number.
local function begin()
  local root = within or journal.root()
  if not root then
    off = true
    cli().note("undo", "neither XDG_STATE_HOME nor HOME is set: this cannot be undone")
    return false
  end
  local quoted = folders.quoted(root)
  local made = output(("umask 077; mkdir -p %s 2>/dev/null; find %s -maxdepth 1 -name 'new.*' -mmin +1440 "
                       .. "-exec rm -rf {} + 2>/dev/null; mktemp -d %s/new.XXXXXX 2>/dev/null && pwd")
                      :format(quoted, quoted, quoted))
  local folder, cwd = made:match("^([^\n]+)\n(.*)\n$")
  local verb = (arg and arg[0] or ""):match("([^/]+)$") or "zyl"
  if folder and host.writeFile(folder .. "/head", line(FORMAT, os.time(), process("self"), cwd,
                               verb:gsub("%.lua$", ""), table.unpack(arg or {}))) then
    local numbers = sizes(root)
    local first = (numbers[#numbers] or 0) + 1
    for number = first, first + MOST_TRIES do
      if os.rename(folder, root .. "/" .. number) then
        batch = { number = number, root = root, folder = root .. "/" .. number, count = 0, bytes = 0,
                  roomFor = 0, byPath = {}, entries = {} }
        if not within then makeRoom(root, 0) end
        return true
      end
    end
  end
  disable(root .. " cannot be written: this cannot be undone")
  return false
end

local function record(durable, ...)
  local path = batch.folder .. "/index"
  if durable then return host.appendFile(path, line(...)) end
  local file = io.open(path, "ab")
  local done = file and file:write(line(...))
  return file and file:close() and done
end

-- Whether `bytes` more may be kept.
local function fits(bytes)
  if within then
    batch.bytes = batch.bytes + bytes
    return true
  end
  if batch.bytes + bytes > limit() then return false end
  if batch.bytes + bytes > batch.roomFor then
    -- Look ahead, so that the folder is not listed for every file.
    batch.roomFor = math.min(math.max(2 * (batch.bytes + bytes), limit() // 16), limit())
    makeRoom(batch.root, batch.roomFor - batch.bytes)
  end
  batch.bytes = batch.bytes + bytes
  return true
end

-- Records the content of the file that was kept last.
local function settle()
  local entry = batch and batch.pending
  if not entry then return end
  batch.pending = nil
  local info = host.fileInfo(entry.path)
  local unchanged = entry.info and info and info.modified == entry.info.modified
                    and info.size == entry.info.size or not entry.info and not info
  if unchanged and not entry.done then
    os.remove(entry.old)
    record(false, "same", entry.id)
    batch.byPath[entry.path] = nil
  else
    entry.done, batch.changed = true, true
    record(false, "done", entry.id, info and host.digest(entry.path) or "-")
  end
end

-- Keeps a file that is about to be written, created or removed.
function journal.keep(path)
  settle()
  if off or not within and limit() == 0 then return end
  local real = host.absolutePath(path) or path
  local info = host.fileInfo(real)
  if info and info.type ~= "file" or not batch and not begin() then return end
  local entry = batch.byPath[real]
  if not entry then
    if not fits(info and info.size or 0) then
      return disable(("the batch exceeds the journal's limit of %s (ZYL_UNDO_LIMIT): from %s on it cannot be undone")
                     :format(journal.bytes(limit()), path))
    end
    batch.count = batch.count + 1
    local id = batch.count
    entry = { id = id, path = real, info = info, old = ("%s/%d.old"):format(batch.folder, id) }
    local kept, reason = true, nil
    if info then kept, reason = host.copyFile(real, entry.old, true) end
    if kept then
      kept, reason = record(true, "keep", id, real, info and info.size or "-", info and info.modified or "-")
    end
    if not kept then
      return disable(("%s cannot be kept (%s): from here on the batch cannot be undone"):format(path, reason))
    end
    batch.byPath[real] = entry
    batch.entries[#batch.entries + 1] = entry
  end
  batch.pending = entry
end

-- Keeps a file, calls write(...) and returns its results.
function journal.save(path, write, ...)
  journal.keep(path)
  local results = table.pack(write(...))
  settle()
  return table.unpack(results, 1, results.n)
end

-- Renames a file; fails if `to` exists. Returns true, or nil and the reason.
function journal.move(from, to)
  if host.fileType(to) then return nil, to .. " exists" end
  from, to = host.absolutePath(from) or from, host.absolutePath(to) or to
  settle()
  local kept = not off and (within or limit() > 0) and (batch or begin())
  if kept then
    batch.count = batch.count + 1
    record(true, "move", batch.count, from, to)
  end
  local moved, reason = os.rename(from, to)
  if kept and moved then
    batch.byPath[from], batch.byPath[to], batch.changed = nil, nil, true
    batch.entries[#batch.entries + 1] = { id = batch.count, from = from, to = to }
  elseif kept then
    record(false, "same", batch.count)
  end
  return moved, reason and reason:gsub("^.*: ", "")
end

local function revert(first)
  settle()
  for _ = first, #batch.entries do
    local entry = table.remove(batch.entries)
    local done
    if entry.from then
      done = os.rename(entry.to, entry.from)
    elseif not entry.done then
      done = true
    elseif entry.info then
      done = host.copyFile(entry.old, entry.path)
    else
      done = os.remove(entry.path)
    end
    if done then
      record(false, "same", entry.id)
      batch.byPath[entry.path or ""] = nil
    else
      cli().warn(entry.path or entry.to, "could not be restored after the failure")
    end
  end
  batch.changed = #batch.entries > 0
end

local function remove(folder) os.execute("rm -rf " .. folders.quoted(folder)) end

-- Calls body(...). If it raises an error, restores all files that it has written, and raises the error
-- again. Works without a journal too, with copies in the temporary folder.
function journal.all(body, ...)
  settle()
  local outer, wasOff = batch, off
  local temporary = off or limit() == 0 or not journal.root()
  if temporary then
    batch, off = nil, false
    within = ("%s/zyl-%s"):format(os.getenv("TMPDIR") or "/tmp", process("self"))
  else
    within = journal.root()
  end
  local first = 1
  if batch then first, batch.byPath = #batch.entries + 1, {} end
  local results = table.pack(pcall(body, ...))
  if not results[1] and batch then revert(first) end
  settle()
  if temporary then
    remove(within)
    batch, off = outer, wasOff
  elseif batch and batch.bytes > limit() then
    remove(batch.folder)
    batch = nil
    disable(("the batch exceeds the journal's limit of %s (ZYL_UNDO_LIMIT): it cannot be undone"):format(
            journal.bytes(limit())))
  elseif batch then
    makeRoom(batch.root, 0)
  end
  within = nil
  if not results[1] then error(results[2], 0) end
  return table.unpack(results, 2, results.n)
end

-- Tells the user now if the files together exceed the limit; nothing is kept then.
function journal.expect(paths)
  local total = 0
  for _, path in ipairs(paths) do total = total + ((host.fileInfo(path) or {}).size or 0) end
  if not off and limit() > 0 and total > limit() then
    disable(("the files have %s, more than the journal's limit of %s (ZYL_UNDO_LIMIT): this batch cannot be undone")
            :format(journal.bytes(total), journal.bytes(limit())))
  end
end

-- Ends the batch, and removes it if no file was changed.
function journal.close()
  settle()
  if batch and batch.changed then
    record(false, "end")
  elseif batch then
    remove(batch.folder)
  end
  batch, off = nil, true
end

-- Also ends the batch of a script that does not call cli.finish.
journal.atExit = setmetatable({}, { __gc = function() pcall(journal.close) end })

return journal
