#!/usr/bin/env python3
"""Takes the guide's screenshots of the toolkit on screen: starts a display of its own (Xvfb),
runs the desktop program (build/bin/tessel-desktop), drives it with xdotool as a person would,
and saves what the screen shows into docs/pictures/.

    python3 scripts/screenshots.py [build-folder] [out-folder]      (make screenshots)
"""
import os
import subprocess
import sys
import time


def start_display():
    read, write = os.pipe()
    xvfb = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1024x768x24", "-nolisten", "tcp"],
                            pass_fds=(write,), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.close(write)
    number = b""
    while not number.endswith(b"\n"):
        chunk = os.read(read, 16)
        if not chunk:
            break
        number += chunk
    os.close(read)
    return xvfb, ":" + number.decode().strip()


def main(build="build", out="docs/pictures"):
    xvfb, display = start_display()
    env = dict(os.environ, DISPLAY=display, NO_AT_BRIDGE="1")
    os.environ.update(DISPLAY=display, NO_AT_BRIDGE="1")
    import gi  # after DISPLAY is set: GTK opens the display when it loads
    gi.require_version("Gdk", "3.0")
    from gi.repository import Gdk

    def shot(name, x, y, w, h):
        time.sleep(0.6)
        root = Gdk.get_default_root_window()
        Gdk.pixbuf_get_from_window(root, x, y, w, h).savev(os.path.join(out, name), "png", [], [])
        print("wrote", os.path.join(out, name))

    def xdo(*args):
        subprocess.run(["xdotool", *args], env=env, check=True)
        time.sleep(0.15)

    app = subprocess.Popen([os.path.join(build, "bin", "tessel-desktop")], env=env)
    try:
        time.sleep(2)
        # The window opens at the screen's top left: 760 x 480. The Viewer is dragged by its
        # title strip, which brings it to the front; its first button lights under the pointer.
        xdo("mousemove", "400", "100", "mousedown", "1")
        xdo("mousemove", "430", "130")
        xdo("mousemove", "450", "160", "mouseup", "1")
        xdo("mousemove", "320", "240")
        shot("host-desktop.png", 0, 0, 760, 480)
        xdo("mousemove", "500", "96", "click", "1")          # "steelblue" in Colours
        shot("host-colour-info.png", 0, 0, 346, 341)
    finally:
        app.terminate()
        app.wait()
        xvfb.terminate()
        xvfb.wait()


if __name__ == "__main__":
    main(*sys.argv[1:])
