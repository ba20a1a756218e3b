#include <tessel/core/cls_DrawTool.h>

#include <tessel/core/MessageBox.h>
#include <tessel/core/mdl_Global.h>

#include <limits>

namespace tessel {

namespace {

cls_DrawTool::StartupFn gStartup = &mdl_GDIPlus::GdiplusStartup;

int32_t checkedIncrement(int32_t v) {
  if (v == std::numeric_limits<int32_t>::max()) raise(rt::Overflow);
  return v + 1;
}

}  // namespace

void cls_DrawTool::setStartupFunction(StartupFn fn) { gStartup = fn ? fn : &mdl_GDIPlus::GdiplusStartup; }

Ref<cls_DrawToolColor> cls_DrawTool::COLOR() {
  return trap("COLOR.GET", [&] { return hFactory(color_); });
}

void cls_DrawTool::COLOR(Ref<cls_DrawToolColor> v) {
  trap("COLOR.SET", [&] { color_ = std::move(v); });
}

Ref<cls_DrawToolRect> cls_DrawTool::RECT() {
  return trap("RECT.GET", [&] { return hFactory(rect_); });
}

void cls_DrawTool::RECT(Ref<cls_DrawToolRect> v) {
  trap("RECT.SET", [&] { rect_ = std::move(v); });
}

Ref<cls_DrawToolPoint> cls_DrawTool::POINT() {
  return trap("POINT.GET", [&] { return hFactory(point_); });
}

void cls_DrawTool::POINT(Ref<cls_DrawToolPoint> v) {
  trap("POINT.SET", [&] { point_ = std::move(v); });
}

bool cls_DrawTool::READY() const {
  return trap("READY", [&] { return ready_; });
}

enm_Draw_Status cls_DrawTool::StartUpGDIPlus(uint32_t version) {
  return trap("StartUpGDIPlus", [&] {
    mdl_GDIPlus::GdiplusStartupInput input;
    input.GdiplusVersion = version;
    enm_Draw_Status status = gStartup(&token_, &input, nullptr);
    ready_ = true;  // whatever the outcome
    return status;
  });
}

bool cls_DrawTool::INIT() {
  return trap("INIT", [&] {
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
  });
}

void cls_DrawTool::DEINIT() {
  trap("DEINIT", [&] {
    if (!ready_) return;
    if (--count_ < 1) {
      count_ = 0;
      token_ = 0;
      ready_ = false;
    }
  });
}

enm_Draw_Status cls_DrawTool::Execute(enm_Draw_Status lReturn) const {
  return trap("Execute", [&] { return mdl_Global::Execute(lReturn); });
}

std::u16string cls_DrawTool::ERRORINFO(enm_Draw_Status lError) const {
  return trap("ERRORINFO", [&]() -> std::u16string {
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
  });
}

void cls_DrawTool::ERRORSET(const std::u16string&) const {
  trap("ERRORSET", [&] {
    if (mdl_Err::TerminateRequested) TerminateNow();
  });
}

const ClassInfo& cls_DrawTool::typeInfo() {
  static const ClassInfo info = ClassBuilder<cls_DrawTool>()
      .objectProperty("COLOR", &cls_DrawTool::COLOR, &cls_DrawTool::COLOR)
      .objectProperty("RECT", &cls_DrawTool::RECT, &cls_DrawTool::RECT)
      .objectProperty("POINT", &cls_DrawTool::POINT, &cls_DrawTool::POINT)
      .method("READY", &cls_DrawTool::READY)
      .method("INIT", &cls_DrawTool::INIT)
      .method("DEINIT", &cls_DrawTool::DEINIT)
      .method("Execute", &cls_DrawTool::Execute, {"lReturn"})
      .method("ERRORINFO", &cls_DrawTool::ERRORINFO, {"lError"})
      .method("ERRORSET", &cls_DrawTool::ERRORSET, {"pErrorMsg"});
  return info;
}
TESSEL_REGISTER_CLASS(cls_DrawTool)

static const EnumRegistrar statusEnum(EnumInfo{
    "enm_Draw_Status",
    {{"OK", 0}, {"GenericError", 1}, {"InvalidParameter", 2}, {"OutOfMemory", 3}, {"ObjectBusy", 4},
     {"InsufficientBuffer", 5}, {"NotImplemented", 6}, {"Win32Error", 7}, {"WrongState", 8}, {"ABORTED", 9},
     {"FileNotFound", 10}, {"ValueOverflow", 11}, {"AccessDenied", 12}, {"UnknownImageFormat", 13},
     {"FontFamilyNotFound", 14}, {"FontStyleNotFound", 15}, {"NotTrueTypeFont", 16},
     {"UnsupportedGdiplusVersion", 17}, {"GdiplusNotInitialized", 18}, {"PropertyNotFound", 19},
     {"PropertyNotSupported", 20}}});

}  // namespace tessel
