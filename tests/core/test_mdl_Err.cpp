// The uniform error path end to end: classification, folding into the object-error range,
// retry / continue / raise, the German dialogs and their answers, service processes.
#include <tessel/core/Error.h>
#include <tessel/core/MessageBox.h>
#include <tessel/core/mdl_Err.h>

#include <gtest/gtest.h>

#include "TestSupport.h"
#include "core/ErrorCapture.h"

using namespace tessel;

namespace {

const ProcInfo kLibProc{"cls_Sample", "DIVIDE"};
const ProcInfo kEventProc{"ctl_Sample", "pic_Box_Click", true};

double divide(double a, double b) {
  if (b == 0) tessel::raise(rt::DivisionByZero);
  return a / b;
}

}  // namespace

TEST(ErrorPath, LibraryErrorsReachTheCallerFoldedAndWithoutDialog) {
  ErrorCapture capture;
  Error e = raisedBy([] { Trap(kLibProc, [] { return divide(1, 0); }); });
  EXPECT_EQ(e.number(), static_cast<int32_t>(0x8004000B));
  EXPECT_EQ(e.description(), "Ungültiger Parameter (11)");
  EXPECT_EQ(e.source(), "cls_Sample.DIVIDE");

  e = raisedBy([] { Trap(ProcInfo{"cls_DrawColor", "PEN.GET"}, [] { tessel::raise(rt::ObjectNotSet); }); });
  EXPECT_EQ(e.number(), static_cast<int32_t>(0x8004005B));
  EXPECT_EQ(e.description(), "Objekt-Fehler (91)");
  EXPECT_EQ(e.source(), "cls_DrawColor.PEN.GET");

  e = raisedBy([] { Trap(kLibProc, [] { tessel::raise(480); }); });
  EXPECT_EQ(e.description(), "Nicht genügend freier Arbeitsspeicher (480)");
  e = raisedBy([] { Trap(kLibProc, [] { tessel::raise(440); }); });
  EXPECT_EQ(e.description(), "Objekt-Fehler (440)");
  EXPECT_EQ(e.number(), static_cast<int32_t>(0x800401B8));
  EXPECT_TRUE(capture.shown.empty());
}

TEST(ErrorPath, NumbersAreMaskedSoNestedProceduresKeepThem) {
  ErrorCapture capture;
  // An object error entering the handler is classified by its low part.
  Error e = raisedBy([] { Trap(kLibProc, [] { tessel::raise(static_cast<int32_t>(0x80040005), "x"); }); });
  EXPECT_EQ(e.number(), static_cast<int32_t>(0x80040005));
  EXPECT_EQ(e.number(), -2147221499);
  EXPECT_EQ(e.description(), "Ungültiger Parameter (5)");

  // Passing an outer procedure: the number stays, the source becomes the outer one.
  e = raisedBy([] { Trap(ProcInfo{"cls_Outer", "RUN"}, [] { Trap(kLibProc, [] { return divide(1, 0); }); }); });
  EXPECT_EQ(e.number(), static_cast<int32_t>(0x8004000B));
  EXPECT_EQ(e.description(), "Ungültiger Parameter (11)");
  EXPECT_EQ(e.source(), "cls_Outer.RUN");

  // An unclassified error gains one prefix per level it passes.
  e = raisedBy([] { Trap(ProcInfo{"cls_Outer", "RUN"}, [] { Trap(kLibProc, [] { tessel::raise(1234, "Kaputt"); }); }); });
  EXPECT_EQ(e.number(), static_cast<int32_t>(0x800404D2));
  EXPECT_EQ(e.description(), "Unbehandelter Fehler #1234: Unbehandelter Fehler #1234: Kaputt");
}

TEST(ErrorPath, IgnorableErrorsContinueWithTheNextStep) {
  ErrorCapture capture;
  std::vector<int> ran;
  Procedure p(kLibProc);
  p.step([&] {
    ran.push_back(1);
    tessel::raise(400);
    ran.push_back(99);  // never reached: the rest of the failing step is skipped
  });
  p.step([&] { ran.push_back(2); });
  EXPECT_EQ(ran, (std::vector<int>{1, 2}));
  // In a one-step procedure, continue yields the result type's default.
  EXPECT_EQ(Trap(kLibProc, []() -> int { tessel::raise(402); }), 0);
}

