// The host's object framework as a module sees it: script objects and values, argument lists,
// dispatch by method name, class registration, error reporting, pads.
//
// Ownership. A ROCParam that holds an object does not own it and never dangles: when the object
// goes, every value that held it holds a null object. ROCParams and lists hold counted references
// on their values. All of it belongs to the script thread, but for ROCPad::Send.
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

namespace zyl {
class ThreadMembers;
}
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

// What a RIOObject and the values that hold it share: the object's address until it is destroyed.
struct RIOAnchor {
  std::atomic<RIOObject*> object;
  std::atomic<int32_t> holders;
};

// Base of everything that a script value can hold as an object.
class ZYLHOST_API RIOObject {
 public:
  virtual ~RIOObject();
  virtual int GetTypeID() const;
  virtual const char* GetTypeName() const;
  virtual bool isCSample() const;
  virtual bool isROCAlgo() const;
  virtual bool isRODPad() const;
  virtual bool isSolidColor() const;
  // The object's script-call side (`script` true) or null.
  virtual ZylDispatch* GetDispatch(bool script);

  RIOObject(const RIOObject&) = delete;
  RIOObject& operator=(const RIOObject&) = delete;

 protected:
  RIOObject() = default;

 private:
  friend class ROCParam;
  RIOAnchor* anchor_ = nullptr;
};

