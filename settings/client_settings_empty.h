// SPDX-License-Identifier: MIT
#pragma once

#include "settings/client_settings.h"

class QGridLayout;

// The tab of a speaker whose type is not known. `control` may be null: it is never looked at. GUI thread
// only.
class Client_Settings_Empty : public Client_Settings
{
    Q_OBJECT

public:
    Client_Settings_Empty(Client *client, Virelos *control);

    QGridLayout *grid;
};
