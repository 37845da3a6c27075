// SPDX-License-Identifier: MIT
#include "simulator/host_channel.h"

#include "simulator/readable.h"
#include "simulator/tcp_link.h"

namespace
{
constexpr int magic_size = 5; // "RZ#00"
const QByteArray command_begin = QByteArrayLiteral("RZ!");
const QByteArray command_answer = QByteArrayLiteral("RZ#00\r");
} // namespace

Host_Channel::Host_Channel(Speaker_Config &config, Speaker_Faults &faults, Channel_Record &record,
                           QObject *parent)
    : QObject(parent)
    , port(record, this)
    , processor(config)
    , config(config)
    , faults(faults)
{
    connect(&port, &Tcp_Port::opened, this, &Host_Channel::link_opened);
    connect(&port, &Tcp_Port::begin_came, this, &Host_Channel::take_begin);
    connect(&port, &Tcp_Port::line_came, this, &Host_Channel::take);
    connect(&port, &Tcp_Port::closed, this, &Host_Channel::link_closed);
}

void Host_Channel::apply_faults()
{
    for (Tcp_Link *link : port.links())
        set_reading(link);
}

void Host_Channel::set_reading(Tcp_Link *link) const
{
    link->set_read_size(cut_due(Cut::within) ? command_begin.size() : 0);
    link->set_deaf(faults.host_deaf);
}

void Host_Channel::send_all(const QByteArray &raw)
{
    for (Tcp_Link *link : port.links())
        link->send(raw);
}

void Host_Channel::link_opened(Tcp_Link *link)
{
    emit event(QString("-- host link %1 open").arg(link->id()));
    if (cut_due(Cut::on_connect))
        cut(link);
    else
        set_reading(link);
}

void Host_Channel::link_closed(Tcp_Link *link)
{
    emit event(QString("-- host link %1 closed").arg(link->id()));
    if (processor.flashing)
        emit event("-- flash still open: " + processor.image.summary());
}

void Host_Channel::take_begin(Tcp_Link *link, const QByteArray &begin)
{
    if (!cut_due(Cut::within) || !begin.startsWith(command_begin))
        return;
    emit event("<- " + readable(begin));
    cut(link);
}

void Host_Channel::take(Tcp_Link *link, const QByteArray &line)
{
    emit event("<- " + readable(line));
    const Host_Processor::Line kind = processor.kind_of(line);
    if (cut_due(Cut::before)) {
        cut(link);
        return;
    }
    const bool shaped = kind == Host_Processor::Line::query && !processor.raw_reply(line);
    QByteArray frame = carry_out(line);
    if (kind == Host_Processor::Line::command && faults.host_answers_commands)
        frame = command_answer;
    emit changed();
    if (!frame.isNull() && !faults.host_silent) {
        const bool paced = kind == Host_Processor::Line::flash_line;
        answer(link, frame, shaped, faults.host_slow_ms + (paced ? config.flash_answer_ms : 0));
    }
    if (cut_due(Cut::after) || cut_due(Cut::within))
        cut(link);
}

QByteArray Host_Channel::carry_out(const QByteArray &line)
{
    const int known_complaints = processor.complaints.size();
    const bool was_flashing = processor.flashing;
    QByteArray frame = processor.take(line);
    for (int i = known_complaints; i < processor.complaints.size(); i++)
        emit event("!! " + processor.complaints.at(i));
    if (processor.flashing && !was_flashing)
        emit event("-- flash mode");
    if (was_flashing && !processor.flashing)
        emit event("-- flash ended: " + processor.image.summary());
    return frame;
}

void Host_Channel::answer(Tcp_Link *link, QByteArray frame, bool shaped, int delay_ms)
{
    if (shaped)
        frame = shape(frame);
    if (cut_due(Cut::within))
        frame.truncate(frame.size() / 2);
    emit event("-> " + readable(frame));
    if (faults.host_bytewise)
        link->send_bytewise(frame, delay_ms, faults.host_byte_gap_ms);
    else
        link->send(frame, delay_ms);
}

QByteArray Host_Channel::shape(QByteArray frame) const
{
    const int missing = faults.host_answer_size - frame.size();
    if (missing > 0)
        frame.insert(frame.size() - 1, QByteArray(missing, ' '));
    if (faults.host_no_cr)
        frame.chop(1);
    if (faults.host_no_hash && frame.size() >= magic_size)
        frame.remove(2, 1);
    return frame;
}

bool Host_Channel::cut_due(Cut when) const
{
    return faults.host_cut == when && faults.host_cut_left != 0;
}

void Host_Channel::cut(Tcp_Link *link)
{
    if (faults.host_cut_left > 0)
        faults.host_cut_left--;
    link->cut_behind_output(faults.host_cut_how);
}
