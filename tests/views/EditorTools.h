// A list module with templates, for the tests of the editor's views.
#pragma once

#include "host/lists.h"
#include "support/ScriptSurface.h"

namespace zyl::test {

inline std::unique_ptr<GOContainer> MakeBoard(const char* name, int32_t width, int32_t height) {
  auto board = std::make_unique<GOContainer>(name);
  board->SizeTo(width, height, 1, 1, 0, 0);
  for (const char* child : {"KBSelector", "KBBKSel", "KBBKSelClip"}) {
    board->AddChild(std::make_unique<GORectangle>(child))
        ->SetFill(std::make_unique<GOSolidFill>(1));
  }
  return board;
}

// A list module whose "GetList" returns its list.
class Editor : public Listener {
 public:
  static constexpr int32_t kRowHeight = 20;

  explicit Editor(std::vector<ListColumn> columns)
      : Editor(static_cast<int>(columns.size()), columns) {}
  // A list that may have more columns than its view defines.
  Editor(int listColumns, std::vector<ListColumn> columns) {
    auto root = std::make_unique<GOContainer>("root");
    root->AddTemplate(std::make_unique<GOText>("TextTemplate"));
    auto back = std::make_unique<GOContainer>("Back");
    back->AddChild(std::make_unique<GORectangle>("inner"));
    root->AddTemplate(std::move(back));
    root->AddTemplate(std::make_unique<GORectangle>("BtOff"));
    root->AddTemplate(std::make_unique<GORectangle>("BtOn"));
    root->AddTemplate(MakeBoard("KBBack", 378, 18));
    SetGraphicRoot(root.release());
    list = std::make_unique<List>(listColumns, kRowHeight, GraphicRoot(), std::move(columns));
    (*this)["GetList"] = [this](ROCParams& arguments, ROCParam** result) {
      EXPECT_EQ(arguments.count, 0);
      *result = newROCParam(static_cast<RIOObject*>(list.get()));
    };
  }
  RIOObject* Module() { return this; }
  ListElement& Cell(int row, int column) const { return *list->Row(row)->Cell(column); }

  std::unique_ptr<List> list;
};

}  // namespace zyl::test
