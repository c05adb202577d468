-- What a format cannot express of a program: fields, reasons and keygroups.
local losses = {}
losses.__index = losses

function losses.new() return setmetatable({ list = {}, byKey = {} }, losses) end

-- Adds a loss; `keygroup` from 1, or nil for the whole program.
function losses:add(field, reason, keygroup)
  local key = field .. "\0" .. reason
  local it = self.byKey[key]
  if not it then
    it = { field = field, reason = reason, keygroups = {}, has = {} }
    self.byKey[key], self.list[#self.list + 1] = it, it
  end
  if keygroup and not it.has[keygroup] then
    it.has[keygroup], it.keygroups[#it.keygroups + 1] = true, keygroup
  end
end

-- Lines such as "KGfilterType, keygroups 1-3, 5: two poles instead of four".
function losses:lines()
  local lines = {}
  for i, it in ipairs(self.list) do
    table.sort(it.keygroups)
    local runs = {}
    for _, k in ipairs(it.keygroups) do
      local run = runs[#runs]
      if run and run.last == k - 1 then run.last = k else runs[#runs + 1] = { first = k, last = k } end
    end
    for r, run in ipairs(runs) do
      runs[r] = run.first == run.last and tostring(run.first) or run.first .. "-" .. run.last
    end
    local where = #runs == 0 and "" or (", keygroup%s %s"):format(#it.keygroups > 1 and "s" or "",
                                                                   table.concat(runs, ", "))
    lines[i] = it.field .. where .. ": " .. it.reason
  end
  return lines
end

return losses
