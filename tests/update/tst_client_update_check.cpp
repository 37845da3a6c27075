// SPDX-License-Identifier: MIT
#include "app/globals.h"
#include "app/rzplattform.h"
#include "tests/overview/paint_log.h"
#include "tests/settings/marking_translator.h"
#include "tests/update/update_world.h"

// The check of the file on the server: what it asks for and what it does to the buttons.
class tst_client_update_check : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void cleanup();
    void the_file_follows_path_and_type_data();
    void the_file_follows_path_and_type();
    void the_url_is_logged_and_nothing_stands_between_folder_and_name();
    void a_good_check_shows_the_size_and_enables_flash();
    void a_size_of_0_is_good_too();
    void a_failed_check_takes_everything_back();
    void the_size_after_an_error_is_not_translated();
    void a_radio_button_demands_a_new_check_data();
    void a_radio_button_demands_a_new_check();
    void an_edited_url_demands_none();
    void flash_is_repainted_at_once();
    void each_check_is_a_job_of_its_own();
    void nothing_happens_once_the_record_is_gone();
    void a_size_that_comes_after_the_record_is_gone_is_shown();

private:
    void check_and_wait();

    std::unique_ptr<Log_Capture> log;
    std::unique_ptr<Download_Server> server;
    std::unique_ptr<Update_World> world;
};

void tst_client_update_check::init()
{
    log = std::make_unique<Log_Capture>();
    Download_Config config;
    config.address = own_loopback(2);
    config.swu_size = 4321;
    server = std::make_unique<Download_Server>(config);
    QVERIFY2(server->start(), qPrintable(server->error()));
    server->set_file("xxx_host.hex", "unknown\n");
    world = std::make_unique<Update_World>();
    world->open();
    world->dialog->url_edit->setText(server->url());
}

void tst_client_update_check::cleanup()
{
    world.reset();
    server.reset();
    const QStringList warnings = own_warnings(*log);
    log.reset();
    QCOMPARE(warnings, QStringList());
}

void tst_client_update_check::check_and_wait()
{
    world->dialog->check_button->click();
    QTRY_COMPARE(world->enabled(), checked);
}

void tst_client_update_check::the_file_follows_path_and_type_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("host");
    QTest::addColumn<QString>("file");
    QTest::newRow("module") << 13 << false << "ventaro.swu";
    QTest::newRow("module of a sub") << 18 << false << "ventaro.swu";
    QTest::newRow("module of an unknown one") << 255 << false << "ventaro.swu";
    QTest::newRow("host") << 13 << true << "vc3w_host.hex";
    QTest::newRow("host with a dot") << 42 << true << "vs12.3w_host.hex";
    QTest::newRow("host of a sub") << 18 << true << "vs12w_host.hex";
    QTest::newRow("host of a type that is never accepted") << 22 << true << "vc11w_host.hex";
    QTest::newRow("host of an unknown one") << 255 << true << "xxx_host.hex";
    QTest::newRow("host of a type that is not listed") << 12 << true << "xxx_host.hex";
    QTest::newRow("host without control") << -1 << true << "xxx_host.hex";
}

void tst_client_update_check::the_file_follows_path_and_type()
{
    QFETCH(int, type);
    QFETCH(bool, host);
    QFETCH(QString, file);
    world->control->type = type;
    if (type == -1)
        world->record->control = nullptr;
    if (host)
        world->dialog->host_radio->click();
    check_and_wait();
    QCOMPARE(asked_for(*server), QStringList{"HEAD /current/" + file});
    QCOMPARE(world->dialog->file_size, server->file(file).size());
}

void tst_client_update_check::the_url_is_logged_and_nothing_stands_between_folder_and_name()
{
    world->dialog->url_edit->setText(server->url().chopped(1));
    Box_Reader box;
    world->dialog->check_button->click();
    const QString url = server->url().chopped(1) + "ventaro.swu";
    QCOMPARE(log->debug_lines().last(), "checkFile()!  \"" + url + "\"");
    QTRY_VERIFY(box.met());
    QCOMPARE(asked_for(*server), QStringList{"HEAD /currentventaro.swu"});
    QTRY_COMPARE(world->dialog->file_size, -1);
}

void tst_client_update_check::a_good_check_shows_the_size_and_enables_flash()
{
    check_and_wait();
    QCOMPARE(world->dialog->size_edit->text(), QString("4321 Bytes"));
    QCOMPARE(world->dialog->file_size, 4321);
    QCOMPARE(world->dialog->status_label->text(), QString("Click Check Button!"));
    QCOMPARE(log->debug_lines().last(), QString("Size is  4321"));
}

