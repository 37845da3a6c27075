// SPDX-License-Identifier: MIT
#include "settings/rzpushbutton.h"

#include <QDebug>

#include "app/globals.h"

RZPushButton::RZPushButton(const QString &text, QWidget *parent)
    : QPushButton(text, parent)
{
}

QVariant RZPushButton::inputMethodQuery(Qt::InputMethodQuery query, QVariant var)
{
    input_query_seen = true;
    qDebug()
        << "******************\nRZPushButton::inputMethodQuery(Qt::InputMethodQuery query, QVariant var)";
    qDebug() << "query" << query;
    qDebug() << "variant" << var;
    emit Hold();
    held = true;
    return true;
}
