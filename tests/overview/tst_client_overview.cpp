// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QGraphicsOpacityEffect>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMetaMethod>
#include <QMovie>
#include <QPushButton>
#include <QTest>
#include <QTranslator>
#include <QTreeWidget>

#include "app/client.h"
#include "app/globals.h"
#include "app/rzplattform.h"
#include "control/virelo_unknown.h"
#include "overview/client_overview.h"
#include "settings/rzpixmaplabel.h"
#include "settings/rzpushbutton.h"
#include "tests/overview/overview_world.h"
#include "tests/overview/paint_log.h"
#include "zeroconf/qzeroconf.h"

using Places = QMap<QString, QList<int>>;
Q_DECLARE_METATYPE(Places)

namespace
{
// Row, column, row span and column span of a widget; empty where the grid does not hold it.
QList<int> place_of(Client_Overview *view, QWidget *widget)
{
    const int index = view->grid->indexOf(widget);
    if (index < 0)
        return {};
    int row, column, row_span, column_span;
    view->grid->getItemPosition(index, &row, &column, &row_span, &column_span);
    return {row, column, row_span, column_span};
}

void add_device_classes()
{
    QTest::addColumn<int>("device_class");
    QTest::newRow("unset") << 0;
    QTest::newRow("phone") << DEVICE_PHONE;
    QTest::newRow("tablet") << DEVICE_TABLET;
    QTest::newRow("desktop") << DEVICE_DESKTOP;
}

QList<int> column_widths(Client_Overview *view)
{
    QList<int> widths;
    for (int column = 0; column < view->tree->columnCount(); ++column)
        widths << view->tree->columnWidth(column);
    return widths;
}
} // namespace

// The view as it stands before any speaker is found, and what does not need one.
class tst_client_overview : public QObject
{
    Q_OBJECT

private slots:
    void slots_are_listed_in_order();
    void constructor_makes_itself_known();
    void widgets_stand_in_their_places_data();
    void widgets_stand_in_their_places();
    void busy_sign_is_centred_in_its_place();
    void busy_sign_can_be_seen_and_clicked_through_data();
    void busy_sign_can_be_seen_and_clicked_through();
    void tree_is_as_wide_as_the_view_on_every_class_data();
    void tree_is_as_wide_as_the_view_on_every_class();
    void banner_is_chosen_by_the_width_of_the_screen_data();
    void banner_is_chosen_by_the_width_of_the_screen();
    void columns_follow_window_width_and_ratio_data();
    void columns_follow_window_width_and_ratio();
    void header_names_the_columns();
    void tree_font_is_three_points_above_that_of_its_header();
    void rows_and_icons_are_100_pixels_high();
    void search_text_is_short_on_a_phone_data();
    void search_text_is_short_on_a_phone();
    void texts_come_from_the_german_catalogue();
    void texts_come_from_the_english_catalogue();
    void buttons_start_disabled();
    void tree_has_the_focus_at_start();
    void quit_works_while_nothing_was_found();
    void movie_runs_only_while_its_label_is_visible();
    void movie_never_ends_by_itself();
    void wifi_button_follows_the_rows();
    void all_three_buttons_are_disabled_and_painted_at_once();
    void reload_disables_the_buttons_and_shows_the_busy_sign();
    void escape_does_not_blank_the_tab();
    void members_without_use_are_there();
};

void tst_client_overview::slots_are_listed_in_order()
{
    const QMetaObject &meta = Client_Overview::staticMetaObject;
    QList<QByteArray> names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        names << meta.method(i).name();
    names.removeAll("dummy");
    const QList<QByteArray> expected{
        "addService",          "updateService",   "removeService",    "deleteRecords",
        "ReloadClicked",       "update_status",   "setStatusText",    "update_tree_widget",
        "disable_all_buttons", "_make_tree_item", "item_clicked",     "UpdateClicked",
        "GroupClicked",        "WlansClicked",    "enableNextButton", "quitClicked",
        "quitPressed",         "quitReleased",    "quitHold",         "hoodTimer"};
    QCOMPARE(names, expected);
}

