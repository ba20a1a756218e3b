// The message-box service behind every dialog of the library. A host or a test installs an
// answerer; otherwise a GTK 3 dialog is shown when a display is available. Without either the
// library behaves as a service process does: no dialog, the text goes to standard error.
#pragma once

#include <functional>
#include <string>

namespace tessel {

enum class MsgButtons { OK, AbortRetryIgnore, YesNo };
enum class MsgIcon { None, Critical };
enum class MsgResult { OK = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7 };

struct MsgBoxRequest {
  std::string prompt;  // UTF-8
  std::string title;
  MsgButtons buttons = MsgButtons::OK;
  MsgIcon icon = MsgIcon::None;
  int defaultButton = 1;  // 1-based
};

using MessageBoxHandler = std::function<MsgResult(const MsgBoxRequest&)>;

// Installs an answerer for the whole process; an empty handler restores the built-in service.
void setMessageBoxHandler(MessageBoxHandler handler);

// Starts GTK on the first call, once for the process; False when no display can be opened. The
// dialogs and the on-screen host control both start it here.
bool startGtk();

// Whether a dialog can be put before somebody: an answerer is installed or a display is there.
bool canShowMessageBox();

// Shows the dialog and returns the button pressed. Without a way to show it, the text is
// written to standard error and the default button is the answer.
MsgResult MsgBox(const MsgBoxRequest& request);

// Automation's default title for message boxes without one: the component's name.
inline constexpr const char* kApplicationName = "Tessel";

std::string buttonName(MsgResult r);   // "OK", "Abort", …
MsgResult buttonFromName(std::string_view name);  // inverse; Cancel for an unknown name

// Ending the program at once. The default ends the process; a host or a test may install its
// own hook. Should the hook return, tessel::Terminated is thrown so that no further library
// code runs.
void setTerminateHandler(std::function<void()> handler);
[[noreturn]] void TerminateNow();

}  // namespace tessel
