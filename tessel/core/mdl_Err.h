// The uniform error path. Every procedure of the library runs inside a trap; a run-time error
// goes to ErrHandler, which classifies it, rewrites number and text, may show a German dialog,
// and answers retry (run the failing step again), continue (go on with the next step) or raise
// (to the caller, with the source "module.procedure").
//
//   float cls_DrawRect::X() const { return trap("X.GET", [&] { return x_; }); }
//
//   Procedure p{"cls_DrawTool", "INIT"};          // a procedure of several steps
//   p.step([&] { ... });                           // continue resumes with the next step
//   p.step("GdiplusStartup", [&] { ... });         // named steps appear in the dialog
#pragma once

#include <tessel/core/Error.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace tessel {

enum ErrAction : int32_t { ErrRetry = 1, ErrContinue = 2, ErrRaise = 3 };

namespace mdl_Err {

// Nothing in the library sets it; while it is True, ErrHandler and ERRORSET end the program.
extern thread_local bool TerminateRequested;

// True when no desktop user can answer a dialog: USERNAME is SYSTEM or LOCALSYSTEM (any case),
// or the command line contains "SERVER.SERVICE". Read once per process: neither changes while
// it runs.
bool IsServiceProcess();

// Whether the handler rewrites a run-time error number as a parameter error ("Ungültiger
// Parameter (n)"); hosts map these onto their own argument errors.
bool IsParameterError(int32_t number) noexcept;

// Test seam: the next IsServiceProcess reads USERNAME and the command line again.
void RecheckServiceProcess() noexcept;

// The one-line summary of an error for a log, "Fehler: #n - text @ Tessel.module.procedure".
// Built only when asked for: this version writes no log.
std::string ErrSummary(int32_t Number, std::string_view Description, std::string_view Application,
                       std::string_view Module, std::string_view Procedure);

ErrAction ErrHandler(int32_t& Number, std::string& Description, std::string_view Application,
                     std::string_view Module, std::string_view Procedure, bool AsObjectError, bool ShowDialog,
                     std::string_view Instruction);

}  // namespace mdl_Err

struct ProcInfo {
  std::string_view module;
  std::string_view procedure;  // "MOVECENTER", "X.GET", "X.LET"
  bool showDialog = false;     // only the procedures that the event loop calls
};

// Hands the exception being handled to ErrHandler under `where` and returns its answer; a raise
// throws the rewritten Error. Must be called from inside a catch block.
ErrAction HandleCurrentError(const ProcInfo& where, std::string_view instruction = {});

// A procedure of one step: the body's result, its retry on ErrRetry, a default-constructed
// result on ErrContinue.
template <class F>
auto Trap(const ProcInfo& where, F&& body) -> std::invoke_result_t<F&> {
  using R = std::invoke_result_t<F&>;
  for (;;) {
    try {
      return body();
    } catch (const Terminated&) {
      throw;
    } catch (...) {
      if (HandleCurrentError(where) == ErrRetry) continue;
      if constexpr (std::is_void_v<R>) return;
      else return R{};
    }
  }
}

// A statement whose errors are ignored: a run-time error ends the statement and nothing else,
// without the handler, a dialog or a report. Answers whether the statement ran through.
template <class F>
bool Ignoring(F&& body) {
  try {
    body();
    return true;
  } catch (const Terminated&) {
    throw;
  } catch (const Error&) {
    return false;
  }
}

// A procedure of several steps, for behaviour that continues statement by statement.
class Procedure {
 public:
  explicit Procedure(ProcInfo where) : where_(where) {}
  template <class F>
  void step(F&& body) {
    step({}, std::forward<F>(body));
  }
  template <class F>
  void step(std::string_view instruction, F&& body) {
    for (;;) {
      try {
        body();
        return;
      } catch (const Terminated&) {
        throw;
      } catch (...) {
        if (HandleCurrentError(where_, instruction) != ErrRetry) return;
      }
    }
  }

 private:
  ProcInfo where_;
};

}  // namespace tessel