TEST(ErrorPath, FileErrorsAskEvenOutsideEventProcedures) {
  ErrorCapture capture;
  int attempts = 0;
  auto failingOpen = [&] {
    Trap(kLibProc, [&] {
      if (++attempts < 3) tessel::raise(rt::FileNotFound);
    });
  };

  capture.answers = {MsgResult::Retry, MsgResult::Retry};  // retry re-runs the failing step
  failingOpen();
  EXPECT_EQ(attempts, 3);
  ASSERT_EQ(capture.shown.size(), 2u);
  const MsgBoxRequest& r = capture.shown[0];
  EXPECT_EQ(r.title, "Datei-Fehler!");
  EXPECT_EQ(r.prompt,
            "Es ist ein Fehler beim Zugriff auf eine Datei aufgetreten: Datei nicht gefunden\r\n\r\n"
            "Anwendung: Tessel\r\nModul: cls_Sample\r\nProzedur: DIVIDE\r\n\r\nWie möchten Sie fortfahren?");
  EXPECT_EQ(r.buttons, MsgButtons::AbortRetryIgnore);
  EXPECT_EQ(r.icon, MsgIcon::Critical);
  EXPECT_EQ(r.defaultButton, 2);

  attempts = 0;
  capture.answers = {MsgResult::Ignore};
  failingOpen();  // continue: nothing raised
  EXPECT_EQ(attempts, 1);

  attempts = 0;
  capture.answers = {MsgResult::Abort};
  Error e = raisedBy(failingOpen);
  EXPECT_EQ(e.number(), static_cast<int32_t>(0x80040035));  // the masked incoming number, folded
  EXPECT_EQ(e.description(), "Dateizugriff fehlgeschlagen (53)");
}

TEST(ErrorPath, ProgramErrorDialogInEventProcedures) {
  ErrorCapture capture;
  int runs = 0;
  auto handler = [&] {
    Procedure p(kEventProc);
    p.step("Set x = Nothing", [&] {
      ++runs;
      tessel::raise(1234, "Kaputt");
    });
  };

  capture.answers = {MsgResult::Retry, MsgResult::Ignore};
  handler();
  EXPECT_EQ(runs, 2);
  ASSERT_EQ(capture.shown.size(), 2u);
  EXPECT_EQ(capture.shown[0].title, "Programmfehler!");
  EXPECT_EQ(capture.shown[0].prompt,
            "Es ist ein unerwarteter Programmfehler aufgetreten: \r\n\r\n"
            "Fehler: Unbehandelter Fehler #1234: Kaputt\r\n\r\n"
            "Anwendung: Tessel\r\nModul: ctl_Sample\r\nProzedur: pic_Box_Click\r\n"
            "Anweisung: Set x = Nothing\r\nFehlernummer: #1234\r\n\r\nWie möchten Sie fortfahren?");
  EXPECT_EQ(capture.shown[0].defaultButton, 2);

  // Abort asks for confirmation; No shows the same dialog again.
  capture.shown.clear();
  capture.answers = {MsgResult::Abort, MsgResult::No, MsgResult::Ignore};
  handler();
  ASSERT_EQ(capture.shown.size(), 3u);
  EXPECT_EQ(capture.shown[1].title, "ACHTUNG: Wirklich beenden?");
  EXPECT_EQ(capture.shown[1].prompt,
            "Sind Sie sicher, daß Sie dieses Programm sofort beenden möchten? Dadurch gehen ungespeicherte "
            "Arbeiten eventuell verloren! Trotzdem beenden?");
  EXPECT_EQ(capture.shown[1].buttons, MsgButtons::YesNo);
  EXPECT_EQ(capture.shown[2].prompt, capture.shown[0].prompt);
  EXPECT_EQ(capture.terminated, 0);

  // Yes ends the program at once: no further library code runs.
  capture.answers = {MsgResult::Abort, MsgResult::Yes};
  EXPECT_THROW(handler(), Terminated);
  EXPECT_EQ(capture.terminated, 1);

  // Parameter errors show their library number in the dialog.
  capture.shown.clear();
  Procedure(kEventProc).step([] { tessel::raise(rt::TypeMismatch); });
  EXPECT_NE(capture.shown[0].prompt.find("Fehlernummer: #4001\r\n"), std::string::npos);
  EXPECT_EQ(capture.shown[0].prompt.find("Anweisung"), std::string::npos);  // no instruction, no line
}

