// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <Qt>

class QGridLayout;
class QLabel;
class QWidget;

// Where things stand in a grid.

QList<int> place_of(QGridLayout *grid, QWidget *widget); // row, column, row span, column span; or empty
Qt::Alignment alignment_of(QGridLayout *grid, QWidget *widget);
QList<QWidget *> widgets_at(QGridLayout *grid, int row, int column); // that begin there, in order of adding
QLabel *label_at(QGridLayout *grid, int row, int column);            // the first of them, where it is a label
QString text_at(QGridLayout *grid, int row, int column);             // its text; null where there is none
