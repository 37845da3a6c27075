// SPDX-License-Identifier: MIT
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryFile>
#include <QtTest>

#include "simulator/scene.h"

class tst_Scene : public QObject
{
    Q_OBJECT

private slots:
    void the_scenes_that_come_along_are_named();
    void every_scene_that_comes_along_reads_and_tells_what_it_is();
    void home_has_six_speakers_of_five_kinds();
    void group_has_a_sender_and_a_receiver_that_is_linked_to_it();
    void access_point_has_a_speaker_that_sees_networks();
    void big_house_has_sixty_speakers_of_every_type_and_a_group();
    void broken_has_one_sound_speaker_and_each_other_with_a_fault_of_its_own();
    void every_key_of_a_speaker_is_read();
    void what_is_left_out_has_its_default();
    void the_download_server_is_read();
    void a_network_without_a_password_takes_any();
    void a_wrong_scene_is_refused_with_the_reason_data();
    void a_wrong_scene_is_refused_with_the_reason();
    void a_refused_scene_leaves_nothing_of_the_one_before();
    void a_file_is_read_by_its_path();
    void a_missing_or_wrong_file_is_named_in_the_reason();
    void every_key_stands_in_the_help();

private:
    static Scene read(const QByteArray &json)
    {
        Scene scene;
        QString error;
        if (!read_scene(json, scene, &error))
            QTest::qFail(qPrintable(error), __FILE__, __LINE__);
        return scene;
    }
    static Scene load(const QString &name)
    {
        Scene scene;
        QString error;
        if (!load_scene(name, scene, &error))
            QTest::qFail(qPrintable(error), __FILE__, __LINE__);
        return scene;
    }
    static QByteArray with_speaker(const QByteArray &members)
    {
        return R"({"speakers": [{"name": "A", "address": "127.0.0.5", )" + members + "}]}";
    }
};

void tst_Scene::the_scenes_that_come_along_are_named()
{
    QCOMPARE(scene_names(), (QStringList{"access-point", "big-house", "broken", "group", "home"}));
}

void tst_Scene::every_scene_that_comes_along_reads_and_tells_what_it_is()
{
    QSet<QString> addresses;
    int speakers = 0;
    for (const QString &name : scene_names()) {
        const Scene scene = load(name);
        QVERIFY(!scene.about.isEmpty());
        QVERIFY(scene.has_download_server);
        QCOMPARE(scene.download.address, QString("127.0.0.80")); // where the lab's hosts file leads
        QCOMPARE(scene.download.port, quint16(80));
        QVERIFY(!scene.speakers.isEmpty());
        for (const Scene::Speaker &speaker : scene.speakers)
            addresses.insert(speaker.config.address);
        speakers += scene.speakers.size();
    }
    QCOMPARE(addresses.size(), speakers); // so scenes can be alive side by side
}

void tst_Scene::home_has_six_speakers_of_five_kinds()
{
    const Scene scene = load("home");
    QStringList names;
    QList<int> types;
    for (const Scene::Speaker &speaker : scene.speakers) {
        names += speaker.config.name;
        types += speaker.config.type;
        QVERIFY(speaker.present);
    }
    QCOMPARE(names, (QStringList{"Wohnzimmer links", "Wohnzimmer rechts", "Küche", "Sub Wohnzimmer",
                                 "Gästezimmer (neu)", "Werkstatt"}));
    QCOMPARE(types, (QList<int>{13, 37, 19, 18, 16, 99}));
    QCOMPARE(scene.speakers.at(3).config.values.value("eg"), QString("-6"));
    const Speaker_Config &fresh = scene.speakers.at(4).config;
    QCOMPARE(fresh.wlan_mode, QString("AP"));
    QCOMPARE(fresh.networks.size(), 3);
    QCOMPARE(fresh.networks.at(0).password, QString("geheim123"));
    QCOMPARE(fresh.networks.at(2).encrypt_type, QString("OPEN"));
    QCOMPARE(scene.download.hex_lines, 500);
}

void tst_Scene::group_has_a_sender_and_a_receiver_that_is_linked_to_it()
{
    const Scene scene = load("group");
    QCOMPARE(scene.speakers.size(), 3);
    const Speaker_Config &sender = scene.speakers.at(0).config;
    const Speaker_Config &receiver = scene.speakers.at(1).config;
    const Speaker_Config &other = scene.speakers.at(2).config;
    QVERIFY(sender.sender_enabled);
    QCOMPARE(sender.groupname, QString("Salon"));
    QVERIFY(!sender.sender_uuid.isEmpty());
    QCOMPARE(receiver.receiver_state, 1);
    QCOMPARE(receiver.receiver_sender, sender.sender_uuid);
    QVERIFY(!receiver.sender_enabled);
    QVERIFY(!other.sender_enabled);
    QCOMPARE(other.receiver_state, 0);
}