void tst_client_update_check::a_size_of_0_is_good_too()
{
    Download_Faults faults;
    faults.fault = Download_Fault::no_length;
    server->set_faults(faults);
    world->dialog->file_size = 77;
    check_and_wait();
    QCOMPARE(world->dialog->size_edit->text(), QString("0 Bytes"));
    QCOMPARE(world->dialog->file_size, 0);
}

void tst_client_update_check::a_failed_check_takes_everything_back()
{
    check_and_wait();
    Download_Faults faults;
    faults.fault = Download_Fault::not_found;
    server->set_faults(faults);
    Box_Reader box;
    world->dialog->check_button->click();
    QTRY_COMPARE(world->enabled(), unchecked);
    QVERIFY(box.met());
    QCOMPARE(box.text, QString("Error: File could not be found!"));
    QCOMPARE(world->dialog->size_edit->text(), QString("- Bytes"));
    QCOMPARE(world->dialog->file_size, -1);
}

void tst_client_update_check::the_size_after_an_error_is_not_translated()
{
    Marking_Translator translator("Client_Update");
    QCoreApplication::installTranslator(&translator);
    world->open();
    QCOMPARE(world->dialog->size_edit->text(), QString("#- Bytes"));
    world->call("fileError");
    QCOMPARE(world->dialog->size_edit->text(), QString("- Bytes"));
}

void tst_client_update_check::a_radio_button_demands_a_new_check_data()
{
    QTest::addColumn<QStringList>("clicks");
    QTest::newRow("to host") << QStringList{"Host"};
    QTest::newRow("there and back") << QStringList{"Host", "WiFi"};
    QTest::newRow("the one that is on already") << QStringList{"WiFi"};
}

void tst_client_update_check::a_radio_button_demands_a_new_check()
{
    QFETCH(QStringList, clicks);
    for (const QString &click : clicks) {
        check_and_wait();
        (click == "Host" ? world->dialog->host_radio : world->dialog->wifi_radio)->click();
        QCOMPARE(world->enabled(), unchecked);
    }
    QCOMPARE(world->dialog->size_edit->text().right(6), QString(" Bytes"));
    check_and_wait();
}

void tst_client_update_check::an_edited_url_demands_none()
{
    check_and_wait();
    QTest::keyClicks(world->dialog->url_edit, "elsewhere/");
    QCOMPARE(world->dialog->url_edit->text(), server->url() + "elsewhere/");
    QCOMPARE(world->enabled(), checked);
}

void tst_client_update_check::flash_is_repainted_at_once()
{
    Client_Update &dialog = *world->dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    Paint_Log paints({dialog.check_button, dialog.flash_button, dialog.back_button});
    QVERIFY(QMetaObject::invokeMethod(&dialog, "fileSize", Q_ARG(int, 1)));
    QCOMPARE(paints.painted, QList<QObject *>{dialog.flash_button});
    world->call("fileError");
    QCOMPARE(paints.painted, (QList<QObject *>{dialog.flash_button, dialog.flash_button}));
    QVERIFY(QMetaObject::invokeMethod(&dialog, "fileSize", Q_ARG(int, 1)));
    paints.painted.clear();
    QVERIFY(QMetaObject::invokeMethod(&dialog, "radioClicked", Q_ARG(bool, false)));
    QCOMPARE(paints.painted, QList<QObject *>{dialog.flash_button});
}

void tst_client_update_check::each_check_is_a_job_of_its_own()
{
    check_and_wait();
    world->dialog->host_radio->click();
    check_and_wait();
    QCOMPARE(asked_for(*server), (QStringList{"HEAD /current/ventaro.swu", "HEAD /current/vc3w_host.hex"}));
    QCOMPARE(world->dialog->file_size, server->file("vc3w_host.hex").size());
}

void tst_client_update_check::nothing_happens_once_the_record_is_gone()
{
    check_and_wait();
    world->record.release()->discard();
    QVERIFY(!world->dialog->device);
    log->clear();
    server->clear_record();
    for (QRadioButton *radio : {world->dialog->wifi_radio, world->dialog->host_radio}) {
        radio->click();
        world->dialog->check_button->click();
        world->dialog->flash_button->setEnabled(true);
        world->dialog->flash_button->click();
    }
    QCOMPARE(world->enabled(), checked);
    QCOMPARE(log->debug_lines(), QStringList());
    QVERIFY(world->dialog->findChildren<QNetworkAccessManager *>().isEmpty());
    QCOMPARE(asked_for(*server), QStringList());
}

void tst_client_update_check::a_size_that_comes_after_the_record_is_gone_is_shown()
{
    world->dialog->check_button->click();
    world->record.release()->discard();
    QTRY_COMPARE(world->dialog->size_edit->text(), QString("4321 Bytes"));
}

QTEST_MAIN(tst_client_update_check)
#include "tst_client_update_check.moc"
