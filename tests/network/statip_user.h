// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>
#include <QTest>

#include "app/globals.h"
#include "device/device_desc.h"
#include "network/client_conf_statip.h"
#include "tests/network/wlan_world.h"

// Reads and works the dialog of the static address as its user does.

// Opens it for the world's record, as the WLAN settings do.
inline Client_Conf_StatIP *open_statip(const Wlan_World &world)
{
    conf_statip_dialog = new Client_Conf_StatIP(world.record, nullptr);
    conf_statip_dialog->show();
    if (!QTest::qWaitForWindowExposed(conf_statip_dialog))
        qFatal("the dialog does not show");
    return conf_statip_dialog;
}

inline QList<QLineEdit *> edits_of(const Client_Conf_StatIP *dialog)
{
    return {dialog->ip_edit,     dialog->netmask_edit, dialog->gateway_edit,
            dialog->domain_edit, dialog->dns1_edit,    dialog->dns2_edit};
}

inline QStringList texts_of(const Client_Conf_StatIP *dialog)
{
    QStringList texts;
    for (const QLineEdit *edit : edits_of(dialog))
        texts += edit->text();
    return texts;
}

inline void type_over(QLineEdit *edit, const QString &text)
{
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

// Address, netmask, broadcast, gateway, domain and name servers.
inline QStringList stored_in(const Device_Desc *record)
{
    return {record->static_ip,     record->static_netmask, record->static_broadcast, record->static_gateway,
            record->static_domain, record->static_dns1,    record->static_dns2};
}

inline void click(QWidget *widget)
{
    // A radio button hears clicks on its sign and text alone, which stand on its left.
    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, QPoint(8, widget->height() / 2));
}
