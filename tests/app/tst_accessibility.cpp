// SPDX-License-Identifier: MIT
#include <QAccessible>
#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTranslator>
#include <memory>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "tests/app/view_world.h"
#include "tests/settings/grid_probe.h"

namespace
{
// What assistive technology is told, from the outermost widget down.
QList<QAccessibleInterface *> all_below(QAccessibleInterface *root)
{
    QList<QAccessibleInterface *> found{root};
    for (int index = 0; index < root->childCount(); ++index)
        if (QAccessibleInterface *child = root->child(index))
            found += all_below(child);
    return found;
}

QList<QAccessibleInterface *> all_in(QWidget *view)
{
    return all_below(QAccessible::queryAccessibleInterface(view));
}

bool can_be_operated(const QAccessibleInterface *told)
{
    const QAccessible::State state = told->state();
    return state.focusable && !state.invisible;
}

// The texts that stand in front of it.
QStringList captions_of(const QAccessibleInterface *told)
{
    QStringList captions;
    for (const auto &relation : told->relations(QAccessible::Label))
        captions += relation.first->text(QAccessible::Name);
    return captions;
}

QString description(const QAccessibleInterface *told)
{
    const QObject *object = told->object();
    return QString("%1 role %2 '%3'")
        .arg(object ? object->metaObject()->className() : "cell")
        .arg(told->role())
        .arg(told->text(QAccessible::Value));
}

// The other views stand alike on every class of device.
const QStringList laid_out_by_class = {"overview", "hood", "air", "sub", "wlans", "wlan settings", "update"};

// Captions of texts, which nobody operates.
const QStringList captions_of_texts = {
    "Speaker:", "Device:", "Selected Group:", "Selected Input (at Kitchen):",
    "Master:",  "Group:",  "Version:"};
} // namespace

// What people learn of the program, and how they get about in it, who do not see the window or use no mouse:
// every view, on every class of device.
class tst_accessibility : public QObject
{
    Q_OBJECT

private slots:
    void every_control_has_a_name_data() { add_views(); }
    void every_control_has_a_name();
    void names_are_german_in_german();
    void every_caption_belongs_to_its_control_data() { add_views(); }
    void every_caption_belongs_to_its_control();
    void tab_goes_by_rows_to_every_control_data() { add_views(); }
    void tab_goes_by_rows_to_every_control();
    void the_focus_can_be_seen_data() { add_views(); }
    void the_focus_can_be_seen();
    void focus_and_default_button_at_start_data();
    void focus_and_default_button_at_start();

private:
    static void add_views();
};

void tst_accessibility::add_views()
{
    QTest::addColumn<QString>("view");
    QTest::addColumn<int>("device_class");
    for (const QString &view : View_World::views())
        for (const int device_class : {0, DEVICE_PHONE, DEVICE_TABLET})
            if (device_class == 0 || laid_out_by_class.contains(view))
                QTest::addRow("%s, class %d", qPrintable(view), device_class) << view << device_class;
}

void tst_accessibility::every_control_has_a_name()
{
    QFETCH(QString, view);
    QFETCH(int, device_class);
    View_World world(device_class, true);
    int controls = 0;
    QStringList nameless;
    for (const QAccessibleInterface *told : all_in(world.open(view)->window())) {
        if (!can_be_operated(told))
            continue;
        ++controls;
        // A combo tells its current entry as the name, and what it is for by its caption.
        const QString name = told->role() == QAccessible::ComboBox ? captions_of(told).join(' ')
                                                                   : told->text(QAccessible::Name);
        if (name.trimmed().isEmpty() || (name.contains('<') && name != "<< Back"))
            nameless += description(told);
    }
    QCOMPARE(nameless, QStringList());
    QVERIFY(controls > 0);
}

void tst_accessibility::names_are_german_in_german()
{
    QTranslator german;
    QVERIFY(german.load("VIRELO_de_DE", ":/translations/"));
    QCoreApplication::installTranslator(&german);
    View_World world;
    QStringList names;
    for (const QAccessibleInterface *told : all_in(world.open("group")))
        if (told->role() == QAccessible::Slider || told->role() == QAccessible::Dial)
            names += told->text(QAccessible::Name);
    QCOMPARE(names, QStringList({"Lautstärke", "Lautstärke"}));
}

void tst_accessibility::every_caption_belongs_to_its_control()
{
    QFETCH(QString, view);
    QFETCH(int, device_class);
    View_World world(device_class, true);
    for (const QLabel *label : world.open(view)->findChildren<QLabel *>()) {
        const bool caption = label->text().endsWith(':') || label->text().endsWith(": *");
        if (!caption || captions_of_texts.contains(label->text()))
            continue;
        QVERIFY2(label->buddy(), qPrintable(label->text()));
        QVERIFY(!label->text().contains('&')); // else a buddy would make a letter of the text vanish
        const QAccessibleInterface *told = QAccessible::queryAccessibleInterface(label->buddy());
        QCOMPARE(captions_of(told), QStringList(label->text()));
    }
}

