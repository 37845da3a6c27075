// SPDX-License-Identifier: MIT
#include <QtTest>

#include "control/virelo_group.h"
#include "settings/client_settings.h"

class tst_client_settings : public QObject
{
    Q_OBJECT

private slots:
    void keeps_the_control_object_and_has_no_parent();
    void takes_null_for_both();
    void has_no_signals_or_slots_of_its_own();
};

void tst_client_settings::keeps_the_control_object_and_has_no_parent()
{
    Virelo_Group group("Group");
    const Client_Settings tab(nullptr, &group);
    QCOMPARE(tab.control, &group);
    QVERIFY(!tab.parent());
    QCOMPARE(tab.windowFlags(), QWidget().windowFlags());
}

void tst_client_settings::takes_null_for_both()
{
    const Client_Settings tab(nullptr, nullptr);
    QVERIFY(!tab.control);
}

void tst_client_settings::has_no_signals_or_slots_of_its_own()
{
    const QMetaObject &meta = Client_Settings::staticMetaObject;
    QCOMPARE(meta.className(), "Client_Settings");
    QCOMPARE(meta.methodCount(), meta.methodOffset());
}

QTEST_MAIN(tst_client_settings)
#include "tst_client_settings.moc"
