// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>
#include <QString>
#include <functional>

// The picture of that name, which `make` makes if it is not at hand. Views of the same picture share it, also
// with those that are hidden: Qt's own cache of pictures forgets within a minute what is in sight all the
// time. What was not asked for longest goes when all together take more than 16 MB. GUI thread only.
QPixmap cached_picture(const QString &name, const std::function<QPixmap()> &make);
