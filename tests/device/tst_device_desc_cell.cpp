// SPDX-License-Identifier: MIT
#include <QTest>

#include "app/globals.h"
#include "device/device_desc_cell.h"

class tst_device_desc_cell : public QObject
{
    Q_OBJECT

private slots:
    void a_new_record_has_its_cell_name_and_nothing_else();
    void it_belongs_to_its_parent();
    void it_is_a_record_of_its_own_class();
    void nothing_is_started();
};

void tst_device_desc_cell::a_new_record_has_its_cell_name_and_nothing_else()
{
    const Device_Desc_Cell record(nullptr, "Ground floor");
    QCOMPARE(record.cell_name, QString("Ground floor"));
    QVERIFY(record.name.isEmpty());
    QVERIFY(record.groupname.isEmpty());
    QVERIFY(record.ip.isEmpty());
    QVERIFY(!record.control);
    QVERIFY(!record.is_group);
    QVERIFY(!record.cell_master);
    QCOMPARE(record.tab_index, -1);
    QVERIFY(!record.parent());
}

void tst_device_desc_cell::it_belongs_to_its_parent()
{
    QObject parent;
    const auto *record = new Device_Desc_Cell(&parent, "Ground floor");
    QCOMPARE(record->parent(), &parent);
}

void tst_device_desc_cell::it_is_a_record_of_its_own_class()
{
    const QMetaObject &meta = Device_Desc_Cell::staticMetaObject;
    QCOMPARE(meta.superClass(), &Device_Desc::staticMetaObject);
    QCOMPARE(meta.methodCount(), meta.methodOffset());
}

void tst_device_desc_cell::nothing_is_started()
{
    const int running = resolves_running;
    const Device_Desc_Cell record(nullptr, "Ground floor");
    QVERIFY(!record.isRunning());
    QCOMPARE(resolves_running, running);
    QVERIFY(!device_list.contains(const_cast<Device_Desc_Cell *>(&record)));
}

QTEST_GUILESS_MAIN(tst_device_desc_cell)
#include "tst_device_desc_cell.moc"
