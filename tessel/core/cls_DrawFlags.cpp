#include <tessel/core/cls_DrawFlags.h>

#include <tessel/core/Text.h>

#include <algorithm>

namespace tessel {

size_t cls_DrawFlags::find(const std::u16string& key) const noexcept {
  for (size_t k = 0; k < entries_.size(); ++k)
    if (equalsIgnoreCase(entries_[k].first, key)) return k;
  return npos;
}

Variant cls_DrawFlags::FLAG(Call, const std::u16string& pKey, const Variant& pDefault) const {
  const size_t k = find(pKey);
  if (k != npos) return entries_[k].second;
  // An omitted default must not travel on as the omitted-argument marker.
  return pDefault.isMissing() ? Variant() : pDefault;
}

// Whether this collection holds `target`, directly or through collections it holds.
bool cls_DrawFlags::hReaches(const cls_DrawFlags* target) const {
  std::vector<const cls_DrawFlags*> pending{this}, seen;
  while (!pending.empty()) {
    const cls_DrawFlags* f = pending.back();
    pending.pop_back();
    if (f == target) return true;
    if (std::find(seen.begin(), seen.end(), f) != seen.end()) continue;
    seen.push_back(f);
    for (const Entry& e : f->entries_)
      if (auto* inner = dynamic_cast<const cls_DrawFlags*>(e.second.obj())) pending.push_back(inner);
  }
  return false;
}

Ref<cls_DrawFlags> cls_DrawFlags::SETFLAG(Call, const std::u16string& pKey, const Variant& pValue) {
  // Holding itself, directly or through another collection, would keep it alive for ever.
  if (auto* other = dynamic_cast<const cls_DrawFlags*>(pValue.obj()); other && other->hReaches(this))
    raise(rt::InvalidCall);
  Variant value = pValue.isMissing() ? Variant() : pValue;
  const size_t k = find(pKey);
  if (k == npos) entries_.emplace_back(pKey, std::move(value));
  else std::swap(entries_[k].second, value);  // the old value goes when `value` does
  return Ref<cls_DrawFlags>(this);
}

bool cls_DrawFlags::REMOVE(Call, const std::u16string& pKey) {
  const size_t k = find(pKey);
  if (k == npos) return false;
  // The value is released only once the collection is consistent again.
  Variant gone = std::move(entries_[k].second);
  entries_.erase(entries_.begin() + static_cast<ptrdiff_t>(k));
  return true;
}

bool cls_DrawFlags::EXISTS(Call, const std::u16string& pKey) const { return find(pKey) != npos; }

int32_t cls_DrawFlags::count(Get) const { return static_cast<int32_t>(entries_.size()); }

std::u16string cls_DrawFlags::KEY(Call, int32_t pIndex) const {
  if (pIndex < 1 || pIndex > static_cast<int32_t>(entries_.size())) raise(rt::SubscriptOutOfRange);
  return entries_[static_cast<size_t>(pIndex - 1)].first;
}

Ref<cls_DrawFlags> cls_DrawFlags::CLEAR(Call) {
  // Values may release objects whose destructors look at this collection: empty it first.
  std::vector<Entry> old;
  old.swap(entries_);
  return Ref<cls_DrawFlags>(this);
}

}  // namespace tessel
