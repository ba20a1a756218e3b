#!/usr/bin/env python3
"""The showcase, scripted: what apps/showcase.cpp does, through the tessel module.

Starts the toolkit, reports its state, then walks the geometry and the colours as a script sees
them (members by name, the factories' default members, events, the Python forms the type library
gives objects: repr, values, collections, copies), saves, loads and resizes an image, and draws a
small scene through a picture box's surface. The
report is printed and also written to <out>/showcase-python.txt, the image files next to it.

    PYTHONPATH=build/python python3 apps/showcase.py out
"""
import copy
import os
import sys

import tessel


def show_root(say):
    draw = tessel.DRAW
    say(f"Tessel root object: {type(draw).__name__}, ready: {'yes' if draw.READY() else 'no'}")
    draw.INIT()
    say(f"after INIT: ready {'yes' if draw.READY() else 'no'}")
    say(f'status 10 reads "{draw.ERRORINFO(tessel.enm_Draw_Status.FileNotFound)}"')
    say(f"late-bound READY: {tessel.invoke(draw, 'ready', 'method')}")


def show_geometry(say):
    draw = tessel.DRAW
    box = draw.RECT("10", 20, 100, 50)  # the factory's default member, AUTO
    counts = {"MOVED": 0, "RESIZE": 0}

    def counter(name):
        def count():
            counts[name] += 1
        return count

    # The box keeps its handlers; the connections are kept only to disconnect them afterwards.
    connections = [box.connect(name, counter(name)) for name in counts]

    say(f"geometry: box {box.INFO()}, {box.W:g} by {box.H:g}, centre ({box.XC:g}, {box.YC:g})")
    x, y, w, h = box
    say(f"geometry: as Python sees it {box!r}, values ({x:g}, {y:g}, {w:g}, {h:g})")
    corner = box.CORNER(tessel.ID_UIRectCorner_XRightYBottom)
    handle = box.CORNERRECT(tessel.ID_UIRectCorner_XRightYBottom, 8)
    say(f"geometry: bottom-right corner ({corner.X:g}, {corner.Y:g}), its 8-pixel handle {handle.INFO()}")

    other = draw.RECT(0, 0, 30, 30)
    box.MERGE(other)
    say(f"geometry: merged with {other.INFO()} -> {box.INFO()}")
    box.EXPAND(2)
    box.MOVECENTER(draw.POINT.POINT(200, 100))
    hit = "yes" if box.HITTESTXY(200, 100) else "no"
    say(f"geometry: expanded by 2 and centred on (200, 100) -> {box.INFO()}; hit (200, 100): {hit}")
    say(f"geometry: the box raised MOVED {counts['MOVED']} times and RESIZE {counts['RESIZE']} times")
    for c in connections:
        c.disconnect()
    twin = copy.copy(box)
    twin.MOVEBY(10, 0)
    say(f"geometry: copy.copy (CLONE) moved by 10 -> {twin.INFO()}; the box stays {box.INFO()}")

    try:
        box.MOVECENTER("somewhere")
    except TypeError as e:  # a type mismatch is a tessel.Error and a TypeError
        say(f"geometry: a bad argument raises {type(e).__name__} {e.number} from {e.source}: {e.description}")

    flags = tessel.cls_DrawFlags()
    flags.SETFLAG("width", box.W).SETFLAG("height", box.H)
    say(f"collection: {len(flags)} flags, keys {', '.join(flags)}, width {flags('width'):g}")


def show_palette(say):
    colors = tessel.DRAW.COLOR
    light, dark = "#F4F1EA", "#1E1E1E"
    say(f"Colour palette (variants by 40, contrast colours on {light} and {dark})")
    say(f"  {'colour':<10}{'r,g,b':<13}{'brighter':<10}{'darker':<10}{'brightness':<12}{'on light':<10}{'on dark':<10}contrast")
    for name in ("#2F6690", "#3A7CA5", "#D9DCD6", "orange", "rebeccapurple", "#808080"):
        c = colors(name)
        r, g, b, _ = c  # a colour iterates as R, G, B, A
        say(f"  {c.HTML():<10}{f'{r},{g},{b}':<13}{c.BRIGHTER(40).HTML():<10}{c.DARKER(40).HTML():<10}{c.BRIGHTNESS():<12}"
            f"{c.CONTRASTCOLOR(light).HTML():<10}{c.CONTRASTCOLOR(dark).HTML():<10}{c.CONTRAST().HTML()}")


