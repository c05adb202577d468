-- Every kind of value as an argument and as a result.
local check = dofile(arg[0]:match("^(.*/)") .. "Check.lua")
local p = host.new("Probe")

-- One value of each type, and its type code.
for _, case in ipairs {
  { 7, "1" }, { -2147483648, "1" }, { 2147483647, "1" }, { 2.0, "8" }, { 1e300, "8" },
  { true, "4" }, { false, "4" }, { "", "5" }, { "a\0b\xff", "5" }, { p, "11" },
} do
  local value, code = table.unpack(case)
  check.equal(p:Types(value), code, "type code")
  local back = p:Echo(value)
  check.equal(back, value, "echo")
  check.equal(math.type(back), math.type(value), "kind of number")
end
check.equal(p:Types({ 1, 2.5, "x" }, host.null), "10 11")

-- Absent arguments, and lists of more than the twelve entries that are stored inline.
check.equal(p:Types(), "")
check.equal(p:Types(1, nil), "1 -")
check.equal(p:Types(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, true, nil, "z"),
            "1 1 1 1 1 1 1 1 1 1 1 1 4 - 5")

-- Results: none, null.
check.equal(select("#", p:Register(p)), 0)
check.equal(select("#", p:Echo(host.null)), 1)
check.equal(p:Echo(host.null), nil)

-- Values without a host type raise an error before the call.
check.raises("Types: argument 2: the integer 2147483648 does not fit 32 bits", p.Types, p, 1, 1 << 31)
check.raises("does not fit 32 bits", p.Types, p, { { -2147483649 } })
check.raises("Types: argument 1: a function has no host value", p.Types, p, print)
local cycle = {}
cycle[1] = { cycle }
check.raises("the table contains itself", p.Types, p, cycle)
local nested = { 1 }
for _ = 1, 15 do nested = { nested } end
check.equal(p:Types(nested), "10")
check.raises("nested deeper than 16", p.Types, p, { nested })
local shared = { 1 }
check.equal(p:Types({ shared, shared }), "10", "a list may hold a table twice")

-- Lists come back into the table that was passed, tables inside stay the same tables.
local inner = { 5 }
local t = { 1, 2.5, "x", inner, p, host.null, n = "kept" }
p:Change(t, 7)
for i, wanted in ipairs { 2, 2.5, "x", inner, p, host.null, 0 } do check.equal(t[i], wanted) end
check.equal(#t, 7)
check.equal(inner[1], 5)
check.equal(t.n, "kept")
p:Change(t, 2)
check.equal(#t, 2)
p:Change(t, 0)
check.equal(#t, 0)
local echoed = p:Echo({ 1, { 2, host.null } })
check.equal(#echoed, 2)
check.equal(echoed[2][2], host.null)

-- host.var: the value itself is passed.
for _, case in ipairs { { 21, 42 }, { 1.5, 3.0 }, { "a", "a!" } } do
  local var = host.var(case[1])
  check.equal(p:Types(var), p:Types(case[1]))
  p:Change(var)
  check.equal(var.value, case[2])
end
local var = host.var(host.null)
check.equal(var.value, nil)
p:Change(var)
check.equal(var.value, p)
var.value = { 1, 2 }
p:Change(var, 3)
check.equal(table.concat(var.value, " "), "2 4 0")
check.raises("nil has no type", host.var, nil)

-- Buffers.
local handle = p:Buffer()
check.equal(host.buffer(handle, 4), string.pack("<f", 0.5))
check.equal(table.concat(host.floats(handle, 4), " "), "0.5 -1.0 2.0 0.25")
check.raises("host.buffer", host.buffer, handle, 17)
check.raises("negative", host.buffer, handle, -1)
check.raises("host.floats", host.floats, handle, 0x7FFFFFFF)
check.raises("handle 0", host.buffer, 0, 0)
check.raises("no buffer", host.buffer, handle + 1, 0)
check.raises("unknown handle", host.buffer, 1 << 40, 0)
p:Buffer(true)
check.raises("host.buffer", host.buffer, handle, 4)

-- The processing rate.
host.sampleRate = 48000
check.equal(host.sampleRate, 48000.0)
check.raises("not a sample rate", function() host.sampleRate = 0 end)
