// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>

using Message_Key = QPair<QByteArray, QByteArray>; // context and source text, both UTF-8

// Reads a compiled catalogue message by message, which QTranslator does not offer: it only answers for a
// known key. Bytes that are no catalogue leave `readable` false and the rest empty.
class Compiled_Catalogue
{
public:
    explicit Compiled_Catalogue(const QByteArray &file);

    QList<QByteArray> keys(const QByteArray &context) const;

    bool readable = false;
    int hash_entries = 0; // messages that a look-up can find, by the length of the hash section
    QMap<Message_Key, QString> messages;

private:
    bool read_messages(const QByteArray &section);
};
