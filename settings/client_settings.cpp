// SPDX-License-Identifier: MIT
#include "settings/client_settings.h"

Client_Settings::Client_Settings(Client *, Virelos *control)
    : control(control)
{
}
