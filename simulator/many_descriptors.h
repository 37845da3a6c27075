// SPDX-License-Identifier: MIT
#pragma once

// Lets this process open as many descriptors as its user may. A speaker takes ten at its busiest, and where a
// process starts with 1024, as is usual, a house of a hundred would run out of them. What the system refuses
// stays as it was.
void allow_many_descriptors();
