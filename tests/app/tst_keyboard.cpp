// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDial>
#include <QInputDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTextEdit>
#include <QTreeWidget>
#include <memory>

#include "app/client.h"
#include "app/globals.h"
#include "device/device_desc.h"
#include "network/client_conf.h"
#include "network/client_conf_statip.h"
#include "network/client_wlans.h"
#include "overview/client_group.h"
#include "overview/client_overview.h"
#include "settings/client_settings_air.h"
#include "settings/client_settings_group.h"
#include "settings/client_settings_sub.h"
#include "settings/rzpushbutton.h"
#include "settings/rzslider.h"
#include "tests/app/view_world.h"
#include "tests/overview/modal_user.h"
#include "update/client_update.h"

namespace
{
void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

// With the Tab key alone; false where it does not lead there.
bool tab_to(const QWidget *widget)
{
    for (int i = 0; i < 40 && QApplication::focusWidget() != widget; ++i)
        press(Qt::Key_Tab);
    return QApplication::focusWidget() == widget;
}

bool has_the_focus(QWidget *window)
{
    return QTest::qWaitForWindowActive(window);
}
} // namespace

// All that the mouse can do, done by keys alone.
class tst_keyboard : public QObject
{
    Q_OBJECT

private slots:
    void init() { world = std::make_unique<View_World>(); }
    void cleanup() { world.reset(); }

    void a_key_opens_a_speaker_from_the_start_on_data();
    void a_key_opens_a_speaker_from_the_start_on();
    void the_buttons_of_the_overview_open_dialogs_that_escape_leaves_data();
    void the_buttons_of_the_overview_open_dialogs_that_escape_leaves();
    void back_leaves_a_dialog_data();
    void back_leaves_a_dialog();
    void quit_ends_data();
    void quit_ends();
    void quit_held_opens_the_service_tab();
    void keys_go_from_tab_to_tab();
    void the_debug_console_can_be_left();

    void air_tab();
    void air_dial();
    void sub_tab_and_equaliser();
    void inputs_of_the_group();
    void group_of_two();
    void speaker_into_the_wlan();
    void static_address();
    void update_of_the_host();

private:
    std::unique_ptr<View_World> world;
};

void tst_keyboard::a_key_opens_a_speaker_from_the_start_on_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
    QTest::newRow("space bar") << Qt::Key_Space;
}

void tst_keyboard::a_key_opens_a_speaker_from_the_start_on()
{
    QFETCH(Qt::Key, key);
    world->open("overview");
    QVERIFY(tab_to(overview->tree));
    press(Qt::Key_Down);
    QVERIFY(!overview->wifi_button->isEnabled()); // to go there is not to open
    press(key);
    QCOMPARE(client->tabs->tabText(client->tabs->currentIndex()), QString("Bathroom"));
    QCOMPARE(overview->selected, world->other);
    QCOMPARE(overview->selected_device(), world->other);
    QVERIFY(overview->update_button->isEnabled());
    QVERIFY(overview->group_button->isEnabled());
    QVERIFY(overview->wifi_button->isEnabled());
    QVERIFY(!update_dialog); // the default button has not seen the key
}

void tst_keyboard::the_buttons_of_the_overview_open_dialogs_that_escape_leaves_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"Update >>", "Group >>", "WiFi >>"})
        QTest::newRow(text) << text;
}

void tst_keyboard::the_buttons_of_the_overview_open_dialogs_that_escape_leaves()
{
    QFETCH(QString, text);
    world->open("overview");
    QVERIFY(tab_to(overview->tree));
    press(Qt::Key_Space);
    press(Qt::Key_Backtab, Qt::ControlModifier); // back from the speaker's tab
    QCOMPARE(client->tabs->currentIndex(), 0);

    for (const QPushButton *button : {overview->update_button, overview->group_button, overview->wifi_button})
        if (button->text() == text)
            QVERIFY(tab_to(button));
    press(Qt::Key_Space);
    const QList<QDialog *> dialogs{update_dialog, group_dialog, wlans_dialog};
    QCOMPARE(dialogs.count(nullptr), 2);
    for (QDialog *dialog : dialogs)
        if (dialog) {
            QVERIFY(has_the_focus(dialog));
            press(Qt::Key_Escape);
            QVERIFY(!dialog->isVisible());
        }
    QVERIFY(client->isVisible());
}

void tst_keyboard::back_leaves_a_dialog_data()
{
    QTest::addColumn<QString>("view");
    for (const char *view :
         {"group dialog", "wlans", "wlan settings", "address by dhcp", "static address", "update"})
        QTest::newRow(view) << view;
}

void tst_keyboard::back_leaves_a_dialog()
{
    QFETCH(QString, view);
    const QWidget *const dialog = world->open(view);
    const QPushButton *back = nullptr;
    for (const QPushButton *button : dialog->findChildren<QPushButton *>())
        if (button->text() == "<< Back")
            back = button;
    QVERIFY(tab_to(back));
    press(Qt::Key_Space);
    QVERIFY(!dialog->isVisible());
}

