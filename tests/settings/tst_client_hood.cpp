// SPDX-License-Identifier: MIT
#include <QGridLayout>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QSettings>
#include <QtTest>
#include <memory>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "control/virelo_group.h"
#include "control/virelo_unknown.h"
#include "device/device_desc.h"
#include "device/speaker_types.h"
#include "settings/client_hood.h"
#include "settings/rzpixmaplabel.h"
#include "settings/rzslider.h"
#include "tests/fakes/log_capture.h"
#include "tests/overview/paint_log.h"
#include "tests/settings/grid_probe.h"
#include "tests/settings/marking_translator.h"
#include "tests/settings/probe_air.h"
#include "tests/settings/probe_sub.h"

namespace
{
// What another start of the program would read: from the file, since settings objects of one process share
// what is not written yet.
QString stored_debug()
{
    QFile file(settings->fileName());
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("debug="))
            return line.mid(6).trimmed();
    }
    return QString();
}
} // namespace

class tst_client_hood : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void everything_stands_in_its_place_data();
    void everything_stands_in_its_place();
    void the_banner_is_that_of_the_full_range_speakers();
    void the_slider_is_set_up_for_a_delay();
    void the_slider_starts_at_0_whatever_the_speaker_holds();
    void a_speaker_is_named();
    void other_kinds_of_control_objects_are_named_data();
    void other_kinds_of_control_objects_are_named();
    void without_a_speaker_the_label_says_so_data();
    void without_a_speaker_the_label_says_so();
    void the_delay_goes_to_the_speaker();
    void the_delay_goes_to_no_other_kind_data();
    void the_delay_goes_to_no_other_kind();
    void a_delay_above_8191_only_changes_the_label();
    void without_a_speaker_the_slider_moves_alone_data();
    void without_a_speaker_the_slider_moves_alone();
    void a_press_of_the_slider_does_nothing();
    void the_button_starts_as_the_setting_stands_data();
    void the_button_starts_as_the_setting_stands();
    void each_toggle_writes_the_setting_at_once();
    void each_toggle_is_logged();
    void each_toggle_is_painted_at_once();
    void toggling_leaves_this_run_as_it_is();
    void texts_are_translated_where_they_pass_through_the_catalogue();
    void the_restart_hint_stays_english_in_german();
    void every_control_is_connected();
    void the_slots_stand_in_order();

private:
    static void add_device_classes();
    std::unique_ptr<Device_Desc> device;
};

void tst_client_hood::initTestCase()
{
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QCoreApplication::setOrganizationName("tst_client_hood");
    QCoreApplication::setApplicationName("tst_client_hood");
    settings = new QSettings;
    plattform = new rzplattform;
}

void tst_client_hood::init()
{
    settings->clear();
    debug_enabled = false;
    plattform->device_class = DEVICE_DESKTOP;
    plattform->desktop_width = 1920;
    device = std::make_unique<Device_Desc>(nullptr, false, QString());
}

void tst_client_hood::add_device_classes()
{
    QTest::addColumn<int>("device_class");
    QTest::newRow("unset") << 0;
    QTest::newRow("phone") << DEVICE_PHONE;
    QTest::newRow("tablet") << DEVICE_TABLET;
    QTest::newRow("desktop") << DEVICE_DESKTOP;
}

void tst_client_hood::everything_stands_in_its_place_data()
{
    QTest::addColumn<int>("device_class");
    QTest::addColumn<int>("banner_columns");
    QTest::newRow("unset") << 0 << 6;
    QTest::newRow("phone") << DEVICE_PHONE << 3;
    QTest::newRow("tablet") << DEVICE_TABLET << 6;
    QTest::newRow("desktop") << DEVICE_DESKTOP << 6;
}

