// The flags collection: a small keyed store of values that hosts hand to CONNECTDC and ICON
// ("WIDTH", "HEIGHT", …). Keys compare without regard to ASCII case; order is insertion order.
//
//   auto flags = make<cls_DrawFlags>();
//   flags->SETFLAG(u"WIDTH", 640);
//   int32_t w = flags->FLAG(u"WIDTH", int16_t(100)).toLong();
#pragma once

#include <tessel/core/TypeLib.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tessel {

class cls_DrawFlags final : public ObjectOf<cls_DrawFlags> {
 public:
  static constexpr std::string_view ClassName = "cls_DrawFlags";
  static const ClassInfo& typeInfo();

  // The value stored under pKey, or pDefault (Empty when omitted) when there is none.
  // The default member: flags("WIDTH", 100).
  Variant FLAG(const std::u16string& pKey, const Variant& pDefault = Variant()) const;
  // Stores pValue under pKey, replacing an earlier value under the same key in any case.
  Ref<cls_DrawFlags> SETFLAG(const std::u16string& pKey, const Variant& pValue);
  // Removes the key; True when it was there.
  bool REMOVE(const std::u16string& pKey);
  bool EXISTS(const std::u16string& pKey) const;
  int32_t count() const;
  // The key at a 1-based position, as first stored; 9 beyond the count.
  std::u16string KEY(int32_t pIndex) const;
  Ref<cls_DrawFlags> CLEAR();

 private:
  using Entry = std::pair<std::u16string, Variant>;
  static constexpr size_t npos = static_cast<size_t>(-1);
  size_t find(const std::u16string& key) const noexcept;

  std::vector<Entry> entries_;
};

}  // namespace tessel
