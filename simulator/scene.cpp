// SPDX-License-Identifier: MIT
#include "simulator/scene.h"

#include <QDir>
#include <QFile>
#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "simulator/host_commands.h"
#include "simulator/json_keys.h"
#include "simulator/strict_json.h"

// Outside of any namespace, as the macro wants it: the scenes lie in a static library, whose resources nobody
// registers.
static void register_scenes()
{
    Q_INIT_RESOURCE(scenes);
}

namespace
{
constexpr int port_max = 65535;
constexpr int name_max = 63; // bytes; DNS-SD announces no longer one
const QString scene_folder = ":/scenes/";
const QString scene_suffix = ".json";

template<class Field>
auto config(Field Speaker_Config::*field)
{
    return [field](Scene::Speaker &speaker) -> Field & { return speaker.config.*field; };
}

template<class Field>
auto network(Field Wlan_Network::*field)
{
    return [field](Wlan_Network &network) -> Field & { return network.*field; };
}

template<class Field>
auto download(Field Download_Config::*field)
{
    return [field](Scene &scene) -> Field & { return scene.download.*field; };
}

bool refuse(QString &reason, const QString &why)
{
    reason = why;
    return false;
}

bool read_faults(const QJsonValue &value, Scene::Speaker &speaker, QString &reason)
{
    const QJsonObject object = value.toObject();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        if (!entry.value().isString())
            return false;
        if (!set_fault(speaker.faults, entry.key(), entry.value().toString(), &reason))
            return refuse(reason, "are wrong: " + reason);
    }
    return value.isObject();
}

const Json_Keys<Wlan_Network> &network_keys()
{
    using N = Wlan_Network;
    using Row = Json_Row<N>;
    static const Json_Keys<N> keys = {
        Row::text("ssid", network(&N::ssid), "its name"),
        Row::text("encrypt_type", network(&N::encrypt_type), "how it is encrypted"),
        Row::text("signal_level", network(&N::signal_level), "how strong it is, in dBi"),
        Row::text("password", network(&N::password), "the only one that is taken; left out: any is"),
    };
    return keys;
}

bool read_networks(const QJsonValue &value, Scene::Speaker &speaker, QString &reason)
{
    for (const QJsonValue entry : value.toArray()) {
        Wlan_Network network;
        if (!read_json_keys(entry, network_keys(), network, reason))
            return refuse(reason, QString("no. %1: %2").arg(speaker.config.networks.size() + 1).arg(reason));
        speaker.config.networks.append(network);
    }
    return value.isArray();
}

const Json_Keys<Scene::Speaker> &speaker_keys()
{
    using C = Speaker_Config;
    using S = Scene::Speaker;
    using Row = Json_Row<S>;
    // clang-format off
    static const Json_Keys<S> keys = {
        Row::text("name", config(&C::name), "its name, which is announced"),
        Row::text("address", config(&C::address), "IPv4 address of its own, such as 127.0.0.11"),
        Row::number("http_port", config(&C::http_port), 0, port_max, "port of the JSON API; 0: any free one"),
        Row::text("host_name", config(&C::host_name), "of the announcement, without \".local\""),
        Row::text("service_type", config(&C::service_type), "of the announcement"),
        Row::text("interface", config(&C::interface), "device that is announced on; left out: every one"),
        Row::texts("txt", config(&C::txt), "TXT record of the announcement"),
        Row::yes_no("present", [](S &speaker) -> bool & { return speaker.present; }, "false: comes by \"join\" only"),
        {"faults", "an object of texts", "faults from the start on, see --list-faults", read_faults},
        Row::number("type", config(&C::type), 0, INT_MAX, "type code of the host; 18 is a subwoofer"),
        Row::text("cell", config(&C::cell), "answer to \"QO\"; \"W\" for a cell master"),
        Row::texts("values", config(&C::values), "host values by their letters, such as {\"vo\": \"28\"}"),
        Row::number("flash_answer_ms", config(&C::flash_answer_ms), -1, INT_MAX,
                    "ms to the answer to a firmware line; -1: there is none"),
        Row::text("flash_answer", config(&C::flash_answer), "that answer"),
        Row::text("model", config(&C::model), "of the device info"),
        Row::text("firmware", config(&C::firmware), "of the device info"),
        Row::text("hardware", config(&C::hardware), "of the device info"),
        Row::text("wlan_mode", config(&C::wlan_mode), "\"STA\", or \"AP\" for an access point of its own"),
        Row::text("ssid", config(&C::ssid), "of the network info"),
        Row::text("mac", config(&C::mac), "of the network info"),
        Row::number("signal", config(&C::signal), -1000, 1000, "of the network info"),
        Row::number("channelwidth", config(&C::channelwidth), 0, INT_MAX, "of the network info"),
        Row::number("bitrate", config(&C::bitrate), 0, INT_MAX, "of the network info"),
        Row::yes_no("sender_enabled", config(&C::sender_enabled), "it is the master of a group"),
        Row::number("sender_state", config(&C::sender_state), -1, INT_MAX, "1 stopped, 2 playing"),
        Row::number("sender_mode", config(&C::sender_mode), 0, INT_MAX, "of the sender status"),
        Row::text("sender_uuid", config(&C::sender_uuid), "of the sender status"),
        Row::text("groupname", config(&C::groupname), "of the sender status"),
        Row::number("receiver_state", config(&C::receiver_state), 0, INT_MAX, "0 unlinked, 1 linked, 2 playing"),
        Row::text("receiver_sender", config(&C::receiver_sender), "uuid of the sender that it is linked to"),
        {"networks", "a list of objects", "what a WLAN scan finds", read_networks},
        Row::number("upgrade_polls", config(&C::upgrade_polls), 0, INT_MAX, "polls that each status of an upgrade lasts"),
    };
    // clang-format on
    return keys;
}

