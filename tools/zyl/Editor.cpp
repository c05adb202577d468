#include "Editor.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace zyl {

namespace {

constexpr int32_t kKeyboardWidth = 378;  // pixels, for keys 0 to 127
constexpr int32_t kKeyboardFill = 0xFFFFFF;
constexpr int32_t kMarkerFill = 0x7FB0F2;
constexpr int32_t kBackgroundFill = 0x1F5FB8;

void SetSize(GOObject& object, int32_t width, int32_t height) {
  object.SizeTo(width, height, 1, 1, 0, 0);
}

// Makes a switch: a rounded track with a knob at the right end (on) or the left end (off).
std::unique_ptr<GOContainer> MakeSwitch(const char* name, int32_t height, bool on) {
  auto track = std::make_unique<GOContainer>(name);
  const int32_t width = 2 * height - 2;
  SetSize(*track, width, height);
  GOObject* knob = track->AddChild(std::make_unique<GORectangle>("Knob"));
  SetSize(*knob, height - 2, height - 2);
  knob->MoveTo(on ? width - height + 1 : 1, 1);
  return track;
}

}  // namespace

std::unique_ptr<GOContainer> MakeKeyboard(const char* name, int32_t width, int32_t height) {
  auto keyboard = std::make_unique<GOContainer>(name);
  SetSize(*keyboard, width, height);
  keyboard->SetFill(std::make_unique<GOSolidFill>(kKeyboardFill));
  constexpr std::pair<const char*, int32_t> kChildren[] = {
      {"KBSelector", kMarkerFill}, {"KBBKSel", kBackgroundFill}, {"KBBKSelClip", kBackgroundFill}};
  for (const auto& [childName, rgb] : kChildren) {
    keyboard->AddChild(std::make_unique<GORectangle>(childName))
        ->SetFill(std::make_unique<GOSolidFill>(rgb));
  }
  return keyboard;
}

std::unique_ptr<GOContainer> MakeListRoot(int32_t rowHeight) {
  constexpr int32_t kMaxSwitchHeight = 10;
  auto root = std::make_unique<GOContainer>("ListRoot");
  auto text = std::make_unique<GOText>("TextTemplate");
  text->SizeTo(0, text->FontHeight(), 1, 1, 0, 0);
  root->AddTemplate(std::move(text));
  auto back = std::make_unique<GOContainer>("Back");
  back->AddChild(std::make_unique<GORectangle>("Inner"));
  root->AddTemplate(std::move(back));
  const int32_t switchHeight = std::clamp(rowHeight - 4, 2, kMaxSwitchHeight);
  root->AddTemplate(MakeSwitch("BtOff", switchHeight, false));
  root->AddTemplate(MakeSwitch("BtOn", switchHeight, true));
  root->AddTemplate(MakeKeyboard("KBBack", kKeyboardWidth, std::max(rowHeight - 2, 1)));
  return root;
}

}  // namespace zyl
