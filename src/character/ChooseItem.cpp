// The choice among library traits of one name, for needs and for templates.
#include "character/ChooseItem.h"

namespace kvr {

const clsSystemItem* ChooseItem(const KVRCharacter& character, std::string_view name, std::string text,
                                const std::vector<std::size_t>& positions) {
  const KVRSystem& library = character.System();
  SelectionRequest request;
  request.Title = "Choose Item: " + std::string(name);
  request.Text = std::move(text) + " Please select the specific one that you wish.";
  request.MinNumber = request.MaxNumber = 1;
  request.LimitNumber = true;
  for (std::size_t position : positions) {
    Choice choice;
    choice.Caption = library.Items.Item(position).FullName();
    choice.Alias = library.Items.KeyAt(position);
    request.Choices.push_back(std::move(choice));
  }
  const SelectionAnswer answer = character.Env().prompts.ChooseMany(request);
  if (answer.Canceled || answer.Chosen.empty()) return nullptr;
  return library.Items.Item(answer.Chosen.front().Alias);
}

}  // namespace kvr
