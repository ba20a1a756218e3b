// The GTK widget of a picture box (GtkView.h): a drawing area that paints the box's bitmap and
// delivers the input GTK gives it as the box's events.
#include <tessel/host/GtkView.h>

#include <tessel/core/MessageBox.h>

#include <gtk/gtk.h>

#include <cstring>
#include <functional>
#include <string>

namespace tessel::gtkview {

namespace gp = mdl_GDIPlus;

namespace {

using PointerEvent = Event<int16_t&, int16_t&, float&, float&>;

// Nothing may unwind through GTK's C frames. What reaches here has been through the error path
// already (an event procedure shows its dialog); an ending program leaves the main loop.
template <class F>
void guarded(F&& f) noexcept {
  try {
    f();
  } catch (const Terminated&) {
    if (gtk_main_level() > 0) gtk_main_quit();
  } catch (const Error& e) {
    g_warning("tessel: %s (%s)", e.what(), e.source().c_str());
  } catch (const std::exception& e) {
    g_warning("tessel: %s", e.what());
  } catch (...) {
    g_warning("tessel: an unknown failure in an event handler");
  }
}

// The view: what a box's widget knows. It lives as long as the widget and holds the box (and
// the control around it, if any) so that neither goes while it is shown.
class BoxView final : public PictureBoxView {
 public:
  BoxView(Ref<PictureBox> box, Ref<ctl_PictureBox> control) : box_(std::move(box)), control_(std::move(control)) {
    area_ = gtk_drawing_area_new();
    gtk_widget_set_can_focus(area_, TRUE);
    gtk_widget_add_events(area_, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK | GDK_POINTER_MOTION_MASK |
                                     GDK_KEY_PRESS_MASK | GDK_KEY_RELEASE_MASK | GDK_ENTER_NOTIFY_MASK |
                                     GDK_LEAVE_NOTIFY_MASK);
    gtk_widget_set_size_request(area_, 1, 1);
    g_object_set_data(G_OBJECT(area_), "tessel-view", this);
    g_signal_connect(area_, "draw", G_CALLBACK(onDraw), this);
    g_signal_connect(area_, "size-allocate", G_CALLBACK(onAllocate), this);
    g_signal_connect(area_, "button-press-event", G_CALLBACK(onPress), this);
    g_signal_connect(area_, "button-release-event", G_CALLBACK(onRelease), this);
    g_signal_connect(area_, "motion-notify-event", G_CALLBACK(onMotion), this);
    g_signal_connect(area_, "key-press-event", G_CALLBACK(onKey), this);
    g_signal_connect(area_, "key-release-event", G_CALLBACK(onKey), this);
    g_signal_connect(area_, "destroy", G_CALLBACK(onDestroy), this);
    acceptDrops();
    box_->view(this);
  }
  ~BoxView() {
    box_->view(nullptr);
    if (cache_) cairo_surface_destroy(cache_);
  }

  GtkWidget* widget() const noexcept { return area_; }

  // An event of the box, with nothing let through to GTK.
  template <class... A>
  void send(A&&... args) {
    guarded([&] { box_->deliver(std::forward<A>(args)...); });
  }

  void repaint() override {
    stale_ = true;
    gtk_widget_queue_draw(area_);
  }

 private:
  // The bitmap's pixels, premultiplied as cairo wants them, copied again after a repaint request
  // or a new bitmap.
  cairo_surface_t* picture() {
    gp::GpBitmap* bitmap = box_->bitmap();
    const int w = box_->Width(), h = box_->Height();
    if (cache_ && !stale_ && cachedFrom_ == bitmap) return cache_;
    if (!cache_ || cairo_image_surface_get_width(cache_) != w || cairo_image_surface_get_height(cache_) != h) {
      if (cache_) cairo_surface_destroy(cache_);
      cache_ = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h);
    }
    gp::BitmapData data{};
    if (gp::Succeeded(gp::GdipBitmapLockBits(bitmap, nullptr, gp::ImageLockModeRead, gp::PixelFormat32bppPARGB, &data))) {
      cairo_surface_flush(cache_);
      auto* to = cairo_image_surface_get_data(cache_);
      const int stride = cairo_image_surface_get_stride(cache_);
      const size_t row = std::min<size_t>(data.Width, static_cast<size_t>(w)) * 4;
      for (int y = 0; y < h && static_cast<uint32_t>(y) < data.Height; ++y)
        std::memcpy(to + ptrdiff_t{stride} * y, static_cast<const uint8_t*>(data.Scan0) + ptrdiff_t{data.Stride} * y,
                    row);
      gp::GdipBitmapUnlockBits(bitmap, &data);
      cairo_surface_mark_dirty(cache_);
    }
    cachedFrom_ = bitmap;
    stale_ = false;
    return cache_;
  }

