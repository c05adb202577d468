#include <algorithm>
#include <utility>

#include "../base/Pool.h"
#include "../lists.h"

ListView::ListView(std::vector<ListColumn> columns) : columns_(std::move(columns)) {
  int64_t left = 0;
  for (const ListColumn& column : columns_) {
    lefts_.push_back(static_cast<int32_t>(std::min<int64_t>(left, GOObject::kFarthest)));
    left += std::max(column.width, 0);
  }
}

int32_t ListView::ColumnLeft(int index) const {
  return index < 0 || index >= ColumnCount() ? 0 : lefts_[static_cast<size_t>(index)];
}

void* ListElement::operator new[](size_t size) { return zyl::AllocateBlock(size); }
void ListElement::operator delete[](void* memory, size_t size) noexcept {
  zyl::FreeBlock(memory, size);
}
ListElement::~ListElement() { deleteROCParam(objectValue); }
const char* ListElement::GetTypeName() const { return "ListElement"; }

void ListElement::CreateGO(const GOObject* source, int keepPlace) {
  std::unique_ptr<GOObject> made =
      source == nullptr ? std::make_unique<GOContainer>() : source->Copy();
  if (keepPlace != 0 && object_ != nullptr) {
    const GOPoint place = object_->AbsolutePlace();
    made->MoveTo(place.x, place.y);
  }
  object_ = std::move(made);
}

ListItem::ListItem(int cells)
    : cellCount_(std::max(cells, 0)),
      cells_(std::make_unique<ListElement[]>(static_cast<size_t>(cellCount_))) {
  for (size_t i = 0; i < static_cast<size_t>(cellCount_); ++i) cells_[i].row = this;
}
ListItem::~ListItem() = default;

void ListItem::CreateGO(int column, const GOObject* source) {
  if (ListElement* cell = Cell(column)) cell->CreateGO(source, 0);
}

List::List(int columns, int32_t rowHeight, GOContainer* root, std::vector<ListColumn> definitions)
    : columnCount_(std::max(columns, 0)),
      rowHeight_(rowHeight),
      root_(static_cast<RIOObject*>(root)),
      view_(std::move(definitions)) {}
List::~List() { Clear(); }
const char* List::GetTypeName() const { return "List"; }

ListView* List::GetListView(const GOContainer* root) {
  return root != nullptr && root_.Object() == root ? &view_ : nullptr;
}

ListItem* List::Row(int index) const {
  if (index < 0 || index >= rowCount_) return nullptr;
  if (index == rowCount_ - 1) return last_;
  ListItem* row = first_;
  while (index-- > 0) row = row->next_;
  return row;
}

void List::AddTail(ListItem* row) {
  row->index_ = rowCount_++;
  (last_ == nullptr ? first_ : last_->next_) = row;
  last_ = row;
}

void List::Remove(int index) {
  ListItem* row = Row(index);
  if (row == nullptr) return;
  ListItem* above = index == 0 ? nullptr : Row(index - 1);
  ListItem* below = row->next_;
  (above == nullptr ? first_ : above->next_) = below;
  if (last_ == row) last_ = above;
  --rowCount_;
  delete row;
  for (; below != nullptr; below = below->next_) {
    --below->index_;
    for (int j = 0; j < below->CellCount(); ++j) AddListElementToViewTree(below->Cell(j), j);
  }
}

void List::Clear() {
  ListItem* row = std::exchange(first_, nullptr);
  last_ = nullptr;
  rowCount_ = 0;
  while (row != nullptr) delete std::exchange(row, row->next_);
}

void List::AddListElementToViewTree(ListElement* cell, int column) {
  if (cell == nullptr || cell->Object() == nullptr || cell->row == nullptr) return;
  const int64_t top = int64_t{rowHeight_} * cell->row->Index();
  cell->Object()->MoveTo(view_.ColumnLeft(column),
                         static_cast<int32_t>(std::min<int64_t>(top, GOObject::kFarthest)));
}
