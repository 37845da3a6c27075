// SPDX-License-Identifier: MIT
#include <QDialog>
#include <QPushButton>
#include <QSettings>
#include <QTabWidget>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <QTranslator>
#include <QVBoxLayout>
#include <memory>

#include "app/client.h"
#include "app/globals.h"
#include "app/rzplattform.h"
#include "overview/client_overview.h"
#include "settings/client_hood.h"
#include "settings/client_settings_debug.h"
#include "tests/overview/overview_world.h"
#include "zeroconf/qzeroconf.h"

// The main window and the tabs that it starts with; how tabs are opened is tested beside them.
class tst_client : public QObject
{
    Q_OBJECT

private slots:
    void starts_with_one_tab_when_debug_is_off();
    void starts_with_the_debug_tab_when_debug_is_on();
    void starts_in_the_service_tab_when_debug_is_on();
    void the_service_tab_turns_debug_on_for_the_next_window();
    void debug_setting_changed_at_run_time_changes_no_tab();
    void debug_setting_is_read_again_by_the_window();
    void window_has_title_and_start_size_data();
    void window_has_title_and_start_size();
    void texts_are_german_in_german();
    void tabs_fill_a_vertical_layout();
    void there_are_no_fixed_tabs_but_on_an_ios_phone_data();
    void there_are_no_fixed_tabs_but_on_an_ios_phone();
    void resize_is_logged();
    void discovery_starts_before_the_window_shows();
    void closing_the_window_ends_the_event_loop_data();
    void closing_the_window_ends_the_event_loop();
};

void tst_client::starts_with_one_tab_when_debug_is_off()
{
    Overview_World world;
    world.open();
    QCOMPARE(client->tabs->count(), 1);
    QCOMPARE(client->tabs->tabText(0), QString("Air Selection / Setup"));
    QCOMPARE(client->tabs->widget(0), overview);
    QCOMPARE(client->debug_tab_index, 0);
    QVERIFY(debug_console->toPlainText().isEmpty());
}

void tst_client::starts_with_the_debug_tab_when_debug_is_on()
{
    Overview_World world;
    world.set_debug(true);
    world.open();
    QCOMPARE(client->debug_tab_index, 1);
    QCOMPARE(client->tabs->tabText(0), QString("Air Selection / Setup"));
    QCOMPARE(client->tabs->tabText(1), QString("DEBUG"));
    auto *tab = qobject_cast<Client_Settings_Debug *>(client->tabs->widget(1));
    QVERIFY(tab);
    QVERIFY(tab->isAncestorOf(debug_console));
    QVERIFY(client->tabs->isTabEnabled(1));
}

void tst_client::starts_in_the_service_tab_when_debug_is_on()
{
    Overview_World world;
    world.set_debug(true);
    world.open();
    QCOMPARE(client->tabs->count(), 3);
    QCOMPARE(client->tabs->tabText(2), QString("HOOD"));
    QCOMPARE(client->tabs->currentIndex(), 2);
    auto *tab = qobject_cast<Client_Hood *>(client->tabs->widget(2));
    QVERIFY(tab);
    QVERIFY(!tab->device);
    QVERIFY(tab->debug_button->isChecked());
}

void tst_client::the_service_tab_turns_debug_on_for_the_next_window()
{
    Overview_World world;
    world.open();
    client->show_hood(nullptr);
    auto *tab = qobject_cast<Client_Hood *>(client->tabs->widget(1));
    QVERIFY(!tab->debug_button->isChecked());
    QTest::mouseClick(tab->debug_button, Qt::LeftButton);
    QCOMPARE(client->tabs->count(), 2); // this window stays as it is
    QVERIFY(!debug_enabled);

    QZeroConf *const zeroconf = overview->zeroConf;
    delete client;
    delete zeroconf;
    world.open();
    QCOMPARE(client->tabs->count(), 3);
    QCOMPARE(client->tabs->tabText(client->tabs->currentIndex()), QString("HOOD"));
}

void tst_client::debug_setting_changed_at_run_time_changes_no_tab()
{
    Overview_World world;
    world.open_and_show();
    settings->setValue("debug", true);
    settings->sync();
    QCoreApplication::processEvents();
    QCOMPARE(client->tabs->count(), 1);
    QVERIFY(!debug_enabled);
}

