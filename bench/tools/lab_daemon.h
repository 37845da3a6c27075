// SPDX-License-Identifier: MIT
#pragma once

// Returns once the lab's DNS-SD daemon has done nothing for more than a second: what it does after an earlier
// round, such as to send a question once more or to let go of a client, is not for the next round to pay. A
// daemon that does not come to rest, or no lab, ends the benchmark.
void await_daemon_at_rest();
