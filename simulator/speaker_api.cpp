// SPDX-License-Identifier: MIT
#include "simulator/speaker_api.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>
#include <initializer_list>

#include "simulator/strict_json.h"

// A path with one action: the members that its body must have, and what it does.
struct Speaker_Api::Action {
    struct Member {
        const char *name; // "inet/address" is a member of a member
        QJsonValue::Type type;
    };
    const char *path;
    const char *action;
    std::initializer_list<Member> members;
    QJsonObject (Speaker_Api::*run)(const QJsonObject &);
};

namespace
{
constexpr auto String = QJsonValue::String;
constexpr auto Number = QJsonValue::Double;
constexpr auto Bool = QJsonValue::Bool;

constexpr const char *configure_path = "/api/v14/configure.action";
constexpr const char *device_path = "/api/v19/device.action";
constexpr const char *upgrade_path = "/api/v14/otaupgrade.action";
constexpr const char *network_path = "/api/v19/network.action";
constexpr const char *wifi_path = "/api/v19/wifi.action";
constexpr const char *sender_path = "/api/v19/songcast/sender.action";
constexpr const char *receiver_path = "/api/v19/songcast/receiver.action";
constexpr const char *bluetooth_path = "/api/v20/bluetooth.action";

QJsonObject result(const QString &returncode)
{
    return {{"returncode", returncode}};
}

QJsonObject success()
{
    return result("success");
}

QJsonObject failure(const QString &why)
{
    return {{"returncode", "error"}, {"reason", why}};
}

QJsonValue member_of(const QJsonObject &object, const char *name)
{
    QJsonValue value = object;
    for (const QString &step : QString::fromLatin1(name).split(QLatin1Char('/')))
        value = value.toObject().value(step);
    return value;
}

bool is_list_of_texts(const QJsonValue &value)
{
    const QJsonArray list = value.toArray();
    return value.isArray() &&
           std::all_of(list.begin(), list.end(), [](const QJsonValue &v) { return v.isString(); });
}

QStringList texts_of(const QJsonValue &list)
{
    QStringList texts;
    for (const QJsonValue text : list.toArray())
        texts += text.toString();
    return texts;
}

bool is_dotted(const QString &text)
{
    const QStringList parts = text.split('.');
    return parts.size() == 4 && std::all_of(parts.begin(), parts.end(), [](const QString &part) {
               bool is_number = false;
               return part.toUShort(&is_number) <= 255 && is_number;
           });
}

// Empty where the request has none.
Static_Address static_address_of(const QJsonObject &object)
{
    const auto text = [&object](const char *name) { return member_of(object, name).toString(); };
    return {text("inet/address"),
            text("inet/netmask"),
            text("inet/broadcast"),
            text("inet/gateway"),
            texts_of(member_of(object, "dns/domains")),
            texts_of(member_of(object, "dns/nameservers"))};
}

QString place_text(const Static_Address &place)
{
    if (place.address.isEmpty())
        return "by DHCP";
    QString text = QString("at %1, netmask %2, broadcast %3, gateway \"%4\"")
                       .arg(place.address, place.netmask, place.broadcast, place.gateway);
    if (!place.domains.isEmpty())
        text += QString(", domains %1, name servers %2")
                    .arg(place.domains.join(' '), place.name_servers.join(' '));
    return text;
}

Http_Reply json_reply(const QJsonObject &object)
{
    Http_Reply reply;
    reply.body = QJsonDocument(object).toJson(QJsonDocument::Compact);
    return reply;
}

Http_Reply plain_refusal(int status)
{
    Http_Reply reply;
    reply.status = status;
    reply.content_type = "text/html";
    reply.body = "<html><body>" + http_reason(status) + "</body></html>\n";
    return reply;
}
} // namespace

