// SPDX-License-Identifier: MIT
#include <QGuiApplication>
#include <QMetaMethod>
#include <QTest>
#include <memory>

#include "app/apphandler.h"
#include "app/globals.h"
#include "control/virelo_unknown.h"
#include "device/device_desc.h"
#include "tests/fakes/log_capture.h"

namespace
{
const QStringList state_log(const char *state)
{
    return {QString("*** void apphandler::onApplicationStateChanged(Qt::ApplicationState state = Qt::%1 )")
                .arg(state)};
}

bool is_default_handler(QtMessageHandler handler)
{
    const QtMessageHandler before = qInstallMessageHandler(nullptr);
    return qInstallMessageHandler(before) == handler;
}
} // namespace

class tst_apphandler : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void it_has_one_slot();
    void construction_is_logged();
    void activation_pings_each_speaker_once();
    void activation_skips_a_record_without_control();
    void activation_with_no_speaker_only_logs();
    void each_activation_asks_for_one_ping_more();
    void other_states_ping_nobody_data();
    void other_states_ping_nobody();
    void ping_is_left_to_the_worker();
    void destructor_removes_the_message_handler();

private:
    Device_Desc *add_record(const QString &name, bool with_control);

    std::unique_ptr<AppHandler> handler;
    QList<Virelos *> controls;
};

void tst_apphandler::init()
{
    handler = std::make_unique<AppHandler>(qApp);
}

void tst_apphandler::cleanup()
{
    {
        const Log_Capture puts_the_test_handler_back;
        handler.reset();
    }
    qDeleteAll(device_list);
    device_list.clear();
    qDeleteAll(controls);
    controls.clear();
}

Device_Desc *tst_apphandler::add_record(const QString &name, bool with_control)
{
    auto *device = new Device_Desc(nullptr, false, "");
    device->set_name(name);
    if (with_control) {
        device->control = new Virelo_Unknown(255, "", name);
        controls << device->control;
    }
    device_list << device;
    return device;
}

void tst_apphandler::it_has_one_slot()
{
    const QMetaObject &meta = AppHandler::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    QCOMPARE(meta.method(meta.methodOffset()).methodSignature(),
             QByteArray("onApplicationStateChanged(Qt::ApplicationState)"));
    QCOMPARE(handler->parent(), qApp);
}

void tst_apphandler::construction_is_logged()
{
    Log_Capture log;
    const AppHandler another(qApp);
    QCOMPARE(log.texts(), QStringList("*** void apphandler::AppHandler() constructor"));
}

void tst_apphandler::activation_pings_each_speaker_once()
{
    add_record("Kitchen", true);
    add_record("Hall", true);
    Log_Capture log;
    emit qApp->applicationStateChanged(Qt::ApplicationActive);
    for (const Virelos *control : qAsConst(controls)) {
        QCOMPARE(control->ping, 1);
        QCOMPARE(control->pending, 1);
    }
    QCOMPARE(log.texts(),
             state_log("ApplicationActive") +
                 QStringList({"\n\n\nAPP ACTIVE AGAIN!!!", "void AppHandler::pingDevice() PINGING DEVICE:",
                              "Pinging Device # 1 :  \"Kitchen\"", "Pinging Device # 2 :  \"Hall\""}));
}

void tst_apphandler::activation_skips_a_record_without_control()
{
    add_record("New", false);
    add_record("Kitchen", true);
    Log_Capture log;
    emit qApp->applicationStateChanged(Qt::ApplicationActive);
    QCOMPARE(controls.first()->ping, 1);
    QCOMPARE(controls.first()->pending, 1);
    QVERIFY(log.texts().contains("Pinging Device # 1 :  \"New\""));
    QVERIFY(log.texts().contains("Pinging Device # 2 :  \"Kitchen\""));
}

void tst_apphandler::activation_with_no_speaker_only_logs()
{
    Log_Capture log;
    emit qApp->applicationStateChanged(Qt::ApplicationActive);
    QCOMPARE(log.texts(),
             state_log("ApplicationActive") +
                 QStringList({"\n\n\nAPP ACTIVE AGAIN!!!", "void AppHandler::pingDevice() PINGING DEVICE:"}));
}

void tst_apphandler::each_activation_asks_for_one_ping_more()
{
    add_record("Kitchen", true);
    emit qApp->applicationStateChanged(Qt::ApplicationActive);
    emit qApp->applicationStateChanged(Qt::ApplicationInactive);
    emit qApp->applicationStateChanged(Qt::ApplicationActive);
    QCOMPARE(controls.first()->ping, 1); // a flag, not a counter
    QCOMPARE(controls.first()->pending, 2);
}

void tst_apphandler::other_states_ping_nobody_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QByteArray>("word");
    QTest::newRow("suspended") << int(Qt::ApplicationSuspended) << QByteArray("ApplicationSuspended");
    QTest::newRow("hidden") << int(Qt::ApplicationHidden) << QByteArray("ApplicationHidden");
    QTest::newRow("inactive") << int(Qt::ApplicationInactive) << QByteArray("ApplicationInactive");
}

void tst_apphandler::other_states_ping_nobody()
{
    QFETCH(int, state);
    QFETCH(QByteArray, word);
    add_record("Kitchen", true);
    Log_Capture log;
    emit qApp->applicationStateChanged(Qt::ApplicationState(state));
    QCOMPARE(controls.first()->ping, 0);
    QCOMPARE(controls.first()->pending, 0);
    QCOMPARE(log.texts(), state_log(word));
}

void tst_apphandler::ping_is_left_to_the_worker()
{
    class Worker : public Virelo_Unknown
    {
    public:
        Worker()
            : Virelo_Unknown(255, "", "Kitchen")
        {
        }
        void run() override
        {
            QMutexLocker lock(&wake_mutex);
            while (pending == 0)
                wake_condition.wait(&wake_mutex);
            seen = ping;
        }
        int seen = 0;
    };
    auto *worker = new Worker;
    controls << worker;
    add_record("Kitchen", false)->control = worker;
    worker->start();
    handler->pingDevice();
    QVERIFY(worker->wait());
    QCOMPARE(worker->seen, 1);
}

void tst_apphandler::destructor_removes_the_message_handler()
{
    Log_Capture log;
    const QtMessageHandler capturing = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(capturing);
    QVERIFY(!is_default_handler(capturing));
    log.clear();
    handler.reset();
    const QtMessageHandler left = qInstallMessageHandler(capturing);
    QVERIFY(is_default_handler(left));
    QCOMPARE(log.texts(), QStringList("~AppHandler Destructor called"));
}

QTEST_MAIN(tst_apphandler)
#include "tst_apphandler.moc"
