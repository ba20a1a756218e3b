#include <tessel/images/cls_DrawNames.h>

namespace tessel {

Ref<cls_DrawNames> cls_DrawNames::of(std::vector<std::u16string> names) {
  auto list = make<cls_DrawNames>();
  list->names_ = std::move(names);
  return list;
}

int32_t cls_DrawNames::count(Get) const { return static_cast<int32_t>(names_.size()); }

std::u16string cls_DrawNames::ITEM(Call, int32_t pIndex) const {
  if (pIndex < 1 || static_cast<size_t>(pIndex) > names_.size()) raise(rt::SubscriptOutOfRange);
  return names_[static_cast<size_t>(pIndex - 1)];
}

}  // namespace tessel
