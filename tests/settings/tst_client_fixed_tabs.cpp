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
#include "device/device_desc.h"
#include "device/speaker_types.h"
#include "overview/client_overview.h"
#include "settings/client_settings_air.h"
#include "settings/client_settings_sub.h"
#include "settings/client_settings_sub_eq.h"
#include "settings/rzslider.h"
#include "tests/settings/probe_air.h"
#include "tests/settings/probe_sub.h"
#include "zeroconf/qzeroconf.h"

// Opening a speaker where one fixed tab of a kind is pointed at the chosen one.
class tst_client_fixed_tabs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void a_phone_starts_with_a_disabled_air_tab();
    void other_classes_have_no_fixed_tab_data();
    void other_classes_have_no_fixed_tab();
    void debug_tabs_stand_before_it();
    void opening_a_speaker_points_the_tab_at_it();
    void opening_another_points_the_same_tab_at_that_one();
    void the_tabs_are_painted_anew_before_the_tab_is_selected();
    void a_phone_starts_with_disabled_sub_and_eq_tabs();
    void opening_a_subwoofer_points_the_tab_at_it();
    void opening_another_subwoofer_pulls_its_volume_to_within_10();
    void the_eq_button_points_the_eq_tab_at_the_subwoofer();
    void a_second_equaliser_points_the_same_tab_at_that_one();
    void sub_and_eq_are_painted_anew_before_they_are_selected();
    void other_tabs_are_added_behind_the_fixed_ones();

private:
    void make_client(int device_class);

    std::unique_ptr<Probe_Air> kitchen_air, bathroom_air;
    std::unique_ptr<Probe_Sub> cellar_sub, attic_sub;
    std::unique_ptr<Device_Desc> kitchen, bathroom, cellar, attic;
};

void tst_client_fixed_tabs::initTestCase()
{
    QCOMPARE(rzplattform::os_name(), QString("ios"));
    QCoreApplication::setOrganizationName("tst_client_fixed_tabs");
    settings = new QSettings;
    plattform = new rzplattform;
    kitchen_air = std::make_unique<Probe_Air>("Kitchen");
    bathroom_air = std::make_unique<Probe_Air>("Bathroom");
}

void tst_client_fixed_tabs::init()
{
    client = nullptr;
    settings->clear();
    kitchen_air->volume = 20;
    bathroom_air->volume = 80;
    kitchen = std::make_unique<Device_Desc>(nullptr, false, QString());
    kitchen->set_name("Kitchen");
    kitchen->control = kitchen_air.get();
    bathroom = std::make_unique<Device_Desc>(nullptr, false, QString());
    bathroom->set_name("Bathroom");
    bathroom->control = bathroom_air.get();
    cellar_sub = std::make_unique<Probe_Sub>("Cellar");
    cellar_sub->volume = 8;
    attic_sub = std::make_unique<Probe_Sub>("Attic");
    attic_sub->volume = 50;
    cellar = std::make_unique<Device_Desc>(nullptr, false, QString());
    cellar->set_name("Cellar");
    cellar->control = cellar_sub.get();
    attic = std::make_unique<Device_Desc>(nullptr, false, QString());
    attic->set_name("Attic");
    attic->control = attic_sub.get();
}

void tst_client_fixed_tabs::cleanup()
{
    QZeroConf *const zeroconf = client ? overview->zeroConf : nullptr;
    delete client;
    delete zeroconf;
}

void tst_client_fixed_tabs::make_client(int device_class)
{
    plattform->device_class = device_class;
    client = new Client(nullptr);
}

void tst_client_fixed_tabs::a_phone_starts_with_a_disabled_air_tab()
{
    make_client(DEVICE_PHONE);
    QCOMPARE(client->air_tab_index, 1);
    QCOMPARE(client->tabs->widget(1), client->air_tab);
    QCOMPARE(client->tabs->tabText(1), QString("Air"));
    QVERIFY(!client->tabs->isTabEnabled(1));
    QCOMPARE(client->tabs->currentIndex(), 0);
    QVERIFY(!client->air_tab->control && !client->air_tab->air && !client->air_tab->device);
}

void tst_client_fixed_tabs::other_classes_have_no_fixed_tab_data()
{
    QTest::addColumn<int>("device_class");
    QTest::newRow("unset") << 0;
    QTest::newRow("tablet") << DEVICE_TABLET;
    QTest::newRow("desktop") << DEVICE_DESKTOP;
}

