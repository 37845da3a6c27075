// SPDX-License-Identifier: MIT
#pragma once

#include "settings/client_settings.h"

class QGridLayout;
class Virelo_Sub;

// The place laid out for three stored set-ups of a subwoofer. A layout only: its buttons are connected to
// nothing and no profile is kept anywhere, which is meant. `sub` may be null. GUI thread only.
class Client_Settings_Sub_Profiles : public Client_Settings
{
    Q_OBJECT

public:
    Client_Settings_Sub_Profiles(Client *client, Virelo_Sub *sub);

    Virelo_Sub *sub; // stored, never used
    QGridLayout *grid;
};
