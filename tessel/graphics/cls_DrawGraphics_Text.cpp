// The surface's text (cls_DrawGraphics.members): drawing, outlined drawing through a path,
// rotation about the origin, measuring, and the byte-widened form TEXTDIRECT draws.
//
// TEXT and TEXTDIRECT go on statement by statement with errors ignored: a font the factory
// cannot make, say, leaves that step undone, and the rest still draws and undoes the rotation.
// Every text call of the platform holds the process-wide text lock.
#include <tessel/graphics/cls_DrawGraphics.h>

#include <tessel/core/Checked.h>
#include <tessel/geometry/cls_DrawRect.h>
#include <tessel/graphics/SurfaceArgs.h>
#include <tessel/resources/cls_DrawFont.h>
#include <tessel/resources/cls_DrawPath.h>
#include <tessel/resources/cls_DrawTextFormat.h>
#include <tessel/resources/cls_DrawToolBrush.h>
#include <tessel/resources/cls_DrawToolPen.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace tessel {

namespace gp = mdl_GDIPlus;
using namespace surface;
using Lock = std::lock_guard<std::recursive_mutex>;

namespace {

// Each character narrowed to one byte as a single-byte code page does (Latin-1 here, where
// a character beyond it has no byte and becomes "?"), and the bytes read back as UTF-16 code
// units, low byte first; half the characters, rounded half to even, the last byte of an odd
// count paired with 0.
std::u16string narrowedAsUtf16(const std::u16string& text, int& length) {
  std::u16string units((text.size() + 1) / 2, u'\0');
  for (size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i] <= 0xFF ? text[i] : u'?';
    units[i / 2] |= static_cast<char16_t>(i % 2 ? c << 8 : c);
  }
  length = static_cast<int>(std::nearbyint(text.size() / 2.0));
  return units;
}

}  // namespace

std::u16string cls_DrawGraphics::TEXT2UNICODE(Call, const std::u16string& pText) {
  std::u16string bytes;
  bytes.reserve(pText.size() * 2);
  for (char16_t unit : pText) {
    bytes.push_back(static_cast<char16_t>(unit & 0xFF));
    bytes.push_back(static_cast<char16_t>(unit >> 8));
  }
  return bytes;
}

void cls_DrawGraphics::TEXT(Call, const std::u16string& pText, const Variant& pRect, const Variant& pFont,
                            const Variant& pBrush, const Variant& pPen, const Variant& pTextFormat, double pAngle,
                            bool pPenBehindBrush) {
  hText(pText, static_cast<int>(pText.size()), pRect, pFont, pBrush, pPen, pTextFormat, pAngle, pPenBehindBrush);
}

void cls_DrawGraphics::TEXTDIRECT(Call, const std::u16string& pText, const Variant& pRect, const Variant& pFont,
                                  const Variant& pBrush, const Variant& pPen, const Variant& pTextFormat,
                                  double pAngle, bool pPenBehindBrush) {
  int length = 0;
  const std::u16string units = narrowedAsUtf16(pText, length);
  hText(units, length, pRect, pFont, pBrush, pPen, pTextFormat, pAngle, pPenBehindBrush);
}

