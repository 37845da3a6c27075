// SPDX-License-Identifier: MIT
#include <QLabel>
#include <QSettings>
#include <QTabWidget>
#include <QTextEdit>
#include <QtTest>
#include <memory>

#include "app/client.h"
#include "app/globals.h"
#include "app/rzplattform.h"
#include "device/device_desc.h"
#include "settings/client_settings_air.h"
#include "settings/client_settings_empty.h"
#include "tests/settings/probe_air.h"

// Opening a speaker where each record has a tab of its own.
class tst_client_show : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { delete client; }
    void a_speaker_gets_a_tab_with_its_name_at_the_first_opening_data();
    void a_speaker_gets_a_tab_with_its_name_at_the_first_opening();
    void opening_it_again_only_selects_its_tab();
    void a_second_speaker_gets_a_tab_of_its_own();
    void index_0_counts_as_no_tab();
    void a_speaker_of_unknown_type_gets_an_empty_tab_once();
    void an_empty_tab_works_without_control_object();
    void an_empty_tab_without_record_is_added_each_time();

private:
    std::unique_ptr<Probe_Air> kitchen_air, bathroom_air;
    std::unique_ptr<Device_Desc> kitchen, bathroom;
};

void tst_client_show::initTestCase()
{
    QCoreApplication::setOrganizationName("tst_client_show");
    settings = new QSettings;
    settings->clear();
    debug_console = new QTextEdit;
    plattform = new rzplattform;
    kitchen_air = std::make_unique<Probe_Air>("Kitchen");
    bathroom_air = std::make_unique<Probe_Air>("Bathroom");
}

void tst_client_show::init()
{
    plattform->device_class = 0;
    kitchen = std::make_unique<Device_Desc>(nullptr, false, QString());
    kitchen->set_name("Kitchen");
    kitchen->control = kitchen_air.get();
    bathroom = std::make_unique<Device_Desc>(nullptr, false, QString());
    bathroom->set_name("Bathroom");
    bathroom->control = bathroom_air.get();
    client = new Client(nullptr);
    QCOMPARE(client->tabs->count(), 1);
}

void tst_client_show::a_speaker_gets_a_tab_with_its_name_at_the_first_opening_data()
{
    QTest::addColumn<int>("device_class");
    QTest::newRow("unset") << 0;
    QTest::newRow("phone") << DEVICE_PHONE; // of another system than the one with fixed tabs
    QTest::newRow("tablet") << DEVICE_TABLET;
    QTest::newRow("desktop") << DEVICE_DESKTOP;
}

void tst_client_show::a_speaker_gets_a_tab_with_its_name_at_the_first_opening()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    QVERIFY(!client->air_tab);
    QCOMPARE(client->air_tab_index, 0);

    client->show_air(kitchen.get());
    QCOMPARE(client->tabs->count(), 2);
    QCOMPARE(client->tabs->tabText(1), QString("Kitchen"));
    QCOMPARE(client->tabs->currentIndex(), 1);
    QVERIFY(client->tabs->isTabEnabled(1));
    QCOMPARE(kitchen->tab_index, 1);

    auto *tab = qobject_cast<Client_Settings_Air *>(client->tabs->widget(1));
    QVERIFY(tab);
    QCOMPARE(tab->air, kitchen_air.get());
    QCOMPARE(tab->control, kitchen_air.get());
    QCOMPARE(tab->device, kitchen.get());
}

void tst_client_show::opening_it_again_only_selects_its_tab()
{
    client->show_air(kitchen.get());
    const QWidget *tab = client->tabs->widget(1);
    client->tabs->setCurrentIndex(0);
    client->show_air(kitchen.get());
    QCOMPARE(client->tabs->count(), 2);
    QCOMPARE(client->tabs->currentIndex(), 1);
    QCOMPARE(client->tabs->widget(1), tab);
}

void tst_client_show::a_second_speaker_gets_a_tab_of_its_own()
{
    client->show_air(kitchen.get());
    client->show_air(bathroom.get());
    QCOMPARE(client->tabs->count(), 3);
    QCOMPARE(client->tabs->currentIndex(), 2);
    QCOMPARE(bathroom->tab_index, 2);
    client->show_air(kitchen.get());
    QCOMPARE(client->tabs->currentIndex(), 1);
    QCOMPARE(client->tabs->count(), 3);
}

void tst_client_show::index_0_counts_as_no_tab()
{
    kitchen->tab_index = bathroom->tab_index = 0; // that of the overview
    client->show_air(kitchen.get());
    QCOMPARE(kitchen->tab_index, 1);
    client->show_empty(bathroom.get());
    QCOMPARE(bathroom->tab_index, 2);
    QCOMPARE(client->tabs->currentIndex(), 2);
}

void tst_client_show::a_speaker_of_unknown_type_gets_an_empty_tab_once()
{
    for (int opening = 0; opening < 2; ++opening) {
        client->tabs->setCurrentIndex(0);
        client->show_empty(kitchen.get());
        QCOMPARE(client->tabs->count(), 2);
        QCOMPARE(client->tabs->currentIndex(), 1);
    }
    QCOMPARE(client->tabs->tabText(1), QString("Kitchen"));
    QCOMPARE(kitchen->tab_index, 1);
    auto *tab = qobject_cast<Client_Settings_Empty *>(client->tabs->widget(1));
    QVERIFY(tab);
    QCOMPARE(tab->control, kitchen_air.get());
}

void tst_client_show::an_empty_tab_works_without_control_object()
{
    kitchen->control = nullptr;
    client->show_empty(kitchen.get());
    QCOMPARE(kitchen->tab_index, 1);
    QVERIFY(!qobject_cast<Client_Settings_Empty *>(client->tabs->widget(1))->control);
}

void tst_client_show::an_empty_tab_without_record_is_added_each_time()
{
    for (int opening = 1; opening <= 2; ++opening) {
        client->show_empty(nullptr);
        QCOMPARE(client->tabs->count(), 1 + opening);
        QCOMPARE(client->tabs->currentIndex(), opening);
        QCOMPARE(client->tabs->tabText(opening), QString("Empty"));
        auto *tab = qobject_cast<Client_Settings_Empty *>(client->tabs->widget(opening));
        QVERIFY(tab);
        QVERIFY(!tab->control);
    }
}

QTEST_MAIN(tst_client_show)
#include "tst_client_show.moc"
