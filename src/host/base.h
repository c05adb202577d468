// The host's object framework: script objects and values, argument lists, dispatch by method name,
// class registration, error reporting, pads.
//
// Ownership. A ROCParam refers to an object weakly: it becomes null when the object is destroyed.
// ROCParams and lists own counted references to their values. Everything must be used on the script
// thread, unless noted otherwise.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "export.h"

class GOContainer;
class RIOObject;
class ROCAlgo;
class ROCPad;
class ROCParam;
class ROCParams;
class ZylDispatch;
struct hashEntry;

// Type codes of script values.
enum ZylTypeCode : int {
  kTypeInteger = 1,
  kTypeBool = 4,
  kTypeString = 5,
  kTypeDouble = 8,
  kTypeData = 9,  // a byte block, the data value of a pad
  kTypeArray = 10,
  kTypeObject = 11,
};

// Shared by a RIOObject and the values that refer to it: the object's address, null after its
// destruction.
struct RIOAnchor {
  std::atomic<RIOObject*> object;
  std::atomic<int32_t> holders;
};

// Base class of all objects that script values can refer to.
class ZYLHOST_API RIOObject {
 public:
  virtual ~RIOObject();
  virtual int GetTypeID() const;
  virtual const char* GetTypeName() const;
  virtual bool isCSample() const;
  virtual bool isROCAlgo() const;
  virtual bool isRODPad() const;
  virtual bool isSolidColor() const;
  // The dispatch for script calls if `script` is true and the object has one; otherwise null.
  virtual ZylDispatch* GetDispatch(bool script);

  RIOObject(const RIOObject&) = delete;
  RIOObject& operator=(const RIOObject&) = delete;

 protected:
  RIOObject() = default;

 private:
  friend class ROCParam;
  RIOAnchor* anchor_ = nullptr;
};

// A script value. Stores up to 8 bytes inline and longer data on the heap.
class ZYLHOST_API ROCParam {
 public:
  ROCParam();  // a null object
  explicit ROCParam(int32_t value);
  explicit ROCParam(bool value);
  explicit ROCParam(double value);
  explicit ROCParam(const char* text);
  explicit ROCParam(std::string_view text);
  explicit ROCParam(RIOObject* object);
  static ROCParam* NewArray(int count);
  static ROCParam* NewData(const void* bytes, int size);
  ROCParam(const ROCParam& other);
  ROCParam& operator=(const ROCParam& other);
  // Moving never allocates. The source keeps some valid value.
  ROCParam(ROCParam&& other) noexcept : value_(other.value_), type_(other.type_) {
    other.type_ = kTypeInteger;
  }
  ROCParam& operator=(ROCParam&& other) noexcept {
    std::swap(value_, other.value_);
    std::swap(type_, other.type_);
    return *this;
  }
  ~ROCParam() {
    if (OwnsMore()) Clear();
  }
  // Pooled: each script call creates and frees a value or two.
  static void* operator new(size_t size);
  static void* operator new(size_t, void* place) noexcept { return place; }
  static void operator delete(void* memory, size_t size) noexcept;

  // Same type and value; objects are compared by identity.
  bool operator==(const ROCParam& other) const;

  int Type() const { return type_; }
  int32_t Int() const { return value_.integer; }
  bool Bool() const { return value_.boolean; }
  double Double() const { return value_.real; }
  const std::string& Str() const { return *value_.text; }
  // The object, or null if it has been destroyed.
  RIOObject* Object() const {
    return type_ != kTypeObject || value_.anchor == nullptr ? nullptr
                                                            : value_.anchor->object.load();
  }

  // SetInt, SetBool and SetDouble have no effect on values of other types; SetStr and SetRIOPtr
  // change the type.
  void SetInt(int32_t value) {
    if (type_ == kTypeInteger) value_.integer = value;
  }
  void SetBool(bool value) {
    if (type_ == kTypeBool) value_.boolean = value;
  }
  void SetDouble(double value) {
    if (type_ == kTypeDouble) value_.real = value;
  }
  void SetStr(std::string_view text);
  // Swaps the text of a string value without allocating; no effect on other types.
  void SwapStr(std::string& text) noexcept {
    if (type_ == kTypeString) value_.text->swap(text);
  }
  void SetRIOPtr(RIOObject* object);

  // Size in bytes: for a byte block its length, for an array 4 per element.
  int GetSize() const;
  // Resizes a byte block (new bytes 0) or an array (new elements integer 0) to `bytes`.
  void SetSize(int bytes);
  void SetData(const void* bytes, int size);
  // Takes ownership of the block without copying it.
  void TakeData(std::unique_ptr<char[]> bytes, int size);
  std::byte* Data();
  ROCParam& Element(int index);
  int ElementCount() const;

