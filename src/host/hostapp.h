// The interface for applications that embed the host layer: loads modules, creates objects, fetches
// errors, delivers queued calls.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base.h"

// A loaded module. The destructor unloads the library: destroy all objects of its classes first.
class ZYLHOST_API ZylModule {
 public:
  // Loads the library and calls its RegisterAllClasses. Returns null and sets `reason` on failure.
  static std::unique_ptr<ZylModule> Load(const std::string& path, std::string& reason);
  ~ZylModule();
  ZylModule(const ZylModule&) = delete;
  ZylModule& operator=(const ZylModule&) = delete;

 private:
  explicit ZylModule(void* library) : library_(library) {}
  void* library_;
};

// Returns a new algorithm object with the dispatch of a registered class, which the caller owns;
// null for an unknown class.
ZYLHOST_API ROCAlgo* ZylNewScriptObject(const char* className);
// Returns a new object with that type name that is neither algorithm, pad nor sample. The caller
// owns it.
ZYLHOST_API RIOObject* ZylNewPlainObject(const std::string& typeName);
// Returns the names of the registered classes.
ZYLHOST_API std::vector<std::string> ZylClassNames();
// Returns the method table of a registered class, which ends with a null name; null for an unknown
// class.
ZYLHOST_API const ZylFuncInfo* ZylClassMethods(const char* className);

// An error that a script method reported. Comments name the kinds that set a member.
struct ZYLHOST_API ZylScriptError {
  enum Kind { kArgType, kArgPType, kArgValue, kArgUser, kException };
  Kind kind = kException;
  std::string method;    // all but kException; "Class::Method"
  std::string argument;  // kArgType, kArgValue
  int expected = 0;      // kArgType: the type code
  int position = 0;      // all but kException
  std::string given;     // kArgPType: the two class names
  std::string required;
  std::string message;  // kArgUser, kException; otherwise the readable line
  // The index that was out of range and the number of items, if the method reported them.
  struct Range {
    int32_t index;
    int32_t count;
  };
  std::optional<Range> range;

  const char* KindName() const;
  // Returns one line that describes the error to the user.
  std::string Readable() const;
};
// Moves the pending error to `error`. Returns false if no error is pending.
ZYLHOST_API bool ZylTakeError(ZylScriptError& error);
// Returns the name of a type code for messages ("integer").
ZYLHOST_API const char* ZylTypeName(int typeCode);

// Makes the calling thread the script thread. ZylModule::Load does so too.
ZYLHOST_API void ZylSetScriptThread();
ZYLHOST_API bool ZylIsScriptThread();
// Runs the pad sends that other threads have queued, in order, and returns their number. Waits up
// to `seconds` for the first. Call it on the script thread. A listener may itself pump: the inner
// pump runs the sends that follow.
ZYLHOST_API int ZylPump(double seconds);

// Sets the receiver of diagnostics. By default each is printed as a line on standard error.
ZYLHOST_API void ZylSetDiagnosticSink(std::function<void(std::string_view)> sink);

// Writes the file atomically. On failure returns false, leaves an existing file unchanged and sets
// `reason` to one line. `path` is UTF-8.
ZYLHOST_API bool ZylWriteFile(const std::string& path, std::string_view bytes, std::string& reason);

// Limits the bytes of freed script values and graphic objects that each thread keeps for reuse, and
// frees those of the calling thread. With 0 every allocation reaches the allocator, for tests of
// failed allocations.
ZYLHOST_API void ZylLimitFreeBlocks(size_t bytes);

// A preset of a SoundFont bank: its name (up to 20 characters) and the MIDI numbers that select it.
struct ZylPreset {
  std::string name;
  uint16_t bank = 0;
  uint16_t program = 0;
};
// Reads the presets of a bank (.sf2, .sf3) in file order. Returns false and leaves `presets`
// unchanged if the file is damaged or not a bank. `path` is UTF-8.
ZYLHOST_API bool ZylReadPresets(const std::string& path, std::vector<ZylPreset>& presets);
