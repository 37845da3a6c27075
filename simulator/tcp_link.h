// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QObject>
#include <QTimer>
#include <deque>
#include <optional>

#include "simulator/speaker_faults.h"

class Channel_Record;
class QTcpSocket;

// One accepted connection of a line-based port. Splits what comes in at line feeds and sends what it is given
// in order, each piece no sooner than its delay. Belongs to the speaker's thread. After closed() it is of no
// use; its port deletes it.
class Tcp_Link : public QObject
{
    Q_OBJECT

public:
    Tcp_Link(QTcpSocket *socket, int id, Channel_Record &record, QObject *parent);

    int id() const { return number; }
    void send(const QByteArray &bytes, int delay_ms = 0);
    void send_bytewise(const QByteArray &bytes, int delay_ms, int gap_ms);
    void cut_behind_output(Cut_How how); // cuts when all that was sent before has left; takes no more lines
    void cut_now(Cut_How how);
    void set_deaf(bool deaf);      // stops reading; what has come by then and later waits in the system
    void set_read_size(int bytes); // so many at a time, while the others wait in the system; 0: all

signals:
    void line_came(Tcp_Link *link, const QByteArray &line);
    void begin_came(Tcp_Link *link, const QByteArray &begin); // of a line whose end has not been read yet
    void closed(Tcp_Link *link);

private:
    struct Piece {
        qint64 due_us;
        QByteArray bytes;
        std::optional<Cut_How> cut;
    };
    void enqueue(const QByteArray &bytes, int delay_ms, std::optional<Cut_How> cut);
    void send_due();
    void read();
    void take_lines();

    QTcpSocket *socket;
    int number;
    Channel_Record &record;
    QByteArray unfinished; // what has come behind the last line feed
    std::deque<Piece> output;
    QTimer timer;
    bool cutting = false;
    bool deaf = false;
    int read_size = 0;
};

// Ends a connection at once: in order, or by a reset that the other side sees as an error.
void cut_socket(QTcpSocket *socket, Cut_How how);
