// SPDX-License-Identifier: MIT
#include "simulator/tcp_link.h"

#include <QTcpSocket>
#include <sys/socket.h>

#include "simulator/channel_record.h"
#include "simulator/monotonic.h"

namespace
{
constexpr int longest_line = 65536; // a peer that never ends its line is not kept for ever
} // namespace

void cut_socket(QTcpSocket *socket, Cut_How how)
{
    if (how == Cut_How::fin) {
        socket->disconnectFromHost();
        return;
    }
    const linger none{1, 0}; // to close without lingering is what makes it a reset
    setsockopt(int(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &none, sizeof none);
    socket->abort();
}

Tcp_Link::Tcp_Link(QTcpSocket *socket, int id, Channel_Record &record, QObject *parent)
    : QObject(parent)
    , socket(socket)
    , number(id)
    , record(record)
{
    socket->setParent(this);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    connect(&timer, &QTimer::timeout, this, &Tcp_Link::send_due);
    connect(socket, &QTcpSocket::readyRead, this, &Tcp_Link::read);
    connect(socket, &QTcpSocket::disconnected, this, [this] {
        timer.stop();
        output.clear();
        emit closed(this);
    });
    record.opened();
}

void Tcp_Link::send(const QByteArray &bytes, int delay_ms)
{
    enqueue(bytes, delay_ms, std::nullopt);
}

void Tcp_Link::send_bytewise(const QByteArray &bytes, int delay_ms, int gap_ms)
{
    for (int i = 0; i < bytes.size(); i++)
        enqueue(bytes.mid(i, 1), delay_ms + i * gap_ms, std::nullopt);
}

void Tcp_Link::cut_behind_output(Cut_How how)
{
    cutting = true;
    enqueue(QByteArray(), 0, how);
}

void Tcp_Link::cut_now(Cut_How how)
{
    cutting = true;
    cut_socket(socket, how);
}

void Tcp_Link::enqueue(const QByteArray &bytes, int delay_ms, std::optional<Cut_How> cut)
{
    qint64 due = monotonic_us() + qint64(delay_ms) * 1000;
    if (!output.empty() && output.back().due_us > due)
        due = output.back().due_us;
    output.push_back({due, bytes, cut});
    send_due();
}

void Tcp_Link::send_due()
{
    while (!output.empty() && output.front().due_us <= monotonic_us()) {
        const Piece piece = output.front();
        output.pop_front();
        if (piece.cut) {
            cut_socket(socket, *piece.cut);
            return;
        }
        record.moved(number, false, piece.bytes);
        socket->write(piece.bytes);
        socket->flush();
    }
    if (!output.empty())
        timer.start(int((output.front().due_us - monotonic_us()) / 1000 + 1));
}

void Tcp_Link::set_deaf(bool now_deaf)
{
    deaf = now_deaf;
    socket->setReadBufferSize(deaf ? 1 : read_size);
    if (!deaf)
        read();
}

void Tcp_Link::set_read_size(int bytes)
{
    read_size = bytes;
    set_deaf(deaf);
}

void Tcp_Link::read()
{
    if (deaf)
        return;
    const QByteArray bytes = socket->readAll();
    if (bytes.isEmpty())
        return;
    record.moved(number, true, bytes);
    unfinished += bytes;
    take_lines();
}

void Tcp_Link::take_lines()
{
    int end = 0;
    while (!cutting && (end = unfinished.indexOf('\n')) >= 0) {
        const QByteArray line = unfinished.left(end + 1);
        unfinished.remove(0, end + 1);
        record.line_came(number, line);
        emit line_came(this, line);
    }
    if (unfinished.size() > longest_line)
        cut_now(Cut_How::rst);
    else if (!cutting && !unfinished.isEmpty())
        emit begin_came(this, unfinished);
}