// A script value. Data of up to 8 bytes lies inside, longer data behind a pointer.
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
  // Moving takes the value and leaves another one; it never allocates.
  ROCParam(ROCParam&& other) noexcept : value_(other.value_), type_(other.type_) {
    other.type_ = kTypeInteger;
  }
  ROCParam& operator=(ROCParam&& other) noexcept {
    std::swap(value_, other.value_);
    std::swap(type_, other.type_);
    return *this;
  }
  ~ROCParam() {
    if (HoldsMore()) Clear();
  }
  // Script calls make and free a value or two each: freed ones are kept for the next.
  static void* operator new(size_t size);
  static void* operator new(size_t, void* place) noexcept { return place; }
  static void operator delete(void* memory, size_t size) noexcept;

  // Same type and same value; objects are the same when they are one object.
  bool operator==(const ROCParam& other) const;

  int Type() const { return type_; }
  int32_t Int() const { return value_.integer; }
  bool Bool() const { return value_.boolean; }
  double Double() const { return value_.real; }
  const std::string& Str() const { return *value_.text; }
  // The object held, or null: also when the object has been destroyed meanwhile.
  RIOObject* Object() const;

  // In-place changes keep the value's type but for SetRIOPtr and SetStr, which set it.
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
  // Of a text alone: exchanges it, without an allocation.
  void SwapStr(std::string& text) noexcept {
    if (type_ == kTypeString) value_.text->swap(text);
  }
  void SetRIOPtr(RIOObject* object);

  // Size in bytes: of a byte block its length, of an array 4 for each element.
  int GetSize() const;
  // Resizes a byte block (new bytes 0) or an array (new elements integer 0) to `bytes`.
  void SetSize(int bytes);
  void SetData(const void* bytes, int size);
  // Takes the block over, without a copy.
  void TakeData(std::unique_ptr<char[]> bytes, int size);
  std::byte* Data();
  ROCParam& Element(int index);
  int ElementCount() const;

  // A count that has reached its end stays there: the value is then kept for good rather than freed
  // while it is still held.
  void AddReference() {
    if (references_ != UINT16_MAX) ++references_;
  }
  int References() const { return references_; }
  // True when the last reference went and the value must be freed.
  bool DropReference() { return references_ != UINT16_MAX && --references_ == 0; }

 private:
  // The value owns something outside itself.
  bool HoldsMore() const {
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
// Drops one reference and frees the value with the last one; null is allowed.
ZYLHOST_API void deleteROCParam(ROCParam* value);
struct ROCParamRelease {
  void operator()(ROCParam* value) const { deleteROCParam(value); }
};
// Owns one reference on a value.
using ROCParamPtr = std::unique_ptr<ROCParam, ROCParamRelease>;

// An argument list: 12 entries inside, more in an overflow part. It holds one reference on each
// entry and drops it when it is destroyed. An entry may be null (an absent argument).
class ZYLHOST_API ROCParams {
 public:
  static constexpr int kInside = 12;

  ROCParams() = default;
  ~ROCParams() {
    if (count > 0) Clear();
  }
  ROCParams(const ROCParams&) = delete;
  ROCParams& operator=(const ROCParams&) = delete;

  // Takes over one reference of `value`, also when it throws.
  void AddTail(ROCParam* value) {
    if (count < kInside) {
      entries[count++] = value;
    } else {
      AddTail_more(value);
    }
  }
  void AddTail_more(ROCParam* value);
  // The entry at 0-based `index`; null beyond the count.
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

// A script method of a dispatch: its handler takes the arguments and the place of the result and
// returns 0 or the status of the reporting function that it called.
using ZylHandler = int (ZylDispatch::*)(ROCParams*, ROCParam**);

struct ZylFuncInfo {
  const char* name;  // null ends a table
  ZylHandler handler;
  int flag;
  uint16_t nextInBucket;  // the host's hash table keeps its chains in these two words
  uint16_t hash;
};

// The script-call side of an object.
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
  // Calls the named method when there is one; kNoSuchMethod, and nothing reported, otherwise.
  virtual int CallFunctionIndirect(const char* name, ROCParams* arguments, ROCParam** result);
  // Calls a method that was looked up before.
  virtual int CallFunctionDirect(const ZylFuncInfo& method, ROCParams* arguments,
                                 ROCParam** result);
  virtual bool isTemp() const;
  virtual bool isScript() const;
  virtual void NoOp() {}

  ZylDispatch(const ZylDispatch&) = delete;
  ZylDispatch& operator=(const ZylDispatch&) = delete;

  static constexpr int kNoSuchMethod = -1;

  // The object that this dispatch belongs to.
  RIOObject* owner = nullptr;

 protected:
  ZylDispatch() = default;
  uint32_t hostWord = 0;
};

// A dispatch whose class lives in a loaded module.
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

// The reporting functions: each makes its failure the pending error of the script call and returns
// the handler's status, never 0. `position` counts from 1.
ZYLHOST_API int ZylArgTypeException(ROCParam** result, const char* method, const char* argument,
                                    int expectedType, int position);
ZYLHOST_API int ZylArgPTypeException(ROCParam** result, const char* method, const char* givenClass,
                                     const char* requiredClass, int position);
ZYLHOST_API int ZylArgValueException(ROCParam** result, const char* method, const char* argument,
                                     int position);
ZYLHOST_API int ZylArgUserException(ROCParam** result, const char* method, const char* text,
                                    int position);
ZYLHOST_API int ZylException(ROCParam** result, const char* text);
// Adds to the pending error that it is about an index, and how many items there are.
ZYLHOST_API void ZylErrorIndex(int32_t index, int32_t count);
// Passes on a status that a called script method returned.
ZYLHOST_API int ZylHandleException(int status, ROCParam** result);

// Calls into other script objects: the named method runs when the dispatch has it; 0 = done.
ZYLHOST_API int ZylCallVirtualMethodVoidIfExists(ZylDispatch* dispatch, const char* name,
                                                 ROCParams* arguments);
ZYLHOST_API int ZylCallVirtualMethodIfExists(ZylDispatch* dispatch, const char* name,
                                             ROCParams* arguments, ROCParam** result);
// The script methods that a class calls to notify the algorithms registered with its objects.
inline constexpr char kOnProgramParameterChanged[] = "OnProgramParameterChanged";
inline constexpr char kOnDeletingPrg[] = "OnDeletingPrg";
inline constexpr char kOnDeletingSmpl[] = "OnDeletingSmpl";
inline constexpr const char* kNotifications[] = {kOnProgramParameterChanged, kOnDeletingPrg,
                                                 kOnDeletingSmpl};
// The dispatch's class is, or derives from, the named one.
ZYLHOST_API bool ZylIsKindOf(const ZylDispatch* dispatch, const char* className);

// An algorithm object. It owns its script dispatch, its pads and its graphic root.
class ZYLHOST_API ROCAlgo : public RIOObject {
 public:
  explicit ROCAlgo(std::string name = {});
  ~ROCAlgo() override;
  const char* GetTypeName() const override;
  bool isROCAlgo() const override;
  ZylDispatch* GetDispatch(bool script) override;

  // Takes the dispatch over; one that was there is destroyed.
  void SetDispatch(ZylDispatch* dispatch);
  // A named pad of this algorithm that holds `value` (takes over the reference).
  ROCPad* AddPad(const std::string& padName, ROCParam* value);
  ROCPad* FindPad(std::string_view padName) const;
  const std::string& Name() const { return name_; }
  // What the algorithm shows in the editor, with the templates for it; null for nothing.
  GOContainer* GraphicRoot() const { return graphicRoot_; }
  // Takes the root over; one that was there is destroyed.
  void SetGraphicRoot(GOContainer* root);

 private:
  std::string name_;
  ZylDispatch* dispatch_ = nullptr;
  GOContainer* graphicRoot_ = nullptr;
  std::vector<ROCPad*> pads_;
};

// Whoever wants to hear of a pad's sends and of its owner's updates, on the script thread.
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
  // Tells the listener of the pad's value: at once on the script thread, through the queue of
  // ZylPump from any other. The two numbers are the host's and carry no meaning here.
  void Send(int from, int flags);
  // The owner's update operation for this pad; on the script thread only. Sends that wait for this
  // pad, and the calls queued before them, are delivered first.
  void UpdateOwner();
  void SetListener(ROCPadListener* listener) { listener_ = listener; }

 private:
  std::string name_;
  ROCAlgo* owner_;
  ROCParam* value_;
  ROCPadListener* listener_ = nullptr;
  ROCParam self_;  // copied by sends of other threads
};
// The pad of that name of the algorithm that a dispatch belongs to, or null.
ZYLHOST_API ROCPad* ZylFindPad(ZylDispatch* dispatch, const char* padName);