  // A saturated count stays saturated: the value is then leaked rather than freed while in use.
  void AddReference() {
    if (references_ != UINT16_MAX) ++references_;
  }
  int References() const { return references_; }
  // Returns true if this was the last reference and the value must be freed.
  bool DropReference() { return references_ != UINT16_MAX && --references_ == 0; }

 private:
  // Whether the destructor must release memory or a reference.
  bool OwnsMore() const {
    return type_ != kTypeInteger && type_ != kTypeBool && type_ != kTypeDouble;
  }
  void Clear();
  void CopyFrom(const ROCParam& other);
  struct ByteBlock;
  union Value {
    int32_t integer;
    bool boolean;
    double real;
    std::string* text;
    RIOAnchor* anchor;
    ByteBlock* bytes;
    std::vector<ROCParam>* elements;
  } value_;
  uint8_t type_;
  uint16_t references_ = 1;
};

ZYLHOST_API ROCParam* newROCParam(int32_t value);
ZYLHOST_API ROCParam* newROCParam(bool value);
ZYLHOST_API ROCParam* newROCParam(double value);
ZYLHOST_API ROCParam* newROCParam(const char* text);
ZYLHOST_API ROCParam* newROCParam(std::string_view text);
ZYLHOST_API ROCParam* newROCParam(RIOObject* object);
// Drops one reference and frees the value if it was the last; ignores null.
ZYLHOST_API void deleteROCParam(ROCParam* value);
struct ROCParamRelease {
  void operator()(ROCParam* value) const { deleteROCParam(value); }
};
// Owns one reference to a value.
using ROCParamPtr = std::unique_ptr<ROCParam, ROCParamRelease>;

// An argument list: 12 entries inline, more on the heap. Owns one reference to each entry. An entry
// may be null (an absent argument).
class ZYLHOST_API ROCParams {
 public:
  static constexpr int kInside = 12;

  ROCParams() = default;
  ~ROCParams() {
    if (count > 0) Clear();
  }
  ROCParams(const ROCParams&) = delete;
  ROCParams& operator=(const ROCParams&) = delete;

  // Takes ownership of one reference to `value`, even if it throws.
  void AddTail(ROCParam* value) {
    if (count < kInside) {
      entries[count++] = value;
    } else {
      AddTail_more(value);
    }
  }
  void AddTail_more(ROCParam* value);
  // The entry at 0-based `index`; null if out of range.
  ROCParam* Entry(int index) const {
    if (index < 0 || index >= count) return nullptr;
    return index < kInside ? entries[index] : (*overflow)[static_cast<size_t>(index - kInside)];
  }

  int count = 0;
  ROCParam* entries[kInside];
  std::vector<ROCParam*>* overflow = nullptr;

 private:
  void Clear();
};

// A script method handler: takes the arguments and the address of the result, and returns 0 or the
// status of the reporting function that it called.
using ZylHandler = int (ZylDispatch::*)(ROCParams*, ROCParam**);

struct ZylFuncInfo {
  const char* name;  // null terminates a table
  ZylHandler handler;
  int flag;
  uint16_t nextInBucket;  // this and `hash` belong to the host's hash table
  uint16_t hash;
};

// A copy of a script object's state, to roll back changes.
class ZYLHOST_API ZylState : public RIOObject {
 public:
  explicit ZylState(RIOObject* object) : object_(object) {}
  const char* GetTypeName() const override;  // "ZylState"
  // The object; null after its destruction.
  RIOObject* Object() const { return object_.Object(); }
  // Restores the state without allocating memory. Returns false, and does nothing, if the object
  // has been destroyed or this state was restored before.
  virtual bool Restore() noexcept = 0;

 private:
  const ROCParam object_;
};

// An object's methods as called by scripts.
class ZYLHOST_API ZylDispatch {
 public:
  virtual ZylFuncInfo* GetFuncTable() = 0;
  virtual uint32_t* GetAuxTable() = 0;
  virtual hashEntry* GetHashTable() = 0;
  virtual hashEntry* RebuildHashTable() = 0;
  virtual const char* GetClassName() const = 0;
  virtual const char* GetBaseClassName() const = 0;
  virtual void Destroy() = 0;
  virtual ~ZylDispatch();
  // Calls a method by name. Returns kNoSuchMethod, without reporting an error, if it doesn't exist.
  virtual int CallFunctionIndirect(const char* name, ROCParams* arguments, ROCParam** result);
  // Calls a method that was looked up earlier.
  virtual int CallFunctionDirect(const ZylFuncInfo& method, ROCParams* arguments,
                                 ROCParam** result);
  virtual bool isTemp() const;
  virtual bool isScript() const;
  virtual void NoOp() {}
  // Copies the state of the object. Null if the class doesn't support this; throws std::bad_alloc
  // without memory.
  virtual std::unique_ptr<ZylState> SaveState();

