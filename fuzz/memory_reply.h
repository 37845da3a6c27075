// SPDX-License-Identifier: MIT
#pragma once

#include <QNetworkReply>

// A finished reply that holds its body in memory, in the place of one that came over the network. It emits
// nothing by itself.
class Memory_Reply : public QNetworkReply
{
    Q_OBJECT

public:
    explicit Memory_Reply(const QByteArray &body);

    bool isSequential() const override;
    qint64 bytesAvailable() const override;

public slots:
    void abort() override;

protected:
    qint64 readData(char *data, qint64 max_size) override;

private:
    QByteArray unread;
};
