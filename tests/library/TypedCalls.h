// Every member of the library called the typed C++ way (generated from the member tables):
// required arguments at their type's zero, optional ones left to their C++ defaults.
#pragma once

#include <tessel/core/TypeLib.h>

#include <vector>

namespace tessel::testing {

struct TypedCall {
  const char* cls;
  const char* member;
  InvokeKind kind;
  void (*invoke)(Object* target);  // the target is ignored by module functions
};

const std::vector<TypedCall>& typedCalls();

}  // namespace tessel::testing