// Where the widget's place begins, outermost first.
static QList<int> place_in(const QWidget *view, QWidget *widget)
{
    if (widget->parentWidget() != view) {
        const QPoint within = widget->pos();
        return place_in(view, widget->parentWidget()) + QList<int>{within.y(), within.x()};
    }
    return place_of(qobject_cast<QGridLayout *>(view->layout()), widget).mid(0, 2);
}

// By the key itself, all the way round.
static QList<QWidget *> tab_round(QWidget *window)
{
    QList<QWidget *> visited;
    QWidget *const start = window->focusWidget();
    do {
        QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
        if (visited.contains(window->focusWidget()))
            return {}; // it never comes back to the start
        visited.append(window->focusWidget());
    } while (visited.last() != start);
    return visited;
}

// Of buttons that exclude each other one is reached, and from there the others by the arrows.
static bool is_one_of_many(const QWidget *widget)
{
    const auto *button = qobject_cast<const QAbstractButton *>(widget);
    return button && button->autoExclusive() && button->isCheckable();
}

void tst_accessibility::tab_goes_by_rows_to_every_control()
{
    QFETCH(QString, view);
    QFETCH(int, device_class);
    View_World world(device_class, true);
    QWidget *const shown = world.open(view);
    const QList<QWidget *> round = tab_round(shown->window());
    QVERIFY(!round.isEmpty());

    QList<QWidget *> wanted;
    for (QWidget *widget : shown->findChildren<QWidget *>()) {
        const bool part = widget->parentWidget() != shown && !widget->parentWidget()->layout();
        const bool operated =
            widget->isVisible() && widget->isEnabled() && widget->focusPolicy() != Qt::NoFocus;
        if (operated && !part && (!is_one_of_many(widget) || round.contains(widget)))
            wanted.append(widget);
    }
    QList<QWidget *> visited;
    int excluding = 0;
    for (QWidget *widget : round) {
        if (shown->isAncestorOf(widget))
            visited.append(widget);
        excluding += is_one_of_many(widget);
    }
    QCOMPARE(excluding, view == "group" || view == "update" || view.contains("address") ? 1 : 0);

    // The round began wherever the focus was: it is turned to begin where the view does.
    const auto before = [shown](QWidget *left, QWidget *right) {
        return place_in(shown, left) < place_in(shown, right);
    };
    std::rotate(visited.begin(), std::min_element(visited.begin(), visited.end(), before), visited.end());
    std::stable_sort(wanted.begin(), wanted.end(), before);
    QCOMPARE(visited, wanted);
}

void tst_accessibility::the_focus_can_be_seen()
{
    QFETCH(QString, view);
    QFETCH(int, device_class);
    View_World world(device_class, true);
    QWidget *const window = world.open(view)->window();
    const int count = tab_round(window).size();
    for (int i = 0; i < count; ++i) {
        QWidget *const focus = window->focusWidget();
        const QImage with = focus->grab().toImage();
        QTest::keyClick(focus, Qt::Key_Tab);
        // Some styles show the default button as they show the focus, and a lone tab has nothing to show.
        if (!qobject_cast<QPushButton *>(focus) && !qobject_cast<QTabBar *>(focus))
            QVERIFY2(focus->grab().toImage() != with, focus->metaObject()->className());
    }
}

void tst_accessibility::focus_and_default_button_at_start_data()
{
    QTest::addColumn<QString>("view");
    QTest::addColumn<QString>("focus");
    QTest::addColumn<QString>("default_button");
    QTest::newRow("overview") << "overview"
                              << "Air Selection / Setup"
                              << "Update >>";
    QTest::newRow("group dialog") << "group dialog"
                                  << "Other Air Speakers:"
                                  << "<< Back";
    QTest::newRow("wlans") << "wlans"
                           << "Select WLAN"
                           << "Next >>";
    QTest::newRow("wlan settings") << "wlan settings"
                                   << "Name:"
                                   << "SAVE";
    QTest::newRow("address by dhcp") << "address by dhcp"
                                     << "DHCP"
                                     << "SAVE";
    QTest::newRow("static address") << "static address"
                                    << "DHCP"
                                    << "SAVE";
    QTest::newRow("update") << "update"
                            << "WiFi"
                            << "Check";
}

// The order of the keyboard has a say in both.
void tst_accessibility::focus_and_default_button_at_start()
{
    QFETCH(QString, view);
    QFETCH(QString, focus);
    QFETCH(QString, default_button);
    View_World world;
    const QWidget *const window = world.open(view)->window();
    const QAccessibleInterface *told = QAccessible::queryAccessibleInterface(window->focusWidget());
    QCOMPARE(told->text(QAccessible::Name), focus);
    QStringList defaults;
    for (const QPushButton *button : window->findChildren<QPushButton *>())
        if (button->isDefault())
            defaults += button->text();
    QCOMPARE(defaults, QStringList(default_button));
}

QTEST_MAIN(tst_accessibility)
#include "tst_accessibility.moc"
