#!/usr/bin/env python3
"""The cost of the late-bound path from Python.

Each case runs the same member two ways: through the type library (tessel, no per-class
binding code) and through a hand-written pybind11 binding of that member (_tessel_bench_direct,
built next to the package as a measurement peer). The ratio is what counts; the target is that
the type library adds at most 20% over the hand-written binding. A last line compares a scripted
get with the same get made from C++.

Run with PYTHONPATH=<build>/python (make bench does).
"""
import os
import sys
import tempfile
import timeit

import tessel
import _tessel_bench_direct as direct

TARGET = 1.20
SCENE_TARGET = 1.30


def per_call(stmt, env, number):
    """Best time per execution in ns, the timing loop's own cost removed."""
    timer = timeit.Timer(stmt, globals=env)
    empty = timeit.Timer("pass", globals=env)
    best = min(timer.repeat(repeat=7, number=number)) / number
    loop = min(empty.repeat(repeat=7, number=number)) / number
    return best * 1e9, (best - loop) * 1e9


def scene_s1(env):
    """S1 of bench/bench_surface.cpp scripted: 20,000 rectangles and ellipses with object
    arguments on a picture box's surface, against the raw flat API doing the same in C++."""
    draw = tessel.DRAW
    draw.INIT()
    box = tessel.PictureBox()
    box.ScaleMode = 3
    box.Move(0, 0, 800, 600)
    g = tessel.cls_DrawGraphics()
    g.CONNECT(box)
    rects = [draw.RECT((i * 37) % 780, (i * 53) % 580, 20, 20) for i in range(20_000)]
    brush = draw.BRUSH.SOLID(draw.COLOR("#3A7CA5"))
    pen = draw.PEN.SOLID(draw.COLOR("#16425B"), 1)
    env.update(g=g, rects=rects, brush=brush, pen=pen)
    stmt = "for r in rects:\n    g.RECTANGLE(r, brush, pen)\n    g.ELLIPSE(r, brush, pen)"
    scripted = min(timeit.Timer(stmt, globals=env).repeat(repeat=5, number=1)) * 1e9
    raw = direct.raw_shapes_ns(5)
    ratio = scripted / raw
    verdict = "meets" if ratio <= SCENE_TARGET else "MISSES"
    print(f"  S1 scripted (20,000 rectangles and ellipses, object arguments): Python {scripted / 1e6:.1f}ms, "
          f"raw flat API {raw / 1e6:.1f}ms; {ratio:.2f}x ({verdict} the {SCENE_TARGET:.2f}x target)")
    return ratio


def main():
    env = {
        "tp": tessel.cls_DrawPoint(), "dp": direct.point(),
        "tr": tessel.cls_DrawRect(), "dr": direct.rect(),
        "tt": tessel.DRAW, "dt": direct.root(),
    }
    cases = [
        # name, scripted statement, hand-written statement
        ("get Double property (cls_DrawPoint.X)", "tp.X", "dp.X"),
        ("get Single property (cls_DrawRect.X)", "tr.X", "dr.X"),
        ("let Double property (cls_DrawPoint.X)", "tp.X = 1.5", "dp.X = 1.5"),
        ("method, no arguments (cls_DrawTool.READY)", "tt.READY()", "dt.READY()"),
        ("method, 4 arguments (cls_DrawRect.MOVE)", "tr.MOVE(1, 2, 3, 4)", "dr.MOVE(1, 2, 3, 4)"),
    ]
    number = 200_000
    print("Python late-bound calls: type library vs hand-written pybind11 binding")
    print(f"  {'case':<44} {'tessel':>10} {'direct':>10} {'ratio':>7} {'net ratio':>10}")
    worst_get = 0.0
    for name, scripted, handwritten in cases:
        t_raw, t_net = per_call(scripted, env, number)
        d_raw, d_net = per_call(handwritten, env, number)
        ratio, net = t_raw / d_raw, t_net / d_net
        if name.startswith("get"):
            worst_get = max(worst_get, ratio)
        print(f"  {name:<44} {t_raw:8.1f}ns {d_raw:8.1f}ns {ratio:6.2f}x {net:9.2f}x")

    cpp = direct.cpp_get_ns(2_000_000)
    cpp_invoke = direct.cpp_invoke_ns(2_000_000)
    scripted, _ = per_call("tp.X", env, number)
    tt = env["tt"]
    print(f"  C++ direct get {cpp:.1f}ns, C++ Invoke by name {cpp_invoke:.1f}ns; "
          f"a scripted get costs {scripted / cpp_invoke:.1f}x the C++ Invoke, {scripted / cpp:.0f}x the direct call")
    tt.INIT()
    brush, _ = per_call('tt.BRUSH.AUTO("#FF8000")', env, 20_000)
    typed = direct.cpp_brush_auto_ns(200_000)
    invoked = direct.cpp_brush_auto_invoke_ns(200_000)
    print(f"  DRAW.BRUSH.AUTO(\"#FF8000\"): Python {brush:.0f}ns, C++ typed {typed:.0f}ns, "
          f"C++ Invoke by name {invoked:.0f}ns; Python / C++ typed = {brush / typed:.2f}x")
    with tempfile.TemporaryDirectory() as folder:
        env["photo"], env["out"] = os.path.join(folder, "photo.png"), os.path.join(folder, "out.png")
        direct.photo_png(env["photo"])
        trip, _ = per_call("tt.Image.LOAD(photo).RESIZE(640, 480).SAVE(out)", env, 3)
        typed = direct.cpp_image_round_trip_ns(env["photo"], env["out"], 3)
    print(f"  Image LOAD, RESIZE(640, 480), SAVE of a 1024 x 768 PNG: Python {trip / 1e6:.1f}ms, "
          f"C++ typed {typed / 1e6:.1f}ms; Python / C++ typed = {trip / typed:.2f}x")
    shapes_ratio = scene_s1(env)
    verdict = "meets" if worst_get <= TARGET else "MISSES"
    print(f"  property get: type library / hand-written = {worst_get:.2f}x ({verdict} the {TARGET:.2f}x target)")
    return 0


if __name__ == "__main__":
    sys.exit(main())
