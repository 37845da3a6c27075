// SPDX-License-Identifier: MIT
#include "tests/e2e/probe/probe_input.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHash>
#include <QJsonObject>
#include <QKeySequence>
#include <QTest>
#include <QWidget>
#include <QWindow>

namespace
{
const QHash<QString, QTest::MouseAction> mouse_actions{{"press", QTest::MousePress},
                                                       {"release", QTest::MouseRelease},
                                                       {"click", QTest::MouseClick},
                                                       {"double_click", QTest::MouseDClick},
                                                       {"move", QTest::MouseMove}};

QPoint place_on_screen(const QJsonObject &request, const QWidget *widget)
{
    if (!request.contains("x"))
        return widget->mapToGlobal(widget->rect().center());
    return {request.value("x").toInt(), request.value("y").toInt()};
}

// A release and a move may lie outside: a user can drag away from what he pressed.
bool must_hit(const QString &what)
{
    return what == "press" || what == "click" || what == "double_click";
}

void deliver_key(QWindow *window, int key_and_modifiers)
{
    const auto modifiers = Qt::KeyboardModifiers(key_and_modifiers & int(Qt::KeyboardModifierMask));
    QTest::keyClick(window, static_cast<Qt::Key>(key_and_modifiers & ~int(Qt::KeyboardModifierMask)),
                    modifiers);
}

void deliver_text(QWindow *window, const QString &text)
{
    for (const QChar character : text) {
        const int key = character.toUpper().unicode();
        QTest::sendKeyEvent(QTest::Click, window, static_cast<Qt::Key>(key), QString(character),
                            Qt::NoModifier);
    }
}
} // namespace

bool is_input(const QJsonObject &request)
{
    const QString what = request.value("do").toString();
    return what == "key" || what == "type" || what == "close" || mouse_actions.contains(what);
}

QString input_refusal(const QJsonObject &request, QWidget *widget)
{
    if (!widget)
        return "there is no such widget";
    if (!widget->isVisible() || !widget->window()->windowHandle())
        return "the widget is not visible";
    const QString what = request.value("do").toString();
    if (what == "key" && QKeySequence(request.value("key").toString()).isEmpty())
        return "there is no such key";
    if (what == "close" && !widget->isWindow())
        return "only a window has a frame";
    const QWidget *modal = QApplication::activeModalWidget();
    if (what == "close" && modal && modal != widget)
        return "another window must be answered first";
    if (!must_hit(what))
        return {};
    QWidget *window = widget->window();
    const QPoint place = window->mapFromGlobal(place_on_screen(request, widget));
    QWidget *hit = window->childAt(place);
    if (!hit && window->rect().contains(place))
        hit = window;
    if (!hit || (hit != widget && !widget->isAncestorOf(hit)))
        return "the widget is not what lies at that place";
    return {};
}

void deliver_input(const QJsonObject &request, QWidget *widget)
{
    const QString what = request.value("do").toString();
    QWindow *window = widget->window()->windowHandle();
    if (what == "key") {
        deliver_key(window, QKeySequence(request.value("key").toString())[0]);
    } else if (what == "type") {
        deliver_text(window, request.value("text").toString());
    } else if (what == "close") {
        QCloseEvent event;
        QCoreApplication::sendEvent(window, &event);
    } else {
        const QPoint place = window->mapFromGlobal(place_on_screen(request, widget));
        QTest::mouseEvent(mouse_actions.value(what), window, Qt::LeftButton, Qt::NoModifier, place);
    }
}
