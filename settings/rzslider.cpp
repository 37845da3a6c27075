// SPDX-License-Identifier: MIT
#include "settings/rzslider.h"

#include <QPainter>
#include <QStyleOptionSlider>
#include <cmath>

namespace
{
constexpr QColor tick_colour(0xa5, 0xa2, 0x94);
constexpr int default_interval = 10;
constexpr int vertical_shift = 5; // pixels

// Pixel of the mark of `value`, which the style's handle has its middle over.
int tick_pos(qint64 value, const QSlider &slider, int span, int handle)
{
    const double minimum = slider.minimum();
    const double share = (value - minimum) / (slider.maximum() - minimum);
    return static_cast<int>(std::round(share * span + handle * 0.5) - 1);
}
} // namespace

RZSlider::RZSlider(QWidget *parent)
    : RZSlider(Qt::Vertical, parent)
{
}

RZSlider::RZSlider(Qt::Orientation orientation, QWidget *parent)
    : QSlider(orientation, parent)
{
    setTickPosition(QSlider::TicksBothSides);
    setTickInterval(default_interval);
}

void RZSlider::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QStyleOptionSlider option;
    initStyleOption(&option);

    if (tickPosition() != QSlider::NoTicks)
        paint_ticks(painter, option);

    for (const QStyle::SubControl control : {QStyle::SC_SliderGroove, QStyle::SC_SliderHandle}) {
        option.subControls = control;
        style()->drawComplexControl(QStyle::CC_Slider, &option, &painter, this);
    }
}

void RZSlider::paint_ticks(QPainter &painter, const QStyleOptionSlider &option) const
{
    const int interval = tickInterval() ? tickInterval() : pageStep();
    if (interval <= 0 || minimum() == maximum())
        return;

    const QRect rect = style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    const bool horizontal = orientation() == Qt::Horizontal;
    const int handle = horizontal ? rect.width() : rect.height();
    const int span = (horizontal ? width() : height()) - handle;

    painter.setPen(tick_colour);
    for (qint64 value = minimum(); value <= maximum(); value += interval)
        paint_tick(painter, tick_pos(value, *this, span, handle));
}

void RZSlider::paint_tick(QPainter &painter, int pos) const
{
    const int far_edge = (orientation() == Qt::Horizontal ? height() : width()) - 1;
    const auto paint_mark = [&](int from, int to) {
        if (orientation() == Qt::Horizontal)
            painter.drawLine(pos, from, pos, to);
        else
            painter.drawLine(from, pos, to, pos);
    };

    // Only the left marks of a vertical slider are shifted, which is meant.
    const int shift = orientation() == Qt::Vertical ? vertical_shift : 0;
    if (tickPosition() & QSlider::TicksAbove)
        paint_mark(tick_near - shift, tick_far - shift);
    if (tickPosition() & QSlider::TicksBelow)
        paint_mark(far_edge - tick_near, far_edge - tick_far);
}
