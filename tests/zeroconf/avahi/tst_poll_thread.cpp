// SPDX-License-Identifier: MIT
#include <QTest>
#include <sys/resource.h>

#include "zeroconf/avahi/dns_sd.h"
#include "zeroconf/avahi/poll_thread.h"

// The thread is made once in a process, so the one function here is that of a process which cannot have it.
class tst_poll_thread : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void where_no_descriptor_is_left_there_is_no_thread_and_each_call_fails_at_once();
};

namespace
{
void on_browse(DNSServiceRef, DNSServiceFlags, uint32_t, DNSServiceErrorType, const char *, const char *,
               const char *, void *context)
{
    *static_cast<bool *>(context) = true;
}

DNSServiceErrorType browse(DNSServiceRef *ref, bool *heard)
{
    return DNSServiceBrowse(ref, 0, 0, "_lodeset._tcp", nullptr, on_browse, heard);
}
} // namespace

void tst_poll_thread::where_no_descriptor_is_left_there_is_no_thread_and_each_call_fails_at_once()
{
    rlimit before;
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none = {0, before.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &none), 0);
    bool heard = false;
    DNSServiceRef ref = nullptr;
    const DNSServiceErrorType first = browse(&ref, &heard);
    const bool nothing_made = !ref;
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &before), 0);
    QCOMPARE(first, DNSServiceErrorType(kDNSServiceErr_NoMemory));
    QVERIFY(nothing_made);
    QVERIFY(!PollThread::instance());

    // With descriptors again, but still without the thread.
    QCOMPARE(browse(&ref, &heard), DNSServiceErrorType(kDNSServiceErr_NoMemory));
    QVERIFY(!ref);
    QVERIFY(!heard);
}

QTEST_APPLESS_MAIN(tst_poll_thread)
#include "tst_poll_thread.moc"
