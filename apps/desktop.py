#!/usr/bin/env python3
"""The showcase as a desktop program, scripted: a window of the toolkit's own (HostForm) with a
desktop of windows and buttons on its host control. Buttons light under the pointer and press,
windows take the focus, come to the front and are dragged by their title strips, and the colour
buttons open a colour's information window.

    PYTHONPATH=build/python python3 apps/desktop.py       (needs a display)
"""
import sys

import tessel

K = tessel


def node(sort, text, x, y, w, h):
    n = tessel.cls_DrawControl()
    n.SORT, n.TEXT = sort, text
    n.BOX.MOVE(x, y, w, h)
    return n


def build_desk(width, height):
    desk = node(K.ID_UIControl_Desktop, "", 0, 0, width, height)
    notes = desk.CHILDADD(node(K.ID_UIControl_Window, "Notes", 30, 30, 300, 200))
    notes.TEXTALIGN = K.ID_TextAlign_LeftMiddle
    for i, caption in enumerate(["New", "Save", "Print", "Share"]):
        notes.CHILDADD(node(K.ID_UIControl_Button, caption, 14 + (i % 2) * 140, 14 + (i // 2) * 44, 128, 34))
    colours = desk.CHILDADD(node(K.ID_UIControl_Window, "Colours", 300, 140, 280, 170))
    colours.TEXTALIGN = K.ID_TextAlign_LeftMiddle
    for i, name in enumerate(["steelblue", "tomato", "gold", "seagreen"]):
        b = colours.CHILDADD(node(K.ID_UIControl_Button, name, 10 + (i % 2) * 132, 12 + (i // 2) * 44, 122, 34))
        b.ICON = tessel.DRAW.Image.CREATE(16, 16, name)
        b.ICONSIZE = 16
        b.TEXTALIGN = K.ID_TextAlign_LeftMiddle
        # A click: the release over the button that took the press.
        armed = [False]

        def on_mouse(event, button, shift, point, b=b, name=name, armed=armed):
            if event == K.ID_UIMouseEvent_Down:
                armed[0] = True
            elif event == K.ID_UIMouseEvent_Up:
                if armed[0] and b.HITTEST(point):
                    tessel.DRAW.COLOR(name).INFO()
                armed[0] = False

        b.connect("MOUSE", on_mouse)
    return desk


def main():
    tessel.DRAW.INIT()
    form = tessel.HostForm()
    if not form.CANSHOW:
        print("desktop.py needs a display; `make demo` writes the pictures without one.", file=sys.stderr)
        return 2
    form.Caption = "Tessel from Python"
    form.Move(80, 80, 640, 400)
    view = form.CONTENT
    desk = build_desk(640, 400)
    view.Control = desk

    # The form draws the tree after every pointer event and change of size (AUTORENDER); the
    # script keeps the desktop as large as the window and lets the tree drag its windows.
    def resized():
        desk.BOX.MOVE(0, 0, view.ScaleWidth, view.ScaleHeight)

    def moved(button, shift, x, y):
        if button.value == 1:
            button.value = 0  # a held move goes on as a plain move

    view.connect("RESIZE", resized)
    view.connect("MouseMove", moved)
    form.Show()
    form.RUN()
    return 0


if __name__ == "__main__":
    sys.exit(main())
