// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QPointer>

class Device_Desc;
class QFile;
class QLabel;
class QLineEdit;
class QNetworkReply;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QTextStream;
class Virelos;
class Web_File;

// The dialog that upgrades one speaker. The Wi-Fi module fetches its firmware by itself from a URL and is
// polled for its status; the amplifier processor, the host, is fed line by line from here. Either begins
// behind a successful check of a file on the server; the URL may be edited after it, which is meant.
//
// GUI thread only: the transfer to the host freezes the window until the worker has ended and a link is open,
// for five seconds before the first line, and for up to some seconds a line, which is meant. Not deleted when
// it closes; a transfer or a poll goes on then. It may outlive the record: then a transfer goes on, and
// nothing new is asked. A failed check is told in a box; of any other failure the status text tells at most.
class Client_Update : public QDialog
{
    Q_OBJECT

public:
    Client_Update(Device_Desc *device,
                  QWidget *parent); // a record without control object is treated as unknown

    QPointer<Device_Desc> device; // null once the record is gone
    int file_size = 0;            // bytes, from the last check; -1 after a failed one
    QFile *flash_file = nullptr;  // open while lines go out; the stream is on what it held
    QTextStream *flash_stream = nullptr;
    int flash_total = 0; // one less than the lines of the file
    int flash_done = 0;  // lines sent so far
    QRadioButton *host_radio = nullptr;
    QRadioButton *wifi_radio = nullptr;
    QLineEdit *url_edit = nullptr; // must end in "/"
    QLineEdit *size_edit = nullptr;
    QLabel *status_label = nullptr;
    QPushButton *check_button = nullptr;
    QPushButton *flash_button = nullptr;
    QPushButton *back_button = nullptr;
    QProgressBar *progress_bar = nullptr;

private slots:
    void checkFile();
    void fileSize(int filesize);
    void fileError();
    void radioClicked(bool checked);
    void updateFirmware();
    void updateFirmwareHOST();
    void updateFirmwareWIFI();
    void hostDownloadFilefinished(QString filename, int lines);
    void hostDownloadFileError(QString filename);
    void flashLineTimer();
    void hostFlashFilefinished();
    void replyFinished(QNetworkReply *reply);
    void updateCheckTimer();
    void replyFinishedUpdateCheck(QNetworkReply *reply);

private:
    void make_widgets();
    void place_widgets();
    void connect_widgets();
    static Web_File *new_job();
    QString host_file_url() const;
    int speaker_type() const;
    void show_status(int status, int errinfo);
    double flash_percentage() const;

    Virelos *flash_control = nullptr; // who gets the lines; no control object is ever deleted
};
