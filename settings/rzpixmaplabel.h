// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QPixmap>

// A label that keeps a picture scaled to its own size, with its aspect ratio kept. It may be made smaller
// than the picture. A null picture stays null: nothing is shown and nothing fails. GUI thread only.
class RZPixmapLabel : public QLabel
{
    Q_OBJECT

public:
    explicit RZPixmapLabel(QWidget *parent);

    int heightForWidth(int width) const override; // the label's own height while there is no picture
    QSize sizeHint() const override;              // the label's width, and the height for it
    QPixmap scaled_pixmap() const;                // the picture scaled to the label; null without one

    QPixmap source_pixmap; // the picture at its full size; null until the first setPixmap

public slots:
    void setPixmap(const QPixmap &p);
    void resizeEvent(QResizeEvent *event) override; // the base class's handler is left out, which is meant
};
