// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QMutex>
#include <QString>
#include <QThread>
#include <QWaitCondition>

class serial_wifi;

// Base of every control object: one worker thread per speaker that turns changes of wanted values into host
// commands. Each value exists as a pair: the wanted field, which any thread may store to with a plain store
// followed by wake(), and the sent field, which only the worker writes. The worker transmits what differs, so
// a slider that fires twenty times while one command travels costs one command with the newest value.
//
// Threads: run and transmit_function on the worker; slots, setters and stores into wanted fields on the GUI
// thread. A failed command is lost and not retried. An object whose worker may run is never destroyed.
class Virelos : public QThread
{
    Q_OBJECT

public:
    // `type` is the speaker type code (13 to 44, 255 unknown), `host` the dotted address, `name` for labels
    // and logs.
    Virelos(int type, QString host, QString name);

    void run() override;
    virtual void MUTE_OFF();
    virtual void MUTE_ON();

    void wake();                         // any thread: asks the worker for one more pass
    void flash_open();                   // after terminate(): a fresh link for the transfer of firmware
    int flash_line(const QString &line); // one line of firmware on that link; always 0

    int mute = 0; // 0 or 1
    int mute_sent = 0;
    int lock = 0; // 0 or 1: the speaker's own controls are locked
    int lock_sent = 0;
    int mt = 0; // seconds of a timed mute; read from the speaker, never changed here
    int mt_sent = 0;
    int beep = 0;      // request flag and argument of one "BI"; cleared when sent
    int ping = 0;      // request flag of one "PI"; cleared when sent
    bool quit = false; // by wake_mutex only, as the next one and pending
    QString host;
    serial_wifi *link = nullptr; // made and deleted by run; by flash_open once run has ended
    int type;
    QString name;
    int pending = 0; // wakes not yet served
    QMutex wake_mutex;
    QWaitCondition wake_condition;

public slots:
    void terminate(); // blocks until the worker has sent every queued change and ended
    virtual void set_volume(int vol) = 0;
    virtual void change_volume(int vol_diff) = 0;
    virtual int get_volume() = 0;
    void muteOn();
    void muteOff();
    void muteToggled(bool checked);
    void lockOn();
    void lockOff();
    void lockToggled(bool checked);
    // This one, powerOn and flash go ahead of the queued changes and return when the command has been sent,
    // or when the worker was busy for 5 s: then it is sent behind what keeps the worker. Nothing without a
    // link.
    void standby();
    void powerOn();
    void Beep();
    void flash();
    void Ping();

public:
    // Worker: sends the shared values that changed; derived versions call it last.
    virtual void transmit_function();

protected:
    static int clamped_volume(qint64 vol); // 0 to 100

    void send(const char *letters, const char *args); // worker: one command, behind those of send_directly
    void wake_served();                               // worker: one wake less
    void all_wakes_served();

private:
    void open_link();
    void read_shared_values();
    bool wait_for_wake();
    bool wake_pending();
    void close_link();
    void send_directly(const char *letters);
    void send_direct_commands();

    QList<QByteArray> direct_commands;     // letters that wait for the worker; by wake_mutex only
    QWaitCondition direct_commands_served; // a round of them has been sent
};
