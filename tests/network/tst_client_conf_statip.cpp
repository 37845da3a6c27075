// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
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
#include "network/client_conf_statip.h"
#include "settings/rzpixmaplabel.h"
#include "tests/network/statip_user.h"
#include "tests/network/wlan_world.h"
#include "tests/settings/grid_probe.h"
#include "tests/settings/marking_translator.h"

static const QString domain = VIRELO_MAKER_DOMAIN;

// How the dialog of the static address looks, and what its two modes do. What it stores is told in
// tst_client_conf_statip_save.
class tst_client_conf_statip : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void the_window_has_the_size_of_the_platform();
    void everything_has_its_text();
    void all_texts_but_the_modes_are_translated();
    void everything_stands_in_its_place_data();
    void everything_stands_in_its_place();
    void the_modes_stand_side_by_side();
    void the_picture_is_the_wide_one_above_2000_pixels();
    void save_is_the_default_and_enabled();
    void it_comes_up_in_dhcp_mode();
    void it_comes_up_in_static_mode_where_that_is_set();
    void static_fills_in_what_is_stored_data();
    void static_fills_in_what_is_stored();
    void each_press_of_static_fills_the_edits_anew();
    void dhcp_leaves_the_texts_alone();
    void the_arrow_keys_change_the_mode_as_the_mouse_does();
    void text_is_readable_whatever_the_palette_data();
    void text_is_readable_whatever_the_palette();
    void it_is_not_deleted_when_it_closes();
    void signal_and_slots_stand_in_order();

private:
    Client_Conf_StatIP *open() const { return open_statip(*world); }

    std::unique_ptr<Wlan_World> world;
    Device_Desc *record = nullptr;
};

void tst_client_conf_statip::init()
{
    world = std::make_unique<Wlan_World>();
    record = world->record;
    record->ip = "10.0.0.7";
}

void tst_client_conf_statip::cleanup()
{
    world.reset();
}

void tst_client_conf_statip::the_window_has_the_size_of_the_platform()
{
    plattform->window_width = 801;
    plattform->window_height = 702;
    QWidget parent;
    const Client_Conf_StatIP dialog(record, &parent);
    QCOMPARE(dialog.size(), QSize(801, 702));
    QCOMPARE(dialog.parentWidget(), &parent);
    QCOMPARE(dialog.device.data(), record);
    QVERIFY(!dialog.isModal());
}

static QStringList captions_of(const Client_Conf_StatIP *dialog)
{
    auto *grid = qobject_cast<QGridLayout *>(dialog->layout());
    QStringList texts;
    for (int row = 1; row <= 9; ++row)
        texts += text_at(grid, row, 0);
    return texts << dialog->windowTitle() << dialog->back_button->text() << dialog->save_button->text()
                 << dialog->dhcp_radio->text() << dialog->static_radio->text() << dialog->mode_box->title();
}

void tst_client_conf_statip::everything_has_its_text()
{
    QCOMPARE(captions_of(open()),
             (QStringList{"Adress Mode:", "IP Address: *", "Netmask: *", "Gateway:", "",
                          "Domain:", "DNS No. 1:", "DNS No. 2:", "* is mandatory!", "Speaker WLAN Settings",
                          "<< Back", "SAVE", "DHCP", "Static", ""}));
}

void tst_client_conf_statip::all_texts_but_the_modes_are_translated()
{
    Marking_Translator translator("Client_Conf_StatIP");
    QCoreApplication::installTranslator(&translator);
    QCOMPARE(captions_of(open()),
             (QStringList{"#Adress Mode:", "#IP Address: *", "#Netmask: *", "#Gateway:", "",
                          "#Domain:", "#DNS No. 1:", "#DNS No. 2:", "#* is mandatory!",
                          "#Speaker WLAN Settings", "#<< Back", "#SAVE", "DHCP", "Static", ""}));
}

void tst_client_conf_statip::everything_stands_in_its_place_data()
{
    QTest::addColumn<int>("device_class");
    QTest::newRow("unset") << 0;
    QTest::newRow("phone") << DEVICE_PHONE;
    QTest::newRow("tablet") << DEVICE_TABLET;
    QTest::newRow("desktop") << DEVICE_DESKTOP;
}

