// The showcase as a desktop program: the host control in a GTK window, with a desktop of windows
// and buttons that light under the pointer, press, take the focus and come to the front, windows
// dragged by their title strips, and a window of colours whose buttons open a colour's
// information window.
//
//   build/bin/tessel-desktop            (needs a display; `make demo` runs it when there is one)
#include <tessel/host/GtkView.h>
#include <tessel/tessel.h>

#include <gtk/gtk.h>

#include <cstdio>
#include <memory>
#include <vector>

#include "Desk.h"

using namespace tessel;
using showcase::K;
using showcase::node;

namespace {

using E = enm_UIMouseEvent;

struct Desktop {
  Ref<ctl_PictureBox> view = make<ctl_PictureBox>();
  Ref<cls_DrawControl> desk = showcase::scene(0, 0, 760, 480);
  std::vector<Connection> wires;
  bool queued = false;

  // A window of colour buttons: a click opens the colour's information window.
  void addColours() {
    auto colours = desk->CHILDADD(node(K::ID_UIControl_Window, u"Colours", 430, 40, 290, 170));
    colours->TEXTALIGN(enm_TextAlign::ID_TextAlign_LeftMiddle);
    const char16_t* names[] = {u"steelblue", u"tomato", u"gold", u"seagreen", u"orchid", u"slategray"};
    for (int i = 0; i < 6; ++i) {
      auto b = colours->CHILDADD(node(K::ID_UIControl_Button, names[i], 10 + (i % 2) * 135, 10 + (i / 2) * 40, 125, 32));
      b->ICON(mdl_Global::DRAW()->Image()->CREATE(16, 16, Variant(names[i])));
      b->ICONSIZE(16);
      b->TEXTALIGN(enm_TextAlign::ID_TextAlign_LeftMiddle);
      Ref<cls_DrawColor> colour = mdl_Global::DRAW()->COLOR()->AUTO(Variant(names[i]));
      // A click is a release over the button that the press went to (the tree reports the
      // release after letting go of the button).
      auto armed = std::make_shared<bool>(false);
      wires.push_back(b->MOUSE.connect([b = b.get(), colour, armed](E e, int32_t, int32_t, Ref<cls_DrawPoint> p) {
        if (e == E::ID_UIMouseEvent_Down) *armed = true;
        if (e != E::ID_UIMouseEvent_Up) return;
        if (*armed && b->HITTEST(Variant(p))) colour->INFO();
        *armed = false;
      }));
    }
    colours->CHILDZORDER(Variant(colours), 1);
  }

  static gboolean renderPending(gpointer self) {
    auto* d = static_cast<Desktop*>(self);
    d->queued = false;
    try {
      d->desk->RENDERWINDOW(d->view->GRAPHICS());
      d->view->REFRESH();
    } catch (const Error& e) {
      std::fprintf(stderr, "%s\n", e.what());
    }
    return G_SOURCE_REMOVE;
  }

  void wire() {
    view->Control(desk);
    // The desktop fills the view; a new size draws everything.
    wires.push_back(view->RESIZE.connect([this] {
      desk->BOX()->MOVE(0, 0, view->ScaleWidth(), view->ScaleHeight());
      desk->RENDER(view->GRAPHICS());
      view->REFRESH();
    }));
    // Input changes the tree; what it asks to have drawn is drawn once the loop is idle.
    auto later = [this](int16_t&, int16_t&, float&, float&) {
      if (!queued) g_idle_add(renderPending, this);
      queued = true;
    };
    wires.push_back(view->MouseDown.connect(later));
    wires.push_back(view->MouseUp.connect(later));
    // Moves go on as plain moves, held button or not, so that the tree drags its windows.
    wires.push_back(view->MouseMove.connect([later](int16_t& button, int16_t& shift, float& x, float& y) {
      if (button == 1) button = 0;
      later(button, shift, x, y);
    }));
  }
};

}  // namespace

int main() {
  mdl_Global::DRAW()->INIT();
  if (!gtkview::ready()) {
    std::fprintf(stderr, "tessel-desktop needs a display; `make demo` writes the pictures without one.\n");
    return 2;
  }
  Desktop app;
  app.addColours();
  app.wire();
  GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_title(GTK_WINDOW(window), "Tessel");
  gtk_window_set_default_size(GTK_WINDOW(window), 760, 480);
  gtk_container_add(GTK_CONTAINER(window), gtkview::widgetOf(*app.view));
  g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), nullptr);
  gtk_widget_show_all(window);
  gtk_main();
  return 0;
}
