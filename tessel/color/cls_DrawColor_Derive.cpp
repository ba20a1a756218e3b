// Colours computed from a colour or from outside data: lighter and darker variants,
// brightness, contrast colours, mixing, system colours and free-form values.
#include <tessel/color/cls_DrawColor.h>

#include <tessel/color/cls_DrawToolColor.h>
#include <tessel/core/Rnd.h>
#include <tessel/core/Checked.h>
#include <tessel/core/Root.h>
#include <tessel/core/mdl_Global.h>

#include <cstdlib>
#include <limits>

namespace tessel {

namespace {

constexpr int32_t kMagenta = 16711935;  // the colour of an unknown name: loud on purpose
constexpr int32_t kContrastLimit = 150;  // brightness difference that already reads well

int32_t toLongRounded(double v) {
  return static_cast<int32_t>(roundToWhole(v, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

// A channel value that must fit a byte, as automation's assignment to a Byte requires.
uint8_t toChannel(int32_t v) {
  if (v < 0 || v > 255) raise(rt::Overflow);
  return static_cast<uint8_t>(v);
}

Variant lateGet(Object* o, std::string_view name) { return Invoke(o, name, InvokeKind::Get); }

Ref<cls_DrawToolColor> factory() { return rootFactory<cls_DrawToolColor>(); }

}  // namespace

Ref<cls_DrawColor> cls_DrawColor::BRIGHTER(Call, int32_t pOffset) {
  auto n = make<cls_DrawColor>();
  n->RGB(checkedAdd(ch_[kRed], pOffset), checkedAdd(ch_[kGreen], pOffset), checkedAdd(ch_[kBlue], pOffset),
         ch_[kAlpha]);
  return n;
}

Ref<cls_DrawColor> cls_DrawColor::DARKER(Call, int32_t pOffset) {
  if (pOffset == std::numeric_limits<int32_t>::min()) raise(rt::Overflow);
  return BRIGHTER(-pOffset);
}

int32_t cls_DrawColor::BRIGHTNESS(Call) {
  if (brightness_ == -1) {
    // The system's own weights; keep them, another luminance formula changes every contrast choice.
    const double v = ch_[kRed] * 0.3 + ch_[kGreen] * 0.5 + ch_[kBlue] * 0.2;
    brightness_ = toLongRounded(v);
  }
  return brightness_;
}

Ref<cls_DrawColor> cls_DrawColor::CONTRAST(Call) {
  if (!derived_[0]) {
    auto n = make<cls_DrawColor>();
    const int32_t v = BRIGHTNESS() > kContrastLimit ? 0 : 255;
    n->RGB(v, v, v, ch_[kAlpha]);
    derived_[0] = n;
  }
  // Handed out unprotected: a caller that changes it changes the cached value.
  return derived_[0];
}

Ref<cls_DrawColor> cls_DrawColor::CONTRASTCOLOR(Call, const Variant& pBackgroundColor) {
  Ref<cls_DrawToolColor> colors = factory();
  Ref<cls_DrawColor> bg = colors->AUTO(pBackgroundColor);
  if (!bg) raise(rt::ObjectNotSet);
  const int32_t bgB = bg->BRIGHTNESS();

  // Equal background brightness, equal answer, whatever the hue.
  for (size_t i = 1; i < kDerivedSlots; ++i)
    if (bgKeys_[i] == bgB) return derived_[i];

  size_t slot = 0;
  for (size_t i = 1; i < kDerivedSlots && !slot; ++i)
    if (bgKeys_[i] == -1) slot = i;
  // Evicts slots 1 to 4 only: slot 5, once filled, stays until the colour changes (intended).
  if (!slot) slot = static_cast<size_t>(Rnd() * 4) + 1;

  const int32_t myB = BRIGHTNESS();
  Ref<cls_DrawColor> result;
  if (std::abs(bgB - myB) >= kContrastLimit) {
    result = CLONE();
  } else if (bgB <= kContrastLimit) {
    result = MIX(myB >= bgB ? 128 : 200, Variant(colors->WHITE()), false);
  } else {
    result = MIX(myB <= bgB ? 128 : 200, Variant(colors->BLACK()), false);
  }
  if (!result) raise(rt::ObjectNotSet);
  derived_[slot] = result;
  bgKeys_[slot] = bgB;
  return result;
}

Ref<cls_DrawColor> cls_DrawColor::SYSCOLOR(Call, enm_SysColor pSysColor) {
  if (!protected_) {
    int32_t r, g, b;
    mdl_Basalt::SplitRGB(mdl_Basalt::SysColor(pSysColor), r, g, b);
    RGB(r, g, b, -1);
  }
  return me();
}

Ref<cls_DrawColor> cls_DrawColor::MIX(Call, int32_t pMix, const Variant& pOther, bool pSetSelf) {
  Variant other = pOther.isObject() ? pOther : Variant(factory()->AUTO(pOther));
  // Late binding: any object with R, G and B can be mixed in, not only a colour.
  const double oR = lateGet(other.obj(), "R").toDouble();
  const double oG = lateGet(other.obj(), "G").toDouble();
  const double oB = lateGet(other.obj(), "B").toDouble();
  auto mix = [&](double own, double theirs) { return toLongRounded(own + (theirs - own) * pMix / 255.0); };
  const int32_t r = mix(ch_[kRed], oR), g = mix(ch_[kGreen], oG), b = mix(ch_[kBlue], oB);
  Ref<cls_DrawColor> target = pSetSelf && !protected_ ? me() : make<cls_DrawColor>();
  // Alpha is never mixed: the result keeps this colour's.
  target->RGB(r, g, b, ch_[kAlpha]);
  return target;
}

Ref<cls_DrawColor> cls_DrawColor::SOLID(Call, const Variant& pCreate) {
  if (protected_) return me();
  if (pCreate.isString()) {
    const std::u16string& s = pCreate.str();
    if (!s.empty() && s[0] == u'#') {
      // Two hex digits each for red, green, blue and alpha; a missing piece reads 255, so
      // "#RRGGBB" is opaque. Each channel goes through its own setter (one flush per change).
      auto piece = [&](size_t at) {
        const std::u16string p = at < s.size() ? s.substr(at, 2) : std::u16string();
        return toChannel(mdl_Global::UNHEX(p, 255));
      };
      R(piece(1));
      G(piece(3));
      B(piece(5));
      A(piece(7));
      return me();
    }
    int32_t r, g, b;
    mdl_Basalt::SplitRGB(mdl_Basalt::ColorFromName(s, kMagenta), r, g, b);
    R(toChannel(r));
    G(toChannel(g));
    B(toChannel(b));
    return me();
  }
  if (pCreate.isObject()) {
    Object* o = pCreate.obj();
    R(lateGet(o, "R").toByte());
    G(lateGet(o, "G").toByte());
    B(lateGet(o, "B").toByte());
    A(lateGet(o, "A").toByte());
    return me();
  }
  // A number is automation's integer colour (red in the low byte), taken as it is: unlike
  // BASIC, no system-colour translation.
  int32_t r, g, b;
  mdl_Basalt::SplitRGB(pCreate.toLong(), r, g, b);
  R(toChannel(r));
  G(toChannel(g));
  B(toChannel(b));
  return me();
}

}  // namespace tessel
