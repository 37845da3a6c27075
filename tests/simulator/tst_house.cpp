// SPDX-License-Identifier: MIT
#include <QTcpServer>
#include <QtTest>

#include "simulator/house.h"
#include "simulator/loopback.h"
#include "tests/simulator/http_client.h"
#include "tests/simulator/log_file.h"

// A house without announcements; those are tried on the real daemon, on the road.
class tst_House : public QObject
{
    Q_OBJECT

private slots:
    void who_is_present_is_there_from_the_start();
    void a_taken_host_port_is_an_error();
    void a_taken_http_port_gives_way_to_a_free_one();
    void a_taken_download_port_gives_way_to_a_free_one();
    void speakers_come_and_go();
    void a_move_takes_a_speaker_to_another_address();
    void strangers_are_refused();
    void faults_of_the_scene_are_there_from_the_start();
    void a_renamed_speaker_keeps_its_name_in_the_house();
    void a_house_that_ends_closes_everything();

private:
    static Scene::Speaker speaker(const char *name, int n)
    {
        Scene::Speaker speaker;
        speaker.config.name = name;
        speaker.config.address = own_loopback(n);
        return speaker;
    }
    static bool answers(const QString &address)
    {
        Raw_Client client;
        return client.open(address, 8990) && client.ask("RZ?STm\n") == "RZ#0013\r";
    }
};

void tst_House::who_is_present_is_there_from_the_start()
{
    Scene scene;
    scene.speakers = {speaker("A", 1), speaker("B", 2)};
    scene.speakers[1].present = false;
    Log_File file;
    House house(scene, false, file.log);
    QVERIFY2(house.start(), qPrintable(house.error()));
    QCOMPARE(house.names(), (QStringList{"A", "B"}));
    QVERIFY(house.speaker("A")->running());
    QVERIFY(!house.speaker("B")->running());
    QVERIFY(answers(own_loopback(1)));
    QVERIFY(!answers(own_loopback(2)));
    QVERIFY(!house.download_server());
    QCOMPARE(file.events().first(), QString("A is there"));
    QVERIFY(file.events().contains("A <- RZ?STm"));
    QVERIFY(file.events().contains("A -> RZ#0013"));
}

void tst_House::a_taken_host_port_is_an_error()
{
    Scene scene;
    scene.speakers = {speaker("A", 1)};
    Log_File file;
    House house(scene, false, file.log);
    QVERIFY(house.start());
    scene.speakers = {speaker("B", 1)};
    House second(scene, false, file.log);
    QVERIFY(!second.start());
    QCOMPARE(second.error(), QString("B: %1:8991: The bound address is already in use").arg(own_loopback(1)));
    QVERIFY(answers(own_loopback(1)));
}

void tst_House::a_taken_http_port_gives_way_to_a_free_one()
{
    QTcpServer taken;
    QVERIFY(taken.listen(QHostAddress(own_loopback(1))));
    Scene scene;
    scene.speakers = {speaker("A", 1)};
    scene.speakers[0].config.http_port = taken.serverPort();
    Log_File file;
    House house(scene, false, file.log);
    QVERIFY2(house.start(), qPrintable(house.error()));
    QVERIFY(house.speaker("A")->http_port() != taken.serverPort());
    Http_Client client;
    QVERIFY(client.open(own_loopback(1), house.speaker("A")->http_port()));
}

void tst_House::a_taken_download_port_gives_way_to_a_free_one()
{
    QTcpServer taken;
    QVERIFY(taken.listen(QHostAddress(own_loopback(1))));
    Scene scene;
    scene.has_download_server = true;
    scene.download.address = own_loopback(1);
    scene.download.port = taken.serverPort();
    scene.download_faults.fault = Download_Fault::not_found;
    Log_File file;
    House house(scene, false, file.log);
    QVERIFY2(house.start(), qPrintable(house.error()));
    QVERIFY(house.download_server()->port() != taken.serverPort());
    QCOMPARE(file.events(), QStringList("download server serves " + house.download_server()->url()));
    Http_Client client;
    QVERIFY(client.open(own_loopback(1), house.download_server()->port()));
    QCOMPARE(client.get("/current/ventaro.swu").status, 404);
}

void tst_House::speakers_come_and_go()
{
    Scene scene;
    scene.speakers = {speaker("A", 1)};
    scene.speakers[0].present = false;
    Log_File file;
    House house(scene, false, file.log);
    QVERIFY(house.start());
    QVERIFY(house.join("A"));
    QVERIFY(answers(own_loopback(1)));
    QVERIFY(house.join("A")); // it is there already
    QVERIFY(house.leave("A"));
    QVERIFY(!answers(own_loopback(1)));
    QVERIFY(house.leave("A"));
    QVERIFY(house.join("A"));
    QCOMPARE(file.events().filter(QRegularExpression("there|left")),
             (QStringList{"A is there", "A has left", "A is there"}));
}

void tst_House::a_move_takes_a_speaker_to_another_address()
{
    Scene scene;
    scene.speakers = {speaker("A", 1), speaker("B", 2)};
    Log_File file;
    House house(scene, false, file.log);
    QVERIFY(house.start());
    QVERIFY(!house.move("A", own_loopback(2)));
    QCOMPARE(house.error(), own_loopback(2) + ":8991: The bound address is already in use");
    QVERIFY(answers(own_loopback(1)));
    QVERIFY(house.move("A", own_loopback(3)));
    QVERIFY(answers(own_loopback(3)));
    QVERIFY(!answers(own_loopback(1)));
}

void tst_House::strangers_are_refused()
{
    Log_File file;
    House house(Scene(), false, file.log);
    QVERIFY(house.start());
    QVERIFY(!house.speaker("A"));
    const QString reason = "there is no speaker \"A\"";
    QVERIFY(!house.join("A"));
    QCOMPARE(house.error(), reason);
    QVERIFY(!house.leave("A"));
    QCOMPARE(house.error(), reason);
    QVERIFY(!house.move("A", own_loopback(1)));
    QCOMPARE(house.error(), reason);
}

void tst_House::faults_of_the_scene_are_there_from_the_start()
{
    Scene scene;
    scene.speakers = {speaker("A", 1)};
    scene.speakers[0].faults.host_refused = true;
    Log_File file;
    House house(scene, false, file.log);
    QVERIFY(house.start());
    QVERIFY(house.speaker("A")->running());
    QVERIFY(!answers(own_loopback(1)));
}

void tst_House::a_renamed_speaker_keeps_its_name_in_the_house()
{
    Scene scene;
    scene.speakers = {speaker("A", 1)};
    Log_File file;
    House house(scene, false, file.log);
    QVERIFY(house.start());
    Http_Client client;
    QVERIFY(client.open(own_loopback(1), house.speaker("A")->http_port()));
    QCOMPARE(
        client.post("/api/v19/device.action", R"({"action": "setdevicename", "devicename": "B" })").status,
        200);
    QCOMPARE(house.names(), QStringList("A"));
    QCOMPARE(house.speaker("A")->config().name, QString("B"));
    QVERIFY(house.leave("A"));
    QVERIFY(!house.leave("B"));
}

void tst_House::a_house_that_ends_closes_everything()
{
    Scene scene;
    scene.speakers = {speaker("A", 1)};
    Log_File file;
    {
        House house(scene, false, file.log);
        QVERIFY(house.start());
        QVERIFY(answers(own_loopback(1)));
    }
    QVERIFY(!answers(own_loopback(1)));
    House again(scene, false, file.log);
    QVERIFY(again.start());
}

QTEST_GUILESS_MAIN(tst_House)
#include "tst_house.moc"
