#include <tessel/root/cls_DrawTool.h>

#include <tessel/core/Checked.h>
#include <tessel/core/MessageBox.h>
#include <tessel/core/Root.h>

#include <atomic>
#include <limits>
#include <mutex>

namespace tessel {

namespace {

std::atomic<cls_DrawTool::StartupFn> gStartup{&mdl_GDIPlus::GdiplusStartup};

// Every thread's root starts the platform, and libgdiplus keeps its start-up state in plain
// globals: one start-up at a time.
std::mutex gStartupLock;

// What lower layers reach through the root seams (core/Root.h): the factories they use, the
// image cache, ERRORSET for the descriptions they read, and the count of platform users.
template <class F, Ref<F> (cls_DrawTool::*Read)() const>
void fillSeam() {
  RootFactory<F>::get = [] { return (mdl_Global::DRAW().get()->*Read)(); };
}

[[maybe_unused]] const bool seamsFilled = [] {
  fillSeam<cls_DrawToolColor, &cls_DrawTool::COLOR>();
  fillSeam<cls_DrawToolImage, &cls_DrawTool::Image>();
  fillSeam<cls_DrawToolBrush, &cls_DrawTool::BRUSH>();
  fillSeam<cls_DrawToolPen, &cls_DrawTool::PEN>();
  fillSeam<cls_DrawToolRect, &cls_DrawTool::RECT>();
  fillSeam<cls_DrawToolPoint, &cls_DrawTool::POINT>();
  fillSeam<cls_DrawToolFont, &cls_DrawTool::FONT>();
  fillSeam<cls_DrawToolTextFormat, &cls_DrawTool::TEXTFORMAT>();
  fillSeam<cls_DrawResources, &cls_DrawTool::RESOURCES>();
  fillSeam<cls_DrawToolImageAttributes, &cls_DrawTool::imageAttributes>();
  RootErrorSet = [](const std::u16string& message) { mdl_Global::DRAW()->ERRORSET(message); };
  RootInit = [] { return mdl_Global::DRAW()->INIT(); };
  RootDeinit = [] { mdl_Global::DRAW()->DEINIT(); };
  RootReady = [] { return mdl_Global::DRAW()->READY(); };
  return true;
}();

}  // namespace

void cls_DrawTool::setStartupFunction(StartupFn fn) {
  gStartup.store(fn ? fn : &mdl_GDIPlus::GdiplusStartup, std::memory_order_relaxed);
}

bool cls_DrawTool::READY(Call) const { return ready_; }

// A private procedure with a trap of its own, as the object model has it.
enm_Draw_Status cls_DrawTool::StartUpGDIPlus(uint32_t version) {
  return trap("StartUpGDIPlus", [&] {
    mdl_GDIPlus::GdiplusStartupInput input;
    input.GdiplusVersion = version;
    enm_Draw_Status status;
    {
      std::lock_guard lock(gStartupLock);
      status = gStartup.load(std::memory_order_relaxed)(&token_, &input, nullptr);
    }
    ready_ = true;  // whatever the outcome
    return status;
  });
}

bool cls_DrawTool::INIT(Call) {
  bool result = false;
  if (ready_) {
    // No early return: a second INIT starts the platform again and counts twice (intended).
    count_ = checkedIncrement(count_);
    result = true;
  }
  if (Execute(StartUpGDIPlus(1)) != enm_Draw_Status::OK) {
    result = false;
    MsgBoxRequest r;
    r.prompt = "Tessel konnte nicht initialisiert werden!";
    r.title = kApplicationName;
    MsgBox(r);
  }
  count_ = checkedIncrement(count_);
  ready_ = true;
  result = true;  // also after a failed start-up (intended)
  return result;
}

void cls_DrawTool::DEINIT(Call) {
  if (!ready_) return;
  if (--count_ < 1) {
    count_ = 0;
    token_ = 0;
    ready_ = false;
  }
}

Ref<cls_DrawPath> cls_DrawTool::PATH(Call) const { return make<cls_DrawPath>(); }

enm_Draw_Status cls_DrawTool::Execute(Call, enm_Draw_Status lReturn) const { return mdl_Global::Execute(lReturn); }

std::u16string cls_DrawTool::ERRORINFO(Call, enm_Draw_Status lError) const {
  switch (lError) {
    case enm_Draw_Status::GenericError: return u"Generic Error.";
    case enm_Draw_Status::InvalidParameter: return u"Invalid Parameter.";
    case enm_Draw_Status::OutOfMemory: return u"Out Of Memory.";
    case enm_Draw_Status::ObjectBusy: return u"Object Busy.";
    case enm_Draw_Status::InsufficientBuffer: return u"Insufficient Buffer.";
    case enm_Draw_Status::NotImplemented: return u"Not Implemented.";
    case enm_Draw_Status::Win32Error: return u"Win32 Error.";
    case enm_Draw_Status::WrongState: return u"Wrong State.";
    case enm_Draw_Status::ABORTED: return u"Aborted.";
    case enm_Draw_Status::FileNotFound: return u"File Not Found.";
    case enm_Draw_Status::ValueOverflow: return u"Value Overflow.";
    case enm_Draw_Status::AccessDenied: return u"Access Denied.";
    case enm_Draw_Status::UnknownImageFormat: return u"Unknown Image Format.";
    case enm_Draw_Status::FontFamilyNotFound: return u"FontFamily Not Found.";
    case enm_Draw_Status::FontStyleNotFound: return u"FontStyle Not Found.";
    case enm_Draw_Status::NotTrueTypeFont: return u"Not TrueType Font.";
    case enm_Draw_Status::UnsupportedGdiplusVersion: return u"Unsupported Gdiplus Version.";
    case enm_Draw_Status::GdiplusNotInitialized: return u"Gdiplus Not Initialized.";
    case enm_Draw_Status::PropertyNotFound: return u"Property Not Found.";
    case enm_Draw_Status::PropertyNotSupported: return u"Property Not Supported.";
    default: return u"Unknown GDI+ Error.";  // OK included (intended)
  }
}

namespace {
thread_local std::u16string tLastErrorMessage;
}

// The message changes nothing (as the object model has it); it is only kept for a host or a test
// to read.
void cls_DrawTool::ERRORSET(Call, const std::u16string& pErrorMsg) const {
  tLastErrorMessage = pErrorMsg;
  if (mdl_Err::TerminateRequested) TerminateNow();
}

const std::u16string& cls_DrawTool::lastErrorMessage() noexcept { return tLastErrorMessage; }

}  // namespace tessel
