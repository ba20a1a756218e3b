// The colour information window that a colour's INFO opens (GtkView.h): the colour as a swatch
// over a checkerboard, its channels, packed and hexadecimal forms, CSS name and brightness, its
// lighter, darker and contrast variants, and a line of text in its contrast colour on it.
//
// The window holds the colour while it is open and looks at it on a GLib timeout, several times a
// second, so that it follows changes made elsewhere. Its procedures, the loading of the window
// and the Close button, run under the error path with the dialog allowed.
#include <tessel/host/GtkView.h>

#include <tessel/color/cls_DrawColor.h>
#include <tessel/core/mdl_Basalt.h>

#include <gtk/gtk.h>

#include <array>
#include <cstdio>
#include <string>

namespace tessel::gtkview {

namespace {

constexpr guint kFollowMs = 200;

struct Rgba {
  double r, g, b, a;
};
Rgba rgbaOf(const cls_DrawColor& c) {
  return {c.R() / 255.0, c.G() / 255.0, c.B() / 255.0, c.A() / 255.0};
}

class ColorInfo {
 public:
  explicit ColorInfo(Ref<cls_DrawColor> colour) : colour_(std::move(colour)) {
    window_ = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_title(GTK_WINDOW(window_), "Farbinformation");
    gtk_window_set_resizable(GTK_WINDOW(window_), FALSE);
    gtk_widget_set_name(window_, "tessel-color-info");
    GtkWidget* grid = gtk_grid_new();
    gtk_container_set_border_width(GTK_CONTAINER(grid), 12);
    gtk_grid_set_row_spacing(GTK_GRID(grid), 6);
    gtk_grid_set_column_spacing(GTK_GRID(grid), 12);
    gtk_container_add(GTK_CONTAINER(window_), grid);

    swatch_ = area(160, 96, &ColorInfo::drawMain);
    gtk_grid_attach(GTK_GRID(grid), swatch_, 0, 0, 1, 8);
    static const char* const kNames[] = {"Rot", "Grün", "Blau", "Alpha", "ATOM", "Hex", "CSS-Name", "Helligkeit"};
    for (int i = 0; i < 8; ++i) {
      GtkWidget* name = gtk_label_new(kNames[i]);
      gtk_widget_set_halign(name, GTK_ALIGN_START);
      values_[i] = gtk_label_new("");
      gtk_widget_set_halign(values_[i], GTK_ALIGN_END);
      gtk_widget_set_name(values_[i], kNames[i]);
      gtk_grid_attach(GTK_GRID(grid), name, 1, i, 1, 1);
      gtk_grid_attach(GTK_GRID(grid), values_[i], 2, i, 1, 1);
    }
    // The variants, each a small swatch with its name.
    static const char* const kVariants[] = {"Heller", "Dunkler", "Kontrast"};
    GtkWidget* row = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 12);
    for (int i = 0; i < 3; ++i) {
      GtkWidget* cell = gtk_box_new(GTK_ORIENTATION_VERTICAL, 2);
      variants_[i] = area(48, 28, i == 0 ? &ColorInfo::drawBrighter : i == 1 ? &ColorInfo::drawDarker : &ColorInfo::drawContrast);
      gtk_box_pack_start(GTK_BOX(cell), variants_[i], FALSE, FALSE, 0);
      gtk_box_pack_start(GTK_BOX(cell), gtk_label_new(kVariants[i]), FALSE, FALSE, 0);
      gtk_box_pack_start(GTK_BOX(row), cell, FALSE, FALSE, 0);
    }
    gtk_grid_attach(GTK_GRID(grid), row, 0, 8, 3, 1);
    sample_ = area(300, 40, &ColorInfo::drawSample);
    gtk_grid_attach(GTK_GRID(grid), sample_, 0, 9, 3, 1);
    GtkWidget* close = gtk_button_new_with_mnemonic("_Schließen");
    gtk_widget_set_name(close, "but_Close");
    gtk_widget_set_halign(close, GTK_ALIGN_END);
    gtk_grid_attach(GTK_GRID(grid), close, 0, 10, 3, 1);
    g_signal_connect(close, "clicked", G_CALLBACK(onClose), this);
    g_signal_connect(window_, "destroy", G_CALLBACK(onDestroy), this);
    timer_ = g_timeout_add(kFollowMs, onTimer, this);
    show();
    gtk_widget_show_all(window_);
    gtk_widget_grab_focus(close);
  }

  GtkWidget* window() const noexcept { return window_; }

 private:
  using Painter = void (ColorInfo::*)(cairo_t*, int, int);
  struct Area {
    ColorInfo* self;
    Painter paint;
  };

  GtkWidget* area(int w, int h, Painter paint) {
    GtkWidget* a = gtk_drawing_area_new();
    gtk_widget_set_size_request(a, w, h);
    auto* binding = new Area{this, paint};
    g_signal_connect_data(a, "draw", G_CALLBACK(onDraw), binding, [](gpointer p, GClosure*) { delete static_cast<Area*>(p); },
                          GConnectFlags(0));
    return a;
  }
  static gboolean onDraw(GtkWidget* w, cairo_t* cr, gpointer p) {
    auto* a = static_cast<Area*>(p);
    (a->self->*a->paint)(cr, gtk_widget_get_allocated_width(w), gtk_widget_get_allocated_height(w));
    return TRUE;
  }

