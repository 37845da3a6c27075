// SPDX-License-Identifier: MIT
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QMetaMethod>
#include <QMovie>
#include <QPushButton>
#include <QTest>
#include <QTranslator>
#include <QTreeWidget>
#include <memory>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "overview/client_group.h"
#include "overview/client_overview.h"
#include "settings/rzpixmaplabel.h"
#include "tests/overview/modal_user.h"
#include "tests/overview/overview_shows.h"
#include "tests/overview/overview_world.h"
#include "tests/settings/marking_translator.h"

namespace
{
// Name and status of each row.
QStringList rows_of(const Client_Group &dialog)
{
    QStringList rows;
    for (int i = 0; i < dialog.tree->topLevelItemCount(); ++i)
        rows << dialog.tree->topLevelItem(i)->text(0) + ": " + dialog.tree->topLevelItem(i)->text(1);
    return rows;
}

QString selected_row(const Client_Group &dialog)
{
    const QList<QTreeWidgetItem *> items = dialog.tree->selectedItems();
    return items.isEmpty() ? QString() : items.first()->text(0);
}

// Enabled state of the add and the remove button.
QList<bool> button_states(const Client_Group &dialog)
{
    return {dialog.add_button->isEnabled(), dialog.remove_button->isEnabled()};
}

void click(const Client_Group &dialog, int row)
{
    QTest::mouseClick(dialog.tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                      dialog.tree->visualItemRect(dialog.tree->topLevelItem(row)).center());
}
} // namespace

// How the dialog starts, and what a click on a row does. Its three actions are told in
// tst_client_group_actions.
class tst_client_group : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void without_a_group_it_offers_to_create_one();
    void what_looks_like_markup_stands_as_it_is();
    void for_the_master_it_lists_the_others();
    void for_a_member_its_row_comes_up_selected();
    void for_another_speaker_its_row_comes_up_selected();
    void for_the_groups_own_row_nothing_is_selected();
    void a_row_is_selected_by_name_not_by_record();
    void without_other_speakers_the_tree_is_empty();
    void a_status_tells_members_from_others_data();
    void a_status_tells_members_from_others();
    void rows_stand_in_the_order_of_the_list_and_hold_their_records();
    void a_click_sets_the_buttons_data();
    void a_click_sets_the_buttons();
    void a_click_without_a_group_does_nothing();
    void without_a_selection_there_is_no_selected_air();
    void records_that_are_gone_are_left_alone();
    void a_master_to_be_that_goes_while_its_group_is_named_becomes_none();
    void everything_has_its_text();
    void texts_are_translated_in_the_context_of_the_class();
    void texts_of_the_actions_are_translated();
    void german_texts_stand_in_german();
    void the_picture_is_the_wide_one_above_2000_pixels();
    void the_busy_movie_is_there_and_hidden();
    void back_is_the_default_and_closes();
    void the_tree_has_the_focus();
    void the_hint_is_seen_only_without_a_group();
    void the_slots_stand_in_order();

private:
    // Opened as the overview does it.
    Client_Group *open(Device_Desc *device);
    Device_Desc *add(const QString &name, int receiver_state = 0, const QString &receiver_sender = "");
    void make_group();

    std::unique_ptr<Overview_World> world;
    std::unique_ptr<Client_Group> dialog;
    Device_Desc *master = nullptr;
};

void tst_client_group::init()
{
    world = std::make_unique<Overview_World>();
    world->open();
    master = add("Master");
}

void tst_client_group::cleanup()
{
    dialog.reset();
    world.reset();
}

Client_Group *tst_client_group::open(Device_Desc *device)
{
    dialog = std::make_unique<Client_Group>(device, nullptr);
    dialog->show();
    if (!QTest::qWaitForWindowExposed(dialog.get()))
        qFatal("the dialog does not show");
    return dialog.get();
}

Device_Desc *tst_client_group::add(const QString &name, int receiver_state, const QString &receiver_sender)
{
    Device_Desc *device = world->add_record(name, nullptr);
    device->receiver_state = receiver_state;
    device->receiver_sender = receiver_sender;
    return device;
}

