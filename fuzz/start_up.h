// SPDX-License-Identifier: MIT
#pragma once

// What start-up makes, for a fuzz target: the process-wide objects on the offscreen platform, with a home and
// a temporary folder that are gone afterwards. Logging is on, as in debug mode, and goes nowhere. GUI thread
// only.

void make_application(); // once, before anything else
void make_main_window(); // on top of it; discovery runs on the scripted dns_sd and finds nothing

// Delivers what is queued and deletes what is to be deleted, until nothing of it is left.
void settle();

// Lets the single-shot timers of the GUI thread fire now, each once. Returns how many there were.
int fire_single_shot_timers();
