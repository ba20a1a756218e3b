// The flags collection: a small keyed store of values that hosts hand to CONNECTDC and ICON
// ("WIDTH", "HEIGHT", …). Keys compare without regard to ASCII case; order is insertion order.
//
//   auto flags = make<cls_DrawFlags>();
//   flags->SETFLAG(u"WIDTH", 640);
//   int32_t w = flags->FLAG(u"WIDTH", int16_t(100)).toLong();
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/core/cls_DrawFlags.members.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tessel {

class cls_DrawFlags final : public ObjectOf<cls_DrawFlags> {
  TESSEL_MEMBERS(cls_DrawFlags)

  using Entry = std::pair<std::u16string, Variant>;
  static constexpr size_t npos = static_cast<size_t>(-1);
  size_t find(const std::u16string& key) const noexcept;
  bool hReaches(const cls_DrawFlags* target) const;

  std::vector<Entry> entries_;
};

}  // namespace tessel