void tst_client_group::make_group()
{
    master->uuid = "u-1";
    master->groupname = "Party";
    master->sender_enabled = true;
    sender_device = master;
}

void tst_client_group::without_a_group_it_offers_to_create_one()
{
    add("Hall");
    open(master);
    QCOMPARE(dialog->dissolve_button->text(), QString("Create Group"));
    QCOMPARE(dialog->master_label->text(), QString("Master"));
    QCOMPARE(dialog->group_label->text(), QString("-"));
    QCOMPARE(rows_of(*dialog), QStringList{"Hall: Available"}); // the master-to-be is not among them
    QCOMPARE(selected_row(*dialog), QString());
    QCOMPARE(button_states(*dialog), (QList<bool>{false, false}));
    QVERIFY(!dialog->isModal());
    QVERIFY(!dialog->parent());
}

void tst_client_group::what_looks_like_markup_stands_as_it_is()
{
    make_group();
    open(master);
    QCOMPARE(dialog->master_label->textFormat(), Qt::PlainText);
    QCOMPARE(dialog->group_label->textFormat(), Qt::PlainText);
}

void tst_client_group::for_the_master_it_lists_the_others()
{
    make_group();
    add("Hall", 1, "u-1");
    add("Bath");
    open(master);
    QCOMPARE(dialog->dissolve_button->text(), QString("Dissolve Group"));
    QCOMPARE(dialog->master_label->text(), QString("Master"));
    QCOMPARE(dialog->group_label->text(), QString("Party"));
    QCOMPARE(rows_of(*dialog), (QStringList{"Hall: Group member", "Bath: Available"}));
    QCOMPARE(selected_row(*dialog), QString());
    QCOMPARE(button_states(*dialog), (QList<bool>{false, false}));
}

void tst_client_group::for_a_member_its_row_comes_up_selected()
{
    make_group();
    Device_Desc *hall = add("Hall", 1, "u-1");
    open(hall);
    QCOMPARE(dialog->master_label->text(), QString("Master"));
    QCOMPARE(dialog->group_label->text(), QString("Party"));
    QCOMPARE(rows_of(*dialog), QStringList{"Hall: Group member"});
    QCOMPARE(selected_row(*dialog), QString("Hall"));
    QCOMPARE(button_states(*dialog), (QList<bool>{false, true}));
}

void tst_client_group::for_another_speaker_its_row_comes_up_selected()
{
    make_group();
    add("Bath");
    Device_Desc *hall = add("Hall");
    open(hall);
    QCOMPARE(rows_of(*dialog), (QStringList{"Bath: Available", "Hall: Available"}));
    QCOMPARE(selected_row(*dialog), QString("Hall"));
    QCOMPARE(button_states(*dialog), (QList<bool>{true, false}));
}

void tst_client_group::for_the_groups_own_row_nothing_is_selected()
{
    make_group();
    add("Hall", 1, "u-1");
    Device_Desc group(nullptr, true, "Party");
    const std::unique_ptr<Virelos> control(group.control);
    open(&group);
    QCOMPARE(dialog->master_label->text(), QString("Master"));
    QCOMPARE(rows_of(*dialog), QStringList{"Hall: Group member"});
    QCOMPARE(selected_row(*dialog), QString());
    QCOMPARE(button_states(*dialog), (QList<bool>{false, false}));
    dialog.reset();
}

void tst_client_group::a_row_is_selected_by_name_not_by_record()
{
    // The same speaker once more, found at another address; the record itself is not in the tree.
    make_group();
    add("Hall");
    add("Master");
    open(master);
    QCOMPARE(rows_of(*dialog), (QStringList{"Hall: Available", "Master: Available"}));
    QCOMPARE(selected_row(*dialog), QString("Master"));
    QCOMPARE(button_states(*dialog), (QList<bool>{true, false}));
}

void tst_client_group::without_other_speakers_the_tree_is_empty()
{
    open(master);
    QCOMPARE(rows_of(*dialog), QStringList());
    QCOMPARE(button_states(*dialog), (QList<bool>{false, false}));
    make_group();
    open(master);
    QCOMPARE(rows_of(*dialog), QStringList());
    QCOMPARE(button_states(*dialog), (QList<bool>{false, false}));
}

