-- The fields of a program, accessed through script methods: header (PRG), keygroups (KG), zones
-- (Zone). Their values are described by values.lua.
local fields = {}

-- Methods of these families that are not fields: they act, are computed, or duplicate other fields.
local NO_FIELDS = {}
for name in ([[PRGkeyGroups PRGIntValue PRGStringValue PRGtmMidiChannel KGCreate KGDelete KGFindByKey
               KGMove KGSort KGIntValue KGStringValue ZoneSampleSet ZoneSampleExists Zonename
               ZoneIntValue ZoneStringValue]]):gmatch("%a+") do
  NO_FIELDS[name] = true
end
local DETUNES = 13

local all

-- All fields in method table order: method, name (as shown), short (without the family), family,
-- and for an element of a list its index.
function fields.all()
  if all then return all end
  all = {}
  for _, method in ipairs(host.methods()) do
    local family = method:match("^PRG") or method:match("^KG") or method:match("^Zone")
    if family and not NO_FIELDS[method] then
      for index = 0, method == "PRGmasterDetune" and DETUNES - 1 or 0 do
        local name = method == "PRGmasterDetune" and method .. "[" .. index .. "]" or method
        all[#all + 1] = { method = method, name = name, short = name:sub(#family + 1),
                          family = family, index = name ~= method and index or nil }
      end
    end
  end
  return all
end

-- Keygroup and zone count from 0; families without them ignore them.
function fields.read(program, field, keygroup, zone)
  local call = program[field.method]
  if field.family == "KG" then return call(program, keygroup) end
  if field.family == "Zone" then return call(program, keygroup, zone) end
  return call(program, field.index)
end

function fields.write(program, field, value, keygroup, zone)
  local call = program[field.method]
  if field.family == "KG" then
    call(program, keygroup, value)
  elseif field.family == "Zone" then
    call(program, keygroup, zone, value)
  elseif field.index then
    call(program, field.index, value)
  else
    call(program, value)
  end
end

-- Finds a field by name, with or without its family, ignoring case; `family` decides between
-- several fields with the name. Returns nil and the reason if there is none, or more than one.
function fields.find(name, family)
  local lower, found = name:lower(), {}
  for _, field in ipairs(fields.all()) do
    if field.name:lower() == lower then return field end
    if field.short:lower() == lower then found[#found + 1] = field end
  end
  if #found == 1 then return found[1] end
  for _, field in ipairs(found) do
    if field.family == family then return field end
  end
  if #found > 1 then
    local names = {}
    for i, field in ipairs(found) do names[i] = field.name end
    return nil, ("'%s' is ambiguous: %s"):format(name, table.concat(names, " or "))
  end
  local known, seen = {}, {}
  for _, field in ipairs(fields.all()) do
    for _, spelling in ipairs { field.name, field.short } do
      if not seen[spelling] then known[#known + 1] = spelling end
      seen[spelling] = true
    end
  end
  return nil, ("there is no field '%s'%s"):format(name, host.suggestion(name, known))
end

-- Calls each(field, keygroup, zone) for every field of a program with that many keygroups.
function fields.walk(keygroups, each)
  for _, field in ipairs(fields.all()) do
    for k = 0, field.family == "PRG" and 0 or keygroups - 1 do
      for z = 0, field.family == "Zone" and 3 or 0 do each(field, k, z) end
    end
  end
end

-- Formats rows { field, keygroup, zone, text… }, in the order of fields.walk, for display.
-- Keygroups and zones count from 1; rows of consecutive keygroups with the same text are merged.
function fields.rows(list)
  local runs, open = {}, {}
  for _, row in ipairs(list) do
    local key = table.concat({ row.field.name, row.field.family == "Zone" and row.zone or "",
                               table.unpack(row, 1, #row) }, "\0")
    local run = open[key]
    if run and row.field.family ~= "PRG" and run.last == row.keygroup - 1 then
      run.last = row.keygroup
    else
      run = { row = row, first = row.keygroup, last = row.keygroup }
      open[key], runs[#runs + 1] = run, run
    end
  end
  local texts = {}
  for i, run in ipairs(runs) do
    local where = ""
    if run.row.field.family ~= "PRG" then
      where = "keygroup " .. run.first + 1 .. (run.last > run.first and "-" .. run.last + 1 or "")
    end
    if run.row.field.family == "Zone" then where = where .. " zone " .. run.row.zone + 1 end
    texts[i] = { run.row.field.name, where, table.unpack(run.row, 1, #run.row) }
  end
  return texts
end

return fields
