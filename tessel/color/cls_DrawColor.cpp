// The colour value: channels, packed and host forms, protection and the cache flush.
#include <tessel/color/cls_DrawColor.h>

#include <tessel/core/Rnd.h>

#include <algorithm>

namespace tessel {

namespace {

uint8_t clampByte(int32_t v) noexcept { return static_cast<uint8_t>(std::clamp(v, 0, 255)); }

}  // namespace

cls_DrawColor::cls_DrawColor() { bgKeys_.fill(-1); }

void cls_DrawColor::hChange() {
  brush_ = nullptr;
  for (auto& row : pens_) row.fill(nullptr);
  derived_.fill(nullptr);
  bgKeys_.fill(-1);
  brightness_ = -1;
}

void cls_DrawColor::setChannel(Channel c, uint8_t v) {
  if (protected_ || ch_[c] == v) return;
  ch_[c] = v;
  hChange();
}

Ref<cls_DrawColor> cls_DrawColor::COPY(Call, Ref<cls_DrawColor> pOther) {
  if (!protected_) {
    if (!pOther) raise(rt::ObjectNotSet);
    // Read all four before storing: pOther may be this very colour.
    const uint8_t r = pOther->R(), g = pOther->G(), b = pOther->B(), a = pOther->A();
    ch_ = {b, g, r, a};
    hChange();
  }
  return me();
}

uint8_t cls_DrawColor::R(Get) const { return ch_[kRed]; }
void cls_DrawColor::R(Let, uint8_t v) { setChannel(kRed, v); }
uint8_t cls_DrawColor::G(Get) const { return ch_[kGreen]; }
void cls_DrawColor::G(Let, uint8_t v) { setChannel(kGreen, v); }
uint8_t cls_DrawColor::B(Get) const { return ch_[kBlue]; }
void cls_DrawColor::B(Let, uint8_t v) { setChannel(kBlue, v); }
uint8_t cls_DrawColor::A(Get) const { return ch_[kAlpha]; }
void cls_DrawColor::A(Let, uint8_t v) { setChannel(kAlpha, v); }

Ref<cls_DrawColor> cls_DrawColor::RANDOM(Call) {
  if (!protected_) {
    // Drawn in this order, so a seeded sequence gives the same colours every run.
    const double r = Rnd() * 256, g = Rnd() * 256, b = Rnd() * 256;
    // 256 can come out of the rounding; RGB clamps it to 255.
    RGB(static_cast<int32_t>(roundToWhole(r, 0, 256)), static_cast<int32_t>(roundToWhole(g, 0, 256)),
        static_cast<int32_t>(roundToWhole(b, 0, 256)), -1);
  }
  return me();
}

Ref<cls_DrawColor> cls_DrawColor::RGB(Call, int32_t pR, int32_t pG, int32_t pB, int32_t pAlpha) {
  if (!protected_) {
    if (pAlpha != -1) ch_[kAlpha] = clampByte(pAlpha);
    ch_[kRed] = clampByte(pR);
    ch_[kGreen] = clampByte(pG);
    ch_[kBlue] = clampByte(pB);
    hChange();  // also when nothing changed
  }
  return me();
}

int32_t cls_DrawColor::ATOM(Get) const {
  const uint32_t w = uint32_t(ch_[kBlue]) | uint32_t(ch_[kGreen]) << 8 | uint32_t(ch_[kRed]) << 16 |
                     uint32_t(ch_[kAlpha]) << 24;
  return static_cast<int32_t>(w);
}

void cls_DrawColor::ATOM(Let, int32_t v) {
  if (!protected_) {
    const uint32_t w = static_cast<uint32_t>(v);
    ch_[kBlue] = uint8_t(w);
    ch_[kGreen] = uint8_t(w >> 8);
    ch_[kRed] = uint8_t(w >> 16);
    // The word's alpha is discarded on purpose: an assigned ATOM is always opaque.
    ch_[kAlpha] = 255;
  }
  // Runs for a protected colour too: its caches are emptied although it keeps its value (intended).
  hChange();
}

int32_t cls_DrawColor::BASIC(Get) const { return ch_[kRed] + ch_[kGreen] * 256 + ch_[kBlue] * 65536; }

void cls_DrawColor::BASIC(Let, int32_t v) {
  if (protected_) return;
  int32_t r, g, b;
  mdl_Basalt::SplitRGB(mdl_Basalt::TranslateColor(v), r, g, b);
  ch_[kRed] = clampByte(r);
  ch_[kGreen] = clampByte(g);
  ch_[kBlue] = clampByte(b);
  // No hChange here (intended): caches made before keep describing the previous colour until
  // another change flushes them.
}

Ref<cls_DrawColor> cls_DrawColor::modified(Channel c, int32_t v) const {
  int32_t r = ch_[kRed], g = ch_[kGreen], b = ch_[kBlue], a = ch_[kAlpha];
  switch (c) {
    case kRed: r = v; break;
    case kGreen: g = v; break;
    case kBlue: b = v; break;
    case kAlpha: a = v; break;
  }
  // A new colour starts opaque, so MODIFYA(-1) gives alpha 255.
  auto n = make<cls_DrawColor>();
  n->RGB(r, g, b, a);
  return n;
}

Ref<cls_DrawColor> cls_DrawColor::MODIFYR(Call, int32_t pNew) const { return modified(kRed, pNew); }
Ref<cls_DrawColor> cls_DrawColor::MODIFYG(Call, int32_t pNew) const { return modified(kGreen, pNew); }
Ref<cls_DrawColor> cls_DrawColor::MODIFYB(Call, int32_t pNew) const { return modified(kBlue, pNew); }
Ref<cls_DrawColor> cls_DrawColor::MODIFYA(Call, int32_t pNew) const { return modified(kAlpha, pNew); }

Ref<cls_DrawColor> cls_DrawColor::CLONE(Call) const {
  auto n = make<cls_DrawColor>();
  n->RGB(ch_[kRed], ch_[kGreen], ch_[kBlue], ch_[kAlpha]);
  return n;
}

void cls_DrawColor::INFO(Call) {
  if (ColorInfoWindow) ColorInfoWindow(*this);
}

std::u16string cls_DrawColor::HTML(Call) const {
  static constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  std::u16string s(u"#");
  for (Channel c : {kRed, kGreen, kBlue}) {
    s += kDigits[ch_[c] >> 4];
    s += kDigits[ch_[c] & 15];
  }
  return s;
}

bool cls_DrawColor::PROTECTED(Get) const { return protected_; }

// One-way on purpose: shared colours must stay as they are for their whole life.
void cls_DrawColor::PROTECTED(Let, bool v) {
  if (v) protected_ = true;
}

}  // namespace tessel
