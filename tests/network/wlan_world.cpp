// SPDX-License-Identifier: MIT
#include "tests/network/wlan_world.h"

#include <QApplication>
#include <QDebug>
#include <QMetaMethod>

#include "app/globals.h"
#include "network/client_conf.h"
#include "network/client_conf_statip.h"
#include "network/client_wlans.h"
#include "simulator/loopback.h"

namespace
{
template<class Dialog>
void delete_all(Dialog *&last)
{
    QList<Dialog *> dialogs; // gathered first: a dialog may take another top-level widget along
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (auto *dialog = qobject_cast<Dialog *>(widget))
            dialogs << dialog;
    qDeleteAll(dialogs);
    last = nullptr;
}
} // namespace

Wlan_World::Wlan_World(int device_class)
    : start_up(device_class)
    , peer(QHostAddress(own_loopback(1)))
    , record(start_up.add_record("Kitchen", nullptr))
{
    if (!peer.isListening())
        qFatal("%s", qPrintable(peer.errorString()));
    peer.point_at_me(*record);
    record->model = "VIRELO Air";
    record->ssid = "VIRELO-0015";
    record->mac = "02:00:00:00:00:15";
    record->firmware = "1.4.2";
}

Wlan_World::~Wlan_World()
{
    delete_all(wlans_dialog);
    delete_all(conf_dialog);
    delete_all(conf_statip_dialog);
}

QString reply_line(const char *words, const QString &text)
{
    QString line;
    QDebug(&line).nospace() << words << " " << text;
    return line;
}

QStringList own_methods(const QMetaObject &meta)
{
    QStringList methods;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        const QMetaMethod method = meta.method(index);
        const QString access = method.access() == QMetaMethod::Private ? "private " : "";
        methods.append(access + method.typeName() + ' ' + method.methodSignature());
    }
    return methods;
}
