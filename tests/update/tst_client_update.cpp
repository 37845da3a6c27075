// SPDX-License-Identifier: MIT
#include <QGridLayout>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "control/virelo_group.h"
#include "device/speaker_types.h"
#include "settings/rzpixmaplabel.h"
#include "tests/control/control_fixture.h"
#include "tests/settings/grid_probe.h"
#include "tests/settings/marking_translator.h"
#include "tests/update/update_world.h"

namespace
{
using Places = QMap<QString, QList<int>>; // row, column, row span, column span

const Places desktop_places = {
    {"banner", {0, 0, 1, 4}}, {"speaker", {1, 1, 1, 3}}, {"version", {2, 1, 1, 2}}, {"wifi", {3, 1, 1, 1}},
    {"host", {3, 2, 1, 1}},   {"url", {4, 1, 1, 2}},     {"check", {4, 3, 1, 1}},   {"size", {5, 1, 1, 2}},
    {"bar", {6, 1, 1, 3}},    {"status", {7, 1, 1, 3}},  {"back", {8, 2, 1, 1}},    {"flash", {8, 3, 1, 1}},
};
const QStringList captions = {
    "Speaker:", "Version:", "Update:", "Download URL:", "File Size:", "Progress:", "Status:"};

Places phone_places()
{
    Places places = desktop_places;
    places["back"] = {8, 0, 1, 2};
    places["flash"] = {8, 2, 1, 2};
    return places;
}

QGridLayout *grid_of(const Client_Update &dialog)
{
    return qobject_cast<QGridLayout *>(dialog.layout());
}

QMap<QString, QWidget *> widgets_of(const Client_Update &dialog)
{
    QGridLayout *grid = grid_of(dialog);
    return {
        {"banner", label_at(grid, 0, 0)},  {"speaker", label_at(grid, 1, 1)},
        {"version", label_at(grid, 2, 1)}, {"wifi", dialog.wifi_radio},
        {"host", dialog.host_radio},       {"url", dialog.url_edit},
        {"check", dialog.check_button},    {"size", dialog.size_edit},
        {"bar", dialog.progress_bar},      {"status", dialog.status_label},
        {"back", dialog.back_button},      {"flash", dialog.flash_button},
    };
}
} // namespace

// How the dialog is built; what it does is told in tst_client_update_check, _module and _host.
class tst_client_update : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void cleanup();
    void everything_stands_in_its_place_data() { add_device_classes(); }
    void everything_stands_in_its_place();
    void nothing_else_stands_in_the_grid_data() { add_device_classes(); }
    void nothing_else_stands_in_the_grid();
    void captions_stand_right_data() { add_device_classes(); }
    void captions_stand_right();
    void the_window_has_title_and_size();
    void the_banner_is_the_wide_one_above_2000_pixels();
    void the_speaker_is_shown_by_model_and_name_data();
    void the_speaker_is_shown_by_model_and_name();
    void a_name_that_looks_like_markup_stands_as_it_is();
    void the_version_is_shown_as_the_speaker_tells_it();
    void a_long_version_leaves_the_window_its_size();
    void controls_start_with_their_texts_and_values();
    void it_starts_unchecked();
    void back_closes_without_deleting();
    void construction_asks_nothing_of_the_speaker();
    void a_record_without_control_is_an_unknown_speaker();
    void a_group_is_an_unknown_speaker();
    void texts_are_translated_in_the_context_of_the_class();
    void the_slots_stand_in_order_and_are_private();

private:
    void add_device_classes();

    Log_Capture *log = nullptr;
};

void tst_client_update::init()
{
    plattform->device_class = DEVICE_DESKTOP;
    plattform->desktop_width = 1920;
    log = new Log_Capture;
}

void tst_client_update::cleanup()
{
    const QStringList warnings = own_warnings(*log);
    delete log;
    QCOMPARE(warnings, QStringList());
}

void tst_client_update::add_device_classes()
{
    QTest::addColumn<int>("device_class");
    QTest::newRow("unset") << 0;
    QTest::newRow("phone") << DEVICE_PHONE;
    QTest::newRow("tablet") << DEVICE_TABLET;
    QTest::newRow("desktop") << DEVICE_DESKTOP;
}

void tst_client_update::everything_stands_in_its_place()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    Update_World world;
    world.open();
    Places places;
    const QMap<QString, QWidget *> widgets = widgets_of(*world.dialog);
    for (auto widget = widgets.begin(); widget != widgets.end(); ++widget)
        places[widget.key()] = place_of(grid_of(*world.dialog), widget.value());
    QCOMPARE(places, device_class == DEVICE_PHONE ? phone_places() : desktop_places);
}

