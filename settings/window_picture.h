// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

// For a window that is kept after it was closed: from now on it gives back the memory of its picture, which
// is nearly all that it holds, whenever it is hidden. Shown again, it is drawn anew. GUI thread only.
void free_picture_when_hidden(QWidget *window);
