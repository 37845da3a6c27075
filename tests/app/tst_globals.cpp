// SPDX-License-Identifier: MIT
#include <QMutex>
#include <QSettings>
#include <QTest>
#include <QTextEdit>
#include <type_traits>

#include "app/globals.h"

static_assert(std::is_same_v<decltype(device_list), QList<Device_Desc *>>);
static_assert(std::is_same_v<decltype(settings), QSettings *>);
static_assert(std::is_same_v<decltype(debug_console), QTextEdit *>);
static_assert(std::is_same_v<decltype(debug_enabled), bool>);
static_assert(std::is_same_v<decltype(plattform), rzplattform *>);
static_assert(std::is_same_v<decltype(client), Client *>);
static_assert(std::is_same_v<decltype(overview), Client_Overview *>);
static_assert(std::is_same_v<decltype(sender_device), Device_Desc *>);
static_assert(std::is_same_v<decltype(last_typed_device), Device_Desc *>);
static_assert(std::is_same_v<decltype(update_dialog), Client_Update *>);
static_assert(std::is_same_v<decltype(group_dialog), Client_Group *>);
static_assert(std::is_same_v<decltype(wlans_dialog), Client_WLANs *>);
static_assert(std::is_same_v<decltype(conf_dialog), Client_Conf *>);
static_assert(std::is_same_v<decltype(conf_statip_dialog), Client_Conf_StatIP *>);
static_assert(std::is_same_v<decltype(resolves_mutex), QMutex>);
static_assert(std::is_same_v<decltype(resolves_running), int>);
static_assert(std::is_same_v<decltype(spare_mutex), QMutex>);
static_assert(std::is_same_v<decltype(request_serial), int>);
static_assert(std::is_same_v<decltype(resolve_serial), int>);
static_assert(std::is_same_v<decltype(input_query_seen), bool>);

// What the process-wide objects hold before start-up has touched them.
class tst_globals : public QObject
{
    Q_OBJECT

private slots:
    void no_object_exists_at_load()
    {
        QVERIFY(device_list.isEmpty());
        QVERIFY(!settings);
        QVERIFY(!debug_console);
        QVERIFY(!plattform);
        QVERIFY(!client);
        QVERIFY(!overview);
        QVERIFY(!sender_device);
        QVERIFY(!last_typed_device);
        QVERIFY(!update_dialog);
        QVERIFY(!group_dialog);
        QVERIFY(!wlans_dialog);
        QVERIFY(!conf_dialog);
        QVERIFY(!conf_statip_dialog);
    }

    void counters_and_flags_have_their_starting_values()
    {
        QCOMPARE(resolves_running, 0);
        QCOMPARE(request_serial, 0);
        QCOMPARE(resolve_serial, 1);
        QCOMPARE(debug_enabled, false);
        QCOMPARE(input_query_seen, false);
    }

    void mutexes_are_free_and_not_recursive()
    {
        for (QMutex *mutex : {&resolves_mutex, &spare_mutex}) {
            QVERIFY(mutex->tryLock());
            const bool twice = mutex->tryLock();
            mutex->unlock();
            if (twice)
                mutex->unlock();
            QVERIFY(!twice);
        }
    }
};

QTEST_APPLESS_MAIN(tst_globals)
#include "tst_globals.moc"
