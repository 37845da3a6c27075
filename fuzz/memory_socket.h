// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayList>
#include <QTcpSocket>

// The host channel of a link, without a network: it is connected from the start, each wait lets the next part
// of what the speaker says arrive, and a wait behind the last one finds the connection closed or silent. It
// keeps what is written to it. One thread.
class Memory_Socket : public QTcpSocket
{
    Q_OBJECT

public:
    enum class End { closed, silent };

    explicit Memory_Socket(const QByteArrayList &parts, End end = End::closed);
    ~Memory_Socket() override;

    bool waitForReadyRead(int) override;
    qint64 bytesAvailable() const override;
    qint64 bytesToWrite() const override; // always 0: what is written is out

    QByteArray written;

protected:
    qint64 readData(char *data, qint64 max_size) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    QByteArrayList to_come;
    End end;
    QByteArray arrived;
};
