// Fuzzes the font descriptions of the font factory's AUTO: any text gives a font, either made
// from its name, size and style pieces or empty with the ERRORSET message that names the text;
// the only failure a text may cause is a size beyond the Single range. Whatever a text makes,
// a copy of it and its family can be read, and dropping both leaves no native object behind.
//
// libgdiplus keeps every family name it is asked for in a cache for the life of the process, so
// memory grows with the distinct names tried (about 1 GB resident after two and a half minutes);
// a run of many minutes wants a higher -rss_limit_mb than libFuzzer's 2 GB.
//
// Input: the first byte picks the character width (low bit: one byte or two bytes per UTF-16
// unit); the rest is the text.
#include "FuzzSupport.h"

#include <tessel/root/cls_DrawTool.h>

#include <cstdint>
#include <string>

using namespace tessel;
using tessel::fuzzing::textOf;
namespace gp = tessel::mdl_GDIPlus;

namespace {

void checkDescription(const std::u16string& text) {
  static const std::u16string kMarker = u"(untouched)";
  mdl_Global::DRAW()->ERRORSET(kMarker);
  Ref<cls_DrawFont> font;
  try {
    font = mdl_Global::DRAW()->FONT()->AUTO(Variant(text));
  } catch (const Error& e) {
    CHECK(e.number() == static_cast<int32_t>(0x80040006));  // a size beyond the Single range
    CHECK(e.source() == "cls_DrawToolFont.AUTO");
    return;
  }
  CHECK(font && !font->PROTECTED());
  const std::u16string& message = cls_DrawTool::lastErrorMessage();
  if (message == kMarker) {
    // Made from its pieces; empty only when the platform refused the size.
    const auto style = static_cast<int32_t>(font->STYLE());
    CHECK(style >= 0 && style <= 7);  // bold, italic and underline words, each once
    CHECK(font->HANDLE() == 0 || font->SIZE() > 0);
    CHECK((font->HANDLE() == 0) == (font->FAMILY() == 0));
  } else {
    CHECK(font->HANDLE() == 0 && font->FONTNAME().empty());
    CHECK(message.rfind(u"Wrong arguments '" + text + u"' for font creation: Parameter '", 0) == 0);
  }
  auto copy = make<cls_DrawFont>()->COPY(font);
  CHECK(copy->FONTNAME() == font->FONTNAME());
  CHECK((copy->HANDLE() == 0) == (font->HANDLE() == 0));
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzing::refuseDialogs();
  mdl_Global::DRAW()->INIT();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const long fonts = gp::FontHandle::live(), families = gp::FontFamilyHandle::live();
  checkDescription(textOf(data + 1, size - 1, data[0] & 1));
  CHECK(gp::FontHandle::live() == fonts && gp::FontFamilyHandle::live() == families);
  return 0;
}
