// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <memory>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "device/device_desc.h"
#include "network/client_conf.h"
#include "network/client_conf_statip.h"
#include "overview/client_overview.h"
#include "settings/rzpixmaplabel.h"
#include "tests/network/conf_user.h"
#include "tests/network/wlan_world.h"
#include "tests/settings/grid_probe.h"
#include "tests/settings/marking_translator.h"

// How the WLAN settings look, and the way to the static address. What they send is told in
// tst_client_conf_wire, what becomes of the answers in tst_client_conf_chain and tst_client_conf_end.
class tst_client_conf : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void it_becomes_the_dialog_that_was_opened_last();
    void the_window_has_the_size_of_the_platform();
    void everything_has_its_text_data();
    void everything_has_its_text();
    void all_texts_are_translated_data();
    void all_texts_are_translated();
    void everything_stands_in_its_place_data();
    void everything_stands_in_its_place();
    void the_picture_is_the_wide_one_above_2000_pixels();
    void the_record_is_shown();
    void what_looks_like_markup_stands_as_it_is();
    void a_long_value_leaves_the_window_its_size();
    void the_password_is_hidden_and_empty();
    void save_is_the_default_and_enabled();
    void enter_in_the_password_is_save();
    void the_address_shows_its_mode_after_the_update_alone();
    void the_static_address_dialog_is_made_anew_each_time();
    void a_saved_static_address_shows();
    void back_in_the_static_address_dialog_changes_nothing();
    void an_older_static_address_dialog_still_reports();
    void back_closes_and_deletes_nothing();
    void without_a_record_the_buttons_do_nothing();
    void the_slots_stand_in_order();

private:
    Client_Conf *open() const { return open_conf(*world); }

    std::unique_ptr<Wlan_World> world;
    Device_Desc *record = nullptr;
};

void tst_client_conf::init()
{
    world = std::make_unique<Wlan_World>();
    record = world->record;
    record->ip = "10.0.0.7";
}

void tst_client_conf::cleanup()
{
    world.reset();
}

static QGridLayout *grid_of(const Client_Conf *dialog)
{
    return qobject_cast<QGridLayout *>(dialog->layout());
}

void tst_client_conf::it_becomes_the_dialog_that_was_opened_last()
{
    const auto *first = new Client_Conf(record, nullptr);
    QCOMPARE(conf_dialog, first);
    const auto *second = new Client_Conf(record, nullptr);
    QCOMPARE(conf_dialog, second);
}

void tst_client_conf::the_window_has_the_size_of_the_platform()
{
    plattform->window_width = 801;
    plattform->window_height = 702;
    QWidget parent;
    const Client_Conf dialog(record, &parent);
    QCOMPARE(dialog.size(), QSize(801, 702));
    QCOMPARE(dialog.parentWidget(), &parent);
    QCOMPARE(dialog.device.data(), record);
    QVERIFY(!dialog.isModal());
}

static QStringList texts_of(const Client_Conf *dialog)
{
    QStringList texts{dialog->windowTitle()};
    for (int row = 1; row <= 9; ++row)
        texts += text_at(grid_of(dialog), row, 0);
    return texts << dialog->hint_label->text() << dialog->dhcp_button->text() << dialog->back_button->text()
                 << dialog->save_button->text();
}

static void add_device_classes()
{
    QTest::addColumn<int>("device_class");
    QTest::newRow("unset") << 0;
    QTest::newRow("phone") << DEVICE_PHONE;
    QTest::newRow("tablet") << DEVICE_TABLET;
    QTest::newRow("desktop") << DEVICE_DESKTOP;
}

static QString hint_of(int device_class)
{
    return device_class == DEVICE_PHONE ? "SAVE will reboot\nyour Speakers!"
                                        : "Clicking on SAVE will reboot your\nVIRELO Air-Speakers!";
}

void tst_client_conf::everything_has_its_text_data()
{
    add_device_classes();
}

void tst_client_conf::everything_has_its_text()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    QCOMPARE(texts_of(open()),
             (QStringList{"Speaker WLAN Settings", "Model:", "Name:", "WLAN:", "Passwd:", "", "IP Addr:", "",
                          "MAC:", "Vers:", hint_of(device_class), "DHCP/Static", "<< Back", "SAVE"}));
}

void tst_client_conf::all_texts_are_translated_data()
{
    add_device_classes();
}

void tst_client_conf::all_texts_are_translated()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    Marking_Translator translator("Client_Conf");
    QCoreApplication::installTranslator(&translator);
    QCOMPARE(
        texts_of(open()),
        (QStringList{"#Speaker WLAN Settings", "#Model:", "#Name:", "#WLAN:", "#Passwd:", "", "#IP Addr:", "",
                     "#MAC:", "#Vers:", "#" + hint_of(device_class), "#DHCP/Static", "#<< Back", "#SAVE"}));
}

void tst_client_conf::everything_stands_in_its_place_data()
{
    add_device_classes();
}

