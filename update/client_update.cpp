// SPDX-License-Identifier: MIT
// The dialog and the upgrade of the Wi-Fi module; the transfer to the host is in client_update_host.cpp.
#include "update/client_update.h"

#include <QDebug>
#include <QGridLayout>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QNetworkReply>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <algorithm>

#include "app/globals.h"
#include "app/rzplattform.h"
#include "control/virelos.h"
#include "device/device_desc.h"
#include "device/json_http.h"
#include "device/speaker_types.h"
#include "settings/banner.h"
#include "settings/rzpixmaplabel.h"
#include "settings/tab_kit.h"
#include "settings/tab_order.h"
#include "settings/window_picture.h"
#include "update/web_file.h"

namespace
{
constexpr int poll_ms = 1000; // from a reply to the next poll
constexpr int status_error = 5;
constexpr int status_done = 6;

struct Numbered_Text {
    int number;
    const char *text;
};

constexpr Numbered_Text status_texts[] = {
    {1, QT_TRANSLATE_NOOP("Client_Update", "Downloading...")},
    {2, QT_TRANSLATE_NOOP("Client_Update", "Download finished!")},
    {3, QT_TRANSLATE_NOOP("Client_Update", "Updating...!")},
    {4, QT_TRANSLATE_NOOP("Client_Update", "Checksum verification!")},
    {status_done, QT_TRANSLATE_NOOP("Client_Update", "Done!")},
};

constexpr Numbered_Text error_texts[] = {
    {-1, QT_TRANSLATE_NOOP("Client_Update", "Error: Update not running")},
    {1, QT_TRANSLATE_NOOP("Client_Update", "Error: File doesnt exist")},
    {2, QT_TRANSLATE_NOOP("Client_Update", "Error: Download Error")},
    {3, QT_TRANSLATE_NOOP("Client_Update", "Error: Checksum Error")},
    {4, QT_TRANSLATE_NOOP("Client_Update", "Error: Flash Error")},
    {5, QT_TRANSLATE_NOOP("Client_Update", "Error: Update error")},
};

// 0, and every number without a text of its own.
constexpr const char *other_error = QT_TRANSLATE_NOOP("Client_Update", "Other Error :-(");

template<size_t N>
const char *text_of(const Numbered_Text (&texts)[N], int number, const char *otherwise)
{
    const auto *found = std::find_if(std::begin(texts), std::end(texts),
                                     [number](const Numbered_Text &entry) { return entry.number == number; });
    return found == std::end(texts) ? otherwise : found->text;
}

// A JSON number reads as 0: meant.
int number_of(const QJsonObject &object, const char *key)
{
    return object.value(QLatin1String(key)).toString().toInt();
}

// Seen at once, also when the window is busy next.
void enable(QPushButton *button, bool enabled)
{
    button->setEnabled(enabled);
    button->repaint();
}
} // namespace

Client_Update::Client_Update(Device_Desc *device, QWidget *parent)
    : QDialog(parent)
    , device(device)
{
    resize(plattform->window_width, plattform->window_height);
    free_picture_when_hidden(this);
    setWindowTitle(tr("Update Speaker Firmware"));
    make_widgets();
    place_widgets();
    connect_widgets();
}

void Client_Update::make_widgets()
{
    wifi_radio = new QRadioButton("WiFi", this);
    wifi_radio->setChecked(true);
    host_radio = new QRadioButton("Host", this);
    url_edit = new QLineEdit("http://" VIRELO_DOWNLOAD_SERVER "/current/", this);
    check_button = new QPushButton(tr("Check"), this);
    size_edit = new QLineEdit(tr("- Bytes"), this);
    progress_bar = new QProgressBar(this);
    progress_bar->setRange(0, 100);
    progress_bar->setValue(0);
    status_label = new QLabel(tr("Click Check Button!"), this);
    back_button = new QPushButton(tr("<< Back"), this);
    flash_button = new QPushButton(tr("FLASH!"), this);
    flash_button->setEnabled(false);
}

void Client_Update::place_widgets()
{
    const QString name = device->control ? device->control->name : QString();
    auto *grid = new QGridLayout;
    grid->addWidget(make_banner("Deko_Air"), 0, 0, 1, 4);
    add_caption(grid, 1, tr("Speaker:"));
    grid->addWidget(new QLabel(bold(model_name(speaker_type())) + " (" + name.toHtmlEscaped() + ")"), 1, 1, 1,
                    3);
    add_caption(grid, 2, tr("Version:"));
    grid->addWidget(make_value_label(device->firmware), 2, 1, 1, 2);
    add_caption(grid, 3, tr("Update:"), wifi_radio);
    grid->addWidget(wifi_radio, 3, 1);
    grid->addWidget(host_radio, 3, 2);
    add_caption(grid, 4, tr("Download URL:"), url_edit);
    grid->addWidget(url_edit, 4, 1, 1, 2);
    grid->addWidget(check_button, 4, 3);
    add_caption(grid, 5, tr("File Size:"), size_edit);
    grid->addWidget(size_edit, 5, 1, 1, 2);
    add_caption(grid, 6, tr("Progress:"), progress_bar);
    grid->addWidget(progress_bar, 6, 1, 1, 3);
    add_caption(grid, 7, tr("Status:"), status_label);
    grid->addWidget(status_label, 7, 1, 1, 3);

    const bool phone = plattform->device_class == DEVICE_PHONE;
    const int button_span = phone ? 2 : 1;
    grid->addWidget(back_button, 8, phone ? 0 : 2, 1, button_span);
    grid->addWidget(flash_button, 8, phone ? 2 : 3, 1, button_span);
    setLayout(grid);
    order_tabs(grid);
}

