#include <tessel/geometry/mdl_GDIPlus_Geometry.h>

#include <tessel/core/Checked.h>
#include <tessel/core/Variant.h>

#include <cstdint>

namespace tessel::mdl_GDIPlus {

namespace {

int32_t whole(float v) { return static_cast<int32_t>(roundToWhole(v, INT32_MIN, INT32_MAX)); }

template <class Record, class Convert>
Record rectRecord(const Ref<cls_DrawRect>& r, bool asSize, Convert convert) {
  if (!r) raise(rt::ObjectNotSet);
  const float x = r->X(), y = r->Y();
  const float third = asSize ? r->W() : r->x2();
  const float fourth = asSize ? r->H() : r->y2();
  return Record{convert(x), convert(y), convert(third), convert(fourth)};
}

}  // namespace

GpRect GDIPRectL(const Ref<cls_DrawRect>& pRect, bool pAsSize) {
  return Trap(ProcInfo{"mdl_GDIPlus", "GDIPRectL"}, [&] { return rectRecord<GpRect>(pRect, pAsSize, whole); });
}

GpRectF GDIPRectF(const Ref<cls_DrawRect>& pRect, bool pAsSize) {
  return Trap(ProcInfo{"mdl_GDIPlus", "GDIPRectF"},
              [&] { return rectRecord<GpRectF>(pRect, pAsSize, [](float v) { return v; }); });
}

GpPointF GDIPPointF(const Ref<cls_DrawPoint>& pPoint) {
  return Trap(ProcInfo{"mdl_GDIPlus", "GDIPPointF"}, [&] {
    if (!pPoint) raise(rt::ObjectNotSet);
    return GpPointF{checkedSingle(pPoint->X()), checkedSingle(pPoint->Y())};
  });
}

}  // namespace tessel::mdl_GDIPlus
