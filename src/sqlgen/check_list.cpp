#include "sqlgen/check_list.h"

#include "common/text.h"
#include "dictionary/division.h"

namespace quillmarden {

const std::string& pGetCheckList(const Generation& generation, std::string_view listName) {
  auto& texts = generation.checkLists.texts;
  std::string name(listName);
  const auto known = texts.find(name);
  if (known != texts.end()) return known->second;
  std::string text = pGetDivisionIn2Text(*generation.session.gDB, generation.system.name, name, ValueListType::Number);
  return texts.emplace(std::move(name), std::move(text)).first->second;
}

}  // namespace quillmarden
