// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Values of rzplattform::device_class. An unset class (0) gives the desktop layout.
constexpr int DEVICE_PHONE = 1;
constexpr int DEVICE_TABLET = 2;
constexpr int DEVICE_DESKTOP = 3;

// Measures the first screen once, and classes the device as phone, tablet or desktop. Made on the GUI thread
// after the application object, so that screens exist; layout code reads the fields directly, and nothing
// changes them later.
class rzplattform
{
public:
    rzplattform();

    // The lower-case word of the system that this program was built for: "linux", "windows", "macos",
    // "android", "ios".
    static QString os_name();

    // Suits the process to the program; called once, before the application object is made. What the system
    // refuses stays as it was. Descriptors: each speaker takes five, and up to a dozen more while it is
    // identified, so where a process starts with 1024, as is usual, a house of 200 would run out of them.
    // OpenGL: the program draws without it, and to load it would be half of its start and of its memory; who
    // has set the variable has his way.
    static void set_up_process();

    // Hands back to the system what is free but kept for later use, where the system's library keeps it.
    // Takes some milliseconds: for the end of a burst of work. Any thread.
    static void give_memory_back();

    double physical_width = 0;  // mm
    double physical_height = 0; // mm
    double dpi = 0;             // physical dots per inch
    double diagonal = 0;        // inches, estimated from the physical size; 0 where the screen reports none
    double ratio = 0;           // device pixels per logical pixel
    int desktop_width = 0;      // device pixels, whole screen
    int desktop_height = 0;
    int available_width = 0; // device pixels, without panels and docks
    int available_height = 0;
    int window_width = 0; // pixels, start size of the main window on every class
    int window_height = 0;
    int device_class = 0; // 0 unset, or one of the constants above

private:
    void measure_screen();
};

// The class of a device on a system with that word, from its width in device pixels and its diagonal in
// inches; logs which rule decided. Apart from any real screen, so that each rule can be tested.
int classify_device(const QString &os_word, int desktop_width, double diagonal);
