// SPDX-License-Identifier: MIT
#include "tests/fakes/fake_dns_sd.h"

#include <QMap>
#include <QScopedPointer>
#include <QtEndian>
#include <algorithm>
#include <arpa/inet.h>
#include <fcntl.h>
#include <functional>
#include <netinet/in.h>
#include <unistd.h>

using namespace fake_dns_sd;

namespace
{
union Callback {
    DNSServiceBrowseReply browse;
    DNSServiceResolveReply resolve;
    DNSServiceGetAddrInfoReply address;
    DNSServiceRegisterReply registered;
};

struct Reply {
    std::function<void()> deliver;
    DNSServiceErrorType result = kDNSServiceErr_NoError; // of the ProcessResult that delivers it
};
} // namespace

struct _DNSServiceRef_t // NOLINT(bugprone-reserved-identifier): the name that dns_sd.h gives it
{
    Kind kind;
    Callback callback;
    void *context;
    int fds[2] = {-1, -1}; // a pipe with one byte for each entry of replies
    QList<Reply> replies = {};
    int processed = 0;
    int releases = 0;

    bool is_open() const { return releases == 0; }
    void close()
    {
        context = nullptr; // what it points to is not kept with the ref
        replies.clear();
        for (int &fd : fds) {
            if (fd != -1)
                ::close(fd);
            fd = -1;
        }
    }
};

namespace
{
// Refs are kept for ever: a released one must be recognised, and its address must not be given out again. So
// is their list, or they would count as leaked when the process ends.
QList<DNSServiceRef> &all_refs()
{
    static auto *const refs = new QList<DNSServiceRef>;
    return *refs;
}

struct Script {
    QList<Call> calls;
    QMap<Kind, DNSServiceErrorType> failures;
    QMap<Kind, bool> without_socket;
    QStringList misuses;
    int first_ref = 0; // where this test's refs begin in all_refs()
};

Script &script()
{
    static Script the_script;
    return the_script;
}

// False, and noted, for a ref that the caller has no right to.
bool may_use(DNSServiceRef ref, const char *call)
{
    const bool good = ref && all_refs().contains(ref) && ref->is_open();
    if (!good)
        script().misuses << QStringLiteral("%1 on a %2 ref")
                                .arg(QLatin1String(call), QLatin1String(ref ? "released" : "null"));
    return good;
}

DNSServiceErrorType open_ref(DNSServiceRef *ref, Callback callback, Call call)
{
    *ref = nullptr;
    call.ref = nullptr;
    const DNSServiceErrorType failure = script().failures.take(call.kind);
    if (failure == 0) {
        auto *made = new _DNSServiceRef_t{call.kind, callback, call.context};
        if (!script().without_socket.take(call.kind) && ::pipe2(made->fds, O_NONBLOCK | O_CLOEXEC) != 0)
            qFatal("fake_dns_sd: no pipe");
        all_refs() << made;
        *ref = call.ref = made;
    }
    script().calls << call;
    return failure;
}

void queue(DNSServiceRef ref, const Reply &reply)
{
    Q_ASSERT(ref && ref->is_open() && ref->fds[1] != -1);
    ref->replies << reply;
    if (::write(ref->fds[1], "", 1) != 1)
        qFatal("fake_dns_sd: the pipe is full");
}
} // namespace

void fake_dns_sd::reset()
{
    for (DNSServiceRef ref : qAsConst(all_refs())) {
        if (ref->is_open())
            ref->releases = 1;
        ref->close();
    }
    script() = Script();
    script().first_ref = all_refs().size();
}

QList<Call> fake_dns_sd::calls()
{
    return script().calls;
}

QList<Call> fake_dns_sd::calls(Kind kind)
{
    QList<Call> found;
    for (const Call &call : qAsConst(script().calls)) {
        if (call.kind == kind)
            found << call;
    }
    return found;
}

Call fake_dns_sd::last_call(Kind kind)
{
    const QList<Call> found = calls(kind);
    return found.isEmpty() ? Call() : found.last();
}

bool fake_dns_sd::is_open(DNSServiceRef ref)
{
    return ref && ref->is_open();
}