void tst_client_group::a_status_tells_members_from_others_data()
{
    QTest::addColumn<bool>("group");
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("sender");
    QTest::addColumn<QString>("status");
    QTest::newRow("linked") << true << 1 << "u-1"
                            << "Group member";
    QTest::newRow("playing") << true << 2 << "u-1"
                             << "Group member";
    QTest::newRow("unlinked") << true << 0 << "u-1"
                              << "Available";
    QTest::newRow("linked elsewhere") << true << 1 << "u-2"
                                      << "Available";
    QTest::newRow("linked, no group") << false << 1 << "u-1"
                                      << "Available";
}

void tst_client_group::a_status_tells_members_from_others()
{
    QFETCH(bool, group);
    QFETCH(int, state);
    QFETCH(QString, sender);
    QFETCH(QString, status);
    make_group();
    if (!group)
        sender_device = nullptr;
    add("Hall", state, sender);
    open(master);
    QCOMPARE(rows_of(*dialog), QStringList{"Hall: " + status});
}

void tst_client_group::rows_stand_in_the_order_of_the_list_and_hold_their_records()
{
    const QList<Device_Desc *> others = {add("Zoo"), add("Attic"), add("Middle")};
    open(master);
    QCOMPARE(rows_of(*dialog), (QStringList{"Zoo: Available", "Attic: Available", "Middle: Available"}));
    QCOMPARE(dialog->tree->columnCount(), 2);
    for (int row = 0; row < others.size(); ++row)
        QCOMPARE(dialog->tree->topLevelItem(row)->data(0, 256).value<Device_Desc *>(), others.at(row));
}

void tst_client_group::a_click_sets_the_buttons_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("sender");
    QTest::addColumn<QList<bool>>("after_off"); // add and remove, both disabled before
    QTest::addColumn<QList<bool>>("after_on");  // both enabled before
    const QList<bool> to_add = {true, false}, to_remove = {false, true};
    QTest::newRow("unlinked") << 0 << "" << to_add << to_add;
    QTest::newRow("unlinked from the master") << 0 << "u-1" << to_add << to_add;
    QTest::newRow("member") << 1 << "u-1" << to_remove << to_remove;
    QTest::newRow("playing member") << 2 << "u-1" << to_remove << to_remove;
    QTest::newRow("linked elsewhere") << 1 << "u-2" << QList<bool>{false, false} << QList<bool>{true, true};
}

void tst_client_group::a_click_sets_the_buttons()
{
    QFETCH(int, state);
    QFETCH(QString, sender);
    make_group();
    add("Hall", state, sender);
    open(master);
    click(*dialog, 0);
    QCOMPARE(selected_row(*dialog), QString("Hall"));
    QTEST(button_states(*dialog), "after_off");
    dialog->add_button->setEnabled(true);
    dialog->remove_button->setEnabled(true);
    click(*dialog, 0);
    QTEST(button_states(*dialog), "after_on");
}

void tst_client_group::a_click_without_a_group_does_nothing()
{
    add("Hall");
    add("Bath", 1, "u-1");
    open(master);
    for (const int row : {0, 1}) {
        click(*dialog, row);
        QCOMPARE(button_states(*dialog), (QList<bool>{false, false}));
    }
}

void tst_client_group::without_a_selection_there_is_no_selected_air()
{
    make_group();
    add("Hall");
    open(master);
    QTreeWidgetItem *item = dialog->tree->topLevelItem(0);
    QVERIFY(QMetaObject::invokeMethod(dialog.get(), "selected_air", Q_RETURN_ARG(QTreeWidgetItem *, item)));
    QVERIFY(!item);
    click(*dialog, 0);
    QVERIFY(QMetaObject::invokeMethod(dialog.get(), "selected_air", Q_RETURN_ARG(QTreeWidgetItem *, item)));
    QCOMPARE(item, dialog->tree->topLevelItem(0));
}

