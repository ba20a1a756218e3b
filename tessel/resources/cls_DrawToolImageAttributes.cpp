#include <tessel/resources/cls_DrawToolImageAttributes.h>

namespace tessel {

Ref<cls_DrawImageAttributes> cls_DrawToolImageAttributes::ALPHA(Call, float pAlpha) {
  auto attributes = make<cls_DrawImageAttributes>();
  attributes->ALPHA(pAlpha);
  return attributes;
}

}  // namespace tessel