void tst_keyboard::quit_ends_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("space bar") << Qt::Key_Space;
}

void tst_keyboard::quit_ends()
{
    QFETCH(Qt::Key, key);
    world->open("overview");
    QVERIFY(tab_to(overview->quit_button));
    QTimer failsafe;
    connect(&failsafe, &QTimer::timeout, qApp, [] { QCoreApplication::exit(-1); });
    failsafe.start(5000);
    QTimer::singleShot(0, qApp, [key] { press(key); });
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(!client->isVisible());
    // The last closed window asks for the end once more: that must not reach the boxes of other tests.
    QCoreApplication::processEvents();
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
}

void tst_keyboard::quit_held_opens_the_service_tab()
{
    world->open("overview");
    QVERIFY(tab_to(overview->quit_button));
    QTest::keyPress(overview->quit_button, Qt::Key_Space);
    QVERIFY(overview->hood_timer->isActive());
    overview->hood_timer->start(0); // the time is tested elsewhere
    QTRY_COMPARE(client->tabs->tabText(client->tabs->currentIndex()), QString("HOOD"));
    QTest::keyRelease(overview->quit_button, Qt::Key_Space);
    QVERIFY(client->isVisible());
}

void tst_keyboard::keys_go_from_tab_to_tab()
{
    world->open("air");
    world->open("sub");
    press(Qt::Key_Tab, Qt::ControlModifier); // round the end
    QCOMPARE(client->tabs->currentIndex(), 0);
    QVERIFY(tab_to(client->tabs->tabBar()));
    press(Qt::Key_Right);
    QCOMPARE(client->tabs->tabText(client->tabs->currentIndex()), QString("Kitchen"));
}

void tst_keyboard::the_debug_console_can_be_left()
{
    world.reset();
    world = std::make_unique<View_World>(0, true);
    world->open("debug");
    QVERIFY(tab_to(debug_console));
    const QString text = debug_console->toPlainText();
    press(Qt::Key_Tab);
    QVERIFY(!debug_console->hasFocus());
    QCOMPARE(debug_console->toPlainText(), text);
}

void tst_keyboard::air_tab()
{
    const auto *tab = qobject_cast<Client_Settings_Air *>(world->open("air"));
    QVERIFY(tab_to(tab->vol_slider));
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    QCOMPARE(world->kitchen.get_volume(), 2);
    press(Qt::Key_PageUp);
    QCOMPARE(world->kitchen.get_volume(), 12);
    press(Qt::Key_End); // within the fence
    QCOMPARE(world->kitchen.get_volume(), 22);

    QVERIFY(tab_to(tab->input_combo));
    press(Qt::Key_Down);
    QCOMPARE(world->kitchen.input, 'D');
    QVERIFY(tab_to(tab->room_combo));
    press(Qt::Key_End);
    QCOMPARE(world->kitchen.room, 'D');

    QVERIFY(tab_to(tab->mute_button));
    press(Qt::Key_Space);
    QCOMPARE(world->kitchen.mutes, QStringList("on"));
    press(Qt::Key_Space);
    QCOMPARE(world->kitchen.mutes, QStringList({"on", "off"}));
    QVERIFY(tab_to(tab->lock_button));
    press(Qt::Key_Return);
    QVERIFY(tab->lock_button->isChecked());
}

void tst_keyboard::air_dial()
{
    const auto *tab = qobject_cast<Client_Settings_Air *>(world->open("air"));
    QVERIFY(tab_to(tab->vol_dial));
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    QCOMPARE(world->kitchen.get_volume(), 2);
    press(Qt::Key_Down);
    QCOMPARE(world->kitchen.get_volume(), 1);
}

void tst_keyboard::sub_tab_and_equaliser()
{
    const auto *tab = qobject_cast<Client_Settings_Sub *>(world->open("sub"));
    QVERIFY(tab_to(tab->hp_check));
    press(Qt::Key_Space);
    QCOMPARE(world->cellar.hp_enabled, 0);
    QVERIFY(tab_to(tab->phase_slider));
    press(Qt::Key_Left);
    QCOMPARE(world->cellar.phase, 89);
    QVERIFY(tab_to(tab->polarity_combo));
    press(Qt::Key_Up);
    QCOMPARE(world->cellar.polarity, 0);
    QVERIFY(tab_to(tab->eq_button));
    press(Qt::Key_Space);
    QCOMPARE(client->tabs->tabText(client->tabs->currentIndex()), QString("EQ"));
}