// From any thread: on the script thread, when the queue of ZylPump is delivered, a pad that still
// lives and whose value has the type of `value` takes it and sends.
ZYLHOST_API void ZylSendThroughPad(const ROCParam& pad, const ROCParam& value);
// The same for a value that tells how something stands: behind a thousand that wait for the same
// pad the newest takes the last one's place, so that a queue that nobody delivers stays small.
ZYLHOST_API void ZylSendStateThroughPad(const ROCParam& pad, const ROCParam& value);

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

// Splits a path: the file name without folder and extension, and the extension without its dot.
// A leading dot begins a name, not an extension.
class ZYLHOST_API FileString {
 public:
  explicit FileString(std::string_view path);
  const std::string& BaseName() const { return baseName_; }
  const std::string& Extension() const { return extension_; }
  // Base name and extension as the file is called.
  std::string FileName() const;

 private:
  std::string baseName_;
  std::string extension_;
};

// A cursor shape while it lives; 9 is the busy cursor. A host without a screen shows nothing.
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

// The threads of a module that is being loaded when the group is made. Before the host unloads the
// module it calls `stop`, on the script thread, and waits until every thread is over: what a
// library does last on a thread may need the loader, which is taken while a module goes, so that
// the module itself cannot wait for it then.
class ZYLHOST_API ZylThreadGroup {
 public:
  explicit ZylThreadGroup(std::function<void()> stop);
  ~ZylThreadGroup();
  ZylThreadGroup(const ZylThreadGroup&) = delete;
  ZylThreadGroup& operator=(const ZylThreadGroup&) = delete;
  // On the thread itself, once: it belongs to the group until all of it has been cleared up.
  void Enter();

 private:
  zyl::ThreadMembers* members_;
};

// One line on the host's diagnostic stream.
ZYLHOST_API void ZylDiagnostic(std::string_view line);
