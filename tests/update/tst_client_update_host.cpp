// SPDX-License-Identifier: MIT
#include <QTimer>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "tests/settings/marking_translator.h"
#include "tests/update/flash_world.h"
#include "tests/update/long_sleeps.h"

// Firmware for the host, all that goes well; the rest is told in tst_client_update_host_trouble.
class tst_client_update_host : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { plattform = new rzplattform; }
    void init();
    void cleanup();
    void lines_go_out_as_they_stand_data();
    void lines_go_out_as_they_stand();
    void the_file_is_the_one_of_the_type();
    void the_worker_ends_before_flash_mode_and_the_lines_follow_5_s_later();
    void queued_changes_go_out_before_flash_mode();
    void the_part_that_is_sent_shows_as_progress();
    void every_line_is_logged_with_its_part();
    void a_line_has_gone_out_when_the_bar_moves();
    void the_last_of_several_lines_passes_through_100();
    void one_line_shows_0_until_the_end();
    void lines_are_10_ms_apart_and_the_last_one_ends_at_once();
    void the_end_is_told();
    void everything_is_released_and_full_before_the_end_is_told();
    void the_status_is_translated_and_stays();
    void buttons_stay_enabled();
    void afterwards_the_worker_is_stopped_and_the_file_still_there();
    void a_second_flash_takes_a_new_link();

private:
    std::unique_ptr<Flash_World> world;
};

void tst_client_update_host::init()
{
    long_sleeps::forget();
    world = std::make_unique<Flash_World>();
}

void tst_client_update_host::cleanup()
{
    const QStringList warnings = own_warnings(world->log);
    world.reset();
    QCOMPARE(warnings, QStringList());
}

void tst_client_update_host::lines_go_out_as_they_stand_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<int>("lines");
    QTest::newRow("line feeds") << QByteArray(":10\n:20\n") << QByteArray(":10\r\n:20\r\n") << 2;
    QTest::newRow("carriage returns and line feeds")
        << QByteArray(":10\r\n:20\r\n") << QByteArray(":10\r\n:20\r\n") << 2;
    QTest::newRow("both") << QByteArray(":10\r\n:20\n:30\r\n") << QByteArray(":10\r\n:20\r\n:30\r\n") << 3;
    QTest::newRow("no last line end") << QByteArray(":10\n:20") << QByteArray(":10\r\n:20\r\n") << 2;
    QTest::newRow("empty lines") << QByteArray("\n:10\r\n\r\n:20\n\n")
                                 << QByteArray("\r\n:10\r\n\r\n:20\r\n\r\n") << 5;
    QTest::newRow("a single line") << QByteArray(":00000001FF\r\n") << QByteArray(":00000001FF\r\n") << 1;
    QTest::newRow("no records") << QByteArray(" <p>\tZürich </p> \n\"x\\\n")
                                << QByteArray(" <p>\tZürich </p> \r\n\"x\\\r\n") << 2;
    QTest::newRow("nothing") << QByteArray("") << QByteArray("\r\n") << 1;
}

void tst_client_update_host::lines_go_out_as_they_stand()
{
    QFETCH(QByteArray, content);
    QFETCH(int, lines);
    world->flash(content);
    QTEST(world->sent(), "sent");
    QCOMPARE(world->dialog->flash_done, lines);
    QCOMPARE(world->dialog->flash_total, content.isEmpty() ? -1 : lines - 1);
    QCOMPARE(world->dialog->progress_bar->value(), 100);
    QCOMPARE(world->logged("FLASHING"),
             QStringList{QString("FLASHING file finished - Total  %1  lines").arg(lines)});
}

void tst_client_update_host::the_file_is_the_one_of_the_type()
{
    world->control->type = 42;
    world->server.set_file("vs12.3w_host.hex", ":42\n");
    world->flash(":13\n");
    QCOMPARE(asked_for(world->server), QStringList{"GET /current/vs12.3w_host.hex"});
    QCOMPARE(world->sent(), QByteArray(":42\r\n"));
}

