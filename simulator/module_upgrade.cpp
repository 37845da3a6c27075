// SPDX-License-Identifier: MIT
#include "simulator/module_upgrade.h"

#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

namespace
{
// The way of an upgrade: which number is told, and which forced errors come up there.
struct Stage {
    const char *status;
    const char *errors;
};

constexpr Stage stages[] = {
    {"1", "12"}, // downloading
    {"2", ""},   // download finished
    {"3", "4"},  // updating
    {"4", "3"},  // checksum verification
    {"6", ""},   // done
};
constexpr int last_stage = 4;
constexpr const char *failed_status = "5";

constexpr const char *user_agent = "VIRELO Air module"; // by which a server tells it from others
constexpr const char *not_running = "-1";
constexpr const char *no_error = "0";
constexpr const char *no_file = "1";
constexpr const char *download_error = "2";
constexpr const char *checksum_error = "3";

// Where a forced error comes up: at its own stage, and any other one at once.
int stage_of_error(const QString &errinfo)
{
    for (int i = 0; i < last_stage; i++)
        if (errinfo.size() == 1 && QLatin1String(stages[i].errors).contains(errinfo.at(0)))
            return i;
    return 0;
}
} // namespace

Module_Upgrade::Module_Upgrade(QObject *parent)
    : QObject(parent)
{
    manager.setProxy(QNetworkProxy::NoProxy);
}

void Module_Upgrade::start(const QString &folder, qint64 size)
{
    forget();
    stage = 0;
    wanted_size = size;
    errinfo = QString::fromLatin1(no_error);
    const QUrl url(folder + "ventaro.swu");
    emit event("-- module upgrade fetches " + url.toString());
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::UserAgentHeader, user_agent);
    QNetworkReply *reply = manager.get(request);
    running = reply;
    connect(reply, &QNetworkReply::downloadProgress, this,
            [this](qint64 done, qint64 total) { progress = total > 0 ? int(done * 100 / total) : 0; });
    connect(reply, &QNetworkReply::finished, this, [this, reply] { downloaded(reply); });
}

void Module_Upgrade::forget()
{
    if (running) {
        running->disconnect(this);
        running->abort();
        running->deleteLater();
        running = nullptr;
    }
    stage = -1;
    stage_polls = 0;
    progress = 0;
    fetched = false;
    failed = false;
}

void Module_Upgrade::downloaded(QNetworkReply *reply)
{
    running = nullptr;
    reply->deleteLater();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const qint64 size = reply->readAll().size();
    // Qt takes a reset in the middle for a good end now and then.
    const QVariant length = reply->header(QNetworkRequest::ContentLengthHeader);
    const bool broken_off = length.isValid() && length.toLongLong() != size;
    if (reply->error() == QNetworkReply::ContentNotFoundError) {
        fail(no_file);
    } else if (reply->error() != QNetworkReply::NoError || status != 200 || broken_off) {
        fail(download_error);
    } else if (size != wanted_size) {
        emit event(QString("-- module upgrade got %1 bytes, expected %2").arg(size).arg(wanted_size));
        fail(checksum_error);
    } else {
        emit event(QString("-- module upgrade got all %1 bytes").arg(size));
        fetched = true;
        progress = 100;
    }
}

void Module_Upgrade::fail(const char *why)
{
    failed = true;
    errinfo = QString::fromLatin1(why);
    emit event("-- module upgrade failed, errinfo " + errinfo);
}

QJsonObject Module_Upgrade::poll(int polls_a_stage, const QString &forced_errinfo)
{
    if (stage >= 0 && !failed) {
        if (!forced_errinfo.isEmpty() && stage == stage_of_error(forced_errinfo)) {
            fail(forced_errinfo.toLatin1().constData());
        } else if (stage_polls >= polls_a_stage && stage < last_stage && (stage > 0 || fetched)) {
            stage++;
            stage_polls = 0;
        }
    }
    stage_polls++;
    const bool none = stage < 0;
    const int shown = stage == 0 ? qMin(progress, 100 * stage_polls / qMax(1, polls_a_stage)) : progress;
    return {
        {"status", QLatin1String(none || failed ? failed_status : stages[stage].status)},
        {"errinfo", none ? QString::fromLatin1(not_running) : errinfo},
        {"downprogress", QString::number(shown)},
    };
}