void tst_client_group::records_that_are_gone_are_left_alone()
{
    add("Hall");
    open(master);
    overview->deleteRecords();
    QVERIFY(!dialog->device);
    sender_device = add("Another");
    dialog->remove_button->setEnabled(true);
    click(*dialog, 0);
    QCOMPARE(button_states(*dialog), (QList<bool>{false, true})); // no record to tell them by

    world->log.clear();
    for (const char *slot : {"AddClicked", "RemoveClicked"})
        QVERIFY(QMetaObject::invokeMethod(dialog.get(), slot));
    sender_device = nullptr;
    Modal_User<QInputDialog> user([](QInputDialog *box) { type_name(box, "Party"); });
    QTest::mouseClick(dialog->dissolve_button, Qt::LeftButton);
    QVERIFY(!user.met);
    QVERIFY(!sender_device);
    QCOMPARE(rows_of(*dialog), QStringList{"Hall: Available"});
    QCOMPARE(world->log.debug_lines().filter("_request"), QStringList());
}

void tst_client_group::a_master_to_be_that_goes_while_its_group_is_named_becomes_none()
{
    open(master);
    Modal_User<QInputDialog> user([](QInputDialog *box) {
        overview->deleteRecords();
        type_name(box, "Party");
    });
    QTest::mouseClick(dialog->dissolve_button, Qt::LeftButton);
    QVERIFY(user.met);
    QVERIFY(!sender_device);
    QCOMPARE(dialog->dissolve_button->text(), QString("Create Group"));
}

// All texts of the dialog, without the rows of its tree.
static QStringList texts_of(const Client_Group &dialog)
{
    QStringList texts = {dialog.windowTitle(), dialog.tree->headerItem()->text(0),
                         dialog.tree->headerItem()->text(1)};
    for (const QLabel *label : dialog.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!label->text().isEmpty())
            texts.append(label->text());
    }
    for (const QPushButton *button :
         dialog.findChildren<QPushButton *>(QString(), Qt::FindDirectChildrenOnly))
        texts.append(button->text());
    texts.sort();
    return texts;
}

void tst_client_group::everything_has_its_text()
{
    open(master);
    QStringList texts = {"VIRELO Air Group Configuration",
                         "Other Air Speakers:",
                         "Status",
                         "Master:",
                         "Master",
                         "Group:",
                         "-",
                         "Click \"Create Group\"!",
                         "Add to Group",
                         "Remove from Group",
                         "Create Group",
                         "<< Back"};
    texts.sort();
    QCOMPARE(texts_of(*dialog), texts);
}

void tst_client_group::texts_are_translated_in_the_context_of_the_class()
{
    Marking_Translator translator("Client_Group");
    QCoreApplication::installTranslator(&translator);
    add("Hall");
    open(master);
    for (const QString &text : texts_of(*dialog))
        QVERIFY2(text.startsWith('#') || text == "Master", qPrintable(text)); // the name of the speaker
    QCOMPARE(rows_of(*dialog), QStringList{"Hall: #Available"});

    make_group();
    add("Bath", 1, "u-1");
    open(master);
    QCOMPARE(dialog->dissolve_button->text(), QString("#Dissolve Group"));
    QCOMPARE(rows_of(*dialog).last(), QString("Bath: #Group member"));
}

