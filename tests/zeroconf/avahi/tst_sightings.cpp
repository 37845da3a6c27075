// SPDX-License-Identifier: MIT
#include <QTest>
#include <avahi-common/address.h>
#include <string>

#include "zeroconf/avahi/sightings.h"

class tst_Sightings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void a_thing_comes_with_its_first_sighting_and_goes_with_its_last();
    void a_repeated_sighting_counts_once();
    void what_was_not_seen_cannot_go();
    void things_are_told_apart();
    void a_thing_that_went_may_come_again();

private:
    Sightings<std::string> sightings;
};

void tst_Sightings::a_thing_comes_with_its_first_sighting_and_goes_with_its_last()
{
    QVERIFY(sightings.add("both", AVAHI_PROTO_INET6));
    QVERIFY(!sightings.add("both", AVAHI_PROTO_INET));
    QVERIFY(!sightings.remove("both", AVAHI_PROTO_INET6));
    QVERIFY(sightings.remove("both", AVAHI_PROTO_INET));
}

void tst_Sightings::a_repeated_sighting_counts_once()
{
    QVERIFY(sightings.add("repeated", AVAHI_PROTO_INET));
    QVERIFY(!sightings.add("repeated", AVAHI_PROTO_INET));
    QVERIFY(sightings.remove("repeated", AVAHI_PROTO_INET));
    QVERIFY(!sightings.remove("repeated", AVAHI_PROTO_INET));
}

void tst_Sightings::what_was_not_seen_cannot_go()
{
    QVERIFY(!sightings.remove("never", AVAHI_PROTO_INET));
    QVERIFY(sightings.add("other", AVAHI_PROTO_INET));
    QVERIFY(!sightings.remove("other", AVAHI_PROTO_INET6));
    QVERIFY(sightings.remove("other", AVAHI_PROTO_INET));
}

void tst_Sightings::things_are_told_apart()
{
    QVERIFY(sightings.add("one", AVAHI_PROTO_INET));
    QVERIFY(sightings.add("two", AVAHI_PROTO_INET));
    QVERIFY(sightings.remove("one", AVAHI_PROTO_INET));
    QVERIFY(sightings.remove("two", AVAHI_PROTO_INET));
}

void tst_Sightings::a_thing_that_went_may_come_again()
{
    QVERIFY(sightings.add("again", AVAHI_PROTO_INET));
    QVERIFY(sightings.remove("again", AVAHI_PROTO_INET));
    QVERIFY(sightings.add("again", AVAHI_PROTO_INET));
}

QTEST_APPLESS_MAIN(tst_Sightings)
#include "tst_sightings.moc"