def show_images(say, out):
    draw = tessel.DRAW
    checker = draw.Image.CREATE(96, 64, "#F4F1EA")
    blue = draw.COLOR("#3A7CA5").ATOM
    for y in range(64):
        for x in range(96):
            if (x // 4 + y // 4) % 2:
                checker.PIXEL[x, y] = blue
    png = os.path.join(out, "images-python.png")
    checker.SAVE(png)
    image = draw.Image.LOAD(png)
    kept = image.CLONE().RESIZE(40, 40, True)
    stretched = image.CLONE().RESIZE(40, 40)
    say(f"images: {image.WIDTH:g} x {image.HEIGHT:g} loaded from {os.path.basename(png)}; RESIZE(40, 40, True) "
        f"-> {kept.WIDTH:g} x {kept.HEIGHT:g}, RESIZE(40, 40) -> {stretched.WIDTH:g} x {stretched.HEIGHT:g}")
    for quality in (90, 15):
        jpeg = os.path.join(out, f"images-python-q{quality}.jpg")
        image.SAVE(jpeg, "image/jpeg", quality)
        back = draw.Image.LOAD(jpeg)
        say(f"images: JPEG at quality {quality}: {os.path.getsize(jpeg)} bytes, "
            f"PIXEL[5, 1] reads {back.PIXEL[5, 1] & 0xFFFFFFFF:08X} (the PNG {image.PIXEL[5, 1] & 0xFFFFFFFF:08X})")


def show_surface(say, out):
    """A small scene drawn through a picture box's surface, whose state lasts between calls."""
    draw = tessel.DRAW
    box = tessel.PictureBox()
    box.ScaleMode = 3
    box.Move(0, 0, 360, 200)
    box.BackColor = "#F4F1EA"
    box.Cls()
    g = tessel.cls_DrawGraphics()
    g.CONNECT(box)
    g.SMOOTHING = tessel.ID_Draw_SmoothingAntiAlias
    area = draw.RECT(20, 15, 140, 70)
    g.RECTANGLE(area, draw.BRUSH.GRADIENT(area, "#3A7CA5", "#D9DCD6", 90), "#16425B,2px")
    g.TEXT("Tessel", draw.RECT(170, 20, 170, 90), draw.FONT("Arial,40,bold"), "#F4A259",
           draw.PEN("#16425B,3px"))
    label = g.TEXTMEASURE("Tessel", draw.RECT(170, 20, 170, 90), draw.FONT("Arial,40,bold"))
    g.OFFSET(draw.POINT(90, 143))  # the origin moves to the middle of the discs
    for angle in range(0, 360, 60):
        g.PIE(draw.RECT(-40, -40, 80, 80), angle, 50, "#BC4B51" if angle % 120 else "#2F6690", "none")
    middle = g.REPROJECT(draw.POINT(0, 0))
    g.RESETPROJECTION()
    g.IMAGEWARP(draw.Image.CREATE(40, 40, "#3A7CA5"), draw.POINT(200, 130), draw.POINT(300, 140),
                draw.POINT(190, 185), 0.6)
    png = os.path.join(out, "surface-python.png")
    box.Image.SAVE(png)
    say(f"surface: TEXTMEASURE of the title {label.W:g} x {label.H:g}; the projected origin lands at "
        f"({middle.X:g}, {middle.Y:g}); drew {os.path.basename(png)}")


def main(argv):
    out = argv[1] if len(argv) > 1 else "."
    lines = []

    def say(text):
        print(text)
        lines.append(text)

    show_root(say)
    show_geometry(say)
    show_palette(say)
    os.makedirs(out, exist_ok=True)
    show_images(say, out)
    show_surface(say, out)
    tessel.DRAW.DEINIT()

    report = os.path.join(out, "showcase-python.txt")
    with open(report, "w", encoding="utf-8") as f:
        f.write("\n".join(lines) + "\n")
    print(f"wrote {report}")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
