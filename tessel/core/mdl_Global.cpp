#include <tessel/core/mdl_Global.h>

#include <tessel/core/cls_DrawTool.h>

namespace tessel {

namespace mdl_Global {

Ref<cls_DrawTool> DRAW() {
  return Trap(ProcInfo{"mdl_Global", "DRAW.GET"}, [] {
    // Module variables live per thread: one root object per thread.
    thread_local Ref<cls_DrawTool> root;
    if (!root) root = make<cls_DrawTool>();
    return root;
  });
}

}  // namespace mdl_Global

Ref<mdl_GlobalModule> mdl_GlobalModule::instance() {
  thread_local Ref<mdl_GlobalModule> self = make<mdl_GlobalModule>();
  return self;
}

const ClassInfo& mdl_GlobalModule::typeInfo() {
  static const ClassInfo info = ClassBuilder<mdl_GlobalModule>()
      .global(&mdl_GlobalModule::instance)
      .get("DRAW", &mdl_Global::DRAW)
      .method("Execute", &mdl_Global::Execute, {"lReturn"})
      .method("PARADECODE", &mdl_Global::PARADECODE,
              {"pText", "pType", "pValue1", "pValue2", "pValue3", "pValue4"})
      .method("PARATYPETEXT", &mdl_Global::PARATYPETEXT, {"pType"})
      .method("UNHEX", &mdl_Global::UNHEX, {"pHex", "pDefault"});
  return info;
}
TESSEL_REGISTER_CLASS(mdl_GlobalModule)

Ref<sys_Global> sys_Global::instance() {
  thread_local Ref<sys_Global> self = make<sys_Global>();
  return self;
}

Ref<cls_DrawTool> sys_Global::DRAW() const {
  return trap("DRAW.GET", [] { return mdl_Global::DRAW(); });
}

const ClassInfo& sys_Global::typeInfo() {
  static const ClassInfo info = ClassBuilder<sys_Global>()
      .global(&sys_Global::instance)
      .get("DRAW", &sys_Global::DRAW);
  return info;
}
TESSEL_REGISTER_CLASS(sys_Global)

}  // namespace tessel
