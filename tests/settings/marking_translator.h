// SPDX-License-Identifier: MIT
#pragma once

#include <QTranslator>

// Answers each text of one context with "#" in front of it, so that a test sees which texts ask for a
// translation, and in which context.
class Marking_Translator : public QTranslator
{
public:
    explicit Marking_Translator(const QByteArray &context)
        : wanted(context)
    {
    }

    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return wanted == context ? QString("#") + text : QString();
    }

private:
    QByteArray wanted;
};
