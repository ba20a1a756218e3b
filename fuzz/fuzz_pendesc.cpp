// Fuzzes the pen descriptions of the pen factory's AUTO: any text gives a pen, either made from
// its colour and width pieces or empty with the ERRORSET message that names the text; the only
// failure a text may cause is an overflow of its width.
//
// Input: the first byte picks the character width (low bit: one byte or two bytes per UTF-16
// unit); the rest is the text.
#include "FuzzSupport.h"

#include <tessel/root/cls_DrawTool.h>

#include <cstdint>
#include <string>

using namespace tessel;
using tessel::fuzzing::textOf;

namespace {

void checkDescription(const std::u16string& text) {
  static const std::u16string kMarker = u"(untouched)";
  mdl_Global::DRAW()->ERRORSET(kMarker);
  Ref<cls_DrawPen> pen;
  try {
    pen = mdl_Global::DRAW()->PEN()->AUTO(Variant(text));
  } catch (const Error& e) {
    CHECK(e.number() == static_cast<int32_t>(0x80040006));  // a width beyond 32 bits
    CHECK(e.source() == "cls_DrawToolPen.AUTO");
    return;
  }
  CHECK(pen && !pen->PROTECTED());
  const std::u16string& message = cls_DrawTool::lastErrorMessage();
  if (message == kMarker) {
    // Made from its pieces, or empty only when there was nothing to make (a blank text).
    bool blank = true;
    for (char16_t c : text) blank = blank && c == u' ';
    CHECK(pen->HANDLE() != 0 || blank || text.empty());
  } else {
    CHECK(pen->HANDLE() == 0);
    CHECK(message.rfind(u"Wrong arguments '" + text + u"' for pen creation: Parameter '", 0) == 0);
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzing::refuseDialogs();
  mdl_Global::DRAW()->INIT();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  checkDescription(textOf(data + 1, size - 1, data[0] & 1));
  return 0;
}
