// SPDX-License-Identifier: MIT
#include "simulator/many_descriptors.h"

#include <sys/resource.h>

void allow_many_descriptors()
{
    rlimit limit;
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}
