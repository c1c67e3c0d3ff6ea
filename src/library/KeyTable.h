// The look-up by key behind SortedCollection: open addressing over 64-bit hashes, with linear probing. It
// holds pointers to nodes with the members `hash` (of the key, ignoring case) and `key`, and owns none of
// them.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string_view>
#include <vector>

#include "core/Text.h"

namespace kvr {

template <class Node>
class KeyTable {
 public:
  // A key is a text, or anything that has a hash and compares as one.
  template <class Key>
  Node* Find(std::uint64_t hash, const Key& key) const {
    if (slots_.empty()) return nullptr;
    for (std::size_t i = Home(hash); slots_[i].node; i = Next(i))
      if (slots_[i].hash == hash && EqualNoCase(slots_[i].node->Key(), key)) return slots_[i].node;
    return nullptr;
  }
  void Expect(std::uint64_t hash) const {
    if (!slots_.empty()) __builtin_prefetch(&slots_[Home(hash)], 1);
  }
  // Calls make() for a key that is not in the table and keeps the node that it gives; nullptr then, else the
  // node that stands.
  template <class Make>
  Node* FindOrInsert(std::uint64_t hash, std::string_view key, Make&& make) {
    Reserve(count_ + 1);
    std::size_t i = Home(hash);
    for (; slots_[i].node; i = Next(i))
      if (slots_[i].hash == hash && EqualNoCase(slots_[i].node->Key(), key)) return slots_[i].node;
    slots_[i] = {hash, make()};
    ++count_;
    return nullptr;
  }
  // The node must be in the table. Those behind it move up, so that no probe ends too early.
  void Erase(const Node* node) {
    std::size_t hole = Home(node->hash);
    while (slots_[hole].node != node) hole = Next(hole);
    for (std::size_t i = Next(hole); slots_[i].node; i = Next(i)) {
      const std::size_t wanted = Home(slots_[i].hash);
      const bool mayMove = hole <= i ? wanted <= hole || wanted > i : wanted <= hole && wanted > i;
      if (mayMove) {
        slots_[hole] = slots_[i];
        hole = i;
      }
    }
    slots_[hole] = {};
    --count_;
  }
  void Reserve(std::size_t count) {
    if (2 * count > slots_.size()) GrowTo(2 * count);
  }
  void Clear() {
    slots_.clear();
    count_ = 0;
  }

 private:
  struct Slot {
    std::uint64_t hash = 0;
    Node* node = nullptr;
  };

  std::size_t Home(std::uint64_t hash) const { return static_cast<std::size_t>(hash) & (slots_.size() - 1); }
  std::size_t Next(std::size_t i) const { return (i + 1) & (slots_.size() - 1); }
  void Place(Slot slot) {
    std::size_t i = Home(slot.hash);
    while (slots_[i].node) i = Next(i);
    slots_[i] = slot;
  }
  void GrowTo(std::size_t slots) {
    std::vector<Slot> old(std::bit_ceil(std::max<std::size_t>(slots, 8)));
    old.swap(slots_);
    for (const Slot& slot : old)
      if (slot.node) Place(slot);
  }

  std::vector<Slot> slots_;
  std::size_t count_ = 0;
};

}  // namespace kvr