void tst_client_update::nothing_else_stands_in_the_grid()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    Update_World world;
    world.open();
    QCOMPARE(grid_of(*world.dialog)->count(), captions.size() + widgets_of(*world.dialog).size());
    QCOMPARE(grid_of(*world.dialog)->columnCount(), 4);
    QCOMPARE(grid_of(*world.dialog)->rowCount(), 9);
}

void tst_client_update::captions_stand_right()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    Update_World world;
    world.open();
    QGridLayout *grid = grid_of(*world.dialog);
    for (int i = 0; i < captions.size(); ++i) {
        QCOMPARE(text_at(grid, i + 1, 0), captions.at(i));
        QCOMPARE(alignment_of(grid, label_at(grid, i + 1, 0)) & Qt::AlignHorizontal_Mask, Qt::AlignRight);
    }
}

void tst_client_update::the_window_has_title_and_size()
{
    plattform->window_width = 611;
    plattform->window_height = 733;
    Update_World world;
    world.open();
    QCOMPARE(world.dialog->windowTitle(), QString("Update Speaker Firmware"));
    QCOMPARE(world.dialog->size(), QSize(611, 733));
    QVERIFY(!world.dialog->parent());
}

void tst_client_update::the_banner_is_the_wide_one_above_2000_pixels()
{
    for (const int width : {2000, 2001}) {
        plattform->desktop_width = width;
        Update_World world;
        world.open();
        auto *banner = qobject_cast<RZPixmapLabel *>(label_at(grid_of(*world.dialog), 0, 0));
        QVERIFY(banner);
        QPixmap expected(width > 2000 ? ":/GRAFX/Deko_Air_2k.png" : ":/GRAFX/Deko_Air_640.png");
        QVERIFY(!expected.isNull());
        QCOMPARE(banner->source_pixmap.toImage(), expected.toImage());
    }
}

void tst_client_update::the_speaker_is_shown_by_model_and_name_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::newRow("air") << 13 << "<b>Cadre 3.2 Air</b> (Kitchen)";
    QTest::newRow("sub") << 18 << "<b>Sub 12 Air</b> (Kitchen)";
    QTest::newRow("other sub") << 42 << "<b>Sub 12.3 Air</b> (Kitchen)";
    QTest::newRow("unknown") << 255 << "<b>Unknown Speaker :-(</b> (Kitchen)";
    QTest::newRow("not listed") << 20 << "<b>Unknown Speaker :-(</b> (Kitchen)";
}

void tst_client_update::the_speaker_is_shown_by_model_and_name()
{
    QFETCH(int, type);
    Update_World world(type);
    world.record->name = "not this name";
    world.open();
    QTEST(text_at(grid_of(*world.dialog), 1, 1), "text");
}

void tst_client_update::a_name_that_looks_like_markup_stands_as_it_is()
{
    Update_World world(13);
    world.record->control->name = "<i>Bath</i>";
    world.open();
    QCOMPARE(text_at(grid_of(*world.dialog), 1, 1),
             QString("<b>Cadre 3.2 Air</b> (&lt;i&gt;Bath&lt;/i&gt;)"));
}

void tst_client_update::the_version_is_shown_as_the_speaker_tells_it()
{
    Update_World world;
    world.record->firmware = "1.4.2 <beta>";
    world.open();
    QLabel *label = label_at(grid_of(*world.dialog), 2, 1);
    QCOMPARE(label->text(), QString("1.4.2 <beta>"));
    QCOMPARE(label->textFormat(), Qt::PlainText);
}

void tst_client_update::a_long_version_leaves_the_window_its_size()
{
    plattform->device_class = DEVICE_PHONE;
    Update_World world;
    world.open();
    const int narrowest = world.dialog->minimumSizeHint().width();
    world.record->firmware = QString(1000, 'W');
    world.open();
    QCOMPARE(world.dialog->minimumSizeHint().width(), narrowest);
}

