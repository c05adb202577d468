// The editor's graphic objects: rectangles, texts and containers of them, kept in memory; whoever
// draws them reads them.
//
// Ownership. A container owns its children and its templates, and everything else belongs to who
// made it. Script values that hold an object hold a null object once it is gone. Script thread
// only.
//
// Lengths are pixels, y down. A colour is 0xRRGGBB; its highest byte is kept and means nothing. A
// container has a coordinate system of its own, whose origin is its top left corner; every other
// object lies in the one of its container, or in the picture's when it has none.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base.h"

struct GOPoint {
  int32_t x = 0;
  int32_t y = 0;
};

// `right` and `bottom` lie behind the last pixel.
struct GORect {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 0;
  int32_t bottom = 0;

  int32_t Width() const { return right - left; }
  int32_t Height() const { return bottom - top; }
  GORect ShiftedBy(GOPoint by) const {
    return {left + by.x, top + by.y, right + by.x, bottom + by.y};
  }
};

// How an object is filled. Of the kinds of fill the host knows by itself the solid colour alone;
// isSolidColor tells it from those that others make.
class ZYLHOST_API GOFill : public RIOObject {
 public:
  const char* GetTypeName() const override;
  virtual std::unique_ptr<GOFill> Copy() const = 0;
};

class ZYLHOST_API GOSolidFill final : public GOFill {
 public:
  static void* operator new(size_t size);
  static void operator delete(void* memory, size_t size) noexcept;
  explicit GOSolidFill(int32_t rgb) : color(rgb) {}
  bool isSolidColor() const override;
  std::unique_ptr<GOFill> Copy() const override;

  int32_t color;
};

class GOContainer;

class ZYLHOST_API GOObject : public RIOObject {
 public:
  // No place or length is farther from 0 than this: what is, is held to it.
  static constexpr int32_t kFarthest = 1'000'000'000;

  // Lists make and free objects by the thousand: freed ones are kept for the next.
  static void* operator new(size_t size);
  static void operator delete(void* memory, size_t size) noexcept;

  // A copy with fill, text and children, its counts at 0, in no container.
  virtual std::unique_ptr<GOObject> Copy() const = 0;

  // The rectangle relative to the origin; shifted by the origin it is absolute.
  virtual void GetBounds(GORect& bounds) const;
  virtual GOPoint GetOrigin() const;
  GOPoint AbsolutePlace() const;
  // Puts the top left corner to an absolute place.
  void MoveTo(int32_t x, int32_t y);
  // `changeWidth` and `changeHeight`: 1 takes the new length, 0 keeps the old one. `fromRight` and
  // `fromBottom`: 0 keeps the left or top edge in place, 1 the opposite one. A length below 0 is 0.
  void SizeTo(int32_t width, int32_t height, int changeWidth, int changeHeight, int fromRight,
              int fromBottom);
  // Asks for a redraw in `delay` ms (0: at once), with the children when `children` is not 0. There
  // is no screen: requests are counted.
  void Refresh(int delay, int children);
  // The colour of the fill was changed; `reserved` carries no meaning.
  void FillChanged(int reserved);
  // A text object shows the text, the characters from `selectFrom` to `selectTo` selected (-1:
  // none); other objects have no text.
  virtual void SetText(std::string_view text, int selectFrom, int selectTo);
  // Null for an object without text.
  virtual const std::string* Text() const;

  GOFill* Fill() const { return fill_.get(); }
  // Takes it over; null is no fill: the object has the colours of its drawing.
  void SetFill(std::unique_ptr<GOFill> fill) { fill_ = std::move(fill); }
  const std::string& Name() const { return *name_; }
  // The name of the template that the object is a copy of, else empty.
  const std::string& TemplateName() const { return *templateName_; }
  // The object after this one in their container; null for the last one.
  GOObject* NextSibling() const { return nextSibling_; }
  int32_t Refreshes() const { return refreshes_; }
  int32_t FillChanges() const { return fillChanges_; }

 protected:
  explicit GOObject(std::string_view name);
  // For copies, whose name comes with the rest.
  struct AsCopy {};
  explicit GOObject(AsCopy) {}
  // Takes over what every kind of object has.
  void CopyFrom(const GOObject& other);
  GORect Placed() const { return {x_, y_, x_ + width_, y_ + height_}; }
  int32_t Width() const { return width_; }
  void SetWidth(int32_t width) { width_ = width; }

 private:
  friend class GOContainer;
  // The one text that is equal to `name` and stays for good: names are few.
  static const std::string* Kept(std::string_view name);

  GOContainer* parent_ = nullptr;
  GOObject* nextSibling_ = nullptr;
  int32_t x_ = 0;  // in the container
  int32_t y_ = 0;
  int32_t width_ = 0;
  int32_t height_ = 0;
  int32_t refreshes_ = 0;
  int32_t fillChanges_ = 0;
  std::unique_ptr<GOFill> fill_;
  const std::string* name_ = nullptr;
  const std::string* templateName_ = nullptr;
};

class ZYLHOST_API GORectangle final : public GOObject {
 public:
  explicit GORectangle(std::string_view name = {}) : GOObject(name) {}
  const char* GetTypeName() const override;
  std::unique_ptr<GOObject> Copy() const override;

 private:
  explicit GORectangle(AsCopy copy) : GOObject(copy) {}
};

// One line of text in a font of fixed pitch.
class ZYLHOST_API GOText final : public GOObject {
 public:
  static constexpr int32_t kFontHeight = 10;  // from the top of the capitals to below the tails
  static constexpr int32_t kAdvance = 6;      // from one character to the next

  explicit GOText(std::string_view name = {}) : GOObject(name) {}
  const char* GetTypeName() const override;
  std::unique_ptr<GOObject> Copy() const override;
  void SetText(std::string_view text, int selectFrom, int selectTo) override;
  const std::string* Text() const override { return &text_; }
  // With automatic width the object is as wide as its text, otherwise a longer text is cut off.
  void SetAutoWidth(bool on);
  bool AutoWidth() const { return autoWidth_; }
  int32_t FontHeight() const { return kFontHeight; }

  // Characters of a UTF-8 text; a byte that begins none counts as one.
  static int32_t Length(std::string_view text);

 private:
  explicit GOText(AsCopy copy) : GOObject(copy) {}
  void FitWidth();
  std::string text_;
  bool autoWidth_ = false;
};

class ZYLHOST_API GOContainer final : public GOObject {
 public:
  using Filter = bool (*)(const GOObject& object);

  explicit GOContainer(std::string_view name = {}) : GOObject(name) {}
  ~GOContainer() override;
  const char* GetTypeName() const override;
  std::unique_ptr<GOObject> Copy() const override;
  void GetBounds(GORect& bounds) const override;
  GOPoint GetOrigin() const override;

  // The first object of that name down to `levels` containers deep (1: the children alone) that the
  // filter, if there is one, lets pass; null when there is none.
  GOObject* GetChild(const char* name, int levels, Filter filter = nullptr) const;
  GOObject* FirstChild() const { return firstChild_; }
  GOObject* AddChild(std::unique_ptr<GOObject> child);

  // Objects that others are copied from; they are not drawn. `reserved` carries no meaning.
  GOObject* FindTemplate(const char* name, int reserved) const;
  GOObject* AddTemplate(std::unique_ptr<GOObject> object);

 private:
  explicit GOContainer(AsCopy copy) : GOObject(copy) {}
  // One after the other, in the order of their making.
  static void Append(GOObject*& first, GOObject* object);
  static void DeleteAll(GOObject* first);

  GOObject* firstChild_ = nullptr;
  GOObject* firstTemplate_ = nullptr;
};
