// The status seam of the flat API and the helpers built on it.
#include <tessel/core/mdl_Err.h>
#include <tessel/core/mdl_GDIPlus.h>

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "TestSupport.h"
#include "core/ErrorCapture.h"

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;

TEST(mdl_GDIPlus, CheckPassesOkAndRaisesAFailingStatus) {
  EXPECT_NO_THROW(gp::Check(enm_Draw_Status::OK));
  EXPECT_TRUE(gp::Succeeded(enm_Draw_Status::OK));
  EXPECT_FALSE(gp::Succeeded(enm_Draw_Status::InvalidParameter));
  EXPECT_FALSE(gp::Succeeded(static_cast<enm_Draw_Status>(-1)));

  Error e = raisedBy([] { gp::Check(enm_Draw_Status::ObjectBusy); });
  EXPECT_EQ(e.number(), gp::StatusFailed);
  EXPECT_EQ(e.number(), 400);
  EXPECT_EQ(e.description(), "GDI+ status 4");
}

// A failing status ends the native steps that needed it and nothing more: the caller sees no
// error, and an event procedure shows no dialog.
TEST(mdl_GDIPlus, AFailingStatusEndsItsStepWithoutRaising) {
  ErrorCapture capture;
  std::vector<int> ran;
  Procedure p(ProcInfo{"cls_Sample", "pic_Box_Click", true});
  p.step([&] {
    ran.push_back(1);
    gp::Check(enm_Draw_Status::GenericError);
    ran.push_back(99);  // needed success: skipped
  });
  p.step([&] { ran.push_back(2); });
  EXPECT_EQ(ran, (std::vector<int>{1, 2}));
  EXPECT_TRUE(capture.shown.empty());

  int result = Trap(ProcInfo{"cls_Sample", "WIDTH.GET"}, [] {
    gp::Check(enm_Draw_Status::WrongState);
    return 7;
  });
  EXPECT_EQ(result, 0);  // a one-step procedure answers its default
}

TEST(mdl_GDIPlus, EncodersByMimeTypeIgnoringCase) {
  uint32_t token = 0;
  gp::GdiplusStartupInput input;
  ASSERT_EQ(gp::GdiplusStartup(&token, &input, nullptr), enm_Draw_Status::OK);
  gp::GUID png{}, again{}, jpeg{};
  ASSERT_TRUE(gp::GetEncoderClsid(u"image/png", png));
  ASSERT_TRUE(gp::GetEncoderClsid(u"IMAGE/PNG", again));
  ASSERT_TRUE(gp::GetEncoderClsid(u"image/jpeg", jpeg));
  EXPECT_EQ(0, std::memcmp(&png, &again, sizeof png));
  EXPECT_NE(0, std::memcmp(&png, &jpeg, sizeof png));

  gp::GUID none{};
  none.Data1 = 0x12345678;
  EXPECT_FALSE(gp::GetEncoderClsid(u"image/x-unknown", none));
  EXPECT_FALSE(gp::GetEncoderClsid(u"", none));
  EXPECT_EQ(none.Data1, 0x12345678u);  // untouched when nothing matches
}
