-- luacheck settings for ./dev lint.
std = "lua54"
globals = { "host" }
max_line_length = false
