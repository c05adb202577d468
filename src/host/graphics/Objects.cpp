#include <algorithm>
#include <set>
#include <utility>

#include "../base/Pool.h"
#include "../graphics.h"

namespace {

int32_t ClampCoordinate(int64_t value) {
  return static_cast<int32_t>(
      std::clamp<int64_t>(value, -GOObject::kFarthest, GOObject::kFarthest));
}

}  // namespace

const char* GOFill::GetTypeName() const { return "GOFill"; }
bool GOSolidFill::isSolidColor() const { return true; }
std::unique_ptr<GOFill> GOSolidFill::Copy() const { return std::make_unique<GOSolidFill>(color); }

void* GOSolidFill::operator new(size_t size) { return zyl::AllocateBlock(size); }
void GOSolidFill::operator delete(void* memory, size_t size) noexcept {
  zyl::FreeBlock(memory, size);
}

GOObject::GOObject(std::string_view name) : name_(Intern(name)), templateName_(Intern({})) {}

void* GOObject::operator new(size_t size) { return zyl::AllocateBlock(size); }
void GOObject::operator delete(void* memory, size_t size) noexcept { zyl::FreeBlock(memory, size); }

const std::string* GOObject::Intern(std::string_view name) {
  static std::set<std::string, std::less<>> names;
  const auto found = names.find(name);
  return &*(found == names.end() ? names.emplace(name).first : found);
}

void GOObject::CopyFrom(const GOObject& other) {
  x_ = other.x_;
  y_ = other.y_;
  width_ = other.width_;
  height_ = other.height_;
  if (other.fill_ != nullptr) fill_ = other.fill_->Copy();
  name_ = other.name_;
  templateName_ = other.templateName_;
}

void GOObject::GetBounds(GORect& bounds) const { bounds = Placed(); }

GOPoint GOObject::GetOrigin() const {
  return parent_ == nullptr ? GOPoint() : parent_->AbsolutePlace();
}

GOPoint GOObject::AbsolutePlace() const {
  GOPoint place;
  for (const GOObject* object = this; object != nullptr; object = object->parent_) {
    place.x = ClampCoordinate(int64_t{place.x} + object->x_);
    place.y = ClampCoordinate(int64_t{place.y} + object->y_);
  }
  return place;
}

void GOObject::MoveTo(int32_t x, int32_t y) {
  const GOPoint origin = parent_ == nullptr ? GOPoint() : parent_->AbsolutePlace();
  x_ = ClampCoordinate(int64_t{x} - origin.x);
  y_ = ClampCoordinate(int64_t{y} - origin.y);
}

void GOObject::SizeTo(int32_t width, int32_t height, int changeWidth, int changeHeight,
                      int fromRight, int fromBottom) {
  const int32_t newWidth = changeWidth == 0 ? width_ : ClampCoordinate(std::max(width, 0));
  const int32_t newHeight = changeHeight == 0 ? height_ : ClampCoordinate(std::max(height, 0));
  if (fromRight != 0) x_ = ClampCoordinate(int64_t{x_} + width_ - newWidth);
  if (fromBottom != 0) y_ = ClampCoordinate(int64_t{y_} + height_ - newHeight);
  width_ = newWidth;
  height_ = newHeight;
}

void GOObject::Refresh(int, int) { ++refreshes_; }
void GOObject::FillChanged(int) { ++fillChanges_; }
void GOObject::SetText(std::string_view, int, int) {}
const std::string* GOObject::Text() const { return nullptr; }

const char* GORectangle::GetTypeName() const { return "GORectangle"; }
std::unique_ptr<GOObject> GORectangle::Copy() const {
  std::unique_ptr<GORectangle> copy(new GORectangle(AsCopy{}));
  copy->CopyFrom(*this);
  return copy;
}

const char* GOText::GetTypeName() const { return "GOText"; }
std::unique_ptr<GOObject> GOText::Copy() const {
  std::unique_ptr<GOText> copy(new GOText(AsCopy{}));
  copy->CopyFrom(*this);
  copy->text_ = text_;
  copy->autoWidth_ = autoWidth_;
  return copy;
}

int32_t GOText::Length(std::string_view text) {
  const auto begins = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
  return ClampCoordinate(std::count_if(text.begin(), text.end(), begins));
}

void GOText::FitWidth() {
  if (autoWidth_) SetWidth(ClampCoordinate(int64_t{kAdvance} * Length(text_)));
}
void GOText::SetText(std::string_view text, int, int) {
  text_ = text;
  FitWidth();
}
void GOText::SetAutoWidth(bool on) {
  autoWidth_ = on;
  FitWidth();
}

const char* GOContainer::GetTypeName() const { return "GOContainer"; }

std::unique_ptr<GOObject> GOContainer::Copy() const {
  std::unique_ptr<GOContainer> copy(new GOContainer(AsCopy{}));
  copy->CopyFrom(*this);
  GOObject** end = &copy->firstChild_;
  for (const GOObject* child = firstChild_; child != nullptr; child = child->nextSibling_) {
    *end = child->Copy().release();
    (*end)->parent_ = copy.get();
    end = &(*end)->nextSibling_;
  }
  return copy;
}

void GOContainer::GetBounds(GORect& bounds) const {
  const GORect placed = Placed();
  bounds = {0, 0, placed.Width(), placed.Height()};
}
GOPoint GOContainer::GetOrigin() const { return AbsolutePlace(); }

GOContainer::~GOContainer() {
  DeleteAll(firstChild_);
  DeleteAll(firstTemplate_);
}

GOObject* GOContainer::GetChild(const char* name, int levels, Filter filter) const {
  for (GOObject* child = firstChild_; child != nullptr; child = child->nextSibling_) {
    if (child->Name() == name && (filter == nullptr || filter(*child))) return child;
    const auto* container = levels > 1 ? dynamic_cast<const GOContainer*>(child) : nullptr;
    GOObject* found =
        container == nullptr ? nullptr : container->GetChild(name, levels - 1, filter);
    if (found != nullptr) return found;
  }
  return nullptr;
}

GOObject* GOContainer::FindTemplate(const char* name, int) const {
  GOObject* object = firstTemplate_;
  while (object != nullptr && object->Name() != name) object = object->nextSibling_;
  return object;
}

GOObject* GOContainer::AddChild(std::unique_ptr<GOObject> child) {
  child->parent_ = this;
  Append(firstChild_, child.get());
  return child.release();
}

GOObject* GOContainer::AddTemplate(std::unique_ptr<GOObject> object) {
  object->templateName_ = object->name_;
  Append(firstTemplate_, object.get());
  return object.release();
}

void GOContainer::Append(GOObject*& first, GOObject* object) {
  GOObject** end = &first;
  while (*end != nullptr) end = &(*end)->nextSibling_;
  *end = object;
}

void GOContainer::DeleteAll(GOObject* first) {
  while (first != nullptr) delete std::exchange(first, first->nextSibling_);
}