void tst_client_hood::everything_stands_in_its_place()
{
    QFETCH(int, device_class);
    QFETCH(int, banner_columns);
    plattform->device_class = device_class;
    Probe_Air air;
    device->control = &air;
    const Client_Hood tab(nullptr, device.get());
    QCOMPARE(tab.layout(), tab.grid);
    QLabel *banner = label_at(tab.grid, 0, 0);
    QVERIFY(qobject_cast<RZPixmapLabel *>(banner));
    QCOMPARE(place_of(tab.grid, banner), (QList<int>{0, 0, 1, banner_columns}));
    QCOMPARE(text_at(tab.grid, 1, 0), QString("Speaker:"));
    QCOMPARE(alignment_of(tab.grid, label_at(tab.grid, 1, 0)), Qt::AlignRight);
    QVERIFY(label_at(tab.grid, 1, 1));
    QCOMPARE(place_of(tab.grid, tab.debug_button), (QList<int>{2, 0, 1, 1}));
    QCOMPARE(tab.debug_button->text(), QString("DEBUG"));
    QVERIFY(tab.debug_button->isCheckable());
    QCOMPARE(place_of(tab.grid, tab.restart_label), (QList<int>{2, 1, 1, 1}));
    QCOMPARE(tab.restart_label->text(), QString("Restart App!"));
    QCOMPARE(text_at(tab.grid, 3, 0), QString("Time Delay:"));
    QCOMPARE(alignment_of(tab.grid, label_at(tab.grid, 3, 0)), Qt::AlignRight);
    QCOMPARE(place_of(tab.grid, tab.delay_slider), (QList<int>{4, 0, 1, 2}));
    QCOMPARE(place_of(tab.grid, tab.delay_label), (QList<int>{5, 0, 1, 1}));
    QCOMPARE(tab.grid->count(), 8);
    QVERIFY(!tab.control);
    QCOMPARE(tab.spare, 0);
}

void tst_client_hood::the_banner_is_that_of_the_full_range_speakers()
{
    const auto picture = [] {
        const Client_Hood tab(nullptr, nullptr);
        return qobject_cast<RZPixmapLabel *>(label_at(tab.grid, 0, 0))->source_pixmap.toImage();
    };
    QCOMPARE(picture(), QPixmap(":/GRAFX/Deko_Air_640.png").toImage());
    plattform->desktop_width = 2001;
    QCOMPARE(picture(), QPixmap(":/GRAFX/Deko_Air_2k.png").toImage());
}

void tst_client_hood::the_slider_is_set_up_for_a_delay()
{
    const Client_Hood tab(nullptr, nullptr);
    QCOMPARE(tab.delay_slider->orientation(), Qt::Horizontal);
    QCOMPARE(tab.delay_slider->minimum(), 0);
    QCOMPARE(tab.delay_slider->maximum(), 185);
    QCOMPARE(tab.delay_slider->singleStep(), 1);
    QCOMPARE(tab.delay_slider->pageStep(), 10);
    QVERIFY(tab.delay_slider->hasTracking());
    QCOMPARE(tab.delay_slider->tickInterval(), 10);
    QCOMPARE(tab.delay_slider->tickPosition(), QSlider::TicksBothSides);
}

void tst_client_hood::the_slider_starts_at_0_whatever_the_speaker_holds()
{
    Probe_Air air;
    air.time_delay = 77;
    device->control = &air;
    const Client_Hood tab(nullptr, device.get());
    QCOMPARE(tab.delay_slider->value(), 0);
    QCOMPARE(tab.delay_label->text(), QString("0 / 185 msec (125msec)"));
    QCOMPARE(air.time_delay, 77);
}

void tst_client_hood::a_speaker_is_named()
{
    Probe_Air air("Kitchen", 15);
    device->control = &air;
    const Client_Hood tab(nullptr, device.get());
    QCOMPARE(text_at(tab.grid, 1, 1), "<b>Kitchen</b> (" + model_name(15) + ")");
    QCOMPARE(tab.device, device.get());
    QCOMPARE(tab.air, &air);
}

void tst_client_hood::other_kinds_of_control_objects_are_named_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("text");
    QTest::newRow("subwoofer") << "subwoofer"
                               << "<b>Cellar</b> (" + model_name(18) + ")";
    QTest::newRow("like markup") << "like markup"
                                 << "<b>&lt;i&gt;Cellar&lt;/i&gt;</b> (" + model_name(18) + ")";
    QTest::newRow("group") << "group"
                           << "<b>Party</b> (Unknown Speaker :-()";
    QTest::newRow("unknown") << "unknown"
                             << "<b>Shed</b> (Unknown Speaker :-()";
}

// One control object of each kind that a record may hold besides a full-range speaker's.
static std::unique_ptr<Virelos> other_kind(const QString &kind)
{
    if (kind == "subwoofer")
        return std::make_unique<Probe_Sub>("Cellar");
    if (kind == "like markup")
        return std::make_unique<Probe_Sub>("<i>Cellar</i>");
    if (kind == "group")
        return std::make_unique<Virelo_Group>("Party");
    return std::make_unique<Virelo_Unknown>(255, QString(), "Shed");
}

void tst_client_hood::other_kinds_of_control_objects_are_named()
{
    QFETCH(QString, kind);
    const std::unique_ptr<Virelos> control = other_kind(kind);
    device->control = control.get();
    const Client_Hood tab(nullptr, device.get());
    QTEST(text_at(tab.grid, 1, 1), "text");
    QVERIFY(!tab.air);
}

