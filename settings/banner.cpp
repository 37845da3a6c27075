// SPDX-License-Identifier: MIT
#include "settings/banner.h"

#include "app/globals.h"
#include "app/rzplattform.h"
#include "settings/picture_cache.h"
#include "settings/rzpixmaplabel.h"

namespace
{
constexpr int narrow_width_max = 2000; // device pixels
}

QString banner_path(const QString &name)
{
    const QLatin1String size(plattform->desktop_width > narrow_width_max ? "_2k" : "_640");
    return QLatin1String(":/GRAFX/") + name + size + QLatin1String(".png");
}

RZPixmapLabel *make_banner(const QString &name)
{
    auto *banner = new RZPixmapLabel(nullptr);
    const QString path = banner_path(name);
    banner->setPixmap(cached_picture(path, [&path] { return QPixmap(path); }));
    return banner;
}
