// A keyed list in sorted order: the store behind every clsSorted...Collection.
//
// Keys ignore case and are unique. The order comes from `SortOrder(const T&, const T&)` of the type held,
// which must not change for an item while it is in the collection (take it out, change it, add it again).
// Positions are 1-based. Both sorting and closing the gaps of items taken out are put off until a position
// behind them is asked for, so filling and emptying a collection are linear, in any order.
#pragma once

#include <algorithm>
#include <compare>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "core/KVRError.h"
#include "core/Text.h"
#include "library/Arena.h"
#include "library/KeyTable.h"

namespace kvr {

// Where the nodes of a collection come from, one by one.
struct HeapMemory {
  void* Allocate(std::size_t size) { return ::operator new(size); }
  void Free(void* memory) { ::operator delete(memory); }
  void FreeAll() {}
};

// Holder is a std::unique_ptr<T> for a collection that owns its items, T* for one that only lists them.
// Memory is an Arena for one of many items that seldom go before the others.
template <class T, class Holder = std::unique_ptr<T>, class Memory = HeapMemory>
class SortedCollection {
 public:
  SortedCollection() = default;
  SortedCollection(SortedCollection&& other) noexcept { Swap(other); }
  SortedCollection& operator=(SortedCollection&& other) noexcept {
    Clear();
    Swap(other);
    return *this;
  }
  ~SortedCollection() { Clear(); }

  // Leaves the collection unchanged when the key exists: false, and Error() is 457.
  bool Add(Holder item, std::string_view key) { return AddOrFind(item, key) == nullptr; }
  // Adds the item and gives nullptr; when the key exists the item stays with the caller, the result is the
  // one that stands, and Error() is 457.
  T* AddOrFind(Holder& item, std::string_view key) {
    const std::uint64_t hash = HashNoCase(key);
    Node* standing = table_.FindOrInsert(hash, key, [&] {
      T* raw = std::to_address(item);
      order_.push_back({raw, MakeNode(key, hash, std::move(item))});
      return order_.back().node;
    });
    error_ = standing ? static_cast<int>(ErrorNumber::DuplicateKey) : 0;
    return standing ? std::to_address(standing->item) : nullptr;
  }

  // Room for so many items more. Grows by doubling at least, so many small calls cost no more than one.
  void Reserve(std::size_t more) {
    const std::size_t wanted = order_.size() + more;
    table_.Reserve(wanted);
    if (wanted > order_.capacity()) order_.reserve(std::max(wanted, 2 * order_.capacity()));
  }

  // Brings the place of a key near that is to be looked for soon.
  void Expect(std::string_view key) const { table_.Expect(HashNoCase(key)); }

  std::size_t Count() const { return order_.size() - gaps_; }
  bool Empty() const { return Count() == 0; }

  // Error 9 outside 1 to Count.
  T& Item(std::size_t position) const { return *EntryAt(position).item; }
  // nullptr when there is none, and Error() is 5.
  T* Item(std::string_view key) const { return ItemOfKey(key); }
  template <class Key>
  T* ItemOfKey(const Key& key) const {
    Node* node = FindNode(key);
    return node ? std::to_address(node->item) : nullptr;
  }
  // The view holds as long as the item is in the collection.
  std::string_view KeyAt(std::size_t position) const { return EntryAt(position).node->Key(); }
  // The position of an item that is in the collection; 0 if it is not.
  std::size_t Position(const T& item) const {
    for (std::size_t i = LowerBound([&](const T& other) { return SortOrder(other, item) < 0; });
         i <= order_.size() && SortOrder(*order_[i - 1].item, item) == 0; ++i) {
      if (order_[i - 1].item == &item) return i;
    }
    return 0;
  }
  // The position that a key's item has; 0 and error 5 when there is none.
  template <class Key>
  std::size_t PositionOfKey(const Key& key) const {
    const Node* node = FindNode(key);
    if (!node) return 0;
    Sort();
    return std::size_t{node->index} + 1;
  }
  // The first position whose item is not "before"; Count() + 1 when all are.
  template <class Before>
  std::size_t LowerBound(Before&& before) const {
    Sort();
    auto place = std::partition_point(order_.begin(), order_.end(),
                                      [&](const Entry& entry) { return before(*entry.item); });
    return static_cast<std::size_t>(place - order_.begin()) + 1;
  }

  // Takes an item out and hands it over; an empty holder and error 5 when there is none.
  Holder Take(std::string_view key) {
    Node* node = FindNode(key);
    if (!node) return Holder{};
    table_.Erase(node);
    LeaveGap(node->index);
    Holder item = std::move(node->item);
    FreeNode(node);
    return item;
  }
  bool Remove(std::string_view key) { return static_cast<bool>(Take(key)); }
  void RemoveAt(std::size_t position) { Take(KeyAt(position)); }
  void Clear() {
    if constexpr (!(std::is_trivially_destructible_v<Node> && std::is_same_v<Memory, Arena>))
      for (const Entry& entry : order_)
        if (entry.node) FreeNode(entry.node);
    memory_.FreeAll();
    order_.clear();
    table_.Clear();
    sorted_ = gaps_ = 0;
    firstGap_ = kNoGap;
  }