void tst_client_conf::everything_stands_in_its_place()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    const bool phone = device_class == DEVICE_PHONE;
    const int span = phone ? 1 : 3;
    const Client_Conf *dialog = open();
    QGridLayout *grid = grid_of(dialog);
    QVERIFY(grid);
    const struct {
        QWidget *widget;
        QList<int> place;
    } places[] = {
        {dialog->findChild<RZPixmapLabel *>(), {0, 0, 1, 1 + span}},
        {label_at(grid, 1, 1), {1, 1, 1, span}},
        {dialog->name_edit, {2, 1, 1, span}},
        {label_at(grid, 3, 1), {3, 1, 1, span}},
        {dialog->passwd_edit, {4, 1, 1, span}},
        {dialog->ip_label, {6, 1, 1, 1}},
        {dialog->dhcp_button, {7, 1, 1, 1}},
        {label_at(grid, 8, 1), {8, 1, 1, span}},
        {label_at(grid, 9, 1), {9, 1, 1, span}},
        {dialog->hint_label, {10, 0, 1, 1 + span}},
        {dialog->back_button, {11, phone ? 0 : 2, 1, 1}},
        {dialog->save_button, {11, phone ? 1 : 3, 1, 1}},
    };
    for (const auto &entry : places)
        QCOMPARE(place_of(grid, entry.widget), entry.place);
    for (const int row : {1, 2, 3, 4, 6, 8, 9})
        QCOMPARE(place_of(grid, label_at(grid, row, 0)), (QList<int>{row, 0, 1, 1}));
    QCOMPARE(grid->count(), 12 + 7); // nothing in row 5, nothing beside the button in row 7
}

void tst_client_conf::the_picture_is_the_wide_one_above_2000_pixels()
{
    const auto picture = [this](int width) {
        plattform->desktop_width = width;
        return open()->findChild<RZPixmapLabel *>()->source_pixmap.toImage();
    };
    QCOMPARE(picture(2000), QPixmap(":/GRAFX/Deko_WLAN_640.png").toImage());
    QCOMPARE(picture(2001), QPixmap(":/GRAFX/Deko_WLAN_2k.png").toImage());
}

static QStringList values_of(const Client_Conf *dialog)
{
    QStringList values{dialog->name_edit->text()};
    for (const int row : {1, 3, 6, 8, 9})
        values += text_at(grid_of(dialog), row, 1);
    return values;
}

void tst_client_conf::the_record_is_shown()
{
    record->ssid = "Home";
    record->static_network = true;
    record->static_ip = "10.1.1.1";
    QCOMPARE(values_of(open()), (QStringList{"Kitchen", "VIRELO Air", "Home", "10.0.0.7", "02:00:00:00:00:15",
                                             "1.4.2"})); // the address has no mode

    Device_Desc empty(nullptr, false, "");
    const Client_Conf dialog(&empty, nullptr);
    QCOMPARE(values_of(&dialog), QStringList({"", "", "", "", "", ""}));
}

void tst_client_conf::what_looks_like_markup_stands_as_it_is()
{
    record->ssid = "<b>Home</b>";
    const Client_Conf *dialog = open();
    for (const int row : {1, 3, 6, 8, 9})
        QCOMPARE(label_at(grid_of(dialog), row, 1)->textFormat(), Qt::PlainText);
    QCOMPARE(text_at(grid_of(dialog), 3, 1), QString("<b>Home</b>"));
}

void tst_client_conf::a_long_value_leaves_the_window_its_size()
{
    plattform->device_class = DEVICE_PHONE;
    const int narrowest = open()->minimumSizeHint().width();
    for (QString Device_Desc::*field : {&Device_Desc::model, &Device_Desc::ssid, &Device_Desc::mac,
                                        &Device_Desc::firmware, &Device_Desc::static_ip})
        record->*field = QString(1000, 'W');
    record->static_network = true;
    Client_Conf *dialog = open();
    dialog->update();
    QCOMPARE(dialog->minimumSizeHint().width(), narrowest);
    QCOMPARE(dialog->width(), plattform->window_width);
}

void tst_client_conf::the_password_is_hidden_and_empty()
{
    const Client_Conf *dialog = open();
    QCOMPARE(dialog->passwd_edit->echoMode(), QLineEdit::Password);
    QCOMPARE(dialog->passwd_edit->text(), QString());
    QCOMPARE(dialog->name_edit->echoMode(), QLineEdit::Normal);
}

void tst_client_conf::save_is_the_default_and_enabled()
{
    const Client_Conf *dialog = open();
    QVERIFY(dialog->save_button->isDefault());
    QVERIFY(dialog->save_button->isEnabled());
    QVERIFY(dialog->back_button->isEnabled());
    QVERIFY(dialog->dhcp_button->isEnabled());
    QCOMPARE(world->peer.requests.size(), 0);
}

void tst_client_conf::enter_in_the_password_is_save()
{
    world->peer.point_at_me(*record);
    Client_Conf *dialog = open();
    dialog->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(dialog));
    QTest::keyClicks(dialog->passwd_edit, "secret");
    QTest::keyClick(dialog->passwd_edit, Qt::Key_Return);
    QTRY_COMPARE(world->peer.requests.size(), 1);
    QVERIFY(world->peer.requests.first().body.contains("\"secret\""));
    QVERIFY(dialog->isVisible());
}

