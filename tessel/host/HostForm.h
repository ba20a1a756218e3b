// A window of the desktop holding a host control (HostForm.members).
//
// The GTK window is made when the form is first shown and goes when it is closed; while it is
// open it holds the form, so a script's form stays on screen after the script lets go of it.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/host/HostForm.members.h>
#include <tessel/host/ctl_PictureBox.h>

#include <cstdint>
#include <string>
#include <vector>

typedef struct _GtkWidget GtkWidget;

namespace tessel {

class HostForm final : public ObjectOf<HostForm> {
  TESSEL_MEMBERS(HostForm)

 public:
  HostForm();
  ~HostForm() override;

  // The GTK window while it is open; null before and after.
  GtkWidget* window() const noexcept { return window_; }

 private:
  static void onDestroy(GtkWidget* w, void* self);
  static int onDelete(GtkWidget* w, void* event, void* self);
  // Asks for the content's tree to be drawn once the main loop is idle; `whole` after a resize.
  void hRenderLater(bool whole);
  static int onIdle(void* self);

  Ref<ctl_PictureBox> content_;
  std::u16string caption_ = u"Tessel";
  int32_t left_ = 0, top_ = 0, width_ = 640, height_ = 480;
  bool placed_ = false;
  bool autoRender_ = true, renderQueued_ = false, renderWhole_ = false;
  std::vector<Connection> wires_;
  GtkWidget* window_ = nullptr;
};

}  // namespace tessel