int fake_dns_sd::open_refs()
{
    int count = 0;
    for (DNSServiceRef ref : qAsConst(all_refs()))
        count += ref->is_open();
    return count;
}

QList<DNSServiceRef> fake_dns_sd::open_refs(Kind kind)
{
    QList<DNSServiceRef> found;
    for (DNSServiceRef ref : qAsConst(all_refs())) {
        if (ref->is_open() && ref->kind == kind)
            found << ref;
    }
    return found;
}

int fake_dns_sd::releases(DNSServiceRef ref)
{
    return ref->releases;
}

int fake_dns_sd::releases()
{
    int count = 0;
    for (DNSServiceRef ref : all_refs().mid(script().first_ref))
        count += ref->releases;
    return count;
}

int fake_dns_sd::processed(DNSServiceRef ref)
{
    return ref->processed;
}

int fake_dns_sd::waiting(DNSServiceRef ref)
{
    return ref->replies.size();
}

QStringList fake_dns_sd::misuses()
{
    return script().misuses;
}

void fake_dns_sd::fail_next(Kind kind, DNSServiceErrorType code)
{
    script().failures.insert(kind, code);
}

void fake_dns_sd::no_socket_next(Kind kind)
{
    script().without_socket.insert(kind, true);
}

void fake_dns_sd::fail_process(DNSServiceRef ref, DNSServiceErrorType code)
{
    queue(ref, {[] {}, code});
}

void fake_dns_sd::fail_after_reply(DNSServiceRef ref, DNSServiceErrorType code)
{
    Q_ASSERT(!ref->replies.isEmpty());
    ref->replies.first().result = code;
}

void fake_dns_sd::wake(DNSServiceRef ref)
{
    queue(ref, {[] {}});
}

void fake_dns_sd::browse_reply(DNSServiceRef ref, DNSServiceFlags flags, quint32 interfaceIndex,
                               const QByteArray &name, const QByteArray &type, const QByteArray &domain)
{
    Q_ASSERT(ref->kind == Kind::Browse);
    queue(ref, {[=] {
              ref->callback.browse(ref, flags, interfaceIndex, 0, name.constData(), type.constData(),
                                   domain.constData(), ref->context);
          }});
}

void fake_dns_sd::resolve_reply(DNSServiceRef ref, quint32 interfaceIndex, const QByteArray &host,
                                quint16 port, const QByteArray &txt)
{
    Q_ASSERT(ref->kind == Kind::Resolve);
    queue(ref, {[=] {
              // A block of its own for the record, so that the address sanitizer sees whoever reads past its
              // end.
              const QScopedArrayPointer<unsigned char> record(new unsigned char[size_t(txt.size())]);
              std::copy(txt.cbegin(), txt.cend(), record.data());
              ref->callback.resolve(ref, 0, interfaceIndex, 0, "instance._lodeset._tcp.local.",
                                    host.constData(), qToBigEndian(port), quint16(txt.size()), record.data(),
                                    ref->context);
          }});
}

void fake_dns_sd::address_reply(DNSServiceRef ref, DNSServiceFlags flags, quint32 interfaceIndex,
                                const QByteArray &address)
{
    Q_ASSERT(ref->kind == Kind::GetAddrInfo);
    queue(ref, {[=] {
              sockaddr_storage storage = {};
              auto *ipv4 = reinterpret_cast<sockaddr_in *>(&storage);
              auto *ipv6 = reinterpret_cast<sockaddr_in6 *>(&storage);
              if (::inet_pton(AF_INET, address.constData(), &ipv4->sin_addr) == 1)
                  ipv4->sin_family = AF_INET;
              else if (::inet_pton(AF_INET6, address.constData(), &ipv6->sin6_addr) == 1)
                  ipv6->sin6_family = AF_INET6;
              else
                  qFatal("fake_dns_sd: no address: %s", address.constData());
              ref->callback.address(ref, flags, interfaceIndex, 0, "host.local.",
                                    reinterpret_cast<const sockaddr *>(&storage), 120, ref->context);
          }});
}

