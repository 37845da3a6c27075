// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class Client;
class Virelos;

// Base of every tab that shows one speaker or one group: it remembers the control object. A tab never speaks
// to the speaker: it stores wanted values in the control object, whose worker sends what changed, and it
// shows those wanted values as they stood at construction or refresh. Signals are connected last in a
// constructor, so that setting the initial values sends nothing.
//
// GUI thread only. A tab gets its parent when the main window adds it, and lives until the program ends.
class Client_Settings : public QWidget
{
    Q_OBJECT

public:
    // `control` may be null. `client` is not kept, which is meant.
    Client_Settings(Client *client, Virelos *control);

    Virelos *control; // what the tab was opened for; null for a tab built before any speaker is known
};
