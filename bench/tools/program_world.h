// SPDX-License-Identifier: MIT
#pragma once

// The process-wide objects as the program's start makes them, with debug off, for a benchmark that runs the
// program's own window in its process. Once a process, after the application object.
void make_program_world();

// Leaves as the program does, past the workers that still run.
[[noreturn]] void leave_program_world();
