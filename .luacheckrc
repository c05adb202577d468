-- The settings of luacheck, which ./dev lint runs over the Lua sources.
std = "lua54"
globals = { "host" }
max_line_length = false
