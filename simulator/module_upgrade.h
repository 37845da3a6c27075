// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QObject>
#include <QString>

class QNetworkReply;

// The upgrade of the Wi-Fi module: really fetches the file from the download server, compares its size and
// walks through the status numbers 1, 2, 3, 4, 6 as it is asked; a failure leads to 5. Belongs to the
// speaker's thread.
class Module_Upgrade : public QObject
{
    Q_OBJECT

public:
    explicit Module_Upgrade(QObject *parent);

    // Starts to fetch folder + "ventaro.swu", which should have that many bytes. A running upgrade is given
    // up.
    void start(const QString &folder, qint64 size);

    // Reply to "querystatus", all numbers as text. Each status number lasts for that many polls, and the
    // download as long as it needs. A forced errinfo that is not empty ends the upgrade where such an error
    // belongs.
    QJsonObject poll(int polls_a_stage, const QString &forced_errinfo);

    void forget(); // no upgrade is running and none was; a download is given up

signals:
    void event(const QString &text);

private:
    void downloaded(QNetworkReply *reply);
    void fail(const char *errinfo);

    QNetworkAccessManager manager;
    QNetworkReply *running = nullptr;
    qint64 wanted_size = 0;
    int stage = -1; // index into the status numbers; -1: no upgrade
    int stage_polls = 0;
    int progress = 0; // percent of the download
    bool fetched = false;
    bool failed = false;
    QString errinfo;
};