void Client_Update::connect_widgets()
{
    connect(check_button, &QPushButton::clicked, this, &Client_Update::checkFile);
    connect(flash_button, &QPushButton::clicked, this, &Client_Update::updateFirmware);
    connect(back_button, &QPushButton::clicked, this, &Client_Update::close);
    connect(host_radio, &QRadioButton::clicked, this, &Client_Update::radioClicked);
    connect(wifi_radio, &QRadioButton::clicked, this, &Client_Update::radioClicked);
}

int Client_Update::speaker_type() const
{
    return device->control ? device->control->type : TYPE_UNKNOWN;
}

QString Client_Update::host_file_url() const
{
    return url_edit->text() + model_code(speaker_type()) + "_host.hex";
}

void Client_Update::radioClicked(bool)
{
    enable(flash_button, false);
}

// Never deleted: it serves one job, which may outlive the dialog.
Web_File *Client_Update::new_job()
{
    return new Web_File;
}

void Client_Update::checkFile()
{
    if (!device)
        return;
    Web_File *const file = new_job();
    connect(file, &Web_File::fileSizeFinished, this, &Client_Update::fileSize);
    connect(file, &Web_File::fileSizeError, this, &Client_Update::fileError);
    const QString url = host_radio->isChecked() ? host_file_url() : url_edit->text() + "ventaro.swu";
    qDebug() << "checkFile()! " << url;
    file->get_size(url);
}

void Client_Update::fileSize(int filesize)
{
    qDebug() << "Size is " << filesize;
    size_edit->setText(QString::number(filesize) + " Bytes");
    file_size = filesize;
    enable(flash_button, true);
}

void Client_Update::fileError()
{
    size_edit->setText("- Bytes"); // not translated here: meant
    file_size = -1;
    enable(flash_button, false);
}

void Client_Update::updateFirmware()
{
    if (!device)
        return;
    if (host_radio->isChecked()) {
        updateFirmwareHOST();
        return;
    }
    for (QPushButton *button : {check_button, flash_button, back_button})
        enable(button, false);
    updateFirmwareWIFI();
}

void Client_Update::updateFirmwareWIFI()
{
    // The module is given the folder and the size; it knows the name of the file.
    const QString body = R"({"action": "seturl", "otaaddress": ")" + url_edit->text() +
                         R"(", "filesize": ")" + QString::number(file_size) + R"(" })";
    qDebug() << "CONFIG STRING: >>>" << body << "<<<\n\n";
    post_json(this, device->otaupgrade_url, body, "application/json", SLOT(replyFinished(QNetworkReply *)));
}

void Client_Update::replyFinished(QNetworkReply *reply)
{
    const QJsonObject object = read_json_reply(reply, "Client Update reply received");
    if (object.isEmpty())
        return;
    if (object.value("returncode").toString() == "success") {
        qDebug() << "Started Firmware Update";
        updateCheckTimer();
    } else {
        qDebug() << "Start of Firmware Update failed"; // all buttons stay off: meant
    }
}

void Client_Update::updateCheckTimer()
{
    if (!device)
        return;
    post_json(this, device->otaupgrade_url, R"({"action": "querystatus"} )", "application/json",
              SLOT(replyFinishedUpdateCheck(QNetworkReply *)));
}

void Client_Update::replyFinishedUpdateCheck(QNetworkReply *reply)
{
    const QJsonObject object = read_json_reply(reply, "Client UpdateCheck reply received");
    if (object.isEmpty())
        return; // polling ends: only a status arms the next poll

    const int status = number_of(object, "status");
    const int errinfo = number_of(object, "errinfo");
    const int progress = number_of(object, "downprogress");
    qDebug() << "Status:" << status << "Error:" << errinfo << "Progress:" << progress;
    progress_bar->setValue(progress);
    show_status(status, errinfo);
    if (status == status_done) {
        progress_bar->setValue(progress_bar->maximum());
        enable(back_button, true);
    } else if (status != status_error) {
        QTimer::singleShot(poll_ms, this, SLOT(updateCheckTimer()));
    }
}

void Client_Update::show_status(int status, int errinfo)
{
    const char *text = status == status_error ? text_of(error_texts, errinfo, other_error)
                                              : text_of(status_texts, status, nullptr);
    if (text)
        status_label->setText(tr(text));
}
