-- zyl undo: lists what verbs have written, and restores the files that they replaced.
local batches = require "batches"
local cli = require "cli"
local folders = require "folders"
local journal = require "journal"
local json = require "json"
local progress = require "progress"
local text = require "text"

local options, words = cli.parse {
  verb = "undo", optional = true, operands = "[N]",
  about = "Restores the files that batch N replaced, renamed or created: byte for byte, with mode and\n"
       .. "time. Without N lists the batches: each verb that has written files is one. Restoring is a\n"
       .. "batch too, so it can be undone.",
  options = {
    { name = "last", help = "restore the newest batch that is not undone; repeated, one more" },
    { name = "redo", help = "take the last undo back" },
    { name = "show", kind = "integer", value = "N", low = 1, high = 2147483647,
      help = "list the files of batch N" },
    { name = "force", help = "restore also files that have changed since the batch" },
    { name = "keep-changed", help = "restore the others if some files have changed since the batch" },
    { name = "dry-run", help = "print what would be restored, but write nothing" },
    { name = "json", help = "print a JSON list, one object per batch or file" },
  },
  more = "If a file has changed since the batch, nothing is restored unless --force or --keep-changed is given.\n"
      .. "The journal is in $XDG_STATE_HOME/zyl/undo or ~/.local/state/zyl/undo. Its limit, 1 GB, is set\n"
      .. "by the environment variable ZYL_UNDO_LIMIT (such as 500M; 0 keeps nothing): the oldest\n"
      .. "batches are removed first.",
}
if #words > 1 or #words == 1 and not words[1]:match("^[1-9]%d*$") then cli.usage("give one number N") end
if #words + (options.last and 1 or 0) + (options.redo and 1 or 0) + (options.show and 1 or 0) > 1 then
  cli.usage("give N, --last, --redo or --show N")
end
if not batches.root() then cli.usage("neither XDG_STATE_HOME nor HOME is set: there is no journal") end

local WIDTH = 60  -- of a command in the list

-- All batches by number, and by number the batches that restore them.
local all, byNumber, restorers = batches.list(), {}, {}
for _, found in ipairs(all) do
  byNumber[found.number] = found
  if found.undoes then
    restorers[found.undoes] = restorers[found.undoes] or {}
    table.insert(restorers[found.undoes], found)
  end
end

local function isUndo(found) return found.undoes ~= nil or found.command[1] == "undo" end

-- Whether another batch has restored a batch, and is not undone itself.
local function isUndone(found)
  for _, other in ipairs(restorers[found.number] or {}) do
    if other.ended and other.number > found.number and not isUndone(other) then return true end
  end
  return false
end

local function command(found)
  local undone = byNumber[found.undoes]
  if undone and undone.undoes then return "redo of " .. undone.undoes end
  if found.undoes then return "undo of " .. found.undoes end
  local parts = {}
  for i, word in ipairs(found.command) do
    parts[i] = word:match("^[%w_./=,:+@%%-]+$") and word or folders.quoted(word)
  end
  return text.printable(table.concat(parts, " "))
end

-- Cuts a text at its end.
local function cut(s)
  if text.width(s) <= WIDTH then return s end
  local stop = utf8.len(s) and utf8.offset(s, WIDTH) or WIDTH
  return s:sub(1, stop - 1) .. "…"
end

local function state(found)
  return found.running and "running" or not found.ended and "interrupted" or isUndone(found) and "undone" or nil
end

local function changedFiles(found)
  local count = 0
  for _, entry in ipairs(found.entries) do count = count + (entry.same and 0 or 1) end
  return count
end

local function list()
  local rows, printer = { { "N", "files", "size", "command", "time" } }, cli.printer(options.json)
  for i, found in ipairs(all) do
    local time = os.date("%Y-%m-%d %H:%M:%S", found.time)
    if options.json then
      local words_ = {}
      for k, word in ipairs(found.command) do words_[k] = word end
      printer.result(i, json.object("batch", found.number, "time", time, "command", json.list(words_),
        "folder", found.cwd, "files", changedFiles(found), "bytes", found.bytes, "undoes", found.undoes,
        "state", state(found)))
    end
    rows[i + 1] = { tostring(found.number), tostring(changedFiles(found)), batches.bytes(found.bytes),
                    cut(command(found)), time .. (state(found) and "  " .. state(found) or "") }
  end
  if options.json then
    printer.close()
  elseif #rows > 1 then
    io.write(text.columns(rows, { true, false, false, true, true }))
  else
    cli.note(nil, "there is nothing to undo")
  end
end