void tst_client_fixed_tabs::other_classes_have_no_fixed_tab()
{
    QFETCH(int, device_class);
    make_client(device_class);
    QCOMPARE(client->tabs->count(), 1);
    QCOMPARE(client->air_tab_index, 0);
    QVERIFY(!client->air_tab);
    QCOMPARE(client->sub_tab_index, 0);
    QVERIFY(!client->sub_tab);
    QCOMPARE(client->eq_tab_index, 0);
    QVERIFY(!client->eq_tab);

    client->show_air(kitchen.get());
    QCOMPARE(kitchen->tab_index, 1);
    QCOMPARE(client->tabs->tabText(1), QString("Kitchen"));
}

void tst_client_fixed_tabs::debug_tabs_stand_before_it()
{
    settings->setValue("debug", true);
    debug_console = new QTextEdit; // the DEBUG tab takes it along when it goes
    make_client(DEVICE_PHONE);
    QCOMPARE(client->debug_tab_index, 1);
    QStringList titles;
    for (int index = 1; index < client->tabs->count(); ++index)
        titles << client->tabs->tabText(index);
    QCOMPARE(titles, (QStringList{"DEBUG", "HOOD", "Air", "Sub", "EQ"}));
    QCOMPARE(client->tabs->currentIndex(), 2);
    QCOMPARE(client->tabs->widget(client->air_tab_index), client->air_tab);
}

void tst_client_fixed_tabs::opening_a_speaker_points_the_tab_at_it()
{
    make_client(DEVICE_PHONE);
    const int count = client->tabs->count();
    client->show_air(kitchen.get());
    QCOMPARE(client->tabs->count(), count);
    QCOMPARE(client->tabs->currentIndex(), client->air_tab_index);
    QCOMPARE(client->tabs->tabText(client->air_tab_index), QString("Kitchen"));
    QVERIFY(client->tabs->isTabEnabled(client->air_tab_index));
    QCOMPARE(client->air_tab->air, kitchen_air.get());
    QCOMPARE(client->air_tab->device, kitchen.get());
    QVERIFY(!client->air_tab->control);
    QCOMPARE(client->air_tab->vol_slider->value(), 20);
    QCOMPARE(kitchen->tab_index, -1);
}

void tst_client_fixed_tabs::opening_another_points_the_same_tab_at_that_one()
{
    make_client(DEVICE_PHONE);
    const int count = client->tabs->count();
    client->show_air(kitchen.get());
    client->tabs->setCurrentIndex(0);
    client->show_air(bathroom.get());
    QCOMPARE(client->tabs->count(), count);
    QCOMPARE(client->tabs->currentIndex(), client->air_tab_index);
    QCOMPARE(client->tabs->tabText(client->air_tab_index), QString("Bathroom"));
    QCOMPARE(client->air_tab->name_label->text(), QString("<b>Bathroom</b>"));
    QCOMPARE(client->air_tab->vol_slider->value(), 80);
    QCOMPARE(kitchen_air->volume, 20);
    QCOMPARE(bathroom_air->volume, 80);
}

// Tells what stands when the tab widget is painted.
class Paint_Watch : public QObject
{
public:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            selected.append(client->tabs->currentIndex());
            const QLabel *name = client->air_tab->name_label;
            names.append(name ? name->text() : QString());
            others.append(client->sub_tab->speaker_label->text() + client->eq_tab->speaker_label->text());
        }
        return false;
    }

    QList<int> selected;
    QStringList names;  // on the Air tab
    QStringList others; // on the Sub tab and on the EQ tab
};

void tst_client_fixed_tabs::the_tabs_are_painted_anew_before_the_tab_is_selected()
{
    make_client(DEVICE_PHONE);
    client->show();
    QVERIFY(QTest::qWaitForWindowExposed(client));
    Paint_Watch watch;
    client->tabs->installEventFilter(&watch);
    client->show_air(kitchen.get());
    QCOMPARE(watch.selected.value(0, -1), 0);
    QCOMPARE(watch.names.value(0), QString("<b>Kitchen</b>"));
}

void tst_client_fixed_tabs::a_phone_starts_with_disabled_sub_and_eq_tabs()
{
    make_client(DEVICE_PHONE);
    QCOMPARE(client->tabs->count(), 4);
    QCOMPARE(client->sub_tab_index, 2);
    QCOMPARE(client->tabs->widget(2), client->sub_tab);
    QCOMPARE(client->tabs->tabText(2), QString("Sub"));
    QVERIFY(!client->tabs->isTabEnabled(2));
    QVERIFY(!client->sub_tab->control && !client->sub_tab->sub);
    QCOMPARE(client->eq_tab_index, 3);
    QCOMPARE(client->tabs->widget(3), client->eq_tab);
    QCOMPARE(client->tabs->tabText(3), QString("EQ"));
    QVERIFY(!client->tabs->isTabEnabled(3));
    QVERIFY(!client->eq_tab->control && !client->eq_tab->sub);
}

