// The host control off screen: its size and the binding of GRAPHICS before RESIZE, RECT, the
// forwarding of the inner box's events by reference, and the pointer's way to the tree with the
// box refreshed after it.
#include <tessel/tessel.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestSupport.h"
#include "core/ErrorCapture.h"

using namespace tessel;

namespace {

using E = enm_UIMouseEvent;

// Counts the repaints the box asks its view for.
struct CountingView : PictureBoxView {
  void repaint() override { ++repaints; }
  int repaints = 0;
};

struct Hosted {
  Hosted() {
    mdl_Global::DRAW()->INIT();
    ctl = make<ctl_PictureBox>();
    ctl->box()->view(&view);
  }
  ~Hosted() { ctl->box()->view(nullptr); }
  void mouse(Event<int16_t&, int16_t&, float&, float&> PictureBox::*event, int16_t button, float x, float y, int16_t shift = 0) {
    ctl->box()->deliver(event, button, shift, x, y);
  }
  Ref<ctl_PictureBox> ctl;
  CountingView view;
};

// A root that records what its EVENTHANDLER hears, as "event@x,y".
Ref<cls_DrawControl> listeningRoot(std::vector<std::string>& heard) {
  auto root = make<cls_DrawControl>();
  root->BOX()->MOVE(0, 0, 300, 200);
  static std::vector<Connection> keep;
  keep.push_back(root->MOUSE.connect([&heard](E e, int32_t button, int32_t, Ref<cls_DrawPoint> p) {
    heard.push_back(std::to_string(static_cast<int>(e)) + "/" + std::to_string(button) + "@" +
                    std::to_string(static_cast<int>(p->X())) + "," + std::to_string(static_cast<int>(p->Y())));
  }));
  return root;
}

}  // namespace

TEST(HostControl, AResizeBindsGraphicsToTheNewBoxBeforeRESIZE) {
  Hosted h;
  EXPECT_EQ(h.ctl->Width(), 100);
  std::vector<int> seen;
  auto c = h.ctl->RESIZE.connect([&] {
    // The surface already draws on the resized box.
    seen.push_back(static_cast<int>(h.ctl->GRAPHICS()->RECT()->W()));
    h.ctl->GRAPHICS()->RECTANGLE(Variant(u"(0,0,300,200)"), Variant(u"#FF0000"), Variant(u"none"));
  });
  h.ctl->Move(5, 6, Variant(300), Variant(200));
  EXPECT_EQ(seen, std::vector<int>{300});
  EXPECT_EQ(h.ctl->box()->Width(), 300);
  EXPECT_EQ(static_cast<uint32_t>(h.ctl->box()->PIXEL(299, 199)), 0xFFFF0000u);
  EXPECT_EQ(h.ctl->Left(), 5);
  h.ctl->Move(0, 0, Variant(300), Variant(200));  // the same size: no RESIZE
  EXPECT_EQ(seen.size(), 1u);

  // RECT is one less than the size, and the same object every time.
  auto r = h.ctl->RECT();
  EXPECT_EQ(toUtf8(r->INFO()), "(0,0)-(298,198)");
  EXPECT_EQ(h.ctl->RECT().get(), r.get());
}

TEST(HostControl, InputIsRaisedAgainByReference) {
  Hosted h;
  int clicks = 0;
  auto c1 = h.ctl->Click.connect([&] { ++clicks; });
  auto c2 = h.ctl->KeyDown.connect([](int16_t& code, int16_t&) {
    if (code == 65) code = 0;
  });
  h.ctl->box()->deliver(&PictureBox::Click);
  EXPECT_EQ(clicks, 1);
  int16_t code = 65, shift = 1;
  h.ctl->box()->deliver(&PictureBox::KeyDown, code, shift);
  EXPECT_EQ(code, 0);  // the box goes on with the handler's value
  auto data = make<DataObject>();
  data->Text(u"dropped");
  int32_t effect = 1;
  int16_t button = 1;
  float x = 3, y = 4;
  std::u16string got;
  auto c3 = h.ctl->OLEDragDrop.connect([&](Ref<DataObject>& d, int32_t& e, int16_t&, int16_t&, float&, float&) {
    got = d->Text();
    e = 0;
  });
  h.ctl->box()->deliver(&PictureBox::OLEDragDrop, data, effect, button, shift, x, y);
  EXPECT_EQ(got, u"dropped");
  EXPECT_EQ(effect, 0);
  EXPECT_EQ(h.view.repaints, 0);  // keys, clicks and drops are not the tree's
}