void tst_client_update_host::the_worker_ends_before_flash_mode_and_the_lines_follow_5_s_later()
{
    const Connection_Count before = world->speaker.host_connections();
    QCOMPARE(before.open, 1);
    int asleep = 0;
    long_sleeps::on_sleep = [&] {
        ++asleep;
        QVERIFY(!world->control->isRunning());
        QVERIFY(world->control->link);
        QVERIFY(world->control->link->xon);
        QVERIFY(world->speaker.wait_for_host_line("RZ!FL\n"));
        QVERIFY(world->speaker.wait_for_host_open(1));
        QCOMPARE(world->speaker.host_connections().accepted, before.accepted + 1);
        QCOMPARE(world->speaker.host_lines(), Lines{"RZ!FL\n"});
        QCOMPARE(world->dialog->status_label->text(), QString("Downloading..."));
        QCOMPARE(
            world->logged("HOST Firmware"),
            QStringList{
                QString("HOST Firmware downloaded  \"%1/host.hex\" with 2 lines").arg(world->folder.path())});
        QCOMPARE(world->logged("\n\n\nflashing"), QStringList());
    };
    world->flash(":10\n:20\n:30\n");
    QCOMPARE(asleep, 1);
    QCOMPARE(long_sleeps::taken(), QList<qint64>{5000});
    QCOMPARE(world->speaker.host_lines(), (Lines{"RZ!FL\n", ":10\r\n", ":20\r\n", ":30\r\n"}));
    const QStringList log = world->log.debug_lines();
    const QStringList steps = {"Virelos::terminate() waiting for termination",
                               "Virelos::terminate() THREADs gone", "\"Virelos::flash() ofKitchen\"",
                               "=== serial_wifi::prepare_xon()", "\n\n\nflashing HEX File..."};
    int last = log.indexOf(world->logged("HOST Firmware").constFirst());
    for (const QString &step : steps) {
        QVERIFY2(log.indexOf(step) > last, qPrintable(step));
        last = log.indexOf(step);
    }
}

void tst_client_update_host::queued_changes_go_out_before_flash_mode()
{
    world->open(":10\n");
    long_sleeps::on_sleep = [this] { world->control->set_volume(99); };
    Box_Reader box;
    world->control->set_volume(37);
    world->control->muteOn();
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    const Lines lines = world->speaker.host_lines();
    QVERIFY(lines.contains("RZ!vo037\n"));
    QVERIFY(lines.contains("RZ!MO\n"));
    // Nobody is left to send what is changed later.
    QCOMPARE(lines.mid(lines.size() - 2), (Lines{"RZ!FL\n", ":10\r\n"}));
}

// The part is computed with the count before the line, in floating point, and cut off: 29 of 100 are 28.
void tst_client_update_host::the_part_that_is_sent_shows_as_progress()
{
    world->open(numbered_lines(101));
    QSignalSpy values(world->dialog->progress_bar, &QProgressBar::valueChanged);
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY_WITH_TIMEOUT(box.met(), 20000);
    QList<int> shown;
    for (const QList<QVariant> &value : values)
        shown += value.constFirst().toInt();
    QList<int> expected;
    for (int percent = 1; percent <= 100; ++percent) {
        if (percent != 29 && percent != 57 && percent != 58)
            expected += percent;
        else if (percent == 58)
            expected += 57; // 57 of 100 are 56, which stood there already
    }
    QCOMPARE(shown, expected);
    QCOMPARE(world->dialog->flash_done, 101);
}

void tst_client_update_host::every_line_is_logged_with_its_part()
{
    world->flash(":10\n\n:30\n:40\n");
    QCOMPARE(world->logged("Client_Update::flashLineTimer"),
             (QStringList{"Client_Update::flashLineTimer() HEX  0   0 %  \":10\"",
                          "Client_Update::flashLineTimer() HEX  1   33.3333 %  \"\"",
                          "Client_Update::flashLineTimer() HEX  2   66.6667 %  \":30\"",
                          "Client_Update::flashLineTimer() HEX  3   100 %  \":40\""}));
}

void tst_client_update_host::a_line_has_gone_out_when_the_bar_moves()
{
    world->open(":10\n:20\n:30\n");
    world->dialog->progress_bar->setValue(77);
    QList<Lines> sent;
    connect(world->dialog->progress_bar, &QProgressBar::valueChanged, this,
            [&] { sent += world->speaker.host_lines().mid(1); });
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QCOMPARE(sent, (QList<Lines>{{":10\r\n"}, {":10\r\n", ":20\r\n"}, {":10\r\n", ":20\r\n", ":30\r\n"}}));
}

void tst_client_update_host::the_last_of_several_lines_passes_through_100()
{
    QList<int> values;
    world->open(":10\n:20\n:30\n");
    world->dialog->progress_bar->setValue(77);
    world->log.on_debug_line = [&](const QString &line) {
        if (line.startsWith("Client_Update::flashLineTimer()"))
            values += world->dialog->progress_bar->value();
    };
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QCOMPARE(values, (QList<int>{0, 50, 100}));
}