void tst_client_overview::constructor_makes_itself_known()
{
    Overview_World world;
    Client_Overview *view = world.open();
    QVERIFY(view);
    QCOMPARE(client->tabs->widget(0), view);
    QCOMPARE(view->client_window, client);
    QVERIFY(!view->zeroConf->parent());
    QVERIFY(!view->hood_timer);
    QVERIFY(!view->quit_blocked);
    QVERIFY(!view->selected);
    QVERIFY(!view->selected_device());
}

void tst_client_overview::widgets_stand_in_their_places_data()
{
    QTest::addColumn<int>("device_class");
    QTest::addColumn<Places>("places");
    const Places wide{{"banner", {0, 0, 1, 4}}, {"tree", {1, 0, 1, 4}},
                      {"hint", {3, 0, 1, 4}},   {"status", {4, 0, 1, 1}},
                      {"update", {4, 3, 1, 1}}, {"spinner", {5, 1, 1, 3}},
                      {"group", {5, 3, 1, 1}},  {"wifi", {6, 3, 1, 1}},
                      {"quit", {6, 0, 1, 1}},   {"back", {}}};
    const Places phone{{"banner", {0, 0, 1, 2}},
                       {"tree", {1, 0, 1, 2}},
                       {"hint", {}},
                       {"status", {4, 0, 1, 1}},
                       {"update", {4, 1, 1, 1}},
                       {"spinner", {5, 1, 1, 3}},
                       {"group", {5, 1, 1, 1}},
                       {"wifi", {6, 1, 1, 1}},
                       {"quit", {6, 0, 1, 1}},
                       {"back", {}}};
    QTest::newRow("unset") << 0 << wide;
    QTest::newRow("phone") << DEVICE_PHONE << phone;
    QTest::newRow("tablet") << DEVICE_TABLET << wide;
    QTest::newRow("desktop") << DEVICE_DESKTOP << wide;
}

void tst_client_overview::widgets_stand_in_their_places()
{
    QFETCH(int, device_class);
    QFETCH(Places, places);
    Overview_World world(device_class);
    Client_Overview *view = world.open_and_show();
    Places found{{"banner", place_of(view, view->findChild<RZPixmapLabel *>())},
                 {"tree", place_of(view, view->tree)},
                 {"hint", place_of(view, view->hint_label)},
                 {"status", place_of(view, view->status_label)},
                 {"update", place_of(view, view->update_button)},
                 {"spinner", place_of(view, view->spinner_label)},
                 {"group", place_of(view, view->group_button)},
                 {"wifi", place_of(view, view->wifi_button)},
                 {"quit", place_of(view, view->quit_button)},
                 {"back", place_of(view, view->back_button)}};
    QCOMPARE(found, places);
    QCOMPARE(view->grid->count(), places.size() - places.keys({}).size());
    QCOMPARE(view->layout(), view->grid);
    QVERIFY(!view->back_button->isVisible());
    QCOMPARE(view->hint_label->isVisible(), device_class != DEVICE_PHONE);
}

void tst_client_overview::busy_sign_is_centred_in_its_place()
{
    Overview_World world;
    Client_Overview *view = world.open();
    const QLayoutItem *item = view->grid->itemAt(view->grid->indexOf(view->spinner_label));
    QCOMPARE(item->alignment(), Qt::AlignCenter);
}

void tst_client_overview::busy_sign_can_be_seen_and_clicked_through_data()
{
    add_device_classes();
}

void tst_client_overview::busy_sign_can_be_seen_and_clicked_through()
{
    QFETCH(int, device_class);
    Overview_World world(device_class);
    Client_Overview *view = world.open_and_show();
    const QRect place = view->spinner_label->geometry();
    const QRect on_button = place & view->group_button->geometry();
    QCOMPARE(on_button.isEmpty(), device_class != DEVICE_PHONE);
    QVERIFY(view->childAt(place.center()) != view->spinner_label);

    const QRect watched = on_button.isEmpty() ? place : on_button;
    const QImage with = view->grab(watched).toImage();
    auto *invisible = new QGraphicsOpacityEffect;
    invisible->setOpacity(0);
    view->spinner_label->setGraphicsEffect(invisible);
    QVERIFY(view->grab(watched).toImage() != with);
}

void tst_client_overview::tree_is_as_wide_as_the_view_on_every_class_data()
{
    add_device_classes();
}

