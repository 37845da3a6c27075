// SPDX-License-Identifier: MIT
#include "tests/resources/compiled_catalogue.h"

#include <QDataStream>

namespace
{

const QByteArray magic = QByteArray::fromHex("3cb86418caef9c95cd211cbf60a1bddd");

enum Section : quint8 { Hashes = 0x42, Messages = 0x69 };
enum Tag : quint8 { End = 1, Translation = 3, Source_Text = 6, Context = 7, Comment = 8 };

const int hash_entry_size = 8; // hash and offset

// A block is a 32-bit length in network order and that many bytes; the length -1 stands for none.
QByteArray block(QDataStream &stream)
{
    QByteArray bytes;
    stream >> bytes;
    return bytes;
}

QString from_utf16(const QByteArray &bytes)
{
    QString text;
    for (int i = 0; i + 1 < bytes.size(); i += 2)
        text.append(QChar(uchar(bytes[i + 1]), uchar(bytes[i])));
    return text;
}

} // namespace

Compiled_Catalogue::Compiled_Catalogue(const QByteArray &file)
{
    if (!file.startsWith(magic))
        return;
    QDataStream stream(file.mid(magic.size()));
    readable = true;
    while (readable && !stream.atEnd()) {
        quint8 kind = 0;
        stream >> kind;
        const QByteArray section = block(stream);
        readable = stream.status() == QDataStream::Ok;
        if (kind == Hashes)
            hash_entries = section.size() / hash_entry_size;
        else if (kind == Messages)
            readable = readable && read_messages(section);
    }
}

bool Compiled_Catalogue::read_messages(const QByteArray &section)
{
    QDataStream stream(section);
    Message_Key key;
    QString translation;
    while (!stream.atEnd() && stream.status() == QDataStream::Ok) {
        quint8 tag = 0;
        stream >> tag;
        switch (tag) {
        case End:
            messages.insert(key, translation);
            key = Message_Key();
            translation.clear();
            break;
        case Translation:
            translation = from_utf16(block(stream));
            break;
        case Source_Text:
            key.second = block(stream);
            break;
        case Context:
            key.first = block(stream);
            break;
        case Comment:
            block(stream);
            break;
        default:
            return false;
        }
    }
    return stream.status() == QDataStream::Ok;
}

QList<QByteArray> Compiled_Catalogue::keys(const QByteArray &context) const
{
    QList<QByteArray> found;
    for (const Message_Key &key : messages.keys()) {
        if (key.first == context)
            found.append(key.second);
    }
    return found;
}