void tst_client_hood::without_a_speaker_the_label_says_so_data()
{
    add_device_classes();
}

void tst_client_hood::without_a_speaker_the_label_says_so()
{
    QFETCH(int, device_class);
    plattform->device_class = device_class;
    const Client_Hood none(nullptr, nullptr);
    const Client_Hood unidentified(nullptr, device.get());
    for (const Client_Hood *tab : {&none, &unidentified}) {
        QLabel *label = label_at(tab->grid, 1, 1);
        QVERIFY(label);
        QCOMPARE(label->text(), QString("no speaker selected"));
        QCOMPARE(place_of(tab->grid, label), (QList<int>{1, 1, 1, 1}));
        QVERIFY(!tab->air);
        QCOMPARE(tab->grid->count(), 8);
    }
    QVERIFY(!none.device);
    QCOMPARE(unidentified.device, device.get());
}

void tst_client_hood::the_delay_goes_to_the_speaker()
{
    Probe_Air air;
    device->control = &air;
    const Client_Hood tab(nullptr, device.get());
    air.pending = 0;
    tab.delay_slider->setValue(1);
    QCOMPARE(tab.delay_label->text(), QString("1 / 185 msec"));
    QCOMPARE(air.time_delay, 1);
    QCOMPARE(air.pending, 1);
    tab.delay_slider->setValue(185);
    QCOMPARE(tab.delay_label->text(), QString("185 / 185 msec"));
    QCOMPARE(air.time_delay, 185);
    tab.delay_slider->setValue(0); // the reference does not come back
    QCOMPARE(tab.delay_label->text(), QString("0 / 185 msec"));
    QCOMPARE(air.time_delay, 0);
}

void tst_client_hood::the_delay_goes_to_no_other_kind_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"subwoofer", "group", "unknown"})
        QTest::newRow(kind) << kind;
}

void tst_client_hood::the_delay_goes_to_no_other_kind()
{
    QFETCH(QString, kind);
    const std::unique_ptr<Virelos> control = other_kind(kind);
    device->control = control.get();
    const Client_Hood tab(nullptr, device.get());
    control->pending = 0;
    tab.delay_slider->setValue(100);
    QCOMPARE(tab.delay_label->text(), QString("100 / 185 msec"));
    QCOMPARE(control->pending, 0);
    if (const auto *sub = qobject_cast<Virelo_Sub *>(control.get())) {
        QCOMPARE(sub->volume, 42);
        QCOMPARE(sub->phase, 90);
        QCOMPARE(sub->eq_gain, -6);
    }
}

void tst_client_hood::a_delay_above_8191_only_changes_the_label()
{
    Probe_Air air;
    device->control = &air;
    const Client_Hood tab(nullptr, device.get());
    tab.delay_slider->setMaximum(10000);
    tab.delay_slider->setValue(8191);
    QCOMPARE(air.time_delay, 8191);
    air.pending = 0;
    tab.delay_slider->setValue(8192);
    QCOMPARE(air.time_delay, 8191);
    QCOMPARE(air.pending, 0);
    QCOMPARE(tab.delay_label->text(), QString("8192 / 185 msec"));
}

void tst_client_hood::without_a_speaker_the_slider_moves_alone_data()
{
    QTest::addColumn<bool>("with_record");
    QTest::newRow("no record") << false;
    QTest::newRow("not identified yet") << true;
}

void tst_client_hood::without_a_speaker_the_slider_moves_alone()
{
    QFETCH(bool, with_record);
    const Client_Hood tab(nullptr, with_record ? device.get() : nullptr);
    QTest::keyClick(tab.delay_slider, Qt::Key_End);
    QCOMPARE(tab.delay_slider->value(), 185);
    QCOMPARE(tab.delay_label->text(), QString("185 / 185 msec"));
}

void tst_client_hood::a_press_of_the_slider_does_nothing()
{
    Probe_Air air;
    device->control = &air;
    Client_Hood tab(nullptr, device.get());
    air.pending = 0;
    QVERIFY(QMetaObject::invokeMethod(&tab, "sliderPressed"));
    QCOMPARE(air.pending, 0);
    QCOMPARE(tab.delay_label->text(), QString("0 / 185 msec (125msec)"));
}

void tst_client_hood::the_button_starts_as_the_setting_stands_data()
{
    QTest::addColumn<QVariant>("setting");
    QTest::addColumn<bool>("checked");
    QTest::newRow("never written") << QVariant() << false;
    QTest::newRow("off") << QVariant(false) << false;
    QTest::newRow("on") << QVariant(true) << true;
}

