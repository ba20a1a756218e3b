// The root object lives above every subsystem, yet a lower layer sometimes needs one of the
// factories it holds: a rectangle turning a number into a point, a colour asking the colour
// factory. They reach it through this seam, which the root fills when the library loads, so that
// no lower layer includes the root.
//
//   Ref<cls_DrawToolPoint> points = rootFactory<cls_DrawToolPoint>();
#pragma once

#include <tessel/core/Error.h>
#include <tessel/core/Object.h>

#include <string>

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

// The root's ERRORSET, for lower layers that report a bad description (a pen or font text)
// there rather than failing the call; the root fills it. Without a root it does nothing.
inline void (*RootErrorSet)(const std::u16string& message) = nullptr;
inline void rootErrorSet(const std::u16string& message) {
  if (RootErrorSet) RootErrorSet(message);
}

// The root's count of platform users, for objects that count as one while they live (a surface
// calls INIT when made and DEINIT when gone, and asks READY before it opens). The root fills
// them; without a root INIT and DEINIT do nothing and READY answers False.
inline bool (*RootInit)() = nullptr;
inline void (*RootDeinit)() = nullptr;
inline bool (*RootReady)() = nullptr;
inline bool rootInit() { return RootInit && RootInit(); }
inline void rootDeinit() {
  if (RootDeinit) RootDeinit();
}
inline bool rootReady() { return RootReady && RootReady(); }

// Counts its owner as a platform user for exactly the owner's lifetime, also when the owner's
// construction fails halfway: declared as the owner's first member, it goes last.
struct PlatformUser {
  PlatformUser() { rootInit(); }
  ~PlatformUser() {
    try {
      rootDeinit();
    } catch (...) {
      // A destructor raises nothing; DEINIT has reported through its own trap.
    }
  }
  PlatformUser(const PlatformUser&) = delete;
  PlatformUser& operator=(const PlatformUser&) = delete;
};

}  // namespace tessel
