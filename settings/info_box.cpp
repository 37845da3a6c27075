// SPDX-License-Identifier: MIT
#include "settings/info_box.h"

#include <QMessageBox>

void show_info_box(QWidget *parent, const QString &title, const QString &text, const QString &button)
{
    QMessageBox box(QMessageBox::Information, title, text, QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    box.addButton(button, QMessageBox::AcceptRole);
    box.exec();
}
