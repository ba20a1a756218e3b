// The showcase: starts the toolkit, reports its state and draws a picture to a PNG.
#include <tessel/tessel.h>

#include <cstdio>
#include <string>

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;

namespace {

bool drawPicture(const std::string& file) {
  using gp::Succeeded;
  gp::GpBitmap* made = nullptr;
  if (!Succeeded(gp::GdipCreateBitmapFromScan0(240, 160, 0, gp::PixelFormat32bppARGB, nullptr, &made))) return false;
  gp::ImageHandle bitmap(made);
  gp::GpGraphics* context = nullptr;
  if (!Succeeded(gp::GdipGetImageGraphicsContext(bitmap.get(), &context))) return false;
  gp::GraphicsHandle g(context);
  bool done = Succeeded(gp::GdipSetSmoothingMode(g.get(), gp::SmoothingModeAntiAlias)) &&
              Succeeded(gp::GdipGraphicsClear(g.get(), 0xFFF4F1EA));
  const gp::ARGB colours[] = {0xFF2F6690, 0xFF3A7CA5, 0xFFD9DCD6, 0xFF16425B};
  for (int i = 0; done && i < 4; ++i) {
    gp::GpSolidFill* fill = nullptr;
    done = Succeeded(gp::GdipCreateSolidFill(colours[i], &fill));
    gp::BrushHandle brush(fill);
    done = done && Succeeded(gp::GdipFillEllipse(g.get(), brush.get(), 20.0f + 45 * i, 30.0f + 10 * i, 80, 80));
  }
  gp::GUID png;
  return done && gp::GetEncoderClsid(u"image/png", png) &&
         Succeeded(gp::GdipSaveImageToFile(bitmap.get(), toUtf16(file).c_str(), &png, nullptr));
}

}  // namespace

void showGeometry();
void showPalette();
bool drawResources(const std::string& file);
bool drawImages(const std::string& folder);
bool drawSurface(const std::string& folder);
bool drawIcons(const std::string& file);
bool drawControls(const std::string& file);

int main(int argc, char** argv) {
  std::string out = argc > 1 ? argv[1] : "showcase.png";
  Ref<cls_DrawTool> draw = sys_Global::instance()->DRAW();
  std::printf("Tessel root object: %s, ready: %s\n", std::string(draw->typeName()).c_str(),
              draw->READY() ? "yes" : "no");
  draw->INIT();
  std::printf("after INIT: ready %s, users %d\n", draw->READY() ? "yes" : "no", draw->initCount());
  std::printf("status 10 reads \"%s\"\n", toUtf8(draw->ERRORINFO(enm_Draw_Status::FileNotFound)).c_str());

  // Every member is reachable by name as well.
  Variant ready = Invoke(draw.get(), "ready", InvokeKind::Method);
  std::printf("late-bound READY: %s\n", ready.toUtf8().c_str());

  showGeometry();
  showPalette();

  if (!drawPicture(out)) {
    std::fprintf(stderr, "could not draw %s\n", out.c_str());
    return 1;
  }
  std::printf("drew %s\n", out.c_str());
  // The other pictures go next to the main one.
  const size_t slash = out.find_last_of('/');
  const std::string folder = slash == std::string::npos ? std::string() : out.substr(0, slash + 1);
  // In this order: the images and surface pictures read the resources picture.
  const struct {
    const char* name;
    bool (*draw)(const std::string& folder);
  } pictures[] = {
      {"resources", [](const std::string& f) { return drawResources(f + "resources.png"); }},
      {"images", drawImages},
      {"icons", [](const std::string& f) { return drawIcons(f + "icons.png"); }},
      {"surface", drawSurface},
      {"controls", [](const std::string& f) { return drawControls(f + "controls.png"); }},
  };
  for (const auto& picture : pictures) {
    if (!picture.draw(folder)) {
      std::fprintf(stderr, "could not draw the %s picture\n", picture.name);
      return 1;
    }
  }
  draw->DEINIT();
  return 0;
}