void tst_client_fixed_tabs::opening_a_subwoofer_points_the_tab_at_it()
{
    make_client(DEVICE_PHONE);
    client->show_sub(cellar.get());
    QCOMPARE(client->tabs->count(), 4);
    QCOMPARE(client->tabs->currentIndex(), 2);
    QCOMPARE(client->tabs->tabText(2), QString("Cellar"));
    QVERIFY(client->tabs->isTabEnabled(2));
    QVERIFY(!client->tabs->isTabEnabled(3));
    QCOMPARE(client->sub_tab->sub, cellar_sub.get());
    QVERIFY(!client->sub_tab->control);
    QCOMPARE(client->sub_tab->vol_slider->value(), 8);
    QCOMPARE(cellar_sub->volume, 8);
    QCOMPARE(cellar->tab_index, -1);
}

void tst_client_fixed_tabs::opening_another_subwoofer_pulls_its_volume_to_within_10()
{
    make_client(DEVICE_PHONE);
    client->show_sub(cellar.get());
    client->show_sub(attic.get());
    QCOMPARE(client->tabs->count(), 4);
    QCOMPARE(client->tabs->tabText(2), QString("Attic"));
    QCOMPARE(client->sub_tab->vol_slider->value(), 18);
    QCOMPARE(attic_sub->volume, 18);
    QCOMPARE(cellar_sub->volume, 8);
}

void tst_client_fixed_tabs::the_eq_button_points_the_eq_tab_at_the_subwoofer()
{
    make_client(DEVICE_PHONE);
    client->show_sub(cellar.get());
    QTest::mouseClick(client->sub_tab->eq_button, Qt::LeftButton);
    QCOMPARE(client->tabs->count(), 4);
    QCOMPARE(client->tabs->currentIndex(), 3);
    QCOMPARE(client->tabs->tabText(3), QString("EQ "));
    QVERIFY(client->tabs->isTabEnabled(3));
    QCOMPARE(client->eq_tab->sub, cellar_sub.get());
    QCOMPARE(client->eq_tab->freq_slider->value(), 45);
}

void tst_client_fixed_tabs::a_second_equaliser_points_the_same_tab_at_that_one()
{
    make_client(DEVICE_PHONE);
    QCOMPARE(client->show_eq(cellar_sub.get()), 3);
    attic_sub->eq_frequ = 123;
    QCOMPARE(client->show_eq(attic_sub.get()), 3);
    QCOMPARE(client->eq_tab->sub, attic_sub.get());
    QCOMPARE(client->eq_tab->freq_slider->value(), 123);
    QCOMPARE(cellar_sub->eq_frequ, 45);
    QCOMPARE(client->tabs->tabText(3), QString("EQ "));
}

void tst_client_fixed_tabs::sub_and_eq_are_painted_anew_before_they_are_selected()
{
    make_client(DEVICE_PHONE);
    client->show();
    QVERIFY(QTest::qWaitForWindowExposed(client));
    const QString cellar_title = "<b>Cellar</b> (" + model_name(18) + ")";
    Paint_Watch watch;
    client->tabs->installEventFilter(&watch);
    client->show_sub(cellar.get());
    QCOMPARE(watch.selected.value(0, -1), 0);
    QCOMPARE(watch.others.value(0), cellar_title + "<b>Name</b> (Model)");

    client->tabs->setCurrentIndex(0);
    QCoreApplication::processEvents();
    watch.selected.clear();
    watch.others.clear();
    client->show_eq(cellar_sub.get());
    QCOMPARE(watch.selected.value(0, -1), 0);
    QCOMPARE(watch.others.value(0), cellar_title + cellar_title);
}

void tst_client_fixed_tabs::other_tabs_are_added_behind_the_fixed_ones()
{
    make_client(DEVICE_PHONE);
    sender_device = kitchen.get();
    Device_Desc group(nullptr, true, "Party");
    const std::unique_ptr<Virelos> control(group.control);
    client->show_group(&group);
    QCOMPARE(group.tab_index, 4);
    QCOMPARE(client->tabs->tabText(4), QString("Party"));
    QCOMPARE(client->show_hood(kitchen.get()), 5);
    sender_device = nullptr;
}

QTEST_MAIN(tst_client_fixed_tabs)
#include "tst_client_fixed_tabs.moc"