bool has_value(int type, const QString &letters)
{
    for (const Host_Value &value : host_values(host_kind(type)))
        if (letters == value.letters)
            return true;
    return false;
}

// What single keys cannot tell.
bool check_speaker(const Speaker_Config &speaker, QString &reason)
{
    const int name_size = speaker.name.toUtf8().size();
    if (name_size < 1 || name_size > name_max)
        return refuse(reason, QString("\"name\" wants 1 to %1 bytes").arg(name_max));
    if (QHostAddress(speaker.address).protocol() != QAbstractSocket::IPv4Protocol)
        return refuse(reason, QString("\"address\" wants an IPv4 address, not \"%1\"").arg(speaker.address));
    for (const QString &letters : speaker.values.keys())
        if (!has_value(speaker.type, letters))
            return refuse(reason,
                          QString("type %1 has no value \"%2\"").arg(QString::number(speaker.type), letters));
    return true;
}

bool is_new(const Speaker_Config &speaker, const QList<Scene::Speaker> &others, QString &reason)
{
    for (const Scene::Speaker &other : others) {
        if (other.config.name == speaker.name)
            return refuse(reason, QString("another one is called \"%1\" already").arg(speaker.name));
        if (other.config.address == speaker.address)
            return refuse(reason, QString("another one stands on %1 already").arg(speaker.address));
    }
    return true;
}

bool read_speakers(const QJsonValue &value, Scene &scene, QString &reason)
{
    for (const QJsonValue entry : value.toArray()) {
        Scene::Speaker speaker;
        if (!read_json_keys(entry, speaker_keys(), speaker, reason) ||
            !check_speaker(speaker.config, reason) || !is_new(speaker.config, scene.speakers, reason))
            return refuse(reason,
                          QString("no. %1: %2").arg(QString::number(scene.speakers.size() + 1), reason));
        scene.speakers.append(speaker);
    }
    return value.isArray();
}

bool read_download_fault(const QJsonValue &value, Scene &scene, QString &)
{
    return set_download_fault(scene.download_faults, value.toString());
}

const Json_Keys<Scene> &download_keys()
{
    using D = Download_Config;
    using Row = Json_Row<Scene>;
    static const Json_Keys<Scene> keys = {
        Row::text("address", download(&D::address), "address that it stands on"),
        Row::number("port", download(&D::port), 0, port_max, "0: any free one"),
        Row::number("swu_size", download(&D::swu_size), 0, INT_MAX, "bytes of the module's firmware"),
        Row::number("hex_lines", download(&D::hex_lines), 1, INT_MAX, "lines of the host's firmware"),
        Row::texts("files", download(&D::files),
                   "further files, or others in place of made ones, by their names"),
        {"fault", "one of " + download_fault_words().join(", "), "what it does instead of serving",
         read_download_fault},
    };
    return keys;
}

bool read_download(const QJsonValue &value, Scene &scene, QString &reason)
{
    scene.has_download_server = true;
    return read_json_keys(value, download_keys(), scene, reason);
}

const Json_Keys<Scene> &scene_keys()
{
    static const Json_Keys<Scene> keys = {
        Json_Row<Scene>::text(
            "about", [](Scene &scene) -> QString & { return scene.about; }, "what it is, in one line"),
        {"speakers", "a list of objects", "the speakers", read_speakers},
        {"download", "an object", "the firmware download server; left out: there is none", read_download},
    };
    return keys;
}
} // namespace

bool read_scene(const QByteArray &json, Scene &scene, QString *error)
{
    scene = Scene();
    *error = json_complaint(json);
    if (!error->isEmpty())
        return false;
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return refuse(*error, "a scene is an object");
    return read_json_keys(document.object(), scene_keys(), scene, *error);
}

QStringList scene_help()
{
    return QStringList("A scene is a JSON object with these keys, each of which may be left out:") +
           json_keys_help(scene_keys()) + QStringList("The keys of a speaker:") +
           json_keys_help(speaker_keys()) + QStringList("The keys of a network that a speaker sees:") +
           json_keys_help(network_keys()) + QStringList("The keys of the download server:") +
           json_keys_help(download_keys());
}

QStringList scene_names()
{
    register_scenes();
    QStringList names;
    for (const QString &file : QDir(scene_folder).entryList({'*' + scene_suffix}, QDir::Files, QDir::Name))
        names += file.chopped(scene_suffix.size());
    return names;
}

bool load_scene(const QString &name_or_path, Scene &scene, QString *error)
{
    const bool known = scene_names().contains(name_or_path);
    QFile file(known ? scene_folder + name_or_path + scene_suffix : name_or_path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QString("%1: %2").arg(name_or_path, file.errorString());
        return false;
    }
    if (read_scene(file.readAll(), scene, error))
        return true;
    *error = QString("%1: %2").arg(name_or_path, *error);
    return false;
}