void tst_client_update_host::one_line_shows_0_until_the_end()
{
    for (const QByteArray &content : {QByteArray(":10\n"), QByteArray()}) {
        world->open(content);
        world->dialog->progress_bar->setValue(77);
        QSignalSpy values(world->dialog->progress_bar, &QProgressBar::valueChanged);
        Box_Reader box;
        world->dialog->flash_button->click();
        QTRY_VERIFY(box.met());
        QCOMPARE(values.size(), 2);
        QCOMPARE(values.at(0).constFirst().toInt(), 0);
        QCOMPARE(values.at(1).constFirst().toInt(), 100);
        QCOMPARE(world->logged("Client_Update::flashLineTimer() HEX  0   0 %  ").size(), 1);
        world->log.clear();
    }
}

// All on one event loop, so the order of what happens holds on a busy machine too.
void tst_client_update_host::lines_are_10_ms_apart_and_the_last_one_ends_at_once()
{
    QStringList order;
    QTimer early, late;
    for (QTimer *timer : {&early, &late}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    early.setInterval(8);
    late.setInterval(40);
    connect(&early, &QTimer::timeout, [&order] { order += "early"; });
    connect(&late, &QTimer::timeout, [&order] { order += "late"; });
    world->open(":10\n:20\n");
    world->log.on_debug_line = [&](const QString &line) {
        if (line.startsWith("Client_Update::flashLineTimer()")) {
            order += "line";
            early.start();
            late.start();
        } else if (line.startsWith("FLASHING")) {
            order += "end";
        }
    };
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QCOMPARE(order.mid(0, 4), (QStringList{"line", "early", "line", "end"}));
}

void tst_client_update_host::the_end_is_told()
{
    Marking_Translator translator("Client_Update");
    QCoreApplication::installTranslator(&translator);
    world->open(":10\n:20\n");
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QCOMPARE(box.icon, QMessageBox::Information);
    QCOMPARE(box.parent, world->dialog.get());
    QCOMPARE(box.title, QString("Info"));
    QCOMPARE(box.text, QString("Flashing HOST completed!"));
    QCOMPARE(box.buttons, QStringList{"#OK"});
}

void tst_client_update_host::everything_is_released_and_full_before_the_end_is_told()
{
    world->open(":10\n:20\n");
    bool released = false;
    bool open_before = false;
    world->at_line(1, [&] { open_before = world->dialog->flash_file && world->dialog->flash_stream; });
    Modal_User<QMessageBox> user([&](QMessageBox *box) {
        released = !world->dialog->flash_file && !world->dialog->flash_stream;
        QCOMPARE(world->dialog->progress_bar->value(), 100);
        QCOMPARE(world->logged("FLASHING").size(), 1);
        box->buttons().constFirst()->click();
    });
    world->dialog->flash_button->click();
    QTRY_VERIFY(user.met);
    QVERIFY(open_before);
    QVERIFY(released);
}

void tst_client_update_host::the_status_is_translated_and_stays()
{
    Marking_Translator translator("Client_Update");
    QCoreApplication::installTranslator(&translator);
    world->flash(":10\n:20\n");
    QCOMPARE(world->dialog->status_label->text(), QString("#Downloading..."));
}

void tst_client_update_host::buttons_stay_enabled()
{
    int looks = 0;
    const auto look = [&] {
        ++looks;
        for (QPushButton *button :
             {world->dialog->check_button, world->dialog->flash_button, world->dialog->back_button})
            QVERIFY(button->isEnabled());
    };
    world->open(":10\n:20\n");
    long_sleeps::on_sleep = look;
    world->at_line(0, look);
    Box_Reader box;
    world->dialog->flash_button->click();
    look();
    QTRY_VERIFY(box.met());
    look();
    QCOMPARE(looks, 4);
}

void tst_client_update_host::afterwards_the_worker_is_stopped_and_the_file_still_there()
{
    world->flash(":10\r\n:20\n");
    QVERIFY(!world->control->isRunning());
    QVERIFY(world->control->link);
    QVERIFY(world->speaker.wait_for_host_open(1));
    QFile file(world->folder.filePath("host.hex"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray(":10\r\n:20\n"));
}

void tst_client_update_host::a_second_flash_takes_a_new_link()
{
    world->flash(":10\n:00000001FF\n"); // the last record ends the flash mode
    const int links = world->speaker.host_connections().accepted;
    Box_Reader box;
    world->dialog->flash_button->click();
    QTRY_VERIFY(box.met());
    QCOMPARE(world->speaker.host_lines(),
             (Lines{"RZ!FL\n", ":10\r\n", ":00000001FF\r\n", "RZ!FL\n", ":10\r\n", ":00000001FF\r\n"}));
    QCOMPARE(world->speaker.host_connections().accepted, links + 1);
    QVERIFY(world->speaker.wait_for_host_open(1));
    QCOMPARE(world->dialog->flash_done, 2);
}

QTEST_MAIN(tst_client_update_host)
#include "tst_client_update_host.moc"
