// SPDX-License-Identifier: MIT
#include "overview/busy_label.h"

#include <QMovie>

Busy_Label::Busy_Label(QWidget *parent)
    : QLabel(parent)
{
    hide();
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setMovie(new QMovie(":/GRAFX/ajax-loader.gif", QByteArray(), this));
    movie()->start();
    movie()->setPaused(true);
}

void Busy_Label::showEvent(QShowEvent *event)
{
    QLabel::showEvent(event);
    movie()->setPaused(false);
}

void Busy_Label::hideEvent(QHideEvent *event)
{
    QLabel::hideEvent(event);
    movie()->setPaused(true);
}
