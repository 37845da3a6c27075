// SPDX-License-Identifier: MIT
#include "settings/volume_steps.h"

namespace
{
constexpr int fence = 10;
constexpr int seam_diff = 15; // from here on the dial counts as having passed its seam
constexpr int seam_step_max = 10;
constexpr int seam_step_cut = 15;
} // namespace

int fenced_volume(int value, int last)
{
    // Wide, since a speaker may have reported any number for its volume.
    const long long diff = static_cast<long long>(value) - last;
    if (diff > fence)
        return last + fence;
    if (diff < -fence)
        return last - fence;
    return value;
}

int dial_step(int value, int last)
{
    const int diff = value - last;
    if (-seam_diff < diff && diff < seam_diff)
        return diff;

    const int step = last > value ? diff + dial_max : diff - dial_max;
    if (step > seam_step_max)
        return seam_step_cut;
    if (step < -seam_step_max)
        return -seam_step_cut;
    return step;
}
