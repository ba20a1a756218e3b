// The global entry points: sys_Global (scripts' unqualified DRAW) and the module's DRAW, the
// calling thread's root object. Members in sys_Global.members.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_Global.h>
#include <tessel/root/sys_Global.members.h>

namespace tessel {

class sys_Global final : public ObjectOf<sys_Global> {
  TESSEL_MEMBERS(sys_Global)
};

}  // namespace tessel
