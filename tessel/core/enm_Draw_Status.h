// The status of every platform call, kept as the flat API returns it (enm_Draw_Status.members).
#pragma once

#include <tessel/core/enm_Draw_Status.members.h>
