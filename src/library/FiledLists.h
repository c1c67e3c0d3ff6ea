// What the traits of one type under one heading come to be filed under, for each list of categories of their
// own. The lists are few and the traits many, so one list is made for all that share it.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "library/modPrefixes.h"

namespace kvr {

class FiledLists {
 public:
  // The whole list of a trait with this list of its own, as it was added; nullptr when it is new.
  const std::string_view* Find(ItemType type, std::string_view heading, std::string_view own) {
    if (type != type_ || heading != heading_) {
      Clear();
      type_ = type;
      heading_ = heading;
    }
    const auto place = lists_.find(own);
    return place == lists_.end() ? nullptr : &place->second;
  }
  // For the type and the heading that were looked for last. Both texts must last.
  void Add(std::string_view own, std::string_view whole) {
    constexpr std::size_t kMostLists = 4096;
    if (lists_.size() == kMostLists) lists_.clear();
    lists_.emplace(own, whole);
  }
  // Needed when a category goes: that the categories of a list are all known is part of what is remembered.
  void Clear() { lists_.clear(); }

 private:
  ItemType type_ = kNoType;
  std::string heading_;
  std::unordered_map<std::string_view, std::string_view> lists_;  // from own to whole
};

}  // namespace kvr
