// SPDX-License-Identifier: MIT
//
// The least that a program with a window of this kind can be: the peer of bench_start.
#include <QApplication>
#include <QDialog>
#include <QTabWidget>
#include <QVBoxLayout>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QDialog dialog;
    dialog.resize(726, 660); // the size of the program's own
    auto *layout = new QVBoxLayout(&dialog);
    layout->addWidget(new QTabWidget);
    dialog.show();
    return QApplication::exec();
}