TEST(HostControl, WithoutATreeThePointerIsOnlyRaisedAgain) {
  Hosted h;
  int downs = 0;
  auto c = h.ctl->MouseDown.connect([&](int16_t&, int16_t&, float&, float&) { ++downs; });
  h.mouse(&PictureBox::MouseDown, 1, 10, 10);
  EXPECT_EQ(downs, 1);
  EXPECT_EQ(h.view.repaints, 0);
  EXPECT_EQ(h.ctl->X(), 10);
}

TEST(HostControl, ThePointerReachesTheTreeAMoveWithAButtonAsHoldAndTheBoxIsRefreshed) {
  Hosted h;
  std::vector<std::string> heard;
  h.ctl->Control(listeningRoot(heard));
  h.mouse(&PictureBox::MouseMove, 0, 20.4f, 30);
  h.mouse(&PictureBox::MouseDown, 1, 21, 31);
  h.mouse(&PictureBox::MouseMove, 1, 22, 32);
  h.mouse(&PictureBox::MouseUp, 1, 22, 32);
  // In comes first: the move entered the root's box.
  EXPECT_EQ(heard, (std::vector<std::string>{"3/0@20,30", "5/0@20,30", "1/1@21,31", "6/1@22,32", "2/1@22,32"}));
  EXPECT_EQ(h.view.repaints, 4);
  EXPECT_EQ(h.ctl->X(), 22);

  // A handler that lets go of the button turns the hold into a move the tree can drag with.
  auto c = h.ctl->MouseMove.connect([](int16_t& button, int16_t&, float&, float&) { button = 0; });
  heard.clear();
  h.mouse(&PictureBox::MouseMove, 1, 40, 50);
  EXPECT_EQ(heard, std::vector<std::string>{"5/0@40,50"});
}

TEST(HostControl, AWindowOfTheTreeIsDraggedWhenTheApplicationPassesMovesOn) {
  Hosted h;
  h.ctl->Move(0, 0, Variant(400), Variant(300));
  auto desk = make<cls_DrawControl>();
  desk->SORT(enm_UIControl::ID_UIControl_Desktop);
  desk->BOX()->MOVE(0, 0, 400, 300);
  auto w = desk->CHILDADD(make<cls_DrawControl>());
  w->SORT(enm_UIControl::ID_UIControl_Window);
  w->BOX()->MOVE(50, 50, 200, 150);
  h.ctl->Control(desk);
  desk->RENDER(h.ctl->GRAPHICS());
  auto c = h.ctl->MouseMove.connect([](int16_t& button, int16_t&, float&, float&) { button = 0; });
  h.mouse(&PictureBox::MouseDown, 1, 60, 60);
  h.mouse(&PictureBox::MouseMove, 1, 90, 70);
  h.mouse(&PictureBox::MouseUp, 1, 90, 70);
  EXPECT_EQ(toUtf8(w->BOX()->INFO()), "(80,60)-(279,209)");
}

// The event loop's procedures show the error dialog; ignored, the rest of the handler is skipped.
TEST(HostControl, AFailingTreeShowsTheDialogUnderTheHandlersName) {
  Hosted h;
  ErrorCapture dialogs;
  auto root = make<cls_DrawControl>();
  root->BOX(nullptr);
  h.ctl->Control(root);
  h.mouse(&PictureBox::MouseDown, 1, 1, 1);
  ASSERT_EQ(dialogs.shown.size(), 1u);
  EXPECT_NE(dialogs.shown[0].prompt.find("pic_Box_MouseDown"), std::string::npos) << dialogs.shown[0].prompt;
  EXPECT_EQ(dialogs.shown[0].title, "Programmfehler!");
  EXPECT_EQ(h.view.repaints, 0);
}