  // 0 after success, else the failure number of the last operation by key.
  int Error() const { return error_; }

  class Iterator;
  Iterator begin() const {
    Sort();
    return Iterator(order_.data());
  }
  Iterator end() const {
    Sort();
    return Iterator(order_.data() + order_.size());
  }

 private:
  // The key's characters lie behind the node, in the same piece of memory.
  struct Node {
    std::uint64_t hash;
    std::uint32_t index;  // in order_, always
    std::uint32_t keyLength;
    Holder item;

    std::string_view Key() const { return {reinterpret_cast<const char*>(this + 1), keyLength}; }
  };
  struct Entry {
    T* item;
    Node* node;  // nullptr for a gap
  };
  static constexpr std::size_t kNoGap = static_cast<std::size_t>(-1);

  // Nodes are kept small, so that a look-up meets as few cache lines as can be.
  static std::uint32_t Narrow(std::size_t number) {
    if (number > std::numeric_limits<std::uint32_t>::max()) throw KVRError(ErrorNumber::Overflow);
    return static_cast<std::uint32_t>(number);
  }

  Node* MakeNode(std::string_view key, std::uint64_t hash, Holder item) {
    void* memory = memory_.Allocate(sizeof(Node) + key.size());
    Node* node = ::new (memory) Node{hash, Narrow(order_.size()), Narrow(key.size()), std::move(item)};
    key.copy(reinterpret_cast<char*>(node + 1), key.size());
    return node;
  }
  void FreeNode(Node* node) {
    node->~Node();
    memory_.Free(node);
  }
  template <class Key>
  Node* FindNode(const Key& key) const {
    Node* node = table_.Find(HashNoCase(key), key);
    error_ = node ? 0 : static_cast<int>(ErrorNumber::MissingKey);
    return node;
  }
  const Entry& EntryAt(std::size_t position) const {
    if (position < 1 || position > Count()) throw KVRError(ErrorNumber::Subscript);
    // The sorted part in front of the first gap stands as it will stand.
    if (sorted_ != order_.size() || position > firstGap_) Sort();
    return order_[position - 1];
  }

  // Brings the order up to date: no gaps, all sorted.
  void Sort() const {
    if (gaps_ > 0) CloseGaps();
    if (sorted_ == order_.size()) return;
    auto before = [](const Entry& a, const Entry& b) { return SortOrder(*a.item, *b.item) < 0; };
    auto middle = order_.begin() + static_cast<std::ptrdiff_t>(sorted_);
    std::stable_sort(middle, order_.end(), before);
    const auto first = std::upper_bound(order_.begin(), middle, *middle, before);
    std::inplace_merge(first, middle, order_.end(), before);
    Renumber(static_cast<std::size_t>(first - order_.begin()));
    sorted_ = order_.size();
  }
  void CloseGaps() const {
    std::size_t sortedGaps = 0;
    for (std::size_t i = firstGap_; i < sorted_; ++i) sortedGaps += order_[i].node == nullptr;
    sorted_ -= sortedGaps;
    std::erase_if(order_, [](const Entry& entry) { return entry.node == nullptr; });
    Renumber(firstGap_);
    gaps_ = 0;
    firstGap_ = kNoGap;
  }
  void Renumber(std::size_t from) const {
    for (std::size_t i = from; i < order_.size(); ++i) order_[i].node->index = Narrow(i);
  }
  void LeaveGap(std::size_t index) {
    order_[index] = {nullptr, nullptr};
    ++gaps_;
    firstGap_ = std::min(firstGap_, index);
    while (!order_.empty() && order_.back().node == nullptr) {
      order_.pop_back();
      --gaps_;
    }
    sorted_ = std::min(sorted_, order_.size());
    if (gaps_ == 0) firstGap_ = kNoGap;
  }
  void Swap(SortedCollection& other) noexcept {
    std::swap(memory_, other.memory_);
    std::swap(table_, other.table_);
    std::swap(order_, other.order_);
    std::swap(sorted_, other.sorted_);
    std::swap(gaps_, other.gaps_);
    std::swap(firstGap_, other.firstGap_);
    std::swap(error_, other.error_);
  }

  [[no_unique_address]] Memory memory_;  // of the nodes
  KeyTable<Node> table_;
  mutable std::vector<Entry> order_;  // owns the nodes
  mutable std::size_t sorted_ = 0;    // how many at the front are in order, gaps counted
  mutable std::size_t gaps_ = 0;
  mutable std::size_t firstGap_ = kNoGap;
  mutable int error_ = 0;

 public:
  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = T;
    using difference_type = std::ptrdiff_t;
    using pointer = T*;
    using reference = T&;
    explicit Iterator(const Entry* at = nullptr) : at_(at) {}
    T& operator*() const { return *at_->item; }
    T* operator->() const { return at_->item; }
    Iterator& operator++() {
      ++at_;
      return *this;
    }
    Iterator operator++(int) {
      Iterator old = *this;
      ++at_;
      return old;
    }
    friend bool operator==(Iterator a, Iterator b) { return a.at_ == b.at_; }

   private:
    const Entry* at_;
  };
};

}  // namespace kvr
