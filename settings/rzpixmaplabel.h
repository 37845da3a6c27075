// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QPixmap>

// A label that keeps a picture scaled to its own size, with its aspect ratio kept. A null picture stays null:
// nothing is shown and nothing fails. GUI thread only.
class RZPixmapLabel : public QLabel
{
    Q_OBJECT

public:
    explicit RZPixmapLabel(QWidget *parent);

    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QPixmap scaled_pixmap() const; // the picture scaled to the label

    QPixmap source_pixmap; // the picture at its full size; null until the first setPixmap

public slots:
    void setPixmap(const QPixmap &p);
    void resizeEvent(QResizeEvent *event) override;
};
