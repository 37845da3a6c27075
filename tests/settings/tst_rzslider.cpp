// SPDX-License-Identifier: MIT
#include <QImage>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOptionSlider>
#include <QtTest>

#include "settings/rzslider.h"

// A style with a handle of a known length at the low end, both in a plain colour, so that what a slider
// paints by itself can be told to the pixel.
class Plain_Style : public QProxyStyle
{
public:
    explicit Plain_Style(int handle)
        : QProxyStyle("fusion")
        , handle(handle)
    {
    }

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                         const QWidget *widget) const override
    {
        const auto *slider = qstyleoption_cast<const QStyleOptionSlider *>(option);
        const QSize size = option->rect.size();
        if (control != CC_Slider || part != SC_SliderHandle)
            return QProxyStyle::subControlRect(control, option, part, widget);
        return slider->orientation == Qt::Horizontal ? QRect(0, 0, handle, size.height())
                                                     : QRect(0, 0, size.width(), handle);
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override
    {
        painted.append(option->subControls);
        if (cover && option->subControls == SC_SliderHandle)
            painter->fillRect(subControlRect(control, option, SC_SliderHandle, widget), Qt::red);
        if (cover && option->subControls == SC_SliderGroove)
            painter->fillRect(QRect(100, 0, 50, option->rect.height()), Qt::blue);
    }

    int handle;
    bool cover = false; // paint at all; else only note what was asked for
    mutable QList<QStyle::SubControls> painted;
};

using Pixels = QSet<QPair<int, int>>;

// The pixels of lines across `positions`, from `from` to `to` and both included.
static Pixels marks(const QList<int> &positions, int from, int to,
                    Qt::Orientation orientation = Qt::Horizontal)
{
    Pixels pixels;
    for (const int pos : positions)
        for (int across = from; across <= to; ++across)
            pixels.insert(orientation == Qt::Horizontal ? qMakePair(pos, across) : qMakePair(across, pos));
    return pixels;
}

static QImage painted_image(RZSlider &slider)
{
    QImage image(slider.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    slider.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

// All pixels of the tick colour.
static Pixels tick_pixels(RZSlider &slider)
{
    const QImage image = painted_image(slider);
    Pixels pixels;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) == qRgb(0xa5, 0xa2, 0x94))
                pixels.insert({x, y});
    return pixels;
}

static QList<int> every(int distance, int first, int count)
{
    QList<int> positions;
    for (int index = 0; index < count; ++index)
        positions.append(first + index * distance);
    return positions;
}

class tst_rzslider : public QObject
{
    Q_OBJECT

private slots:
    void both_constructors_set_ticks_on_both_sides_every_10();
    void range_0_to_100_has_11_ticks_on_each_side_at_the_middle_of_the_handle();
    void positions_are_rounded_to_the_nearest_pixel();
    void a_half_pixel_is_rounded_up_before_the_one_is_taken_away();
    void the_range_may_start_anywhere_data();
    void the_range_may_start_anywhere();
    void a_last_step_past_the_maximum_has_no_tick();
    void interval_0_takes_the_page_step();
    void one_side_alone_has_its_own_ticks();
    void no_ticks_are_painted_where_none_are_wanted();
    void vertical_ticks_on_the_left_are_5_pixels_further_out();
    void nothing_but_ticks_is_painted_beside_the_style();
    void groove_is_painted_first_then_the_handle_both_over_the_ticks();
    void an_empty_range_has_no_ticks();
    void an_empty_step_has_no_ticks();
    void the_widest_range_is_painted();
    void tick_offsets_are_taken_from_the_fields();
    void has_no_signals_or_slots_of_its_own();
};

void tst_rzslider::both_constructors_set_ticks_on_both_sides_every_10()
{
    QWidget parent;
    const RZSlider plain(&parent);
    const RZSlider horizontal(Qt::Horizontal, &parent);
    for (const RZSlider *slider : {&plain, &horizontal}) {
        QCOMPARE(slider->parentWidget(), &parent);
        QCOMPARE(slider->tick_near, 22);
        QCOMPARE(slider->tick_far, 27);
        QCOMPARE(slider->tickPosition(), QSlider::TicksBothSides);
        QCOMPARE(slider->tickInterval(), 10);
    }
    QCOMPARE(plain.orientation(), Qt::Vertical);
    QCOMPARE(horizontal.orientation(), Qt::Horizontal);
}

