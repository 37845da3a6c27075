// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QJsonObject;
class QWidget;

// Real input through the platform layer, as the window system would bring it: modality, focus and grabs all
// have their say. A request names a widget by its number; a place of the mouse is given on the screen (x, y),
// the middle of the widget where it is left out. GUI thread only.
//
//   press, release, click, double_click, move   {"widget": 3, "x": 20, "y": 40}
//   key                                         {"widget": 3, "key": "Ctrl+Right"}
//   type                                        {"widget": 3, "text": "abc"}
//   close                                       {"widget": 3}
//
// Keys and text go to the focus of the widget's window. A window is closed as by its frame.

bool is_input(const QJsonObject &request);

// Why a user could not do that: no such widget, not visible, covered by another one at that place. Empty if
// he could.
QString input_refusal(const QJsonObject &request, QWidget *widget);

// May run event loops of dialogs, or end the program's.
void deliver_input(const QJsonObject &request, QWidget *widget);
