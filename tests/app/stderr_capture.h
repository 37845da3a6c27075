// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QTemporaryFile>

// Sends everything written to descriptor 2 into a file while it lives. One at a time.
class Stderr_Capture
{
public:
    Stderr_Capture();
    ~Stderr_Capture();
    Stderr_Capture(const Stderr_Capture &) = delete;
    Stderr_Capture &operator=(const Stderr_Capture &) = delete;

    QByteArray written(); // all of it so far

private:
    QTemporaryFile file;
    int saved;
};