void tst_Scene::access_point_has_a_speaker_that_sees_networks()
{
    const Scene scene = load("access-point");
    QCOMPARE(scene.speakers.size(), 1);
    const Speaker_Config &speaker = scene.speakers.first().config;
    QCOMPARE(speaker.wlan_mode, QString("AP"));
    QCOMPARE(speaker.networks.size(), 4);
    QVERIFY(!speaker.networks.at(3).password.isNull()); // an open one takes no password at all
    QCOMPARE(speaker.networks.at(3).password, QString(""));
}

void tst_Scene::big_house_has_sixty_speakers_of_every_type_and_a_group()
{
    QSet<QString> names;
    QSet<int> types;
    QStringList senders;
    QStringList linked_to;
    for (const Scene::Speaker &speaker : load("big-house").speakers) {
        QVERIFY(speaker.present);
        names.insert(speaker.config.name);
        types.insert(speaker.config.type);
        if (speaker.config.sender_enabled)
            senders += speaker.config.sender_uuid;
        if (!speaker.config.receiver_sender.isEmpty())
            linked_to += speaker.config.receiver_sender;
    }
    QCOMPARE(names.size(), 60);
    for (int type = 13; type <= 44; type = type == 19 ? 37 : type + 1)
        QVERIFY2(types.contains(type), qPrintable(QString::number(type)));
    QCOMPARE(senders.size(), 1);
    QCOMPARE(linked_to.size(), 7);
    QCOMPARE(linked_to.count(senders.first()), 7);
}

void tst_Scene::broken_has_one_sound_speaker_and_each_other_with_a_fault_of_its_own()
{
    load("broken");
    QFile file(":/scenes/broken.json");
    QVERIFY(file.open(QIODevice::ReadOnly));
    QSet<QByteArray> faults;
    int absent = 0;
    const QJsonArray speakers = QJsonDocument::fromJson(file.readAll()).object().value("speakers").toArray();
    for (const QJsonValue speaker : speakers) {
        faults.insert(QJsonDocument(speaker.toObject().value("faults").toObject()).toJson());
        absent += speaker.toObject().value("present").toBool(true) ? 0 : 1;
    }
    QCOMPARE(speakers.size(), 15);
    QCOMPARE(faults.size(), 15); // that of the sound one is empty
    QVERIFY(faults.contains(QJsonDocument(QJsonObject()).toJson()));
    QCOMPARE(absent, 2);
}

void tst_Scene::every_key_of_a_speaker_is_read()
{
    const Scene scene = read(R"({"about": "x", "speakers": [{
        "name": "Küche", "address": "127.0.0.5", "http_port": 8080, "host_name": "kueche",
        "service_type": "_other._tcp", "txt": {"a": "b", "c": ""}, "present": false,
        "faults": {"http": "empty", "host-slow": "20"}, "type": 18, "cell": "W",
        "values": {"vo": "37", "ai": "X"}, "flash_answer_ms": -1, "flash_answer": "ok",
        "model": "M", "firmware": "F", "hardware": "H", "wlan_mode": "AP", "ssid": "S", "mac": "m",
        "signal": -70, "channelwidth": 20, "bitrate": 54.5, "sender_enabled": true, "sender_state": -1,
        "sender_mode": 3, "sender_uuid": "u", "groupname": "G", "receiver_state": 2, "receiver_sender": "v",
        "networks": [{"ssid": "N", "encrypt_type": "E", "signal_level": "-1", "password": ""}],
        "upgrade_polls": 4}]})");
    QCOMPARE(scene.about, QString("x"));
    QCOMPARE(scene.speakers.size(), 1);
    const Scene::Speaker &speaker = scene.speakers.first();
    QVERIFY(!speaker.present);
    QCOMPARE(speaker.faults.http, Http_Fault::empty);
    QCOMPARE(speaker.faults.host_slow_ms, 20);
    const Speaker_Config &config = speaker.config;
    QCOMPARE(config.name, QString("Küche"));
    QCOMPARE(config.address, QString("127.0.0.5"));
    QCOMPARE(config.http_port, quint16(8080));
    QCOMPARE(config.host_name, QString("kueche"));
    QCOMPARE(config.service_type, QString("_other._tcp"));
    QCOMPARE(config.txt, (QMap<QString, QString>{{"a", "b"}, {"c", ""}}));
    QCOMPARE(config.type, 18);
    QCOMPARE(config.cell, QString("W"));
    QCOMPARE(config.values, (QMap<QString, QString>{{"ai", "X"}, {"vo", "37"}}));
    QCOMPARE(config.flash_answer_ms, -1);
    QCOMPARE(config.flash_answer, QString("ok"));
    QCOMPARE(config.model + config.firmware + config.hardware, QString("MFH"));
    QCOMPARE(config.wlan_mode + config.ssid + config.mac, QString("APSm"));
    QCOMPARE(config.signal, -70);
    QCOMPARE(config.channelwidth, 20);
    QCOMPARE(config.bitrate, 54.5);
    QVERIFY(config.sender_enabled);
    QCOMPARE(config.sender_state, -1);
    QCOMPARE(config.sender_mode, 3);
    QCOMPARE(config.sender_uuid + config.groupname, QString("uG"));
    QCOMPARE(config.receiver_state, 2);
    QCOMPARE(config.receiver_sender, QString("v"));
    QCOMPARE(config.networks.size(), 1);
    const Wlan_Network &network = config.networks.first();
    QCOMPARE(network.ssid + network.encrypt_type + network.signal_level, QString("NE-1"));
    QCOMPARE(config.upgrade_polls, 4);
}

