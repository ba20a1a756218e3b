// The picture box off screen: its scale, its bitmap through Move, Cls and Image, input events with
// ByRef arguments, and a surface bound to it by name that follows it through a resize.
#include <tessel/graphics/cls_DrawGraphics.h>
#include <tessel/host/PictureBox.h>
#include <tessel/images/cls_DrawImage.h>
#include <tessel/root/cls_DrawTool.h>

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "TestSupport.h"

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;

namespace {

uint32_t pixel(const Ref<PictureBox>& box, int x, int y) { return static_cast<uint32_t>(box->PIXEL(x, y)); }

// Fills a rectangle through a graphics of the box's device context, as a host's client would.
void fill(const Ref<PictureBox>& box, float x, float y, float w, float h, gp::ARGB argb) {
  gp::GpGraphics* g = nullptr;
  ASSERT_EQ(gp::CreateFromHDC(box->hDC(), &g), enm_Draw_Status::OK);
  gp::GraphicsHandle graphics(g);
  gp::GpSolidFill* b = nullptr;
  ASSERT_EQ(gp::GdipCreateSolidFill(argb, &b), enm_Draw_Status::OK);
  gp::BrushHandle brush(b);
  EXPECT_EQ(gp::GdipFillRectangle(g, b, x, y, w, h), enm_Draw_Status::OK);
}

class Boxes : public testing::Test {
 protected:
  void SetUp() override { mdl_Global::DRAW()->INIT(); }
  void TearDown() override {
    EXPECT_EQ(gp::GraphicsHandle::live(), graphics_);
    EXPECT_EQ(gp::ImageHandle::live(), images_);
    EXPECT_EQ(gp::BrushHandle::live(), brushes_);
  }
  const long graphics_ = gp::GraphicsHandle::live(), images_ = gp::ImageHandle::live(),
             brushes_ = gp::BrushHandle::live();
};

}  // namespace

TEST_F(Boxes, ScaleModesConvertAt96PixelsAnInch) {
  auto box = make<PictureBox>();
  EXPECT_EQ(box->ScaleMode(), 1);  // twips, 15 a pixel
  EXPECT_FLOAT_EQ(box->ScaleWidth(), 1500);
  const float widths[] = {75, 100, 12.5f, 100 / 96.0f, 26.458334f, 2.6458333f, 2645.8333f};  // modes 2 to 8
  for (int16_t mode = 2; mode <= 8; ++mode) {
    box->ScaleMode(mode);
    EXPECT_FLOAT_EQ(box->ScaleWidth(), widths[mode - 2]) << mode;
  }
  EXPECT_FLOAT_EQ(box->ScaleHeight(), 2645.8333f);
  box->ScaleMode(3);
  EXPECT_FLOAT_EQ(box->ScaleX(1, 5, Variant(int16_t(1))), 1440);
  EXPECT_FLOAT_EQ(box->ScaleY(2, 4, Variant(int16_t(3))), 32);  // a character is 16 pixels high
  EXPECT_FLOAT_EQ(box->ScaleX(2540), 96);                        // from himetric to ScaleMode
  // Late-bound, as a surface asks: ScaleWidth from ScaleMode to pixels.
  EXPECT_EQ(Invoke(box.get(), "scalex", InvokeKind::Method, {Variant(3000.0f), 1, 3}).toLong(), 200);

  // No user scale and no other numbers: 5, and the mode stays.
  for (int16_t bad : {0, 9}) {
    EXPECT_EQ(raisedNumber([&] { box->ScaleMode(bad); }), objectError(5));
    EXPECT_EQ(raisedNumber([&] { box->ScaleY(1, 3, Variant(bad)); }), objectError(5));
  }
  EXPECT_EQ(box->ScaleMode(), 3);
  EXPECT_EQ(raisedNumber([&] { box->ScaleX(3e38f, 3, Variant(int16_t(1))); }), objectError(6));  // beyond Single
}

