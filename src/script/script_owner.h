// Whose job a machine works for.
//
// Thread: as the machine.
#pragma once

#include "script/job.h"

#include <squirrel.h>

// Of a machine that has an owner, or a coroutine of it. Not by way of `dev`, which a script may
// call with anything.
inline RunningJob &ownerOf(HSQUIRRELVM v)
{
    return *static_cast<RunningJob *>(sq_getsharedforeignptr(v));
}
