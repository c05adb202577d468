#include <algorithm>
#include <utility>

#include "../graphics.h"

namespace {

int32_t Held(int64_t value) {
  return static_cast<int32_t>(
      std::clamp<int64_t>(value, -GOObject::kFarthest, GOObject::kFarthest));
}

GOObject* Named(const std::vector<std::unique_ptr<GOObject>>& objects, std::string_view name) {
  const auto found =
      std::find_if(objects.begin(), objects.end(),
                   [&](const std::unique_ptr<GOObject>& object) { return object->Name() == name; });
  return found == objects.end() ? nullptr : found->get();
}

}  // namespace

const char* GOFill::GetTypeName() const { return "GOFill"; }
bool GOSolidFill::isSolidColor() const { return true; }
std::unique_ptr<GOFill> GOSolidFill::Copy() const { return std::make_unique<GOSolidFill>(color); }

void GOObject::CopyFrom(const GOObject& other) {
  x_ = other.x_;
  y_ = other.y_;
  width_ = other.width_;
  height_ = other.height_;
  if (other.fill_ != nullptr) fill_ = other.fill_->Copy();
  templateName_ = other.templateName_;
}

void GOObject::GetBounds(GORect& bounds) const { bounds = Placed(); }

GOPoint GOObject::GetOrigin() const {
  return parent_ == nullptr ? GOPoint() : parent_->AbsolutePlace();
}

GOPoint GOObject::AbsolutePlace() const {
  GOPoint place;
  for (const GOObject* object = this; object != nullptr; object = object->parent_) {
    place.x = Held(int64_t{place.x} + object->x_);
    place.y = Held(int64_t{place.y} + object->y_);
  }
  return place;
}

void GOObject::MoveTo(int32_t x, int32_t y) {
  const GOPoint origin = parent_ == nullptr ? GOPoint() : parent_->AbsolutePlace();
  x_ = Held(int64_t{x} - origin.x);
  y_ = Held(int64_t{y} - origin.y);
}

void GOObject::SizeTo(int32_t width, int32_t height, int changeWidth, int changeHeight,
                      int fromRight, int fromBottom) {
  const int32_t newWidth = changeWidth == 0 ? width_ : Held(std::max(width, 0));
  const int32_t newHeight = changeHeight == 0 ? height_ : Held(std::max(height, 0));
  if (fromRight != 0) x_ = Held(int64_t{x_} + width_ - newWidth);
  if (fromBottom != 0) y_ = Held(int64_t{y_} + height_ - newHeight);
  width_ = newWidth;
  height_ = newHeight;
}

void GOObject::Refresh(int, int) { ++refreshes_; }
void GOObject::FillChanged(int) { ++fillChanges_; }
void GOObject::SetText(std::string_view, int, int) {}
const std::string* GOObject::Text() const { return nullptr; }

const char* GORectangle::GetTypeName() const { return "GORectangle"; }
std::unique_ptr<GOObject> GORectangle::Copy() const {
  auto copy = std::make_unique<GORectangle>(Name());
  copy->CopyFrom(*this);
  return copy;
}

const char* GOText::GetTypeName() const { return "GOText"; }
std::unique_ptr<GOObject> GOText::Copy() const {
  auto copy = std::make_unique<GOText>(Name());
  copy->CopyFrom(*this);
  copy->text_ = text_;
  copy->autoWidth_ = autoWidth_;
  return copy;
}

int32_t GOText::Length(std::string_view text) {
  const auto begins = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
  return Held(std::count_if(text.begin(), text.end(), begins));
}

void GOText::FitWidth() {
  if (autoWidth_) SetWidth(Held(int64_t{kAdvance} * Length(text_)));
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
  auto copy = std::make_unique<GOContainer>(Name());
  copy->CopyFrom(*this);
  copy->children_.reserve(children_.size());
  for (const auto& child : children_) copy->AddChild(child->Copy());
  return copy;
}

void GOContainer::GetBounds(GORect& bounds) const {
  const GORect placed = Placed();
  bounds = {0, 0, placed.Width(), placed.Height()};
}
GOPoint GOContainer::GetOrigin() const { return AbsolutePlace(); }

GOObject* GOContainer::GetChild(const char* name, int levels, Filter filter) const {
  for (const auto& child : children_) {
    if (child->Name() == name && (filter == nullptr || filter(*child))) return child.get();
    const auto* container = levels > 1 ? dynamic_cast<const GOContainer*>(child.get()) : nullptr;
    GOObject* found =
        container == nullptr ? nullptr : container->GetChild(name, levels - 1, filter);
    if (found != nullptr) return found;
  }
  return nullptr;
}

GOObject* GOContainer::AddChild(std::unique_ptr<GOObject> child) {
  child->parent_ = this;
  children_.push_back(std::move(child));
  return children_.back().get();
}

GOObject* GOContainer::FindTemplate(const char* name, int) const { return Named(templates_, name); }

GOObject* GOContainer::AddTemplate(std::unique_ptr<GOObject> object) {
  object->templateName_ = object->Name();
  templates_.push_back(std::move(object));
  return templates_.back().get();
}
