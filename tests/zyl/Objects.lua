-- Objects: identity, life, and the errors of calls on them.
local check = dofile(arg[0]:match("^(.*/)") .. "Check.lua")

-- Types, names, identity.
local p = host.new("Probe")
local q = host.new("Probe")
check.equal(host.typeof(p), "ROCAlgo")
check.equal(tostring(p), "ROCAlgo: Probe")
check.equal(p:Echo(q), q)
check.equal(p == q, false)
check.equal(({ [p] = 1 })[p:Echo(p)], 1, "an object is one table key")
check.equal(host.typeof(host.pad()), "RODPad")
check.equal(host.methods("Probe")[1], "Types")
check.equal(type(p.Types), "function")

-- Wrong names and wrong objects.
check.raises('no method "Tyeps"; did you mean "Types"?', function() return p:Tyeps() end)
check.raises("'Types'", function() p.Types = 1 end)
check.raises('host.null has no method "Types"', function() host.null:Types() end)
check.raises('there is no class "Nothing"', host.new, "Nothing")
for _, wrong in ipairs { host.pad(), host.algo {}, host.null, io.stdout, "p" } do
  check.raises("object:Types(...)", p.Types, wrong)
end
check.raises("expected an object, got an integer", host.typeof, 5)

-- Deleting: at once, and once.
local gone = host.new("Probe")
local var = host.var(gone)
host.delete(gone)
check.equal(var.value, nil)
check.equal(p:Echo(gone), nil)
check.raises("the object has been deleted", function() gone:Types() end)
check.raises("deleted", host.delete, gone)
check.equal(tostring(gone), "deleted object")

-- A variable keeps its object.
local kept = host.var(host.null)
kept.value = host.object("Kept")
collectgarbage()
check.equal(p:Echo(kept), kept.value)
check.raises("no method", function() kept.value:Missing() end)

-- Methods from coroutines.
local co = coroutine.wrap(function()
  coroutine.yield(p:Echo(1))
  p:Fail()
end)
check.equal(co(), 1)
check.raises("Fail: it never works", co)

-- Methods that a script adds to a class: existing objects have them too; the class's own names
-- cannot be replaced, and a refused table adds nothing.
check.raises("functions by name", host.extend, "Probe", { First = 5 })
check.raises("no class 'Nothing'", host.extend, "Nothing", {})
check.raises("already has a method 'Types'", host.extend, "Probe", { Types = print, Twice = print })
check.raises('no method "Twice"', function() return p:Twice() end)
host.extend("Probe", { Twice = function(self, x) return self:Echo(x) * 2 end })
check.equal(p:Twice(4), 8)
check.raises('did you mean "Twice"?', function() return p:Twise() end)
