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

Ref<cls_DrawColor> cls_DrawColor::COPY(Ref<cls_DrawColor> pOther) {
  return trap("COPY", [&] {
    if (!protected_) {
      if (!pOther) raise(rt::ObjectNotSet);
      // Read all four before storing: pOther may be this very colour.
      const uint8_t r = pOther->R(), g = pOther->G(), b = pOther->B(), a = pOther->A();
      ch_ = {b, g, r, a};
      hChange();
    }
    return me();
  });
}

uint8_t cls_DrawColor::R() const {
  return trap("R.GET", [&] { return ch_[kRed]; });
}
void cls_DrawColor::R(uint8_t v) {
  trap("R.LET", [&] { setChannel(kRed, v); });
}
uint8_t cls_DrawColor::G() const {
  return trap("G.GET", [&] { return ch_[kGreen]; });
}
void cls_DrawColor::G(uint8_t v) {
  trap("G.LET", [&] { setChannel(kGreen, v); });
}
uint8_t cls_DrawColor::B() const {
  return trap("B.GET", [&] { return ch_[kBlue]; });
}
void cls_DrawColor::B(uint8_t v) {
  trap("B.LET", [&] { setChannel(kBlue, v); });
}
uint8_t cls_DrawColor::A() const {
  return trap("A.GET", [&] { return ch_[kAlpha]; });
}
void cls_DrawColor::A(uint8_t v) {
  trap("A.LET", [&] { setChannel(kAlpha, v); });
}

Ref<cls_DrawColor> cls_DrawColor::RANDOM() {
  return trap("RANDOM", [&] {
    if (!protected_) {
      // Drawn in this order, so a seeded sequence gives the same colours every run.
      const double r = Rnd() * 256, g = Rnd() * 256, b = Rnd() * 256;
      // 256 can come out of the rounding; RGB clamps it to 255.
      RGB(static_cast<int32_t>(roundToWhole(r, 0, 256)), static_cast<int32_t>(roundToWhole(g, 0, 256)),
          static_cast<int32_t>(roundToWhole(b, 0, 256)), -1);
    }
    return me();
  });
}

Ref<cls_DrawColor> cls_DrawColor::RGB(int32_t pR, int32_t pG, int32_t pB, int32_t pAlpha) {
  return trap("RGB", [&] {
    if (!protected_) {
      if (pAlpha != -1) ch_[kAlpha] = clampByte(pAlpha);
      ch_[kRed] = clampByte(pR);
      ch_[kGreen] = clampByte(pG);
      ch_[kBlue] = clampByte(pB);
      hChange();  // also when nothing changed
    }
    return me();
  });
}

int32_t cls_DrawColor::ATOM() const {
  return trap("ATOM.GET", [&] {
    const uint32_t w = uint32_t(ch_[kBlue]) | uint32_t(ch_[kGreen]) << 8 | uint32_t(ch_[kRed]) << 16 |
                       uint32_t(ch_[kAlpha]) << 24;
    return static_cast<int32_t>(w);
  });
}

void cls_DrawColor::ATOM(int32_t v) {
  trap("ATOM.LET", [&] {
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
  });
}

int32_t cls_DrawColor::BASIC() const {
  return trap("BASIC.GET", [&] { return ch_[kRed] + ch_[kGreen] * 256 + ch_[kBlue] * 65536; });
}

void cls_DrawColor::BASIC(int32_t v) {
  trap("BASIC.LET", [&] {
    if (protected_) return;
    int32_t r, g, b;
    mdl_Basalt::SplitRGB(mdl_Basalt::TranslateColor(v), r, g, b);
    ch_[kRed] = clampByte(r);
    ch_[kGreen] = clampByte(g);
    ch_[kBlue] = clampByte(b);
    // No hChange here (intended): caches made before keep describing the previous colour until
    // another change flushes them.
  });
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

Ref<cls_DrawColor> cls_DrawColor::MODIFYR(int32_t pNew) const {
  return trap("MODIFYR", [&] { return modified(kRed, pNew); });
}
Ref<cls_DrawColor> cls_DrawColor::MODIFYG(int32_t pNew) const {
  return trap("MODIFYG", [&] { return modified(kGreen, pNew); });
}
Ref<cls_DrawColor> cls_DrawColor::MODIFYB(int32_t pNew) const {
  return trap("MODIFYB", [&] { return modified(kBlue, pNew); });
}
Ref<cls_DrawColor> cls_DrawColor::MODIFYA(int32_t pNew) const {
  return trap("MODIFYA", [&] { return modified(kAlpha, pNew); });
}

Ref<cls_DrawColor> cls_DrawColor::CLONE() const {
  return trap("CLONE", [&] {
    auto n = make<cls_DrawColor>();
    n->RGB(ch_[kRed], ch_[kGreen], ch_[kBlue], ch_[kAlpha]);
    return n;
  });
}

std::u16string cls_DrawColor::HTML() const {
  return trap("HTML", [&] {
    static constexpr char16_t kDigits[] = u"0123456789ABCDEF";
    std::u16string s(u"#");
    for (Channel c : {kRed, kGreen, kBlue}) {
      s += kDigits[ch_[c] >> 4];
      s += kDigits[ch_[c] & 15];
    }
    return s;
  });
}

bool cls_DrawColor::PROTECTED() const {
  return trap("PROTECTED.GET", [&] { return protected_; });
}

void cls_DrawColor::PROTECTED(bool v) {
  // One-way on purpose: shared colours must stay as they are for their whole life.
  trap("PROTECTED.LET", [&] {
    if (v) protected_ = true;
  });
}

const ClassInfo& cls_DrawColor::typeInfo() {
  using C = cls_DrawColor;
  static const ClassInfo info = ClassBuilder<C>()
      .creatable()
      .values({"R", "G", "B", "A"})
      .display("HTML")
      .method("COPY", &C::COPY, {"pOther"})
      .property("R", &C::R, &C::R)
      .property("G", &C::G, &C::G)
      .property("B", &C::B, &C::B)
      .property("A", &C::A, &C::A)
      .method("RANDOM", &C::RANDOM)
      .method("RGB", &C::RGB, {"pR", "pG", "pB", opt("pAlpha", -1)})
      .property("ATOM", &C::ATOM, &C::ATOM)
      .method("BRIGHTER", &C::BRIGHTER, {"pOffset"})
      .method("DARKER", &C::DARKER, {"pOffset"})
      .method("BRIGHTNESS", &C::BRIGHTNESS)
      .method("CONTRAST", &C::CONTRAST)
      .method("SYSCOLOR", &C::SYSCOLOR, {"pSysColor"})
      .method("MIX", &C::MIX, {"pMix", "pOther", opt("pSetSelf", false)})
      .method("SOLID", &C::SOLID, {"pCreate"})
      .property("BASIC", &C::BASIC, &C::BASIC)
      .method("MODIFYR", &C::MODIFYR, {"pNew"})
      .method("MODIFYG", &C::MODIFYG, {"pNew"})
      .method("MODIFYB", &C::MODIFYB, {"pNew"})
      .method("MODIFYA", &C::MODIFYA, {"pNew"})
      .method("CONTRASTCOLOR", &C::CONTRASTCOLOR, {"pBackgroundColor"})
      .method("CLONE", &C::CLONE)
      .method("HTML", &C::HTML)
      .property("PROTECTED", &C::PROTECTED, &C::PROTECTED);
  return info;
}
TESSEL_REGISTER_CLASS(cls_DrawColor)

}  // namespace tessel
