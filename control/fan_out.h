// SPDX-License-Identifier: MIT
#pragma once

// The walk over the listed speakers that groups and cells share. GUI thread only. It goes from the first
// record to the last, reaches every speaker, member or not, which is meant, and passes over a record without
// a control object. What happens on a speaker's link is reported to nobody.
void fan_out_volume(int vol);
void fan_out_mute_on();
void fan_out_mute_off();
