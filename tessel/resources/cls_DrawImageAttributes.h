// Image attributes (cls_DrawImageAttributes.members): a colour matrix and a grey matrix that
// image drawing hands to libgdiplus, under the shared resource lifecycle without protection.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_GDIPlus.h>
#include <tessel/core/NativeResource.h>
#include <tessel/resources/cls_DrawImageAttributes.members.h>

#include <array>

namespace tessel {

class cls_DrawImageAttributes final : public ObjectOf<cls_DrawImageAttributes> {
  TESSEL_MEMBERS(cls_DrawImageAttributes)

 public:
  cls_DrawImageAttributes();

 private:
  // [matrix][i][j]: element i, j is what libgdiplus reads as row j, column i. Matrix 0 exists
  // but is never used.
  using Matrix = std::array<std::array<float, 5>, 5>;
  static constexpr size_t kColor = 1, kGrey = 2;
  static void hCheck(int32_t pMatrix, int32_t pI, int32_t pJ);
  mdl_GDIPlus::ColorMatrix hNative(size_t matrix) const;
  // MATRIXUPDATE's work; reading ALPHA does it too, so the native attributes are state that a
  // read may make.
  void hUpdate() const;

  mutable NativeResource<mdl_GDIPlus::ImageAttributesHandle> native_;
  std::array<Matrix, 3> matrices_{};
};

}  // namespace tessel
