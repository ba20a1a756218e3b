// Text formats: the twelve alignments as the platform reads them, the shared protected formats
// and the factory's cases.
#include <tessel/root/cls_DrawTool.h>

#include <gtest/gtest.h>

#include <utility>

#include "TestSupport.h"

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;
using A = enm_TextAlign;

namespace {

// (horizontal, vertical) as libgdiplus holds them: 0 near, 1 centre, 2 far.
std::pair<int, int> platformAlign(const Ref<cls_DrawTextFormat>& f) {
  auto* native = reinterpret_cast<gp::GpStringFormat*>(static_cast<intptr_t>(f->HANDLE()));
  int h = -1, v = -1;
  gp::GdipGetStringFormatAlign(native, &h);
  gp::GdipGetStringFormatLineAlign(native, &v);
  return {h, v};
}

class TextFormats : public testing::Test {
 protected:
  void SetUp() override {
    mdl_Global::DRAW()->INIT();
    mdl_Global::DRAW()->TEXTFORMAT();  // its four shared formats live as long as the root
    start_ = gp::StringFormatHandle::live();
  }
  void TearDown() override { EXPECT_EQ(gp::StringFormatHandle::live(), start_); }
  long start_ = 0;
};

}  // namespace

TEST_F(TextFormats, TwelveAlignmentsAsThePlatformReadsThem) {
  auto f = mdl_Global::DRAW()->TEXTFORMAT()->ALIGN(A::ID_TextAlign_CenterTop);  // 5
  EXPECT_EQ(platformAlign(f), std::make_pair(1, 0));
  f->ALIGN(A::ID_TextAlign_BlockBottom);  // 11: block is drawn as left
  EXPECT_EQ(platformAlign(f), std::make_pair(0, 2));
  f->ALIGN(A::ID_TextAlign_BlockMiddle);  // 3
  EXPECT_EQ(platformAlign(f), std::make_pair(0, 1));
  f->ALIGN(A::ID_TextAlign_RightMiddle);
  f->ALIGN(static_cast<A>(12));  // kept, but neither setting changes
  EXPECT_EQ(static_cast<int>(f->ALIGN()), 12);
  EXPECT_EQ(platformAlign(f), std::make_pair(2, 1));

  f->DIRECT(A::ID_TextAlign_LeftTop);  // a new native format, the old one freed
  EXPECT_EQ(gp::StringFormatHandle::live(), start_ + 1);
  EXPECT_EQ(platformAlign(f), std::make_pair(0, 0));
  f->DELETE()->DELETE();
  EXPECT_EQ(f->HANDLE(), 0);
}

TEST_F(TextFormats, SharedFormatsAreProtectedAndTheFactoryTakesLooseValues) {
  auto factory = mdl_Global::DRAW()->TEXTFORMAT();
  auto left = factory->ALIGNLEFT();
  EXPECT_EQ(left, factory->ALIGNLEFT());
  EXPECT_TRUE(left->PROTECTED());
  const int64_t handle = left->HANDLE();
  left->ALIGN(A::ID_TextAlign_RightBottom);
  left->DIRECT(A::ID_TextAlign_RightBottom)->DELETE();
  EXPECT_EQ(left->HANDLE(), handle);
  EXPECT_EQ(left->ALIGN(), A::ID_TextAlign_LeftMiddle);
  EXPECT_EQ(factory->ALIGNRIGHT()->ALIGN(), A::ID_TextAlign_RightMiddle);
  EXPECT_EQ(factory->ALIGNCENTER()->ALIGN(), A::ID_TextAlign_CenterMiddle);
  EXPECT_EQ(platformAlign(factory->ALIGNBLOCK()), std::make_pair(0, 1));

  EXPECT_EQ(factory->AUTO(Variant(left)), left);  // a format is taken as it is
  EXPECT_EQ(factory->AUTO(Variant::missing())->ALIGN(), A::ID_TextAlign_LeftMiddle);
  EXPECT_EQ(factory->AUTO(Variant(u"9"))->ALIGN(), A::ID_TextAlign_CenterBottom);
  Error e = raisedBy([&] { factory->AUTO(Variant(make<cls_DrawRect>())); });
  EXPECT_EQ(e.number(), objectError(13));
  EXPECT_EQ(e.source(), "cls_DrawToolTextFormat.AUTO");
}
