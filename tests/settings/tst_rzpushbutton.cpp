// SPDX-License-Identifier: MIT
#include <QInputMethod>
#include <QtTest>

#include "app/globals.h"
#include "settings/rzpushbutton.h"
#include "tests/fakes/log_capture.h"

class tst_rzpushbutton : public QObject
{
    Q_OBJECT

private slots:
    void init() { input_query_seen = false; }
    void starts_unheld_with_its_text();
    void a_query_reports_a_hold_and_answers_true();
    void held_is_set_after_the_signal_and_the_global_flag_before_it();
    void a_second_query_reports_again_and_held_stays();
    void a_query_is_logged();
    void the_platform_reaches_the_query_by_name();
    void the_query_of_one_argument_stays_that_of_the_push_button();
    void a_click_is_no_hold();
};

void tst_rzpushbutton::starts_unheld_with_its_text()
{
    QWidget parent;
    RZPushButton button("Quit", &parent);
    QCOMPARE(button.text(), QString("Quit"));
    QCOMPARE(button.parentWidget(), &parent);
    QVERIFY(!button.held);
}

void tst_rzpushbutton::a_query_reports_a_hold_and_answers_true()
{
    RZPushButton button("Quit", nullptr);
    QSignalSpy hold(&button, SIGNAL(Hold()));
    const QVariant answer = button.inputMethodQuery(Qt::ImEnabled, QVariant(7));
    QCOMPARE(answer, QVariant(true));
    QCOMPARE(answer.type(), QVariant::Bool);
    QCOMPARE(hold.count(), 1);
    QVERIFY(button.held);
    QVERIFY(input_query_seen);
}

void tst_rzpushbutton::held_is_set_after_the_signal_and_the_global_flag_before_it()
{
    RZPushButton button("Quit", nullptr);
    bool held_then = true;
    bool seen_then = false;
    connect(&button, &RZPushButton::Hold, this, [&] {
        held_then = button.held;
        seen_then = input_query_seen;
    });
    button.inputMethodQuery(Qt::ImEnabled, QVariant());
    QVERIFY(!held_then);
    QVERIFY(seen_then);
}

void tst_rzpushbutton::a_second_query_reports_again_and_held_stays()
{
    RZPushButton button("Quit", nullptr);
    QSignalSpy hold(&button, SIGNAL(Hold()));
    button.inputMethodQuery(Qt::ImEnabled, QVariant());
    button.inputMethodQuery(Qt::ImHints, QVariant());
    QCOMPARE(hold.count(), 2);
    QVERIFY(button.held);
}

void tst_rzpushbutton::a_query_is_logged()
{
    RZPushButton button("Quit", nullptr);
    Log_Capture log;
    button.inputMethodQuery(Qt::ImEnabled, QVariant(7));
    QCOMPARE(log.debug_lines().size(), 3);
    QCOMPARE(log.debug_lines().at(0),
             QString("******************\n"
                     "RZPushButton::inputMethodQuery(Qt::InputMethodQuery query, QVariant var)"));
    QVERIFY2(log.debug_lines().at(1).startsWith("query") && log.debug_lines().at(1).contains("ImEnabled"),
             qPrintable(log.debug_lines().at(1)));
    QVERIFY2(log.debug_lines().at(2).startsWith("variant") && log.debug_lines().at(2).contains("7"),
             qPrintable(log.debug_lines().at(2)));
}

void tst_rzpushbutton::the_platform_reaches_the_query_by_name()
{
    RZPushButton button("Quit", nullptr);
    button.show();
    button.activateWindow();
    button.setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&button));
    QTRY_COMPARE(QGuiApplication::focusObject(), &button);

    QSignalSpy hold(&button, SIGNAL(Hold()));
    QCOMPARE(QInputMethod::queryFocusObject(Qt::ImCursorPosition, QPointF(1, 2)), QVariant(true));
    QCOMPARE(hold.count(), 1);
}

void tst_rzpushbutton::the_query_of_one_argument_stays_that_of_the_push_button()
{
    const RZPushButton button("Quit", nullptr);
    const QPushButton plain("Quit");
    QCOMPARE(button.inputMethodQuery(Qt::ImEnabled), plain.inputMethodQuery(Qt::ImEnabled));
    QVERIFY(!input_query_seen);
}

void tst_rzpushbutton::a_click_is_no_hold()
{
    RZPushButton button("Quit", nullptr);
    QSignalSpy hold(&button, SIGNAL(Hold()));
    QSignalSpy clicked(&button, SIGNAL(clicked()));
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(hold.count(), 0);
    QVERIFY(!button.held);
}

QTEST_MAIN(tst_rzpushbutton)
#include "tst_rzpushbutton.moc"
