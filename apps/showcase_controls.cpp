// The showcase's control-tree picture: a desktop with two windows of buttons and a panel, driven
// through the pointer as a host drives it (a press held, a button lit, the second window dragged
// by its title strip and so brought to the front), then every kind of node in every state.
// Written next to the main picture as controls.png.
#include <tessel/tessel.h>

#include "Desk.h"
#include "Sheet.h"

#include <functional>
#include <string>

using namespace tessel;
using showcase::Sheet;

namespace {

using K = enm_UIControl;
using E = enm_UIMouseEvent;

using showcase::node;
using showcase::scene;

// Every kind in every state, one row per kind.
void gallery(const Ref<cls_DrawGraphics>& g, Sheet& sheet, int top) {
  struct Cell {
    const char16_t* label;
    std::function<void(cls_DrawControl&)> state;
  };
  const Cell states[] = {
      {u"at rest", [](cls_DrawControl&) {}},
      {u"hover", [](cls_DrawControl& n) { n.HOVER(true); }},
      {u"pressed", [](cls_DrawControl& n) { n.PRESSED(true); }},
      {u"focus", [](cls_DrawControl& n) { n.FOCUS(true); }},
      {u"disabled", [](cls_DrawControl& n) { n.ENABLED(false); }},
  };
  const struct {
    K sort;
    const char16_t* name;
    float w, h;
  } kinds[] = {{K::ID_UIControl_Button, u"Button", 104, 32},
               {K::ID_UIControl_Container, u"Container", 104, 60},
               {K::ID_UIControl_Window, u"Window", 104, 80},
               {K::ID_UIControl_Desktop, u"Desktop", 104, 44}};
  int y = top;
  for (int c = 0; c < 5; ++c) sheet.label(states[c].label, 130 + c * 116, y, 110);
  y += 26;
  for (const auto& kind : kinds) {
    sheet.label(kind.name, 20, y + static_cast<int>(kind.h) / 2 - 10, 100);
    for (int c = 0; c < 5; ++c) {
      auto n = node(kind.sort, kind.name, 130.0f + c * 116, static_cast<float>(y), kind.w, kind.h);
      // A container and a desktop show hover and pressed only when their behaviours allow them.
      n->BEHAVIOUR(enm_UIControlBehaviour::ID_UIControlBehaviour_CanPressed, true);
      n->BEHAVIOUR(enm_UIControlBehaviour::ID_UIControlBehaviour_HoverEffect, true);
      states[c].state(*n);
      n->RENDER(g);
    }
    y += static_cast<int>(kind.h) + 14;
  }
}

}  // namespace

bool drawControls(const std::string& file) {
  Sheet sheet(730, 712);
  if (!sheet.ok()) return false;
  const Ref<cls_DrawGraphics>& g = sheet.surface();
  sheet.label(u"A desktop, driven through EVENTHANDLER", 20, 12, 580);
  auto desk = scene();
  desk->RENDER(g);
  // The pointer, as a host reports it: "Held down" pressed and kept, "Search" lit, the viewer
  // dragged by its title strip (which focuses it and brings it to the front).
  auto send = [&](E e, int x, int y) { desk->EVENTHANDLER(e, 1, 0, Variant(make<cls_DrawPoint>()->MOVE(x, y))); };
  send(E::ID_UIMouseEvent_Down, 300, 280);
  send(E::ID_UIMouseEvent_Up, 300, 280);
  send(E::ID_UIMouseEvent_Down, 360, 150);
  send(E::ID_UIMouseEvent_Move, 380, 140);
  send(E::ID_UIMouseEvent_Up, 380, 140);
  auto files = desk->CHILD(Variant(2));
  files->CHILD(Variant(3))->PRESSED(true);
  files->CHILD(Variant(2))->EVENTHANDLER(E::ID_UIMouseEvent_In, 0, 0, Variant(u"(150,20)"));
  desk->RENDERWINDOW(g);
  gallery(g, sheet, 392);
  return sheet.save(file);
}