-- What to do for a batch, in reverse order of its entries: a list of { entry, does } with, if a
-- file is not in the state in which the batch left it, why. Nothing is changed: `now` holds the
-- states after the steps before.
local function plan(found)
  local steps, now = {}, {}
  local function current(path)
    if not now[path] then now[path] = host.fileType(path) and (host.digest(path) or "?") or "-" end
    return now[path]
  end
  local function before(entry)
    if not entry.size then return "-" end
    local old = found.folder .. "/" .. entry.id .. ".old"
    local info = host.fileInfo(old)
    -- Another program may have written to a hard link of the kept file.
    if not info or info.size ~= entry.size or info.modified ~= entry.modified then return nil end
    return host.digest(old)
  end
  for i = #found.entries, 1, -1 do
    local entry = found.entries[i]
    local step = { entry = entry }
    if entry.from then
      local there, free = current(entry.to) ~= "-", current(entry.from) == "-"
      step.does = "rename"
      if not there and not free then
        step.does = nil
      elseif not there then
        step.lost = entry.to .. " is missing"
      elseif not free then
        step.lost = entry.from .. " exists again"
      else
        now[entry.from], now[entry.to] = now[entry.to], "-"
      end
    elseif not entry.same then
      local was = before(entry)
      if not was then
        step.does, step.lost = "replace", "the kept file is missing or damaged"
      elseif was ~= current(entry.path) then
        step.does = was == "-" and "remove" or current(entry.path) == "-" and "create" or "replace"
        if not entry.after then
          step.changed = "was being written when the batch was interrupted"
        elseif entry.after ~= current(entry.path) then
          step.changed = "has changed since"
        end
        if not step.changed or options.force then now[entry.path] = was end
      end
    end
    if step.does then steps[#steps + 1] = step end
  end
  return steps
end

local function restore(found, step)
  local entry = step.entry
  folders.make((entry.from or entry.path):match("^(.*)/") .. "/")
  if step.does == "rename" then
    local done, reason = journal.move(entry.to, entry.from)
    return done or error(reason, 0)
  end
  journal.keep(entry.path)
  local done, reason
  if step.does == "remove" then
    done, reason = os.remove(entry.path)
  else
    done, reason = host.copyFile(found.folder .. "/" .. entry.id .. ".old", entry.path)
  end
  return done or error(reason, 0)
end

local DONE = { rename = "renamed back", remove = "removed", create = "restored", replace = "restored" }

local function shown(step)
  local entry = step.entry
  local path = text.printable(entry.from and entry.to .. " -> " .. entry.from or entry.path)
  return path .. ": " .. (step.failure or step.restored and DONE[step.does]
         or step.lost or step.changed or "would be " .. DONE[step.does]) .. "\n"
end

local function printSteps(steps)
  local printer = cli.printer(options.json)
  for i, step in ipairs(steps) do
    local entry = step.entry
    printer.result(i, options.json and json.object("file", entry.from and entry.to or entry.path,
      "error", step.failure or step.lost or step.changed, "action", step.does, "to", entry.from,
      "restored", step.restored == true) or not options.json and shown(step) or nil)
  end
  printer.close()
end

local function read(number)
  local found = batches.read(number)
  if not found then cli.usage("there is no batch " .. number .. ": 'zyl undo' lists them") end
  return found
end

local function counted(steps, isCounted, word)
  local total, done = 0, 0
  for _, step in ipairs(steps) do
    if isCounted(step) then
      total, done = total + 1, done + (step.restored and 1 or 0)
    end
  end
  if total == 0 then return nil end
  return ("%s%d file%s %s"):format(done < total and done .. " of " or "", total, total == 1 and "" or "s", word)
end

local function summary(steps)
  local parts = {}
  parts[1] = counted(steps, function(step) return step.does ~= "remove" end, "restored")
  parts[#parts + 1] = counted(steps, function(step) return step.does == "remove" end, "removed")
  return table.concat(parts, ", ")
end

-- Removes the folders that a batch created, if they are empty now.
local function removeFolders(found)
  for i = #found.made, 1, -1 do os.remove(found.made[i]) end
end

local function undo(found)
  if found.running then cli.usage("batch " .. found.number .. " is still running") end
  batches.hold(found)
  local steps, refused, files = plan(found), 0, {}
  if #steps == 0 then
    cli.failed(nil, ("batch %d is already undone"):format(found.number))
  end
  for _, step in ipairs(steps) do
    local obstacle = step.lost or not options.force and step.changed
    if obstacle then
      cli.failed(step.entry.path, obstacle)
      refused = refused + 1
    end
    files[#files + 1] = not step.entry.from and step.entry.path or nil
  end
  local restores = not options["dry-run"] and (refused == 0 or options["keep-changed"])
  if restores then journal.expect(files) end
  local complete = restores and #steps > 0
  for i, step in ipairs(steps) do
    if restores and not step.lost and (options.force or not step.changed) then
      progress.show((i - 1) / #steps, step.entry.path)
      local reason
      step.restored, reason = cli.try(restore, found, step)
      step.failure = reason
      if reason then cli.failed(step.entry.path, reason) end
      complete = complete and not reason
    end
  end
  progress.hide()
  if complete then
    journal.remark("undoes", found.number)
    removeFolders(found)
  end
  if options.json or options["dry-run"] then printSteps(steps) end
  if not options.json and not options["dry-run"] and #steps > 0 then
    io.write(("%s%s\n"):format(summary(steps), refused > 0 and not restores
             and (": %d cannot be; see --force and --keep-changed"):format(refused) or ""))
  end
end

-- The newest batch for --last, or for --redo the newest undo of a batch that was no undo.
local function newest()
  for i = #all, 1, -1 do
    local found = all[i]
    local of = byNumber[found.undoes]
    local fits = not isUndo(found)
    if options.redo then fits = found.undoes ~= nil and not (of and of.undoes) end
    if fits and not isUndone(found) then return found.number end
  end
  cli.usage(options.redo and "there is nothing to redo" or "there is nothing to undo")
end

if options.show then
  printSteps(plan(read(options.show)))
elseif options.last or options.redo or words[1] then
  undo(read(words[1] or newest()))
else
  list()
end
cli.finish()