void tst_client_conf_statip::everything_stands_in_its_place()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    const Client_Conf_StatIP *dialog = open();
    auto *grid = qobject_cast<QGridLayout *>(dialog->layout());
    QVERIFY(grid);
    const struct {
        QWidget *widget;
        QList<int> place;
    } places[] = {
        {dialog->findChild<RZPixmapLabel *>(), {0, 0, 1, 4}},
        {dialog->mode_box, {1, 1, 1, 3}},
        {dialog->ip_edit, {2, 1, 1, 3}},
        {dialog->netmask_edit, {3, 1, 1, 3}},
        {dialog->gateway_edit, {4, 1, 1, 3}},
        {dialog->domain_edit, {6, 1, 1, 3}},
        {dialog->dns1_edit, {7, 1, 1, 3}},
        {dialog->dns2_edit, {8, 1, 1, 3}},
        {dialog->hint_label, {9, 0, 1, 4}},
        {dialog->back_button, {10, 2, 1, 1}},
        {dialog->save_button, {10, 3, 1, 1}},
    };
    for (const auto &entry : places)
        QCOMPARE(place_of(grid, entry.widget), entry.place);
    for (int row = 1; row <= 8; ++row)
        QCOMPARE(place_of(grid, label_at(grid, row, 0)), (QList<int>{row, 0, 1, 1}));
    QVERIFY(label_at(grid, 5, 0)->text().isEmpty());
    QCOMPARE(widgets_at(grid, 5, 1), QList<QWidget *>());
    QCOMPARE(grid->count(), 11 + 8);
}

void tst_client_conf_statip::the_modes_stand_side_by_side()
{
    const Client_Conf_StatIP *dialog = open();
    auto *modes = qobject_cast<QHBoxLayout *>(dialog->mode_box->layout());
    QVERIFY(modes);
    QCOMPARE(modes->count(), 3);
    QCOMPARE(modes->itemAt(0)->widget(), dialog->dhcp_radio);
    QCOMPARE(modes->itemAt(1)->widget(), dialog->static_radio);
    QVERIFY(modes->itemAt(2)->spacerItem());
    QCOMPARE(modes->stretch(2), 1);
}

void tst_client_conf_statip::the_picture_is_the_wide_one_above_2000_pixels()
{
    const auto picture = [this](int width) {
        plattform->desktop_width = width;
        return open()->findChild<RZPixmapLabel *>()->source_pixmap.toImage();
    };
    QCOMPARE(picture(2000), QPixmap(":/GRAFX/Deko_WLAN_640.png").toImage());
    QCOMPARE(picture(2001), QPixmap(":/GRAFX/Deko_WLAN_2k.png").toImage());
}

void tst_client_conf_statip::save_is_the_default_and_enabled()
{
    const Client_Conf_StatIP *dialog = open();
    QVERIFY(dialog->save_button->isDefault());
    QVERIFY(dialog->save_button->isEnabled());
    QVERIFY(dialog->back_button->isEnabled());
}

static void check_mode(const Client_Conf_StatIP *dialog, bool is_static)
{
    QCOMPARE(dialog->static_radio->isChecked(), is_static);
    QCOMPARE(dialog->dhcp_radio->isChecked(), !is_static);
    for (const QLineEdit *edit : edits_of(dialog)) {
        QCOMPARE(edit->isEnabled(), is_static);
        QCOMPARE(edit->styleSheet(),
                 QString("QLineEdit {background-color: %1;}").arg(is_static ? "white" : "lightgrey"));
    }
}

void tst_client_conf_statip::it_comes_up_in_dhcp_mode()
{
    record->static_netmask = "255.0.0.0"; // of an earlier set-up
    const Client_Conf_StatIP *dialog = open();
    check_mode(dialog, false);
    QCOMPARE(texts_of(dialog), (QStringList{"192.168.1.1", "", "", "", "", ""}));
}

void tst_client_conf_statip::it_comes_up_in_static_mode_where_that_is_set()
{
    record->set_static_network("10.1.1.1", "255.0.0.0", "10.1.1.2", "a.example", "1.1.1.1", "2.2.2.2");
    const Client_Conf_StatIP *dialog = open();
    check_mode(dialog, true);
    QCOMPARE(texts_of(dialog),
             (QStringList{"10.1.1.1", "255.0.0.0", "10.1.1.2", "a.example", "1.1.1.1", "2.2.2.2"}));
}

void tst_client_conf_statip::static_fills_in_what_is_stored_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("otherwise");
    QTest::newRow("address") << 0 << "10.0.0.7";
    QTest::newRow("netmask") << 1 << "255.255.255.0";
    QTest::newRow("gateway") << 2 << "10.0.0.7";
    QTest::newRow("domain") << 3 << domain;
    QTest::newRow("first name server") << 4 << "8.8.8.8";
    QTest::newRow("second name server") << 5 << "8.8.4.4";
}

