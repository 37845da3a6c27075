// SPDX-License-Identifier: MIT
#include "update/web_file.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QNetworkAccessManager>
#include <QTextStream>

#include "settings/info_box.h"

namespace
{
// The literal with as many of its first characters skipped as the error's number says, which is meant;
// nothing is left of it for an error beyond its length.
QString other_error_text(QNetworkReply::NetworkError error)
{
    return QString("Other Error: ").mid(error);
}

QString error_text(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::HostNotFoundError:
        return "Error: Host not found!\nAre you in the WLAN of your VIRELO Air?";
    case QNetworkReply::ContentNotFoundError:
        return "Error: File could not be found!";
    default:
        return other_error_text(error);
    }
}
} // namespace

Web_File::Web_File(QObject *parent)
    : QObject(parent)
{
}

void Web_File::get_size(QString url)
{
    manager = new QNetworkAccessManager;
    connect(manager, &QNetworkAccessManager::finished, this, &Web_File::httpResponseFinished);
    manager->head(QNetworkRequest(QUrl(url)));
}

void Web_File::httpResponseFinished(QNetworkReply *reply)
{
    const QNetworkReply::NetworkError error = reply->error();
    if (error == QNetworkReply::NoError) {
        const int size = reply->header(QNetworkRequest::ContentLengthHeader).toInt();
        qDebug() << "NO ERR! File Size is " << size << " Bytes";
        emit fileSizeFinished(size);
    } else {
        if (error == QNetworkReply::ContentNotFoundError)
            qDebug() << "ERROR " << reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        else
            qDebug() << "Other ERROR: " << error;
        show_info_box(nullptr, tr("Update"), error_text(error), tr("OK"));
        emit fileSizeError();
    }
    manager->deleteLater();
}

void Web_File::download(QString url)
{
    this->url = url;
    manager = new QNetworkAccessManager;
    reply = manager->get(QNetworkRequest(QUrl(url)));
    connect(reply, &QNetworkReply::errorOccurred, this, &Web_File::error);
    connect(reply, &QNetworkReply::downloadProgress, this, &Web_File::updateProgress);
    connect(reply, &QNetworkReply::finished, this, &Web_File::finished);
}

// Nothing is released yet: the reply learns of its end in a further event, and deleted before it would never
// finish.
void Web_File::error(QNetworkReply::NetworkError)
{
    emit downloadFileError(url);
}

void Web_File::updateProgress(qlonglong, qlonglong) {}

void Web_File::finished()
{
    const QByteArray bytes = reply->readAll();
    const QString path = QDir::tempPath() + "/host.hex";
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(bytes);
        file.close();
    }
    reply->deleteLater();
    manager->deleteLater();
    count_lines(path);
    emit downloadFileFinished(path, lines);
}

void Web_File::count_lines(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    QTextStream stream(&file);
    while (!stream.atEnd()) {
        stream.readLine();
        ++lines;
    }
    file.close();
    qDebug() << "Total " << lines << " lines";
}
