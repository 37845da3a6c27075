// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <memory>

#include "control/virelos.h"

// The test functions that a group and a cell have in common: what is asked of them reaches every listed
// speaker. A test program derives from it, and so runs them with its own.
class Fan_Out_Test : public QObject
{
    Q_OBJECT

private:
    virtual std::unique_ptr<Virelos> make() const = 0;   // the object under test
    virtual int &own_volume(Virelos &control) const = 0; // the volume that it keeps

    std::unique_ptr<Virelos> control; // a new one for each test function

private Q_SLOTS:
    void init();
    void cleanup();

    void slots_stand_in_their_order();
    void every_operation_reaches_all_in_the_order_of_the_list();
    void a_volume_is_clamped_before_it_is_passed_on_data();
    void a_volume_is_clamped_before_it_is_passed_on();
    void a_change_is_passed_on_as_an_absolute_volume_data();
    void a_change_is_passed_on_as_an_absolute_volume();
    void an_empty_list_stores_the_volume();
    void a_record_without_control_is_passed_over();
    void slots_call_the_operations();
    void a_list_that_changes_meanwhile_is_walked_as_it_was();
    void a_pass_serves_all_wakes();
};