TEST(ErrorPath, ServiceProcessesNeverShowDialogs) {
  ErrorCapture capture;
  ScopedUserName user("System");
  EXPECT_TRUE(mdl_Err::IsServiceProcess());

  Error e = raisedBy([] { Trap(kLibProc, [] { tessel::raise(rt::FileNotFound); }); });
  EXPECT_EQ(e.description(), "Dateizugriff fehlgeschlagen (53)");
  int after = 0;
  Procedure p(kEventProc);
  p.step([] { tessel::raise(1234, "Kaputt"); });  // continued, not shown
  p.step([&] { ++after; });
  EXPECT_EQ(after, 1);
  EXPECT_TRUE(capture.shown.empty());

  ScopedUserName local("localsystem");
  EXPECT_TRUE(mdl_Err::IsServiceProcess());
  ScopedUserName person("anna");
  EXPECT_FALSE(mdl_Err::IsServiceProcess());
}

TEST(ErrorPath, TheServiceAnswerIsReadOncePerProcess) {
  ScopedUserName person("anna");
  ASSERT_FALSE(mdl_Err::IsServiceProcess());
  {
    ScopedEnv changed("USERNAME", "SYSTEM");  // without the seam: the first answer stands
    EXPECT_FALSE(mdl_Err::IsServiceProcess());
    mdl_Err::RecheckServiceProcess();
    EXPECT_TRUE(mdl_Err::IsServiceProcess());
  }
  mdl_Err::RecheckServiceProcess();
  EXPECT_FALSE(mdl_Err::IsServiceProcess());
}

TEST(ErrorPath, SummaryLineOnRequest) {
  EXPECT_EQ(mdl_Err::ErrSummary(4001, "Ungültiger Parameter (5)", "Tessel", "cls_DrawRect", "MOVECENTER"),
            "Fehler: #4001 - Ungültiger Parameter (5) @ Tessel.cls_DrawRect.MOVECENTER");
}

TEST(ErrorPath, WithoutDisplayOrAnswererTheLibraryActsAsAService) {
  setMessageBoxHandler(nullptr);
  ScopedEnv display("DISPLAY", nullptr);
  ScopedEnv wayland("WAYLAND_DISPLAY", nullptr);
  ASSERT_FALSE(canShowMessageBox());
  testing::internal::CaptureStderr();
  Error e = raisedBy([] { Trap(kLibProc, [] { tessel::raise(rt::FileNotFound); }); });
  std::string err = testing::internal::GetCapturedStderr();
  EXPECT_EQ(e.description(), "Dateizugriff fehlgeschlagen (53)");
  EXPECT_NE(err.find("Datei-Fehler!"), std::string::npos);
}

TEST(ErrorPath, TerminateRequestedEndsTheProgramOnTheNextError) {
  ErrorCapture capture;
  mdl_Err::TerminateRequested = true;
  EXPECT_THROW(Trap(kLibProc, [] { tessel::raise(rt::TypeMismatch); }), Terminated);
  EXPECT_EQ(capture.terminated, 1);
}

TEST(ErrorPath, ForeignExceptionsTakeThePathToo) {
  ErrorCapture capture;
  Error e = raisedBy([] { Trap(kLibProc, [] { throw std::bad_alloc(); }); });
  EXPECT_EQ(e.description(), "Ungültiger Parameter (7)");
  e = raisedBy([] { Trap(kLibProc, [] { throw std::runtime_error("boom"); }); });
  EXPECT_EQ(e.description(), "Unbehandelter Fehler #51: Interner Fehler: boom");
}
