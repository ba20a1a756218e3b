#include <tessel/root/sys_Global.h>

#include <tessel/root/cls_DrawTool.h>

namespace tessel {

namespace mdl_Global {

Ref<cls_DrawTool> DRAW(tl::Get) {
  // Module variables live per thread: one root object per thread.
  thread_local Ref<cls_DrawTool> root;
  if (!root) root = make<cls_DrawTool>();
  return root;
}

}  // namespace mdl_Global

Ref<cls_DrawTool> sys_Global::DRAW(Get) const { return mdl_Global::DRAW(); }

}  // namespace tessel
