// The showcase's colour page: a few colours with their lighter and darker variants and the
// contrast colour each would get as text on a light and on a dark background.
#include <tessel/tessel.h>

#include <cstdio>
#include <string>

#include <unistd.h>

using namespace tessel;

namespace {

// "#RRGGBB" plus, on a terminal, a swatch in the colour itself; padded to one column.
std::string swatch(const Ref<cls_DrawColor>& c, bool terminal) {
  std::string s = toUtf8(c->HTML());
  if (terminal) {
    char block[48];
    std::snprintf(block, sizeof block, " \x1b[48;2;%d;%d;%dm  \x1b[0m", c->R(), c->G(), c->B());
    s += block;
  }
  return s + "   ";
}

}  // namespace

void showPalette() {
  const bool terminal = isatty(STDOUT_FILENO);
  Ref<cls_DrawToolColor> colors = mdl_Global::DRAW()->COLOR();
  const Variant light(u"#F4F1EA"), dark(u"#1E1E1E");
  std::printf("Colour palette (variants by 40, contrast colours on %s and %s)\n", light.toUtf8().c_str(),
              dark.toUtf8().c_str());
  const char* pad = terminal ? "   " : "";  // the swatch's width
  std::printf("  %-7s%s   %-7s%s   %-7s%s   %-10s   %-7s%s   %-7s%s   %s\n", "colour", pad, "brighter", pad,
              "darker", pad, "brightness", "on light", pad, "on dark", pad, "contrast");
  for (const char16_t* name : {u"#2F6690", u"#3A7CA5", u"#D9DCD6", u"orange", u"rebeccapurple", u"#808080"}) {
    Ref<cls_DrawColor> c = colors->AUTO(name);
    std::printf("  %s%s%s%-10d   %s%s%s\n", swatch(c, terminal).c_str(),
                swatch(c->BRIGHTER(40), terminal).c_str(), swatch(c->DARKER(40), terminal).c_str(),
                c->BRIGHTNESS(), swatch(c->CONTRASTCOLOR(light), terminal).c_str(),
                swatch(c->CONTRASTCOLOR(dark), terminal).c_str(), swatch(c->CONTRAST(), terminal).c_str());
  }
}
