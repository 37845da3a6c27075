// SPDX-License-Identifier: MIT
#include "simulator/at_channel.h"

#include "simulator/readable.h"
#include "simulator/tcp_link.h"

At_Channel::At_Channel(const Speaker_Faults &faults, Channel_Record &record, QObject *parent)
    : QObject(parent)
    , port(record, this)
    , faults(faults)
{
    connect(&port, &Tcp_Port::line_came, this, &At_Channel::take);
}

void At_Channel::take(Tcp_Link *link, const QByteArray &line)
{
    emit event("<- AT channel: " + readable(line));
    if (faults.at_silent)
        return;
    // The peer ends its lines the other way round, line feed first; the carriage return leads the next line.
    const QByteArray answer = line.trimmed() == "AT+UART?" ? QByteArrayLiteral("+UART=57600,8,0,1\r\nOK\r\n")
                                                           : QByteArrayLiteral("ERROR\r\n");
    emit event("-> AT channel: " + readable(answer));
    link->send(answer);
}
