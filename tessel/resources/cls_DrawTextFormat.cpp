#include <tessel/resources/cls_DrawTextFormat.h>

namespace tessel {

namespace gp = mdl_GDIPlus;

Ref<cls_DrawTextFormat> cls_DrawTextFormat::DELETE(Call) {
  if (!native_.isProtected()) native_.free();
  return Ref<cls_DrawTextFormat>(this);
}

enm_TextAlign cls_DrawTextFormat::ALIGN(Get) const { return align_; }

void cls_DrawTextFormat::ALIGN(Let, enm_TextAlign v) {
  if (native_.isProtected()) return;
  align_ = v;
  const auto a = static_cast<int32_t>(v);
  if (a < 0 || a > 11 || native_.empty()) return;
  // The twelve alignments: a / 4 the row (middle, top, bottom), a % 4 the place (left, centre,
  // right, block, which the platform draws as left). 0 near, 1 centre, 2 far.
  static constexpr int kHorizontal[4] = {0, 1, 2, 0};
  static constexpr int kVertical[3] = {1, 0, 2};
  gp::GdipSetStringFormatAlign(native_.get(), kHorizontal[a % 4]);
  gp::GdipSetStringFormatLineAlign(native_.get(), kVertical[a / 4]);
}

Ref<cls_DrawTextFormat> cls_DrawTextFormat::DIRECT(Call, enm_TextAlign pAlign) {
  if (native_.isProtected()) return Ref<cls_DrawTextFormat>(this);
  native_.free();
  gp::GpStringFormat* made = nullptr;
  if (!gp::Succeeded(gp::GdipCreateStringFormat(0, 0, &made))) return nullptr;
  native_.adopt(made);
  ALIGN(pAlign);
  return Ref<cls_DrawTextFormat>(this);
}

int64_t cls_DrawTextFormat::HANDLE(Get) const { return native_.handleValue(); }

bool cls_DrawTextFormat::PROTECTED(Get) const { return native_.isProtected(); }

// One-way on purpose: the factory's shared formats must stay as they are for their whole life.
void cls_DrawTextFormat::PROTECTED(Let, bool v) { native_.protect(v); }

}  // namespace tessel
