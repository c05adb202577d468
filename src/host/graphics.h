// The editor's graphic objects: rectangles, texts and containers. They are a model in memory, which
// a renderer reads; nothing here draws.
//
// Ownership: a container owns its children and its templates; the creator owns every other object.
// When an object is destroyed, script values that refer to it become null objects. Script thread
// only.
//
// Lengths are pixels, y down. A colour is 0xRRGGBB; its highest byte is preserved and ignored. A
// container has its own coordinate system with the origin at its top left corner; all other objects
// use that of their container, or the picture's if they have none.
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

// `right` and `bottom` are exclusive.
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

// How an object is filled. The host implements the solid colour only; isSolidColor distinguishes it
// from fills that others derive.
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
  // Coordinates and lengths are clamped to ±kFarthest.
  static constexpr int32_t kFarthest = 1'000'000'000;

  // Allocates from a free list: filling lists creates and frees thousands of objects.
  static void* operator new(size_t size);
  static void operator delete(void* memory, size_t size) noexcept;

  // Returns a copy with fill, text and children, with counts of 0 and without a container.
  virtual std::unique_ptr<GOObject> Copy() const = 0;

  // Returns the rectangle relative to GetOrigin(); shifted by it, the rectangle is absolute.
  virtual void GetBounds(GORect& bounds) const;
  virtual GOPoint GetOrigin() const;
  GOPoint AbsolutePlace() const;
  // Moves the top left corner to an absolute position.
  void MoveTo(int32_t x, int32_t y);
  // `changeWidth` and `changeHeight`: 1 sets the new length, 0 keeps the old one. `fromRight` and
  // `fromBottom`: 0 keeps the left or top edge in place, 1 the opposite edge. Negative lengths are
  // clamped to 0.
  void SizeTo(int32_t width, int32_t height, int changeWidth, int changeHeight, int fromRight,
              int fromBottom);
  // Requests a redraw in `delay` ms (0: at once), including the children if `children` is not 0.
  // There is no screen, so this only counts the requests.
  void Refresh(int delay, int children);
  // Call after changing the colour of the fill. `reserved` is ignored.
  void FillChanged(int reserved);
  // Sets the text of a text object, with the characters from `selectFrom` to `selectTo` selected
  // (-1: none). Does nothing for other objects.
  virtual void SetText(std::string_view text, int selectFrom, int selectTo);
  // Returns null if the object is not a text.
  virtual const std::string* Text() const;

  GOFill* Fill() const { return fill_.get(); }
  // Null removes the fill: the renderer chooses the object's colours.
  void SetFill(std::unique_ptr<GOFill> fill) { fill_ = std::move(fill); }
  const std::string& Name() const { return *name_; }
  // The name of the template that the object was copied from; empty if there is none.
  const std::string& TemplateName() const { return *templateName_; }
  // The next object in the container; null for the last one.
  GOObject* NextSibling() const { return nextSibling_; }
  int32_t Refreshes() const { return refreshes_; }
  int32_t FillChanges() const { return fillChanges_; }

 protected:
  explicit GOObject(std::string_view name);
  // Constructor for copies; CopyFrom sets the name.
  struct AsCopy {};
  explicit GOObject(AsCopy) {}
  // Copies the members that all kinds of objects share.
  void CopyFrom(const GOObject& other);
  GORect Placed() const { return {x_, y_, x_ + width_, y_ + height_}; }
  int32_t Width() const { return width_; }
  void SetWidth(int32_t width) { width_ = width; }

 private:
  friend class GOContainer;
  // Returns the interned copy of `name`, which is never freed: there are few different names.
  static const std::string* Intern(std::string_view name);

  GOContainer* parent_ = nullptr;
  GOObject* nextSibling_ = nullptr;
  int32_t x_ = 0;  // relative to the container
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

// One line of text in a monospaced font.
class ZYLHOST_API GOText final : public GOObject {
 public:
  static constexpr int32_t kFontHeight = 10;  // from the top of capitals to below descenders
  static constexpr int32_t kAdvance = 6;      // from one character to the next

  explicit GOText(std::string_view name = {}) : GOObject(name) {}
  const char* GetTypeName() const override;
  std::unique_ptr<GOObject> Copy() const override;
  void SetText(std::string_view text, int selectFrom, int selectTo) override;
  const std::string* Text() const override { return &text_; }
  // With automatic width the object is as wide as its text; otherwise longer text is clipped.
  void SetAutoWidth(bool on);
  bool AutoWidth() const { return autoWidth_; }
  int32_t FontHeight() const { return kFontHeight; }

  // Returns the number of characters of a UTF-8 text: of bytes that are not continuation bytes.
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

  // Returns the first object named `name` that passes the filter (null: all pass), searching
  // `levels` containers deep (1: direct children only). Returns null if there is none.
  GOObject* GetChild(const char* name, int levels, Filter filter = nullptr) const;
  GOObject* FirstChild() const { return firstChild_; }
  GOObject* AddChild(std::unique_ptr<GOObject> child);

  // Templates: objects that others are copied from. They are not drawn. `reserved` is ignored.
  GOObject* FindTemplate(const char* name, int reserved) const;
  GOObject* AddTemplate(std::unique_ptr<GOObject> object);

 private:
  explicit GOContainer(AsCopy copy) : GOObject(copy) {}
  static void Append(GOObject*& first, GOObject* object);
  static void DeleteAll(GOObject* first);

  GOObject* firstChild_ = nullptr;  // linked by nextSibling_, in order of creation
  GOObject* firstTemplate_ = nullptr;
};
