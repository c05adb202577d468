-- The functions for files: zyl run Files.lua FOLDER
local check = dofile(arg[0]:match("^(.*/)") .. "Check.lua")
local a, b, folder = arg[1] .. "/a", arg[1] .. "/b", arg[1]

check.equal(host.writeFile(a, "12"), true)
check.equal(host.appendFile(a, "3"), true)
check.equal(host.fileInfo(a).size, 3)
check.equal(host.absolutePath(folder .. "/x/../a"), host.absolutePath(a))
assert(os.execute(("chmod 640 '%s' && touch -d 2001-02-03T04:05:06 '%s'"):format(a, a)))
for _, link in ipairs { false, true } do
  os.remove(b)
  check.equal(host.copyFile(a, b, link), true)
  for _, field in ipairs { "type", "size", "mode", "modified" } do
    check.equal(host.fileInfo(b)[field], host.fileInfo(a)[field], field)
  end
  check.equal(host.digest(b), host.digest(a))
  host.appendFile(b, "4")
  check.equal(host.digest(b) == host.digest(a), link, "a link shares changes")
end
check.equal(host.digest(a) == host.digest("/dev/null"), false)
for _, call in ipairs { "fileType", "fileInfo", "digest" } do
  local result, reason = host[call](folder .. "/none")
  check.equal(result, nil, call)
  check.equal(reason, "No such file or directory", call)
  check.raises("zero byte", host[call], "a\0b")
end
check.equal(host.copyFile(folder, b), nil)
check.equal(host.copyFile(a, folder .. "/none/b"), nil)
check.equal(host.appendFile(folder, "x"), nil)
check.equal(host.fileInfo(b).size, 4, "nothing was changed")
