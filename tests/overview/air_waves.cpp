// SPDX-License-Identifier: MIT
#include "tests/overview/air_waves.h"

#include <QTest>

#include "tests/fakes/fake_dns_sd.h"

using fake_dns_sd::Kind;

namespace
{
void wait_for_calls(Kind kind, int count)
{
    if (!QTest::qWaitFor([&] { return fake_dns_sd::calls(kind).size() == count; }))
        qFatal("discovery does not go on");
}
} // namespace

DNSServiceRef air_waves::approach(const QString &name, quint32 interface_index, quint16 port)
{
    const int resolves = fake_dns_sd::calls(Kind::Resolve).size();
    const int queries = fake_dns_sd::calls(Kind::GetAddrInfo).size();
    fake_dns_sd::browse_reply(fake_dns_sd::last_call(Kind::Browse).ref, kDNSServiceFlagsAdd, interface_index,
                              name.toUtf8());
    wait_for_calls(Kind::Resolve, resolves + 1);
    fake_dns_sd::resolve_reply(fake_dns_sd::last_call(Kind::Resolve).ref, interface_index, "speaker.local.",
                               port);
    wait_for_calls(Kind::GetAddrInfo, queries + 1);
    return fake_dns_sd::last_call(Kind::GetAddrInfo).ref;
}

void air_waves::answer(DNSServiceRef address_handle, quint32 interface_index, const QString &address)
{
    fake_dns_sd::address_reply(address_handle, kDNSServiceFlagsAdd, interface_index, address.toLatin1());
}

void air_waves::announce(const QString &name, quint32 interface_index, const QString &address, quint16 port)
{
    answer(approach(name, interface_index, port), interface_index, address);
}

void air_waves::withdraw(const QString &name, quint32 interface_index)
{
    fake_dns_sd::browse_reply(fake_dns_sd::last_call(Kind::Browse).ref, 0, interface_index, name.toUtf8());
}

QZeroConfService air_waves::service(const QString &name, const QString &address, quint16 port)
{
    QZeroConfService made(new QZeroConfServiceData);
    made->name = name;
    made->host = "speaker.local.";
    made->ip = QHostAddress(address);
    made->port = port;
    return made;
}
