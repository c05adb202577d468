#include <algorithm>
#include <utility>

#include "../base.h"
#include "../graphics.h"

ROCAlgo::ROCAlgo(std::string name) : name_(std::move(name)) {}

ROCAlgo::~ROCAlgo() {
  SetDispatch(nullptr);
  for (ROCPad* pad : pads_) delete pad;
  delete graphicRoot_;
}

const char* ROCAlgo::GetTypeName() const { return "ROCAlgo"; }
bool ROCAlgo::isROCAlgo() const { return true; }
ZylDispatch* ROCAlgo::GetDispatch(bool script) { return script ? dispatch_ : nullptr; }

void ROCAlgo::SetDispatch(ZylDispatch* dispatch) {
  // Clear the pointer before destroying the old dispatch: its destructor may call scripts.
  ZylDispatch* old = std::exchange(dispatch_, nullptr);
  if (old != nullptr) old->Destroy();
  dispatch_ = dispatch;
  if (dispatch != nullptr) dispatch->owner = this;
}

void ROCAlgo::SetGraphicRoot(GOContainer* root) { delete std::exchange(graphicRoot_, root); }

ROCPad* ROCAlgo::AddPad(const std::string& padName, ROCParam* value) {
  pads_.push_back(new ROCPad(padName, this, value));
  return pads_.back();
}

ROCPad* ROCAlgo::FindPad(std::string_view padName) const {
  const auto found = std::find_if(pads_.begin(), pads_.end(),
                                  [&](const ROCPad* pad) { return pad->Name() == padName; });
  return found == pads_.end() ? nullptr : *found;
}

ROCPad* ZylFindPad(ZylDispatch* dispatch, const char* padName) {
  if (dispatch == nullptr || dispatch->owner == nullptr || !dispatch->owner->isROCAlgo()) {
    return nullptr;
  }
  return static_cast<ROCAlgo*>(dispatch->owner)->FindPad(padName);
}

RODPad::RODPad() : data_(ROCParam::NewData(nullptr, 0)) {}
RODPad::~RODPad() { deleteROCParam(data_); }
const char* RODPad::GetTypeName() const { return "RODPad"; }
bool RODPad::isRODPad() const { return true; }

double UnitAttribute::sampleRate = 44100.0;

ScreenCursor::ScreenCursor(int) {}
ScreenCursor::~ScreenCursor() = default;

FileString::FileString(std::string_view path) {
  const size_t slash = path.find_last_of("/\\");
  const std::string_view name = slash == std::string_view::npos ? path : path.substr(slash + 1);
  const size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) {
    baseName_ = name;
  } else {
    baseName_ = name.substr(0, dot);
    extension_ = name.substr(dot + 1);
  }
}

std::string FileString::FileName() const {
  if (extension_.empty()) return baseName_;
  return baseName_.empty() ? extension_ : baseName_ + "." + extension_;
}