void tst_client_update::controls_start_with_their_texts_and_values()
{
    Update_World world;
    world.open();
    const Client_Update &dialog = *world.dialog;
    QCOMPARE(dialog.wifi_radio->text(), QString("WiFi"));
    QCOMPARE(dialog.host_radio->text(), QString("Host"));
    QVERIFY(dialog.wifi_radio->isChecked());
    QVERIFY(!dialog.host_radio->isChecked());
    QCOMPARE(dialog.url_edit->text(), QString("http://" VIRELO_DOWNLOAD_SERVER "/current/"));
    QVERIFY(!dialog.url_edit->isReadOnly());
    QCOMPARE(dialog.check_button->text(), QString("Check"));
    QCOMPARE(dialog.size_edit->text(), QString("- Bytes"));
    QCOMPARE(dialog.progress_bar->minimum(), 0);
    QCOMPARE(dialog.progress_bar->maximum(), 100);
    QCOMPARE(dialog.progress_bar->value(), 0);
    QCOMPARE(dialog.status_label->text(), QString("Click Check Button!"));
    QCOMPARE(dialog.back_button->text(), QString("<< Back"));
    QCOMPARE(dialog.flash_button->text(), QString("FLASH!"));
    QVERIFY(!dialog.flash_file);
    QVERIFY(!dialog.flash_stream);
}

void tst_client_update::it_starts_unchecked()
{
    Update_World world;
    world.open();
    QCOMPARE(world.enabled(), unchecked);
}

void tst_client_update::back_closes_without_deleting()
{
    Update_World world;
    world.open();
    const QPointer<Client_Update> dialog = world.dialog.get();
    dialog->show();
    QTest::mouseClick(dialog->back_button, Qt::LeftButton);
    QVERIFY(!dialog->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(dialog);
    QVERIFY(!dialog->testAttribute(Qt::WA_DeleteOnClose));
}

// A request would have a manager.
void tst_client_update::construction_asks_nothing_of_the_speaker()
{
    Update_World world;
    log->clear();
    world.open();
    QVERIFY(world.dialog->findChildren<QNetworkAccessManager *>().isEmpty());
    QCOMPARE(log->debug_lines(), QStringList());
}

void tst_client_update::a_record_without_control_is_an_unknown_speaker()
{
    Update_World world;
    world.record->control = nullptr;
    world.open();
    QCOMPARE(text_at(grid_of(*world.dialog), 1, 1), QString("<b>Unknown Speaker :-(</b> ()"));
    QCOMPARE(world.enabled(), unchecked);
}

void tst_client_update::a_group_is_an_unknown_speaker()
{
    Device_Desc group(nullptr, true, "Party");
    const std::unique_ptr<Virelos> control(group.control);
    const Client_Update dialog(&group, nullptr);
    QCOMPARE(text_at(grid_of(dialog), 1, 1), QString("<b>Unknown Speaker :-(</b> (Party)"));
}

void tst_client_update::texts_are_translated_in_the_context_of_the_class()
{
    Marking_Translator translator("Client_Update");
    QCoreApplication::installTranslator(&translator);
    Update_World world;
    world.open();
    const Client_Update &dialog = *world.dialog;
    QGridLayout *grid = grid_of(dialog);
    QCOMPARE(dialog.windowTitle(), QString("#Update Speaker Firmware"));
    for (int i = 0; i < captions.size(); ++i)
        QCOMPARE(text_at(grid, i + 1, 0), "#" + captions.at(i));
    QCOMPARE(dialog.check_button->text(), QString("#Check"));
    QCOMPARE(dialog.size_edit->text(), QString("#- Bytes"));
    QCOMPARE(dialog.status_label->text(), QString("#Click Check Button!"));
    QCOMPARE(dialog.back_button->text(), QString("#<< Back"));
    QCOMPARE(dialog.flash_button->text(), QString("#FLASH!"));
    // The names of the two firmwares are no texts to translate.
    QCOMPARE(dialog.wifi_radio->text(), QString("WiFi"));
    QCOMPARE(dialog.host_radio->text(), QString("Host"));
}

void tst_client_update::the_slots_stand_in_order_and_are_private()
{
    const QMetaObject &meta = Client_Update::staticMetaObject;
    QCOMPARE(own_slots(meta),
             (QStringList{"checkFile()", "fileSize(int)", "fileError()", "radioClicked(bool)",
                          "updateFirmware()", "updateFirmwareHOST()", "updateFirmwareWIFI()",
                          "hostDownloadFilefinished(QString,int)", "hostDownloadFileError(QString)",
                          "flashLineTimer()", "hostFlashFilefinished()", "replyFinished(QNetworkReply*)",
                          "updateCheckTimer()", "replyFinishedUpdateCheck(QNetworkReply*)"}));
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        QCOMPARE(meta.method(i).access(), QMetaMethod::Private);
}

QTEST_MAIN(tst_client_update)
#include "tst_client_update.moc"
