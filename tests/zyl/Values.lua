-- Every kind of value on its way into a method and back.
local check = dofile(arg[0]:match("^(.*/)") .. "Check.lua")
local p = host.new("Probe")

-- One value of each type, its code, and its way back.
local list = { 1, 2.5, "x" }
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
check.equal(p:Types(list), "10")
check.equal(p:Types(host.null), "11")
local nan = p:Echo(0 / 0)
check.equal(nan ~= nan, true, "NaN stays NaN")

-- Absent arguments, and lists beyond the twelve entries inside.
check.equal(p:Count(), 0)
check.equal(p:Count(1, nil), 2)
check.equal(p:Count(nil), 1)
check.equal(p:Types(1, nil, "a"), "1 - 5")
check.equal(p:Types(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, true, nil, "z"),
            "1 1 1 1 1 1 1 1 1 1 1 1 4 - 5")

-- Results: none, null, one.
check.equal(select("#", p:Nothing()), 0)
check.equal(select("#", p:NullObject()), 1)
check.equal(p:NullObject(), nil)

-- What has no host value is an error before the call.
check.raises("Count: argument 2: the integer 2147483648 does not fit 32 bits", p.Count, p, 1, 1 << 31)
check.raises("does not fit 32 bits", p.Count, p, { { -2147483649 } })
check.raises("Count: argument 1: a function has no host value", p.Count, p, print)
check.raises("a userdata has no host value", p.Count, p, io.stdout)
local cycle = {}
cycle[1] = { cycle }
check.raises("the table contains itself", p.Count, p, cycle)
local deep = {}
for _ = 1, 40 do deep = { deep } end
check.raises("nested deeper than", p.Count, p, deep)
local shared = { 1 }
check.equal(p:Types({ shared, shared }), "10", "a table may stand twice in a list")

-- Lists come back into the table that was passed, tables inside stay the same tables.
local inner = { 5 }
local t = { 1, 2.5, "x", inner, p, host.null, n = "kept" }
p:Change(t)
check.equal(#t, 7)
check.equal(t[1], 2)
check.equal(t[2], 2.5)
check.equal(t[4], inner)
check.equal(t[4][1], 5)
check.equal(t[5], p)
check.equal(t[6], host.null)
check.equal(t[7], 0, "the new element")
check.equal(t.n, "kept")
p:Resize(t, 2)
check.equal(#t, 2)
check.equal(t[3], nil)
p:Resize(t, 0)
check.equal(#t, 0)
local echoed = p:Echo({ 1, { 2, host.null } })
check.equal(#echoed, 2)
check.equal(#echoed[2], 2)
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
p:Change(var)
check.equal(table.concat(var.value, " "), "2 4 0")
check.raises("'value' only", function() return var.valeu end)
check.raises("nil has no type", host.var, nil)

-- A value that the module keeps stays what it was, whatever calls come later.
for _, kept in ipairs { 1234, 0.5, "kept", p } do
  p:Keep(kept)
  for i = 1, 50 do p:Count(i, i + 0.5, "other", true) end
  check.equal(p:Kept(), kept)
end

-- Buffers.
local handle = p:Buffer()
check.equal(host.buffer(handle, 4), string.pack("<f", 0.5))
check.equal(table.concat(host.floats(handle, 4), " "), "0.5 -1.0 2.0 0.25")
check.equal(host.buffer(handle, 0), "")
check.raises("host.buffer", host.buffer, handle, 17)
check.raises("negative", host.buffer, handle, -1)
check.raises("host.floats", host.floats, handle, 5)
check.raises("host.floats", host.floats, handle, 0x7FFFFFFF)
check.raises("handle 0", host.buffer, 0, 0)
check.raises("host.buffer", host.buffer, handle + 1, 0)
check.raises("not known", host.buffer, 1 << 40, 0)
p:Buffer(true)
check.raises("host.buffer", host.buffer, handle, 4)

-- The processing rate.
host.sampleRate = 48000
check.equal(host.sampleRate, 48000.0)
check.raises("not a sample rate", function() host.sampleRate = 0 end)
check.raises("'samplerate'", function() host.samplerate = 1 end)
