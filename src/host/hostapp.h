// What an application that embeds the host layer needs besides the framework itself: loading
// modules, making objects, fetching errors, delivering queued pad sends.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base.h"

// A loaded module. Destroying it unloads the library; objects of its classes must be gone by then.
class ZYLHOST_API ZylModule {
 public:
  // Loads the library and calls its RegisterAllClasses. Null, with a reason, when it cannot be.
  static std::unique_ptr<ZylModule> Load(const std::string& path, std::string& reason);
  ~ZylModule();
  ZylModule(const ZylModule&) = delete;
  ZylModule& operator=(const ZylModule&) = delete;

 private:
  explicit ZylModule(void* library) : library_(library) {}
  void* library_;
};

// An algorithm object with a dispatch of a registered class; null for an unknown class.
ZYLHOST_API ROCAlgo* ZylNewScriptObject(const char* className);
// A plain object of that type name: neither algorithm, pad nor sample.
ZYLHOST_API RIOObject* ZylNewPlainObject(const std::string& typeName);
// The names of the registered classes.
ZYLHOST_API std::vector<std::string> ZylClassNames();
// The method table of a registered class, ended by a null name; null for an unknown class.
ZYLHOST_API const ZylFuncInfo* ZylClassMethods(const char* className);

struct ZYLHOST_API ZylScriptError {
  enum Kind { kArgType, kArgPType, kArgValue, kArgUser, kException };
  Kind kind = kException;
  std::string method;    // qualified, all but kException
  std::string argument;  // kArgType, kArgValue
  int expected = 0;      // kArgType: the type code
  int position = 0;      // all but kException
  std::string given;     // kArgPType: the two class names
  std::string required;
  std::string message;  // kArgUser, kException; otherwise the readable line
  // The index that was out of range and the number of items, where the method gave them.
  struct Range {
    int32_t index;
    int32_t count;
  };
  std::optional<Range> range;

  const char* KindName() const;
  // One line that says what was wrong, for people.
  std::string Readable() const;
};
// Moves the pending error out; false when there is none.
ZYLHOST_API bool ZylTakeError(ZylScriptError& error);
// The name of a type code for people ("integer").
ZYLHOST_API const char* ZylTypeName(int typeCode);

// Makes the calling thread the script thread (the thread that first loads a module is).
ZYLHOST_API void ZylSetScriptThread();
ZYLHOST_API bool ZylIsScriptThread();
// Puts a call into the queue that ZylPump delivers on the script thread; from any thread.
ZYLHOST_API void ZylPost(std::function<void()> call);
// Makes the calls that wait, in the order in which they were posted; waits up to `seconds` for the
// first. Returns how many it made. A call may pump in turn: the inner pump makes the next calls.
ZYLHOST_API int ZylPump(double seconds);

// Where diagnostics go; by default a line each on standard error.
ZYLHOST_API void ZylSetDiagnosticSink(std::function<void(std::string_view)> sink);

// Makes the file hold these bytes, whole: on any failure it stays as it was, and `reason` says in
// one line what went wrong. `path` is UTF-8.
ZYLHOST_API bool ZylWriteFile(const std::string& path, std::string_view bytes, std::string& reason);

// How many bytes of freed script values and graphic objects each thread keeps for reuse; frees what
// this thread keeps. With 0, every allocation reaches the allocator, as tests of it need.
ZYLHOST_API void ZylLimitFreeBlocks(size_t bytes);

// A preset of a SoundFont bank: its name of up to 20 characters, and the MIDI numbers that select
// it.
struct ZylPreset {
  std::string name;
  uint16_t bank = 0;
  uint16_t program = 0;
};
// Reads the presets of a bank (.sf2, .sf3) in file order. False, and `presets` unchanged, when the
// file is damaged or of another kind. `path` is UTF-8.
ZYLHOST_API bool ZylReadPresets(const std::string& path, std::vector<ZylPreset>& presets);