void tst_Scene::what_is_left_out_has_its_default()
{
    const Scene scene = read(R"({"speakers": [{}]})");
    const Scene::Speaker &speaker = scene.speakers.first();
    QVERIFY(speaker.present);
    QCOMPARE(speaker.config.name, QString("Speaker"));
    QCOMPARE(speaker.config.service_type, QString("_lodeset._tcp"));
    QCOMPARE(speaker.config.type, 13);
    QVERIFY(!scene.has_download_server);
    QVERIFY(read("{}").speakers.isEmpty());
}

void tst_Scene::the_download_server_is_read()
{
    const Scene scene = read(R"({"download": {"address": "127.0.0.9", "port": 8000, "swu_size": 7,
                                              "hex_lines": 3, "fault": "slow", "files": {"x.hex": "a\r\nb"}}})");
    QVERIFY(scene.has_download_server);
    QCOMPARE(scene.download.address, QString("127.0.0.9"));
    QCOMPARE(scene.download.port, quint16(8000));
    QCOMPARE(scene.download.swu_size, 7);
    QCOMPARE(scene.download.hex_lines, 3);
    QCOMPARE(scene.download.files, (QMap<QString, QString>{{"x.hex", "a\r\nb"}}));
    QCOMPARE(scene.download_faults.fault, Download_Fault::slow);
    QVERIFY(read(R"({"download": {}})").has_download_server);
}

void tst_Scene::a_network_without_a_password_takes_any()
{
    const Scene scene = read(with_speaker(R"("networks": [{"ssid": "N"}, {"ssid": "O", "password": ""}])"));
    QVERIFY(scene.speakers.first().config.networks.at(0).password.isNull());
    QVERIFY(!scene.speakers.first().config.networks.at(1).password.isNull());
}