void tst_client_overview::tree_is_as_wide_as_the_view_on_every_class()
{
    QFETCH(int, device_class);
    Overview_World world(device_class);
    Client_Overview *view = world.open_and_show();
    const QMargins margins = view->grid->contentsMargins();
    const int empty_columns = device_class == DEVICE_PHONE ? 2 : 0; // nothing but the space before each
    QCOMPARE(view->tree->x(), margins.left());
    QCOMPARE(view->tree->width(), view->width() - margins.left() - margins.right() -
                                      empty_columns * view->grid->horizontalSpacing());
}

void tst_client_overview::banner_is_chosen_by_the_width_of_the_screen_data()
{
    QTest::addColumn<int>("desktop_width");
    QTest::addColumn<QString>("path");
    QTest::newRow("narrow") << 800 << ":/GRAFX/Deko_Palette_640.png";
    QTest::newRow("2000") << 2000 << ":/GRAFX/Deko_Palette_640.png";
    QTest::newRow("2001") << 2001 << ":/GRAFX/Deko_Palette_2k.png";
}

void tst_client_overview::banner_is_chosen_by_the_width_of_the_screen()
{
    QFETCH(int, desktop_width);
    QFETCH(QString, path);
    Overview_World world;
    plattform->desktop_width = desktop_width;
    Client_Overview *view = world.open();
    const QImage expected(path);
    QVERIFY(!expected.isNull());
    const QImage shown = view->findChild<RZPixmapLabel *>()->source_pixmap.toImage();
    QCOMPARE(shown.convertToFormat(QImage::Format_ARGB32), expected.convertToFormat(QImage::Format_ARGB32));
}

void tst_client_overview::columns_follow_window_width_and_ratio_data()
{
    QTest::addColumn<int>("window_width");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QList<int>>("widths");
    QTest::addColumn<QString>("log");
    QTest::newRow("726 at 1") << 726 << 1.0 << QList<int>{100, 192, 192, 144}
                              << "Column sizes: 100 192.615 192.615 144.462";
    QTest::newRow("726 at 2") << 726 << 2.0 << QList<int>{100, 96, 96, 72}
                              << "Column sizes: 100 96.3077 96.3077 72.2308";
    QTest::newRow("1400 at 1") << 1400 << 1.0 << QList<int>{200, 400, 400, 300}
                               << "Column sizes: 200 400 400 300";
}

void tst_client_overview::columns_follow_window_width_and_ratio()
{
    QFETCH(int, window_width);
    QFETCH(double, ratio);
    QFETCH(QList<int>, widths);
    QFETCH(QString, log);
    Overview_World world;
    plattform->window_width = window_width;
    plattform->ratio = ratio;
    Client_Overview *view = world.open();
    QCOMPARE(column_widths(view), widths);
    QVERIFY2(world.log.texts().contains(log), qPrintable(world.log.texts().join('\n')));
}

void tst_client_overview::header_names_the_columns()
{
    Overview_World world;
    Client_Overview *view = world.open();
    QCOMPARE(view->tree->columnCount(), 4);
    QStringList labels;
    for (int column = 0; column < 4; ++column)
        labels << view->tree->headerItem()->text(column);
    QCOMPARE(labels, QStringList({"", "Loudspeaker / Group", "Status", "Model"}));
}

void tst_client_overview::tree_font_is_three_points_above_that_of_its_header()
{
    const QFont original = QApplication::font();
    for (const int points : {9, 14}) {
        QFont font = original;
        font.setPointSize(points);
        QApplication::setFont(font);
        Overview_World world;
        const QString sheet = world.open()->tree->styleSheet();
        QApplication::setFont(original);
        QCOMPARE(sheet, QString("QTreeWidget { font-size: %1pt; }").arg(points + 3));
    }
}

void tst_client_overview::rows_and_icons_are_100_pixels_high()
{
    Overview_World world;
    Client_Overview *view = world.open_and_show();
    QCOMPARE(view->tree->iconSize(), QSize(100, 100));
    QCOMPARE(view->delegate.row_height, 100);
    QCOMPARE(view->tree->itemDelegate(), &view->delegate);
    world.add_record("Kitchen", std::make_unique<Virelo_Unknown>(255, "", "Kitchen"));
    view->update_tree_widget();
    QCOMPARE(view->tree->visualItemRect(Overview_World::row(0)).height(), 100);
}