void tst_rzslider::range_0_to_100_has_11_ticks_on_each_side_at_the_middle_of_the_handle()
{
    Plain_Style style(15);
    RZSlider slider(Qt::Horizontal, nullptr);
    slider.setStyle(&style);
    slider.setRange(0, 100);
    slider.resize(215, 100);
    const QList<int> positions = {7, 27, 47, 67, 87, 107, 127, 147, 167, 187, 207};
    QCOMPARE(tick_pixels(slider), marks(positions, 22, 27) + marks(positions, 72, 77));
}

void tst_rzslider::positions_are_rounded_to_the_nearest_pixel()
{
    Plain_Style style(20);
    RZSlider slider(Qt::Horizontal, nullptr);
    slider.setStyle(&style);
    slider.setRange(0, 100);
    slider.resize(333, 100);
    // 31.3 pixels each
    const QList<int> positions = {9, 40, 72, 103, 134, 166, 197, 228, 259, 291, 322};
    QCOMPARE(tick_pixels(slider), marks(positions, 22, 27) + marks(positions, 72, 77));
}

void tst_rzslider::a_half_pixel_is_rounded_up_before_the_one_is_taken_away()
{
    Plain_Style style(1); // its middle is at half a pixel
    RZSlider slider(Qt::Horizontal, nullptr);
    slider.setStyle(&style);
    slider.setRange(0, 100);
    slider.resize(101, 100);
    const QList<int> positions = every(10, 0, 11);
    QCOMPARE(tick_pixels(slider), marks(positions, 22, 27) + marks(positions, 72, 77));
}

void tst_rzslider::the_range_may_start_anywhere_data()
{
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("interval");
    QTest::addColumn<QList<int>>("positions");
    QTest::newRow("crossover") << 30 << 180 << 10 << every(20, 9, 16);
    QTest::newRow("high-pass") << 20 << 40 << 10 << QList<int>{9, 159, 309};
    QTest::newRow("phase") << 0 << 180 << 30 << every(50, 9, 7);
    QTest::newRow("below zero") << -24 << 6 << 6 << every(60, 9, 6);
}

void tst_rzslider::the_range_may_start_anywhere()
{
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    QFETCH(int, interval);
    QFETCH(QList<int>, positions);
    Plain_Style style(20);
    RZSlider slider(Qt::Horizontal, nullptr);
    slider.setStyle(&style);
    slider.setRange(minimum, maximum);
    slider.setTickInterval(interval);
    slider.resize(320, 100);
    QCOMPARE(tick_pixels(slider), marks(positions, 22, 27) + marks(positions, 72, 77));
}

void tst_rzslider::a_last_step_past_the_maximum_has_no_tick()
{
    Plain_Style style(20);
    RZSlider slider(Qt::Horizontal, nullptr);
    slider.setStyle(&style);
    slider.setRange(0, 25);
    slider.resize(270, 100);
    const QList<int> positions = {9, 109, 209};
    QCOMPARE(tick_pixels(slider), marks(positions, 22, 27) + marks(positions, 72, 77));
}

void tst_rzslider::interval_0_takes_the_page_step()
{
    Plain_Style style(15);
    RZSlider slider(Qt::Horizontal, nullptr);
    slider.setStyle(&style);
    slider.setRange(0, 100);
    slider.setTickInterval(0);
    slider.setPageStep(10);
    slider.resize(215, 100);
    const QList<int> positions = every(20, 7, 11);
    QCOMPARE(tick_pixels(slider), marks(positions, 22, 27) + marks(positions, 72, 77));

    slider.setPageStep(50);
    QCOMPARE(tick_pixels(slider), marks({7, 107, 207}, 22, 27) + marks({7, 107, 207}, 72, 77));
}

void tst_rzslider::one_side_alone_has_its_own_ticks()
{
    Plain_Style style(15);
    RZSlider slider(Qt::Horizontal, nullptr);
    slider.setStyle(&style);
    slider.setRange(0, 100);
    slider.resize(215, 100);
    slider.setTickPosition(QSlider::TicksAbove);
    QCOMPARE(tick_pixels(slider), marks(every(20, 7, 11), 22, 27));
    slider.setTickPosition(QSlider::TicksBelow);
    QCOMPARE(tick_pixels(slider), marks(every(20, 7, 11), 72, 77));
}

void tst_rzslider::no_ticks_are_painted_where_none_are_wanted()
{
    Plain_Style style(15);
    RZSlider slider(Qt::Horizontal, nullptr);
    slider.setStyle(&style);
    slider.setTickPosition(QSlider::NoTicks);
    slider.resize(215, 100);
    QCOMPARE(tick_pixels(slider), Pixels());
    QCOMPARE(style.painted.size(), 2);
}

