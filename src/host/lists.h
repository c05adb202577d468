// The editor's lists: rows of cells, and the view that shows them in columns.
//
// Ownership. A list owns its rows and its view, a row its cells, a cell its graphic object and one
// reference on its object value. A cell's object value does not keep the object: when it goes, the
// cell holds a null object. Rows, columns and cells are counted from 0. Script thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "graphics.h"

class List;
class ListItem;

// One column of a view: how wide it is and what the list's owner has to say about it.
struct ListColumn {
  // The column keeps its width. Without it a text is as wide as it needs.
  static constexpr uint32_t kFixedWidth = 0x10000;

  int32_t width = 0;  // below 0: as wide as the texts need
  uint32_t style = 0;
  std::vector<int32_t> scriptValues;
  std::string title;

  // 0 for a value that was not given.
  int32_t ScriptValue(size_t index) const {
    return index < scriptValues.size() ? scriptValues[index] : 0;
  }
};

// How a list is shown below a graphic root.
class ZYLHOST_API ListView {
 public:
  explicit ListView(std::vector<ListColumn> columns);
  int ColumnCount() const { return static_cast<int>(columns_.size()); }
  // Null for a column that is not defined.
  const ListColumn* Column(int index) const {
    return index < 0 || index >= ColumnCount() ? nullptr : &columns_[static_cast<size_t>(index)];
  }
  // The left edge of a column; those of automatic width take no room.
  int32_t ColumnLeft(int index) const;

 private:
  std::vector<ListColumn> columns_;
  std::vector<int32_t> lefts_;
};

// A cell.
class ZYLHOST_API ListElement : public RIOObject {
 public:
  ListElement() = default;
  ~ListElement() override;
  static void* operator new[](size_t size);
  static void operator delete[](void* memory, size_t size) noexcept;
  const char* GetTypeName() const override;

  // Makes the cell's object anew, a copy of the template, or an empty container without one. With
  // `keepPlace` not 0 it lies where the one before it lay.
  void CreateGO(const GOObject* source, int keepPlace);
  GOObject* Object() const { return object_.get(); }

  ListItem* row = nullptr;
  int32_t value = 0;
  ROCParam* objectValue = nullptr;

 private:
  std::unique_ptr<GOObject> object_;
};

// A row. A class of one's own derives from it.
class ZYLHOST_API ListItem {
 public:
  explicit ListItem(int cells);
  virtual ~ListItem();
  ListItem(const ListItem&) = delete;
  ListItem& operator=(const ListItem&) = delete;

  int CellCount() const { return cellCount_; }
  // Null beyond the last one.
  ListElement* Cell(int column) const {
    return column < 0 || column >= cellCount_ ? nullptr : &cells_[static_cast<size_t>(column)];
  }
  // Makes the object of that cell; nothing for a cell that is not there.
  void CreateGO(int column, const GOObject* source);
  ListItem* Next() const { return next_; }
  int Index() const { return index_; }

 private:
  friend class List;
  int cellCount_;
  std::unique_ptr<ListElement[]> cells_;
  ListItem* next_ = nullptr;
  int index_ = 0;  // in the list
};

class ZYLHOST_API List : public RIOObject {
 public:
  // Every row gets `columns` cells. The view shows it below `root`.
  List(int columns, int32_t rowHeight, GOContainer* root, std::vector<ListColumn> definitions);
  ~List() override;
  const char* GetTypeName() const override;

  int ColumnCount() const { return columnCount_; }
  int32_t RowHeight() const { return rowHeight_; }
  // The view below that root; null below any other.
  ListView* GetListView(const GOContainer* root);
  const ListView& View() const { return view_; }

  ListItem* First() const { return first_; }
  int RowCount() const { return rowCount_; }
  // Null beyond the last one.
  ListItem* Row(int index) const;
  // Takes the row over.
  void AddTail(ListItem* row);
  void Clear();
  // Puts the cell's object where row and column meet, to be drawn from now on.
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
