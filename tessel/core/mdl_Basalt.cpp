#include <tessel/core/mdl_Basalt.h>

#include <tessel/core/Error.h>
#include <tessel/core/Text.h>
#include <tessel/core/TypeLib.h>

#include <algorithm>
#include <array>

// These services stand in for an outside library: they carry no error trap of their own, so a
// raised error reaches the trap of the procedure that called them (e.g. "cls_DrawColor.SYSCOLOR").

namespace tessel {

namespace mdl_Basalt {

// ---------------------------------------------------------------------------------------------
// The splitter.

std::vector<std::u16string> Split(std::u16string_view text, char16_t separator, std::u16string_view open,
                                  std::u16string_view close, char16_t quote) {
  std::vector<std::u16string> items;
  if (text.empty()) return items;
  const size_t pairs = std::min(open.size(), close.size());
  std::vector<size_t> nesting;  // the pair index of each bracket still open
  bool quoted = false;
  size_t start = 0;
  for (size_t k = 0; k < text.size(); ++k) {
    const char16_t c = text[k];
    if (quoted) {
      if (c == quote) quoted = false;
      continue;
    }
    if (quote != 0 && c == quote) {
      quoted = true;
      continue;
    }
    const size_t o = open.substr(0, pairs).find(c);
    if (o != std::u16string_view::npos) {
      nesting.push_back(o);
      continue;
    }
    const size_t cl = close.substr(0, pairs).find(c);
    if (cl != std::u16string_view::npos) {
      if (!nesting.empty() && nesting.back() == cl) nesting.pop_back();
      continue;
    }
    if (c == separator && nesting.empty()) {
      items.emplace_back(text.substr(start, k - start));
      start = k + 1;
    }
  }
  items.emplace_back(text.substr(start));
  return items;
}

SplitList::SplitList(std::u16string_view text, char16_t separator, std::u16string_view open,
                     std::u16string_view close, char16_t quote)
    : items_(Split(text, separator, open, close, quote)) {}

void SplitList::split(std::u16string_view text, char16_t separator, std::u16string_view open,
                      std::u16string_view close, char16_t quote) {
  items_ = Split(text, separator, open, close, quote);
}

const std::u16string& SplitList::item(int32_t index) const noexcept {
  static const std::u16string none;
  if (index < 1 || index > count()) return none;
  return items_[static_cast<size_t>(index - 1)];
}

// ---------------------------------------------------------------------------------------------
// Colours. Plain integers carry red in the low byte: red + green * 256 + blue * 65536.

namespace {

constexpr int32_t hostRGB(int r, int g, int b) { return r + g * 256 + b * 65536; }

// The fixed default theme: the classic standard desktop scheme. Index 25 names no colour.
constexpr int32_t kNoColor = -1;
constexpr std::array<int32_t, 31> kTheme = {
    hostRGB(212, 208, 200),  //  0 scroll bar
    hostRGB(58, 110, 165),   //  1 desktop background
    hostRGB(10, 36, 106),    //  2 active caption
    hostRGB(128, 128, 128),  //  3 inactive caption
    hostRGB(212, 208, 200),  //  4 menu
    hostRGB(255, 255, 255),  //  5 window
    hostRGB(0, 0, 0),        //  6 window frame
    hostRGB(0, 0, 0),        //  7 menu text
    hostRGB(0, 0, 0),        //  8 window text
    hostRGB(255, 255, 255),  //  9 caption text
    hostRGB(212, 208, 200),  // 10 active border
    hostRGB(212, 208, 200),  // 11 inactive border
    hostRGB(128, 128, 128),  // 12 application workspace
    hostRGB(10, 36, 106),    // 13 highlight (selection)
    hostRGB(255, 255, 255),  // 14 highlight text
    hostRGB(212, 208, 200),  // 15 button face
    hostRGB(128, 128, 128),  // 16 button shadow
    hostRGB(128, 128, 128),  // 17 grey text
    hostRGB(0, 0, 0),        // 18 button text
    hostRGB(212, 208, 200),  // 19 inactive caption text
    hostRGB(255, 255, 255),  // 20 button highlight
    hostRGB(64, 64, 64),     // 21 button dark shadow
    hostRGB(212, 208, 200),  // 22 button light
    hostRGB(0, 0, 0),        // 23 tooltip text
    hostRGB(255, 255, 225),  // 24 tooltip background
    kNoColor,                // 25
    hostRGB(0, 0, 128),      // 26 hot-tracked item
    hostRGB(166, 202, 240),  // 27 active caption gradient
    hostRGB(192, 192, 192),  // 28 inactive caption gradient
    hostRGB(10, 36, 106),    // 29 menu highlight
    hostRGB(212, 208, 200),  // 30 menu bar
};

struct NamedColor {
  std::string_view name;  // lower case
  uint32_t rgb;           // 0xRRGGBB as written in style sheets
};

// The CSS named colours, sorted by name for the binary search.
constexpr NamedColor kNames[] = {
    {"aliceblue", 0xF0F8FF}, {"antiquewhite", 0xFAEBD7}, {"aqua", 0x00FFFF},
    {"aquamarine", 0x7FFFD4}, {"azure", 0xF0FFFF}, {"beige", 0xF5F5DC},
    {"bisque", 0xFFE4C4}, {"black", 0x000000}, {"blanchedalmond", 0xFFEBCD},
    {"blue", 0x0000FF}, {"blueviolet", 0x8A2BE2}, {"brown", 0xA52A2A},
    {"burlywood", 0xDEB887}, {"cadetblue", 0x5F9EA0}, {"chartreuse", 0x7FFF00},
    {"chocolate", 0xD2691E}, {"coral", 0xFF7F50}, {"cornflowerblue", 0x6495ED},
    {"cornsilk", 0xFFF8DC}, {"crimson", 0xDC143C}, {"cyan", 0x00FFFF},
    {"darkblue", 0x00008B}, {"darkcyan", 0x008B8B}, {"darkgoldenrod", 0xB8860B},
    {"darkgray", 0xA9A9A9}, {"darkgreen", 0x006400}, {"darkgrey", 0xA9A9A9},
    {"darkkhaki", 0xBDB76B}, {"darkmagenta", 0x8B008B}, {"darkolivegreen", 0x556B2F},
    {"darkorange", 0xFF8C00}, {"darkorchid", 0x9932CC}, {"darkred", 0x8B0000},
    {"darksalmon", 0xE9967A}, {"darkseagreen", 0x8FBC8F}, {"darkslateblue", 0x483D8B},
    {"darkslategray", 0x2F4F4F}, {"darkslategrey", 0x2F4F4F}, {"darkturquoise", 0x00CED1},
    {"darkviolet", 0x9400D3}, {"deeppink", 0xFF1493}, {"deepskyblue", 0x00BFFF},
    {"dimgray", 0x696969}, {"dimgrey", 0x696969}, {"dodgerblue", 0x1E90FF},
    {"firebrick", 0xB22222}, {"floralwhite", 0xFFFAF0}, {"forestgreen", 0x228B22},
    {"fuchsia", 0xFF00FF}, {"gainsboro", 0xDCDCDC}, {"ghostwhite", 0xF8F8FF},
    {"gold", 0xFFD700}, {"goldenrod", 0xDAA520}, {"gray", 0x808080},
    {"green", 0x008000}, {"greenyellow", 0xADFF2F}, {"grey", 0x808080},
    {"honeydew", 0xF0FFF0}, {"hotpink", 0xFF69B4}, {"indianred", 0xCD5C5C},
    {"indigo", 0x4B0082}, {"ivory", 0xFFFFF0}, {"khaki", 0xF0E68C},
    {"lavender", 0xE6E6FA}, {"lavenderblush", 0xFFF0F5}, {"lawngreen", 0x7CFC00},
    {"lemonchiffon", 0xFFFACD}, {"lightblue", 0xADD8E6}, {"lightcoral", 0xF08080},
    {"lightcyan", 0xE0FFFF}, {"lightgoldenrodyellow", 0xFAFAD2}, {"lightgray", 0xD3D3D3},
    {"lightgreen", 0x90EE90}, {"lightgrey", 0xD3D3D3}, {"lightpink", 0xFFB6C1},
    {"lightsalmon", 0xFFA07A}, {"lightseagreen", 0x20B2AA}, {"lightskyblue", 0x87CEFA},
    {"lightslategray", 0x778899}, {"lightslategrey", 0x778899}, {"lightsteelblue", 0xB0C4DE},
    {"lightyellow", 0xFFFFE0}, {"lime", 0x00FF00}, {"limegreen", 0x32CD32},
    {"linen", 0xFAF0E6}, {"magenta", 0xFF00FF}, {"maroon", 0x800000},
    {"mediumaquamarine", 0x66CDAA}, {"mediumblue", 0x0000CD}, {"mediumorchid", 0xBA55D3},
    {"mediumpurple", 0x9370DB}, {"mediumseagreen", 0x3CB371}, {"mediumslateblue", 0x7B68EE},
    {"mediumspringgreen", 0x00FA9A}, {"mediumturquoise", 0x48D1CC}, {"mediumvioletred", 0xC71585},
    {"midnightblue", 0x191970}, {"mintcream", 0xF5FFFA}, {"mistyrose", 0xFFE4E1},
    {"moccasin", 0xFFE4B5}, {"navajowhite", 0xFFDEAD}, {"navy", 0x000080},
    {"oldlace", 0xFDF5E6}, {"olive", 0x808000}, {"olivedrab", 0x6B8E23},
    {"orange", 0xFFA500}, {"orangered", 0xFF4500}, {"orchid", 0xDA70D6},
    {"palegoldenrod", 0xEEE8AA}, {"palegreen", 0x98FB98}, {"paleturquoise", 0xAFEEEE},
    {"palevioletred", 0xDB7093}, {"papayawhip", 0xFFEFD5}, {"peachpuff", 0xFFDAB9},
    {"peru", 0xCD853F}, {"pink", 0xFFC0CB}, {"plum", 0xDDA0DD},
    {"powderblue", 0xB0E0E6}, {"purple", 0x800080}, {"rebeccapurple", 0x663399},
    {"red", 0xFF0000}, {"rosybrown", 0xBC8F8F}, {"royalblue", 0x4169E1},
    {"saddlebrown", 0x8B4513}, {"salmon", 0xFA8072}, {"sandybrown", 0xF4A460},
    {"seagreen", 0x2E8B57}, {"seashell", 0xFFF5EE}, {"sienna", 0xA0522D},
    {"silver", 0xC0C0C0}, {"skyblue", 0x87CEEB}, {"slateblue", 0x6A5ACD},
    {"slategray", 0x708090}, {"slategrey", 0x708090}, {"snow", 0xFFFAFA},
    {"springgreen", 0x00FF7F}, {"steelblue", 0x4682B4}, {"tan", 0xD2B48C},
    {"teal", 0x008080}, {"thistle", 0xD8BFD8}, {"tomato", 0xFF6347},
    {"turquoise", 0x40E0D0}, {"violet", 0xEE82EE}, {"wheat", 0xF5DEB3},
    {"white", 0xFFFFFF}, {"whitesmoke", 0xF5F5F5}, {"yellow", 0xFFFF00},
    {"yellowgreen", 0x9ACD32},
};

constexpr bool sortedByName() {
  for (size_t k = 1; k < std::size(kNames); ++k)
    if (!(kNames[k - 1].name < kNames[k].name)) return false;
  return true;
}
static_assert(sortedByName(), "the binary search needs the names in order");
static_assert(std::size(kNames) == 148);

constexpr size_t kLongestName = 20;  // "lightgoldenrodyellow"

}  // namespace

int32_t TranslateColor(int32_t hostColor) {
  const uint32_t v = static_cast<uint32_t>(hostColor);
  if ((v & 0xFF000000u) == 0) return hostColor;
  if ((v & 0xFF000000u) == 0x80000000u && (v & 0x00FFFFFFu) < kTheme.size())
    return SysColor(static_cast<enm_SysColor>(v & 0x00FFFFFFu));
  raise(rt::InvalidCall);
}

void SplitRGB(int32_t rgb, int32_t& red, int32_t& green, int32_t& blue) noexcept {
  const uint32_t v = static_cast<uint32_t>(rgb);
  red = static_cast<int32_t>(v & 0xFF);
  green = static_cast<int32_t>((v >> 8) & 0xFF);
  blue = static_cast<int32_t>((v >> 16) & 0xFF);
}

int32_t SysColor(enm_SysColor index) {
  const int32_t i = static_cast<int32_t>(index);
  if (i < 0 || i >= static_cast<int32_t>(kTheme.size()) || kTheme[i] == kNoColor) raise(rt::InvalidCall);
  return kTheme[i];
}

int32_t ColorFromName(std::u16string_view name, int32_t defaultColor) {
  // Blanks around a name are forgiven, as style sheets do.
  while (!name.empty() && (name.front() == u' ' || name.front() == u'\t')) name.remove_prefix(1);
  while (!name.empty() && (name.back() == u' ' || name.back() == u'\t')) name.remove_suffix(1);
  if (name.empty() || name.size() > kLongestName) return defaultColor;
  char key[kLongestName];
  for (size_t k = 0; k < name.size(); ++k) {
    const char16_t c = lowerAscii(name[k]);
    if (c < u'a' || c > u'z') return defaultColor;
    key[k] = static_cast<char>(c);
  }
  const std::string_view wanted(key, name.size());
  const auto* end = std::end(kNames);
  const auto* hit =
      std::lower_bound(std::begin(kNames), end, wanted, [](const NamedColor& c, std::string_view w) { return c.name < w; });
  if (hit == end || hit->name != wanted) return defaultColor;
  return hostRGB(static_cast<int>(hit->rgb >> 16), static_cast<int>((hit->rgb >> 8) & 0xFF),
                 static_cast<int>(hit->rgb & 0xFF));
}

std::string NameOfColor(uint32_t rgb) {
  for (const NamedColor& c : kNames)
    if (c.rgb == (rgb & 0xFFFFFF)) return std::string(c.name);
  return {};
}

}  // namespace mdl_Basalt
}  // namespace tessel
