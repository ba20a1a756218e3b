#include <tessel/resources/cls_DrawToolFont.h>

#include <tessel/core/Text.h>
#include <tessel/resources/Description.h>

namespace tessel {

namespace {

constexpr int32_t kSizePiece = 0;  // PARADECODE's kinds that a font description takes
constexpr int32_t kNamePiece = 4;
constexpr int32_t kStylePiece = 5;

// The style a style word stands for. The parameter language knows three words and hands them
// back as written.
int32_t styleOf(const Variant& word) {
  const std::u16string upper = toUpperAscii(word.str());
  if (upper == u"BOLD") return static_cast<int32_t>(enm_DrawFontStyle::ID_DrawFontStyle_Bold);
  if (upper == u"ITALIC") return static_cast<int32_t>(enm_DrawFontStyle::ID_DrawFontStyle_Italic);
  return static_cast<int32_t>(enm_DrawFontStyle::ID_DrawFontStyle_Underline);
}

}  // namespace

// "Arial,12pt,bold": the name, size and style pieces of the parameter language, from Arial, 12
// points, regular. A name or a size replaces the one before; each style word adds its style
// (once: "bold,bold" is bold). Any other kind of piece gives an empty font (Description.h).
Ref<cls_DrawFont> cls_DrawToolFont::hDescribed(const std::u16string& text) {
  std::u16string name = u"Arial";
  double size = 12;
  int32_t style = 0;
  const bool read = ReadDescription(text, u"font", [&](const DescriptionPiece& piece) {
    switch (piece.kind) {
      case kSizePiece: size = piece.value[0].toDouble(); return true;
      case kNamePiece: name = piece.value[0].str(); return true;
      case kStylePiece: style |= styleOf(piece.value[0]); return true;
      default: return false;
    }
  });
  if (!read) return make<cls_DrawFont>();
  return make<cls_DrawFont>()->DIRECT(name, size, static_cast<enm_DrawFontStyle>(style));
}

// A font is handed back as it is (the caller wanted that font); text is a description; any
// other value, a number or an object of another class included, gives a new empty font.
Ref<cls_DrawFont> cls_DrawToolFont::AUTO(Call, const Variant& pAny) {
  if (auto same = refCast<cls_DrawFont>(pAny.objRef()); pAny.isObject() && same) return same;
  if (pAny.isString()) return hDescribed(pAny.str());
  return make<cls_DrawFont>();
}

Ref<cls_DrawFont> cls_DrawToolFont::DIRECT(Call, const std::u16string& pFontName, double pSize,
                                           enm_DrawFontStyle pFontStyle) {
  return make<cls_DrawFont>()->DIRECT(pFontName, pSize, pFontStyle);
}

}  // namespace tessel
