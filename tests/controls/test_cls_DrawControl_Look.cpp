// The look of every kind of node in every state, compared with the pictures in controls/golden
// channel by channel, with a small tolerance for the rasteriser's rounding. A mismatch writes the
// picture drawn and a difference picture to golden-failures/ in the working directory.
// TESSEL_UPDATE_GOLDEN=1 writes the pictures drawn as the new golden ones.
#include <tessel/tessel.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

#include "TestSupport.h"
#include "controls/ControlScene.h"

using namespace tessel;
namespace fs = std::filesystem;

namespace {

using K = enm_UIControl;

constexpr int kTolerance = 12;  // per channel
constexpr int kMargin = 4;      // white around the node: nothing may be drawn there

struct Case {
  const char* name;
  const char16_t* caption;
  K sort;
  float w, h;
  std::function<void(cls_DrawControl&)> state;
};

Ref<cls_DrawImage> icon() {
  // A two-tone square, so that an icon stretched or shifted shows.
  auto img = mdl_Global::DRAW()->Image()->CREATE(16, 16, Variant(u"#2A6FD6"));
  for (int32_t y = 0; y < 8; ++y)
    for (int32_t x = 0; x < 8; ++x) img->PIXEL(x, y, static_cast<int32_t>(0xFFF2B233u));
  return img;
}

const Case kCases[] = {
    {"button", u"OK", K::ID_UIControl_Button, 120, 32, [](cls_DrawControl&) {}},
    {"button-hover", u"Hover", K::ID_UIControl_Button, 120, 32, [](cls_DrawControl& n) { n.HOVER(true); }},
    {"button-pressed", u"Pressed", K::ID_UIControl_Button, 120, 32, [](cls_DrawControl& n) { n.PRESSED(true); }},
    {"button-focus", u"Focus", K::ID_UIControl_Button, 120, 32, [](cls_DrawControl& n) { n.FOCUS(true); }},
    {"button-focus-hover", u"Focus and hover", K::ID_UIControl_Button, 120, 32,
     [](cls_DrawControl& n) {
       n.FOCUS(true);
       n.HOVER(true);
     }},
    {"button-disabled", u"Disabled", K::ID_UIControl_Button, 120, 32, [](cls_DrawControl& n) { n.ENABLED(false); }},
    {"button-icon-left", u"Open", K::ID_UIControl_Button, 120, 32, [](cls_DrawControl& n) { n.ICON(icon()); }},
    {"button-icon-right-disabled", u"Next", K::ID_UIControl_Button, 120, 32,
     [](cls_DrawControl& n) {
       n.ICON(icon());
       n.ICONPOSITION(enm_UIIconPosition::ID_UIIconPosition_Right);
       n.ENABLED(false);
     }},
    {"button-long-caption", u"A caption far too long for its button", K::ID_UIControl_Button, 120, 32,
     [](cls_DrawControl&) {}},
    {"button-icon-top", u"Photos", K::ID_UIControl_Button, 80, 72,
     [](cls_DrawControl& n) {
       n.ICON(icon());
       n.ICONPOSITION(enm_UIIconPosition::ID_UIIconPosition_Top);
     }},
    {"container", u"Settings", K::ID_UIControl_Container, 160, 90,
     [](cls_DrawControl& n) { n.TEXTALIGN(enm_TextAlign::ID_TextAlign_LeftTop); }},
    {"container-disabled", u"Settings", K::ID_UIControl_Container, 160, 90,
     [](cls_DrawControl& n) {
       n.TEXTALIGN(enm_TextAlign::ID_TextAlign_LeftTop);
       n.ENABLED(false);
     }},
    {"desktop", u"Desktop", K::ID_UIControl_Desktop, 160, 90,
     [](cls_DrawControl& n) { n.TEXTALIGN(enm_TextAlign::ID_TextAlign_RightBottom); }},
    {"window-focused", u"Editor", K::ID_UIControl_Window, 180, 110, [](cls_DrawControl& n) { n.FOCUS(true); }},
    {"window", u"Viewer", K::ID_UIControl_Window, 180, 110, [](cls_DrawControl&) {}},
    {"window-disabled", u"Viewer", K::ID_UIControl_Window, 180, 110, [](cls_DrawControl& n) { n.ENABLED(false); }},
    {"window-icon", u"Pictures", K::ID_UIControl_Window, 180, 110,
     [](cls_DrawControl& n) {
       n.FOCUS(true);
       n.ICON(icon());
       n.TEXTALIGN(enm_TextAlign::ID_TextAlign_LeftMiddle);
     }},
};

Ref<cls_DrawImage> drawn(const Case& c) {
  Scene s(static_cast<int32_t>(c.w) + 2 * kMargin, static_cast<int32_t>(c.h) + 2 * kMargin);
  auto n = control(c.sort, u"n", kMargin, kMargin, c.w, c.h);
  n->TEXT(c.caption);
  c.state(*n);
  n->RENDER(s.surface);
  return s.image;
}

int channelDifference(int32_t a, int32_t b) {
  int most = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    const int d = std::abs(static_cast<int>((static_cast<uint32_t>(a) >> shift) & 0xFF) -
                           static_cast<int>((static_cast<uint32_t>(b) >> shift) & 0xFF));
    most = std::max(most, d);
  }
  return most;
}

}  // namespace

