#include <tessel/images/cls_DrawToolImage.h>

#include <tessel/core/Root.h>
#include <tessel/core/Text.h>
#include <tessel/images/cls_DrawResources.h>

#include <optional>

namespace tessel {

namespace {

// "(w,h)" or "w,h" with whole numbers and blanks around them; nothing else is a size.
std::optional<std::pair<int32_t, int32_t>> sizeText(std::u16string_view s) {
  s = trimBlanks(s);
  if (s.size() >= 2 && s.front() == u'(' && s.back() == u')') s = s.substr(1, s.size() - 2);
  const size_t comma = s.find(u',');
  if (comma == std::u16string_view::npos) return std::nullopt;
  int32_t side[2];
  std::u16string_view parts[2] = {trimBlanks(s.substr(0, comma)), trimBlanks(s.substr(comma + 1))};
  for (int k = 0; k < 2; ++k) {
    if (parts[k].empty() || parts[k].size() > 9) return std::nullopt;
    side[k] = 0;
    for (char16_t c : parts[k]) {
      if (c < u'0' || c > u'9') return std::nullopt;
      side[k] = side[k] * 10 + (c - u'0');
    }
  }
  return std::pair{side[0], side[1]};
}

}  // namespace

Ref<cls_DrawImage> cls_DrawToolImage::imageOf(const Variant& pImage, bool cached) {
  if (pImage.isObject()) {
    if (auto same = refCast<cls_DrawImage>(pImage.objRef())) return same;
    if (auto picture = refCast<Picture>(pImage.objRef())) {
      if (!picture->bitmap()) return make<cls_DrawImage>();
      return cls_DrawImage::fromBitmap(picture->bitmap());
    }
    raise(rt::TypeMismatch);
  }
  if (pImage.isString()) {
    if (auto size = sizeText(pImage.str())) return make<cls_DrawImage>()->CREATE(size->first, size->second);
    return cached ? rootFactory<cls_DrawResources>()->fromFile(pImage.str()) : cls_DrawImage::read(pImage.str());
  }
  const int32_t side = pImage.toLong();
  return make<cls_DrawImage>()->CREATE(side, side);
}

// Both in steps: a file error's dialog answered with Ignore gives an empty image, not Nothing.
Ref<cls_DrawImage> cls_DrawToolImage::AUTO(Procedure& p, const Variant& pImage) {
  Ref<cls_DrawImage> image;
  p.step([&] { image = imageOf(pImage, true); });
  return image ? image : make<cls_DrawImage>();
}

Ref<cls_DrawImage> cls_DrawToolImage::CREATE(Call, int32_t pWidth, int32_t pHeight, const Variant& pColor) {
  return make<cls_DrawImage>()->CREATE(pWidth, pHeight, pColor);
}

Ref<cls_DrawImage> cls_DrawToolImage::LOAD(Procedure& p, const std::u16string& pFile) {
  Ref<cls_DrawImage> image = make<cls_DrawImage>();
  p.step([&] { image = cls_DrawImage::read(pFile); });
  return image;
}

}  // namespace tessel
