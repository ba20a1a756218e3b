// The surface's lifecycle and binding: the root's user count, the defaults, device contexts,
// host windows reached by name, images and an image's GRAPHICS; native handles come back to
// where they started.
#include <tessel/graphics/cls_DrawGraphics.h>
#include <tessel/root/cls_DrawTool.h>

#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "TestSupport.h"
#include "resources/Canvas.h"

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;

namespace {

// A white bitmap whose graphics is registered as a device context, as a host window's is.
class DeviceContext : public Canvas {
 public:
  DeviceContext(int w, int h) : Canvas(w, h) { gp::RegisterHDC(graphics()); }
  ~DeviceContext() { gp::UnregisterHDC(graphics()); }
  int64_t hdc() const { return reinterpret_cast<intptr_t>(graphics()); }
};

// A host window as the surface reaches it, by name. With AutoRedraw on, hDC is the device
// context of a persistent bitmap, no longer the window's; ScaleMode 1 (twips, 15 a pixel) or 3.
class cls_FakeHost final : public ObjectOf<cls_FakeHost> {
 public:
  static constexpr std::string_view ClassName = "cls_FakeHost";
  static const ClassInfo& typeInfo();
  int64_t hDC() const { return autoRedraw_ ? persistent_.hdc() : window_.hdc(); }
  int64_t hwnd() const { return 4242; }
  float ScaleWidth() const { return 40.0f * factor(mode_); }
  float ScaleHeight() const { return 30.0f * factor(mode_); }
  int16_t ScaleMode() const { return mode_; }
  void ScaleMode(int16_t v) { mode_ = v; }
  bool AutoRedraw() const { return autoRedraw_; }
  void AutoRedraw(bool v) { autoRedraw_ = v; }
  double ScaleX(double v, int16_t from, int16_t to) const { return v / factor(from) * factor(to); }

  DeviceContext window_{40, 30}, persistent_{40, 30};

 private:
  static int factor(int16_t mode) { return mode == 1 ? 15 : 1; }
  int16_t mode_ = 1;
  bool autoRedraw_ = false;
};

const ClassInfo& cls_FakeHost::typeInfo() {
  using C = cls_FakeHost;
  static const ClassInfo info = ClassBuilder<C>()
      .get("hDC", &C::hDC).get("hwnd", &C::hwnd).get("ScaleWidth", &C::ScaleWidth).get("ScaleHeight", &C::ScaleHeight)
      .property("ScaleMode", &C::ScaleMode, &C::ScaleMode).property("AutoRedraw", &C::AutoRedraw, &C::AutoRedraw)
      .method("ScaleX", &C::ScaleX, {"v", "from", "to"}).method("ScaleY", &C::ScaleX, {"v", "from", "to"});
  return info;
}
TESSEL_REGISTER_CLASS(cls_FakeHost)

std::string info(const Ref<cls_DrawRect>& r) { return toUtf8(r->INFO()); }

// Fills the target with the surface's brush through the surface's own graphics, and ends there.
void fill(const Ref<cls_DrawGraphics>& g, const char16_t* colour) {
  g->BRUSH()->SOLID(Variant(colour));
  ASSERT_TRUE(g->READY());
  EXPECT_EQ(gp::GdipFillRectangle(g->graphics(), g->BRUSH()->brush(), 0, 0, 1000, 1000), enm_Draw_Status::OK);
  g->RELEASE();
}

class Surfaces : public testing::Test {
 protected:
  void SetUp() override { mdl_Global::DRAW()->INIT(); }
  void TearDown() override {
    EXPECT_EQ(gp::GraphicsHandle::live(), graphics_);
    EXPECT_EQ(gp::ImageHandle::live(), images_);
  }
  const long graphics_ = gp::GraphicsHandle::live(), images_ = gp::ImageHandle::live();
};

}  // namespace