void tst_client::debug_setting_is_read_again_by_the_window()
{
    Overview_World world;
    settings->setValue("debug", true);
    debug_enabled = false;
    world.open();
    QCOMPARE(client->tabs->tabText(1), QString("DEBUG"));
}

void tst_client::window_has_title_and_start_size_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("as measured") << QSize(726, 660);
    QTest::newRow("other metrics") << QSize(900, 700);
}

void tst_client::window_has_title_and_start_size()
{
    QFETCH(QSize, size);
    Overview_World world;
    plattform->window_width = size.width();
    plattform->window_height = size.height();
    world.open();
    QCOMPARE(client->windowTitle(), QString("VIRELOv2 App"));
    QCOMPARE(client->size(), size);
    QVERIFY(!client->parent());
}

void tst_client::texts_are_german_in_german()
{
    QTranslator german;
    QVERIFY(german.load("VIRELO_de_DE", ":/translations/"));
    QCoreApplication::installTranslator(&german);
    Overview_World world;
    world.set_debug(true);
    world.open();
    QCOMPARE(client->windowTitle(), german.translate("Client", "VIRELOv2 App"));
    QCOMPARE(client->tabs->tabText(0), german.translate("Client", "Air Selection / Setup"));
    QVERIFY(client->tabs->tabText(0) != "Air Selection / Setup");
    QCOMPARE(client->tabs->tabText(1), QString("DEBUG"));
}

void tst_client::tabs_fill_a_vertical_layout()
{
    Overview_World world;
    world.open();
    const auto *layout = qobject_cast<QVBoxLayout *>(client->layout());
    QVERIFY(layout);
    QCOMPARE(layout->count(), 1);
    QCOMPARE(layout->itemAt(0)->widget(), client->tabs);
}

void tst_client::there_are_no_fixed_tabs_but_on_an_ios_phone_data()
{
    QTest::addColumn<int>("device_class");
    QTest::newRow("unset") << 0;
    QTest::newRow("phone") << DEVICE_PHONE;
    QTest::newRow("tablet") << DEVICE_TABLET;
    QTest::newRow("desktop") << DEVICE_DESKTOP;
}

void tst_client::there_are_no_fixed_tabs_but_on_an_ios_phone()
{
    QFETCH(int, device_class);
    Overview_World world(device_class);
    world.open();
    QVERIFY(!Client::has_fixed_tabs());
    QCOMPARE(client->tabs->count(), 1);
    QCOMPARE(client->air_tab_index, 0);
    QCOMPARE(client->sub_tab_index, 0);
    QCOMPARE(client->eq_tab_index, 0);
    QVERIFY(!client->air_tab);
    QVERIFY(!client->sub_tab);
    QVERIFY(!client->eq_tab);
}

void tst_client::resize_is_logged()
{
    Overview_World world;
    world.open_and_show();
    world.log.clear();
    client->resize(800, 700);
    QTRY_VERIFY(world.log.texts().contains("Client::resizeEvent() QSize(800, 700)"));
}

void tst_client::discovery_starts_before_the_window_shows()
{
    Overview_World world;
    world.open();
    QVERIFY(!client->isVisible());
    QVERIFY(overview->zeroConf);
    QVERIFY(world.log.texts().contains("QZeroConf::startBrowser: return"));
}

void tst_client::closing_the_window_ends_the_event_loop_data()
{
    QTest::addColumn<bool>("dialog_open");
    QTest::addColumn<bool>("by_escape");
    QTest::newRow("alone") << false << false;
    QTest::newRow("with a dialog still open") << true << false;
    QTest::newRow("by Escape") << false << true;
}

void tst_client::closing_the_window_ends_the_event_loop()
{
    QFETCH(bool, dialog_open);
    QFETCH(bool, by_escape);
    Overview_World world;
    world.open_and_show();
    QDialog dialog; // such as the overview opens: without a parent
    dialog.setVisible(dialog_open);
    QTimer::singleShot(0, [by_escape] {
        if (by_escape)
            QTest::keyClick(client, Qt::Key_Escape);
        else
            client->close();
    });
    QTimer::singleShot(5000, qApp, [] { QCoreApplication::exit(-1); });
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(!client->isVisible());
}

QTEST_MAIN(tst_client)
#include "tst_client.moc"
