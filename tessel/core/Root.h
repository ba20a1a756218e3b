// The root object lives above every subsystem, yet a lower layer sometimes needs one of the
// factories it holds: a rectangle turning a number into a point, a colour asking the colour
// factory. They reach it through this seam, which the root fills when the library loads, so that
// no lower layer includes the root.
//
//   Ref<cls_DrawToolPoint> points = rootFactory<cls_DrawToolPoint>();
#pragma once

#include <tessel/core/Error.h>
#include <tessel/core/Object.h>

namespace tessel {

template <class Factory>
struct RootFactory {
  // The calling thread's factory of this kind, as the root object holds it.
  static inline Ref<Factory> (*get)() = nullptr;
};

// Nothing (91) when the root has no such factory, or none is set.
template <class Factory>
Ref<Factory> rootFactory() {
  auto get = RootFactory<Factory>::get;
  Ref<Factory> f = get ? get() : Ref<Factory>();
  if (!f) raise(rt::ObjectNotSet);
  return f;
}

}  // namespace tessel
