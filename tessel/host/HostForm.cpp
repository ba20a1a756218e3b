// A window of the desktop holding a host control (HostForm.members).
#include <tessel/host/HostForm.h>

#include <tessel/core/Checked.h>
#include <tessel/host/GtkView.h>

#include <gtk/gtk.h>

#include <algorithm>
#include <chrono>

namespace tessel {

namespace {


// How many forms are open; RUN's loop ends when none is. RUN's loop only: a program's own main
// loop is the program's to end.
int gOpen = 0;
guint gRunLevel = 0;

}  // namespace

HostForm::HostForm() {
  trap("Form_Initialize", [&] {
    content_ = make<ctl_PictureBox>();
    content_->Move(0, 0, Variant(width_), Variant(height_));
    auto pointer = [this](int16_t&, int16_t&, float&, float&) { hRenderLater(false); };
    wires_.push_back(content_->MouseDown.connect(pointer));
    wires_.push_back(content_->MouseMove.connect(pointer));
    wires_.push_back(content_->MouseUp.connect(pointer));
    wires_.push_back(content_->RESIZE.connect([this] { hRenderLater(true); }));
  });
}

bool HostForm::AUTORENDER(Get) const { return autoRender_; }
void HostForm::AUTORENDER(Let, bool RHS) { autoRender_ = RHS; }

// The events come before the tree hears them, so the drawing waits for the loop to be idle.
void HostForm::hRenderLater(bool whole) {
  if (!autoRender_ || !window_) return;
  renderWhole_ = renderWhole_ || whole;
  if (renderQueued_) return;
  renderQueued_ = true;
  addRef();  // until the idle call has run
  g_idle_add(reinterpret_cast<GSourceFunc>(onIdle), this);
}

// The main loop's idle time: an event procedure of the loop, so a failure may show the dialog.
int HostForm::onIdle(void* self) {
  auto* form = static_cast<HostForm*>(self);
  form->renderQueued_ = false;
  const bool whole = form->renderWhole_;
  form->renderWhole_ = false;
  try {
    Trap(ProcInfo{"HostForm", "tmr_Render_Timer", true}, [&] {
      const Ref<cls_DrawControl> tree = form->content_->Control();
      if (!form->autoRender_ || !tree) return;
      if (whole)
        tree->RENDER(form->content_->GRAPHICS());
      else
        tree->RENDERWINDOW(form->content_->GRAPHICS());
      form->content_->REFRESH();
    });
  } catch (const Terminated&) {
    if (gtk_main_level() > 0) gtk_main_quit();
  } catch (...) {
    // Reported on the error path already; nothing unwinds through GTK.
  }
  form->release();
  return G_SOURCE_REMOVE;
}

HostForm::~HostForm() = default;

std::u16string HostForm::Caption(Get) const { return caption_; }
void HostForm::Caption(Let, const std::u16string& RHS) {
  caption_ = RHS;
  if (window_) gtk_window_set_title(GTK_WINDOW(window_), toUtf8(caption_).c_str());
}

Ref<ctl_PictureBox> HostForm::CONTENT(Get) const { return content_; }
int32_t HostForm::Width(Get) const { return window_ ? content_->Width() : width_; }
int32_t HostForm::Height(Get) const { return window_ ? content_->Height() : height_; }
bool HostForm::Visible(Get) const { return window_ && gtk_widget_get_visible(window_); }
bool HostForm::CANSHOW(Get) const { return gtkview::ready(); }

void HostForm::Move(Call, float pLeft, float pTop, const Variant& pWidth, const Variant& pHeight) {
  left_ = Variant(pLeft).toLong();
  top_ = Variant(pTop).toLong();
  if (!pWidth.isMissing()) width_ = windowSide(pWidth.toDouble());
  if (!pHeight.isMissing()) height_ = windowSide(pHeight.toDouble());
  placed_ = true;
  if (window_) {
    gtk_window_move(GTK_WINDOW(window_), left_, top_);
    gtk_window_resize(GTK_WINDOW(window_), width_, height_);
  } else {
    content_->Move(0, 0, Variant(width_), Variant(height_));
  }
}

void HostForm::Show(Call) {
  if (!gtkview::ready()) raise(rt::InvalidCall);
  if (!window_) {
    window_ = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_title(GTK_WINDOW(window_), toUtf8(caption_).c_str());
    gtk_window_set_default_size(GTK_WINDOW(window_), width_, height_);
    if (placed_) gtk_window_move(GTK_WINDOW(window_), left_, top_);
    gtk_container_add(GTK_CONTAINER(window_), gtkview::widgetOf(*content_));
    g_signal_connect(window_, "delete-event", G_CALLBACK(onDelete), this);
    g_signal_connect(window_, "destroy", G_CALLBACK(onDestroy), this);
    addRef();  // the open window holds its form
    ++gOpen;
  }
  gtk_widget_show_all(window_);
  hRenderLater(true);  // drawn whole when first shown, whether its size changed or not
}

// The window's close button: CLOSE.
int HostForm::onDelete(GtkWidget*, void*, void* self) {
  try {
    static_cast<HostForm*>(self)->CLOSE();
  } catch (...) {
    // Reported on the error path; nothing unwinds through GTK.
  }
  return TRUE;  // CLOSE has destroyed the window already
}

void HostForm::CLOSE(Call) {
  if (!window_) return;
  Unload.raise();
  if (window_) gtk_widget_destroy(window_);
}

void HostForm::onDestroy(GtkWidget*, void* self) {
  auto* form = static_cast<HostForm*>(self);
  form->window_ = nullptr;
  if (--gOpen == 0 && gRunLevel > 0 && gtk_main_level() == gRunLevel) gtk_main_quit();
  form->release();
}

void HostForm::RUN(Call) {
  if (gOpen == 0) return;
  const guint outer = gRunLevel;
  gRunLevel = gtk_main_level() + 1;
  gtk_main();
  gRunLevel = outer;
}

void HostForm::DOEVENTS(Call, int32_t pMilliseconds) {
  if (!gtkview::ready()) return;
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(std::max(0, pMilliseconds));
  do {
    while (gtk_events_pending()) gtk_main_iteration_do(FALSE);
    if (pMilliseconds > 0) g_usleep(2000);
  } while (std::chrono::steady_clock::now() < end);
}

}  // namespace tessel
