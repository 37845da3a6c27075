// SPDX-License-Identifier: MIT
#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    (void)application;
    return 0;
}
