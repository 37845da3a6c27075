// SPDX-License-Identifier: MIT
#pragma once

#include <QSlider>

// A slider that paints its own tick marks in a fixed colour, under the style's groove and handle. Ticks on
// both sides, every 10, from the start. GUI thread only.
class RZSlider : public QSlider
{
    Q_OBJECT

public:
    explicit RZSlider(QWidget *parent);
    RZSlider(Qt::Orientation orientation, QWidget *parent);

    int tick_near = 22; // pixels from the widget's edge to the near end of a mark
    int tick_far = 27;  // and to its far end

protected:
    void paintEvent(QPaintEvent *event) override;
};
