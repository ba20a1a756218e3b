// The colour factory: what AUTO accepts, the identity rule, the shared protected colours, and
// the factory's place on the root object.
#include <tessel/tessel.h>

#include <gtest/gtest.h>

#include <thread>

#include "color/Probes.h"

using namespace tessel;

TEST(DrawToolColor, AutoReturnsAColourAsThatVeryObjectAndMakesOthers) {
  auto f = make<cls_DrawToolColor>();
  auto c = make<cls_DrawColor>();
  std::vector<Variant> args{Variant(c)};
  EXPECT_EQ(Invoke(f.get(), "", InvokeKind::Method, std::span<Variant>(args)).obj(), c.get());
  EXPECT_EQ(f->AUTO(Variant(f->BLACK())).get(), f->BLACK().get());

  EXPECT_EQ(rgba(f->AUTO(16711680)), (Channels{0, 0, 255, 255}));
  EXPECT_EQ(rgba(f->AUTO(u"#FF000080")), (Channels{255, 0, 0, 128}));
  EXPECT_EQ(rgba(f->AUTO(u"navy")), (Channels{0, 0, 128, 255}));
  EXPECT_EQ(rgba(f->AUTO(Variant())), (Channels{0, 0, 0, 255}));
  auto probe = make<cls_ChannelProbe>(Variant(1), Variant(2), Variant(3), Variant(4));
  EXPECT_EQ(rgba(f->AUTO(Variant(probe))), (Channels{1, 2, 3, 4}));
  EXPECT_NE(f->AUTO(255).get(), f->AUTO(255).get());

  for (const Variant& bad : {Variant::missing(), Variant::null(), Variant(f), Variant(3e9), Variant::nothing()})
    EXPECT_EQ(raisedBy([&] { f->AUTO(bad); }).source(), "cls_DrawToolColor.AUTO") << typeName(bad);
}

TEST(DrawToolColor, BlackAndWhiteAreSharedProtectedAndReplaceable) {
  auto f = make<cls_DrawToolColor>();
  auto black = f->BLACK(), white = f->WHITE();
  EXPECT_TRUE(black->PROTECTED() && white->PROTECTED());
  black->R(200);
  white->RGB(1, 2, 3, 4);
  EXPECT_EQ(rgba(black), (Channels{0, 0, 0, 255}));
  EXPECT_EQ(rgba(white), (Channels{255, 255, 255, 255}));
  EXPECT_NE(make<cls_DrawToolColor>()->BLACK().get(), black.get());  // one pair per factory
  std::vector<Variant> args{Variant(f->RGB(128, 128, 128))};
  Invoke(f.get(), "BLACK", InvokeKind::Set, std::span<Variant>(args));
  EXPECT_EQ(f->BLACK().get(), args[0].obj());
}

TEST(DrawToolColor, RgbClampsAndMakesANewOpaqueColourEachCall) {
  auto f = make<cls_DrawToolColor>();
  EXPECT_EQ(rgba(f->RGB(10, 20, 30)), (Channels{10, 20, 30, 255}));
  EXPECT_EQ(rgba(f->RGB(-10, 999, 30, 300)), (Channels{0, 255, 30, 255}));
  EXPECT_EQ(rgba(f->RGB(10, 20, 30, 0)), (Channels{10, 20, 30, 0}));
  EXPECT_NE(f->RGB(1, 1, 1).get(), f->RGB(1, 1, 1).get());
  EXPECT_EQ(raisedBy([&] { Invoke(f.get(), "RGB", InvokeKind::Method, {Variant(u"x"), 1, 1}); }).source(),
            "cls_DrawToolColor.RGB");
}

TEST(DrawToolColor, TheRootObjectHoldsOnePerThreadAndAcceptsAnother) {
  Ref<cls_DrawTool> root = mdl_Global::DRAW();
  EXPECT_EQ(cls_DrawTool::typeInfo().members().front().name, "COLOR");
  auto first = root->COLOR();
  EXPECT_EQ(Invoke(root.get(), "color", InvokeKind::Get).obj(), first.get());
  cls_DrawToolColor* other = nullptr;
  std::thread([&] { other = mdl_Global::DRAW()->COLOR().get(); }).join();
  EXPECT_NE(other, first.get());

  std::vector<Variant> args{Variant(make<cls_DrawToolColor>())};
  Invoke(root.get(), "COLOR", InvokeKind::Set, std::span<Variant>(args));
  EXPECT_EQ(root->COLOR().get(), args[0].obj());
  root->COLOR(nullptr);  // the next read makes a fresh one
  EXPECT_TRUE(root->COLOR() && root->COLOR().get() != args[0].obj());
  root->COLOR(first);
}
