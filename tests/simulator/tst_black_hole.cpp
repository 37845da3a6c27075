// SPDX-License-Identifier: MIT
#include <QtTest>

#include "simulator/black_hole.h"
#include "simulator/loopback.h"
#include "tests/simulator/raw_client.h"

class tst_Black_Hole : public QObject
{
    Q_OBJECT

private slots:
    void an_attempt_neither_succeeds_nor_fails();
    void a_given_port_is_taken();
    void a_taken_port_is_told();
    void an_address_that_is_none_is_told();
    void its_end_frees_the_port_and_refuses();
};

void tst_Black_Hole::an_attempt_neither_succeeds_nor_fails()
{
    const Black_Hole hole(own_loopback(1));
    QVERIFY(hole.ok());
    QVERIFY(hole.port() != 0);
    for (int attempt = 0; attempt < 3; attempt++) {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress(own_loopback(1)), hole.port());
        QVERIFY(!socket.waitForConnected(150));
        QCOMPARE(socket.error(), QAbstractSocket::SocketTimeoutError);
    }
}

void tst_Black_Hole::a_given_port_is_taken()
{
    const Black_Hole hole(own_loopback(1), 8990);
    QVERIFY(hole.ok());
    QCOMPARE(hole.port(), quint16(8990));
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(own_loopback(1)), 8990);
    QVERIFY(!socket.waitForConnected(150));
    QCOMPARE(socket.error(), QAbstractSocket::SocketTimeoutError);
}

void tst_Black_Hole::a_taken_port_is_told()
{
    const Black_Hole first(own_loopback(1), 8991);
    QVERIFY(first.ok());
    const Black_Hole second(own_loopback(1), 8991);
    QVERIFY(!second.ok());
    QCOMPARE(second.port(), quint16(0));
    const Black_Hole elsewhere(own_loopback(2), 8991);
    QVERIFY(elsewhere.ok());
}

void tst_Black_Hole::an_address_that_is_none_is_told()
{
    QVERIFY(!Black_Hole("speaker.local").ok());
    QVERIFY(!Black_Hole("").ok());
}

void tst_Black_Hole::its_end_frees_the_port_and_refuses()
{
    quint16 port = 0;
    {
        const Black_Hole hole(own_loopback(1));
        port = hole.port();
    }
    Raw_Client client;
    QVERIFY(!client.open(own_loopback(1), port));
    QCOMPARE(client.socket.error(), QAbstractSocket::ConnectionRefusedError);
    QVERIFY(Black_Hole(own_loopback(1), port).ok());
}

QTEST_GUILESS_MAIN(tst_Black_Hole)
#include "tst_black_hole.moc"
