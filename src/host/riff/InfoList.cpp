#include "InfoList.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace zyl {
namespace {

// The byte range [begin, end) of the title's entry in a list, and its text.
struct TitlePlace {
  size_t begin = 0;
  size_t end = 0;
  std::string_view text;
};

std::optional<TitlePlace> FindTitle(const Bytes& list) {
  FieldReader in(list, ByteOrder::kLittle);
  if (in.Text(4) != "INFO") return std::nullopt;
  while (in.Left() >= 8) {
    TitlePlace place;
    place.begin = list.size() - in.Left();
    const std::string_view id = in.Text(4);
    const uint32_t size = in.U32();
    place.text = in.Text(std::min<size_t>(size, in.Left()));
    if ((size & 1) != 0) in.U8();
    place.end = list.size() - in.Left();
    if (id == "INAM") return place;
  }
  return std::nullopt;
}

void AddTitle(FieldWriter& out, const std::string& name) {
  out.Text("INAM").U32(static_cast<uint32_t>(name.size() + 1)).Text(name).U8(0);
  if (name.size() % 2 == 0) out.U8(0);
}

}  // namespace

std::string ListedName(const Bytes& list) {
  const auto title = FindTitle(list);
  return title ? std::string(title->text.substr(0, title->text.find('\0'))) : std::string();
}

bool IsInfoList(const Bytes& list) {
  return FieldReader(list, ByteOrder::kLittle).Text(4) == "INFO";
}

Bytes MakeNameList(const std::string& name) {
  FieldWriter out(ByteOrder::kLittle);
  out.Text("INFO");
  AddTitle(out, name);
  return std::move(out.block);
}

Bytes WithListedName(const Bytes& list, const std::string& name) {
  TitlePlace place;
  place.begin = place.end = list.size();
  if (const auto title = FindTitle(list)) place = *title;
  FieldWriter out(ByteOrder::kLittle);
  out.Raw(list.data(), place.begin);
  if (place.begin % 2 != 0) out.U8(0);
  if (!name.empty()) AddTitle(out, name);
  out.Raw(list.data() + place.end, list.size() - place.end);
  return std::move(out.block);
}

}  // namespace zyl
