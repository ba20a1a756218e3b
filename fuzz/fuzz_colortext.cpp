// Fuzzes the colour texts: the colour factory's AUTO (and so a colour's SOLID) with any text,
// against a reference reading of "#RRGGBB[AA]" and a case-blind name lookup.
//
// Input: the first byte picks the character width (low bit: one byte or two bytes per UTF-16
// unit); the rest is the text.
#include "FuzzSupport.h"

#include <tessel/color/cls_DrawToolColor.h>
#include <tessel/core/Error.h>
#include <tessel/core/Text.h>
#include <tessel/core/mdl_Basalt.h>

#include <cstdint>
#include <string>

using namespace tessel;
using tessel::fuzzing::textOf;

namespace {

// A two-digit piece of "#…" as the colour reads it: any other character a zero digit, a piece
// beyond the end 255.
int hexPiece(const std::u16string& s, size_t at) {
  if (at >= s.size()) return 255;
  int v = 0;
  for (size_t k = at; k < at + 2 && k < s.size(); ++k) {
    const char16_t c = upperAscii(s[k]);
    v = v * 16 + (c >= u'0' && c <= u'9' ? c - u'0' : c >= u'A' && c <= u'F' ? c - u'A' + 10 : 0);
  }
  return v;
}

void checkColourText(const Ref<cls_DrawToolColor>& factory, const std::u16string& text) {
  Ref<cls_DrawColor> c;
  try {
    c = factory->AUTO(Variant(text));
  } catch (const Error& e) {
    std::fprintf(stderr, "a colour text raised %d\n", e.number());
    std::abort();
  }
  CHECK(c && !c->PROTECTED());
  if (!text.empty() && text[0] == u'#') {
    CHECK(c->R() == hexPiece(text, 1) && c->G() == hexPiece(text, 3) && c->B() == hexPiece(text, 5));
    CHECK(c->A() == hexPiece(text, 7));
  } else {
    // A name: found without regard to case, else the loud magenta; always opaque.
    const int32_t named = mdl_Basalt::ColorFromName(text, 0xFF00FF);
    CHECK(c->BASIC() == named && c->A() == 255);
    CHECK(factory->AUTO(Variant(toUpperAscii(text)))->ATOM() == c->ATOM());
  }
  // The text form of the colour reads back as the same colour.
  CHECK(factory->AUTO(Variant(c->HTML()))->BASIC() == c->BASIC());
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzing::refuseDialogs();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  static const Ref<cls_DrawToolColor> factory = make<cls_DrawToolColor>();
  checkColourText(factory, textOf(data + 1, size - 1, data[0] & 1));
  return 0;
}
