#include <tessel/core/mdl_Err.h>

#include <tessel/core/MessageBox.h>
#include <tessel/core/Text.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <new>

namespace tessel {
namespace mdl_Err {

thread_local bool TerminateRequested = false;

namespace {

// Set while the trap hands on a file error that an inner procedure's handler has already asked
// about and raised (the user answered Abort): the outer handlers raise it without asking again,
// so one failed file access is one dialog however deep the call that made it.
thread_local bool gFileErrorAnswered = false;

constexpr const char* kCrLf = "\r\n";

enum class ErrClass { Parameter, Object, ObjectCreation, Memory, Ignorable, File, Other };

ErrClass classify(int32_t n) {
  switch (n) {
    case 5: case 6: case 7: case 9: case 11: case 13: case 14: case 16: case 28: case 380: case 458:
      return ErrClass::Parameter;
    case 91: case 423: case 429:
      return ErrClass::Object;
    case 430: case 440:
      return ErrClass::ObjectCreation;
    case 480: case 31001:
      return ErrClass::Memory;
    case 360: case 364: case 365: case 400: case 402:
      return ErrClass::Ignorable;
    case 52: case 53: case 54: case 55: case 57: case 58: case 59: case 61: case 62: case 63: case 68:
    case 70: case 71: case 74: case 75: case 76: case 321: case 322:
      return ErrClass::File;
    default:
      return ErrClass::Other;
  }
}

}  // namespace

bool IsParameterError(int32_t number) noexcept { return classify(number) == ErrClass::Parameter; }

namespace {

std::string commandLine() {
  std::ifstream f("/proc/self/cmdline", std::ios::binary);
  std::string s((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
  for (auto& c : s)
    if (c == '\0') c = ' ';
  return s;
}

std::string locationLines(std::string_view app, std::string_view module, std::string_view procedure) {
  std::string s;
  s.append("Anwendung: ").append(app).append(kCrLf);
  s.append("Modul: ").append(module).append(kCrLf);
  s.append("Prozedur: ").append(procedure).append(kCrLf);
  return s;
}

// Asks through the message-box service, or, where nobody can answer (a service process, or
// no display and no answerer), writes the text to standard error and answers `headless`.
MsgResult ask(const MsgBoxRequest& r, bool service, MsgResult headless) {
  if (service || !canShowMessageBox()) {
    std::fprintf(stderr, "%s: %s\n", r.title.c_str(), r.prompt.c_str());
    return headless;
  }
  return MsgBox(r);
}

bool readServiceProcess() {
  const char* user = std::getenv("USERNAME");
  if (user) {
    std::string up = toUtf8(toUpperAscii(toUtf16(user)));
    if (up == "SYSTEM" || up == "LOCALSYSTEM") return true;
  }
  return commandLine().find("SERVER.SERVICE") != std::string::npos;
}

// -1 until read. Threads that race on the first read compute the same answer.
std::atomic<int> gServiceProcess{-1};

}  // namespace

bool IsServiceProcess() {
  int known = gServiceProcess.load(std::memory_order_relaxed);
  if (known < 0) {
    known = readServiceProcess() ? 1 : 0;
    gServiceProcess.store(known, std::memory_order_relaxed);
  }
  return known != 0;
}

void RecheckServiceProcess() noexcept { gServiceProcess.store(-1, std::memory_order_relaxed); }

std::string ErrSummary(int32_t Number, std::string_view Description, std::string_view Application,
                       std::string_view Module, std::string_view Procedure) {
  std::string s = "Fehler: #" + std::to_string(Number) + " - ";
  s.append(Description).append(" @ ").append(Application).append(".").append(Module).append(".").append(Procedure);
  return s;
}

ErrAction ErrHandler(int32_t& Number, std::string& Description, std::string_view Application,
                     std::string_view Module, std::string_view Procedure, bool AsObjectError, bool ShowDialog,
                     std::string_view Instruction) {
  // An object error folds back to its low part, so a number that already passed an inner
  // procedure's handler is classified by what it was.
  const int32_t n = Number & 0x7FFBFFFF;
  Number = n;
  const bool service = IsServiceProcess();

  if (TerminateRequested) TerminateNow();

  // The library's own number and text: "<text>n)".
  auto rewrite = [&](int32_t libraryNumber, const char* text) {
    Number = libraryNumber;
    Description = text + std::to_string(n) + ")";
  };

  ErrAction action = ErrRaise;
  switch (classify(n)) {
    case ErrClass::Parameter:
      rewrite(4001, "Ungültiger Parameter (");
      break;
    case ErrClass::Object:
      rewrite(4002, "Objekt-Fehler (");
      break;
    case ErrClass::ObjectCreation:
      rewrite(4003, "Objekt-Fehler (");
      break;
    case ErrClass::Memory:
      rewrite(4004, "Nicht genügend freier Arbeitsspeicher (");
      break;
    case ErrClass::Ignorable:
      action = ErrContinue;
      break;
    case ErrClass::File: {
      if (gFileErrorAnswered) {
        rewrite(4005, "Dateizugriff fehlgeschlagen (");
        break;
      }
      MsgBoxRequest r;
      r.prompt = "Es ist ein Fehler beim Zugriff auf eine Datei aufgetreten: " + Description + kCrLf + kCrLf +
                 locationLines(Application, Module, Procedure) + kCrLf + "Wie möchten Sie fortfahren?";
      r.title = "Datei-Fehler!";
      r.buttons = MsgButtons::AbortRetryIgnore;
      r.icon = MsgIcon::Critical;
      r.defaultButton = 2;
      // Shown whether the procedure allows dialogs or not; a service process aborts.
      switch (ask(r, service, MsgResult::Abort)) {
        case MsgResult::Retry:
          action = ErrRetry;
          break;
        case MsgResult::Ignore:
          action = ErrContinue;
          break;
        default:
          rewrite(4005, "Dateizugriff fehlgeschlagen (");
          action = ErrRaise;
      }
      break;
    }
    case ErrClass::Other:
      Description = "Unbehandelter Fehler #" + std::to_string(n) + ": " + Description;
      break;
  }

  if (ShowDialog && action == ErrRaise) {
    // Where no dialog can be shown the library behaves as in a service process. Asked only
    // here and for file errors: the first ask may start GTK.
    if (service || !canShowMessageBox()) {
      if (!service) std::fprintf(stderr, "Programmfehler! %s (%s.%s)\n", Description.c_str(),
                                 std::string(Module).c_str(), std::string(Procedure).c_str());
      action = ErrContinue;
    } else {
      MsgBoxRequest r;
      r.prompt = std::string("Es ist ein unerwarteter Programmfehler aufgetreten: ") + kCrLf + kCrLf + "Fehler: " +
                 Description + kCrLf + kCrLf + locationLines(Application, Module, Procedure);
      if (!Instruction.empty()) r.prompt.append("Anweisung: ").append(Instruction).append(kCrLf);
      r.prompt += "Fehlernummer: #" + std::to_string(Number) + kCrLf + kCrLf + "Wie möchten Sie fortfahren?";
      r.title = "Programmfehler!";
      r.buttons = MsgButtons::AbortRetryIgnore;
      r.icon = MsgIcon::Critical;
      r.defaultButton = 2;
      for (;;) {
        MsgResult answer = MsgBox(r);
        if (answer == MsgResult::Retry) { action = ErrRetry; break; }
        if (answer == MsgResult::Ignore) { action = ErrContinue; break; }
        MsgBoxRequest confirm;
        confirm.prompt =
            "Sind Sie sicher, daß Sie dieses Programm sofort beenden möchten? Dadurch gehen ungespeicherte "
            "Arbeiten eventuell verloren! Trotzdem beenden?";
        confirm.title = "ACHTUNG: Wirklich beenden?";
        confirm.buttons = MsgButtons::YesNo;
        confirm.icon = MsgIcon::Critical;
        if (MsgBox(confirm) == MsgResult::Yes) TerminateNow();
        // No: the same program-error dialog again.
      }
    }
  }

  // A log would record ErrSummary(Number, Description, …) here; this version writes none.
  if (AsObjectError) Number = static_cast<int32_t>(static_cast<uint32_t>(n) | 0x80040000u);
  return action;
}

}  // namespace mdl_Err

ErrAction HandleCurrentError(const ProcInfo& where, std::string_view instruction) {
  int32_t number;
  std::string description;
  bool raisedByTrap = false;
  try {
    throw;
  } catch (const Error& e) {
    number = e.number();
    description = e.description();
    raisedByTrap = !e.source().empty();
  } catch (const std::bad_alloc&) {
    number = rt::OutOfMemory;
    description = runtimeErrorText(number);
  } catch (const std::exception& e) {
    number = rt::InternalError;
    description = runtimeErrorText(number) + ": " + e.what();
  } catch (...) {
    number = rt::InternalError;
    description = runtimeErrorText(number);
  }
  ErrAction a;
  {
    struct Answered {
      explicit Answered(bool on) { mdl_Err::gFileErrorAnswered = on; }
      ~Answered() { mdl_Err::gFileErrorAnswered = false; }
    } answered(raisedByTrap);
    a = mdl_Err::ErrHandler(number, description, kApplicationName, where.module, where.procedure, true,
                            where.showDialog, instruction);
  }
  if (a == ErrRaise) {
    throw Error(number, std::move(description), std::string(where.module) + "." + std::string(where.procedure));
  }
  return a;
}

namespace detail {
bool conversionFailed(std::string_view module, std::string_view procedure) {
  return HandleCurrentError(ProcInfo{module, procedure}) == ErrRetry;
}
}  // namespace detail

}  // namespace tessel
