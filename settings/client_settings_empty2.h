// SPDX-License-Identifier: MIT
#pragma once

#include "settings/client_settings.h"

class QGridLayout;

// A test piece for layouts with fixed texts. Nothing opens it, which is meant. GUI thread only.
class Client_Settings_Empty2 : public Client_Settings
{
    Q_OBJECT

public:
    Client_Settings_Empty2(Client *client, Virelos *control);

    QGridLayout *grid;
};
