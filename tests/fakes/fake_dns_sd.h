// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

#include "zeroconf/dns_sd_port.h"

// A scripted dns_sd, linked in place of the library. Unscripted it accepts every call and stays silent. A
// test looks at the calls that were made, lets the next one fail, and queues replies: each makes the ref's
// descriptor readable, so the event loop delivers it as it would the real thing. One thread, the one with the
// event loop.
namespace fake_dns_sd
{
enum class Kind { Browse, Resolve, GetAddrInfo, Register };

// One call that opened a ref, or failed to, with its arguments as they were given. A null text is a null
// QByteArray.
struct Call {
    Kind kind;
    DNSServiceRef ref; // null where the call failed; stays valid as a name after the release
    DNSServiceFlags flags;
    quint32 interfaceIndex;
    QByteArray name;   // instance; for GetAddrInfo the host
    QByteArray type;   // browse, resolve and register
    QByteArray domain; // browse, resolve and register
    QByteArray host;   // register
    quint32 protocol;  // GetAddrInfo
    quint16 port;      // register, as given
    QByteArray txt;    // register
    void *context;
};

// Forgets calls, failures set up and misuses, and takes away every ref still open. What was open must not be
// used any more, so whoever holds refs is destroyed first.
void reset();

QList<Call> calls();
QList<Call> calls(Kind kind);
// The newest call of a kind; one with a null ref if there is none.
Call last_call(Kind kind);

bool is_open(DNSServiceRef ref);
int open_refs();
QList<DNSServiceRef> open_refs(Kind kind);
// How often a ref was released.
int releases(DNSServiceRef ref);
int releases();
// How often ProcessResult was called for a ref.
int processed(DNSServiceRef ref);
// Replies queued and not yet delivered.
int waiting(DNSServiceRef ref);

// What no caller may do: use or release a ref that was released, release null. Empty in a correct program.
QStringList misuses();

// The next call of that kind returns the code and opens nothing.
void fail_next(Kind kind, DNSServiceErrorType code);
// The next ref of that kind has no descriptor: RefSockFD gives -1.
void no_socket_next(Kind kind);
// The next ProcessResult of the ref returns the code and delivers nothing; the descriptor becomes readable.
void fail_process(DNSServiceRef ref, DNSServiceErrorType code);
// The callback of the next reply runs, and then ProcessResult returns the code.
void fail_after_reply(DNSServiceRef ref, DNSServiceErrorType code);
// Makes the descriptor readable with nothing behind it: ProcessResult returns 0 and calls nothing.
void wake(DNSServiceRef ref);

// Replies, delivered one for each ProcessResult in the order of queueing. An error reply has null texts.
void browse_reply(DNSServiceRef ref, DNSServiceFlags flags, quint32 interfaceIndex, const QByteArray &name,
                  const QByteArray &type = "_lodeset._tcp.", const QByteArray &domain = "local.");
void resolve_reply(
    DNSServiceRef ref, quint32 interfaceIndex, const QByteArray &host, quint16 port,
    const QByteArray &txt = QByteArray()); // port in host byte order, delivered in network byte order
void address_reply(DNSServiceRef ref, DNSServiceFlags flags, quint32 interfaceIndex,
                   const QByteArray &address);
void register_reply(DNSServiceRef ref);
void error_reply(DNSServiceRef ref, DNSServiceErrorType code); // of any kind
} // namespace fake_dns_sd
