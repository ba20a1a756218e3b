#include <tessel/resources/cls_DrawToolTextFormat.h>

namespace tessel {

using A = enm_TextAlign;

namespace {

constexpr A kShared[4] = {A::ID_TextAlign_LeftMiddle, A::ID_TextAlign_RightMiddle, A::ID_TextAlign_CenterMiddle,
                          A::ID_TextAlign_BlockMiddle};

}  // namespace

cls_DrawToolTextFormat::cls_DrawToolTextFormat() {
  for (size_t k = 0; k < shared_.size(); ++k) hShared(k);
}

const Ref<cls_DrawTextFormat>& cls_DrawToolTextFormat::hShared(size_t k) const {
  if (!shared_[k] || shared_[k]->HANDLE() == 0) {
    // A format the platform could not make (it is not started yet) is kept empty, not Nothing.
    shared_[k] = make<cls_DrawTextFormat>();
    shared_[k]->DIRECT(kShared[k]);
    shared_[k]->PROTECTED(true);
  }
  return shared_[k];
}

Ref<cls_DrawTextFormat> cls_DrawToolTextFormat::AUTO(Call, const Variant& pAny) {
  if (auto same = refCast<cls_DrawTextFormat>(pAny.objRef()); pAny.isObject() && same) return same;
  if (pAny.isMissing()) return ALIGN(A::ID_TextAlign_LeftMiddle);
  if (pAny.isObject()) raise(rt::TypeMismatch);
  return ALIGN(static_cast<A>(pAny.toLong()));
}

Ref<cls_DrawTextFormat> cls_DrawToolTextFormat::ALIGN(Call, enm_TextAlign pAlign) {
  return make<cls_DrawTextFormat>()->DIRECT(pAlign);
}

Ref<cls_DrawTextFormat> cls_DrawToolTextFormat::ALIGNLEFT(Get) const { return hShared(0); }
Ref<cls_DrawTextFormat> cls_DrawToolTextFormat::ALIGNRIGHT(Get) const { return hShared(1); }
Ref<cls_DrawTextFormat> cls_DrawToolTextFormat::ALIGNCENTER(Get) const { return hShared(2); }
Ref<cls_DrawTextFormat> cls_DrawToolTextFormat::ALIGNBLOCK(Get) const { return hShared(3); }

}  // namespace tessel