void tst_keyboard::inputs_of_the_group()
{
    const auto *tab = qobject_cast<Client_Settings_Group *>(world->open("group"));
    QVERIFY(tab_to(tab->source0_button));
    press(Qt::Key_Right);
    QVERIFY(tab->source1_button->isChecked());
    QCOMPARE(world->kitchen.input, 'D');
    press(Qt::Key_Right);
    QCOMPARE(world->kitchen.input, 'd');
    press(Qt::Key_Down);
    QCOMPARE(world->kitchen.input, 'A');
    press(Qt::Key_Up);
    press(Qt::Key_Left);
    QVERIFY(QApplication::focusWidget() != tab->source_auto_button);
}

void tst_keyboard::group_of_two()
{
    const auto *dialog = qobject_cast<Client_Group *>(world->open("group dialog"));
    QVERIFY(tab_to(dialog->dissolve_button));
    Modal_User<QInputDialog> user([](QInputDialog *box) { type_name(box, "Party"); });
    QCOMPARE(dialog->dissolve_button->text(), QString("Create Group"));
    press(Qt::Key_Space);
    QVERIFY(user.met);
    group_dialog->activateWindow(); // which a window manager does
    QVERIFY(has_the_focus(group_dialog));
    QCOMPARE(sender_device, world->other);
    sender_device->uuid = "uuid-1"; // as the reply brings it

    // The first row is the current one, and none is selected yet.
    QVERIFY(tab_to(dialog->tree));
    press(Qt::Key_Space);
    QVERIFY(dialog->add_button->isEnabled());
    QVERIFY(tab_to(dialog->add_button));
    press(Qt::Key_Space);
    QCOMPARE(world->master->receiver_sender, QString("uuid-1"));

    // The buttons are those of the row that is selected, however it came to be.
    QVERIFY(tab_to(dialog->tree));
    QVERIFY(dialog->remove_button->isEnabled());
    press(Qt::Key_Down);
    QVERIFY(dialog->add_button->isEnabled());
    QVERIFY(!dialog->remove_button->isEnabled());
    press(Qt::Key_Up);
    QVERIFY(dialog->remove_button->isEnabled());
    QVERIFY(tab_to(dialog->remove_button));
    press(Qt::Key_Space);
    QCOMPARE(world->master->receiver_state, 0);

    QVERIFY(tab_to(dialog->tree));
    press(Qt::Key_Return); // the default button
    QVERIFY(!dialog->isVisible());
}

void tst_keyboard::speaker_into_the_wlan()
{
    world->open("wlans");
    QCOMPARE(QApplication::focusWidget(), wlans_dialog->tree);
    press(Qt::Key_Down);
    world->network.peer.answer = QByteArray();
    press(Qt::Key_Return);
    QVERIFY(has_the_focus(conf_dialog));
    QCOMPARE(world->master->ssid, QString("B"));
    QVERIFY(tab_to(conf_dialog->passwd_edit));
    QTest::keyClicks(QApplication::focusWidget(), "secret");
    press(Qt::Key_Return);
    QTRY_COMPARE(world->network.peer.requests.size(), 2); // the scan, and this one
    const QByteArray body = world->network.peer.requests.last().body;
    QVERIFY(body.contains(R"("ssid": "B", "psk": "secret")"));
}

void tst_keyboard::static_address()
{
    const auto *dialog = qobject_cast<Client_Conf_StatIP *>(world->open("address by dhcp"));
    QCOMPARE(QApplication::focusWidget(), dialog->dhcp_radio);
    press(Qt::Key_Right);
    QVERIFY(dialog->static_radio->isChecked());
    QVERIFY(dialog->ip_edit->isEnabled());
    QVERIFY(tab_to(dialog->ip_edit));
    press(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), "192.168.1.20");
    press(Qt::Key_Return);
    QVERIFY(!dialog->isVisible());
    QVERIFY(world->master->static_network);
    QCOMPARE(world->master->static_ip, QString("192.168.1.20"));
}

void tst_keyboard::update_of_the_host()
{
    const auto *dialog = qobject_cast<Client_Update *>(world->open("update"));
    QCOMPARE(QApplication::focusWidget(), dialog->wifi_radio);
    press(Qt::Key_Right);
    QVERIFY(dialog->host_radio->isChecked());
    QVERIFY(tab_to(dialog->url_edit));
    press(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), QString("http://%1:%2/")
                                                      .arg(world->network.peer.serverAddress().toString())
                                                      .arg(world->network.peer.serverPort()));
    QVERIFY(tab_to(dialog->check_button));
    world->network.peer.answer = "HTTP/1.1 200 OK\r\nContent-Length: 4321\r\n\r\n";
    press(Qt::Key_Space);
    QTRY_VERIFY(dialog->flash_button->isEnabled());
    QVERIFY(world->network.peer.requests.last().line.contains("host.hex"));
    QVERIFY(tab_to(dialog->flash_button));
}

QTEST_MAIN(tst_keyboard)
#include "tst_keyboard.moc"