// Each field for itself: only one is stored.
void tst_client_conf_statip::static_fills_in_what_is_stored()
{
    QFETCH(int, position);
    QFETCH(QString, otherwise);
    const QStringList defaults{"10.0.0.7", "255.255.255.0", "10.0.0.7", domain, "8.8.8.8", "8.8.4.4"};
    QString Device_Desc::*const fields[] = {&Device_Desc::static_ip,      &Device_Desc::static_netmask,
                                            &Device_Desc::static_gateway, &Device_Desc::static_domain,
                                            &Device_Desc::static_dns1,    &Device_Desc::static_dns2};
    const Client_Conf_StatIP *dialog = open();
    click(dialog->static_radio);
    check_mode(dialog, true);
    QCOMPARE(texts_of(dialog), defaults);
    QCOMPARE(texts_of(dialog).at(position), otherwise);

    record->*fields[position] = "stored";
    click(dialog->static_radio);
    QStringList wanted = defaults;
    wanted[position] = "stored";
    QCOMPARE(texts_of(dialog), wanted);
}

void tst_client_conf_statip::each_press_of_static_fills_the_edits_anew()
{
    const Client_Conf_StatIP *dialog = open();
    click(dialog->static_radio);
    const QStringList filled = texts_of(dialog);
    for (QLineEdit *edit : edits_of(dialog))
        type_over(edit, "typed");
    QTest::mousePress(dialog->static_radio, Qt::LeftButton, Qt::NoModifier,
                      QPoint(8, dialog->static_radio->height() / 2));
    QCOMPARE(texts_of(dialog), filled); // by the press; the release has not come
    QTest::mouseRelease(dialog->static_radio, Qt::LeftButton, Qt::NoModifier,
                        QPoint(8, dialog->static_radio->height() / 2));
    QCOMPARE(texts_of(dialog), filled);
    check_mode(dialog, true);
}

void tst_client_conf_statip::dhcp_leaves_the_texts_alone()
{
    const Client_Conf_StatIP *dialog = open();
    click(dialog->static_radio);
    for (QLineEdit *edit : edits_of(dialog))
        type_over(edit, "typed");
    click(dialog->dhcp_radio);
    check_mode(dialog, false);
    QCOMPARE(texts_of(dialog), QStringList({"typed", "typed", "typed", "typed", "typed", "typed"}));
}

void tst_client_conf_statip::the_arrow_keys_change_the_mode_as_the_mouse_does()
{
    const Client_Conf_StatIP *dialog = open();
    dialog->dhcp_radio->setFocus();
    QTest::keyClick(dialog->dhcp_radio, Qt::Key_Right);
    check_mode(dialog, true);
    QCOMPARE(dialog->ip_edit->text(), QString("10.0.0.7"));
    QTest::keyClick(dialog->static_radio, Qt::Key_Left);
    check_mode(dialog, false);
}

void tst_client_conf_statip::text_is_readable_whatever_the_palette_data()
{
    QTest::addColumn<QColor>("window");
    QTest::addColumn<QColor>("text");
    QTest::newRow("light") << QColor(Qt::white) << QColor(Qt::black);
    QTest::newRow("dark") << QColor(Qt::black) << QColor(Qt::white);
}

// The darkest and the lightest spot of what is drawn lie far apart.
void tst_client_conf_statip::text_is_readable_whatever_the_palette()
{
    QFETCH(QColor, window);
    QFETCH(QColor, text);
    const QPalette before = QApplication::palette();
    QPalette palette(window, window);
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(role, text);
    QApplication::setPalette(palette);
    const Client_Conf_StatIP *dialog = open();
    for (const bool fixed : {false, true}) {
        if (fixed)
            QTest::mouseClick(dialog->static_radio, Qt::LeftButton);
        const QImage image = dialog->ip_edit->grab(dialog->ip_edit->rect().adjusted(4, 4, -4, -4)).toImage();
        int darkest = 255, lightest = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                darkest = qMin(darkest, qGray(image.pixel(x, y)));
                lightest = qMax(lightest, qGray(image.pixel(x, y)));
            }
        QCOMPARE(lightest, fixed ? 255 : 211); // the backgrounds
        QVERIFY2(darkest < 128, qPrintable(QString::number(darkest)));
    }
    QApplication::setPalette(before);
}

void tst_client_conf_statip::it_is_not_deleted_when_it_closes()
{
    const QPointer<Client_Conf_StatIP> dialog = open();
    click(dialog->save_button);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(dialog);
    QCOMPARE(conf_statip_dialog, dialog.data());
    QCOMPARE(world->peer.requests.size(), 0);
}

void tst_client_conf_statip::signal_and_slots_stand_in_order()
{
    QCOMPARE(own_methods(Client_Conf_StatIP::staticMetaObject),
             (QStringList{"void update()", "private void dhcp_pressed()", "private void static_pressed()",
                          "private void set_IP()"}));
}

QTEST_MAIN(tst_client_conf_statip)
#include "tst_client_conf_statip.moc"
