// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class RZPixmapLabel;

// The banner on top of every view. The picture comes in two sizes and is chosen once, when a view is built,
// by the screen's width in device pixels. GUI thread only, after plattform has been made.

// Resource path of the banner `name`, "Deko_Air" for one: its "_2k" picture on a screen wider than 2000
// pixels, else its "_640" picture.
QString banner_path(const QString &name);

// A new label without parent that holds the banner. A missing picture leaves it empty, and nothing is said.
RZPixmapLabel *make_banner(const QString &name);
