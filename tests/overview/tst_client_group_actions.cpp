// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMovie>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTreeWidget>
#include <memory>

#include "app/globals.h"
#include "overview/client_group.h"
#include "overview/client_overview.h"
#include "simulator/loopback.h"
#include "simulator/virtual_speaker.h"
#include "tests/overview/modal_user.h"
#include "tests/overview/overview_shows.h"
#include "tests/overview/overview_world.h"
#include "tests/overview/paint_log.h"

namespace
{
const QString sender_path = "/api/v19/songcast/sender.action";
const QString receiver_path = "/api/v19/songcast/receiver.action";
const QString disable = sender_path + R"( {"action": "disable"})";
const QString unlink_body = receiver_path + R"( {"action": "unlink" })";

// Each request that was posted, in order, as "NAME PATH BODY".
QStringList posted(const Log_Capture &log)
{
    static const QRegularExpression line(
        R"re(^Device_Desc\( "(.*)" \)::_request\( "(?:http://[^/]*)?(.*)" , "(.*)" \) # \d+  started\.\.\.$)re");
    QStringList requests;
    for (const QString &text : log.debug_lines()) {
        const QRegularExpressionMatch match = line.match(text);
        if (match.hasMatch())
            requests << match.captured(1) + " " + match.captured(2) + " " +
                            match.captured(3).replace("\\\"", "\"").replace("\\\\", "\\");
    }
    return requests;
}

QStringList bodies(const Virtual_Speaker &speaker)
{
    QStringList result;
    for (const Http_Request &request : speaker.http_requests())
        result << request.path + QString(" ") + request.body;
    return result;
}

QList<bool> overview_buttons()
{
    return {overview->update_button->isEnabled(), overview->group_button->isEnabled(),
            overview->wifi_button->isEnabled()};
}
} // namespace

// Creating, joining, leaving and dissolving, with three virtual speakers.
class tst_client_group_actions : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void the_name_box_is_as_announced();
    void creating_makes_the_record_the_master_at_once();
    void create_takes_the_name_that_is_proposed();
    void cancelling_the_name_box_changes_nothing();
    void an_empty_name_changes_nothing();
    void a_name_with_quotes_goes_out_as_typed();
    void creating_enables_adding_even_without_a_selection();
    void adding_links_and_adjusts_the_record_at_once();
    void adding_before_the_reply_links_to_an_empty_uuid();
    void removing_unlinks_and_leaves_the_sender_noted();
    void removing_with_nothing_selected_does_nothing();
    void each_action_paints_at_once_what_it_changed();
    void creating_paints_the_enabled_button_at_once();
    void an_item_without_record_only_swaps_the_buttons();
    void adding_after_another_dialog_dissolved_does_nothing();
    void dissolving_asks_the_master_twice_and_each_member_once();
    void dissolving_is_logged_in_order();
    void dissolving_shows_the_busy_label_and_closes();
    void a_failed_request_reaches_nobody();
    void dissolve_completed_tells_and_closes();
    void speakers_and_records_agree_after_each_step();

private:
    struct Member {
        std::unique_ptr<Virtual_Speaker> speaker;
        Device_Desc *record;
    };
    Member make_member(const QString &name, int number);
    void create_group(const QString &name = "Party");
    void select(const QString &name);
    QString status_of(const QString &name) const;
    QList<bool> button_states() const; // add, remove
    void make_group_of(const Member &master);

    std::unique_ptr<Overview_World> world;
    Member kitchen, hall, bath;
    std::unique_ptr<Client_Group> dialog;
};

void tst_client_group_actions::init()
{
    world = std::make_unique<Overview_World>();
    world->open();
    kitchen = make_member("Kitchen", 1);
    hall = make_member("Hall", 2);
    bath = make_member("Bath", 3);
    overview->update_tree_widget();
    for (QPushButton *button : {overview->update_button, overview->group_button, overview->wifi_button})
        button->setEnabled(true);
    dialog = std::make_unique<Client_Group>(kitchen.record, nullptr);
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    world->log.clear();
}

void tst_client_group_actions::cleanup()
{
    QTRY_COMPARE(in_flight(), 0);
    dialog.reset();
    world.reset();
    kitchen.speaker.reset();
    hall.speaker.reset();
    bath.speaker.reset();
}

tst_client_group_actions::Member tst_client_group_actions::make_member(const QString &name, int number)
{
    Speaker_Config config;
    config.name = name;
    config.address = own_loopback(number);
    config.sender_uuid = "uuid-" + name;
    auto speaker = std::make_unique<Virtual_Speaker>(config);
    if (!speaker->start())
        qFatal("%s", qPrintable(speaker->error()));
    Device_Desc *record = world->add_record(name, nullptr);
    record->set_ip(speaker->address());
    record->set_port(speaker->http_port());
    return {std::move(speaker), record};
}

// With the mouse and the keyboard, until the speaker's reply is in.
void tst_client_group_actions::create_group(const QString &name)
{
    Modal_User<QInputDialog> user([name](QInputDialog *box) { type_name(box, name); });
    QTest::mouseClick(dialog->dissolve_button, Qt::LeftButton);
    QVERIFY(user.met);
    QTRY_COMPARE(in_flight(), 0);
}

void tst_client_group_actions::select(const QString &name)
{
    QTreeWidgetItem *item = dialog->tree->findItems(name, Qt::MatchExactly).value(0);
    QVERIFY(item);
    QTest::mouseClick(dialog->tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                      dialog->tree->visualItemRect(item).center());
}

QString tst_client_group_actions::status_of(const QString &name) const
{
    return dialog->tree->findItems(name, Qt::MatchExactly).first()->text(1);
}

QList<bool> tst_client_group_actions::button_states() const
{
    return {dialog->add_button->isEnabled(), dialog->remove_button->isEnabled()};
}

void tst_client_group_actions::make_group_of(const Member &master)
{
    master.record->uuid = "u-1";
    master.record->groupname = "Party";
    master.record->sender_enabled = true;
    sender_device = master.record;
    dialog = std::make_unique<Client_Group>(master.record, nullptr);
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    world->log.clear();
}

void tst_client_group_actions::the_name_box_is_as_announced()
{
    QStringList seen;
    Modal_User<QInputDialog> user([&seen](QInputDialog *box) {
        seen = QStringList{box->windowTitle(), box->labelText(), box->textValue()};
        QTest::keyClick(box, Qt::Key_Escape);
    });
    QTest::mouseClick(dialog->dissolve_button, Qt::LeftButton);
    QCOMPARE(seen, (QStringList{"Create Group", "Group name:", "VIRELO Group"}));
}

void tst_client_group_actions::creating_makes_the_record_the_master_at_once()
{
    kitchen.speaker->clear_record();
    Modal_User<QInputDialog> user([](QInputDialog *box) { type_name(box, "Party"); });
    QTest::mouseClick(dialog->dissolve_button, Qt::LeftButton);
    // The reply cannot have been handled: no event ran since.
    QCOMPARE(sender_device, kitchen.record);
    QCOMPARE(kitchen.record->groupname, QString("Party"));
    QVERIFY(kitchen.record->uuid.isEmpty());
    QCOMPARE(dialog->group_label->text(), QString("Party"));
    QCOMPARE(dialog->master_label->text(), QString("Kitchen"));
    QCOMPARE(dialog->dissolve_button->text(), QString("Dissolve Group"));
    QVERIFY(!dialog->hint_label->isVisible());
    QVERIFY(dialog->isVisible());
    QCOMPARE(button_states(), (QList<bool>{true, false}));

    QTRY_COMPARE(in_flight(), 0);
    QCOMPARE(bodies(*kitchen.speaker),
             QStringList{sender_path + R"( {"action": "enable", "groupname": "Party", "mode": 0 })"});
    QCOMPARE(kitchen.record->uuid, QString("uuid-Kitchen"));
    QVERIFY(kitchen.record->sender_enabled);
    QVERIFY(kitchen.speaker->config().sender_enabled);
    QCOMPARE(kitchen.speaker->config().groupname, QString("Party"));
    QCOMPARE(overview_buttons(), (QList<bool>{true, true, true})); // left alone by that
}

void tst_client_group_actions::create_takes_the_name_that_is_proposed()
{
    Modal_User<QInputDialog> user(
        [](QInputDialog *box) { QTest::keyClick(box->findChild<QLineEdit *>(), Qt::Key_Return); });
    QTest::mouseClick(dialog->dissolve_button, Qt::LeftButton);
    QCOMPARE(dialog->group_label->text(), QString("VIRELO Group"));
    QCOMPARE(kitchen.record->groupname, QString("VIRELO Group"));
}

void tst_client_group_actions::cancelling_the_name_box_changes_nothing()
{
    Modal_User<QInputDialog> user([](QInputDialog *box) {
        QTest::keyClicks(box->findChild<QLineEdit *>(), "Party");
        QTest::keyClick(box, Qt::Key_Escape);
    });
    QTest::mouseClick(dialog->dissolve_button, Qt::LeftButton);
    QVERIFY(user.met);
    QVERIFY(!sender_device);
    QCOMPARE(posted(world->log), QStringList());
    QCOMPARE(dialog->group_label->text(), QString("-"));
    QCOMPARE(dialog->dissolve_button->text(), QString("Create Group"));
    QVERIFY(dialog->hint_label->isVisible());
    QCOMPARE(button_states(), (QList<bool>{false, false}));
}

void tst_client_group_actions::an_empty_name_changes_nothing()
{
    create_group("");
    QVERIFY(!sender_device);
    QCOMPARE(posted(world->log), QStringList());
    QCOMPARE(dialog->group_label->text(), QString("-"));
    QVERIFY(dialog->hint_label->isVisible());
    QCOMPARE(button_states(), (QList<bool>{false, false}));
}

void tst_client_group_actions::a_name_with_quotes_goes_out_as_typed()
{
    create_group("The \"Loud\" one");
    QCOMPARE(
        bodies(*kitchen.speaker),
        QStringList{sender_path + R"( {"action": "enable", "groupname": "The "Loud" one", "mode": 0 })"});
    QVERIFY(!kitchen.speaker->http_requests().first().json_ok); // the speaker refuses it, and nobody is told
    QCOMPARE(sender_device, kitchen.record);
    QCOMPARE(dialog->group_label->text(), QString("The \"Loud\" one"));
    QVERIFY(kitchen.record->uuid.isEmpty());
}

void tst_client_group_actions::creating_enables_adding_even_without_a_selection()
{
    create_group();
    world->log.clear();
    QCOMPARE(button_states(), (QList<bool>{true, false}));
    QTest::mouseClick(dialog->add_button, Qt::LeftButton);
    QCOMPARE(posted(world->log), QStringList());
    QCOMPARE(button_states(), (QList<bool>{true, false}));
}

void tst_client_group_actions::adding_links_and_adjusts_the_record_at_once()
{
    create_group();
    select("Hall");
    world->log.clear();
    QTest::mouseClick(dialog->add_button, Qt::LeftButton);
    QCOMPARE(hall.record->receiver_state, 1);
    QCOMPARE(hall.record->receiver_sender, QString("uuid-Kitchen"));
    QCOMPARE(status_of("Hall"), QString("Group member"));
    QCOMPARE(status_of("Bath"), QString("Available"));
    QCOMPARE(button_states(), (QList<bool>{false, true}));
    QCOMPARE(posted(world->log),
             QStringList{"Hall " + receiver_path + R"( {"action": "link", "uuid": "uuid-Kitchen"})"});

    // The overview shows it without a new scan.
    QCOMPARE(row_names(), (QStringList{"Party", "Bath"}));
    QCOMPARE(overview_buttons(), (QList<bool>{false, false, false}));
    QTRY_COMPARE(in_flight(), 0);
    QCOMPARE(hall.speaker->config().receiver_sender, QString("uuid-Kitchen"));
    QCOMPARE(bodies(*bath.speaker), QStringList());
}

void tst_client_group_actions::adding_before_the_reply_links_to_an_empty_uuid()
{
    select("Hall");
    Modal_User<QInputDialog> user([](QInputDialog *box) { type_name(box, "Party"); });
    QTest::mouseClick(dialog->dissolve_button, Qt::LeftButton);
    QMetaObject::invokeMethod(dialog.get(), "AddClicked"); // no event between
    QCOMPARE(posted(world->log).last(), "Hall " + receiver_path + R"( {"action": "link", "uuid": ""})");
    QCOMPARE(hall.record->receiver_state, 1);
    QCOMPARE(hall.record->receiver_sender, QString(""));
    QTRY_COMPARE(kitchen.record->uuid, QString("uuid-Kitchen"));
}

void tst_client_group_actions::removing_unlinks_and_leaves_the_sender_noted()
{
    hall.record->receiver_state = 2;
    hall.record->receiver_sender = "u-1";
    make_group_of(kitchen);
    select("Hall");
    world->log.clear();
    QTest::mouseClick(dialog->remove_button, Qt::LeftButton);
    QCOMPARE(hall.record->receiver_state, 0);
    QCOMPARE(hall.record->receiver_sender, QString("u-1"));
    QCOMPARE(status_of("Hall"), QString("Available"));
    QCOMPARE(button_states(), (QList<bool>{true, false}));
    QCOMPARE(posted(world->log), QStringList{"Hall " + unlink_body});
    QCOMPARE(overview_buttons(), (QList<bool>{false, false, false}));
    QCOMPARE(row_names(), (QStringList{"Party", "Hall", "Bath"}));
    QVERIFY(dialog->isVisible());
}

void tst_client_group_actions::removing_with_nothing_selected_does_nothing()
{
    make_group_of(kitchen);
    QVERIFY(QMetaObject::invokeMethod(dialog.get(), "RemoveClicked"));
    QCOMPARE(posted(world->log), QStringList());
    QCOMPARE(button_states(), (QList<bool>{false, false}));
    QCOMPARE(overview_buttons(), (QList<bool>{true, true, true}));
}

void tst_client_group_actions::each_action_paints_at_once_what_it_changed()
{
    make_group_of(kitchen);
    select("Hall");
    const QList<QWidget *> changed = {dialog->tree, dialog->add_button, dialog->remove_button};
    for (const char *action : {"AddClicked", "RemoveClicked"}) {
        QCoreApplication::processEvents();
        Paint_Log log(changed);
        QVERIFY(QMetaObject::invokeMethod(dialog.get(), action)); // no event between
        for (QWidget *widget : changed)
            QVERIFY2(log.painted.contains(widget), action);
    }
}

void tst_client_group_actions::creating_paints_the_enabled_button_at_once()
{
    class Paint_Watch : public QObject
    {
    public:
        bool eventFilter(QObject *button, QEvent *event) override
        {
            painted =
                painted || (event->type() == QEvent::Paint && static_cast<QWidget *>(button)->isEnabled());
            return false;
        }
        bool painted = false;
    };
    Paint_Watch watch;
    dialog->add_button->installEventFilter(&watch);
    Modal_User<QInputDialog> user([](QInputDialog *box) { type_name(box, "Party"); });
    QVERIFY(QMetaObject::invokeMethod(dialog.get(), "DissolveClicked"));
    QVERIFY(watch.painted);
}

void tst_client_group_actions::an_item_without_record_only_swaps_the_buttons()
{
    make_group_of(kitchen);
    auto *item = new QTreeWidgetItem({"Nobody", "Available"});
    dialog->tree->addTopLevelItem(item);
    select("Nobody");
    QCOMPARE(button_states(), (QList<bool>{false, false})); // nothing to tell them by
    world->log.clear();
    dialog->add_button->setEnabled(true);
    QTest::mouseClick(dialog->add_button, Qt::LeftButton);
    QCOMPARE(button_states(), (QList<bool>{false, true}));
    QTest::mouseClick(dialog->remove_button, Qt::LeftButton);
    QCOMPARE(button_states(), (QList<bool>{true, false}));
    QCOMPARE(item->text(1), QString("Available"));
    QCOMPARE(posted(world->log), QStringList());
}

void tst_client_group_actions::adding_after_another_dialog_dissolved_does_nothing()
{
    make_group_of(kitchen);
    select("Hall");
    Client_Group other(kitchen.record, nullptr);
    QTest::mouseClick(other.dissolve_button, Qt::LeftButton);
    QVERIFY(!sender_device);
    world->log.clear();
    QTest::mouseClick(dialog->add_button, Qt::LeftButton);
    QCOMPARE(posted(world->log), QStringList());
    QCOMPARE(hall.record->receiver_state, 0);
}

void tst_client_group_actions::dissolving_asks_the_master_twice_and_each_member_once()
{
    // The master is a receiver too, and not the first in the list; one speaker belongs to somebody else.
    kitchen.record->receiver_state = 1;
    kitchen.record->receiver_sender = "u-1";
    hall.record->receiver_state = 1;
    hall.record->receiver_sender = "u-other";
    bath.record->receiver_state = 2;
    bath.record->receiver_sender = "somewhere";
    make_group_of(bath);
    QTest::mouseClick(dialog->dissolve_button, Qt::LeftButton);
    QCOMPARE(posted(world->log),
             (QStringList{"Kitchen " + unlink_body, "Bath " + disable, "Bath " + unlink_body}));
    QVERIFY(!sender_device);
    QVERIFY(!bath.record->sender_enabled);
    QCOMPARE(bath.record->receiver_state, 0);
    QCOMPARE(kitchen.record->receiver_state, 0);
    QCOMPARE(kitchen.record->receiver_sender, QString("u-1"));
    QCOMPARE(hall.record->receiver_state, 1);
    QCOMPARE(overview_buttons(), (QList<bool>{false, false, false}));
    QCOMPARE(row_names(), (QStringList{"Kitchen", "Hall", "Bath"}));
}

void tst_client_group_actions::dissolving_is_logged_in_order()
{
    hall.record->receiver_state = 1;
    hall.record->receiver_sender = "u-1";
    make_group_of(kitchen);
    QTest::mouseClick(dialog->dissolve_button, Qt::LeftButton);
    const QStringList lines = world->log.debug_lines();
    const int start = lines.indexOf("Client_Group::DissolveClicked() DISSOLVE GROUP");
    const int master = lines.indexOf("disable group master \"Kitchen\" ...");
    const int member = lines.indexOf("disable receiver \"Hall\" ...");
    QVERIFY(start >= 0);
    QVERIFY(master > start);
    QVERIFY(member > master);
    QVERIFY(lines.filter("Bath").filter("disable").isEmpty());
}

void tst_client_group_actions::dissolving_shows_the_busy_label_and_closes()
{
    class Show_Watch : public QObject
    {
    public:
        bool eventFilter(QObject *, QEvent *event) override
        {
            shown = shown || event->type() == QEvent::Show;
            return false;
        }
        bool shown = false;
    };
    make_group_of(kitchen);
    Show_Watch watch;
    dialog->busy_label->installEventFilter(&watch);
    QTest::mouseClick(dialog->dissolve_button, Qt::LeftButton);
    QVERIFY(watch.shown);
    QVERIFY(!dialog->isVisible());
    QCOMPARE(dialog->busy_label->movie()->state(), QMovie::Paused); // it wakes nobody any more
}

void tst_client_group_actions::a_failed_request_reaches_nobody()
{
    create_group();
    hall.speaker->stop();
    select("Hall");
    QTest::mouseClick(dialog->add_button, Qt::LeftButton);
    QTRY_COMPARE(in_flight(), 0);
    QCOMPARE(hall.record->receiver_state, 1); // until the next scan brings the truth
    QCOMPARE(status_of("Hall"), QString("Group member"));
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_client_group_actions::dissolve_completed_tells_and_closes()
{
    QStringList seen;
    Modal_User<QMessageBox> user([&seen](QMessageBox *box) {
        seen = QStringList{box->windowTitle(), box->text()};
        for (const QAbstractButton *button : box->buttons())
            seen << button->text();
        QCOMPARE(box->icon(), QMessageBox::Information);
        QTest::mouseClick(box->buttons().first(), Qt::LeftButton);
    });
    QVERIFY(QMetaObject::invokeMethod(dialog.get(), "dissolve_completed"));
    QCOMPARE(seen, (QStringList{"Info", "Group dissolved", "OK"}));
    QVERIFY(!dialog->isVisible());
}

void tst_client_group_actions::speakers_and_records_agree_after_each_step()
{
    const auto agree = [this] {
        for (const Member *member : {&kitchen, &hall, &bath}) {
            const Speaker_Config config = member->speaker->config();
            if (config.sender_enabled != member->record->sender_enabled ||
                config.receiver_state != member->record->receiver_state)
                return false;
        }
        return in_flight() == 0;
    };
    create_group();
    QTRY_VERIFY(agree());
    for (const char *name : {"Hall", "Bath"}) {
        select(name);
        QTest::mouseClick(dialog->add_button, Qt::LeftButton);
        QTRY_VERIFY(agree());
    }
    QCOMPARE(bath.speaker->config().receiver_sender, QString("uuid-Kitchen"));
    QCOMPARE(row_names(), QStringList{"Party"});
    select("Hall");
    QTest::mouseClick(dialog->remove_button, Qt::LeftButton);
    QTRY_VERIFY(agree());
    QCOMPARE(hall.speaker->config().receiver_state, 0);
    QTest::mouseClick(dialog->dissolve_button, Qt::LeftButton);
    QTRY_VERIFY(agree());
    QVERIFY(!kitchen.speaker->config().sender_enabled);
    QCOMPARE(bath.speaker->config().receiver_state, 0);
    for (const Member *member : {&kitchen, &hall, &bath}) {
        for (const Http_Request &request : member->speaker->http_requests())
            QVERIFY2(request.json_ok, request.body.constData());
    }
}

QTEST_MAIN(tst_client_group_actions)
#include "tst_client_group_actions.moc"
