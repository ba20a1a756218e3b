// The showcase's geometry page: a rectangle from the factory, its edges and corners, a merge,
// and the events it raised on the way. Called from main as `void showGeometry();`.
#include <tessel/tessel.h>

#include <cstdio>
#include <span>
#include <string>
#include <vector>

using namespace tessel;

void showGeometry() {
  Ref<cls_DrawTool> draw = mdl_Global::DRAW();
  Ref<cls_DrawRect> box = draw->RECT()->AUTO(Variant(u"10"), 20, 100, 50);
  int moved = 0, resized = 0;
  Connection m = box->MOVED.connect([&] { ++moved; });
  Connection r = box->RESIZE.connect([&] { ++resized; });

  std::printf("geometry: box %s, %g by %g, centre (%g, %g)\n", toUtf8(box->INFO()).c_str(), box->W(), box->H(),
              box->XC(), box->YC());
  Ref<cls_DrawPoint> corner = box->CORNER(enm_UIRectCorner::ID_UIRectCorner_XRightYBottom);
  Ref<cls_DrawRect> handle = box->CORNERRECT(enm_UIRectCorner::ID_UIRectCorner_XRightYBottom, 8);
  std::printf("geometry: bottom-right corner (%g, %g), its 8-pixel handle %s\n", corner->X(), corner->Y(),
              toUtf8(handle->INFO()).c_str());

  // Late-bound, as a script would write it: DRAW.RECT(0, 0, 30, 30) through the default member.
  std::vector<Variant> args{Variant(0), Variant(0), Variant(30), Variant(30)};
  Variant other = Invoke(draw->RECT().get(), "", InvokeKind::Method, std::span<Variant>(args));
  box->MERGE(other);
  std::printf("geometry: merged with %s -> %s\n", Invoke(other, "INFO", InvokeKind::Method).toUtf8().c_str(),
              toUtf8(box->INFO()).c_str());
  box->EXPAND(2);
  box->MOVECENTER(Variant(draw->POINT()->POINT(200, 100)));
  std::printf("geometry: expanded by 2 and centred on (200, 100) -> %s; hit (200, 100): %s\n",
              toUtf8(box->INFO()).c_str(), box->HITTESTXY(200, 100) ? "yes" : "no");
  std::printf("geometry: the box raised MOVED %d times and RESIZE %d times\n", moved, resized);
}
