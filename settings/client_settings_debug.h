// SPDX-License-Identifier: MIT
#pragma once

#include "settings/client_settings.h"

class QGridLayout;

// The tab of the log console, made when the debug setting was on at start. It shows the global debug_console,
// which its layout takes as a child. GUI thread only.
class Client_Settings_Debug : public Client_Settings
{
    Q_OBJECT

public:
    explicit Client_Settings_Debug(Client *client);
    ~Client_Settings_Debug() override;

    QGridLayout *grid;
};
