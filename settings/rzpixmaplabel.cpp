// SPDX-License-Identifier: MIT
#include "settings/rzpixmaplabel.h"

#include "settings/picture_cache.h"

RZPixmapLabel::RZPixmapLabel(QWidget *parent)
    : QLabel(parent)
{
    // Without this the label would never shrink below the picture.
    setMinimumSize(1, 1);
    setScaledContents(false);
}

void RZPixmapLabel::setPixmap(const QPixmap &p)
{
    source_pixmap = p;
    QLabel::setPixmap(scaled_pixmap());
}

QPixmap RZPixmapLabel::scaled_pixmap() const
{
    // Scaling a null picture gives a null picture as well, but with a warning.
    if (source_pixmap.isNull())
        return QPixmap();
    const QString name = QString("%1 at %2x%3").arg(source_pixmap.cacheKey()).arg(width()).arg(height());
    return cached_picture(
        name, [this] { return source_pixmap.scaled(size(), Qt::KeepAspectRatio, Qt::SmoothTransformation); });
}

int RZPixmapLabel::heightForWidth(int width) const
{
    if (source_pixmap.isNull())
        return height();
    return static_cast<int>(static_cast<double>(source_pixmap.height()) * width / source_pixmap.width());
}

QSize RZPixmapLabel::sizeHint() const
{
    return {width(), heightForWidth(width())};
}

void RZPixmapLabel::resizeEvent(QResizeEvent *)
{
    if (!source_pixmap.isNull())
        QLabel::setPixmap(scaled_pixmap());
}
