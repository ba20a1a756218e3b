// The picture: it takes over the bitmap it is given and frees it once, when it goes.
#include <tessel/images/Picture.h>
#include <tessel/root/cls_DrawTool.h>

#include <gtest/gtest.h>

#include "TestSupport.h"

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;

namespace {

gp::GpBitmap* newBitmap(int w, int h) {
  mdl_Global::DRAW()->INIT();
  gp::GpBitmap* b = nullptr;
  EXPECT_EQ(gp::GdipCreateBitmapFromScan0(w, h, 0, gp::PixelFormat32bppARGB, nullptr, &b), enm_Draw_Status::OK);
  return b;
}

}  // namespace

TEST(Picture, TakesOverTheBitmapAndFreesItOnce) {
  const long images = gp::ImageHandle::live();
  gp::GpBitmap* bitmap = newBitmap(7, 3);
  const int64_t handle = reinterpret_cast<intptr_t>(static_cast<gp::GpImage*>(bitmap));
  {
    Ref<Picture> p = gp::HandleToPicture(handle, Picture::kPictureBitmap);
    EXPECT_EQ(gp::ImageHandle::live(), images + 1);
    EXPECT_EQ(p->Handle(), handle);
    EXPECT_EQ(p->Width(), 7);
    EXPECT_EQ(p->Height(), 3);
    EXPECT_EQ(p->Type(), 1);
    // Late-bound, the handle is a 64-bit value, never cut.
    EXPECT_EQ(Invoke(p.get(), "handle", InvokeKind::Get), Variant(handle));
  }
  EXPECT_EQ(gp::ImageHandle::live(), images);
}

TEST(Picture, EmptyPicturesAndRefusedTypes) {
  auto empty = make<Picture>();
  EXPECT_EQ(empty->Handle(), 0);
  EXPECT_EQ(empty->Type(), 0);
  EXPECT_EQ(gp::HandleToPicture(0, Picture::kPictureNone)->Width(), 0);

  gp::GpBitmap* bitmap = newBitmap(2, 2);
  const int64_t handle = reinterpret_cast<intptr_t>(static_cast<gp::GpImage*>(bitmap));
  Error e = raisedBy([&] { gp::HandleToPicture(handle, 3); });  // an icon: no picture here
  EXPECT_EQ(e.number(), objectError(5));
  EXPECT_EQ(e.source(), "mdl_GDIPlus.HandleToPicture");
  gp::ImageHandle stillOurs(bitmap);  // refused, so not taken over: freed here, once
}
