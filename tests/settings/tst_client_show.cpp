// SPDX-License-Identifier: MIT
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTabWidget>
#include <QTextEdit>
#include <QtTest>
#include <memory>

#include "app/client.h"
#include "app/globals.h"
#include "app/rzplattform.h"
#include "control/virelo_group.h"
#include "device/device_desc.h"
#include "overview/client_overview.h"
#include "settings/client_hood.h"
#include "settings/client_settings_air.h"
#include "settings/client_settings_empty.h"
#include "settings/client_settings_group.h"
#include "settings/client_settings_sub.h"
#include "settings/client_settings_sub_eq.h"
#include "settings/client_settings_sub_profiles.h"
#include "tests/settings/probe_air.h"
#include "tests/settings/probe_sub.h"
#include "zeroconf/qzeroconf.h"

// Opening a speaker where each record has a tab of its own.
class tst_client_show : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void a_speaker_gets_a_tab_with_its_name_at_the_first_opening_data();
    void a_speaker_gets_a_tab_with_its_name_at_the_first_opening();
    void opening_it_again_only_selects_its_tab();
    void a_second_speaker_gets_a_tab_of_its_own();
    void index_0_counts_as_no_tab();
    void a_speaker_of_unknown_type_gets_an_empty_tab_once();
    void an_empty_tab_works_without_control_object();
    void an_empty_tab_without_record_is_added_each_time();
    void a_subwoofer_gets_a_tab_with_its_name_once_data();
    void a_subwoofer_gets_a_tab_with_its_name_once();
    void the_eq_button_opens_one_equaliser_tab();
    void a_second_equaliser_selects_the_tab_that_is_there();
    void a_profiles_tab_is_added_each_time();
    void a_group_gets_a_tab_with_its_name_once();
    void a_group_tab_without_record_is_added_each_time();
    void a_group_without_a_master_gets_a_tab_that_operates_nothing();
    void quit_of_the_group_tab_closes_the_window();
    void a_service_tab_is_added_each_time();

private:
    static void add_device_classes();

    std::unique_ptr<Probe_Air> kitchen_air, bathroom_air;
    std::unique_ptr<Probe_Sub> cellar_sub;
    std::unique_ptr<Device_Desc> kitchen, bathroom, cellar;
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
    cellar_sub = std::make_unique<Probe_Sub>("Cellar");
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
    cellar = std::make_unique<Device_Desc>(nullptr, false, QString());
    cellar->set_name("Cellar");
    cellar->control = cellar_sub.get();
    client = new Client(nullptr);
    QCOMPARE(client->tabs->count(), 1);
}

void tst_client_show::cleanup()
{
    QZeroConf *const zeroconf = overview->zeroConf;
    delete client;
    delete zeroconf;
}

void tst_client_show::add_device_classes()
{
    QTest::addColumn<int>("device_class");
    QTest::newRow("unset") << 0;
    QTest::newRow("phone") << DEVICE_PHONE; // of another system than the one with fixed tabs
    QTest::newRow("tablet") << DEVICE_TABLET;
    QTest::newRow("desktop") << DEVICE_DESKTOP;
}

void tst_client_show::a_speaker_gets_a_tab_with_its_name_at_the_first_opening_data()
{
    add_device_classes();
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
    kitchen->tab_index = bathroom->tab_index = cellar->tab_index = 0; // that of the overview
    client->show_air(kitchen.get());
    QCOMPARE(kitchen->tab_index, 1);
    client->show_empty(bathroom.get());
    QCOMPARE(bathroom->tab_index, 2);
    QCOMPARE(client->tabs->currentIndex(), 2);
    client->show_sub(cellar.get());
    QCOMPARE(cellar->tab_index, 3);
    QCOMPARE(client->tabs->currentIndex(), 3);
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

void tst_client_show::a_subwoofer_gets_a_tab_with_its_name_once_data()
{
    add_device_classes();
}

void tst_client_show::a_subwoofer_gets_a_tab_with_its_name_once()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    for (int opening = 0; opening < 2; ++opening) {
        client->tabs->setCurrentIndex(0);
        client->show_sub(cellar.get());
        QCOMPARE(client->tabs->count(), 2);
        QCOMPARE(client->tabs->currentIndex(), 1);
    }
    QCOMPARE(client->tabs->tabText(1), QString("Cellar"));
    QVERIFY(client->tabs->isTabEnabled(1));
    QCOMPARE(cellar->tab_index, 1);
    QCOMPARE(client->sub_tab_index, 0);
    QVERIFY(!client->sub_tab);
    auto *tab = qobject_cast<Client_Settings_Sub *>(client->tabs->widget(1));
    QVERIFY(tab);
    QCOMPARE(tab->sub, cellar_sub.get());
    QCOMPARE(tab->control, cellar_sub.get());
}

void tst_client_show::the_eq_button_opens_one_equaliser_tab()
{
    client->show_sub(cellar.get());
    const auto *sub_tab = qobject_cast<Client_Settings_Sub *>(client->tabs->widget(1));
    for (int opening = 0; opening < 2; ++opening) {
        client->tabs->setCurrentIndex(1);
        QTest::mouseClick(sub_tab->eq_button, Qt::LeftButton);
        QCOMPARE(client->tabs->count(), 3);
        QCOMPARE(client->tabs->currentIndex(), 2);
    }
    QCOMPARE(client->tabs->tabText(2), QString("EQ"));
    QVERIFY(client->tabs->isTabEnabled(2));
    QCOMPARE(client->eq_tab_index, 2);
    QVERIFY(!client->eq_tab);
    auto *tab = qobject_cast<Client_Settings_Sub_EQ *>(client->tabs->widget(2));
    QVERIFY(tab);
    QCOMPARE(tab->sub, cellar_sub.get());
    QCOMPARE(cellar->tab_index, 1);
}

