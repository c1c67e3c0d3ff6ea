// Gathers weapon modes, each written as an item line of its own, and writes them as parallel lists.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kvr {

class clsModeBuilder {
 public:
  // Takes a mode's tag string, "name(Swing),damage(sw+1)"; its name becomes the value of "mode". False when
  // the weapon would hold more modes and tags than any table could show (a million values); the mode is
  // dropped.
  bool AddMode(std::string_view tagString);
  // "mode(Swing|Thrust),damage(sw+1|thr)": each tag that any mode carries, in the order of first appearance,
  // with one value for each mode, empty where the mode lacks it. "" without a mode.
  std::string ModeList() const;

 private:
  struct TagValues {
    std::string name;
    std::vector<std::string> values;  // as far as the last mode that carries the tag
  };

  void SetValue(std::string_view name, std::string_view value);

  std::size_t count_ = 0;
  std::vector<TagValues> tags_;
  std::unordered_map<std::string, std::size_t> places_;
};

}  // namespace kvr