void tst_Scene::a_wrong_scene_is_refused_with_the_reason_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("reason");
    const auto row = [](const QByteArray &json, const char *reason) {
        QTest::newRow(reason) << json << QString(reason);
    };
    const auto speaker = [&row](const QByteArray &members, const QByteArray &reason) {
        row(with_speaker(members), ("\"speakers\" no. 1: " + reason).constData());
    };
    row("", "no value at byte 0");
    row(R"({"speakers": [],})", "missing key at byte 16");
    row("[]", "a scene is an object");
    row("7", "a scene is an object");
    row(R"({"speaker": []})", R"("speaker" is not known)");
    row(R"({"about": 7})", R"("about" wants a text)");
    row(R"({"speakers": {}})", R"("speakers" wants a list of objects)");
    row(R"({"speakers": [7]})", R"("speakers" no. 1: wants an object)");
    row(R"({"speakers": [{}, {"name": "B"}]})",
        R"("speakers" no. 2: another one stands on 127.0.0.1 already)");
    row(R"({"speakers": [{}, {"address": "127.0.0.2"}]})",
        R"("speakers" no. 2: another one is called "Speaker" already)");
    speaker(R"("colour": "red")", R"("colour" is not known)");
    speaker(R"("model": 7)", R"("model" wants a text)");
    speaker(R"("type": "13")", R"("type" wants a whole number from 0 up)");
    speaker(R"("type": 13.5)", R"("type" wants a whole number from 0 up)");
    speaker(R"("type": -1)", R"("type" wants a whole number from 0 up)");
    speaker(R"("type": 1e30)", R"("type" wants a whole number from 0 up)");
    speaker(R"("http_port": 65536)", R"("http_port" wants a whole number from 0 to 65535)");
    speaker(R"("bitrate": -0.5)", R"("bitrate" wants a number from 0 up)");
    speaker(R"("bitrate": "fast")", R"("bitrate" wants a number from 0 up)");
    speaker(R"("present": 1)", R"("present" wants true or false)");
    speaker(R"("sender_enabled": "yes")", R"("sender_enabled" wants true or false)");
    speaker(R"("values": {"vo": 37})", R"("values" wants an object of texts)");
    speaker(R"("values": ["vo"])", R"("values" wants an object of texts)");
    speaker(R"("values": {"v0": "37"})", R"(type 13 has no value "v0")");
    speaker(R"("values": {"fg": "80"})", R"(type 13 has no value "fg")");
    speaker(R"("type": 18, "values": {"IN": "W"})", R"(type 18 has no value "IN")");
    speaker(R"("txt": {"a": null})", R"("txt" wants an object of texts)");
    speaker(
        R"("faults": {"http": "slow"})",
        R"("faults" are wrong: http takes none|silent|hold|reset|error-page)"
        R"(|empty|empty-object|half|too-long|too-short|huge|bulky|wrong-types|wrong-members, not "slow")");
    speaker(R"("faults": {"fire": "on"})", R"("faults" are wrong: no fault is called "fire")");
    speaker(R"("faults": {"host-slow": 20})", R"("faults" wants an object of texts)");
    speaker(R"("faults": "on")", R"("faults" wants an object of texts)");
    speaker(R"("networks": {})", R"("networks" wants a list of objects)");
    speaker(R"("networks": [{}, "N"])", R"("networks" no. 2: wants an object)");
    speaker(R"("networks": [{"psk": "x"}])", R"("networks" no. 1: "psk" is not known)");
    speaker(R"("networks": [{"signal_level": -60}])", R"("networks" no. 1: "signal_level" wants a text)");
    row(R"({"speakers": [{"name": ""}]})", R"("speakers" no. 1: "name" wants 1 to 63 bytes)");
    row(R"({"speakers": [{"address": "kitchen"}]})",
        R"("speakers" no. 1: "address" wants an IPv4 address, not "kitchen")");
    row(R"({"speakers": [{"address": "::1"}]})",
        R"("speakers" no. 1: "address" wants an IPv4 address, not "::1")");
    row(R"({"download": []})", R"("download" wants an object)");
    row(R"({"download": {"hex_lines": 0}})", R"("download" "hex_lines" wants a whole number from 1 up)");
    row(R"({"download": {"files": {"x.hex": 7}}})", R"("download" "files" wants an object of texts)");
    row(R"({"download": {"fault": "fast"}})",
        R"("download" "fault" wants one of none, not-found, no-length, redirect, reset, empty, error-page, slow, silent)");
}

void tst_Scene::a_wrong_scene_is_refused_with_the_reason()
{
    QFETCH(QByteArray, json);
    Scene scene;
    QString error;
    QVERIFY(!read_scene(json, scene, &error));
    QTEST(error, "reason");
}

void tst_Scene::a_refused_scene_leaves_nothing_of_the_one_before()
{
    Scene scene = load("home");
    QString error;
    QVERIFY(!read_scene("nonsense", scene, &error));
    QVERIFY(scene.speakers.isEmpty());
    QVERIFY(!scene.has_download_server);
    QVERIFY(read_scene("{}", scene, &error));
    QCOMPARE(error, QString());
}

void tst_Scene::a_file_is_read_by_its_path()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(with_speaker(R"("type": 44)"));
    file.close();
    QCOMPARE(load(file.fileName()).speakers.first().config.type, 44);
}

void tst_Scene::a_missing_or_wrong_file_is_named_in_the_reason()
{
    Scene scene;
    QString error;
    QVERIFY(!load_scene("no-such-scene", scene, &error));
    QCOMPARE(error, QString("no-such-scene: No such file or directory"));
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write("{");
    file.close();
    QVERIFY(!load_scene(file.fileName(), scene, &error));
    QCOMPARE(error, file.fileName() + ": missing key at byte 1");
}

void tst_Scene::every_key_stands_in_the_help()
{
    const QString help = scene_help().join('\n');
    for (const char *key :
         {"about", "speakers", "download", "name", "address", "values", "faults", "networks", "present",
          "txt", "encrypt_type", "password", "swu_size", "hex_lines", "files", "fault"})
        QVERIFY2(QRegularExpression(QString("(?m)^  %1 ").arg(key)).match(help).hasMatch(), key);
    QVERIFY(help.contains("http_port"));
    QVERIFY(help.contains("(a whole number from 0 to 65535)"));
}

QTEST_GUILESS_MAIN(tst_Scene)
#include "tst_scene.moc"
