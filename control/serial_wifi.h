// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractSocket>
#include <QByteArray>
#include <QDeadlineTimer>
#include <QObject>
#include <QString>

class QTcpSocket;

// The only path to a speaker's amplifier processor (the "host"). The speaker's Wi-Fi module bridges two TCP
// ports to that processor's serial line; this class frames commands and queries, and recovers from a broken
// link.
//
// Every call blocks its caller. A link has no lock: one thread at a time uses it, the one that made it, since
// the sockets live there. A failure is a negative result and nothing else; an object whose connection failed
// exists all the same, and its sends fail. What goes on without limit (the resending of a command, the wait
// for the end of a reply) is given up 5 s after that thread was told to end by an interruption request.
class serial_wifi : public QObject
{
    Q_OBJECT

public:
    // Size of the reply buffer that callers of host_query give, in bytes, zeroed by them. Never written past.
    static constexpr int reply_size = 1000;

    // Opens the link to `host` (dotted address): up to 5 s for each of the two channels. `name` is a label
    // without effect. The four serial parameters are stored and never used: the line settings belong to the
    // module.
    serial_wifi(QString host, QString name, int baud, int data_bits, int parity, int stop_bits);
    ~serial_wifi() override;

    int open_link();  // 0, or -1: then both sockets exist, unconnected and unwatched
    int close_link(); // always 0

    // Writes `size` bytes of `buffer` on the host channel. Returns what the write returned, or -1 without
    // writing when the link was never connected. Stores a line feed at buffer[size], which is not sent: the
    // buffer must be longer.
    int send_frame(char *buffer, int size);

    // Sends "RZ!" + the first two characters of `command` + `args` (may be null) + line feed, then sleeps 150
    // ms; no reply is awaited. Sent again on a fresh link, without limit, when the link drops within the
    // write: at once, and every 150 ms from the second time on. Returns 0, or the negative result of the
    // write, and then does not sleep.
    int host_command(const char *command, const char *args);

    // One bounded read of up to 5 s. Returns the number of bytes copied to `buffer`, at most `size` (what
    // lies beyond is dropped), 0 when none came, -1 when the link was never connected.
    int read_reply(char *buffer, int size);

    // Sends "RZ?" + letters + `args` (may be null) + line feed and fills `reply` (reply_size zeroed bytes)
    // with the payload, carriage return included, with a terminating NUL. Returns the status number of the
    // reply (two decimal digits), -1 when it has no "#" in byte 2 or the link closed within it, a negative
    // write result, or 0 or -1 when nothing came. Where there is no payload `reply` stays untouched.
    int host_query(const char *command, const char *args, char *reply);

    // host_query without argument, read as a decimal number; 0 when there was no answer.
    long host_query_int(const char *command);

    void prepare_xon();
    int send_line(const QString &line); // a line of firmware as it stands, local 8-bit, no framing; always 0
    void clear_recv_socket();           // discards what waits on the host channel
    int query_uart();                   // the AT channel's one exchange; always 0

    bool xon = false;       // flow state of the host in flash mode; written, never read
    bool connected = false; // set by the first success of open_link, never cleared
    bool closing = false;   // set first in the destructor: a loss of the socket then asks for no reconnect
    bool reconnect =
        false; // the host socket fell to the unconnected state: the next frame opens a fresh link first
    QString host;
    QString name;
    quint16 host_port = 8990;
    quint16 at_port = 8991;
    QTcpSocket *at_socket = nullptr;
    QTcpSocket *host_socket = nullptr;
    int connect_timeout = 5000; // ms, for each channel
    int baud;
    int data_bits;
    int parity;
    int stop_bits;

public slots:
    void readReady(); // reads flow marks: "!" sets xon, "?" clears it; connected to nothing, meant so
    void stateChanged(QAbstractSocket::SocketState socketState);

private:
    void reopen_if_lost();
    int send_whole(QByteArray frame);
    bool collect_reply(QByteArray &reply, int &result);
    bool last_call_over();

    QDeadlineTimer last_call{QDeadlineTimer::Forever}; // limited once the thread is told to end
};
