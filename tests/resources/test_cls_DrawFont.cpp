// Fonts: the lifecycle with the family a font owns, protection, fonts from a device context,
// the factory's cases and font descriptions, and what "Arial" selects.
#include <tessel/core/Root.h>
#include <tessel/root/cls_DrawTool.h>

#include <gtest/gtest.h>

#include <cmath>

#include "TestSupport.h"

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;
using S = enm_DrawFontStyle;

namespace {

class Fonts : public testing::Test {
 protected:
  void SetUp() override {
    mdl_Global::DRAW()->INIT();
    fonts_ = gp::FontHandle::live();
    families_ = gp::FontFamilyHandle::live();
  }
  void TearDown() override {
    EXPECT_EQ(gp::FontHandle::live(), fonts_);
    EXPECT_EQ(gp::FontFamilyHandle::live(), families_);
  }
  Ref<cls_DrawToolFont> fonts() { return mdl_Global::DRAW()->FONT(); }
  long fonts_ = 0, families_ = 0;
};

gp::GpFont* native(const Ref<cls_DrawFont>& f) { return reinterpret_cast<gp::GpFont*>(static_cast<intptr_t>(f->HANDLE())); }

std::string familyName(const Ref<cls_DrawFont>& f) {
  char16_t name[gp::LF_FACESIZE] = {};
  gp::GdipGetFamilyName(reinterpret_cast<gp::GpFontFamily*>(static_cast<intptr_t>(f->FAMILY())), name, 0);
  return toUtf8(name);
}

// A graphics on a small bitmap: what libgdiplus takes for a device context.
struct Device {
  Device() {
    gp::GpBitmap* b = nullptr;
    gp::GdipCreateBitmapFromScan0(4, 4, 0, gp::PixelFormat32bppARGB, nullptr, &b);
    bitmap.reset(b);
    gp::GpGraphics* g = nullptr;
    gp::GdipGetImageGraphicsContext(b, &g);
    graphics.reset(g);
  }
  int64_t hdc() const { return static_cast<int64_t>(reinterpret_cast<intptr_t>(graphics.get())); }
  gp::LOGFONTA record(const Ref<cls_DrawFont>& f) const {
    gp::LOGFONTA lf{};
    gp::GdipGetLogFontA(native(f), graphics.get(), &lf);
    return lf;
  }
  gp::ImageHandle bitmap;
  gp::GraphicsHandle graphics;
};

}  // namespace

TEST_F(Fonts, NativeObjectsComeAndGoWithTheFont) {
  auto font = make<cls_DrawFont>();
  font->SIZE(20);  // no family to make one of: stays empty
  EXPECT_EQ(font->HANDLE(), 0);
  EXPECT_EQ(font->SIZE(), 0);
  EXPECT_EQ(font->STYLE(), S::ID_DrawFontStyle_Regular);
  EXPECT_EQ(font->FAMILY(), 0);

  font->DIRECT(u"Arial", 12, S::ID_DrawFontStyle_Bold)->DIRECT(u"Arial", 10, S::ID_DrawFontStyle_Italic);
  EXPECT_EQ(gp::FontHandle::live(), fonts_ + 1);  // the first freed, the name's family too
  EXPECT_EQ(gp::FontFamilyHandle::live(), families_);
  const int64_t family = font->FAMILY();
  EXPECT_NE(family, 0);
  EXPECT_EQ(font->FAMILY(), family);  // one family per font, valid while the font is unchanged
  EXPECT_EQ(gp::FontFamilyHandle::live(), families_ + 1);

  font->SIZE(14);  // a new font of the same family and style
  EXPECT_EQ(font->SIZE(), 14);
  EXPECT_EQ(font->STYLE(), S::ID_DrawFontStyle_Italic);
  EXPECT_EQ(gp::FontFamilyHandle::live(), families_);  // the old family went with the old font
  font->FAMILY();
  font->DELETE()->DELETE();
  EXPECT_EQ(font->HANDLE(), 0);
  EXPECT_EQ(font->FAMILY(), 0);
  EXPECT_EQ(font->FONTNAME(), u"Arial");  // the name stays

  auto dropped = make<cls_DrawFont>()->DIRECT(u"Arial", 9, S::ID_DrawFontStyle_Regular);
  dropped->FAMILY();
  dropped = nullptr;  // both freed by the destructor
}

TEST_F(Fonts, RefusedSizesKeepTheFontAndBadNumbersChangeNothing) {
  auto font = fonts()->DIRECT(u"Arial", 12, S::ID_DrawFontStyle_Underline);
  const int64_t kept = font->HANDLE();
  font->SIZE(0);  // refused by the platform: the old font stays
  Error e = raisedBy([&] { font->SIZE(NAN); });
  EXPECT_EQ(e.number(), objectError(6));
  EXPECT_EQ(e.source(), "cls_DrawFont.SIZE.LET");
  EXPECT_EQ(raisedBy([&] { font->DIRECT(u"Arial", 1e39, S::ID_DrawFontStyle_Bold); }).source(), "cls_DrawFont.DIRECT");
  EXPECT_EQ(font->HANDLE(), kept);
  EXPECT_EQ(font->SIZE(), 12);
  font->DIRECT(u"Arial", 0, S::ID_DrawFontStyle_Bold);  // refused by the platform: empty
  EXPECT_EQ(font->HANDLE(), 0);
}

