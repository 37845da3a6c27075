// SPDX-License-Identifier: MIT
#include <QDebug>
#include <QMetaProperty>
#include <QTest>
#include <QThread>
#include <memory>

#include "zeroconf/qzeroconf.h"
#include "zeroconf/qzeroconfservice.h"

class tst_QZeroConfService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void a_new_record_is_empty();
    void copies_refer_to_one_record();
    void the_gadget_has_four_read_only_properties_data();
    void the_gadget_has_four_read_only_properties();
    void the_meta_type_has_the_name_QZeroConfService();
    void the_key_is_the_name_followed_by_the_interface_data();
    void the_key_is_the_name_followed_by_the_interface();
    void the_text_form_names_service_host_address_and_port();
    void the_text_form_of_an_unresolved_service_has_an_empty_address();
    void the_text_form_leaves_the_stream_as_it_was();
    void the_text_form_waits_for_the_address_mutex();
};

namespace
{
QZeroConfService kitchen()
{
    QZeroConfService service(new QZeroConfServiceData);
    service->name = QString::fromUtf8("Küche links");
    service->type = "_lodeset._tcp.";
    service->domain = "local.";
    service->host = "speaker.local.";
    service->ip = QHostAddress("127.0.0.9");
    service->port = 8080;
    return service;
}

QString text_of(const QZeroConfService &service)
{
    QString text;
    QDebug(&text) << service;
    return text.trimmed();
}
} // namespace

void tst_QZeroConfService::a_new_record_is_empty()
{
    const QZeroConfServiceData data;
    QVERIFY(data.name.isEmpty());
    QVERIFY(data.type.isEmpty());
    QVERIFY(data.domain.isEmpty());
    QVERIFY(data.host.isEmpty());
    QVERIFY(data.ip.isNull());
    QCOMPARE(data.interfaceIndex, 0u);
    QCOMPARE(data.port, quint16(0));
    QVERIFY(data.txt.isEmpty());
}

void tst_QZeroConfService::copies_refer_to_one_record()
{
    const QZeroConfService service = kitchen();
    const QZeroConfService copy = service; // NOLINT(performance-unnecessary-copy-initialization)
    service->ip = QHostAddress("127.0.0.10");
    QCOMPARE(copy->ip, QHostAddress("127.0.0.10"));
}

void tst_QZeroConfService::the_gadget_has_four_read_only_properties_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("name") << kitchen()->name;
    QTest::newRow("type") << kitchen()->type;
    QTest::newRow("domain") << kitchen()->domain;
    QTest::newRow("host") << kitchen()->host;
}

void tst_QZeroConfService::the_gadget_has_four_read_only_properties()
{
    QFETCH(QString, value);
    const QMetaObject &meta = QZeroConfServiceData::staticMetaObject;
    QCOMPARE(meta.propertyCount(), 4);

    const QMetaProperty property = meta.property(meta.indexOfProperty(QTest::currentDataTag()));
    QVERIFY(property.isReadable());
    QVERIFY(!property.isWritable());
    const QZeroConfService service = kitchen();
    QCOMPARE(property.readOnGadget(service.data()), QVariant(value));
    QVERIFY(!property.writeOnGadget(service.data(), "other"));
}

void tst_QZeroConfService::the_meta_type_has_the_name_QZeroConfService()
{
    const QZeroConf zeroconf;
    QVERIFY(QMetaType::type("QZeroConfService") != QMetaType::UnknownType);
    QCOMPARE(QMetaType::type("QZeroConfService"), qMetaTypeId<QZeroConfService>());
}

void tst_QZeroConfService::the_key_is_the_name_followed_by_the_interface_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<quint32>("interface");
    QTest::addColumn<QString>("key");
    QTest::newRow("plain") << "Speaker" << 2u << "Speaker2";
    QTest::newRow("name ends in a digit, keys fall together") << "Speaker1" << 2u << "Speaker12";
    QTest::newRow("the other one of that key") << "Speaker" << 12u << "Speaker12";
    QTest::newRow("no name") << "" << 0u << "0";
    QTest::newRow("largest interface") << "S" << 4294967295u << "S4294967295";
}

void tst_QZeroConfService::the_key_is_the_name_followed_by_the_interface()
{
    QFETCH(QString, name);
    QFETCH(quint32, interface);
    QFETCH(QString, key);
    QCOMPARE(service_key(name, interface), key);
}

void tst_QZeroConfService::the_text_form_names_service_host_address_and_port()
{
    QCOMPARE(text_of(kitchen()),
             QString::fromUtf8("Zeroconf Service: Küche links @ speaker.local. (127.0.0.9:8080)"));
}

void tst_QZeroConfService::the_text_form_of_an_unresolved_service_has_an_empty_address()
{
    QCOMPARE(text_of(QZeroConfService(new QZeroConfServiceData)), QString("Zeroconf Service:  @  (:0)"));
}

void tst_QZeroConfService::the_text_form_leaves_the_stream_as_it_was()
{
    QString text;
    QDebug(&text) << "before" << kitchen() << "after" << QString("quoted");
    QCOMPARE(text.trimmed(),
             QString::fromUtf8("before Zeroconf Service: Küche links @ speaker.local. (127.0.0.9:8080) after "
                               "\"quoted\""));
}

void tst_QZeroConfService::the_text_form_waits_for_the_address_mutex()
{
    const QZeroConfService service = kitchen();
    service->ip_mutex.lock();
    QString text;
    const std::unique_ptr<QThread> reader(QThread::create([&] { text = text_of(service); }));
    reader->start();
    // It stands at the mutex, however long it is given.
    QVERIFY(!reader->wait(50));
    service->ip = QHostAddress("127.0.0.77");
    service->ip_mutex.unlock();
    QVERIFY(reader->wait(5000));
    QVERIFY(text.contains("(127.0.0.77:8080)"));
}

QTEST_GUILESS_MAIN(tst_QZeroConfService)
#include "tst_qzeroconfservice.moc"