const Speaker_Api::Action *Speaker_Api::find_action(const QString &path, const QString &action,
                                                    bool *known_path)
{
    // clang-format off
    static const Action actions[] = {
        {configure_path, "wifiscan", {}, &Speaker_Api::wifi_scan},
        {device_path, "info", {}, &Speaker_Api::device_info},
        {device_path, "setdevicename", {{"devicename", String}}, &Speaker_Api::set_device_name},
        {upgrade_path, "seturl", {{"otaaddress", String}, {"filesize", String}}, &Speaker_Api::set_url},
        {upgrade_path, "querystatus", {}, &Speaker_Api::query_status},
        {network_path, "info", {}, &Speaker_Api::network_info},
        {wifi_path, "addnetwork", {{"ssid", String}, {"psk", String}}, &Speaker_Api::add_network},
        {wifi_path, "addstaticnetwork",
         {{"ssid", String}, {"psk", String}, {"inet/address", String}, {"inet/netmask", String},
          {"inet/broadcast", String}, {"inet/gateway", String}},
         &Speaker_Api::add_static_network},
        {wifi_path, "selectnetwork", {{"id", Number}}, &Speaker_Api::select_network},
        {sender_path, "status", {}, &Speaker_Api::sender_status},
        {sender_path, "enable", {{"groupname", String}, {"mode", Number}}, &Speaker_Api::sender_enable},
        {sender_path, "disable", {}, &Speaker_Api::sender_disable},
        {sender_path, "play", {}, &Speaker_Api::sender_play},
        {sender_path, "stop", {}, &Speaker_Api::sender_stop},
        {receiver_path, "state", {}, &Speaker_Api::receiver_state},
        {receiver_path, "link", {{"uuid", String}}, &Speaker_Api::receiver_link},
        {receiver_path, "unlink", {}, &Speaker_Api::receiver_unlink},
        {receiver_path, "play", {}, &Speaker_Api::receiver_play},
        {receiver_path, "stop", {}, &Speaker_Api::receiver_stop},
        {bluetooth_path, "setproperties",
         {{"discoverable", Bool}, {"pairable", Bool}, {"discoverableTimeout", Number}, {"pairableTimeout", Number}},
         &Speaker_Api::set_bluetooth},
    };
    // clang-format on
    *known_path = false;
    for (const Action &candidate : actions) {
        if (path == QLatin1String(candidate.path)) {
            *known_path = true;
            if (action == QLatin1String(candidate.action))
                return &candidate;
        }
    }
    return nullptr;
}

Speaker_Api::Speaker_Api(Speaker_Config &config, const Speaker_Faults &faults, QObject *parent)
    : QObject(parent)
    , config(config)
    , faults(faults)
    , upgrade(nullptr)
{
    if (config.sender_uuid.isEmpty())
        config.sender_uuid = "4c494e4e-" + config.address;
    connect(&upgrade, &Module_Upgrade::event, this, &Speaker_Api::event);
}

QJsonObject Speaker_Api::read(Http_Request &request) const
{
    request.json_error = json_complaint(request.body);
    const QJsonDocument document = QJsonDocument::fromJson(request.body);
    if (request.json_error.isEmpty() && !document.isObject())
        request.json_error = "no object";
    request.json_ok = request.json_error.isEmpty();
    if (!request.json_ok)
        return QJsonObject();
    request.action = document.object().value("action").toString();
    return document.object();
}

Http_Reply Speaker_Api::answer(const Http_Request &request, const QJsonObject &object, bool *leaving)
{
    *leaving = false;
    const QString path = QString::fromLatin1(request.path);
    const auto raw = raw_replies.constFind({path, request.action});
    if (raw != raw_replies.constEnd()) {
        Http_Reply reply;
        reply.body = *raw;
        return reply;
    }
    bool known_path = false;
    const Action *action = find_action(path, request.action, &known_path);
    if (!known_path)
        return plain_refusal(404);
    if (request.method != "POST") {
        Http_Reply reply = plain_refusal(405);
        reply.headers.append(qMakePair(QByteArray("Allow"), QByteArray("POST")));
        return reply;
    }
    if (!request.json_ok)
        return json_reply(failure("no JSON: " + request.json_error));
    if (!action)
        return json_reply(failure("unknown action"));
    for (const Action::Member &member : action->members)
        if (member_of(object, member.name).type() != member.type)
            return json_reply(failure(QString("bad member ") + QLatin1String(member.name)));
    leave = false;
    const QJsonObject outcome = (this->*action->run)(object);
    *leaving = leave;
    return json_reply(outcome);
}

void Speaker_Api::set_reply(const QString &path, const QString &action, const QByteArray &body)
{
    raw_replies.insert({path, action}, body);
}

void Speaker_Api::clear_reply(const QString &path, const QString &action)
{
    raw_replies.remove({path, action});
}

void Speaker_Api::restart()
{
    upgrade.forget();
    added_networks.clear();
}

QJsonObject Speaker_Api::device_info(const QJsonObject &)
{
    return {{"model", config.model},
            {"firmware", config.firmware},
            {"hardware", config.hardware},
            {"devicename", config.name}};
}

// The announcement keeps the old name until the speaker starts anew, which selecting a network brings about.
QJsonObject Speaker_Api::set_device_name(const QJsonObject &object)
{
    const QString name = object.value("devicename").toString();
    if (name.isEmpty())
        return failure("empty name");
    config.name = name;
    return success();
}

QJsonObject Speaker_Api::network_info(const QJsonObject &)
{
    QJsonObject wlan{{"mode", config.wlan_mode}, {"ssid", config.ssid}, {"mac", config.mac}};
    if (config.wlan_mode != QLatin1String("AP")) {
        wlan.insert("stationinfo", QJsonObject{
                                       {"signal", config.signal},
                                       {"channelwidth", config.channelwidth},
                                       {"bitrate", config.bitrate},
                                   });
    }
    return {{"wlan", wlan}};
}