TEST_F(Fonts, ProtectionStopsEveryChangeAndCopyTakesNameSizeAndStyle) {
  Device device;
  auto other = fonts()->DIRECT(u"Times New Roman", 8, S::ID_DrawFontStyle_BoldItalic);
  auto font = make<cls_DrawFont>()->COPY(other);
  EXPECT_EQ(font->FONTNAME(), u"Times New Roman");
  EXPECT_EQ(font->SIZE(), 8);
  EXPECT_EQ(font->STYLE(), S::ID_DrawFontStyle_BoldItalic);
  EXPECT_EQ(raisedBy([&] { font->COPY(nullptr); }).source(), "cls_DrawFont.COPY");

  const int64_t kept = font->HANDLE();
  font->PROTECTED(true);
  font->PROTECTED(false);  // one-way
  EXPECT_TRUE(font->PROTECTED());
  EXPECT_EQ(font->DELETE(), font);
  EXPECT_EQ(font->DIRECT(u"Courier New", 20, S::ID_DrawFontStyle_Regular), font);
  EXPECT_EQ(font->FROMHDC(device.hdc(), u"Courier New", 20), font);
  EXPECT_EQ(font->COPY(make<cls_DrawFont>()), font);
  font->SIZE(30);
  EXPECT_EQ(font->HANDLE(), kept);
  EXPECT_EQ(font->SIZE(), 8);
  font = nullptr;  // freed all the same
}

TEST_F(Fonts, FromADeviceContext) {
  Device device;
  auto font = make<cls_DrawFont>()->FROMHDC(device.hdc(), u"Arial", 12);
  ASSERT_NE(font->HANDLE(), 0);
  EXPECT_EQ(font->SIZE(), 16);  // 12 points at 96 dpi: a character height of 16 pixels
  EXPECT_EQ(font->STYLE(), S::ID_DrawFontStyle_Regular);  // weight 300
  EXPECT_EQ(font->FONTNAME(), u"Arial");
  EXPECT_EQ(device.record(font).lfHeight, -16);
  EXPECT_EQ(familyName(font), "Liberation Sans");

  font->FROMHDC(device.hdc(), u"Arial", 9.375, 700, true);  // 12.5 pixels, ties to even
  EXPECT_EQ(font->SIZE(), 12);
  EXPECT_EQ(font->STYLE(), S::ID_DrawFontStyle_BoldItalic);
  EXPECT_EQ(gp::FontHandle::live(), fonts_ + 1);

  // The face name is UTF-8, cut to 31 bytes without splitting a character.
  const std::u16string longName = u"Abcdefghijklmnopqrstuvwxyz1234\u00e9";  // 30 + 2 bytes
  font->FROMHDC(device.hdc(), longName, 12);
  EXPECT_EQ(std::string(device.record(font).lfFaceName), "Abcdefghijklmnopqrstuvwxyz1234");

  font->FROMHDC(0, u"Arial", 12);  // refused by the platform: empty, the name kept
  EXPECT_EQ(font->HANDLE(), 0);
  EXPECT_EQ(font->FONTNAME(), u"Arial");
  EXPECT_EQ(raisedBy([&] { font->FROMHDC(device.hdc(), u"Arial", 1e10); }).number(), objectError(6));
}

TEST_F(Fonts, FactoryCasesAndDescriptions) {
  auto f = fonts();
  EXPECT_EQ(rootFactory<cls_DrawToolFont>(), f);
  auto mine = f->DIRECT(u"Arial", 9, S::ID_DrawFontStyle_Regular);
  EXPECT_EQ(f->AUTO(Variant(mine)), mine);  // a font is handed back as it is
  for (const Variant& other : {Variant::missing(), Variant(int32_t(12)), Variant(make<cls_DrawRect>())})
    EXPECT_EQ(f->AUTO(other)->HANDLE(), 0);

  auto plain = f->AUTO(Variant(u"  "));  // the defaults
  EXPECT_EQ(plain->FONTNAME(), u"Arial");
  EXPECT_EQ(plain->SIZE(), 12);
  EXPECT_EQ(plain->STYLE(), S::ID_DrawFontStyle_Regular);
  EXPECT_EQ(familyName(plain), "Liberation Sans");

  auto described = f->AUTO(Variant(u" 'Times New Roman',10pt,bold,ITALIC "));
  EXPECT_EQ(described->FONTNAME(), u"Times New Roman");
  EXPECT_EQ(described->SIZE(), 10);
  EXPECT_EQ(described->STYLE(), S::ID_DrawFontStyle_BoldItalic);
  EXPECT_EQ(familyName(described), "Liberation Serif");
  EXPECT_EQ(f->AUTO(Variant(u"bold,bold,underline,9"))->STYLE(), S(5));  // a word counts once
  EXPECT_EQ(f->AUTO(Variant(u"9,Courier New,14"))->SIZE(), 14);          // the last size wins
  EXPECT_EQ(f->AUTO(Variant(u"Arial,0"))->HANDLE(), 0);                  // refused by the platform

  const std::pair<const char16_t*, const char*> refused[] = {
      {u"Arial,#FF0000", "Parameter '#FF0000' (type Color)"},
      {u"Arial,3px", "Parameter '3px' (type Width)"},
      {u"Mr. Font", "Parameter 'Mr. Font' (type File)"},
      {u"Arial,(1,2,3,4)", "Parameter '(1,2,3,4)' (type Unknown)"},
  };
  for (auto [text, what] : refused) {
    EXPECT_EQ(f->AUTO(Variant(text))->HANDLE(), 0);
    EXPECT_EQ(toUtf8(cls_DrawTool::lastErrorMessage()),
              "Wrong arguments '" + toUtf8(text) + "' for font creation: " + what + " not accepted");
  }
  Error e = raisedBy([&] { f->AUTO(Variant(u"Arial,1e39pt")); });
  EXPECT_EQ(e.number(), objectError(6));
  EXPECT_EQ(e.source(), "cls_DrawToolFont.AUTO");
}
