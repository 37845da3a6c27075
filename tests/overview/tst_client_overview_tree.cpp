// SPDX-License-Identifier: MIT
#include <QLabel>
#include <QTest>
#include <QTranslator>
#include <QTreeWidget>
#include <memory>

#include "app/globals.h"
#include "control/virelos.h"
#include "device/speaker_types.h"
#include "overview/client_overview.h"
#include "tests/overview/overview_shows.h"
#include "tests/overview/overview_world.h"

namespace
{
enum { picture, name, status, model };

QImage picture_of(const QTreeWidgetItem *item)
{
    return item->icon(picture).pixmap(54, 100).toImage().convertToFormat(QImage::Format_ARGB32);
}

Device_Desc *record_of(const QTreeWidgetItem *item)
{
    return item->data(picture, Qt::UserRole).value<Device_Desc *>();
}

QStringList texts_of(const QTreeWidgetItem *item)
{
    return {item->text(picture), item->text(name), item->text(status), item->text(model)};
}

QStringList names_below(const QTreeWidgetItem *parent)
{
    QStringList names;
    for (int i = 0; i < parent->childCount(); ++i)
        names << parent->child(i)->text(name);
    return names;
}

} // namespace

// The rows.
class tst_client_overview_tree : public QObject
{
    Q_OBJECT

private slots:
    void picture_follows_the_type_data();
    void picture_follows_the_type();
    void pictures_can_be_told_apart();
    void a_picture_is_read_once_for_all_rows_and_redraws();
    void row_shows_name_and_model_and_keeps_its_record();
    void status_is_the_first_that_applies_data();
    void status_is_the_first_that_applies();
    void group_name_in_a_status_is_always_that_of_the_master();
    void status_is_german_in_german();
    void record_without_control_has_no_picture_and_the_fallback_model();

    void redraw_clears_the_search_and_hides_the_busy_sign();
    void rows_keep_the_order_of_the_list();
    void redraw_draws_each_record_anew();
    void redraw_numbers_the_records_in_the_log();
    void group_row_holds_its_members();
    void unlinked_receiver_is_no_member_whatever_its_sender();
    void group_row_comes_first_and_has_a_record_of_its_own();
    void each_redraw_makes_another_group_record();
    void rows_in_a_group_view_are_not_editable();
    void redraw_expands_the_group();
    void group_row_is_german_in_german();
};

void tst_client_overview_tree::picture_follows_the_type_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("path");
    const QString none;
    const QList<QPair<int, QString>> rows{{13, ":/GRAFX/vc3.jpg"},
                                          {37, ":/GRAFX/vc3.jpg"},
                                          {14, ":/GRAFX/vc5.jpg"},
                                          {38, ":/GRAFX/vc5.jpg"},
                                          {15, ":/GRAFX/vc7.jpg"},
                                          {39, ":/GRAFX/vc7.jpg"},
                                          {16, ":/GRAFX/vc8.jpg"},
                                          {40, ":/GRAFX/vc8.jpg"},
                                          {17, ":/GRAFX/vc9.jpg"},
                                          {41, ":/GRAFX/vc9.jpg"},
                                          {18, ":/GRAFX/vs12.jpg"},
                                          {42, ":/GRAFX/vs12.jpg"},
                                          {0, none},
                                          {12, none},
                                          {19, none},
                                          {22, none},
                                          {36, none},
                                          {43, none},
                                          {44, none},
                                          {255, none}};
    for (const auto &[type, path] : rows)
        QTest::addRow("%d", type) << type << path;
}

void tst_client_overview_tree::picture_follows_the_type()
{
    QFETCH(int, type);
    QFETCH(QString, path);
    Overview_World world;
    world.open();
    const std::unique_ptr<QTreeWidgetItem> item(
        overview->_make_tree_item(world.add_record("Kitchen", control_of_type(type))));
    QCOMPARE(item->icon(picture).isNull(), path.isEmpty());
    if (path.isEmpty())
        return;
    const QImage expected(path);
    QCOMPARE(expected.size(), QSize(54, 100));
    QCOMPARE(picture_of(item.get()), expected.convertToFormat(QImage::Format_ARGB32));
}

void tst_client_overview_tree::pictures_can_be_told_apart()
{
    QList<QImage> seen;
    for (const char *name : {"vc3", "vc5", "vc7", "vc8", "vc9", "vs12"}) {
        const QImage image(QString(":/GRAFX/%1.jpg").arg(name));
        QVERIFY2(!image.isNull() && !seen.contains(image), name);
        seen << image;
    }
}

