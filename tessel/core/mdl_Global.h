// The module mdl_Global: the status seam and the parameter language (mdl_Global.members). The
// root object adds the thread's DRAW (tessel/root/sys_Global.h).
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/core/enm_Draw_Status.h>
#include <tessel/core/mdl_Global.members.h>
