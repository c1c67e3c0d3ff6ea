// The tree of the patterns, and for every node where to go on when the next letter does not fit.
#include "calc/TextAutomaton.h"

namespace kvr {

TextAutomaton::TextAutomaton(const std::vector<std::string_view>& patterns) {
  nodes_.emplace_back();
  std::vector<Range> ranges{{kRoot, 0, static_cast<std::uint32_t>(patterns.size()), 0}};
  for (std::size_t i = 0; i < ranges.size(); ++i) AddChildren(patterns, ranges, ranges[i]);
  for (std::uint32_t child = 1; child <= nodes_[kRoot].childCount; ++child) {
    rootChild_[nodes_[child].letter] = child;
  }
  LinkEndings();
}

// The patterns from begin to end have their first `depth` letters in common, which are the node's text.
void TextAutomaton::AddChildren(const std::vector<std::string_view>& patterns, std::vector<Range>& ranges,
                                Range range) {
  std::uint32_t at = range.begin;
  if (at < range.end && patterns[at].size() == range.depth) nodes_[range.node].pattern = at++;
  nodes_[range.node].firstChild = static_cast<std::uint32_t>(nodes_.size());
  while (at < range.end) {
    char letter = patterns[at][range.depth];
    std::uint32_t begin = at;
    while (at < range.end && patterns[at][range.depth] == letter) ++at;
    ranges.push_back({static_cast<std::uint32_t>(nodes_.size()), begin, at, range.depth + 1});
    nodes_.emplace_back().letter = static_cast<unsigned char>(letter);
    ++nodes_[range.node].childCount;
  }
}

void TextAutomaton::LinkEndings() {
  for (std::uint32_t parent = kRoot; parent < nodes_.size(); ++parent) {
    std::uint32_t first = nodes_[parent].firstChild;
    for (std::uint32_t child = first; child < first + nodes_[parent].childCount; ++child) {
      Node& node = nodes_[child];
      if (parent != kRoot) node.fallback = Next(nodes_[parent].fallback, node.letter);
      const Node& ending = nodes_[node.fallback];
      node.shorter = ending.pattern != kNone ? node.fallback : ending.shorter;
    }
  }
}

std::uint32_t TextAutomaton::Child(std::uint32_t node, unsigned char letter) const {
  std::uint32_t child = nodes_[node].firstChild, end = child + nodes_[node].childCount;
  while (child < end && nodes_[child].letter != letter) ++child;
  return child < end ? child : kNone;
}

std::uint32_t TextAutomaton::Next(std::uint32_t state, unsigned char letter) const {
  while (state != kRoot) {
    std::uint32_t child = Child(state, letter);
    if (child != kNone) return child;
    state = nodes_[state].fallback;
  }
  return rootChild_[letter];
}

}  // namespace kvr
