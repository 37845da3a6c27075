// SPDX-License-Identifier: MIT
#pragma once

class QGridLayout;

// Lets the Tab key follow the eye: row by row, and in a row from left to right. A widget over several rows
// belongs to the one where it begins; what a box in the grid holds follows the order of the box. To be called
// when the grid is set and filled: widgets that are added later come last. GUI thread only.
void order_tabs(const QGridLayout *grid);