void tst_client_overview_tree::a_picture_is_read_once_for_all_rows_and_redraws()
{
    Overview_World world;
    world.open();
    world.add_record("Kitchen", control_of_type(13));
    world.add_record("Bath", control_of_type(37));
    overview->update_tree_widget();
    const auto key = [](int row) { return overview->tree->topLevelItem(row)->icon(picture).cacheKey(); };
    const qint64 first = key(0);
    QCOMPARE(key(1), first);
    overview->update_tree_widget();
    QCOMPARE(key(0), first);
    QCOMPARE(key(1), first);
}

void tst_client_overview_tree::row_shows_name_and_model_and_keeps_its_record()
{
    Overview_World world;
    world.open();
    for (const int type : {13, 18, 22, 42, 44, 99, 255}) {
        Device_Desc *device = world.add_record("Kitchen", control_of_type(type));
        device->ssid = "Home";
        const std::unique_ptr<QTreeWidgetItem> item(overview->_make_tree_item(device));
        QCOMPARE(texts_of(item.get()), QStringList({"", "Kitchen", "in Home", model_name(type)}));
        QCOMPARE(record_of(item.get()), device);
        QCOMPARE(device->tree_row, item.get());
    }
}

void tst_client_overview_tree::status_is_the_first_that_applies_data()
{
    QTest::addColumn<bool>("sender_enabled");
    QTest::addColumn<int>("receiver_state");
    QTest::addColumn<QString>("wlan_mode");
    QTest::addColumn<bool>("cell_master");
    QTest::addColumn<bool>("group_exists");
    QTest::addColumn<QString>("text");
    const QString master = "is group Master of \"Party\"";
    const QString member = "is a Member of \"Party\"";

    QTest::newRow("master before all") << true << 1 << "AP" << true << true << master;
    QTest::newRow("master") << true << 0 << "STA" << false << true << master;
    QTest::newRow("member before AP") << false << 1 << "AP" << true << true << member;
    QTest::newRow("playing member") << false << 2 << "STA" << false << true << member;
    QTest::newRow("odd receiver state") << false << -1 << "STA" << false << true << member;
    QTest::newRow("no group, AP") << true << 1 << "AP" << true << false << "Access-Point";
    QTest::newRow("AP before cell") << false << 0 << "AP" << true << true << "Access-Point";
    QTest::newRow("AP is case-sensitive") << false << 0 << "ap" << false << false << "in Home";
    QTest::newRow("AP is the whole word") << false << 0 << "AP2" << false << false << "in Home";
    QTest::newRow("cell master") << false << 0 << "STA" << true << true << "is Cell Master";
    QTest::newRow("no group, cell master") << true << 2 << "STA" << true << false << "is Cell Master";
    QTest::newRow("plain") << false << 0 << "STA" << false << true << "in Home";
    QTest::newRow("no group, plain") << true << 1 << "" << false << false << "in Home";
}

void tst_client_overview_tree::status_is_the_first_that_applies()
{
    QFETCH(bool, sender_enabled);
    QFETCH(int, receiver_state);
    QFETCH(QString, wlan_mode);
    QFETCH(bool, cell_master);
    QFETCH(bool, group_exists);
    QFETCH(QString, text);
    Overview_World world;
    world.open();
    Device_Desc *master = world.add_record("Hall", control_of_type(13));
    master->groupname = "Party";
    sender_device = group_exists ? master : nullptr;
    Device_Desc *device = world.add_record("Kitchen", control_of_type(14));
    device->sender_enabled = sender_enabled;
    device->receiver_state = receiver_state;
    device->wlan_mode = wlan_mode;
    device->cell_master = cell_master;
    device->ssid = "Home";
    const std::unique_ptr<QTreeWidgetItem> item(overview->_make_tree_item(device));
    QCOMPARE(item->text(status), text);
}

void tst_client_overview_tree::group_name_in_a_status_is_always_that_of_the_master()
{
    Overview_World world;
    world.open();
    sender_device = world.add_record("Hall", control_of_type(13));
    sender_device->groupname = "Party";
    sender_device->uuid = "party-uuid";
    Device_Desc *device = world.add_record("Kitchen", control_of_type(14));
    device->groupname = "Dinner";
    device->receiver_state = 1;
    device->receiver_sender = "dinner-uuid";
    const std::unique_ptr<QTreeWidgetItem> item(overview->_make_tree_item(device));
    QCOMPARE(item->text(status), QString("is a Member of \"Party\""));
}

