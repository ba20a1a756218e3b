// A display of the tests' own: an Xvfb server started for the test program, real input through
// xdotool, the screen read back through GDK, and the GTK main loop run for a while.
#pragma once

#include <gtk/gtk.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <thread>
#include <unistd.h>
#include <sys/wait.h>

namespace tessel::screen {

// Runs GTK's main loop for `ms` milliseconds, or until `done` answers true.
template <class F>
bool pumpUntil(F&& done, int ms = 3000) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
  while (std::chrono::steady_clock::now() < end) {
    while (gtk_events_pending()) gtk_main_iteration_do(FALSE);
    if (done()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return done();
}
inline void pump(int ms) {
  pumpUntil([] { return false; }, ms);
}

// xdotool with its arguments; true when it succeeded.
inline bool xdotool(const std::string& args) { return std::system(("xdotool " + args + " >/dev/null 2>&1").c_str()) == 0; }

// The pixel at (x, y) of the screen as 0xRRGGBB.
inline uint32_t screenPixel(int x, int y) {
  GdkWindow* root = gdk_get_default_root_window();
  GdkPixbuf* shot = gdk_pixbuf_get_from_window(root, x, y, 1, 1);
  if (!shot) return 0xFFFFFFFFu;
  const guchar* p = gdk_pixbuf_get_pixels(shot);
  const uint32_t rgb = (uint32_t{p[0]} << 16) | (uint32_t{p[1]} << 8) | p[2];
  g_object_unref(shot);
  return rgb;
}

// Saves the screen's area as PNG, for a look when a test fails.
inline void saveScreen(const std::string& file, int x, int y, int w, int h) {
  if (GdkPixbuf* shot = gdk_pixbuf_get_from_window(gdk_get_default_root_window(), x, y, w, h)) {
    gdk_pixbuf_save(shot, file.c_str(), "png", nullptr, nullptr);
    g_object_unref(shot);
  }
}

// Xvfb on the first free display from :90, for the life of the object; DISPLAY points at it.
class VirtualDisplay {
 public:
  VirtualDisplay() {
    if (std::system("command -v Xvfb >/dev/null 2>&1 && command -v xdotool >/dev/null 2>&1") != 0) {
      why_ = "Xvfb or xdotool is not installed (make test installs both)";
      return;
    }
    // Xvfb picks a free display itself and writes its number to the pipe when it is ready, so
    // test programs running side by side each get one of their own.
    int ready[2];
    if (pipe(ready) != 0) {
      why_ = "no pipe for Xvfb";
      return;
    }
    pid_ = fork();
    if (pid_ == 0) {
      close(ready[0]);
      const std::string fd = std::to_string(ready[1]);
      execlp("Xvfb", "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", "1024x768x24", "-nolisten", "tcp", nullptr);
      _exit(127);
    }
    close(ready[1]);
    std::string number;
    char c = 0;
    while (read(ready[0], &c, 1) == 1 && c != '\n') number += c;
    close(ready[0]);
    if (!number.empty()) {
      setenv("DISPLAY", (":" + number).c_str(), 1);
      // No accessibility bus: there is none on this display, and GTK's try to reach it over
      // D-Bus leaves allocations behind for the life of the process.
      setenv("NO_AT_BRIDGE", "1", 1);
      return;
    }
    stop();
    why_ = "no display could be started";
  }
  ~VirtualDisplay() { stop(); }
  // Empty when the display is there; otherwise why not.
  const std::string& why() const { return why_; }

 private:
  void stop() {
    if (pid_ > 0) {
      kill(pid_, SIGTERM);
      waitpid(pid_, nullptr, 0);
    }
    pid_ = -1;
  }
  pid_t pid_ = -1;
  std::string why_;
};

}  // namespace tessel::screen