void tst_client_show::a_second_equaliser_selects_the_tab_that_is_there()
{
    QCOMPARE(client->show_eq(cellar_sub.get()), 1);
    Probe_Sub attic("Attic");
    client->tabs->setCurrentIndex(0);
    QCOMPARE(client->show_eq(&attic), 1);
    QCOMPARE(client->tabs->count(), 2);
    QCOMPARE(client->tabs->currentIndex(), 1);
    QCOMPARE(client->tabs->tabText(1), QString("EQ"));
    auto *tab = qobject_cast<Client_Settings_Sub_EQ *>(client->tabs->widget(1));
    QCOMPARE(tab->sub, cellar_sub.get());
    QCOMPARE(tab->control, cellar_sub.get());
}

void tst_client_show::a_profiles_tab_is_added_each_time()
{
    for (int opening = 1; opening <= 2; ++opening) {
        QCOMPARE(client->show_profiles(cellar_sub.get(), "Set-ups"), opening);
        QCOMPARE(client->tabs->count(), 1 + opening);
        QCOMPARE(client->tabs->currentIndex(), opening);
        QCOMPARE(client->tabs->tabText(opening), QString("Set-ups"));
        auto *tab = qobject_cast<Client_Settings_Sub_Profiles *>(client->tabs->widget(opening));
        QVERIFY(tab);
        QCOMPARE(tab->sub, cellar_sub.get());
    }
}

void tst_client_show::a_group_gets_a_tab_with_its_name_once()
{
    sender_device = kitchen.get();
    Device_Desc group(nullptr, true, "Party");
    const std::unique_ptr<Virelos> control(group.control);
    group.tab_index = 0; // that of the overview
    for (int opening = 0; opening < 2; ++opening) {
        client->tabs->setCurrentIndex(0);
        client->show_group(&group);
        QCOMPARE(client->tabs->count(), 2);
        QCOMPARE(client->tabs->currentIndex(), 1);
    }
    QCOMPARE(client->tabs->tabText(1), QString("Party"));
    QCOMPARE(group.tab_index, 1);
    auto *tab = qobject_cast<Client_Settings_Group *>(client->tabs->widget(1));
    QVERIFY(tab);
    QCOMPARE(tab->group_control, group.control);
    QCOMPARE(tab->master_air, kitchen_air.get());
    sender_device = nullptr;
}

void tst_client_show::a_group_tab_without_record_is_added_each_time()
{
    for (int opening = 1; opening <= 2; ++opening) {
        client->show_group(nullptr);
        QCOMPARE(client->tabs->count(), 1 + opening);
        QCOMPARE(client->tabs->currentIndex(), opening);
        QCOMPARE(client->tabs->tabText(opening), QString("GROUP"));
        auto *tab = qobject_cast<Client_Settings_Group *>(client->tabs->widget(opening));
        QVERIFY(tab);
        QVERIFY(!tab->control && !tab->group_control);
    }
}

void tst_client_show::a_group_without_a_master_gets_a_tab_that_operates_nothing()
{
    QVERIFY(!sender_device);
    Device_Desc group(nullptr, true, "Party");
    const std::unique_ptr<Virelos> control(group.control);
    client->show_group(&group);
    QCOMPARE(client->tabs->tabText(1), QString("Party"));
    QCOMPARE(client->tabs->currentIndex(), 1);
    QCOMPARE(group.tab_index, 1);
    auto *tab = qobject_cast<Client_Settings_Group *>(client->tabs->widget(1));
    QVERIFY(tab);
    QVERIFY(!tab->group_control && !tab->master_air && !tab->master_sub);
}

void tst_client_show::quit_of_the_group_tab_closes_the_window()
{
    client->show_group(nullptr);
    client->show();
    QVERIFY(QTest::qWaitForWindowExposed(client));
    QTest::mouseClick(qobject_cast<Client_Settings_Group *>(client->tabs->widget(1))->quit_button,
                      Qt::LeftButton);
    QVERIFY(!client->isVisible());
}

void tst_client_show::a_service_tab_is_added_each_time()
{
    const QList<Device_Desc *> selected = {kitchen.get(), nullptr, kitchen.get()};
    for (int opening = 1; opening <= selected.size(); ++opening) {
        QCOMPARE(client->show_hood(selected.at(opening - 1)), opening);
        QCOMPARE(client->tabs->count(), 1 + opening);
        QCOMPARE(client->tabs->currentIndex(), opening);
        QCOMPARE(client->tabs->tabText(opening), QString("HOOD"));
        auto *tab = qobject_cast<Client_Hood *>(client->tabs->widget(opening));
        QVERIFY(tab);
        QCOMPARE(tab->device, selected.at(opening - 1));
    }
    QCOMPARE(kitchen->tab_index, -1);
}

QTEST_MAIN(tst_client_show)
#include "tst_client_show.moc"
