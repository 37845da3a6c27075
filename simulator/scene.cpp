// SPDX-License-Identifier: MIT
#include "simulator/scene.h"

#include <QDir>
#include <QFile>
#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <functional>

namespace
{
// A handler of one key: false with a reason where the value is not one of its kind.
template<class Target>
struct Key {
    const char *name;
    std::function<bool(const QJsonValue &, Target &, QString &)> read;
};

bool wants(bool fits, const char *kind, QString &reason)
{
    if (!fits)
        reason = QString("wants ") + QLatin1String(kind);
    return fits;
}

template<class Target>
Key<Target> text_key(const char *name, QString Target::*field)
{
    return {name, [field](const QJsonValue &value, Target &target, QString &reason) {
                target.*field = value.toString();
                return wants(value.isString(), "a text", reason);
            }};
}

template<class Target, class Number>
Key<Target> number_key(const char *name, Number Target::*field, double minimum, double maximum)
{
    return {name, [=](const QJsonValue &value, Target &target, QString &reason) {
                const double number = value.toDouble();
                target.*field = static_cast<Number>(number);
                return wants(value.isDouble() && number >= minimum && number <= maximum,
                             "a number in its range", reason);
            }};
}

template<class Target>
Key<Target> bool_key(const char *name, bool Target::*field)
{
    return {name, [field](const QJsonValue &value, Target &target, QString &reason) {
                target.*field = value.toBool();
                return wants(value.isBool(), "true or false", reason);
            }};
}

template<class Target>
Key<Target> texts_key(const char *name, QMap<QString, QString> Target::*field)
{
    return {name, [field](const QJsonValue &value, Target &target, QString &reason) {
                const QJsonObject object = value.toObject();
                bool texts = value.isObject();
                for (auto entry = object.begin(); entry != object.end(); ++entry) {
                    (target.*field)[entry.key()] = entry.value().toString();
                    texts = texts && entry.value().isString();
                }
                return wants(texts, "an object of texts", reason);
            }};
}

// Reads the object by its keys, and refuses one that is not in the table.
template<class Target>
bool read_keys(const QJsonObject &object, const std::vector<Key<Target>> &keys, Target &target,
               QString &error)
{
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        QString reason = "is not known";
        bool read = false;
        for (const Key<Target> &key : keys)
            if (entry.key() == QLatin1String(key.name))
                read = key.read(entry.value(), target, reason);
        if (!read) {
            error = QString("\"%1\" %2").arg(entry.key(), reason);
            return false;
        }
    }
    return true;
}

constexpr double port_max = 65535;
constexpr double int_max = 2147483647;

bool read_network(const QJsonValue &value, Wlan_Network &network, QString &error)
{
    static const std::vector<Key<Wlan_Network>> keys = {
        text_key("ssid", &Wlan_Network::ssid),
        text_key("encrypt_type", &Wlan_Network::encrypt_type),
        text_key("signal_level", &Wlan_Network::signal_level),
        text_key("password", &Wlan_Network::password),
    };
    return read_keys(value.toObject(), keys, network, error);
}

bool read_networks(const QJsonValue &value, Speaker_Config &config, QString &reason)
{
    for (const QJsonValue entry : value.toArray()) {
        Wlan_Network network;
        if (!read_network(entry, network, reason))
            return false;
        config.networks.append(network);
    }
    return wants(value.isArray(), "a list of networks", reason);
}

bool read_faults(const QJsonValue &value, Speaker_Faults &faults, QString &reason)
{
    const QJsonObject object = value.toObject();
    for (auto entry = object.begin(); entry != object.end(); ++entry)
        if (!set_fault(faults, entry.key(), entry.value().toString(), &reason))
            return false;
    return wants(value.isObject(), "an object of texts", reason);
}