void tst_client_group::texts_of_the_actions_are_translated()
{
    Marking_Translator translator("Client_Group");
    QCoreApplication::installTranslator(&translator);
    add("Hall");
    open(master);
    QStringList seen;
    Modal_User<QInputDialog> user([&seen](QInputDialog *box) {
        seen = QStringList{box->windowTitle(), box->labelText(), box->textValue()};
        type_name(box, "Party");
    });
    QTest::mouseClick(dialog->dissolve_button, Qt::LeftButton);
    QCOMPARE(seen, (QStringList{"#Create Group", "#Group name:", "#VIRELO Group"}));
    QCOMPARE(dialog->dissolve_button->text(), QString("#Dissolve Group"));
    QCOMPARE(dialog->group_label->text(), QString("Party"));

    click(*dialog, 0);
    QTest::mouseClick(dialog->add_button, Qt::LeftButton);
    QCOMPARE(rows_of(*dialog), QStringList{"Hall: #Group member"});
    QTest::mouseClick(dialog->remove_button, Qt::LeftButton);
    QCOMPARE(rows_of(*dialog), QStringList{"Hall: #Available"});

    Modal_User<QMessageBox> reader([&seen](QMessageBox *box) {
        seen = QStringList{box->windowTitle(), box->text(), box->buttons().value(0)->text()};
        QTest::mouseClick(box->buttons().first(), Qt::LeftButton);
    });
    QVERIFY(QMetaObject::invokeMethod(dialog.get(), "dissolve_completed"));
    QCOMPARE(seen, (QStringList{"#Info", "#Group dissolved", "#OK"}));
    QTRY_COMPARE(in_flight(), 0);
}

void tst_client_group::german_texts_stand_in_german()
{
    QTranslator german;
    QVERIFY(german.load("VIRELO_de_DE", ":/translations/"));
    QCoreApplication::installTranslator(&german);
    open(master);
    const auto translated = [&german](const char *text) { return german.translate("Client_Group", text); };
    QCOMPARE(dialog->windowTitle(), translated("VIRELO Air Group Configuration"));
    QCOMPARE(dialog->add_button->text(), translated("Add to Group"));
    QCOMPARE(dialog->hint_label->text(), translated("Click \"Create Group\"!"));
    QVERIFY(dialog->add_button->text() != "Add to Group");
}

void tst_client_group::the_picture_is_the_wide_one_above_2000_pixels()
{
    const auto picture = [this](int width) {
        plattform->desktop_width = width;
        open(master);
        return dialog->findChild<RZPixmapLabel *>()->source_pixmap.toImage();
    };
    QCOMPARE(picture(2000), QPixmap(":/GRAFX/Deko_Palette_640.png").toImage());
    QCOMPARE(picture(2001), QPixmap(":/GRAFX/Deko_Palette_2k.png").toImage());
}

void tst_client_group::the_busy_movie_is_there_and_hidden()
{
    open(master);
    QVERIFY(!dialog->busy_label->isVisible());
    QVERIFY(dialog->busy_label->movie());
    QCOMPARE(dialog->busy_label->movie()->fileName(), QString(":/GRAFX/ajax-loader.gif"));
    QVERIFY(dialog->busy_label->movie()->isValid());
    QVERIFY(dialog->busy_label->movie()->state() != QMovie::NotRunning);
}

void tst_client_group::back_is_the_default_and_closes()
{
    open(master);
    QVERIFY(dialog->back_button->isDefault());
    QTest::mouseClick(dialog->back_button, Qt::LeftButton);
    QVERIFY(!dialog->isVisible());

    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    QTest::keyClick(dialog.get(), Qt::Key_Return);
    QVERIFY(!dialog->isVisible());
}

void tst_client_group::the_tree_has_the_focus()
{
    open(master);
    QCOMPARE(dialog->focusWidget(), dialog->tree);
}

void tst_client_group::the_hint_is_seen_only_without_a_group()
{
    open(master);
    QVERIFY(dialog->hint_label->isVisible());
    make_group();
    open(master);
    QVERIFY(!dialog->hint_label->isVisible());
}

void tst_client_group::the_slots_stand_in_order()
{
    const QMetaObject &meta = Client_Group::staticMetaObject;
    QStringList slot_names;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        QCOMPARE(meta.method(index).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(index).access(), QMetaMethod::Private);
        slot_names.append(meta.method(index).typeName() + QString(" ") +
                          meta.method(index).methodSignature());
    }
    QCOMPARE(slot_names,
             (QStringList{"void AddClicked()", "void RemoveClicked()", "void DissolveClicked()",
                          "QTreeWidgetItem* selected_air()", "QTreeWidgetItem* _make_tree_item(Device_Desc*)",
                          "void item_clicked(QTreeWidgetItem*,int)", "void dissolve_completed()"}));
}

QTEST_MAIN(tst_client_group)
#include "tst_client_group.moc"
