#include <tessel/resources/cls_DrawFont.h>

#include <tessel/core/Checked.h>
#include <tessel/core/Text.h>

#include <algorithm>
#include <cstring>
#include <mutex>

namespace tessel {

namespace gp = mdl_GDIPlus;

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

// The face name of a logical-font record: UTF-8 bytes, cut to the 31 that fit before the zero
// without splitting a character.
void putFaceName(gp::LOGFONTA& record, const std::u16string& name) {
  const std::string utf8 = toUtf8(name);
  size_t n = std::min(utf8.size(), size_t(gp::LF_FACESIZE - 1));
  while (n > 0 && n < utf8.size() && (static_cast<unsigned char>(utf8[n]) & 0xC0) == 0x80) --n;
  std::memcpy(record.lfFaceName, utf8.data(), n);
}

}  // namespace

cls_DrawFont::~cls_DrawFont() {
  // Freed protected or not, under the lock that every font call holds.
  Lock lock(gp::TextLock());
  hFree();
}

void cls_DrawFont::hFree() noexcept {
  family_.reset();
  native_.free();
}

void cls_DrawFont::hAdopt(gp::GpFont* made) noexcept {
  family_.reset();
  native_.adopt(made);
}

gp::GpFontFamily* cls_DrawFont::hFamily() const {
  if (!family_ && !native_.empty()) {
    gp::GpFontFamily* copy = nullptr;
    if (gp::Succeeded(gp::GdipGetFamily(native_.get(), &copy))) family_.reset(copy);
  }
  return family_.get();
}

Ref<cls_DrawFont> cls_DrawFont::DELETE(Call) {
  Lock lock(gp::TextLock());
  if (!native_.isProtected()) hFree();
  return Ref<cls_DrawFont>(this);
}

int64_t cls_DrawFont::HANDLE(Get) const { return native_.handleValue(); }

Ref<cls_DrawFont> cls_DrawFont::FROMHDC(Call, int64_t pHDC, const std::u16string& pFontName, double pSize,
                                        int32_t pWeight, bool pItalic) {
  if (native_.isProtected()) return Ref<cls_DrawFont>(this);
  const auto hdc = reinterpret_cast<gp::HDC>(static_cast<intptr_t>(pHDC));
  // A negative height selects by character height: points at the device's resolution, in
  // pixels. A height beyond 32 bits raises 6 before anything changes (and the lowest, whose
  // absolute value libgdiplus takes, is left out).
  gp::LOGFONTA record{};
  record.lfHeight = static_cast<int32_t>(
      roundToWhole(-(pSize * gp::LogPixelsY(hdc) / 72.0), -double(INT32_MAX), double(INT32_MAX)));
  record.lfWeight = pWeight;
  record.lfItalic = pItalic ? 1 : 0;
  putFaceName(record, pFontName);

  Lock lock(gp::TextLock());
  name_ = pFontName;
  hFree();
  gp::GpFont* made = nullptr;
  // A device of 0 is refused (InvalidParameter): the font stays empty.
  if (gp::Succeeded(gp::GdipCreateFontFromLogfontA(hdc, &record, &made))) hAdopt(made);
  return Ref<cls_DrawFont>(this);
}

Ref<cls_DrawFont> cls_DrawFont::DIRECT(Call, const std::u16string& pFontName, double pSize,
                                       enm_DrawFontStyle pFontStyle) {
  if (native_.isProtected()) return Ref<cls_DrawFont>(this);
  const float size = checkedSingle(pSize);
  Lock lock(gp::TextLock());
  name_ = pFontName;
  gp::GpFontFamily* named = nullptr;
  const bool found = gp::Succeeded(gp::GdipCreateFontFamilyFromName(pFontName.c_str(), nullptr, &named));
  const gp::FontFamilyHandle family(named);  // the font keeps a copy of its own: freed on leaving
  gp::GpFont* made = nullptr;
  if (found && gp::Succeeded(gp::GdipCreateFont(named, size, static_cast<int>(pFontStyle), gp::UnitPoint, &made)))
    hAdopt(made);
  else
    hFree();
  return Ref<cls_DrawFont>(this);
}

double cls_DrawFont::SIZE(Get) const {
  Lock lock(gp::TextLock());
  gp::REAL size = 0;
  if (!native_.empty()) gp::GdipGetFontSize(native_.get(), &size);
  return size;
}

void cls_DrawFont::SIZE(Let, double v) {
  if (native_.isProtected()) return;
  const float size = checkedSingle(v);
  Lock lock(gp::TextLock());
  gp::GpFont* made = nullptr;
  // An empty font has no family to make one of, and the platform refuses a size of 0 or less:
  // the font stays as it is.
  if (gp::Succeeded(gp::GdipCreateFont(hFamily(), size, static_cast<int>(STYLE(Call{})), gp::UnitPoint, &made)))
    hAdopt(made);
}

int64_t cls_DrawFont::FAMILY(Get) const {
  Lock lock(gp::TextLock());
  return static_cast<int64_t>(reinterpret_cast<intptr_t>(hFamily()));
}

enm_DrawFontStyle cls_DrawFont::STYLE(Call) const {
  Lock lock(gp::TextLock());
  int style = 0;
  if (!native_.empty()) gp::GdipGetFontStyle(native_.get(), &style);
  return static_cast<enm_DrawFontStyle>(style);
}

std::u16string cls_DrawFont::FONTNAME(Get) const { return name_; }

Ref<cls_DrawFont> cls_DrawFont::COPY(Call, Ref<cls_DrawFont> pOther) {
  if (native_.isProtected()) return Ref<cls_DrawFont>(this);
  if (!pOther) raise(rt::ObjectNotSet);
  return DIRECT(Call{}, pOther->FONTNAME(), pOther->SIZE(), pOther->STYLE());
}

bool cls_DrawFont::PROTECTED(Get) const { return native_.isProtected(); }

// One-way on purpose: shared fonts must stay as they are for their whole life.
void cls_DrawFont::PROTECTED(Let, bool v) { native_.protect(v); }

}  // namespace tessel
