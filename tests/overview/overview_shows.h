// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <memory>

#include "control/virelos.h"
#include "zeroconf/qzeroconfservice.h"

class Overview_World;

// What the open overview shows and the list holds, for comparison. GUI thread only.

constexpr quint16 closed_port = 9; // nothing listens on it at a test's own loopback addresses

QStringList listed_names(); // of device_list
QStringList row_names();    // at top level of the tree
QString label();            // of the search
int in_flight();            // activities of all records

// The line that is logged of a service, behind its first words.
QString logged_service(const char *words, const QZeroConfService &service);

std::unique_ptr<Virelos> control_of_type(int type); // a control object that only says what it is

// Rows of "name", "address", "port" and whether that is one of the two records that add_known_records adds.
void add_known_and_unknown_rows();
void add_known_records(Overview_World &world);
