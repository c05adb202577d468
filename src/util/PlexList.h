// The module's doubly linked list of pointers. Nodes are allocated in blocks; a removed node is
// added to the free chain, and the blocks are freed when the list becomes empty. The list owns its
// nodes, but not the objects that the items point to. Items are appended at the tail.
#pragma once

#include <cstdint>

#include "host/qx.h"

template <class Item>
class PlexList {
 public:
  static constexpr unsigned kBlockSize = 10;

  struct Node {
    Node* next;
    Node* previous;
    Item item;
  };

  PlexList() = default;
  ~PlexList() { RemoveAll(); }
  PlexList(const PlexList&) = delete;
  PlexList& operator=(const PlexList&) = delete;

  int32_t Count() const { return count_; }
  bool IsEmpty() const { return count_ == 0; }
  Node* Head() const { return head_; }
  Node* Tail() const { return tail_; }

  void AddTail(Item item) {
    Node* node = TakeFreeNode();
    *node = Node{nullptr, tail_, item};
    (tail_ == nullptr ? head_ : tail_->next) = node;
    tail_ = node;
    ++count_;
  }

  // Returns the first node whose item satisfies `matches`, or null.
  template <class Predicate>
  Node* FindIf(Predicate matches) const {
    for (Node* node = head_; node != nullptr; node = node->next) {
      if (matches(node->item)) return node;
    }
    return nullptr;
  }
  Node* Find(Item item) const {
    return FindIf([&](Item other) { return other == item; });
  }

  void Remove(Node* node) {
    (node->previous == nullptr ? head_ : node->previous->next) = node->next;
    (node->next == nullptr ? tail_ : node->next->previous) = node->previous;
    if (--count_ == 0) {
      RemoveAll();
    } else {
      node->next = free_;
      free_ = node;
    }
  }

  // Unlinks all nodes and frees the blocks; the items aren't changed.
  void RemoveAll() {
    count_ = 0;
    head_ = tail_ = free_ = nullptr;
    qxPlex::FreeDataChain(blocks_);
  }

 private:
  Node* TakeFreeNode() {
    if (free_ == nullptr) {
      qxPlex* block = qxPlex::Create(blocks_, kBlockSize, sizeof(Node));
      auto* nodes = static_cast<Node*>(block->Nodes());
      for (unsigned i = kBlockSize; i-- > 0;) {
        nodes[i].next = free_;
        free_ = &nodes[i];
      }
    }
    Node* node = free_;
    free_ = node->next;
    return node;
  }

  Node* head_ = nullptr;
  Node* tail_ = nullptr;
  int32_t count_ = 0;
  Node* free_ = nullptr;
  qxPlex* blocks_ = nullptr;
};
