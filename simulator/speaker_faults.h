// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

// When a host link is cut. A query's frame is its answer; a command has no answer, so its frame is the
// command itself: "before" and "within" lose it, "after" carries it out. Cut within a command the speaker has
// read the first bytes of it; the others make its system reset the link, however it is cut.
enum class Cut { never, on_connect, before, within, after };

// How a link is cut: in order, or by a reset.
enum class Cut_How { fin, rst };

// What the HTTP side does with a complete request. "hold" keeps it and answers when the fault is lifted.
enum class Http_Fault {
    none,
    silent,
    hold,
    reset,
    error_page,
    empty,
    empty_object,
    half,
    too_long,  // a Content-Length beyond what comes
    too_short, // a Content-Length short of it
    huge,
    bulky,        // as huge, and of values instead of blanks
    wrong_types,  // of every value of the document: a list for an object, and so on
    wrong_members // of every value inside its objects and lists, which stay
};

// The faults of one speaker, each switchable while it runs (Virtual_Speaker::set_faults). A plain value; all
// off when made. Faults combine, for example slow and byte by byte.
struct Speaker_Faults {
    // A refused port is not listened on; links that are open stay open.
    bool host_refused = false;
    bool at_refused = false;
    bool http_refused = false;

    // Host channel
    bool host_silent = false;           // takes frames and carries them out, answers none
    bool host_deaf = false;             // accepts and never reads
    bool host_bytewise = false;         // an answer leaves byte by byte, each in a segment of its own
    int host_byte_gap_ms = 3;           // between two such bytes
    bool host_no_cr = false;            // answers end without the carriage return
    bool host_no_hash = false;          // "RZ00..." instead of "RZ#00..."
    int host_answer_size = 0;           // bytes to which an answer is stretched by blanks behind its payload
    int host_slow_ms = 0;               // delay of every answer
    bool host_answers_commands = false; // "RZ#00" and a carriage return after each "!" frame
    Cut host_cut = Cut::never;
    Cut_How host_cut_how = Cut_How::fin;
    int host_cut_left = -1; // cuts that are still to come, counted down; -1: no end

    bool at_silent = false;

    // JSON API
    Http_Fault http = Http_Fault::none;
    int http_size = 8 * 1024 * 1024; // bytes by which a huge or bulky answer is longer
    int http_slow_ms = 0;            // delay of every answer
    QString http_returncode;         // given instead of "success", and the request is not carried out
    QString http_only;               // path or action that the HTTP faults are limited to; empty: all

    QString upgrade_errinfo; // the module upgrade ends with status 5 and this; empty: by its real outcome
};

// Sets one fault by its key, such as "host-slow" "250" or "http" "error-page". False with the reason in error
// if there is no such key or the text is not a value of it; faults is unchanged then. Pure; any thread.
bool set_fault(Speaker_Faults &faults, const QString &key, const QString &text, QString *error);

// One line for each key: what it is called, what it takes and what it does. Any thread.
QStringList fault_help();
