// A keyed list in sorted order: the store behind every clsSorted...Collection.
//
// Keys ignore case and are unique. The order comes from `SortOrder(const T&, const T&)` of the type held,
// which must not change for an item while it is in the collection (take it out, change it, add it again).
// Sorting is put off until a position is asked for, so filling a collection is linear. Positions are 1-based.
#pragma once

#include <algorithm>
#include <compare>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/KVRError.h"
#include "core/Text.h"

namespace kvr {

struct HashOfKey {
  using is_transparent = void;
  std::size_t operator()(std::string_view key) const { return static_cast<std::size_t>(HashNoCase(key)); }
};
struct EqualKeys {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const { return EqualNoCase(a, b); }
};

// Holder is std::unique_ptr<T> for a collection that owns its items, T* for one that only lists them.
template <class T, class Holder = std::unique_ptr<T>>
class SortedCollection {
 public:
  // Leaves the collection unchanged when the key exists: false, and Error() is 457.
  bool Add(Holder item, std::string_view key) {
    error_ = 0;
    T* raw = std::to_address(item);
    auto [place, isNew] = byKey_.try_emplace(std::string(key), std::move(item));
    if (!isNew) {
      error_ = static_cast<int>(ErrorNumber::DuplicateKey);
      return false;
    }
    order_.push_back({raw, &place->first});
    return true;
  }

  std::size_t Count() const { return order_.size(); }
  bool Empty() const { return order_.empty(); }

  // Error 9 outside 1 to Count.
  T& Item(std::size_t position) const {
    Sort();
    if (position < 1 || position > order_.size()) throw KVRError(ErrorNumber::Subscript);
    return *order_[position - 1].item;
  }
  // nullptr when there is none, and Error() is 5.
  T* Item(std::string_view key) const {
    auto place = byKey_.find(key);
    error_ = place == byKey_.end() ? static_cast<int>(ErrorNumber::MissingKey) : 0;
    return place == byKey_.end() ? nullptr : std::to_address(place->second);
  }
  const std::string& KeyAt(std::size_t position) const {
    Sort();
    if (position < 1 || position > order_.size()) throw KVRError(ErrorNumber::Subscript);
    return *order_[position - 1].key;
  }
  // The position of an item that is in the collection; 0 if it is not.
  std::size_t Position(const T& item) const {
    for (std::size_t i = LowerBound([&](const T& other) { return SortOrder(other, item) < 0; });
         i <= order_.size() && SortOrder(*order_[i - 1].item, item) == 0; ++i) {
      if (order_[i - 1].item == &item) return i;
    }
    return 0;
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
    auto place = byKey_.find(key);
    error_ = place == byKey_.end() ? static_cast<int>(ErrorNumber::MissingKey) : 0;
    if (place == byKey_.end()) return Holder{};
    EraseFromOrder(std::to_address(place->second));
    Holder item = std::move(place->second);
    byKey_.erase(place);
    return item;
  }
  bool Remove(std::string_view key) { return static_cast<bool>(Take(key)); }
  void RemoveAt(std::size_t position) { Take(std::string(KeyAt(position))); }
  void Clear() {
    order_.clear();
    byKey_.clear();
    sorted_ = 0;
  }

  // 0 after success, else the failure number of the last operation by key.
  int Error() const { return error_; }

  class Iterator;
  Iterator begin() const {
    Sort();
    return Iterator(order_.data());
  }
  Iterator end() const { return Iterator(order_.data() + order_.size()); }

 private:
  struct Entry {
    T* item;
    const std::string* key;
  };

  void Sort() const {
    if (sorted_ == order_.size()) return;
    auto before = [](const Entry& a, const Entry& b) { return SortOrder(*a.item, *b.item) < 0; };
    auto middle = order_.begin() + static_cast<std::ptrdiff_t>(sorted_);
    std::stable_sort(middle, order_.end(), before);
    std::inplace_merge(order_.begin(), middle, order_.end(), before);
    sorted_ = order_.size();
  }
  void EraseFromOrder(const T* item) {
    std::size_t position = Position(*item);
    order_.erase(order_.begin() + static_cast<std::ptrdiff_t>(position - 1));
    sorted_ = order_.size();
  }

  std::unordered_map<std::string, Holder, HashOfKey, EqualKeys> byKey_;
  mutable std::vector<Entry> order_;
  mutable std::size_t sorted_ = 0;  // how many at the front are in order
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
