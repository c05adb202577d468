-- Objects: identity, life, and the errors of calls on them.
local check = dofile(arg[0]:match("^(.*/)") .. "Check.lua")

-- Types, names, identity.
local p = host.new("Probe")
local q = host.new("Probe")
check.equal(host.typeof(p), "ROCAlgo")
check.equal(tostring(p), "ROCAlgo: Probe")
check.equal(p:Self(), p)
check.equal(p:Echo(q), q)
check.equal(p == q, false)
check.equal(({ [p] = 1 })[p:Self()], 1, "an object is one table key")
check.equal(p:GetThing(), p:GetThing())
check.equal(host.typeof(p:GetThing()), "Thing")
check.equal(host.typeof(host.object("Gadget")), "Gadget")
check.equal(host.typeof(host.pad()), "RODPad")
check.equal(host.typeof(host.algo {}), "ROCAlgo")
local names = host.methods("Probe")
check.equal(names[1], "Count")
check.equal(names[#names], "Buffer")
check.equal(type(p.Count), "function")
check.equal(p.Count, q.Count)

-- Wrong names and wrong objects.
check.raises("Probe has no method 'Conut'; did you mean Count?", function() return p:Conut() end)
check.raises("Probe has no method 'Zzzzzz'", function() return p.Zzzzzz end)
check.raises("'Count'", function() p.Count = 1 end)
check.raises("host.null has no method 'Count'", function() host.null:Count() end)
check.raises("Thing has no method 'Count'", function() p:GetThing():Count() end)
check.raises("there is no class 'Nothing'", host.new, "Nothing")
for _, wrong in ipairs { host.pad(), host.algo {}, host.null, io.stdout, 5, "p" } do
  check.raises("object:Count(...)", p.Count, wrong)
end
check.raises("object:Count(...)", p.Count)
check.raises("an object was expected", host.typeof, 5)

-- Deleting: at once, once, and only what the script owns.
local gone = host.new("Probe")
local var = host.var(gone)
check.equal(var.value, gone)
host.delete(gone)
check.equal(var.value, nil)
check.equal(p:Echo(gone), nil)
check.raises("the object has been deleted", function() gone:Count() end)
check.raises("deleted", host.delete, gone)
check.raises("deleted", host.typeof, gone)
check.equal(tostring(gone), "deleted object")
check.raises("does not own", host.delete, p:GetThing())

-- An object of the module that is gone, also when a new one takes its place.
local thing = p:GetThing()
p:DropThing()
check.raises("deleted", host.typeof, thing)
check.equal(host.typeof(p:GetThing()), "Thing")
check.equal(p:GetThing() == thing, false)

-- Collected objects are gone for the module too.
local watch = host.var(host.null)
do
  local lost = host.object("Lost")
  watch.value = lost
end
check.equal(watch.value ~= nil, true)
collectgarbage()
collectgarbage()
check.equal(watch.value, nil)

-- Many short-lived objects, some of which live on in variables.
local held = {}
for i = 1, 2000 do
  local object = host.new("Probe")
  if i % 7 == 0 then held[#held + 1] = object end
  check.equal(object:Self(), object)
end
for _, object in ipairs(held) do check.equal(object:Count(1), 1) end

-- Methods from coroutines.
local co = coroutine.wrap(function()
  for i = 1, 3 do coroutine.yield(p:Echo(i)) end
  p:Fail()
end)
for i = 1, 3 do check.equal(co(), i) end
check.raises("Probe::Fail: it never works", co)
