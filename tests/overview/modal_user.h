// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QInputDialog>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <functional>

// Answers the next modal box as a user would, and tells whether there was one. GUI thread only.
template<class Box>
class Modal_User
{
public:
    explicit Modal_User(const std::function<void(Box *)> &answer)
    {
        QObject::connect(&timer, &QTimer::timeout, [this, answer] {
            if (auto *box = qobject_cast<Box *>(QApplication::activeModalWidget())) {
                timer.stop();
                met = true;
                answer(box);
            }
        });
        timer.start(1);
    }
    bool met = false;

private:
    QTimer timer;
};

// Types `name` over the one that is proposed, and confirms.
inline void type_name(QInputDialog *box, const QString &name)
{
    auto *line = box->findChild<QLineEdit *>();
    line->selectAll();
    if (name.isEmpty())
        QTest::keyClick(line, Qt::Key_Delete);
    else
        QTest::keyClicks(line, name);
    QTest::keyClick(line, Qt::Key_Return);
}
