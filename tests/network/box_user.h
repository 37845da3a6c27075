// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QMessageBox>
#include <functional>

#include "tests/overview/modal_user.h"

// Reads the next message box and clicks its first button. GUI thread only.
class Box_User
{
public:
    // `meanwhile` runs while the box is open, before the click.
    explicit Box_User(const std::function<void()> &meanwhile = nullptr)
        : user([this, meanwhile](QMessageBox *box) {
            title = box->windowTitle();
            text = box->text();
            icon = box->icon();
            parent = box->parentWidget();
            for (const QAbstractButton *button : box->buttons())
                buttons.append(button->text());
            if (meanwhile)
                meanwhile();
            QTest::mouseClick(box->buttons().first(), Qt::LeftButton);
            answered = true;
        })
    {
    }

    // Title, text, then the buttons.
    QStringList seen() const { return QStringList{title, text} + buttons; }

    QString title;
    QString text;
    QStringList buttons;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QWidget *parent = nullptr;
    bool answered = false;

private:
    Modal_User<QMessageBox> user;
};
