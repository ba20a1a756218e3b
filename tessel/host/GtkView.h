// On screen: the GTK widget that shows a picture box's bitmap and turns real input into the box's
// events, and the same for a host control, whose size follows the widget's allocation.
//
// The widget holds the box (and the control) while it lives; the box asks it for repaints
// through its view. Input arrives as the host gives it: Button 1 left, 2 right, 4 middle; Shift 1
// Shift, 2 Ctrl, 4 Alt; X and Y in the box's scale units; KeyCode the host's virtual-key code,
// KeyAscii the character typed. Text and file lists dropped on the widget arrive as a DataObject.
//
// GTK runs on one thread, the one that started it; everything here belongs to that thread.
#pragma once

#include <tessel/color/cls_DrawColor.h>
#include <tessel/host/PictureBox.h>
#include <tessel/host/ctl_PictureBox.h>

typedef struct _GtkWidget GtkWidget;

namespace tessel::gtkview {

// Starts GTK on the first call; False without a display it can open.
bool ready();

// The box's widget, made on the first call and the same one after; null without a display.
// Its allocation sizes the box (Move), which raises Resize.
GtkWidget* widgetOf(PictureBox& box);

// The control's widget: its inner box's widget, whose allocation sizes the control.
GtkWidget* widgetOf(ctl_PictureBox& control);

// Opens the colour information window (what a colour's INFO does) and answers it; null without a
// display. It holds the colour, follows its changes and goes when closed.
GtkWidget* colorInfo(cls_DrawColor& colour);

// The host's virtual-key code of a GDK key value; 0 for a key the host has no code for.
int16_t virtualKey(unsigned keyval);

}  // namespace tessel::gtkview