QJsonObject Speaker_Api::wifi_scan(const QJsonObject &)
{
    QJsonArray list;
    for (const Wlan_Network &network : config.networks) {
        list.append(QJsonObject{{"ssid", network.ssid},
                                {"encrypt_type", network.encrypt_type},
                                {"signal_level", network.signal_level}});
    }
    return {{"aplist", list}};
}

QJsonObject Speaker_Api::add_network(const QJsonObject &object)
{
    const QString ssid = object.value("ssid").toString();
    const QString password = object.value("psk").toString();
    for (const Wlan_Network &network : config.networks)
        if (network.ssid == ssid && !network.password.isNull() && network.password != password)
            return result("wrong password");
    added_networks.insert(++last_network_id, {ssid, static_address_of(object)});
    QJsonObject outcome = success();
    outcome.insert("id", last_network_id);
    return outcome;
}

// "dns" may be left out; where it is, both of its lists are.
QJsonObject Speaker_Api::add_static_network(const QJsonObject &object)
{
    for (const char *list : {"dns/domains", "dns/nameservers"}) {
        if (object.contains("dns") && !is_list_of_texts(member_of(object, list)))
            return failure(QString("bad member ") + list);
    }
    for (const char *member : {"inet/address", "inet/netmask", "inet/broadcast", "inet/gateway"}) {
        const QString text = member_of(object, member).toString();
        const bool may_be_empty = QLatin1String(member) == QLatin1String("inet/gateway");
        if (!is_dotted(text) && !(text.isEmpty() && may_be_empty))
            return failure(QString("no address in ") + member);
    }
    return add_network(object);
}

QJsonObject Speaker_Api::select_network(const QJsonObject &object)
{
    const int id = object.value("id").toInt(-1);
    if (!added_networks.contains(id))
        return failure("unknown network");
    config.ssid = added_networks.value(id).ssid;
    config.static_address = added_networks.value(id).static_address;
    config.wlan_mode = "STA";
    emit event(QString("joins \"%1\" %2").arg(config.ssid, place_text(config.static_address)));
    leave = true;
    return success();
}

QJsonObject Speaker_Api::sender_status(const QJsonObject &)
{
    return {{"enabled", config.sender_enabled},
            {"state", config.sender_state},
            {"mode", config.sender_mode},
            {"uuid", config.sender_uuid},
            {"groupname", config.groupname}};
}

QJsonObject Speaker_Api::sender_enable(const QJsonObject &object)
{
    config.sender_enabled = true;
    config.sender_state = 1;
    config.sender_mode = object.value("mode").toInt();
    config.groupname = object.value("groupname").toString();
    QJsonObject outcome = sender_status(object);
    outcome.insert("returncode", "success");
    return outcome;
}

QJsonObject Speaker_Api::sender_disable(const QJsonObject &)
{
    config.sender_enabled = false;
    config.sender_state = 0;
    return success();
}

QJsonObject Speaker_Api::sender_play(const QJsonObject &)
{
    config.sender_state = 2;
    return success();
}

QJsonObject Speaker_Api::sender_stop(const QJsonObject &object)
{
    config.sender_state = 1;
    QJsonObject outcome = sender_status(object);
    outcome.insert("returncode", "success");
    return outcome;
}

QJsonObject Speaker_Api::receiver_state(const QJsonObject &)
{
    return {{"state", config.receiver_state}, {"sender", config.receiver_sender}};
}

QJsonObject Speaker_Api::receiver_link(const QJsonObject &object)
{
    config.receiver_state = 1;
    config.receiver_sender = object.value("uuid").toString();
    return success();
}

QJsonObject Speaker_Api::receiver_unlink(const QJsonObject &)
{
    config.receiver_state = 0;
    config.receiver_sender.clear();
    return success();
}

QJsonObject Speaker_Api::receiver_play(const QJsonObject &)
{
    config.receiver_state = 2;
    return success();
}

QJsonObject Speaker_Api::receiver_stop(const QJsonObject &)
{
    config.receiver_state = 1;
    return success();
}

QJsonObject Speaker_Api::set_bluetooth(const QJsonObject &object)
{
    config.discoverable = object.value("discoverable").toBool();
    config.pairable = object.value("pairable").toBool();
    config.discoverable_timeout = object.value("discoverableTimeout").toInt();
    config.pairable_timeout = object.value("pairableTimeout").toInt();
    return success();
}

QJsonObject Speaker_Api::set_url(const QJsonObject &object)
{
    const QString folder = object.value("otaaddress").toString();
    bool is_number = false;
    const qint64 size = object.value("filesize").toString().toLongLong(&is_number);
    if (!is_number || !folder.startsWith(QLatin1String("http://")) || !folder.endsWith(QLatin1Char('/')))
        return failure("bad address or size");
    upgrade.start(folder, size);
    return success();
}

QJsonObject Speaker_Api::query_status(const QJsonObject &)
{
    return upgrade.poll(config.upgrade_polls, faults.upgrade_errinfo);
}