  static gboolean onDraw(GtkWidget*, cairo_t* cr, gpointer self) {
    auto* v = static_cast<BoxView*>(self);
    cairo_set_source_surface(cr, v->picture(), 0, 0);
    cairo_paint(cr);
    return TRUE;
  }

  static void onAllocate(GtkWidget*, GdkRectangle* a, gpointer self) {
    auto* v = static_cast<BoxView*>(self);
    guarded([&] {
      if (v->control_)
        v->control_->resize(a->width, a->height);
      else
        v->box_->Move(0, 0, Variant(a->width), Variant(a->height));
    });
    v->stale_ = true;
  }

  // The host's codes: buttons 1 left, 2 right, 4 middle; Shift 1, Ctrl 2, Alt 4.
  static int16_t buttonCode(guint button) {
    switch (button) {
      case 1: return 1;
      case 3: return 2;
      case 2: return 4;
      default: return 0;
    }
  }
  static int16_t heldButtons(guint state) {
    return static_cast<int16_t>((state & GDK_BUTTON1_MASK ? 1 : 0) | (state & GDK_BUTTON3_MASK ? 2 : 0) |
                                (state & GDK_BUTTON2_MASK ? 4 : 0));
  }
  static int16_t shiftCode(guint state) {
    return static_cast<int16_t>((state & GDK_SHIFT_MASK ? 1 : 0) | (state & GDK_CONTROL_MASK ? 2 : 0) |
                                (state & GDK_MOD1_MASK ? 4 : 0));
  }

  void pointer(PointerEvent PictureBox::*event, int16_t button, guint state, double x, double y) {
    int16_t shift = shiftCode(state);
    float sx = box_->ScaleX(static_cast<float>(x), 3), sy = box_->ScaleY(static_cast<float>(y), 3);
    send(event, button, shift, sx, sy);
  }

  static gboolean onPress(GtkWidget* w, GdkEventButton* e, gpointer self) {
    auto* v = static_cast<BoxView*>(self);
    gtk_widget_grab_focus(w);
    if (e->type == GDK_2BUTTON_PRESS) {
      v->send(&PictureBox::DblClick);
      return TRUE;
    }
    if (e->type != GDK_BUTTON_PRESS) return TRUE;
    v->pressed_ = buttonCode(e->button);
    v->pointer(&PictureBox::MouseDown, buttonCode(e->button), e->state, e->x, e->y);
    return TRUE;
  }

  static gboolean onRelease(GtkWidget* w, GdkEventButton* e, gpointer self) {
    auto* v = static_cast<BoxView*>(self);
    const int16_t button = buttonCode(e->button);
    v->pointer(&PictureBox::MouseUp, button, e->state, e->x, e->y);
    // A click is a press and a release of the same button over the box.
    GtkAllocation a;
    gtk_widget_get_allocation(w, &a);
    const bool inside = e->x >= 0 && e->y >= 0 && e->x < a.width && e->y < a.height;
    if (button != 0 && button == v->pressed_ && inside) v->send(&PictureBox::Click);
    v->pressed_ = 0;
    return TRUE;
  }

  static gboolean onMotion(GtkWidget*, GdkEventMotion* e, gpointer self) {
    auto* v = static_cast<BoxView*>(self);
    v->pointer(&PictureBox::MouseMove, heldButtons(e->state), e->state, e->x, e->y);
    return TRUE;
  }

