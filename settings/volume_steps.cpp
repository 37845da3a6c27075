// SPDX-License-Identifier: MIT
#include "settings/volume_steps.h"

namespace
{
constexpr int fence = 10;
constexpr int seam_distance = 15; // from here on a way counts as a way over the seam
constexpr int seam_step_max = 10;
constexpr int seam_step_cut = 15;
} // namespace

int fenced_volume(int value, int last)
{
    // Wide, since a speaker may have reported any number for its volume.
    const long long way = static_cast<long long>(value) - last;
    if (way > fence)
        return last + fence;
    if (way < -fence)
        return last - fence;
    return value;
}

int dial_step(int value, int last)
{
    const int way = value - last;
    if (-seam_distance < way && way < seam_distance)
        return way;

    const int step = last > value ? way + dial_max : way - dial_max;
    if (step > seam_step_max)
        return seam_step_cut;
    if (step < -seam_step_max)
        return -seam_step_cut;
    return step;
}
