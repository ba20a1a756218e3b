// Objects that are not colours but expose channel properties, for the late-bound paths
// (MIX, SOLID and AUTO accept any object with R, G, B and, where needed, A).
#pragma once

#include "TestSupport.h"

#include <tessel/tessel.h>

#include <gtest/gtest.h>

namespace tessel {

// Channels as free Variants, so a test can hand out texts or out-of-range values.
class cls_ChannelProbe final : public ObjectOf<cls_ChannelProbe> {
 public:
  static constexpr std::string_view ClassName = "cls_ChannelProbe";
  static const ClassInfo& typeInfo() {
    using P = cls_ChannelProbe;
    static const ClassInfo info =
        ClassBuilder<P>().field("R", &P::R).field("G", &P::G).field("B", &P::B).field("A", &P::A);
    return info;
  }
  cls_ChannelProbe(Variant r, Variant g, Variant b, Variant a) : R(r), G(g), B(b), A(a) {}
  Variant R, G, B, A;
};

using Channels = std::array<int, 4>;  // red, green, blue, alpha
inline Channels rgba(const Ref<cls_DrawColor>& c) { return {c->R(), c->G(), c->B(), c->A()}; }

}  // namespace tessel