void tst_client_conf::the_address_shows_its_mode_after_the_update_alone()
{
    Client_Conf *dialog = open();
    QCOMPARE(dialog->ip_label->text(), QString("10.0.0.7"));
    dialog->update();
    QCOMPARE(dialog->ip_label->text(), QString("10.0.0.7 (DHCP)"));
    record->static_ip = "10.1.1.1";
    record->static_network = true;
    QCOMPARE(dialog->ip_label->text(), QString("10.0.0.7 (DHCP)"));
    dialog->update();
    QCOMPARE(dialog->ip_label->text(), QString("10.1.1.1 (static)"));
    record->clear_static_network();
    dialog->update();
    QCOMPARE(dialog->ip_label->text(), QString("10.0.0.7 (DHCP)"));
}

static Client_Conf_StatIP *open_static(const Client_Conf *dialog)
{
    QTest::mouseClick(dialog->dhcp_button, Qt::LeftButton);
    return conf_statip_dialog;
}

void tst_client_conf::the_static_address_dialog_is_made_anew_each_time()
{
    const Client_Conf *dialog = open();
    const QPointer<Client_Conf_StatIP> first = open_static(dialog);
    QVERIFY(first && first->isVisible());
    QVERIFY(!first->parent());
    QVERIFY(!first->isModal());
    QCOMPARE(first->device.data(), record);
    const Client_Conf_StatIP *second = open_static(dialog);
    QVERIFY(second != first);
    QVERIFY(first && first->isVisible());
    QVERIFY(second->isVisible());
    QVERIFY(dialog->isVisible());
}

void tst_client_conf::a_saved_static_address_shows()
{
    const Client_Conf *dialog = open();
    const Client_Conf_StatIP *address = open_static(dialog);
    QTest::mouseClick(address->static_radio, Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    address->ip_edit->setText("192.168.1.20");
    QTest::mouseClick(address->save_button, Qt::LeftButton);
    QCOMPARE(dialog->ip_label->text(), QString("192.168.1.20 (static)"));

    address = open_static(dialog);
    QTest::mouseClick(address->dhcp_radio, Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    QTest::mouseClick(address->save_button, Qt::LeftButton);
    QCOMPARE(dialog->ip_label->text(), QString("10.0.0.7 (DHCP)"));
}

void tst_client_conf::back_in_the_static_address_dialog_changes_nothing()
{
    const Client_Conf *dialog = open();
    QTest::mouseClick(open_static(dialog)->back_button, Qt::LeftButton);
    QCOMPARE(dialog->ip_label->text(), QString("10.0.0.7"));
}

void tst_client_conf::an_older_static_address_dialog_still_reports()
{
    const Client_Conf *dialog = open();
    const Client_Conf_StatIP *first = open_static(dialog);
    open_static(dialog);
    QTest::mouseClick(first->save_button, Qt::LeftButton);
    QCOMPARE(dialog->ip_label->text(), QString("10.0.0.7 (DHCP)"));
}

void tst_client_conf::back_closes_and_deletes_nothing()
{
    const QPointer<Client_Conf> dialog = open();
    QTest::mouseClick(dialog->back_button, Qt::LeftButton);
    QVERIFY(!dialog->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(dialog);
    QCOMPARE(conf_dialog, dialog.data());
    QCOMPARE(world->peer.requests.size(), 0);
}

void tst_client_conf::without_a_record_the_buttons_do_nothing()
{
    world->start_up.open();
    Client_Conf *dialog = open();
    overview->deleteRecords();
    QVERIFY(!dialog->device);
    world->start_up.log.clear();
    QTest::mouseClick(dialog->save_button, Qt::LeftButton);
    QTest::mouseClick(dialog->dhcp_button, Qt::LeftButton);
    dialog->update();
    for (const char *slot : {"commit_settings", "addNetwork", "dhcpStatic"})
        QVERIFY(QMetaObject::invokeMethod(dialog, slot));
    for (const char *slot : {"selectNetwork", "setDeviceName"})
        QVERIFY(QMetaObject::invokeMethod(dialog, slot, Q_ARG(QString, "1")));
    QCOMPARE(world->start_up.log.debug_lines(), QStringList()); // no request
    QVERIFY(!conf_statip_dialog);
    QCOMPARE(dialog->ip_label->text(), QString("10.0.0.7"));
    QVERIFY(dialog->isVisible());
    QTest::mouseClick(dialog->back_button, Qt::LeftButton);
    QVERIFY(!dialog->isVisible());
}

void tst_client_conf::the_slots_stand_in_order()
{
    QCOMPARE(
        own_methods(Client_Conf::staticMetaObject),
        (QStringList{"void update()", "private void dhcpStatic()", "private void commit_settings()",
                     "private void addNetwork()", "private void replyFinishedA(QNetworkReply*)",
                     "private void selectNetwork(QString)", "private void replyFinishedB(QNetworkReply*)",
                     "private void setDeviceName(QString)", "private void replyFinishedC(QNetworkReply*)"}));
}

QTEST_MAIN(tst_client_conf)
#include "tst_client_conf.moc"