void fake_dns_sd::register_reply(DNSServiceRef ref)
{
    Q_ASSERT(ref->kind == Kind::Register);
    queue(ref,
          {[=] { ref->callback.registered(ref, 0, 0, "name", "_lodeset._tcp.", "local.", ref->context); }});
}

void fake_dns_sd::error_reply(DNSServiceRef ref, DNSServiceErrorType code)
{
    const auto deliver = [=] {
        switch (ref->kind) {
        case Kind::Browse:
            return ref->callback.browse(ref, 0, 0, code, nullptr, nullptr, nullptr, ref->context);
        case Kind::Resolve:
            return ref->callback.resolve(ref, 0, 0, code, nullptr, nullptr, 0, 0, nullptr, ref->context);
        case Kind::GetAddrInfo:
            return ref->callback.address(ref, 0, 0, code, nullptr, nullptr, 0, ref->context);
        case Kind::Register:
            return ref->callback.registered(ref, 0, code, nullptr, nullptr, nullptr, ref->context);
        }
    };
    queue(ref, {deliver});
}

// ---------------------------------------------------------------- the dns_sd calls

DNSServiceErrorType DNSSD_API DNSServiceBrowse(DNSServiceRef *ref, DNSServiceFlags flags,
                                               uint32_t interfaceIndex, const char *type, const char *domain,
                                               DNSServiceBrowseReply callback, void *context)
{
    Callback any;
    any.browse = callback;
    return open_ref(ref, any,
                    {Kind::Browse, nullptr, flags, interfaceIndex, {}, type, domain, {}, 0, 0, {}, context});
}

DNSServiceErrorType DNSSD_API DNSServiceResolve(DNSServiceRef *ref, DNSServiceFlags flags,
                                                uint32_t interfaceIndex, const char *name, const char *type,
                                                const char *domain, DNSServiceResolveReply callback,
                                                void *context)
{
    Callback any;
    any.resolve = callback;
    return open_ref(
        ref, any, {Kind::Resolve, nullptr, flags, interfaceIndex, name, type, domain, {}, 0, 0, {}, context});
}

DNSServiceErrorType DNSSD_API DNSServiceGetAddrInfo(DNSServiceRef *ref, DNSServiceFlags flags,
                                                    uint32_t interfaceIndex, DNSServiceProtocol protocol,
                                                    const char *host, DNSServiceGetAddrInfoReply callback,
                                                    void *context)
{
    Callback any;
    any.address = callback;
    return open_ref(
        ref, any,
        {Kind::GetAddrInfo, nullptr, flags, interfaceIndex, host, {}, {}, {}, protocol, 0, {}, context});
}

DNSServiceErrorType DNSSD_API DNSServiceRegister(DNSServiceRef *ref, DNSServiceFlags flags,
                                                 uint32_t interfaceIndex, const char *name, const char *type,
                                                 const char *domain, const char *host, uint16_t port,
                                                 uint16_t txtLen, const void *txt,
                                                 DNSServiceRegisterReply callback, void *context)
{
    Callback any;
    any.registered = callback;
    const QByteArray record(static_cast<const char *>(txt), txtLen);
    return open_ref(
        ref, any,
        {Kind::Register, nullptr, flags, interfaceIndex, name, type, domain, host, 0, port, record, context});
}

int DNSSD_API DNSServiceRefSockFD(DNSServiceRef ref)
{
    return may_use(ref, "DNSServiceRefSockFD") ? ref->fds[0] : -1;
}

DNSServiceErrorType DNSSD_API DNSServiceProcessResult(DNSServiceRef ref)
{
    if (!may_use(ref, "DNSServiceProcessResult"))
        return kDNSServiceErr_BadParam;
    ref->processed++;
    char byte;
    if (ref->replies.isEmpty() || ::read(ref->fds[0], &byte, 1) != 1)
        return kDNSServiceErr_NoError;
    // Out of the queue first: the callback may release the ref.
    const Reply reply = ref->replies.takeFirst();
    reply.deliver();
    return reply.result;
}

void DNSSD_API DNSServiceRefDeallocate(DNSServiceRef ref)
{
    if (!may_use(ref, "DNSServiceRefDeallocate"))
        return;
    ref->releases++;
    ref->close();
}
