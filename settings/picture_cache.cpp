// SPDX-License-Identifier: MIT
#include "settings/picture_cache.h"

#include <QCache>

namespace
{
constexpr int most_kb = 16 * 1024;

int size_kb(const QPixmap &picture)
{
    return picture.width() * picture.height() * picture.depth() / 8 / 1024 + 1;
}
} // namespace

QPixmap cached_picture(const QString &name, const std::function<QPixmap()> &make)
{
    // Never deleted: a static object would go behind the application object, which pictures must not.
    static auto *const pictures = new QCache<QString, QPixmap>(most_kb);
    if (const QPixmap *known = pictures->object(name))
        return *known;
    const QPixmap picture = make();
    pictures->insert(name, new QPixmap(picture), size_kb(picture));
    return picture;
}
