#include <algorithm>
#include <cstring>
#include <memory>

#include "../base.h"
#include "Pool.h"

RIOObject::~RIOObject() {
  if (anchor_ == nullptr) return;
  anchor_->object = nullptr;
  if (anchor_->holders.fetch_sub(1) == 1) delete anchor_;
}
int RIOObject::GetTypeID() const { return 0; }
const char* RIOObject::GetTypeName() const { return "RIOObject"; }
bool RIOObject::isCSample() const { return false; }
bool RIOObject::isROCAlgo() const { return false; }
bool RIOObject::isRODPad() const { return false; }
bool RIOObject::isSolidColor() const { return false; }
ZylDispatch* RIOObject::GetDispatch(bool) { return nullptr; }

// The bytes of a data value. TakeData may set a block that its caller allocated.
struct ROCParam::ByteBlock {
  ByteBlock(const void* from, size_t count) : size(count) {
    if (count == 0) return;
    bytes.reset(new char[count]);
    std::memcpy(bytes.get(), from, count);
  }
  ByteBlock(const ByteBlock& other) : ByteBlock(other.bytes.get(), other.size) {}
  ByteBlock(ByteBlock&&) = default;
  ByteBlock& operator=(ByteBlock&&) = default;
  bool operator==(const ByteBlock& other) const {
    return size == other.size &&
           (size == 0 || std::memcmp(bytes.get(), other.bytes.get(), size) == 0);
  }
  void Resize(size_t count) {
    if (count > size || count == 0) {
      std::unique_ptr<char[]> resized(count == 0 ? nullptr : new char[count]());
      if (size > 0 && count > 0) std::memcpy(resized.get(), bytes.get(), size);
      bytes = std::move(resized);
    }
    size = count;
  }

  std::unique_ptr<char[]> bytes;  // may be longer
  size_t size;
};

ROCParam::ROCParam() : type_(kTypeObject) { value_.anchor = nullptr; }
ROCParam::ROCParam(int32_t value) : type_(kTypeInteger) {
  value_.real = 0;
  value_.integer = value;
}
ROCParam::ROCParam(bool value) : type_(kTypeBool) {
  value_.real = 0;
  value_.boolean = value;
}
ROCParam::ROCParam(double value) : type_(kTypeDouble) { value_.real = value; }
ROCParam::ROCParam(const char* text) : ROCParam(std::string_view(text == nullptr ? "" : text)) {}
ROCParam::ROCParam(std::string_view text) : type_(kTypeString) {
  value_.text = new std::string(text);
}
ROCParam::ROCParam(RIOObject* object) : ROCParam() { SetRIOPtr(object); }

ROCParam* ROCParam::NewArray(int count) {
  auto elements = std::make_unique<std::vector<ROCParam>>(static_cast<size_t>(count), ROCParam(0));
  auto* value = new ROCParam;
  value->type_ = kTypeArray;
  value->value_.elements = elements.release();
  return value;
}

ROCParam* ROCParam::NewData(const void* bytes, int size) {
  auto block = std::make_unique<ByteBlock>(bytes, static_cast<size_t>(std::max(size, 0)));
  auto* value = new ROCParam;
  value->type_ = kTypeData;
  value->value_.bytes = block.release();
  return value;
}

ROCParam::ROCParam(const ROCParam& other) { CopyFrom(other); }

ROCParam& ROCParam::operator=(const ROCParam& other) {
  if (this != &other) {
    // Copy first: `other` may be an element of this value's array.
    *this = ROCParam(other);
  }
  return *this;
}

void* ROCParam::operator new(size_t size) { return zyl::AllocateBlock(size); }
void ROCParam::operator delete(void* memory, size_t size) noexcept { zyl::FreeBlock(memory, size); }

void ROCParam::CopyFrom(const ROCParam& other) {
  type_ = other.type_;
  switch (type_) {
    case kTypeString:
      value_.text = new std::string(*other.value_.text);
      break;
    case kTypeObject:
      value_.anchor = other.value_.anchor;
      if (value_.anchor != nullptr) value_.anchor->holders.fetch_add(1);
      break;
    case kTypeData:
      value_.bytes = new ByteBlock(*other.value_.bytes);
      break;
    case kTypeArray:
      value_.elements = new std::vector<ROCParam>(*other.value_.elements);
      break;
    default:
      value_ = other.value_;
  }
}

