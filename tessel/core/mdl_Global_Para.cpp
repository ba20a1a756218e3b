// The parameter language: PARADECODE, PARATYPETEXT and UNHEX of the module mdl_Global.
#include <tessel/core/mdl_Global.h>

#include <tessel/core/Text.h>
#include <tessel/core/mdl_Basalt.h>

#include <memory>

namespace tessel::mdl_Global {

namespace {

// Characters start .. start+length-1 (1-based); whatever lies beyond the end is left out.
std::u16string_view mid(std::u16string_view s, size_t start, size_t length) {
  if (start > s.size()) return {};
  return s.substr(start - 1, length);
}

bool endsWith(std::u16string_view s, std::u16string_view suffix) {
  return s.size() >= suffix.size() && s.substr(s.size() - suffix.size()) == suffix;
}

// Module variables live per thread, so does the list splitter; it is made on first use.
mdl_Basalt::SplitList& listSplitter() {
  thread_local std::unique_ptr<mdl_Basalt::SplitList> splitter;
  if (!splitter) splitter = std::make_unique<mdl_Basalt::SplitList>();
  return *splitter;
}

void decode(std::u16string_view text, int32_t& pType, Variant& pValue1, Variant& pValue2, Variant& pValue3,
            Variant& pValue4) {
  pType = -1;
  const size_t n = text.size();

  // 1. "#" and up to four hexadecimal pairs; an absent pair reads 255.
  if (n >= 1 && text.front() == u'#') {
    pType = 1;
    pValue1 = UNHEX(std::u16string(mid(text, 2, 2)), 255);
    pValue2 = UNHEX(std::u16string(mid(text, 4, 2)), 255);
    pValue3 = UNHEX(std::u16string(mid(text, 6, 2)), 255);
    pValue4 = UNHEX(std::u16string(mid(text, 8, 2)), 255);
    return;
  }

  // 2. A parenthesised list: three numbers are a colour, two a coordinate, anything else nothing.
  if (n >= 2 && text.front() == u'(' && text.back() == u')') {
    mdl_Basalt::SplitList& items = listSplitter();
    items.split(text.substr(1, n - 2), u',');
    if (items.count() == 3) {
      pType = 1;
      pValue1 = readLeadingNumber(items.item(1));
      pValue2 = readLeadingNumber(items.item(2));
      pValue3 = readLeadingNumber(items.item(3));
      pValue4 = int16_t(255);
    } else if (items.count() == 2) {
      pType = 2;
      // Items 3 and 4 lie beyond the count and read 0.
      pValue1 = readLeadingNumber(items.item(1));
      pValue2 = readLeadingNumber(items.item(2));
      pValue3 = readLeadingNumber(items.item(3));
      pValue4 = readLeadingNumber(items.item(4));
    }
    return;
  }

  // 3. and 4. Suffixes, compared case-sensitively: "10PX" is left to rule 5 on purpose.
  if (endsWith(text, u"px")) {
    pType = 6;
    pValue1 = readLeadingNumber(text.substr(0, n - 2));
    return;
  }
  if (endsWith(text, u"pt")) {
    pType = 0;
    pValue1 = readLeadingNumber(text.substr(0, n - 2));
    return;
  }

  // 5. A plain number. Only the leading number counts, so "12abc" is a size of 12 (kept so).
  const double number = readLeadingNumber(text);
  if (number != 0 || text == u"0") {
    pType = 0;
    pValue1 = number;
    return;
  }

  // 6. A style word, returned as the caller wrote it.
  const std::u16string upper = toUpperAscii(text);
  if (upper == u"BOLD" || upper == u"ITALIC" || upper == u"UNDERLINE") {
    pType = 5;
    pValue1 = std::u16string(text);
    return;
  }

  // 7. A file or a name; enclosing double quotes are dropped first (a lone quote is no pair).
  std::u16string_view rest = text;
  if (n >= 2 && text.front() == u'"' && text.back() == u'"') rest = text.substr(1, n - 2);
  pType = rest.find_first_of(u"\\.:") != std::u16string_view::npos ? 3 : 4;
  pValue1 = std::u16string(rest);
}

}  // namespace

void PARADECODE(tl::Call, const std::u16string& pText, int32_t& pType, Variant& pValue1, Variant& pValue2,
                Variant& pValue3, Variant& pValue4) {
  decode(pText, pType, pValue1, pValue2, pValue3, pValue4);
}

std::u16string PARATYPETEXT(tl::Call, int32_t pType) {
  switch (pType) {
    case -1: return u"Unknown";
    case 0: return u"Size";
    case 1: return u"Color";
    case 2: return u"Coord";
    case 3: return u"File";
    case 4: return u"Name";
    case 5: return u"Style";
    case 6: return u"Width";
    default: return {};
  }
}

int32_t UNHEX(tl::Call, const std::u16string& pHex, int32_t pDefault) {
  if (pHex.empty()) return pDefault;
  int64_t value = 0;
  for (char16_t c : pHex) {
    const char16_t u = upperAscii(c);
    int digit = 0;  // any other character is a zero digit, not an error
    if (u >= u'0' && u <= u'9') digit = u - u'0';
    else if (u >= u'A' && u <= u'F') digit = u - u'A' + 10;
    value = value * 16 + digit;
    if (value > INT32_MAX) raise(rt::Overflow);
  }
  return static_cast<int32_t>(value);
}

enm_Draw_Status Execute(tl::Call, enm_Draw_Status lReturn) { return lReturn; }

bool LooseNumbers(const Variant& v, size_t most, std::vector<double>& out) {
  out.clear();
  if (v.isArray()) {
    for (const Variant& item : v.items()) out.push_back(item.toDouble());
  } else if (v.isString() && v.str().size() >= 2 && v.str().front() == u'(' && v.str().back() == u')') {
    const std::u16string_view inside = std::u16string_view(v.str()).substr(1, v.str().size() - 2);
    mdl_Basalt::SplitList items(inside, u',');
    for (int32_t i = 1; i <= items.count(); ++i) out.push_back(readLeadingNumber(items.item(i)));
  } else {
    return false;
  }
  if (out.size() > most) raise(rt::InvalidCall);
  return true;
}

}  // namespace tessel::mdl_Global
