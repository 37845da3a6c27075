// SPDX-License-Identifier: MIT
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <memory>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "device/device_desc.h"
#include "network/client_wlans.h"
#include "settings/rzpixmaplabel.h"
#include "tests/network/wlan_world.h"
#include "tests/settings/grid_probe.h"
#include "tests/settings/marking_translator.h"

// How the list of WLANs looks before the speaker has answered. The scan is told in tst_client_wlans_scan, the
// choice in tst_client_wlans_choice.
class tst_client_wlans : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void the_window_has_the_size_of_the_platform();
    void everything_has_its_text();
    void all_texts_are_translated();
    void everything_stands_in_its_place_data();
    void everything_stands_in_its_place();
    void the_picture_is_the_wide_one_above_2000_pixels();
    void columns_take_5_and_2_sevenths_data();
    void columns_take_5_and_2_sevenths();
    void the_font_of_the_tree_is_3_points_larger();
    void rows_are_sorted_by_the_text_of_the_signal();
    void a_click_on_the_header_sorts_by_the_name();
    void the_tree_has_the_focus();
    void next_is_the_default_and_disabled();
    void back_closes_and_deletes_nothing();
    void escape_closes_as_back_does();
    void reset_is_there_unseen_and_does_nothing();
    void next_is_enabled_by_rows_alone();
    void the_slots_stand_in_order();

private:
    Client_WLANs *open();

    std::unique_ptr<Wlan_World> world;
};

void tst_client_wlans::init()
{
    world = std::make_unique<Wlan_World>();
}

void tst_client_wlans::cleanup()
{
    world.reset();
}

// As the overview does it. The speaker does not answer.
Client_WLANs *tst_client_wlans::open()
{
    wlans_dialog = new Client_WLANs(world->record, nullptr);
    wlans_dialog->show();
    if (!QTest::qWaitForWindowExposed(wlans_dialog))
        qFatal("the dialog does not show");
    wlans_dialog->activateWindow();
    return wlans_dialog;
}

static QTreeWidgetItem *add_row(Client_WLANs *dialog, const QString &ssid, const QString &signal)
{
    auto *item = new QTreeWidgetItem({ssid, signal});
    dialog->tree->addTopLevelItem(item);
    return item;
}

static QStringList names_of(const Client_WLANs *dialog)
{
    QStringList names;
    for (int i = 0; i < dialog->tree->topLevelItemCount(); ++i)
        names += dialog->tree->topLevelItem(i)->text(0);
    return names;
}

void tst_client_wlans::the_window_has_the_size_of_the_platform()
{
    plattform->window_width = 801;
    plattform->window_height = 702;
    QWidget parent;
    const Client_WLANs dialog(world->record, &parent);
    QCOMPARE(dialog.size(), QSize(801, 702));
    QCOMPARE(dialog.parentWidget(), &parent);
    QCOMPARE(dialog.device.data(), world->record);
    QVERIFY(!dialog.isModal());
}

static QStringList texts_of(const Client_WLANs *dialog)
{
    return {
        dialog->windowTitle(),      dialog->tree->headerItem()->text(0), dialog->tree->headerItem()->text(1),
        dialog->hint_label->text(), dialog->reset_button->text(),        dialog->back_button->text(),
        dialog->next_button->text()};
}

void tst_client_wlans::everything_has_its_text()
{
    const Client_WLANs *dialog = open();
    QCOMPARE(texts_of(dialog),
             (QStringList{"Select WLAN", "WiFi Name", "Signal", "Please select your private WLAN\n  ",
                          "Reset!", "<< Back", "Next >>"}));
    QCOMPARE(dialog->tree->columnCount(), 2);
    QCOMPARE(dialog->tree->topLevelItemCount(), 0);
}

void tst_client_wlans::all_texts_are_translated()
{
    Marking_Translator translator("Client_WLANs");
    QCoreApplication::installTranslator(&translator);
    QCOMPARE(texts_of(open()),
             (QStringList{"#Select WLAN", "#WiFi Name", "#Signal", "#Please select your private WLAN\n  ",
                          "#Reset!", "#<< Back", "#Next >>"}));
}

