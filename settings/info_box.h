// SPDX-License-Identifier: MIT
#pragma once

class QString;
class QWidget;

// An information box with one button, which blocks its caller until it is answered, while events go on.
// `parent` may be null. GUI thread only.
void show_info_box(QWidget *parent, const QString &title, const QString &text, const QString &button);
