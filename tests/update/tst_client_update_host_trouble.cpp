// SPDX-License-Identifier: MIT
#include "app/globals.h"
#include "app/rzplattform.h"
#include "tests/settings/marking_translator.h"
#include "tests/update/flash_world.h"
#include "tests/update/long_sleeps.h"

// Firmware for the host when something fails, goes away or comes in between.
class tst_client_update_host_trouble : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void cleanup();
    void a_failed_download_sends_its_page();
    void a_server_that_is_gone_sends_a_bare_line_end();
    void a_file_that_cannot_be_opened_leaves_the_host_in_flash_mode();
    void the_box_of_a_download_error();
    void a_second_flash_while_lines_go_out_does_nothing();
    void a_second_download_is_of_no_effect_while_lines_go_out();
    void a_file_that_is_written_over_meanwhile_changes_nothing();
    void the_module_can_be_upgraded_meanwhile();
    void a_closed_dialog_goes_on();
    void a_lost_link_is_not_noticed();
    void a_speaker_out_of_reach_is_not_noticed();
    void lines_go_on_when_the_record_goes();
    void a_record_that_goes_during_the_download_is_left_alone();
    void without_control_nothing_is_sent();
    void a_group_gets_nothing();

private:
    std::unique_ptr<Flash_World> world;
};

void tst_client_update_host_trouble::init()
{
    long_sleeps::forget();
    world = std::make_unique<Flash_World>();
}

void tst_client_update_host_trouble::cleanup()
{
    const QStringList warnings = own_warnings(world->log);
    world.reset();
    QCOMPARE(warnings, QStringList());
}

void tst_client_update_host_trouble::a_failed_download_sends_its_page()
{
    world->open(":10\n");
    Download_Faults faults;
    faults.fault = Download_Fault::not_found;
    world->server.set_faults(faults);
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QCOMPARE(box.text, QString("Flashing HOST completed!"));
    QCOMPARE(world->sent(), QByteArray("<html><body><h1>Error</h1></body></html>\r\n"));
    QCOMPARE(world->dialog->flash_total, 0);
}

void tst_client_update_host_trouble::a_server_that_is_gone_sends_a_bare_line_end()
{
    world->open(":10\n");
    world->server.stop();
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QCOMPARE(box.text, QString("Flashing HOST completed!"));
    QCOMPARE(world->sent(), QByteArray("\r\n"));
    QCOMPARE(long_sleeps::taken(), QList<qint64>{5000});
    QCOMPARE(world->dialog->flash_total, -1);
    QCOMPARE(world->dialog->flash_done, 1);
}

void tst_client_update_host_trouble::a_file_that_cannot_be_opened_leaves_the_host_in_flash_mode()
{
    world->open(":10\n");
    QVERIFY(QMetaObject::invokeMethod(world->dialog.get(), "hostDownloadFilefinished",
                                      Q_ARG(QString, world->folder.filePath("missing")), Q_ARG(int, 7)));
    QVERIFY(!world->dialog->flash_file);
    QVERIFY(!world->dialog->flash_stream);
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(!world->control->isRunning());
    QCOMPARE(world->dialog->flash_total, 7);
    QCOMPARE(world->dialog->flash_done, 0);
    QCOMPARE(world->dialog->status_label->text(), QString("Downloading..."));
    QVERIFY(world->speaker.wait_for_host_line("RZ!FL\n"));
    QVERIFY(world->speaker.in_flash_mode());
    QCOMPARE(world->log.debug_lines().last(), QString("\n\n\nflashing HEX File..."));

    // The way is free for another try, which the host takes for a line.
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QCOMPARE(world->sent(), QByteArray("RZ!FL\n:10\r\n"));
}

void tst_client_update_host_trouble::the_box_of_a_download_error()
{
    Marking_Translator translator("Client_Update");
    QCoreApplication::installTranslator(&translator);
    world->open(":10\n");
    Box_Reader box;
    QVERIFY(QMetaObject::invokeMethod(world->dialog.get(), "hostDownloadFileError",
                                      Q_ARG(QString, "http://127.0.0.1/x_host.hex")));
    QVERIFY(box.met());
    QCOMPARE(box.icon, QMessageBox::Information);
    QCOMPARE(box.parent, world->dialog.get());
    QCOMPARE(box.title, QString("Error"));
    QCOMPARE(box.text, QString("File http://127.0.0.1/x_host.hex does not exist!"));
    QCOMPARE(box.buttons, QStringList{"#OK"});
}

void tst_client_update_host_trouble::a_second_flash_while_lines_go_out_does_nothing()
{
    world->open(numbered_lines(4));
    world->at_line(1, [this] { world->dialog->flash_button->click(); });
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QCOMPARE(asked_for(world->server), QStringList{"GET /current/vc3w_host.hex"});
    QCOMPARE(world->sent(), numbered_lines(4));
    QCOMPARE(long_sleeps::taken(), QList<qint64>{5000});
}

