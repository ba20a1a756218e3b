#include <tessel/resources/cls_DrawImageAttributes.h>

namespace tessel {

namespace gp = mdl_GDIPlus;

cls_DrawImageAttributes::cls_DrawImageAttributes() {
  for (size_t d = 0; d < 5; ++d) matrices_[kColor][d][d] = 1;
}

void cls_DrawImageAttributes::hCheck(int32_t pMatrix, int32_t pI, int32_t pJ) {
  if (pMatrix < 0 || pMatrix > 2 || pI < 0 || pI > 4 || pJ < 0 || pJ > 4) raise(rt::SubscriptOutOfRange);
}

gp::ColorMatrix cls_DrawImageAttributes::hNative(size_t matrix) const {
  gp::ColorMatrix m{};
  for (size_t i = 0; i < 5; ++i)
    for (size_t j = 0; j < 5; ++j) m.m[j][i] = matrices_[matrix][i][j];
  return m;
}

void cls_DrawImageAttributes::hUpdate() const {
  if (native_.empty()) {
    gp::GpImageAttributes* made = nullptr;
    if (!gp::Succeeded(gp::GdipCreateImageAttributes(&made))) raise(rt::InvalidCall);
    native_.adopt(made);
  }
  const gp::ColorMatrix color = hNative(kColor), grey = hNative(kGrey);
  // A failing status is a fault here: drawing through half-set attributes would lie.
  if (!gp::Succeeded(gp::GdipSetImageAttributesColorMatrix(native_.get(), 0, 1, &color, &grey, 0)))
    raise(rt::InvalidCall);
}

int64_t cls_DrawImageAttributes::HANDLE(Get) const { return native_.handleValue(); }

Ref<cls_DrawImageAttributes> cls_DrawImageAttributes::DELETE(Call) {
  native_.free();
  MATRIXRESET();
  return Ref<cls_DrawImageAttributes>(this);
}

Ref<cls_DrawImageAttributes> cls_DrawImageAttributes::COPY(Call, Ref<cls_DrawImageAttributes> pOther) {
  if (!pOther) raise(rt::ObjectNotSet);
  if (native_.empty()) hUpdate();
  // The clone lands on a local copy of the other's handle and is let go at once: COPY takes
  // nothing over (as the object model has it), and no native object leaks.
  gp::GpImageAttributes* clone = nullptr;
  if (gp::Succeeded(gp::GdipCloneImageAttributes(native_.get(), &clone))) gp::ImageAttributesHandle dropped(clone);
  return Ref<cls_DrawImageAttributes>(this);
}

float cls_DrawImageAttributes::ALPHA(Get) const {
  hUpdate();
  return matrices_[kColor][3][3];
}

void cls_DrawImageAttributes::ALPHA(Let, float v) {
  if (v == matrices_[kColor][3][3]) return;
  matrices_[kColor][3][3] = v;
  hUpdate();
}

void cls_DrawImageAttributes::MATRIXUPDATE(Call) { hUpdate(); }

float cls_DrawImageAttributes::MATRIX(Get, enm_Draw_Matrix pMatrix, int32_t pI, int32_t pJ) const {
  const auto m = static_cast<int32_t>(pMatrix);
  hCheck(m, pI, pJ);
  return matrices_[static_cast<size_t>(m)][static_cast<size_t>(pI)][static_cast<size_t>(pJ)];
}

void cls_DrawImageAttributes::MATRIX(Let, enm_Draw_Matrix pMatrix, int32_t pI, int32_t pJ, float v) {
  const auto m = static_cast<int32_t>(pMatrix);
  hCheck(m, pI, pJ);
  matrices_[static_cast<size_t>(m)][static_cast<size_t>(pI)][static_cast<size_t>(pJ)] = v;
  hUpdate();
}

void cls_DrawImageAttributes::MATRIXRESET(Call) {
  for (size_t d = 0; d < 5; ++d) matrices_[kColor][d][d] = 1;
}

}  // namespace tessel
