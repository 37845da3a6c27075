// SPDX-License-Identifier: MIT
#pragma once

#include <QSlider>

class QPainter;
class QStyleOptionSlider;

// A slider that paints its own tick marks in a fixed colour, under the style's groove and handle. Ticks on
// both sides, every 10, from the start; a tick interval of 0 takes the page step. A slider whose range or
// interval is empty has no marks. GUI thread only.
class RZSlider : public QSlider
{
    Q_OBJECT

public:
    explicit RZSlider(QWidget *parent); // vertical
    RZSlider(Qt::Orientation orientation, QWidget *parent);

    int tick_near = 22; // pixels from the widget's edge to the near end of a mark
    int tick_far = 27;  // and to its far end

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paint_ticks(QPainter &painter, const QStyleOptionSlider &option) const;
    void paint_tick(QPainter &painter, int pos) const;
};