// "FLASH!" was pressed twice before the first file had come.
void tst_client_update_host_trouble::a_second_download_is_of_no_effect_while_lines_go_out()
{
    world->open(numbered_lines(4));
    world->at_line(1, [this] {
        QMetaObject::invokeMethod(world->dialog.get(), "hostDownloadFilefinished",
                                  Q_ARG(QString, world->folder.filePath("host.hex")), Q_ARG(int, 77));
    });
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QCOMPARE(world->sent(), numbered_lines(4));
    QCOMPARE(world->dialog->flash_total, 3);
    QCOMPARE(world->dialog->flash_done, 4);
    QCOMPARE(long_sleeps::taken(), QList<qint64>{5000});
}

void tst_client_update_host_trouble::a_file_that_is_written_over_meanwhile_changes_nothing()
{
    constexpr int lines = 4;
    const auto all_of = [](char letter) { return (QByteArray(20000, letter) + "\r\n").repeated(lines); };
    world->open(all_of('A')); // more than one read of a file brings
    world->at_line(1, [&] {
        QFile file(world->folder.filePath("host.hex"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(all_of('B')), qint64(all_of('B').size()));
    });
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QCOMPARE(world->sent(), all_of('A'));
}

void tst_client_update_host_trouble::the_module_can_be_upgraded_meanwhile()
{
    world->record->set_ip(world->speaker.address());
    world->record->set_port(world->speaker.http_port());
    world->open(numbered_lines(4));
    world->at_line(1, [this] {
        world->dialog->wifi_radio->setChecked(true);
        world->dialog->flash_button->click();
    });
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QCOMPARE(world->sent(), numbered_lines(4));
    QVERIFY(world->speaker.wait_for_http_requests(1));
    QCOMPARE(world->speaker.http_requests().first().action, QString("seturl"));
    QVERIFY(!world->dialog->back_button->isEnabled());
}

void tst_client_update_host_trouble::a_closed_dialog_goes_on()
{
    world->open(numbered_lines(4));
    world->dialog->show();
    world->at_line(1, [this] { world->dialog->back_button->click(); });
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QVERIFY(!world->dialog->isVisible());
    QCOMPARE(world->sent(), numbered_lines(4));
    QCOMPARE(world->dialog->progress_bar->value(), 100);
}

void tst_client_update_host_trouble::a_lost_link_is_not_noticed()
{
    world->open(numbered_lines(4));
    world->at_line(1, [this] { world->speaker.cut_link(Cut_How::rst); });
    QSignalSpy values(world->dialog->progress_bar, &QProgressBar::valueChanged);
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QCOMPARE(box.text, QString("Flashing HOST completed!"));
    QCOMPARE(world->dialog->flash_done, 4);
    QCOMPARE(values.size(), 3);
    QCOMPARE(world->sent(), numbered_lines(2));
}

void tst_client_update_host_trouble::a_speaker_out_of_reach_is_not_noticed()
{
    world->open(numbered_lines(4));
    world->speaker.stop();
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QCOMPARE(box.text, QString("Flashing HOST completed!"));
    QCOMPARE(world->dialog->flash_done, 4);
    QCOMPARE(world->sent(), QByteArray("no flash mode"));
}

void tst_client_update_host_trouble::lines_go_on_when_the_record_goes()
{
    world->open(numbered_lines(4));
    world->at_line(1, [this] { world->record.release()->discard(); });
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QVERIFY(!world->dialog->device);
    QCOMPARE(world->sent(), numbered_lines(4));
    QCOMPARE(world->dialog->progress_bar->value(), 100);

    world->dialog->flash_button->click();
    QCOMPARE(asked_for(world->server).size(), 1);
}

void tst_client_update_host_trouble::a_record_that_goes_during_the_download_is_left_alone()
{
    world->open(numbered_lines(4));
    world->dialog->flash_button->click();
    world->record.release()->discard();
    QTRY_COMPARE(world->logged("HOST Firmware").size(), 1);
    QVERIFY(!world->dialog->flash_file);
    QVERIFY(world->control->isRunning());
    QCOMPARE(long_sleeps::taken(), QList<qint64>());
    QCOMPARE(world->dialog->status_label->text(), QString("Click Check Button!"));
}

void tst_client_update_host_trouble::without_control_nothing_is_sent()
{
    world->server.set_file("xxx_host.hex", ":10\n");
    world->record->control = nullptr;
    world->open(numbered_lines(4));
    world->dialog->flash_button->click();
    QTRY_COMPARE(world->logged("HOST Firmware").size(), 1);
    QCOMPARE(asked_for(world->server), QStringList{"GET /current/xxx_host.hex"});
    QVERIFY(!world->dialog->flash_file);
    QCOMPARE(long_sleeps::taken(), QList<qint64>());
}

void tst_client_update_host_trouble::a_group_gets_nothing()
{
    world->server.set_file("xxx_host.hex", ":10\n");
    world->record = std::make_unique<Device_Desc>(nullptr, true, "Party");
    const std::unique_ptr<Virelos> control(world->record->control);
    world->open(numbered_lines(4));
    world->dialog->flash_button->click();
    QTRY_COMPARE(world->logged("HOST Firmware").size(), 1);
    QVERIFY(!control->link);
    QCOMPARE(long_sleeps::taken(), QList<qint64>());
    QVERIFY(!QApplication::activeModalWidget());
}

QTEST_MAIN(tst_client_update_host_trouble)
#include "tst_client_update_host_trouble.moc"
