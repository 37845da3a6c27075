// SPDX-License-Identifier: MIT
#include "settings/window_picture.h"

#include <QBackingStore>
#include <QEvent>
#include <QWidget>

namespace
{
class Picture_Releaser : public QObject
{
public:
    explicit Picture_Releaser(QWidget *window)
        : QObject(window)
        , window(window)
    {
        window->installEventFilter(this);
    }

protected:
    // Qt gives the picture the size of the window again at the next show. A hide that comes from outside is
    // that of a window made small: it is about to be seen again.
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Hide && !event->spontaneous() && window->backingStore())
            window->backingStore()->resize(QSize(1, 1));
        return false;
    }

private:
    QWidget *const window;
};
} // namespace

void free_picture_when_hidden(QWidget *window)
{
    new Picture_Releaser(window);
}
