// SPDX-License-Identifier: MIT
#pragma once

class QByteArray;
class QJsonObject;
class QNetworkAccessManager;
class QNetworkReply;
class QObject;
class QString;

// The one way in which anything is asked of a speaker's JSON API. GUI thread only.

// Posts `body` as UTF-8 to `url`, with `content_type` and a header "charset" of its own. `slot` is SLOT(...)
// of `owner` for the QNetworkReply*, called once, whatever comes; a silent speaker leaves it open for ever.
// Each request has a manager of its own, so that none queues behind another; it is freed with its reply after
// the slot has run, or with `owner`. Of a reply of more than 1 MB only its end is kept, which is no JSON.
QNetworkAccessManager *post_json(QObject *owner, const QString &url, const QString &body,
                                 const char *content_type, const char *slot);

// The object of a document; false, with a log line, when the bytes are no JSON or the object is empty.
bool read_json_object(const QByteArray &bytes, QJsonObject &object);

// The same for all that is left of a reply, whose text is logged first, behind `words` and up to the first
// NUL. Empty where the reply cannot be used.
QJsonObject read_json_reply(QNetworkReply *reply, const char *words);