  // Under a colour that is not opaque, a checkerboard shows through.
  static void paint(cairo_t* cr, int w, int h, const Rgba& c) {
    for (int y = 0; y < h; y += 8)
      for (int x = 0; x < w; x += 8) {
        const double grey = ((x + y) / 8) % 2 ? 0.8 : 1.0;
        cairo_set_source_rgb(cr, grey, grey, grey);
        cairo_rectangle(cr, x, y, 8, 8);
        cairo_fill(cr);
      }
    cairo_set_source_rgba(cr, c.r, c.g, c.b, c.a);
    cairo_paint(cr);
    cairo_set_source_rgb(cr, 0.5, 0.5, 0.5);
    cairo_set_line_width(cr, 1);
    cairo_rectangle(cr, 0.5, 0.5, w - 1, h - 1);
    cairo_stroke(cr);
  }
  void drawMain(cairo_t* cr, int w, int h) { paint(cr, w, h, rgbaOf(*colour_)); }
  void drawBrighter(cairo_t* cr, int w, int h) { paint(cr, w, h, rgbaOf(*colour_->BRIGHTER(40))); }
  void drawDarker(cairo_t* cr, int w, int h) { paint(cr, w, h, rgbaOf(*colour_->DARKER(40))); }
  void drawContrast(cairo_t* cr, int w, int h) { paint(cr, w, h, rgbaOf(*colour_->CONTRAST())); }
  void drawSample(cairo_t* cr, int w, int h) {
    paint(cr, w, h, rgbaOf(*colour_));
    const Rgba ink = rgbaOf(*colour_->CONTRAST());
    cairo_set_source_rgb(cr, ink.r, ink.g, ink.b);
    cairo_select_font_face(cr, "Liberation Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, 15);
    cairo_move_to(cr, 10, h / 2.0 + 5);
    cairo_show_text(cr, "Franz jagt im komplett verwahrlosten Taxi");
  }

  // Form_Load, and again on every change: the texts and the swatches.
  void show() {
    Trap(ProcInfo{"frm_ColorInfo", "Form_Load", true}, [&] {
      const cls_DrawColor& c = *colour_;
      shown_ = static_cast<uint32_t>(c.A()) << 24 | static_cast<uint32_t>(c.R()) << 16 |
               static_cast<uint32_t>(c.G()) << 8 | c.B();
      const std::string name = mdl_Basalt::NameOfColor(shown_);
      const std::array<std::string, 8> texts = {std::to_string(c.R()),
                                                std::to_string(c.G()),
                                                std::to_string(c.B()),
                                                std::to_string(c.A()),
                                                std::to_string(c.ATOM()),
                                                toUtf8(c.HTML()),
                                                name.empty() ? "—" : name,
                                                std::to_string(const_cast<cls_DrawColor&>(c).BRIGHTNESS())};
      for (size_t i = 0; i < texts.size(); ++i) gtk_label_set_text(GTK_LABEL(values_[i]), texts[i].c_str());
      for (GtkWidget* w : {swatch_, variants_[0], variants_[1], variants_[2], sample_}) gtk_widget_queue_draw(w);
    });
  }

  static gboolean onTimer(gpointer p) {
    auto* self = static_cast<ColorInfo*>(p);
    const cls_DrawColor& c = *self->colour_;
    const uint32_t now = static_cast<uint32_t>(c.A()) << 24 | static_cast<uint32_t>(c.R()) << 16 |
                         static_cast<uint32_t>(c.G()) << 8 | c.B();
    if (now != self->shown_) self->show();
    return G_SOURCE_CONTINUE;
  }
  static void onClose(GtkButton*, gpointer p) {
    auto* self = static_cast<ColorInfo*>(p);
    Trap(ProcInfo{"frm_ColorInfo", "but_Close_Click", true}, [&] { gtk_widget_destroy(self->window_); });
  }
  static void onDestroy(GtkWidget*, gpointer p) {
    auto* self = static_cast<ColorInfo*>(p);
    g_source_remove(self->timer_);
    delete self;
  }

  Ref<cls_DrawColor> colour_;
  GtkWidget* window_ = nullptr;
  GtkWidget* swatch_ = nullptr;
  GtkWidget* sample_ = nullptr;
  std::array<GtkWidget*, 3> variants_{};
  std::array<GtkWidget*, 8> values_{};
  guint timer_ = 0;
  uint32_t shown_ = 0;
};

}  // namespace

GtkWidget* colorInfo(cls_DrawColor& colour) {
  if (!ready()) return nullptr;
  return (new ColorInfo(Ref<cls_DrawColor>(&colour)))->window();
}

namespace {
// INFO opens the window from here on.
const bool kColorInfoRegistered = [] {
  ColorInfoWindow = [](cls_DrawColor& colour) { colorInfo(colour); };
  return true;
}();
}  // namespace

}  // namespace tessel::gtkview