  static gboolean onKey(GtkWidget*, GdkEventKey* e, gpointer self) {
    auto* v = static_cast<BoxView*>(self);
    int16_t code = virtualKey(e->keyval), shift = shiftCode(e->state);
    if (e->type == GDK_KEY_RELEASE) {
      v->send(&PictureBox::KeyUp, code, shift);
      return TRUE;
    }
    v->send(&PictureBox::KeyDown, code, shift);
    if (code == 0) return TRUE;  // swallowed by a handler, or no key of the host's
    // A character for the keys that type one.
    const gunichar c = gdk_keyval_to_unicode(e->keyval);
    int16_t ascii = 0;
    if (e->keyval == GDK_KEY_Return || e->keyval == GDK_KEY_KP_Enter) ascii = 13;
    else if (e->keyval == GDK_KEY_BackSpace) ascii = 8;
    else if (e->keyval == GDK_KEY_Escape) ascii = 27;
    else if (e->keyval == GDK_KEY_Tab) ascii = 9;
    else if (c >= 32 && c < 0x8000) ascii = static_cast<int16_t>(c);
    if (ascii) v->send(&PictureBox::KeyPress, ascii);
    return TRUE;
  }

  // Text and file lists dropped on the box, as the drag-and-drop events' data object.
  void acceptDrops() {
    static const GtkTargetEntry targets[] = {{const_cast<char*>("text/uri-list"), 0, 15},
                                             {const_cast<char*>("UTF8_STRING"), 0, 1},
                                             {const_cast<char*>("text/plain"), 0, 1}};
    gtk_drag_dest_set(area_, GtkDestDefaults(0), targets, 3, GdkDragAction(GDK_ACTION_COPY | GDK_ACTION_MOVE));
    g_signal_connect(area_, "drag-motion", G_CALLBACK(onDragMotion), this);
    g_signal_connect(area_, "drag-leave", G_CALLBACK(onDragLeave), this);
    g_signal_connect(area_, "drag-drop", G_CALLBACK(onDragDrop), this);
    g_signal_connect(area_, "drag-data-received", G_CALLBACK(onDragData), this);
  }

  int32_t dragOver(int16_t state, double x, double y) {
    // GTK hands the data over only on the drop: while over, the data object is empty.
    Ref<DataObject> data = make<DataObject>();
    int32_t effect = 1;  // copy
    int16_t button = 1, shift = 0;
    float sx = box_->ScaleX(static_cast<float>(x), 3), sy = box_->ScaleY(static_cast<float>(y), 3);
    send(&PictureBox::OLEDragOver, data, effect, button, shift, sx, sy, state);
    return effect;
  }
  static gboolean onDragMotion(GtkWidget*, GdkDragContext* context, int x, int y, guint time, gpointer self) {
    auto* v = static_cast<BoxView*>(self);
    const int32_t effect = v->dragOver(v->dragging_ ? 2 : 0, x, y);
    v->dragging_ = true;
    gdk_drag_status(context, effect == 0 ? GdkDragAction(0) : effect == 2 ? GDK_ACTION_MOVE : GDK_ACTION_COPY, time);
    return TRUE;
  }
  static void onDragLeave(GtkWidget*, GdkDragContext*, guint, gpointer self) {
    auto* v = static_cast<BoxView*>(self);
    if (v->dropping_) return;  // GTK leaves before it drops
    v->dragOver(1, 0, 0);
    v->dragging_ = false;
  }
  static gboolean onDragDrop(GtkWidget* w, GdkDragContext* context, int x, int y, guint time, gpointer self) {
    auto* v = static_cast<BoxView*>(self);
    v->dropping_ = true;
    v->dropX_ = x;
    v->dropY_ = y;
    GdkAtom target = gtk_drag_dest_find_target(w, context, nullptr);
    if (target == GDK_NONE) {
      gtk_drag_finish(context, FALSE, FALSE, time);
      v->dropping_ = v->dragging_ = false;
      return TRUE;
    }
    gtk_drag_get_data(w, context, target, time);
    return TRUE;
  }
  static void onDragData(GtkWidget*, GdkDragContext* context, int, int, GtkSelectionData* selection, guint info,
                         guint time, gpointer self) {
    auto* v = static_cast<BoxView*>(self);
    Ref<DataObject> data = make<DataObject>();
    if (info == 15) {
      if (gchar** uris = gtk_selection_data_get_uris(selection)) {
        for (gchar** u = uris; *u; ++u) {
          if (gchar* file = g_filename_from_uri(*u, nullptr, nullptr)) {
            data->AddFile(toUtf16(file));
            g_free(file);
          }
        }
        g_strfreev(uris);
      }
    } else if (guchar* text = gtk_selection_data_get_text(selection)) {
      data->Text(toUtf16(reinterpret_cast<const char*>(text)));
      g_free(text);
    }
    int32_t effect = 1;
    int16_t button = 1, shift = 0;
    float sx = v->box_->ScaleX(static_cast<float>(v->dropX_), 3), sy = v->box_->ScaleY(static_cast<float>(v->dropY_), 3);
    v->send(&PictureBox::OLEDragDrop, data, effect, button, shift, sx, sy);
    gtk_drag_finish(context, effect != 0, effect == 2, time);
    v->dropping_ = v->dragging_ = false;
  }

