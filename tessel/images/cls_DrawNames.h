// A read-only list of names (cls_DrawNames.members): what the image cache's NAMES hands out,
// since a Variant carries no arrays. A snapshot: the cache may change, the list does not.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/images/cls_DrawNames.members.h>

#include <string>
#include <vector>

namespace tessel {

class cls_DrawNames final : public ObjectOf<cls_DrawNames> {
  TESSEL_MEMBERS(cls_DrawNames)

 public:
  static Ref<cls_DrawNames> of(std::vector<std::u16string> names);

 private:
  std::vector<std::u16string> names_;
};

}  // namespace tessel
