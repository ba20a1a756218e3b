// The flat API's records made from rectangles and points: what a drawing call hands to libgdiplus.
// Part of the module mdl_GDIPlus; they live here, with the classes they read.
#pragma once

#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/geometry/cls_DrawPoint.h>
#include <tessel/geometry/cls_DrawRect.h>

namespace tessel::mdl_GDIPlus {

// X and Y, then W and H with pAsSize, else the inclusive right and bottom edges x2 and y2; each
// rounded half to even to 32 bits (a value beyond them is an overflow, 6).
GpRect GDIPRectL(const Ref<cls_DrawRect>& pRect, bool pAsSize);
// The same selection, as the Single values they are.
GpRectF GDIPRectF(const Ref<cls_DrawRect>& pRect, bool pAsSize);
// X and Y narrowed to Single (a value beyond the Single range is an overflow, 6).
GpPointF GDIPPointF(const Ref<cls_DrawPoint>& pPoint);

}  // namespace tessel::mdl_GDIPlus