TEST_F(Surfaces, CountsAsAPlatformUserAndStartsWithItsDefaults) {
  // A new thread's root is not started yet: a surface is its one user while it lives.
  std::thread([] {
    Ref<cls_DrawTool> root = mdl_Global::DRAW();
    auto g = make<cls_DrawGraphics>();
    EXPECT_EQ(root->initCount(), 1);
    g = nullptr;
    EXPECT_FALSE(root->READY());
  }).join();
  auto g = make<cls_DrawGraphics>();
  EXPECT_EQ(g->COLOR1()->HTML(), u"#FFFFFF");
  EXPECT_NE(g->BRUSH()->HANDLE(), 0);
  EXPECT_NE(g->PEN()->HANDLE(), 0);
  EXPECT_EQ(g->TEXTFORMAT()->ALIGN(), enm_TextAlign::ID_TextAlign_CenterMiddle);
  EXPECT_EQ(g->FONT()->HANDLE(), 0);  // made when a target is bound
  EXPECT_FALSE(g->READY());
  EXPECT_EQ(g->UNIT(), enm_Draw_Unit::ID_Draw_UnitWorld);  // of no graphics
}

TEST_F(Surfaces, DeviceContextsOpenOnceAndAgainAfterAChange) {
  DeviceContext first(20, 10), second(20, 10);
  auto g = make<cls_DrawGraphics>();
  g->CONNECT(make<cls_DrawImage>()->CREATE(4, 4));  // open on an image before
  EXPECT_FALSE(g->CONNECTDC(7, first.hdc()));
  EXPECT_EQ(info(g->RECT()), "(0,0)-(99,99)");
  fill(g, u"#00FF00");
  EXPECT_EQ(first.peek(5, 5), 0xFF00FF00u);
  ASSERT_TRUE(g->READY());
  gp::GpGraphics* open = g->graphics();
  g->LOCKIT();
  EXPECT_EQ(g->graphics(), open);
  g->RELEASE();
  g->RELEASE();
  EXPECT_TRUE(g->READY());  // opens again

  auto flags = make<cls_DrawFlags>();
  flags->SETFLAG(u"width", int32_t(640))->SETFLAG(u"HEIGHT", 480.5);
  g->CONNECTDC(7, second.hdc(), flags);
  EXPECT_EQ(info(g->RECT()), "(0,0)-(639,479)");  // half to even
  EXPECT_EQ(gp::GraphicsHandle::live(), graphics_ + 3);  // two device contexts and one open on the second
  fill(g, u"#0000FF");
  EXPECT_EQ(second.peek(5, 5), 0xFF0000FFu);
  EXPECT_EQ(first.peek(5, 5), 0xFF00FF00u);

  // A device context that its owner withdrew takes the graphics made on it along: the bitmap
  // under it may be gone.
  {
    DeviceContext gone(4, 4);
    g->CONNECTDC(0, gone.hdc());
    ASSERT_TRUE(g->READY());
  }
  EXPECT_EQ(gp::GraphicsHandle::live(), graphics_ + 3);
  EXPECT_FALSE(g->READY());
  EXPECT_EQ(gp::GraphicsHandle::live(), graphics_ + 2);

  // A value that is no registered device context never reaches the platform.
  for (int64_t bogus : {int64_t(0), int64_t(1), int64_t(-1), reinterpret_cast<intptr_t>(open)}) {
    g->CONNECTDC(0, bogus);
    EXPECT_FALSE(g->READY()) << bogus;
  }
}

TEST_F(Surfaces, ImagesOpenANewGraphicsOnEveryLock) {
  auto image = make<cls_DrawImage>()->CREATE(30, 20, Variant(u"#000000"));
  auto g = make<cls_DrawGraphics>();
  EXPECT_FALSE(g->CONNECT(image));
  EXPECT_EQ(info(g->RECT()), "(0,0)-(29,19)");
  EXPECT_EQ(g->FONT()->FONTNAME(), u"Arial");
  gp::GpGraphics* first = g->graphics();
  ASSERT_NE(first, nullptr);

  // The page unit belongs to one graphics: the next lock starts afresh. 7 is beyond Millimeter.
  g->UNIT(enm_Draw_Unit::ID_Draw_UnitPoint);
  g->UNIT(static_cast<enm_Draw_Unit>(7));
  EXPECT_EQ(g->UNIT(), enm_Draw_Unit::ID_Draw_UnitPoint);
  g->LOCKIT();
  EXPECT_NE(g->graphics(), first);
  EXPECT_NE(g->UNIT(), enm_Draw_Unit::ID_Draw_UnitPoint);
  EXPECT_EQ(gp::GraphicsHandle::live(), graphics_ + 1);
  fill(g, u"#FFFFFF");
  EXPECT_EQ(static_cast<uint32_t>(image->PIXEL(29, 19)), 0xFFFFFFFFu);

  // A graphics left open by DISCONNECT keeps its image alive, and is closed once the image
  // has another bitmap, even at the old one's address.
  ASSERT_TRUE(g->READY());
  g->DISCONNECT();
  image->DELETE()->CREATE(30, 20);
  EXPECT_FALSE(g->READY());
  g->CONNECT(image);
  image->DELETE();
  EXPECT_FALSE(g->READY());  // an empty image: closed, without an error
}