void tst_client_overview::search_text_is_short_on_a_phone_data()
{
    QTest::addColumn<int>("device_class");
    QTest::addColumn<QString>("text");
    QTest::newRow("unset") << 0 << "<b>Searching Speakers...</b>";
    QTest::newRow("phone") << DEVICE_PHONE << "<b>Searching...</b>";
    QTest::newRow("tablet") << DEVICE_TABLET << "<b>Searching Speakers...</b>";
    QTest::newRow("desktop") << DEVICE_DESKTOP << "<b>Searching Speakers...</b>";
}

void tst_client_overview::search_text_is_short_on_a_phone()
{
    QFETCH(int, device_class);
    QFETCH(QString, text);
    Overview_World world(device_class);
    Client_Overview *view = world.open_and_show();
    QCOMPARE(view->status_label->text(), text);
    QVERIFY(view->spinner_label->isVisible());
}

void tst_client_overview::texts_come_from_the_german_catalogue()
{
    QTranslator german;
    QVERIFY(german.load("VIRELO_de_AT", ":/translations/"));
    QCoreApplication::installTranslator(&german);
    Overview_World world;
    Client_Overview *view = world.open();

    QStringList differing;
    const auto check = [&](const QString &shown, const char *source, bool translated) {
        const QString text = german.translate("Client_Overview", source);
        QVERIFY2(!text.isEmpty(), source);
        QCOMPARE(shown, text);
        if (translated)
            QVERIFY2(shown != source, source);
    };
    check(view->update_button->text(), "Update >>", false);
    check(view->group_button->text(), "Group >>", true);
    check(view->back_button->text(), "<< Back", true);
    check(view->wifi_button->text(), "WiFi >>", true);
    check(view->quit_button->text(), "Quit", true);
    check(view->hint_label->text(), "The Speakers and your device have to be in the same WLAN!", true);
    check(view->status_label->text(), "<b>Searching Speakers...</b>", true);
    check(view->tree->headerItem()->text(1), "Loudspeaker / Group", true);
    check(view->tree->headerItem()->text(2), "Status", false);
    check(view->tree->headerItem()->text(3), "Model", true);
}

void tst_client_overview::texts_come_from_the_english_catalogue()
{
    QTranslator english;
    QVERIFY(english.load("VIRELO_en_GB", ":/translations/"));
    QCoreApplication::installTranslator(&english);
    Overview_World world;
    Client_Overview *view = world.open();
    QCOMPARE(view->back_button->text(), QString("< Back"));
    QCOMPARE(view->quit_button->text(), QString("Quit"));
    QCOMPARE(view->status_label->text(), QString("<b>Searching Speakers...</b>")); // the catalogue lacks it
    QCOMPARE(view->tree->headerItem()->text(1), QString("Loudspeaker / Group"));
}

void tst_client_overview::buttons_start_disabled()
{
    Overview_World world;
    Client_Overview *view = world.open();
    QVERIFY(!view->update_button->isDefault()); // a window that shows looks for a default button of its own
    QCOMPARE(view->update_button->text(), QString("Update >>"));
    QCOMPARE(view->group_button->text(), QString("Group >>"));
    QCOMPARE(view->back_button->text(), QString("<< Back"));
    QCOMPARE(view->wifi_button->text(), QString("WiFi >>"));
    QCOMPARE(view->quit_button->text(), QString("Quit"));
    for (QPushButton *button :
         {view->update_button, view->group_button, view->back_button, view->wifi_button})
        QVERIFY2(!button->isEnabled(), qPrintable(button->text()));
    QVERIFY(view->quit_button->isEnabled());
}

void tst_client_overview::tree_has_the_focus_at_start()
{
    Overview_World world;
    Client_Overview view(nullptr); // in a tab widget the focus is what the main window makes of it
    QCOMPARE(view.focusWidget(), view.tree);
    QVERIFY(!view.wifi_button->hasFocus());
    delete view.zeroConf;
    overview = nullptr;
}

void tst_client_overview::quit_works_while_nothing_was_found()
{
    Overview_World world;
    Client_Overview *view = world.open_and_show();
    QCOMPARE(view->tree->topLevelItemCount(), 0);
    QTest::mouseClick(view->quit_button, Qt::LeftButton);
    QVERIFY(!client->isVisible());
}

