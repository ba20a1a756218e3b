#include <tessel/core/cls_DrawFlags.h>

#include <tessel/core/Text.h>

namespace tessel {

size_t cls_DrawFlags::find(const std::u16string& key) const noexcept {
  for (size_t k = 0; k < entries_.size(); ++k)
    if (equalsIgnoreCase(entries_[k].first, key)) return k;
  return npos;
}

Variant cls_DrawFlags::FLAG(const std::u16string& pKey, const Variant& pDefault) const {
  return trap("FLAG", [&]() -> Variant {
    const size_t k = find(pKey);
    if (k != npos) return entries_[k].second;
    // An omitted default must not travel on as the omitted-argument marker.
    return pDefault.isMissing() ? Variant() : pDefault;
  });
}

Ref<cls_DrawFlags> cls_DrawFlags::SETFLAG(const std::u16string& pKey, const Variant& pValue) {
  return trap("SETFLAG", [&] {
    // Holding itself would keep the collection alive for ever.
    if (pValue.obj() == this) raise(rt::InvalidCall);
    Variant value = pValue.isMissing() ? Variant() : pValue;
    const size_t k = find(pKey);
    if (k == npos) entries_.emplace_back(pKey, std::move(value));
    else std::swap(entries_[k].second, value);  // the old value goes when `value` does
    return Ref<cls_DrawFlags>(this);
  });
}

bool cls_DrawFlags::REMOVE(const std::u16string& pKey) {
  return trap("REMOVE", [&] {
    const size_t k = find(pKey);
    if (k == npos) return false;
    // The value is released only once the collection is consistent again.
    Variant gone = std::move(entries_[k].second);
    entries_.erase(entries_.begin() + static_cast<ptrdiff_t>(k));
    return true;
  });
}

bool cls_DrawFlags::EXISTS(const std::u16string& pKey) const {
  return trap("EXISTS", [&] { return find(pKey) != npos; });
}

int32_t cls_DrawFlags::count() const {
  return trap("count.GET", [&] { return static_cast<int32_t>(entries_.size()); });
}

std::u16string cls_DrawFlags::KEY(int32_t pIndex) const {
  return trap("KEY", [&] {
    if (pIndex < 1 || pIndex > static_cast<int32_t>(entries_.size())) raise(rt::SubscriptOutOfRange);
    return entries_[static_cast<size_t>(pIndex - 1)].first;
  });
}

Ref<cls_DrawFlags> cls_DrawFlags::CLEAR() {
  return trap("CLEAR", [&] {
    // Values may release objects whose destructors look at this collection: empty it first.
    std::vector<Entry> old;
    old.swap(entries_);
    return Ref<cls_DrawFlags>(this);
  });
}

const ClassInfo& cls_DrawFlags::typeInfo() {
  static const ClassInfo info = ClassBuilder<cls_DrawFlags>()
      .creatable()
      .collection("count", "KEY")
      .method("FLAG", &cls_DrawFlags::FLAG, {"pKey", opt("pDefault")})
      .method("SETFLAG", &cls_DrawFlags::SETFLAG, {"pKey", "pValue"})
      .method("REMOVE", &cls_DrawFlags::REMOVE, {"pKey"})
      .method("EXISTS", &cls_DrawFlags::EXISTS, {"pKey"})
      .get("count", &cls_DrawFlags::count)
      .method("KEY", &cls_DrawFlags::KEY, {"pIndex"})
      .method("CLEAR", &cls_DrawFlags::CLEAR)
      .defaultMember("FLAG");
  return info;
}
TESSEL_REGISTER_CLASS(cls_DrawFlags)

}  // namespace tessel
