// SPDX-License-Identifier: MIT
#include "tests/app/stderr_capture.h"

#include <QFile>
#include <cstdio>
#include <unistd.h>

Stderr_Capture::Stderr_Capture()
{
    if (!file.open())
        qFatal("no temporary file");
    std::fflush(stderr);
    saved = dup(STDERR_FILENO);
    dup2(file.handle(), STDERR_FILENO);
}

Stderr_Capture::~Stderr_Capture()
{
    std::fflush(stderr);
    dup2(saved, STDERR_FILENO);
    close(saved);
}

QByteArray Stderr_Capture::written()
{
    std::fflush(stderr);
    QFile reader(file.fileName());
    if (!reader.open(QIODevice::ReadOnly))
        qFatal("the capture cannot be read");
    return reader.readAll();
}