  ZylDispatch(const ZylDispatch&) = delete;
  ZylDispatch& operator=(const ZylDispatch&) = delete;

  static constexpr int kNoSuchMethod = -1;

  // The object that this dispatch belongs to.
  RIOObject* owner = nullptr;

 protected:
  ZylDispatch() = default;
  uint32_t hostWord = 0;
};

// A dispatch whose class is implemented in a loaded module.
class ZYLHOST_API ZylDLLDispatch : public ZylDispatch {
 protected:
  ZylDLLDispatch() = default;
};

// Method lookup over a dispatch's table. Free with delete.
struct ZYLHOST_API hashEntry {
  ZylFuncInfo* table = nullptr;
  uint32_t mask = 0;
  std::vector<uint16_t> firstInBucket;

  ZylFuncInfo* Find(std::string_view name) const;
};
ZYLHOST_API hashEntry* ZylCreateFuncHashTable(ZylDispatch* dispatch);

// Class and type registration.
struct ZylDllRegisterClass {
  ZylDllRegisterClass* next;
  const char* className;
  const char* baseClassName;
  ZylDispatch* (*factory)(RIOObject* creator);
  uint32_t version;
  uint32_t reserved;
};
ZYLHOST_API int ZylNewDllInfoTag(const char* moduleFile, ZylDllRegisterClass* record);
ZYLHOST_API int RegisterRIOObject(const char* typeName, int typeId, int baseNumber,
                                  RIOObject* (*factory)(RIOObject* creator));

// The reporting functions set the pending error of the script call and return the handler's status,
// never 0. `position` is 1-based.
ZYLHOST_API int ZylArgTypeException(ROCParam** result, const char* method, const char* argument,
                                    int expectedType, int position);
ZYLHOST_API int ZylArgPTypeException(ROCParam** result, const char* method, const char* givenClass,
                                     const char* requiredClass, int position);
ZYLHOST_API int ZylArgValueException(ROCParam** result, const char* method, const char* argument,
                                     int position);
ZYLHOST_API int ZylArgUserException(ROCParam** result, const char* method, const char* text,
                                    int position);
ZYLHOST_API int ZylException(ROCParam** result, const char* text);
// Adds the index that was out of range and the number of items to the pending error.
ZYLHOST_API void ZylErrorIndex(int32_t index, int32_t count);
// Returns the status of a script method that was called by this one.
ZYLHOST_API int ZylHandleException(int status, ROCParam** result);

// Calls a method of another script object if it exists. Returns 0 on success.
ZYLHOST_API int ZylCallVirtualMethodVoidIfExists(ZylDispatch* dispatch, const char* name,
                                                 ROCParams* arguments);
ZYLHOST_API int ZylCallVirtualMethodIfExists(ZylDispatch* dispatch, const char* name,
                                             ROCParams* arguments, ROCParam** result);
// Script methods that notify the algorithms registered with an object.
inline constexpr char kOnProgramParameterChanged[] = "OnProgramParameterChanged";
inline constexpr char kOnDeletingPrg[] = "OnDeletingPrg";
inline constexpr char kOnDeletingSmpl[] = "OnDeletingSmpl";
inline constexpr const char* kNotifications[] = {kOnProgramParameterChanged, kOnDeletingPrg,
                                                 kOnDeletingSmpl};
// Whether the dispatch's class is the named one or derives from it.
ZYLHOST_API bool ZylIsKindOf(const ZylDispatch* dispatch, const char* className);

// An algorithm object. Owns its script dispatch, its pads and its graphic root.
class ZYLHOST_API ROCAlgo : public RIOObject {
 public:
  explicit ROCAlgo(std::string name = {});
  ~ROCAlgo() override;
  const char* GetTypeName() const override;
  bool isROCAlgo() const override;
  ZylDispatch* GetDispatch(bool script) override;

  // Takes ownership of the dispatch and destroys the previous one.
  void SetDispatch(ZylDispatch* dispatch);
  // Adds a pad with the given value; takes ownership of the reference.
  ROCPad* AddPad(const std::string& padName, ROCParam* value);
  ROCPad* FindPad(std::string_view padName) const;
  const std::string& Name() const { return name_; }
  // The graphic objects and templates of the algorithm's editor view; null if it has none.
  GOContainer* GraphicRoot() const { return graphicRoot_; }
  // Takes ownership of the root and destroys the previous one.
  void SetGraphicRoot(GOContainer* root);

