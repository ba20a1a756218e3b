// The module mdl_Global: the status seam and the parameter language (mdl_Global.members). The
// root object adds the thread's DRAW (tessel/root/sys_Global.h).
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/core/enm_Draw_Status.h>
#include <tessel/core/mdl_Global.members.h>


#include <cstddef>
#include <vector>

namespace tessel::mdl_Global {

// The numbers of a loose point or rectangle: a bracketed list as the parameter language reads one
// ("(10,20,50,30)": "(" first and ")" last, split at every ",", each item's leading number) or an
// array of Variants (each item converted as a number; 13 for one that is none). False for any
// other value. More than `most` numbers is error 5.
bool LooseNumbers(const Variant& v, size_t most, std::vector<double>& out);

}  // namespace tessel::mdl_Global
