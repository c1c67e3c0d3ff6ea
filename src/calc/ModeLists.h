// Weapon modes as they stand in tags: "damage(sw+1|thr)" has one value for each mode, "|" between them.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kvr::modeLists {

// The values, trimmed; none for an empty list. A "|" in parentheses or braces belongs to its value.
std::vector<std::string_view> Values(std::string_view list);
// The value of one mode, counted from 1; "" past the end.
std::string_view ValueAt(std::string_view list, std::size_t mode);
// The list; "" when all values are empty.
std::string Joined(std::span<const std::string> values);

// The tags that describe a mode as the data give it, and those that the calculation makes of them.
std::span<const std::string_view> SourceTags();
std::span<const std::string_view> CalculatedTags();

}  // namespace kvr::modeLists