TEST_F(Surfaces, HostWindowsAreReachedByName) {
  auto host = make<cls_FakeHost>();
  auto g = make<cls_DrawGraphics>();
  EXPECT_FALSE(g->CONNECT(host));
  EXPECT_TRUE(host->AutoRedraw() && host->ScaleMode() == 3);
  EXPECT_NE(g->FONT()->HANDLE(), 0);
  host->ScaleMode(1);  // twips: the host converts to pixels
  EXPECT_EQ(info(g->RECT()), "(0,0)-(39,29)");
  // CONNECT keeps the device context read before AutoRedraw was switched on.
  fill(g, u"#0000FF");
  EXPECT_EQ(host->window_.peek(39, 29), 0xFF0000FFu);
  EXPECT_EQ(host->persistent_.peek(39, 29), 0xFFFFFFFFu);
  // DEVICE set takes the host as it is: its device context now, its extent in its own scale.
  g->DEVICE(host);
  EXPECT_EQ(info(g->AREA()), "(0,0)-(599,449)");
  fill(g, u"#0000FF");
  EXPECT_EQ(host->persistent_.peek(39, 29), 0xFF0000FFu);

  // Objects without a host's members fail under the member's name and change nothing.
  auto image = make<cls_DrawImage>()->CREATE(5, 5);
  for (auto [bad, number] : {std::pair{Ref<Object>(image), 438}, {Ref<Object>(), 91}}) {
    Error e = raisedBy([&] { g->DEVICE(bad); });
    EXPECT_EQ(e.number(), objectError(number));
    EXPECT_EQ(e.source(), "cls_DrawGraphics.DEVICE.SET");
  }
  Error e = raisedBy([&] { g->CONNECT(make<cls_DrawRect>()); });
  EXPECT_EQ(e.number(), objectError(438));
  EXPECT_EQ(e.source(), "cls_DrawGraphics.CONNECT");
  EXPECT_EQ(g->DEVICE(), Ref<Object>(host));
}

TEST_F(Surfaces, AnImageHandsOutOneSurfaceWhileItIsBoundThere) {
  auto image = make<cls_DrawImage>()->CREATE(8, 6);
  Ref<cls_DrawGraphics> g = image->GRAPHICS();
  EXPECT_EQ(image->GRAPHICS(), g);
  EXPECT_EQ(g->DEVICE(), Ref<Object>(image));
  image->CREATE(12, 9);
  EXPECT_EQ(info(image->GRAPHICS()->RECT()), "(0,0)-(11,8)");
  EXPECT_EQ(image->GRAPHICS(), g);

  // Leaving the image by any way clears its pointer; the next read binds a new surface.
  DeviceContext dc(4, 4);
  auto host = make<cls_FakeHost>();
  const std::function<void()> leave[] = {[&] { g->DISCONNECT(); }, [&] { g->CONNECTDC(0, dc.hdc()); },
                                         [&] { g->CONNECT(make<cls_DrawImage>()); }, [&] { g->DEVICE(host); }};
  for (auto& away : leave) {
    g = image->GRAPHICS();
    away();
    EXPECT_EQ(image->boundGraphics(), nullptr);
    EXPECT_NE(image->GRAPHICS(), g);
  }
  // No cycle: once the surface is dropped the image is its only owner again, with no pointer behind.
  g = nullptr;
  image->GRAPHICS()->READY();
  EXPECT_EQ(image->boundGraphics(), nullptr);
  EXPECT_EQ(image->refCount(), 1);
}