 private:
  std::string name_;
  ZylDispatch* dispatch_ = nullptr;
  GOContainer* graphicRoot_ = nullptr;
  std::vector<ROCPad*> pads_;
};

// Receives a pad's sends and its owner's updates, on the script thread.
class ZYLHOST_API ROCPadListener {
 public:
  virtual ~ROCPadListener();
  virtual void OnSend(ROCPad& pad, const ROCParam& value) = 0;
  virtual void OnUpdate(ROCPad& pad, const ROCParam& value) = 0;
};

// A named pad of an algorithm.
class ZYLHOST_API ROCPad : public RIOObject {
 public:
  ROCPad(std::string name, ROCAlgo* owner, ROCParam* value);
  ~ROCPad() override;
  const char* GetTypeName() const override;

  const std::string& Name() const { return name_; }
  ROCAlgo* Owner() const { return owner_; }
  ROCParam* Value() const { return value_; }
  // Notifies the listener of the pad's value: synchronously on the script thread, through the queue
  // of ZylPump from other threads. Both arguments are ignored.
  void Send(int from, int flags);
  // Runs the owner's update for this pad. Delivers queued sends of this pad, and all calls queued
  // before them, first. Script thread only.
  void UpdateOwner();
  void SetListener(ROCPadListener* listener) { listener_ = listener; }

 private:
  std::string name_;
  ROCAlgo* owner_;
  ROCParam* value_;
  ROCPadListener* listener_ = nullptr;
  ROCParam self_;  // copied by sends from other threads
};
// The named pad of the dispatch's algorithm, or null.
ZYLHOST_API ROCPad* ZylFindPad(ZylDispatch* dispatch, const char* padName);

// Queues a send: ZylPump sets the pad's value and sends it, unless the pad has been destroyed or
// its value has another type. Thread-safe.
ZYLHOST_API void ZylSendThroughPad(const ROCParam& pad, const ROCParam& value);
// The same for values of which only the latest matters, such as progress: when 1000 sends for the
// same pad are queued, a new value replaces the last one, so that the queue stays bounded.
ZYLHOST_API void ZylSendStateThroughPad(const ROCParam& pad, const ROCParam& value);

// One send as by ZylSendThroughPad that cannot fail: its memory is reserved when it is made.
class ZYLHOST_API ZylReservedSend {
 public:
  explicit ZylReservedSend(const ROCParam& value);
  ~ZylReservedSend();
  ZylReservedSend(const ZylReservedSend&) = delete;
  ZylReservedSend& operator=(const ZylReservedSend&) = delete;
  void Send(const ROCParam& pad) noexcept;  // once

 private:
  struct Reserved;
  std::unique_ptr<Reserved> reserved_;
};

// A data pad: an object that leads to a byte value which DSP code reads.
class ZYLHOST_API RODPad : public RIOObject {
 public:
  RODPad();
  ~RODPad() override;
  const char* GetTypeName() const override;
  bool isRODPad() const override;
  ROCParam* DataValue() const { return data_; }

 private:
  ROCParam* data_;
};

// Splits the file name of a path into its base name and its extension without the dot. A leading
// dot belongs to the base name.
class ZYLHOST_API FileString {
 public:
  explicit FileString(std::string_view path);
  const std::string& BaseName() const { return baseName_; }
  const std::string& Extension() const { return extension_; }
  // Base name and extension.
  std::string FileName() const;

 private:
  std::string baseName_;
  std::string extension_;
};

// Shows a cursor shape during its lifetime; 9 is the busy cursor. No effect without a screen.
class ZYLHOST_API ScreenCursor {
 public:
  explicit ScreenCursor(int shape);
  ~ScreenCursor();  // NOLINT(performance-trivially-destructible): a host with a screen needs it
  ScreenCursor(const ScreenCursor&) = delete;
  ScreenCursor& operator=(const ScreenCursor&) = delete;
};

struct ZYLHOST_API UnitAttribute {
  static double sampleRate;  // the host's processing rate in Hz
};

// `call` runs on the script thread before the host unloads the module that is being loaded now. A
// module joins its threads there: an ending thread may need the loader's lock, which the unloading
// thread holds while the module's own clean-up runs.
ZYLHOST_API void ZylBeforeUnload(std::function<void()> call);

// Writes one line to the diagnostic sink. Thread-safe.
ZYLHOST_API void ZylDiagnostic(std::string_view line);
