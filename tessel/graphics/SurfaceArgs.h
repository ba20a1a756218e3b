// What the surface's drawing operations make of their loose arguments, written once: an object
// is taken as it is, anything else goes through the factory of its kind (the root's AUTO), and
// the properties of the objects are read by name, so any object with X, Y, W, H serves as a
// rectangle.
//
// Native handles are the exception: a pen, brush, path, font, format, image or image attributes
// must be the toolkit's own (13 otherwise, 91 for Nothing). A number read from a foreign
// object's HANDLE would be handed to the platform as a pointer.
#pragma once

#include <tessel/core/Object.h>
#include <tessel/core/Variant.h>
#include <tessel/core/mdl_GDIPlus.h>

#include <cstdint>

namespace tessel {

class cls_DrawBrush;
class cls_DrawFont;
class cls_DrawImage;
class cls_DrawImageAttributes;
class cls_DrawPath;
class cls_DrawPen;
class cls_DrawTextFormat;

namespace surface {

// The factories' AUTO for a loose argument; an object (Nothing too) passes unchanged.
Ref<Object> rectArg(const Variant& v);   // rectangle AUTO(v, 0, 0, 0)
Ref<Object> penArg(const Variant& v);
Ref<Object> brushArg(const Variant& v);
Ref<Object> fontArg(const Variant& v);
Ref<Object> formatArg(const Variant& v);
Ref<Object> imageArg(const Variant& v);
// Omitted: none (null). A number is an ALPHA for new attributes.
Ref<Object> attributesArg(const Variant& v);

// A rectangle's properties in single precision; x2 and y2 are its inclusive right and bottom.
struct Box {
  float x, y, w, h;
  float x2() const { return x + w - 1; }
  float y2() const { return y + h - 1; }
  mdl_GDIPlus::GpRectF rectF() const { return {x, y, w, h}; }
};
Box boxOf(Object* rect);

// A single-precision value as a whole unit: to nearest, ties to even; 6 beyond 32 bits.
int32_t whole(float v);

// The native object of a toolkit resource (null for an empty one).
mdl_GDIPlus::GpPen* penOf(Object* o);
mdl_GDIPlus::GpBrush* brushOf(Object* o);
mdl_GDIPlus::GpPath* pathOf(Object* o);
mdl_GDIPlus::GpFont* fontOf(Object* o);
mdl_GDIPlus::GpStringFormat* formatOf(Object* o);
mdl_GDIPlus::GpImage* imageOf(Object* o);
mdl_GDIPlus::GpImageAttributes* attributesOf(Object* o);

}  // namespace surface
}  // namespace tessel
