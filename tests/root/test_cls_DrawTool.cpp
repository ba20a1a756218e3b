// The root object: start-up counting with its intended quirks, status texts, and one root
// object per thread.
#include <tessel/root/cls_DrawTool.h>
#include <tessel/root/sys_Global.h>

#include <gtest/gtest.h>

#include <thread>

#include "core/ErrorCapture.h"

using namespace tessel;

namespace {
enm_Draw_Status failingStartup(uint32_t*, const mdl_GDIPlus::GdiplusStartupInput*, void*) {
  return enm_Draw_Status::UnsupportedGdiplusVersion;
}
}  // namespace

TEST(cls_DrawTool, InitCountsTwiceOnASecondCallAndDeinitNeverShutsDown) {
  auto draw = make<cls_DrawTool>();
  EXPECT_FALSE(draw->READY());
  draw->DEINIT();  // on a never-started object: nothing
  EXPECT_EQ(draw->initCount(), 0);

  EXPECT_TRUE(draw->INIT());
  EXPECT_TRUE(draw->READY());
  EXPECT_EQ(draw->initCount(), 1);
  EXPECT_TRUE(draw->INIT());
  EXPECT_EQ(draw->initCount(), 3);

  draw->DEINIT();
  EXPECT_TRUE(draw->READY());
  EXPECT_EQ(draw->initCount(), 2);
  draw->DEINIT();
  draw->DEINIT();
  EXPECT_FALSE(draw->READY());
  EXPECT_EQ(draw->initCount(), 0);
  EXPECT_EQ(draw->token(), 0u);

  // The platform is still started: a root object started again works at once.
  EXPECT_TRUE(draw->INIT());
  EXPECT_EQ(draw->initCount(), 1);
}

TEST(cls_DrawTool, FailedStartupStillAnswersTrueAfterTheMessage) {
  ErrorCapture capture;
  cls_DrawTool::setStartupFunction(&failingStartup);
  auto draw = make<cls_DrawTool>();
  bool answer = draw->INIT();
  cls_DrawTool::setStartupFunction(nullptr);
  EXPECT_TRUE(answer);
  EXPECT_TRUE(draw->READY());
  ASSERT_EQ(capture.shown.size(), 1u);
  EXPECT_EQ(capture.shown[0].prompt, "Tessel konnte nicht initialisiert werden!");
  EXPECT_EQ(capture.shown[0].buttons, MsgButtons::OK);
  EXPECT_EQ(capture.shown[0].title, "Tessel");
}

TEST(cls_DrawTool, StatusTextsAndExecute) {
  auto draw = make<cls_DrawTool>();
  EXPECT_EQ(draw->ERRORINFO(enm_Draw_Status::OK), u"Unknown GDI+ Error.");
  EXPECT_EQ(draw->ERRORINFO(static_cast<enm_Draw_Status>(21)), u"Unknown GDI+ Error.");
  EXPECT_EQ(draw->ERRORINFO(static_cast<enm_Draw_Status>(-1)), u"Unknown GDI+ Error.");
  EXPECT_EQ(draw->ERRORINFO(enm_Draw_Status::FontFamilyNotFound), u"FontFamily Not Found.");
  EXPECT_EQ(draw->ERRORINFO(enm_Draw_Status::PropertyNotSupported), u"Property Not Supported.");
  EXPECT_EQ(draw->Execute(enm_Draw_Status::Win32Error), enm_Draw_Status::Win32Error);
  EXPECT_EQ(draw->Execute(enm_Draw_Status::OK), enm_Draw_Status::OK);
  // Late-bound, a plain number is a status too.
  EXPECT_EQ(Invoke(draw.get(), "errorinfo", InvokeKind::Method, {Variant(10)}), Variant(u"File Not Found."));
  EXPECT_EQ(Invoke(draw.get(), "Execute", InvokeKind::Method, {Variant(7)}), Variant(7));
}

TEST(cls_DrawTool, ErrorsetEndsTheProgramOnlyWhenTerminationWasRequested) {
  ErrorCapture capture;
  auto draw = make<cls_DrawTool>();
  draw->ERRORSET(u"anything");
  EXPECT_EQ(capture.terminated, 0);
  mdl_Err::TerminateRequested = true;
  EXPECT_THROW(draw->ERRORSET(u"anything"), Terminated);
  EXPECT_EQ(capture.terminated, 1);
}

TEST(Global, OneRootObjectPerThread) {
  Ref<cls_DrawTool> a = mdl_Global::DRAW();
  EXPECT_EQ(a, mdl_Global::DRAW());
  EXPECT_EQ(a, sys_Global::instance()->DRAW());
  EXPECT_EQ(Invoke(sys_Global::instance().get(), "draw", InvokeKind::Get).obj(), a.get());

  cls_DrawTool* other = nullptr;
  cls_DrawTool* otherAgain = nullptr;
  std::thread t([&] {
    other = mdl_Global::DRAW().get();
    otherAgain = sys_Global::instance()->DRAW().get();
  });
  t.join();
  EXPECT_NE(other, a.get());
  EXPECT_EQ(other, otherAgain);
}
