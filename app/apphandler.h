// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

// Listens for the application's state: when the application becomes active, every known speaker is pinged by
// its own worker, and nobody waits for that. GUI thread only; its parent is the application object, which it
// leaves with.
class AppHandler : public QObject
{
    Q_OBJECT

public:
    explicit AppHandler(QObject *parent);
    ~AppHandler() override;

    void pingDevice();

public slots:
    void onApplicationStateChanged(Qt::ApplicationState state);
};