void tst_client_wlans::everything_stands_in_its_place_data()
{
    QTest::addColumn<int>("device_class");
    QTest::addColumn<int>("span");
    QTest::addColumn<QList<int>>("back");
    QTest::addColumn<QList<int>>("next");
    const QList<int> back{6, 2, 1, 1}, next{6, 3, 1, 1};
    QTest::newRow("unset") << 0 << 4 << back << next;
    QTest::newRow("phone") << DEVICE_PHONE << 2 << QList<int>{4, 0, 1, 1} << QList<int>{4, 1, 1, 1};
    QTest::newRow("tablet") << DEVICE_TABLET << 4 << back << next;
    QTest::newRow("desktop") << DEVICE_DESKTOP << 4 << back << next;
}

void tst_client_wlans::everything_stands_in_its_place()
{
    QFETCH(int, device_class);
    QFETCH(int, span);
    plattform->device_class = device_class;
    Client_WLANs *dialog = open();
    auto *grid = qobject_cast<QGridLayout *>(dialog->layout());
    QVERIFY(grid);
    QCOMPARE(place_of(grid, dialog->findChild<RZPixmapLabel *>()), (QList<int>{0, 0, 1, span}));
    QCOMPARE(place_of(grid, dialog->tree), (QList<int>{1, 0, 2, span}));
    QCOMPARE(place_of(grid, dialog->hint_label), (QList<int>{3, 0, 1, span}));
    QTEST(place_of(grid, dialog->back_button), "back");
    QTEST(place_of(grid, dialog->next_button), "next");
    QCOMPARE(grid->count(), 5);
}

void tst_client_wlans::the_picture_is_the_wide_one_above_2000_pixels()
{
    const auto picture = [this](int width) {
        plattform->desktop_width = width;
        return open()->findChild<RZPixmapLabel *>()->source_pixmap.toImage();
    };
    QCOMPARE(picture(2000), QPixmap(":/GRAFX/Deko_WLAN_640.png").toImage());
    QCOMPARE(picture(2001), QPixmap(":/GRAFX/Deko_WLAN_2k.png").toImage());
}

void tst_client_wlans::columns_take_5_and_2_sevenths_data()
{
    QTest::addColumn<int>("window_width");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<int>("ssid");
    QTest::addColumn<int>("signal");
    QTest::addColumn<QString>("line");
    QTest::newRow("as at start") << 726 << 1.0 << 482 << 193 << "482.857 193.143";
    QTest::newRow("whole sevenths") << 750 << 1.0 << 500 << 200 << "500 200";
    QTest::newRow("dense") << 726 << 2.0 << 241 << 96 << "241.429 96.5714";
    QTest::newRow("cut before the products") << 726 << 1.5 << 321 << 128 << "321.429 128.571";
    QTest::newRow("cut, not rounded") << 750 << 3.0 << 166 << 66 << "166.429 66.5714";
}

void tst_client_wlans::columns_take_5_and_2_sevenths()
{
    QFETCH(int, window_width);
    QFETCH(double, ratio);
    QFETCH(QString, line);
    plattform->window_width = window_width;
    plattform->ratio = ratio;
    world->start_up.log.clear();
    const Client_WLANs *dialog = open();
    QCOMPARE(world->start_up.log.debug_lines(), QStringList(line));
    QTEST(dialog->tree->columnWidth(0), "ssid");
    dialog->tree->header()->setStretchLastSection(false); // which hides the width that was asked for
    QTEST(dialog->tree->columnWidth(1), "signal");
}

void tst_client_wlans::the_font_of_the_tree_is_3_points_larger()
{
    const Client_WLANs *dialog = open();
    const int size = QTreeWidget().headerItem()->font(0).pointSize();
    QVERIFY(size > 0);
    QCOMPARE(dialog->tree->styleSheet(), QString("QTreeWidget { font-size: %1pt; }").arg(size + 3));
    QCOMPARE(dialog->tree->font().pointSize(), size + 3);
}