void tst_client_hood::the_button_starts_as_the_setting_stands()
{
    QFETCH(QVariant, setting);
    if (setting.isValid())
        settings->setValue("debug", setting);
    const Client_Hood tab(nullptr, nullptr);
    QTEST(tab.debug_button->isChecked(), "checked");
    QCOMPARE(tab.restart_label->text(), QString("Restart App!"));
    QCOMPARE(settings->value("debug"), setting); // not written by that
}

void tst_client_hood::each_toggle_writes_the_setting_at_once()
{
    const Client_Hood tab(nullptr, nullptr);
    for (const bool on : {true, false, true}) {
        QTest::mouseClick(tab.debug_button, Qt::LeftButton);
        QCOMPARE(tab.debug_button->isChecked(), on);
        QCOMPARE(stored_debug(), QString(on ? "true" : "false")); // no event ran since
        QCOMPARE(tab.restart_label->text(), QString(on ? "Debug On" : "Debug Off"));
    }
}

void tst_client_hood::each_toggle_is_logged()
{
    const Client_Hood tab(nullptr, nullptr);
    Log_Capture log;
    tab.debug_button->setChecked(true);
    tab.debug_button->setChecked(false);
    QCOMPARE(log.debug_lines(),
             (QStringList{"<< Client_Hood::debugToggled true", "<< Client_Hood::debugToggled false"}));
}

void tst_client_hood::each_toggle_is_painted_at_once()
{
    Client_Hood tab(nullptr, nullptr);
    tab.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tab));
    QCoreApplication::processEvents();
    Paint_Log log({tab.debug_button, tab.restart_label});
    QVERIFY(QMetaObject::invokeMethod(&tab, "debugToggled", Q_ARG(bool, true))); // no event between
    QVERIFY(log.painted.contains(tab.debug_button));
    QVERIFY(log.painted.contains(tab.restart_label));
}

void tst_client_hood::toggling_leaves_this_run_as_it_is()
{
    const Client_Hood tab(nullptr, nullptr);
    tab.debug_button->setChecked(true);
    QVERIFY(!debug_enabled);
}

void tst_client_hood::texts_are_translated_where_they_pass_through_the_catalogue()
{
    Marking_Translator translator("Client_Hood");
    QCoreApplication::installTranslator(&translator);
    const Client_Hood tab(nullptr, nullptr);
    QCOMPARE(text_at(tab.grid, 1, 0), QString("#Speaker:"));
    QCOMPARE(text_at(tab.grid, 1, 1), QString("no speaker selected"));
    QCOMPARE(tab.debug_button->text(), QString("#DEBUG"));
    QCOMPARE(text_at(tab.grid, 3, 0), QString("#Time Delay:"));
    QCOMPARE(tab.delay_label->text(), QString("0 / 185 msec (125msec)"));
    QCOMPARE(tab.restart_label->text(), QString("#Restart App!"));
    tab.debug_button->setChecked(true);
    QCOMPARE(tab.restart_label->text(), QString("Debug On"));
    tab.delay_slider->setValue(3);
    QCOMPARE(tab.delay_label->text(), QString("3 / 185 msec"));
}

void tst_client_hood::the_restart_hint_stays_english_in_german()
{
    QTranslator german;
    QVERIFY(german.load("VIRELO_de_DE", ":/translations/"));
    QCoreApplication::installTranslator(&german);
    const Client_Hood tab(nullptr, nullptr);
    QCOMPARE(tab.restart_label->text(), QString("Restart App!"));
    QVERIFY(text_at(tab.grid, 1, 0) != "Speaker:");
}

void tst_client_hood::every_control_is_connected()
{
    Client_Hood tab(nullptr, nullptr);
    QVERIFY(disconnect(tab.delay_slider, SIGNAL(valueChanged(int)), &tab, SLOT(sliderValueChanged(int))));
    QVERIFY(disconnect(tab.delay_slider, SIGNAL(sliderPressed()), &tab, SLOT(sliderPressed())));
    QVERIFY(disconnect(tab.debug_button, SIGNAL(toggled(bool)), &tab, SLOT(debugToggled(bool))));
}

void tst_client_hood::the_slots_stand_in_order()
{
    const QMetaObject &meta = Client_Hood::staticMetaObject;
    QStringList slot_names;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        QCOMPARE(meta.method(index).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(index).access(), QMetaMethod::Private);
        slot_names.append(meta.method(index).methodSignature());
    }
    QCOMPARE(slot_names, (QStringList{"sliderValueChanged(int)", "sliderPressed()", "debugToggled(bool)"}));
}

QTEST_MAIN(tst_client_hood)
#include "tst_client_hood.moc"