TEST_F(Boxes, MoveMakesANewBitmapThatKeepsThePixelsAtTheTopLeft) {
  auto box = make<PictureBox>();
  box->Move(0, 0, Variant(20), Variant(15));
  std::vector<std::string> resizes;  // what a handler sees: everything in place
  Connection c = box->Resize.connect([&] {
    resizes.push_back(std::to_string(box->Left()) + " " + std::to_string(box->Width()) + "x" +
                      std::to_string(box->Height()) + " " + std::to_string(box->PIXEL(0, 0)));
  });
  box->BackColor(Variant(u"#FF000080"));  // translucent: kept exactly, not blended
  box->Cls();
  fill(box, 0, 0, 10, 10, 0xFF0000FF);
  const int64_t old = box->hDC();
  box->BackColor(Variant(u"lime"));
  box->Move(5, 6, Variant(30.0f), Variant(20.4));
  EXPECT_EQ(resizes, std::vector<std::string>{"5 30x20 -16776961"});
  EXPECT_NE(box->hDC(), old);
  EXPECT_EQ(gp::HDCStamp(old), 0u);  // withdrawn
  EXPECT_EQ(pixel(box, 9, 9), 0xFF0000FFu);
  EXPECT_EQ(pixel(box, 10, 10), 0x80FF0000u);
  EXPECT_EQ(pixel(box, 29, 19), 0xFF00FF00u);

  // The same size makes nothing new; the place alone changes.
  const int64_t same = box->hDC();
  box->Move(1, 2);
  box->Width(30);
  EXPECT_EQ(resizes.size(), 1u);
  EXPECT_EQ(box->hDC(), same);
  EXPECT_EQ(box->Top(), 2);

  // Sizes are clamped; what is no number changes nothing.
  box->Move(0, 0, Variant(0), Variant(-7.0));
  EXPECT_EQ(box->Width() * 1000 + box->Height(), 1001);
  EXPECT_EQ(pixel(box, 0, 0), 0xFF0000FFu);
  box->Height(1 << 30);
  EXPECT_EQ(box->Height(), 32767);
  EXPECT_EQ(raisedNumber([&] { box->Move(0, 0, Variant(std::nan(""))); }), objectError(6));
  EXPECT_EQ(box->Width() * 100000 + box->Height(), 132767);
  EXPECT_EQ(resizes.size(), 3u);
}

TEST_F(Boxes, ClsImageAndPixels) {
  auto box = make<PictureBox>();
  EXPECT_EQ(pixel(box, 99, 99), 0xFFFFFFFFu);  // white at first
  EXPECT_NE(box->hwnd(), 0);
  EXPECT_NE(make<PictureBox>()->hwnd(), box->hwnd());
  for (auto [colour, argb] : {std::pair{Variant(u"navy"), 0xFF000080u}, {Variant(int32_t(0x0080FF)), 0xFFFF8000u}}) {
    box->BackColor(colour);
    box->Cls();
    EXPECT_EQ(static_cast<uint32_t>(box->BackColor().toLong()), argb);
    EXPECT_EQ(pixel(box, 50, 50), argb);
  }
  EXPECT_EQ(raisedBy([&] { box->BackColor(Variant::null()); }).source(), "PictureBox.BackColor.LET");
  EXPECT_EQ(static_cast<uint32_t>(box->BackColor().toLong()), 0xFFFF8000u);

  // Image is a copy: later drawing does not reach it, and it goes with its last reference.
  fill(box, 0, 0, 1, 1, 0xFF123456);
  Ref<Picture> picture = box->Image();
  fill(box, 0, 0, 1, 1, 0xFFFFFFFF);
  EXPECT_EQ(picture->Width(), 100);
  gp::ARGB first = 0;
  gp::GdipBitmapGetPixel(picture->bitmap(), 0, 0, &first);
  EXPECT_EQ(first, 0xFF123456u);
  EXPECT_EQ(gp::ImageHandle::live(), images_ + 2);  // the box's bitmap and the picture's

  for (auto [x, y] : {std::pair{-1, 0}, {0, 100}}) {
    Error e = raisedBy([&] { box->PIXEL(x, y); });
    EXPECT_EQ(e.number(), objectError(5));
    EXPECT_EQ(e.source(), "PictureBox.PIXEL.GET");
  }
}

TEST_F(Boxes, HandlersChangeByRefArgumentsAndMayDropTheBox) {
  auto box = make<PictureBox>();
  // Typed and late-bound handlers: a key swallowed by one reaches the next and the caller as 0.
  Connection typed = box->KeyDown.connect([](int16_t& code, int16_t& shift) {
    if (code == 65) code = 0;
    shift = 4;
  });
  std::vector<int32_t> seen;
  Connection late = ConnectEvent(*box, "keydown", [&](std::span<Variant> args) { seen.push_back(args[0].toLong()); });
  int16_t code = 65, shift = 1;
  box->deliver(&PictureBox::KeyDown, code, shift);
  EXPECT_EQ(code, 0);
  EXPECT_EQ(shift, 4);
  EXPECT_EQ(seen, std::vector<int32_t>{0});

  Connection mouse = ConnectEvent(*box, "MouseDown", [](std::span<Variant> args) {
    args[2] = Variant(args[2].toSingle() * 2);
  });
  int16_t button = 1;
  float x = 2.5f, y = 3;
  box->deliver(&PictureBox::MouseDown, button, shift, x, y);
  EXPECT_EQ(x, 5.0f);

  // A drop of files, not of text.
  auto data = make<DataObject>();
  data->AddFile(u"/tmp/a.png");
  Connection drop = box->OLEDragDrop.connect([](Ref<DataObject>& d, int32_t& effect, int16_t&, int16_t&, float&, float&) {
    effect = d->GetFormat(DataObject::kFormatFiles) && !d->GetFormat(DataObject::kFormatText) ? 1 : 0;
    EXPECT_EQ(raisedNumber([&] { d->Files(2); }), objectError(9));
  });
  int32_t effect = 0;
  box->deliver(&PictureBox::OLEDragDrop, data, effect, button, shift, x, y);
  EXPECT_EQ(effect, 1);

  // A handler that lets go of the last reference: the box lives until the raise is done.
  Connection drop2 = box->Click.connect([&] { box = nullptr; });
  PictureBox* raw = box.get();
  raw->deliver(&PictureBox::Click);
  EXPECT_EQ(box, nullptr);
}