void tst_client_wlans::rows_are_sorted_by_the_text_of_the_signal()
{
    Client_WLANs *dialog = open();
    QVERIFY(dialog->tree->isSortingEnabled());
    QCOMPARE(dialog->tree->sortColumn(), 1);
    QCOMPARE(dialog->tree->header()->sortIndicatorOrder(), Qt::AscendingOrder);
    for (const char *signal : {"-70 dBi", "-8 dBi", "-100 dBi", " dBi"})
        add_row(dialog, QString("at ") + signal, signal);
    QCOMPARE(names_of(dialog), (QStringList{"at  dBi", "at -100 dBi", "at -70 dBi", "at -8 dBi"}));
}

void tst_client_wlans::a_click_on_the_header_sorts_by_the_name()
{
    Client_WLANs *dialog = open();
    add_row(dialog, "B", "-1 dBi");
    add_row(dialog, "A", "-2 dBi");
    QHeaderView *header = dialog->tree->header();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, header->height() / 2));
    QCOMPARE(dialog->tree->sortColumn(), 0);
    QCOMPARE(names_of(dialog), (QStringList{"A", "B"}));
}

void tst_client_wlans::the_tree_has_the_focus()
{
    const Client_WLANs hidden(world->record, nullptr);
    QCOMPARE(hidden.focusWidget(), hidden.tree);
    const Client_WLANs *dialog = open();
    QVERIFY(QTest::qWaitForWindowActive(wlans_dialog));
    QVERIFY(dialog->tree->hasFocus());
}

void tst_client_wlans::next_is_the_default_and_disabled()
{
    const Client_WLANs *dialog = open();
    QVERIFY(dialog->next_button->isDefault());
    QVERIFY(!dialog->next_button->isEnabled());
    QVERIFY(dialog->back_button->isEnabled());
}

void tst_client_wlans::back_closes_and_deletes_nothing()
{
    const QPointer<Client_WLANs> dialog = open();
    QTest::mouseClick(dialog->back_button, Qt::LeftButton);
    QVERIFY(!dialog->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(dialog);
    QCOMPARE(wlans_dialog, dialog.data());
    QVERIFY(!conf_dialog);
}

void tst_client_wlans::escape_closes_as_back_does()
{
    const QPointer<Client_WLANs> dialog = open();
    QTest::keyClick(dialog, Qt::Key_Escape);
    QVERIFY(dialog && !dialog->isVisible());
}

void tst_client_wlans::reset_is_there_unseen_and_does_nothing()
{
    Client_WLANs *dialog = open();
    QVERIFY(!dialog->reset_button->parent());
    QVERIFY(!dialog->reset_button->isVisible());
    QCOMPARE(dialog->layout()->indexOf(dialog->reset_button), -1);

    add_row(dialog, "Home", "-48 dBi")->setSelected(true);
    world->start_up.log.clear();
    dialog->reset_button->click();
    QCOMPARE(names_of(dialog), QStringList("Home"));
    QCOMPARE(dialog->tree->selectedItems().size(), 1);
    QCOMPARE(world->start_up.log.debug_lines(), QStringList());
    QVERIFY(!conf_dialog);
    QVERIFY(disconnect(dialog->reset_button, SIGNAL(clicked()), dialog, nullptr)); // it was connected
}

void tst_client_wlans::next_is_enabled_by_rows_alone()
{
    Client_WLANs *dialog = open();
    const auto enabled = [dialog] {
        QMetaObject::invokeMethod(dialog, "enableNextButton");
        return dialog->next_button->isEnabled();
    };
    QVERIFY(!enabled());
    add_row(dialog, "Home", "-48 dBi");
    QVERIFY(enabled());
    dialog->tree->clear();
    QVERIFY(!enabled());
}

void tst_client_wlans::the_slots_stand_in_order()
{
    QCOMPARE(own_methods(Client_WLANs::staticMetaObject),
             (QStringList{"private void replyFinished(QNetworkReply*)", "private void setSSID()",
                          "private void enableNextButton()", "private void reset()"}));
}

QTEST_MAIN(tst_client_wlans)
#include "tst_client_wlans.moc"