void tst_client_overview_tree::status_is_german_in_german()
{
    QTranslator german;
    QVERIFY(german.load("VIRELO_de_DE", ":/translations/"));
    QCoreApplication::installTranslator(&german);
    const auto translated = [&](const char *source) { return german.translate("Client_Overview", source); };
    Overview_World world;
    world.open();
    Device_Desc *device = world.add_record("Kitchen", control_of_type(14));
    device->groupname = "Party";
    device->ssid = "Home";
    const auto shown = [&] {
        return std::unique_ptr<QTreeWidgetItem>(overview->_make_tree_item(device))->text(status);
    };

    QCOMPARE(shown(), QString("in Home")); // the catalogue lacks the word alone
    device->cell_master = true;
    QCOMPARE(shown(), translated("is Cell Master"));
    QVERIFY(shown() != "is Cell Master");
    device->wlan_mode = "AP";
    QCOMPARE(shown(), QString("Access-Point"));
    sender_device = device;
    device->receiver_state = 1;
    QCOMPARE(shown(), translated("is a Member") + " of \"Party\"");
    QVERIFY(!shown().startsWith("is a"));
    device->sender_enabled = true;
    QCOMPARE(shown(), translated("is group Master") + " of \"Party\"");
    QVERIFY(!shown().startsWith("is group"));
}

void tst_client_overview_tree::record_without_control_has_no_picture_and_the_fallback_model()
{
    Overview_World world;
    world.open();
    Device_Desc *device = world.add_record("Kitchen", nullptr);
    device->ssid = "Home";
    overview->update_tree_widget();
    const QTreeWidgetItem *item = Overview_World::row(0);
    QVERIFY(item->icon(picture).isNull());
    QCOMPARE(texts_of(item), QStringList({"", "Kitchen", "in Home", "Unknown Speaker :-("}));
    QCOMPARE(record_of(item), device);
}

void tst_client_overview_tree::redraw_clears_the_search_and_hides_the_busy_sign()
{
    Overview_World world;
    world.open_and_show();
    QVERIFY(overview->spinner_label->isVisible());
    overview->update_tree_widget();
    QCOMPARE(overview->status_label->text(), QString());
    QVERIFY(!overview->spinner_label->isVisible());
    QCOMPARE(overview->tree->topLevelItemCount(), 0);
}

void tst_client_overview_tree::rows_keep_the_order_of_the_list()
{
    Overview_World world;
    world.open();
    const QStringList names{"Zoo", "attic", "Kitchen", "Bath"};
    for (const QString &each : names)
        world.add_record(each, control_of_type(13));
    overview->update_tree_widget();
    QCOMPARE(row_names(), names);
}

void tst_client_overview_tree::redraw_draws_each_record_anew()
{
    Overview_World world;
    world.open();
    Device_Desc *device = world.add_record("Kitchen", control_of_type(13));
    overview->update_tree_widget();
    device->set_name("Cellar");
    device->control->type = 255;
    overview->update_tree_widget();
    QCOMPARE(overview->tree->topLevelItemCount(), 1);
    QCOMPARE(Overview_World::row(0)->text(name), QString("Cellar"));
    QCOMPARE(Overview_World::row(0)->text(model), QString("Unknown Speaker :-("));
    QCOMPARE(device->tree_row, Overview_World::row(0));
}

void tst_client_overview_tree::redraw_numbers_the_records_in_the_log()
{
    Overview_World world;
    world.open();
    world.add_record("Hall", control_of_type(13));
    world.add_record("Kitchen", control_of_type(14));
    const QStringList devices{"Device # 1 :  \"Hall\"", "Device # 2 :  \"Kitchen\""};

    world.log.clear();
    overview->update_tree_widget();
    QCOMPARE(world.log.texts(), QStringList({"Client_Overview::update_tree_widget()",
                                             "Client_Overview::update_tree_widget(): NO group master"}) +
                                    devices);
    sender_device = device_list.first();
    world.log.clear();
    overview->update_tree_widget();
    QStringList texts = world.log.texts();
    texts.removeAll("Name: \"\"");
    QCOMPARE(texts.first(), QString("Client_Overview::update_tree_widget()"));
    QCOMPARE(texts.mid(texts.size() - 2), devices);
    QVERIFY(!texts.contains("Client_Overview::update_tree_widget(): NO group master"));
}

