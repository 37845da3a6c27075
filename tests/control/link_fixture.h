// SPDX-License-Identifier: MIT
#pragma once

#include <QTest>
#include <memory>

#include "tests/control/control_fixture.h"

// What the tests of the host link hold: for each test function a log, a speaker and an open link to it.
class Link_Holder
{
protected:
    void begin()
    {
        log = std::make_unique<Log_Capture>();
        speaker = std::make_unique<Virtual_Speaker>(speaker_at_home());
        QVERIFY2(speaker->start(), qPrintable(speaker->error()));
        link = open_link_to(own_loopback(1));
        QVERIFY(link->connected);
        QVERIFY(speaker->wait_for_host_open(1));
    }

    void end()
    {
        link.reset();
        speaker.reset();
        QCOMPARE(log->warnings(), QStringList());
        log.reset();
    }

    std::unique_ptr<Log_Capture> log;
    std::unique_ptr<Virtual_Speaker> speaker;
    std::unique_ptr<serial_wifi> link;
};
