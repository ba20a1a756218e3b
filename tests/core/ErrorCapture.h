// Test seams: an answerer for the message-box service that records every dialog, and a
// terminate hook that records instead of ending the process.
#pragma once

#include <tessel/core/MessageBox.h>
#include <tessel/core/mdl_Err.h>

#include <cstdlib>
#include <deque>
#include <string>
#include <vector>

namespace tessel {

class ErrorCapture {
 public:
  ErrorCapture() {
    setMessageBoxHandler([this](const MsgBoxRequest& r) {
      shown.push_back(r);
      if (answers.empty()) return r.buttons == MsgButtons::OK ? MsgResult::OK : MsgResult::Ignore;
      MsgResult a = answers.front();
      answers.pop_front();
      return a;
    });
    setTerminateHandler([this] { ++terminated; });
  }
  ~ErrorCapture() {
    setMessageBoxHandler(nullptr);
    setTerminateHandler(nullptr);
    mdl_Err::TerminateRequested = false;
  }

  std::vector<MsgBoxRequest> shown;
  std::deque<MsgResult> answers;  // given in turn; Ignore (or OK) when they run out
  int terminated = 0;
};

// Sets an environment variable for the lifetime of the object.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old, had_ = true;
    if (value) setenv(name, value, 1);
    else unsetenv(name);
  }
  ~ScopedEnv() {
    if (had_) setenv(name_.c_str(), old_.c_str(), 1);
    else unsetenv(name_.c_str());
  }

 private:
  std::string name_, old_;
  bool had_ = false;
};

// USERNAME for the lifetime of the object, with the service-process answer read again on entry
// and on exit (it is otherwise read once per process).
class ScopedUserName {
 public:
  explicit ScopedUserName(const char* value) : env_("USERNAME", value) { mdl_Err::RecheckServiceProcess(); }
  ~ScopedUserName() { mdl_Err::RecheckServiceProcess(); }  // read again lazily, after env_ is restored

 private:
  ScopedEnv env_;
};

}  // namespace tessel
