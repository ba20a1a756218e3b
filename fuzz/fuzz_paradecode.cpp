// Fuzzes the text parsers of the parameter language: PARADECODE, UNHEX, the splitter and the
// colour-name lookup. Besides crashes and hangs it checks what must hold for any input.
//
// Input: the first byte picks the character width (low bit: one byte or two bytes per UTF-16
// unit) and the splitter's separator; the rest is the text.
#include "FuzzSupport.h"

#include <tessel/core/Error.h>
#include <tessel/core/MessageBox.h>
#include <tessel/core/Variant.h>
#include <tessel/core/mdl_Basalt.h>
#include <tessel/core/mdl_Global.h>

#include <cstdint>
#include <cstdlib>
#include <cstdio>
#include <string>

using namespace tessel;
using tessel::fuzzing::textOf;

namespace {

bool isByteValue(const Variant& v) { return v.type() == VarType::Long && v.toLong() >= 0 && v.toLong() <= 255; }

void checkParaDecode(const std::u16string& text) {
  // Null marks the cells: no rule ever assigns it.
  int32_t type = 12345;
  Variant v1 = Variant::null(), v2 = Variant::null(), v3 = Variant::null(), v4 = Variant::null();
  mdl_Global::PARADECODE(text, type, v1, v2, v3, v4);
  CHECK(type >= -1 && type <= 6);
  CHECK(!mdl_Global::PARATYPETEXT(type).empty());
  if (type == -1) CHECK(v1.isNull() && v2.isNull() && v3.isNull() && v4.isNull());
  else CHECK(!v1.isNull());
  if (!text.empty() && text[0] == u'#') {
    CHECK(type == 1);
    CHECK(isByteValue(v1) && isByteValue(v2) && isByteValue(v3) && isByteValue(v4));
  }
  if (type == 2) CHECK(v1.type() == VarType::Double && v4.type() == VarType::Double);
  if (type == 3 || type == 4) CHECK(v1.isString() && v1.str().size() <= text.size());
}

void checkUnhex(const std::u16string& text) {
  // Reference: hexadecimal digits in either case, anything else a zero digit.
  uint64_t expected = 0;
  bool overflow = false;
  for (char16_t c : text) {
    int d = 0;
    if (c >= u'0' && c <= u'9') d = c - u'0';
    else if (c >= u'a' && c <= u'f') d = c - u'a' + 10;
    else if (c >= u'A' && c <= u'F') d = c - u'A' + 10;
    expected = expected * 16 + static_cast<uint64_t>(d);
    if (expected > INT32_MAX) { overflow = true; break; }
  }
  try {
    const int32_t got = mdl_Global::UNHEX(text, -7);
    CHECK(!overflow);
    CHECK(got == (text.empty() ? -7 : static_cast<int32_t>(expected)));
  } catch (const Error& e) {
    CHECK(overflow);
    CHECK(e.number() == static_cast<int32_t>(0x80040006));
    CHECK(e.source() == "mdl_Global.UNHEX");
  }
}

void checkSplit(const std::u16string& text, char16_t separator) {
  const auto items = mdl_Basalt::Split(text, separator, u"([", u")]", u'"');
  // Splitting loses nothing: the items joined by the separator give the text back.
  std::u16string joined;
  for (size_t k = 0; k < items.size(); ++k) {
    if (k) joined.push_back(separator);
    joined += items[k];
  }
  CHECK(joined == text);
  CHECK(items.empty() == text.empty());
  mdl_Basalt::SplitList list(text, separator);
  CHECK(list.item(list.count() + 1).empty());
  CHECK(list.item(0).empty());
}

void checkColours(const std::u16string& text) {
  const int32_t name = mdl_Basalt::ColorFromName(text, -1);
  CHECK(name == -1 || (name & 0xFF000000) == 0);
  if (text.size() >= 2) {
    const int32_t host = static_cast<int32_t>(text[0] | static_cast<uint32_t>(text[1]) << 16);
    try {
      CHECK((mdl_Basalt::TranslateColor(host) & 0xFF000000) == 0);
    } catch (const Error& e) {
      CHECK(e.number() == rt::InvalidCall);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzing::refuseDialogs();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const uint8_t selector = data[0];
  const std::u16string text = textOf(data + 1, size - 1, selector & 1);
  static const char16_t separators[] = {u',', u' ', u'(', u'"', u';', u'\0', u')', u'#'};
  checkParaDecode(text);
  checkUnhex(text);
  checkSplit(text, separators[(selector >> 1) & 7]);
  checkColours(text);
  return 0;
}
