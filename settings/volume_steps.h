// SPDX-License-Identifier: MIT
#pragma once

// The rules that keep a single input from moving the volume by much, shared by every tab with a volume
// slider or dial. Pure functions of plain numbers.

constexpr int volume_max = 100;
constexpr int dial_max = 50; // last position of the volume dial, which wraps to 0 behind it

// The step fence of a slider: `value`, or `last` moved towards it by 10 where it is further away than that.
int fenced_volume(int value, int last);

// By how much the volume moves when the dial goes from `last` to `value`. A difference of up to 14 is taken
// as it stands. With a larger one the dial has passed its seam: the step is what it went the other way round,
// and becomes 15 where that is above 10. So a jump over a part of the dial can move the volume against the
// dial, which is meant.
int dial_step(int value, int last);