TEST(ControlLook, EveryKindInEveryStateLooksAsItsGoldenPicture) {
  mdl_Global::DRAW()->INIT();
  const fs::path golden = fs::path(TESSEL_TESTS_DIR) / "controls" / "golden";
  const bool update = std::getenv("TESSEL_UPDATE_GOLDEN") != nullptr;
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    const Ref<cls_DrawImage> actual = drawn(c);
    const fs::path file = golden / (std::string(c.name) + ".png");
    if (update) {
      fs::create_directories(golden);
      ASSERT_TRUE(actual->SAVE(toUtf16(file.string())));
      continue;
    }
    ASSERT_TRUE(fs::exists(file)) << file << " is missing; TESSEL_UPDATE_GOLDEN=1 makes it";
    const Ref<cls_DrawImage> expected = mdl_Global::DRAW()->Image()->LOAD(toUtf16(file.string()));
    ASSERT_EQ(expected->WIDTH(), actual->WIDTH());
    ASSERT_EQ(expected->HEIGHT(), actual->HEIGHT());
    const auto w = static_cast<int32_t>(actual->WIDTH()), h = static_cast<int32_t>(actual->HEIGHT());
    auto diff = mdl_Global::DRAW()->Image()->CREATE(w, h, Variant(u"#000000"));
    int worst = 0, off = 0, outside = 0;
    for (int32_t y = 0; y < h; ++y)
      for (int32_t x = 0; x < w; ++x) {
        const int32_t a = actual->PIXEL(x, y);
        const int d = channelDifference(a, expected->PIXEL(x, y));
        worst = std::max(worst, d);
        if (d > kTolerance) ++off;
        const bool margin = x < kMargin || y < kMargin || x >= w - kMargin || y >= h - kMargin;
        if (margin && (static_cast<uint32_t>(a) & 0xFFFFFFu) != 0xFFFFFFu) ++outside;
        const int v = std::min(255, d * 4);
        diff->PIXEL(x, y, static_cast<int32_t>(0xFF000000u | static_cast<uint32_t>(v) << 16 | static_cast<uint32_t>(v) << 8 | static_cast<uint32_t>(v)));
      }
    EXPECT_EQ(outside, 0) << "drawn outside the box";
    EXPECT_EQ(off, 0) << "pixels off by more than " << kTolerance << " (worst " << worst << ")";
    if (off || outside) {
      fs::create_directories("golden-failures");
      actual->SAVE(toUtf16("golden-failures/" + std::string(c.name) + ".png"));
      diff->SAVE(toUtf16("golden-failures/" + std::string(c.name) + "-diff.png"));
    }
  }
}
