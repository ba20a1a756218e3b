#include <tessel/core/MessageBox.h>

#include <tessel/core/Error.h>

#include <gtk/gtk.h>

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <unistd.h>

namespace tessel {

namespace {

// The seams are process-wide and may be replaced while other threads ask through them: a call
// copies the handler under the lock and runs the copy outside it. The handlers themselves are
// not serialized (an answerer may wait for a lock that the thread replacing it holds, such as
// Python's), so a host's answerer must expect calls from any thread.
std::mutex gHandlerLock;
// GTK is not thread-safe: one built-in dialog at a time, whichever thread asks. The thread that
// shows one may show another from inside it (an error in something its main loop runs meanwhile),
// so the lock is recursive.
std::recursive_mutex gDialogLock;
MessageBoxHandler& handlerSlot() {
  static MessageBoxHandler h;
  return h;
}
std::function<void()>& terminateSlot() {
  static std::function<void()> h;
  return h;
}

bool haveDisplay() {
  const char* x = std::getenv("DISPLAY");
  const char* w = std::getenv("WAYLAND_DISPLAY");
  return (x && *x) || (w && *w);
}


struct ButtonSpec {
  const char* label;
  MsgResult result;
};

MsgResult gtkMessageBox(const MsgBoxRequest& r) {
  static const ButtonSpec ok[] = {{"OK", MsgResult::OK}};
  static const ButtonSpec ari[] = {
      {"_Abbrechen", MsgResult::Abort}, {"_Wiederholen", MsgResult::Retry}, {"_Ignorieren", MsgResult::Ignore}};
  static const ButtonSpec yn[] = {{"_Ja", MsgResult::Yes}, {"_Nein", MsgResult::No}};
  const ButtonSpec* specs = ok;
  int count = 1;
  if (r.buttons == MsgButtons::AbortRetryIgnore) { specs = ari; count = 3; }
  if (r.buttons == MsgButtons::YesNo) { specs = yn; count = 2; }

  GtkWidget* dlg = gtk_message_dialog_new(nullptr, GTK_DIALOG_MODAL,
                                          r.icon == MsgIcon::Critical ? GTK_MESSAGE_ERROR : GTK_MESSAGE_OTHER,
                                          GTK_BUTTONS_NONE, "%s", r.prompt.c_str());
  gtk_window_set_title(GTK_WINDOW(dlg), r.title.empty() ? kApplicationName : r.title.c_str());
  for (int i = 0; i < count; ++i)
    gtk_dialog_add_button(GTK_DIALOG(dlg), specs[i].label, static_cast<int>(specs[i].result));
  int def = (r.defaultButton >= 1 && r.defaultButton <= count) ? r.defaultButton - 1 : 0;
  gtk_dialog_set_default_response(GTK_DIALOG(dlg), static_cast<int>(specs[def].result));
  gint response = gtk_dialog_run(GTK_DIALOG(dlg));
  gtk_widget_destroy(dlg);
  while (gtk_events_pending()) gtk_main_iteration();
  for (int i = 0; i < count; ++i)
    if (response == static_cast<int>(specs[i].result)) return specs[i].result;
  // Closed by the window manager: the dialog's cancel answer.
  if (r.buttons == MsgButtons::AbortRetryIgnore) return MsgResult::Abort;
  if (r.buttons == MsgButtons::YesNo) return MsgResult::No;
  return MsgResult::OK;
}

MsgResult defaultAnswer(const MsgBoxRequest& r) {
  switch (r.buttons) {
    case MsgButtons::AbortRetryIgnore: {
      static const MsgResult a[] = {MsgResult::Abort, MsgResult::Retry, MsgResult::Ignore};
      return a[(r.defaultButton >= 1 && r.defaultButton <= 3) ? r.defaultButton - 1 : 0];
    }
    case MsgButtons::YesNo:
      return r.defaultButton == 2 ? MsgResult::No : MsgResult::Yes;
    default:
      return MsgResult::OK;
  }
}

}  // namespace

void setMessageBoxHandler(MessageBoxHandler handler) {
  std::lock_guard lock(gHandlerLock);
  handlerSlot() = std::move(handler);
}

// Once, on first need; a display that cannot be opened means no dialogs and no windows.
bool startGtk() {
  static const bool ok = haveDisplay() && gtk_init_check(nullptr, nullptr);
  return ok;
}

bool canShowMessageBox() {
  {
    std::lock_guard lock(gHandlerLock);
    if (handlerSlot()) return true;
  }
  return startGtk();
}

MsgResult MsgBox(const MsgBoxRequest& request) {
  MessageBoxHandler h;
  {
    std::lock_guard lock(gHandlerLock);
    h = handlerSlot();
  }
  if (h) return h(request);
  if (startGtk()) {
    std::lock_guard lock(gDialogLock);
    return gtkMessageBox(request);
  }
  std::fprintf(stderr, "%s: %s\n", request.title.empty() ? kApplicationName : request.title.c_str(),
               request.prompt.c_str());
  return defaultAnswer(request);
}

std::string buttonName(MsgResult r) {
  switch (r) {
    case MsgResult::OK: return "OK";
    case MsgResult::Cancel: return "Cancel";
    case MsgResult::Abort: return "Abort";
    case MsgResult::Retry: return "Retry";
    case MsgResult::Ignore: return "Ignore";
    case MsgResult::Yes: return "Yes";
    case MsgResult::No: return "No";
  }
  return "Cancel";
}

MsgResult buttonFromName(std::string_view name) {
  for (auto r : {MsgResult::OK, MsgResult::Abort, MsgResult::Retry, MsgResult::Ignore, MsgResult::Yes,
                 MsgResult::No})
    if (buttonName(r) == name) return r;
  return MsgResult::Cancel;
}

void setTerminateHandler(std::function<void()> handler) {
  std::lock_guard lock(gHandlerLock);
  terminateSlot() = std::move(handler);
}

void TerminateNow() {
  std::function<void()> h;
  {
    std::lock_guard lock(gHandlerLock);
    h = terminateSlot();
  }
  if (!h) {
    std::fflush(nullptr);
    _exit(1);
  }
  h();
  throw Terminated{};
}

}  // namespace tessel
