// Finds many texts at once in another text.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kvr {

// Built over a set of patterns, it reads a text once and reports every match of every pattern, also those
// that overlap or stand inside each other. (The usual name of the method is Aho-Corasick.) The cost of a
// search is the length of the text plus the number of matches, however many patterns there are.
class TextAutomaton {
 public:
  // Sorted, without doubles and without the empty text. They are read while the automaton is built, not
  // later.
  explicit TextAutomaton(const std::vector<std::string_view>& patterns);

  // Calls found(index of the pattern, position behind its last character).
  template <class Found>
  void Search(std::string_view text, Found&& found) const {
    std::uint32_t state = kRoot;
    for (std::size_t i = 0; i < text.size(); ++i) {
      state = Next(state, static_cast<unsigned char>(text[i]));
      for (std::uint32_t node = state; node != kRoot; node = nodes_[node].shorter) {
        if (nodes_[node].pattern != kNone) found(nodes_[node].pattern, i + 1);
      }
    }
  }

 private:
  static constexpr std::uint32_t kRoot = 0, kNone = 0xFFFFFFFF;

  // The children of a node stand side by side in nodes_.
  struct Node {
    std::uint32_t firstChild = 0;
    std::uint32_t fallback = kRoot;  // the longest proper ending of this node's text that is a node
    std::uint32_t shorter = kRoot;   // the longest proper ending that is a pattern
    std::uint32_t pattern = kNone;   // the pattern that is this node's text
    std::uint16_t childCount = 0;
    unsigned char letter = 0;
  };
  struct Range {
    std::uint32_t node, begin, end, depth;
  };

  void AddChildren(const std::vector<std::string_view>& patterns, std::vector<Range>& ranges, Range range);
  void LinkEndings();
  std::uint32_t Child(std::uint32_t node, unsigned char letter) const;
  std::uint32_t Next(std::uint32_t state, unsigned char letter) const;

  std::vector<Node> nodes_;                     // breadth first
  std::array<std::uint32_t, 256> rootChild_{};  // of each letter; kRoot for none
};

}  // namespace kvr
