// The editor's lists: rows of cells, and the view that shows them in columns.
//
// Ownership: a list owns its rows and its view; a row owns its cells; a cell owns its graphic
// object and one reference to its object value. The object value does not own its object: it
// becomes a null object when the object is destroyed. Rows, columns and cells are counted from 0.
// Script thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "graphics.h"

class List;
class ListItem;

// One column of a view: its width, and values whose meaning the list's owner defines.
struct ListColumn {
  // Style bit: texts have the column's width. Without it, each text is as wide as it needs.
  static constexpr uint32_t kFixedWidth = 0x10000;

  int32_t width = 0;  // pixels; negative: as wide as the texts
  uint32_t style = 0;
  std::vector<int32_t> scriptValues;
  std::string title;

  // Returns 0 for a missing value.
  int32_t ScriptValue(size_t index) const {
    return index < scriptValues.size() ? scriptValues[index] : 0;
  }
};

// Shows a list under a graphic root.
class ZYLHOST_API ListView {
 public:
  explicit ListView(std::vector<ListColumn> columns);
  int ColumnCount() const { return static_cast<int>(columns_.size()); }
  // Returns null for an undefined column.
  const ListColumn* Column(int index) const {
    return index < 0 || index >= ColumnCount() ? nullptr : &columns_[static_cast<size_t>(index)];
  }
  // Returns the left edge of a column in pixels. Columns of automatic width count as width 0.
  int32_t ColumnLeft(int index) const;

 private:
  std::vector<ListColumn> columns_;
  std::vector<int32_t> lefts_;
};

// A cell of a row.
class ZYLHOST_API ListElement : public RIOObject {
 public:
  ListElement() = default;
  ~ListElement() override;
  static void* operator new[](size_t size);
  static void operator delete[](void* memory, size_t size) noexcept;
  const char* GetTypeName() const override;

  // Replaces the cell's object by a copy of `source`, or by an empty container if `source` is null.
  // If `keepPlace` is not 0, the new object gets the position of the old one.
  void CreateGO(const GOObject* source, int keepPlace);
  GOObject* Object() const { return object_.get(); }

  ListItem* row = nullptr;
  int32_t value = 0;
  ROCParam* objectValue = nullptr;

 private:
  std::unique_ptr<GOObject> object_;
};

// A row. Modules may derive from it.
class ZYLHOST_API ListItem {
 public:
  explicit ListItem(int cells);
  virtual ~ListItem();
  ListItem(const ListItem&) = delete;
  ListItem& operator=(const ListItem&) = delete;

  int CellCount() const { return cellCount_; }
  // Returns null for an index out of range.
  ListElement* Cell(int column) const {
    return column < 0 || column >= cellCount_ ? nullptr : &cells_[static_cast<size_t>(column)];
  }
  // Calls ListElement::CreateGO on a cell. Does nothing for an index out of range.
  void CreateGO(int column, const GOObject* source);
  ListItem* Next() const { return next_; }
  int Index() const { return index_; }

 private:
  friend class List;
  int cellCount_;
  std::unique_ptr<ListElement[]> cells_;
  ListItem* next_ = nullptr;
  int index_ = 0;  // position in the list
};

class ZYLHOST_API List : public RIOObject {
 public:
  // The view has the columns `definitions` and belongs to `root`, which is not owned. `rowHeight`
  // is in pixels.
  List(int columns, int32_t rowHeight, GOContainer* root, std::vector<ListColumn> definitions);
  ~List() override;
  const char* GetTypeName() const override;

  int ColumnCount() const { return columnCount_; }
  int32_t RowHeight() const { return rowHeight_; }
  // Returns the view if it belongs to `root`, otherwise null.
  ListView* GetListView(const GOContainer* root);
  const ListView& View() const { return view_; }

  ListItem* First() const { return first_; }
  int RowCount() const { return rowCount_; }
  // Returns null for an index out of range.
  ListItem* Row(int index) const;
  // Appends the row and takes ownership of it.
  void AddTail(ListItem* row);
  // Deletes a row; the rows below it move up. Does nothing for an index out of range.
  void Remove(int index);
  void Clear();
  // Moves the cell's object to the position of its row and of `column`.
  void AddListElementToViewTree(ListElement* cell, int column);

 private:
  int columnCount_;
  int32_t rowHeight_;
  ROCParam root_;
  ListView view_;
  ListItem* first_ = nullptr;
  ListItem* last_ = nullptr;
  int rowCount_ = 0;
};