  static void onDestroy(GtkWidget*, gpointer self) { delete static_cast<BoxView*>(self); }

  Ref<PictureBox> box_;
  Ref<ctl_PictureBox> control_;
  GtkWidget* area_ = nullptr;
  cairo_surface_t* cache_ = nullptr;
  const void* cachedFrom_ = nullptr;
  bool stale_ = true;
  int16_t pressed_ = 0;
  bool dragging_ = false, dropping_ = false;
  double dropX_ = 0, dropY_ = 0;
};

BoxView* viewOf(PictureBox& box) { return dynamic_cast<BoxView*>(box.view()); }

}  // namespace

bool ready() { return startGtk(); }

GtkWidget* widgetOf(PictureBox& box) {
  if (!ready()) return nullptr;
  if (BoxView* v = viewOf(box)) return v->widget();
  return (new BoxView(Ref<PictureBox>(&box), nullptr))->widget();
}

GtkWidget* widgetOf(ctl_PictureBox& control) {
  if (!ready()) return nullptr;
  PictureBox& box = *control.box();
  if (BoxView* v = viewOf(box)) return v->widget();
  return (new BoxView(control.box(), Ref<ctl_PictureBox>(&control)))->widget();
}

int16_t virtualKey(unsigned keyval) {
  const unsigned k = gdk_keyval_to_upper(keyval);
  if (k >= GDK_KEY_A && k <= GDK_KEY_Z) return static_cast<int16_t>('A' + (k - GDK_KEY_A));
  if (k >= GDK_KEY_0 && k <= GDK_KEY_9) return static_cast<int16_t>('0' + (k - GDK_KEY_0));
  if (k >= GDK_KEY_KP_0 && k <= GDK_KEY_KP_9) return static_cast<int16_t>(96 + (k - GDK_KEY_KP_0));
  if (k >= GDK_KEY_F1 && k <= GDK_KEY_F24) return static_cast<int16_t>(112 + (k - GDK_KEY_F1));
  switch (k) {
    case GDK_KEY_BackSpace: return 8;
    case GDK_KEY_Tab: case GDK_KEY_ISO_Left_Tab: return 9;
    case GDK_KEY_Return: case GDK_KEY_KP_Enter: return 13;
    case GDK_KEY_Shift_L: case GDK_KEY_Shift_R: return 16;
    case GDK_KEY_Control_L: case GDK_KEY_Control_R: return 17;
    case GDK_KEY_Alt_L: case GDK_KEY_Alt_R: return 18;
    case GDK_KEY_Pause: return 19;
    case GDK_KEY_Caps_Lock: return 20;
    case GDK_KEY_Escape: return 27;
    case GDK_KEY_space: return 32;
    case GDK_KEY_Page_Up: return 33;
    case GDK_KEY_Page_Down: return 34;
    case GDK_KEY_End: return 35;
    case GDK_KEY_Home: return 36;
    case GDK_KEY_Left: return 37;
    case GDK_KEY_Up: return 38;
    case GDK_KEY_Right: return 39;
    case GDK_KEY_Down: return 40;
    case GDK_KEY_Insert: return 45;
    case GDK_KEY_Delete: return 46;
    case GDK_KEY_KP_Multiply: return 106;
    case GDK_KEY_KP_Add: return 107;
    case GDK_KEY_KP_Subtract: return 109;
    case GDK_KEY_KP_Decimal: return 110;
    case GDK_KEY_KP_Divide: return 111;
    case GDK_KEY_Num_Lock: return 144;
    case GDK_KEY_Scroll_Lock: return 145;
    case GDK_KEY_semicolon: return 186;
    case GDK_KEY_equal: return 187;
    case GDK_KEY_comma: return 188;
    case GDK_KEY_minus: return 189;
    case GDK_KEY_period: return 190;
    case GDK_KEY_slash: return 191;
    default: return 0;
  }
}

}  // namespace tessel::gtkview