void tst_rzslider::vertical_ticks_on_the_left_are_5_pixels_further_out()
{
    Plain_Style style(15);
    RZSlider slider(nullptr);
    slider.setStyle(&style);
    slider.setRange(0, 100);
    slider.resize(100, 215);
    const QList<int> positions = every(20, 7, 11);
    const Pixels left = marks(positions, 17, 22, Qt::Vertical);
    const Pixels right = marks(positions, 72, 77, Qt::Vertical);
    QCOMPARE(tick_pixels(slider), left + right);
    slider.setTickPosition(QSlider::TicksLeft);
    QCOMPARE(tick_pixels(slider), left);
    slider.setTickPosition(QSlider::TicksRight);
    QCOMPARE(tick_pixels(slider), right);
}

void tst_rzslider::nothing_but_ticks_is_painted_beside_the_style()
{
    Plain_Style style(15);
    RZSlider slider(Qt::Horizontal, nullptr);
    slider.setStyle(&style);
    slider.setRange(0, 100);
    slider.resize(215, 100);
    const int ticks = tick_pixels(slider).size();

    const QImage image = painted_image(slider);
    int other_than_white = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            other_than_white += image.pixel(x, y) != qRgb(255, 255, 255);
    QCOMPARE(other_than_white, ticks);
}

void tst_rzslider::groove_is_painted_first_then_the_handle_both_over_the_ticks()
{
    Plain_Style style(15);
    style.cover = true;
    RZSlider slider(Qt::Horizontal, nullptr);
    slider.setStyle(&style);
    slider.setRange(0, 100);
    slider.resize(215, 100);
    // The handle covers the first tick, the groove those at 107, 127 and 147.
    const QList<int> uncovered = {27, 47, 67, 87, 167, 187, 207};
    QCOMPARE(tick_pixels(slider), marks(uncovered, 22, 27) + marks(uncovered, 72, 77));

    const QList<QStyle::SubControls> order = {QStyle::SC_SliderGroove, QStyle::SC_SliderHandle};
    QCOMPARE(style.painted, order);
}

void tst_rzslider::an_empty_range_has_no_ticks()
{
    Plain_Style style(15);
    RZSlider slider(Qt::Horizontal, nullptr);
    slider.setStyle(&style);
    slider.setRange(5, 5);
    slider.resize(215, 100);
    QCOMPARE(tick_pixels(slider), Pixels());
    QCOMPARE(style.painted.size(), 2);
}

void tst_rzslider::an_empty_step_has_no_ticks()
{
    Plain_Style style(15);
    RZSlider slider(Qt::Horizontal, nullptr);
    slider.setStyle(&style);
    slider.setRange(0, 100);
    slider.setTickInterval(0);
    slider.setPageStep(0);
    slider.resize(215, 100);
    QCOMPARE(tick_pixels(slider), Pixels());
    QCOMPARE(style.painted.size(), 2);
}

void tst_rzslider::the_widest_range_is_painted()
{
    constexpr int lowest = std::numeric_limits<int>::min();
    constexpr int highest = std::numeric_limits<int>::max();
    Plain_Style style(15);
    RZSlider slider(Qt::Horizontal, nullptr);
    slider.setStyle(&style);
    slider.setRange(lowest, highest);
    slider.setTickInterval(highest); // two whole steps, and a rest of 1
    slider.resize(215, 100);
    QCOMPARE(tick_pixels(slider), marks({7, 106, 206}, 22, 27) + marks({7, 106, 206}, 72, 77));
}

void tst_rzslider::tick_offsets_are_taken_from_the_fields()
{
    Plain_Style style(15);
    RZSlider slider(Qt::Horizontal, nullptr);
    slider.setStyle(&style);
    slider.setRange(0, 100);
    slider.resize(215, 100);
    slider.tick_near = 3;
    slider.tick_far = 5;
    const QList<int> positions = every(20, 7, 11);
    QCOMPARE(tick_pixels(slider), marks(positions, 3, 5) + marks(positions, 94, 96));
}

void tst_rzslider::has_no_signals_or_slots_of_its_own()
{
    const QMetaObject &meta = RZSlider::staticMetaObject;
    QCOMPARE(meta.className(), "RZSlider");
    QCOMPARE(meta.methodCount(), meta.methodOffset());
}

QTEST_MAIN(tst_rzslider)
#include "tst_rzslider.moc"