TEST_F(Boxes, ASurfaceBindsByNameAndFollowsAResize) {
  auto box = make<PictureBox>();
  box->Move(0, 0, Variant(40), Variant(30));
  auto g = make<cls_DrawGraphics>();
  g->CONNECT(box);
  EXPECT_TRUE(box->AutoRedraw());
  EXPECT_EQ(box->ScaleMode(), 3);
  EXPECT_EQ(toUtf8(g->RECT()->INFO()), "(0,0)-(39,29)");
  g->BRUSH()->SOLID(Variant(u"#0000FF"));
  ASSERT_TRUE(g->READY());
  EXPECT_EQ(gp::GdipFillRectangle(g->graphics(), g->BRUSH()->brush(), 0, 0, 1000, 1000), enm_Draw_Status::OK);
  EXPECT_EQ(pixel(box, 39, 29), 0xFF0000FFu);

  // The resize withdraws the device context the surface holds; the next lock takes the new one.
  box->Move(0, 0, Variant(60), Variant(50));
  g->LOCKIT();
  ASSERT_NE(g->graphics(), nullptr);
  g->BRUSH()->SOLID(Variant(u"#00FF00"));
  EXPECT_EQ(gp::GdipFillRectangle(g->graphics(), g->BRUSH()->brush(), 40, 30, 20, 20), enm_Draw_Status::OK);
  EXPECT_EQ(pixel(box, 39, 29), 0xFF0000FFu);
  EXPECT_EQ(pixel(box, 59, 49), 0xFF00FF00u);
  EXPECT_EQ(toUtf8(g->RECT()->INFO()), "(0,0)-(59,49)");

  // Its state lasts between calls, unlike on an image: an offset moves every later shape.
  g->OFFSET(Variant(int32_t(5)));  // (5, 0)
  g->RECTANGLE(Variant(make<cls_DrawRect>()->MOVE(0, 0, 3, 3)), Variant(u"#FF0000"), Variant(u""));
  EXPECT_EQ(pixel(box, 6, 1), 0xFFFF0000u);
  EXPECT_EQ(pixel(box, 4, 1), 0xFF0000FFu);
  // Drawing right after another resize reopens on the new device context by itself.
  box->Move(0, 0, Variant(80), Variant(60));
  g->RECTANGLE(Variant(u"(70,50,5,5)"), Variant(u"#FF0000"), Variant(u"none"));
  EXPECT_EQ(pixel(box, 72, 52), 0xFFFF0000u);  // and the offset went with the old graphics
  box->Move(0, 0, Variant(60), Variant(50));

  // DEVICE takes the box as it stands, in its own scale.
  box->ScaleMode(1);
  g->DEVICE(box);
  EXPECT_EQ(toUtf8(g->AREA()->INFO()), "(0,0)-(899,749)");
  EXPECT_TRUE(g->READY());
  g->RELEASE();
}

TEST_F(Boxes, RefreshAsksTheViewAndHandlesStayFlat) {
  struct View : PictureBoxView {
    int repaints = 0;
    void repaint() override { ++repaints; }
  } view;
  auto box = make<PictureBox>();
  box->Refresh();  // off screen: nothing to show
  box->view(&view);
  box->Refresh();
  EXPECT_EQ(view.repaints, 1);
  // A surface on the box asks it by name; one on an image has nobody to ask.
  auto g = make<cls_DrawGraphics>();
  g->CONNECT(box);
  g->REFRESH();
  EXPECT_EQ(view.repaints, 2);
  g->CONNECT(make<cls_DrawImage>()->CREATE(2, 2));
  g->REFRESH();
  EXPECT_EQ(view.repaints, 2);

  for (int i = 0; i < 300; ++i) {
    auto b = make<PictureBox>();
    auto g = make<cls_DrawGraphics>();
    g->CONNECT(b);
    b->Move(0, 0, Variant(10 + i % 7), Variant(10));
    g->READY();
    (void)b->Image();
  }
}
