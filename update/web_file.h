// SPDX-License-Identifier: MIT
#pragma once

#include <QNetworkReply>
#include <QObject>
#include <QString>

class QNetworkAccessManager;

// One job with the firmware download server: either the size of a file (HEAD), or the file itself (GET),
// fetched into the temporary folder and counted. Redirects are not followed. GUI thread only; the object
// serves one job and is never deleted, only what it asked the network with is.
//
// A failed size request is told to the user here. A failed download gives both signals, the error first: what
// there was of a body has then been written all the same, which is meant.
class Web_File : public QObject
{
    Q_OBJECT

public:
    explicit Web_File(QObject *parent = nullptr);

    void get_size(QString url);
    void download(QString url);

    QNetworkAccessManager *manager = nullptr;
    QString url;                    // of the running download
    QNetworkReply *reply = nullptr; // of the running download
    int lines = -1;                 // so that one less than the lines read comes out: meant

signals:
    void fileSizeFinished(int filesize); // bytes; 0 from a server that tells none
    void fileSizeError();
    void downloadFileFinished(QString filename, int lines);
    void downloadFileError(QString filename); // carries the URL

private slots:
    void error(QNetworkReply::NetworkError err);
    void updateProgress(qlonglong read, qlonglong total); // empty: the download shows no progress
    void finished();
    void httpResponseFinished(QNetworkReply *reply);

private:
    void count_lines(const QString &path);
};