void tst_client_overview_tree::group_row_holds_its_members()
{
    Overview_World world;
    world.open();
    const auto add = [&](const char *speaker, int receiver_state, const char *sender) {
        Device_Desc *device = world.add_record(speaker, control_of_type(13));
        device->receiver_state = receiver_state;
        device->receiver_sender = sender;
        return device;
    };
    add("Linked", 1, "party-uuid");
    add("Alone", 0, "");
    sender_device = add("Master", 0, "");
    sender_device->uuid = "party-uuid";
    sender_device->groupname = "Party";
    add("Elsewhere", 1, "dinner-uuid");
    add("Playing", 2, "party-uuid");

    overview->update_tree_widget();
    QCOMPARE(row_names(), QStringList({"Party", "Alone", "Elsewhere"}));
    QCOMPARE(names_below(Overview_World::row(0)), QStringList({"Linked", "Master", "Playing"}));
    QCOMPARE(device_list.first()->tree_row, Overview_World::row(0)->child(0));
}

void tst_client_overview_tree::unlinked_receiver_is_no_member_whatever_its_sender()
{
    Overview_World world;
    world.open();
    sender_device = world.add_record("Master", control_of_type(13));
    sender_device->uuid = "party-uuid";
    Device_Desc *left = world.add_record("Left", control_of_type(13));
    left->receiver_sender = "party-uuid";
    overview->update_tree_widget();
    QCOMPARE(names_below(Overview_World::row(0)), QStringList({"Master"}));
}

void tst_client_overview_tree::group_row_comes_first_and_has_a_record_of_its_own()
{
    Overview_World world;
    world.open();
    sender_device = world.add_record("Master", control_of_type(13));
    sender_device->groupname = "Party";
    overview->update_tree_widget();
    const QTreeWidgetItem *group = Overview_World::row(0);
    QCOMPARE(texts_of(group), QStringList({"", "Party", "Is your Group", ""}));
    QVERIFY(group->icon(picture).isNull());
    Device_Desc *record = record_of(group);
    QVERIFY(record->is_group);
    QCOMPARE(record->name, QString("Party"));
    QCOMPARE(record->groupname, QString("Party"));
    QCOMPARE(record->tab_index, -1);
    QVERIFY(!record->parent());
    QCOMPARE(device_list, QList<Device_Desc *>{sender_device});
}

void tst_client_overview_tree::each_redraw_makes_another_group_record()
{
    Overview_World world;
    world.open();
    sender_device = world.add_record("Master", control_of_type(13));
    overview->update_tree_widget();
    const QPointer<Device_Desc> first = record_of(Overview_World::row(0));
    overview->update_tree_widget();
    const QPointer<Device_Desc> second = record_of(Overview_World::row(0));
    QVERIFY(first); // a tab may still show it
    QVERIFY(second != first);
    QCOMPARE(second->tab_index, -1);
}

void tst_client_overview_tree::rows_in_a_group_view_are_not_editable()
{
    Overview_World world;
    world.open();
    sender_device = world.add_record("Master", control_of_type(13));
    world.add_record("Alone", control_of_type(13));
    overview->update_tree_widget();
    QVERIFY(!(Overview_World::row(0)->child(0)->flags() & Qt::ItemIsEditable));
    QVERIFY(!(Overview_World::row(1)->flags() & Qt::ItemIsEditable));
    QVERIFY(Overview_World::row(1)->flags() & Qt::ItemIsSelectable);
    QVERIFY(Overview_World::row(1)->flags() & Qt::ItemIsEnabled);
}

void tst_client_overview_tree::redraw_expands_the_group()
{
    Overview_World world;
    world.open_and_show();
    sender_device = world.add_record("Master", control_of_type(13));
    overview->update_tree_widget();
    QVERIFY(Overview_World::row(0)->isExpanded());
    QVERIFY(!overview->tree->visualItemRect(Overview_World::row(0)->child(0)).isEmpty());
}

void tst_client_overview_tree::group_row_is_german_in_german()
{
    QTranslator german;
    QVERIFY(german.load("VIRELO_de_DE", ":/translations/"));
    QCoreApplication::installTranslator(&german);
    Overview_World world;
    world.open();
    sender_device = world.add_record("Master", control_of_type(13));
    overview->update_tree_widget();
    QCOMPARE(Overview_World::row(0)->text(status), german.translate("Client_Overview", "Is your Group"));
    QVERIFY(Overview_World::row(0)->text(status) != "Is your Group");
}

QTEST_MAIN(tst_client_overview_tree)
#include "tst_client_overview_tree.moc"
