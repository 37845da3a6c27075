// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

class QMovie;

// A label that shows the busy movie. The movie runs while the label is visible and only then: a hidden movie
// would still wake the process at every frame. What lies below it can be clicked through it. GUI thread only;
// without the movie's file the label stays empty.
class Busy_Label : public QLabel
{
    Q_OBJECT

public:
    explicit Busy_Label(QWidget *parent); // starts hidden

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
};