void tst_client_overview::movie_runs_only_while_its_label_is_visible()
{
    Overview_World world;
    Client_Overview *view = world.open();
    QCOMPARE(view->spinner_label->movie(), view->spinner_movie);
    QCOMPARE(view->spinner_movie->fileName(), QString(":/GRAFX/ajax-loader.gif"));
    QVERIFY(view->spinner_movie->isValid());
    QCOMPARE(view->spinner_movie->state(), QMovie::Paused); // the window does not show yet

    client->show();
    QVERIFY(QTest::qWaitForWindowExposed(client));
    QCOMPARE(view->spinner_movie->state(), QMovie::Running);
    const int frame = view->spinner_movie->currentFrameNumber();
    QTRY_VERIFY(view->spinner_movie->currentFrameNumber() != frame);

    view->spinner_label->hide();
    QCOMPARE(view->spinner_movie->state(), QMovie::Paused);
    view->spinner_label->show();
    QCOMPARE(view->spinner_movie->state(), QMovie::Running);

    client->tabs->setCurrentIndex(client->tabs->addTab(new QWidget, "another"));
    QCOMPARE(view->spinner_movie->state(), QMovie::Paused);
    client->tabs->setCurrentIndex(0);
    QCOMPARE(view->spinner_movie->state(), QMovie::Running);

    client->hide();
    QCOMPARE(view->spinner_movie->state(), QMovie::Paused);
}

void tst_client_overview::movie_never_ends_by_itself()
{
    Overview_World world;
    Client_Overview *view = world.open();
    QCOMPARE(view->spinner_movie->loopCount(), -1);
    QVERIFY(view->spinner_movie->frameCount() > 1);
}

void tst_client_overview::wifi_button_follows_the_rows()
{
    Overview_World world;
    Client_Overview *view = world.open();
    view->wifi_button->setEnabled(true);
    view->enableNextButton();
    QVERIFY(!view->wifi_button->isEnabled());

    world.add_record("Kitchen", std::make_unique<Virelo_Unknown>(255, "", "Kitchen"));
    view->update_tree_widget();
    QVERIFY(!view->wifi_button->isEnabled()); // nothing but the slot enables it
    view->enableNextButton();
    QVERIFY(view->wifi_button->isEnabled());
    QVERIFY(!view->update_button->isEnabled());
    QVERIFY(!view->group_button->isEnabled());
}

void tst_client_overview::all_three_buttons_are_disabled_and_painted_at_once()
{
    Overview_World world;
    Client_Overview *view = world.open_and_show();
    const QList<QWidget *> buttons{view->update_button, view->group_button, view->wifi_button};
    for (QWidget *button : buttons)
        button->setEnabled(true);
    QCoreApplication::processEvents();

    Paint_Log log(buttons);
    view->disable_all_buttons();
    for (QWidget *button : buttons)
        QVERIFY(!button->isEnabled());
    QCOMPARE(log.painted, QList<QObject *>({view->update_button, view->group_button, view->wifi_button}));
    QVERIFY(view->quit_button->isEnabled());
}

void tst_client_overview::reload_disables_the_buttons_and_shows_the_busy_sign()
{
    Overview_World world;
    Client_Overview *view = world.open_and_show();
    const QList<QWidget *> buttons{view->update_button, view->group_button, view->wifi_button};
    for (QWidget *button : buttons)
        button->setEnabled(true);
    view->spinner_label->hide();

    view->ReloadClicked();
    for (QWidget *button : buttons)
        QVERIFY(!button->isEnabled());
    QVERIFY(view->spinner_label->isVisible());
}

void tst_client_overview::escape_does_not_blank_the_tab()
{
    Overview_World world;
    Client_Overview *view = world.open_and_show();
    QTest::keyClick(view->tree, Qt::Key_Escape);
    QVERIFY(view->isVisible());
    QVERIFY(view->tree->isVisible());
}

void tst_client_overview::members_without_use_are_there()
{
    Overview_World world;
    Client_Overview *view = world.open_and_show();
    QVERIFY(!view->spare_timer.isActive());
    QVERIFY(view->spare_list.isEmpty());
}

QTEST_MAIN(tst_client_overview)
#include "tst_client_overview.moc"
