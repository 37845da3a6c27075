// SPDX-License-Identifier: MIT
#pragma once

class QString;
class QWidget;

// An information box with one button, which blocks its caller until it is answered, while events go on.
// `parent` may be null. The text stands as it is, also where a speaker's words in it look like markup. GUI
// thread only.
void show_info_box(QWidget *parent, const QString &title, const QString &text, const QString &button);
