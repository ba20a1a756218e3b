// The showcase: starts the toolkit, reports its state and draws a picture to a PNG.
#include <tessel/tessel.h>

#include <cstdio>
#include <string>

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;

namespace {

bool drawPicture(const std::string& file) {
  gp::GpBitmap* bitmap = nullptr;
  gp::GpGraphics* g = nullptr;
  gp::GpSolidFill* fill = nullptr;
  auto ok = [](enm_Draw_Status s) { return mdl_Global::Execute(s) == enm_Draw_Status::OK; };
  bool done = ok(gp::GdipCreateBitmapFromScan0(240, 160, 0, gp::PixelFormat32bppARGB, nullptr, &bitmap)) &&
              ok(gp::GdipGetImageGraphicsContext(reinterpret_cast<gp::GpImage*>(bitmap), &g)) &&
              ok(gp::GdipSetSmoothingMode(g, gp::SmoothingModeAntiAlias)) &&
              ok(gp::GdipGraphicsClear(g, 0xFFF4F1EA));
  const gp::ARGB colours[] = {0xFF2F6690, 0xFF3A7CA5, 0xFFD9DCD6, 0xFF16425B};
  for (int i = 0; done && i < 4; ++i) {
    done = ok(gp::GdipCreateSolidFill(colours[i], &fill)) &&
           ok(gp::GdipFillEllipse(g, reinterpret_cast<gp::GpBrush*>(fill), 20.0f + 45 * i, 30.0f + 10 * i, 80, 80));
    if (fill) gp::GdipDeleteBrush(reinterpret_cast<gp::GpBrush*>(fill));
    fill = nullptr;
  }
  gp::GUID png;
  if (done) done = gp::GetEncoderClsid(u"image/png", png);
  if (done)
    done = ok(gp::GdipSaveImageToFile(reinterpret_cast<gp::GpImage*>(bitmap), toUtf16(file).c_str(), &png, nullptr));
  if (g) gp::GdipDeleteGraphics(g);
  if (bitmap) gp::GdipDisposeImage(reinterpret_cast<gp::GpImage*>(bitmap));
  return done;
}

}  // namespace

void showGeometry();
void showPalette();

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
  draw->DEINIT();
  return 0;
}
