// The text-format factory (cls_DrawToolTextFormat.members).
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/resources/cls_DrawTextFormat.h>
#include <tessel/resources/cls_DrawToolTextFormat.members.h>

#include <array>

namespace tessel {

class cls_DrawToolTextFormat final : public ObjectOf<cls_DrawToolTextFormat> {
  TESSEL_MEMBERS(cls_DrawToolTextFormat)

 public:
  cls_DrawToolTextFormat();

 private:
  // Left, right, centre, block: made with the factory, in that order, and protected. One made
  // before the platform was started holds no native format; it is made again when read.
  const Ref<cls_DrawTextFormat>& hShared(size_t k) const;
  mutable std::array<Ref<cls_DrawTextFormat>, 4> shared_;
};

}  // namespace tessel
