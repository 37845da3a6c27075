// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <climits>
#include <cmath>
#include <functional>
#include <type_traits>
#include <utility>
#include <vector>

// One key of a JSON object, and where its value goes: a row of the tables by which scenes are read. Pure; any
// thread.
template<class Target>
struct Json_Key {
    QString name;
    QString kind; // what it takes, as "a text"
    QString help;
    // False where the value is not of that kind; a reason that is left empty is then made of the kind.
    std::function<bool(const QJsonValue &, Target &, QString &reason)> read;
};

template<class Target>
using Json_Keys = std::vector<Json_Key<Target>>;

// Makers of such rows. place gives the field of the target that is meant.
template<class Target>
struct Json_Row {
    template<class Place>
    static Json_Key<Target> text(const char *name, Place place, const char *help)
    {
        return {name, "a text", help, [place](const QJsonValue &value, Target &target, QString &) {
                    place(target) = value.toString();
                    return value.isString();
                }};
    }

    template<class Place>
    static Json_Key<Target> yes_no(const char *name, Place place, const char *help)
    {
        return {name, "true or false", help, [place](const QJsonValue &value, Target &target, QString &) {
                    place(target) = value.toBool();
                    return value.isBool();
                }};
    }

    // A whole one, unless the field holds fractions.
    template<class Place>
    static Json_Key<Target> number(const char *name, Place place, int low, int high, const char *help)
    {
        using Field = std::decay_t<decltype(place(std::declval<Target &>()))>;
        constexpr bool whole = std::is_integral_v<Field>;
        const QString kind =
            QString(whole ? "a whole number from %1%2" : "a number from %1%2")
                .arg(QString::number(low), high == INT_MAX ? " up" : QString(" to %1").arg(high));
        return {name, kind, help, [place, low, high](const QJsonValue &value, Target &target, QString &) {
                    const double number = value.toDouble(std::nan(""));
                    if (!(number >= low && number <= high) || (whole && number != std::floor(number)))
                        return false;
                    place(target) = static_cast<Field>(number);
                    return true;
                }};
    }

    template<class Place>
    static Json_Key<Target> texts(const char *name, Place place, const char *help)
    {
        return {name, "an object of texts", help,
                [place](const QJsonValue &value, Target &target, QString &) {
                    const QJsonObject object = value.toObject();
                    bool all_texts = value.isObject();
                    for (auto entry = object.begin(); entry != object.end(); ++entry) {
                        place(target).insert(entry.key(), entry.value().toString());
                        all_texts = all_texts && entry.value().isString();
                    }
                    return all_texts;
                }};
    }
};

// Reads an object by its keys. False, with the reason, where it is none or one of its keys is refused or in
// no row.
template<class Target>
bool read_json_keys(const QJsonValue &value, const Json_Keys<Target> &keys, Target &target, QString &reason)
{
    if (!value.isObject()) {
        reason = "wants an object";
        return false;
    }
    const QJsonObject object = value.toObject();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        QString why = "is not known";
        bool good = false;
        for (const Json_Key<Target> &key : keys) {
            if (key.name != entry.key())
                continue;
            why.clear();
            good = key.read(entry.value(), target, why);
            if (why.isEmpty())
                why = "wants " + key.kind;
        }
        if (!good) {
            reason = QString("\"%1\" %2").arg(entry.key(), why);
            return false;
        }
    }
    return true;
}

// One line for each key, for who writes such an object.
template<class Target>
QStringList json_keys_help(const Json_Keys<Target> &keys)
{
    QStringList lines;
    for (const Json_Key<Target> &key : keys)
        lines += QString("  %1 %2 (%3)").arg(key.name.leftJustified(16), key.help, key.kind);
    return lines;
}