void ROCParam::Clear() {
  switch (type_) {
    case kTypeString:
      delete value_.text;
      break;
    case kTypeObject:
      if (value_.anchor != nullptr && value_.anchor->holders.fetch_sub(1) == 1) {
        delete value_.anchor;
      }
      break;
    case kTypeData:
      delete value_.bytes;
      break;
    case kTypeArray:
      delete value_.elements;
      break;
    default:
      break;
  }
}

bool ROCParam::operator==(const ROCParam& other) const {
  if (type_ != other.type_) return false;
  switch (type_) {
    case kTypeInteger:
      return value_.integer == other.value_.integer;
    case kTypeBool:
      return value_.boolean == other.value_.boolean;
    case kTypeDouble:
      return value_.real == other.value_.real;
    case kTypeString:
      return *value_.text == *other.value_.text;
    case kTypeData:
      return *value_.bytes == *other.value_.bytes;
    case kTypeArray:
      return *value_.elements == *other.value_.elements;
    default:
      return Object() == other.Object();
  }
}

void ROCParam::SetStr(std::string_view text) {
  if (type_ == kTypeString) {
    value_.text->assign(text);
    return;
  }
  auto* copy = new std::string(text);
  Clear();
  type_ = kTypeString;
  value_.text = copy;
}

void ROCParam::SetRIOPtr(RIOObject* object) {
  RIOAnchor* anchor = nullptr;
  if (object != nullptr) {
    if (object->anchor_ == nullptr) object->anchor_ = new RIOAnchor{object, 1};
    anchor = object->anchor_;
    anchor->holders.fetch_add(1);
  }
  Clear();
  type_ = kTypeObject;
  value_.anchor = anchor;
}

int ROCParam::GetSize() const {
  switch (type_) {
    case kTypeData:
      return static_cast<int>(value_.bytes->size);
    case kTypeArray:
      return 4 * static_cast<int>(value_.elements->size());
    case kTypeString:
      return static_cast<int>(value_.text->size()) + 1;
    case kTypeBool:
      return 1;
    case kTypeDouble:
      return 8;
    default:
      return 4;
  }
}

void ROCParam::SetSize(int bytes) {
  const size_t size = bytes < 0 ? 0 : static_cast<size_t>(bytes);
  if (type_ == kTypeData) {
    value_.bytes->Resize(size);
  } else if (type_ == kTypeArray) {
    value_.elements->resize(size / 4, ROCParam(0));
  }
}

void ROCParam::SetData(const void* bytes, int size) {
  if (type_ != kTypeData) return;
  *value_.bytes = ByteBlock(bytes, static_cast<size_t>(std::max(size, 0)));
}

void ROCParam::TakeData(std::unique_ptr<char[]> bytes, int size) {
  if (type_ != kTypeData) return;
  value_.bytes->bytes = std::move(bytes);
  value_.bytes->size = static_cast<size_t>(std::max(size, 0));
}

std::byte* ROCParam::Data() {
  return type_ == kTypeData ? reinterpret_cast<std::byte*>(value_.bytes->bytes.get()) : nullptr;
}
ROCParam& ROCParam::Element(int index) { return (*value_.elements)[static_cast<size_t>(index)]; }
int ROCParam::ElementCount() const {
  return type_ == kTypeArray ? static_cast<int>(value_.elements->size()) : 0;
}

ROCParam* newROCParam(int32_t value) { return new ROCParam(value); }
ROCParam* newROCParam(bool value) { return new ROCParam(value); }
ROCParam* newROCParam(double value) { return new ROCParam(value); }
ROCParam* newROCParam(const char* text) { return new ROCParam(text); }
ROCParam* newROCParam(std::string_view text) { return new ROCParam(text); }
ROCParam* newROCParam(RIOObject* object) { return new ROCParam(object); }

void deleteROCParam(ROCParam* value) {
  if (value != nullptr && value->DropReference()) delete value;
}

void ROCParams::Clear() {
  for (int i = 0; i < count && i < kInside; ++i) deleteROCParam(entries[i]);
  if (overflow == nullptr) return;
  for (ROCParam* value : *overflow) deleteROCParam(value);
  delete overflow;
}

void ROCParams::AddTail_more(ROCParam* value) {
  ROCParamPtr held(value);
  if (overflow == nullptr) overflow = new std::vector<ROCParam*>;
  overflow->push_back(value);
  static_cast<void>(held.release());
  ++count;
}