void cls_DrawGraphics::hText(const std::u16string& text, int length, const Variant& pRect, const Variant& pFont,
                             const Variant& pBrush, const Variant& pPen, const Variant& pTextFormat, double pAngle,
                             bool pPenBehindBrush) {
  // An angle beyond the single range fails the call (6): turned by infinity, the native graphics
  // could not draw again.
  const float angle = checkedSingle(pAngle);
  // Omitted: no outline (unlike the shapes), and the surface's brush, font and format.
  Ref<Object> pen, rect, brush = brush_, font = FONT(), format = textFormat_;
  Ignoring([&] { pen = pPen.isMissing() ? Ref<Object>() : penArg(pPen); });
  Ignoring([&] { rect = rectArg(pRect); });
  if (!pBrush.isMissing()) Ignoring([&] { brush = brushArg(pBrush); });
  if (!pFont.isMissing()) Ignoring([&] { font = fontArg(pFont); });
  if (!pTextFormat.isMissing()) Ignoring([&] { format = formatArg(pTextFormat); });
  if (!READY()) return;

  gp::GpRectF layout{};
  Ignoring([&] { layout = boxOf(rect.get()).rectF(); });
  const bool turned = angle != 0;
  if (turned) {
    // About the origin, after the projection; the text is laid out in the box of its
    // rectangle turned back, one unit wider and taller than their extent (intended).
    gp::GdipRotateWorldTransform(graphics_.get(), angle, gp::MatrixOrderAppend);
    const Affine back = worldToDevice().inverse();
    const float x2 = layout.X + layout.Width - 1, y2 = layout.Y + layout.Height - 1;
    const Affine::Point corners[4] = {{layout.X, layout.Y}, {x2, layout.Y}, {x2, y2}, {layout.X, y2}};
    float minX = 0, minY = 0, maxX = 0, maxY = 0;
    for (int i = 0; i < 4; ++i) {
      const Affine::Point p = back.map(corners[i]);
      const auto x = static_cast<float>(p.x), y = static_cast<float>(p.y);
      if (i == 0 || x < minX) minX = x;
      if (i == 0 || y < minY) minY = y;
      if (i == 0 || x > maxX) maxX = x;
      if (i == 0 || y > maxY) maxY = y;
    }
    layout = {minX, minY, maxX - minX + 1, maxY - minY + 1};
  }

  gp::GpPen* outline = nullptr;
  if (pen) Ignoring([&] { outline = penOf(pen.get()); });
  if (!outline) {
    Ignoring([&] {
      Lock lock(gp::TextLock());
      gp::Check(gp::GdipDrawString(graphics_.get(), text.c_str(), length, fontOf(font.get()), &layout,
                                   formatOf(format.get()), brushOf(brush.get())));
    });
  } else {
    Ref<cls_DrawPath> path = make<cls_DrawPath>();
    Ignoring([&] { path->START(); });
    Ignoring([&] {
      auto* f = dynamic_cast<cls_DrawFont*>(font.get());
      if (!f) raise(font ? rt::TypeMismatch : rt::ObjectNotSet);
      auto* family = reinterpret_cast<gp::GpFontFamily*>(static_cast<intptr_t>(f->FAMILY()));
      const auto style = static_cast<int>(f->STYLE());
      const auto size = static_cast<float>(f->SIZE());
      path->addString(text.c_str(), length, family, style, size, layout, formatOf(format.get()));
    });
    Ignoring([&] { path->CLOSEFIGURE(); });
    bool behind = false;
    Ignoring([&] { behind = pPenBehindBrush && brushOf(brush.get()); });
    if (behind) {
      // The stroke first, the fill over it: only the outer half of the stroke shows.
      Ignoring([&] { PATH(Variant(path), Variant(pen), Variant(rootFactory<cls_DrawToolBrush>()->NONE())); });
      Ignoring([&] { PATH(Variant(path), Variant(rootFactory<cls_DrawToolPen>()->NONE()), Variant(brush)); });
    } else {
      Ignoring([&] { PATH(Variant(path), Variant(pen), Variant(brush)); });
    }
  }
  if (turned) gp::GdipRotateWorldTransform(graphics_.get(), -angle, gp::MatrixOrderAppend);
}

bool cls_DrawGraphics::MeasureKey::operator==(const MeasureKey& o) const = default;

size_t cls_DrawGraphics::MeasureKeyHash::operator()(const MeasureKey& k) const noexcept {
  size_t h = std::hash<std::u16string>{}(k.text);
  auto mix = [&h](uint64_t v) { h ^= std::hash<uint64_t>{}(v) + 0x9e3779b97f4a7c15ULL + (h << 6) + (h >> 2); };
  mix(k.font);
  mix(k.format);
  mix(static_cast<uint64_t>(static_cast<uint32_t>(k.align)));
  for (float v : {k.layout.X, k.layout.Y, k.layout.Width, k.layout.Height}) mix(std::hash<float>{}(v));
  return h;
}

Ref<cls_DrawRect> cls_DrawGraphics::TEXTMEASURE(Call, const std::u16string& pText, const Variant& pRect,
                                                const Variant& pFont, const Variant& pBrush,
                                                const Variant& pTextFormat) {
  const Ref<Object> brush = brushArg(pBrush.isMissing() ? Variant(brush_) : pBrush);  // converted, not used
  const Ref<Object> font = fontArg(pFont.isMissing() ? Variant(FONT()) : pFont);
  const Ref<Object> format = formatArg(pTextFormat.isMissing() ? Variant(textFormat_) : pTextFormat);
  const Ref<Object> rect = rectArg(pRect);
  if (!READY()) return {};
  const gp::GpRectF layout = boxOf(rect.get()).rectF();
  gp::GpFont* nativeFont = fontOf(font.get());
  gp::GpStringFormat* nativeFormat = formatOf(format.get());

  // A measurement depends on the text, the font, the layout rectangle and the format; the
  // stamps tell a new native font or format from an old one at the same address.
  auto* f = static_cast<cls_DrawFont*>(font.get());
  auto* t = static_cast<cls_DrawTextFormat*>(format.get());
  MeasureKey key{pText, f->nativeStamp(), t->nativeStamp(), t->ALIGN(), layout};
  gp::GpRectF box{};
  if (auto hit = measured_.find(key); hit != measured_.end()) {
    box = hit->second;
  } else {
    int fitted = 0, lines = 0;
    {
      Lock lock(gp::TextLock());
      gp::Check(gp::GdipMeasureString(graphics_.get(), pText.c_str(), static_cast<int>(pText.size()), nativeFont,
                                      &layout, nativeFormat, &box, &fitted, &lines));
    }
    if (measured_.size() >= kMeasuredKept) measured_.clear();
    measured_.emplace(std::move(key), box);
  }
  Ref<cls_DrawRect> result = make<cls_DrawRect>();
  result->MOVE(box.X, box.Y, box.Width, box.Height);
  return result;
}

}  // namespace tessel
