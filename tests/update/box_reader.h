// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QMessageBox>
#include <QStringList>
#include <functional>

#include "tests/overview/modal_user.h"

// Answers the next message box with its first button, and keeps what it said. GUI thread only.
class Box_Reader
{
public:
    // `meanwhile` runs while the box is open, before the answer.
    explicit Box_Reader(const std::function<void()> &meanwhile = nullptr)
        : meanwhile(meanwhile)
    {
    }

    bool met() const { return user.met; }
    QStringList seen() const { return QStringList{title, text} + buttons; }

    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QWidget *parent = nullptr;
    QString title;
    QString text;
    QStringList buttons;

private:
    void read(QMessageBox *box)
    {
        icon = box->icon();
        parent = box->parentWidget();
        title = box->windowTitle();
        text = box->text();
        for (const QAbstractButton *button : box->buttons())
            buttons += button->text();
        if (meanwhile)
            meanwhile();
        box->buttons().constFirst()->click();
    }

    std::function<void()> meanwhile;
    Modal_User<QMessageBox> user{[this](QMessageBox *box) { read(box); }};
};