const std::vector<Key<Speaker_Config>> &config_keys()
{
    using C = Speaker_Config;
    static const std::vector<Key<C>> keys = {
        text_key("address", &C::address),
        number_key("http_port", &C::http_port, 0, port_max),
        text_key("host_name", &C::host_name),
        text_key("service_type", &C::service_type),
        texts_key("txt", &C::txt),
        text_key("name", &C::name),
        number_key("type", &C::type, 0, int_max),
        text_key("cell", &C::cell),
        texts_key("values", &C::values),
        number_key("flash_answer_ms", &C::flash_answer_ms, -1, int_max),
        text_key("flash_answer", &C::flash_answer),
        text_key("model", &C::model),
        text_key("firmware", &C::firmware),
        text_key("hardware", &C::hardware),
        text_key("wlan_mode", &C::wlan_mode),
        text_key("ssid", &C::ssid),
        text_key("mac", &C::mac),
        number_key("signal", &C::signal, -int_max, int_max),
        number_key("channelwidth", &C::channelwidth, 0, int_max),
        number_key("bitrate", &C::bitrate, 0, int_max),
        bool_key("sender_enabled", &C::sender_enabled),
        number_key("sender_state", &C::sender_state, -1, int_max),
        number_key("sender_mode", &C::sender_mode, 0, int_max),
        text_key("sender_uuid", &C::sender_uuid),
        text_key("groupname", &C::groupname),
        number_key("receiver_state", &C::receiver_state, 0, int_max),
        text_key("receiver_sender", &C::receiver_sender),
        {"networks", read_networks},
        number_key("upgrade_polls", &C::upgrade_polls, 0, int_max),
    };
    return keys;
}

bool read_speaker(const QJsonObject &object, Scene::Speaker &speaker, QString &error)
{
    QJsonObject config = object;
    const QJsonValue faults = config.take("faults");
    const QJsonValue present = config.take("present");
    if (!read_keys(config, config_keys(), speaker.config, error))
        return false;
    if (QHostAddress(speaker.config.address).protocol() != QAbstractSocket::IPv4Protocol) {
        error = QString("\"%1\" is no address").arg(speaker.config.address);
        return false;
    }
    speaker.present = present.toBool(true);
    if (!present.isUndefined() && !wants(present.isBool(), "true or false for \"present\"", error))
        return false;
    return faults.isUndefined() || read_faults(faults, speaker.faults, error);
}

bool read_download(const QJsonValue &value, Scene &scene, QString &reason)
{
    static const std::vector<Key<Download_Config>> keys = {
        text_key("address", &Download_Config::address),
        number_key("port", &Download_Config::port, 0, port_max),
        number_key("swu_size", &Download_Config::swu_size, 0, int_max),
        number_key("hex_lines", &Download_Config::hex_lines, 1, int_max),
    };
    QJsonObject object = value.toObject();
    const QJsonValue fault = object.take("fault");
    if (!fault.isUndefined() && !set_download_fault(scene.download_faults, fault.toString())) {
        reason = "\"fault\" is one of " + download_fault_words().join(", ");
        return false;
    }
    scene.has_download_server = true;
    return wants(value.isObject(), "an object", reason) && read_keys(object, keys, scene.download, reason);
}

bool read_speakers(const QJsonValue &value, Scene &scene, QString &reason)
{
    QSet<QString> names;
    QSet<QString> addresses;
    for (const QJsonValue entry : value.toArray()) {
        Scene::Speaker speaker;
        if (!wants(entry.isObject(), "a list of objects", reason) ||
            !read_speaker(entry.toObject(), speaker, reason))
            return false;
        if (names.contains(speaker.config.name) || addresses.contains(speaker.config.address)) {
            reason = QString("hold \"%1\" or its address twice").arg(speaker.config.name);
            return false;
        }
        names.insert(speaker.config.name);
        addresses.insert(speaker.config.address);
        scene.speakers.append(speaker);
    }
    return wants(value.isArray(), "a list", reason);
}
} // namespace

bool read_scene(const QByteArray &json, Scene &scene, QString *error)
{
    static const std::vector<Key<Scene>> keys = {
        {"speakers", read_speakers},
        {"download", read_download},
    };
    QJsonParseError parse_error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parse_error);
    if (!document.isObject()) {
        *error = document.isNull()
                     ? QString("%1 at byte %2").arg(parse_error.errorString()).arg(parse_error.offset)
                     : "a scene is a JSON object";
        return false;
    }
    scene = Scene();
    return read_keys(document.object(), keys, scene, *error);
}

QStringList scene_names()
{
    QStringList names;
    for (const QString &file : QDir(":/scenes").entryList({"*.json"}, QDir::Files, QDir::Name))
        names.append(file.left(file.size() - 5));
    return names;
}

bool load_scene(const QString &name_or_path, Scene &scene, QString *error)
{
    const QString path =
        scene_names().contains(name_or_path) ? ":/scenes/" + name_or_path + ".json" : name_or_path;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QString("%1: %2").arg(path, file.errorString());
        return false;
    }
    if (read_scene(file.readAll(), scene, error))
        return true;
    *error = path + ": " + *error;
    return false;
}
