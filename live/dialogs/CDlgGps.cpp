#include "live/dialogs/CDlgGps.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <array>

#include "geo/serial/serialports.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/settings.h"

namespace {

constexpr int IdPort = 1051;
constexpr int IdBaud = 1052;
constexpr int IdStatus = 1048;
constexpr int IdLongitude = 1056;
constexpr int IdLatitude = 1057;
constexpr int IdAge = 5020;
constexpr int IdDevice = 5021;
constexpr int IdDeviceLabel = 5022;

constexpr int MessageNoPort = 2161;
constexpr int MessageReceiving = 2162;
constexpr int MessageWaiting = 2163;
constexpr int MessageAge = 3442;
constexpr int MessageStale = 3443;
constexpr int MessageNoFix = 3444;
constexpr int MessageDevice = 3447;
constexpr int MessageAutomatic = 3448;

constexpr int Ports = 15;
constexpr std::array<const char*, 6> Bauds = {"4800", "9600", "19200", "38400", "57600", "115200"};
constexpr int TimerShow = 1;
constexpr int ShowEach = 500;  // milliseconds
constexpr int Dots = 3;
constexpr int Decimals = 12;

}  // namespace

CDlgGps::CDlgGps(QWidget* parent)
    : CSizeDlg(parent),
      m_ports(AddControl(IdPort, new QComboBox(this))),
      m_bauds(AddControl(IdBaud, new QComboBox(this))),
      m_devices(AddControl(IdDevice, new QComboBox(this))),
      m_status(AddControl(IdStatus, new QLabel("***", this))),
      m_longitude(AddControl(IdLongitude, new QLineEdit(this))),
      m_latitude(AddControl(IdLatitude, new QLineEdit(this))),
      m_age(AddControl(IdAge, new QLabel(this))) {
    setWindowTitle("GPS");
    auto* form = new QFormLayout;
    const auto addRow = [&](int id, const char* caption, QWidget* control) {
        auto* label = AddControl(id, new QLabel(caption, this));
        label->setBuddy(control);
        form->addRow(label, control);
    };
    addRow(1065, "COM口:", m_ports);
    addRow(IdDeviceLabel, "设备:", m_devices);
    addRow(1066, "波特率:", m_bauds);
    addRow(1067, "当前经度:", m_longitude);
    addRow(1068, "当前纬度:", m_latitude);
    for (QLineEdit* shown : {m_longitude, m_latitude}) {
        shown->setReadOnly(true);
        shown->setMinimumWidth(200);
    }
    auto* row = new QHBoxLayout;
    row->addWidget(m_status, 1);
    row->addWidget(AddControl(IdOk, new QPushButton("重新连接", this)));
    auto* column = new QVBoxLayout(this);
    column->addLayout(form);
    column->addWidget(m_age);
    column->addLayout(row);
    connect(m_ports, &QComboBox::currentIndexChanged, this, [this] { ShowDevice(); });
}

void CDlgGps::Create() {
    SetCaption(400);
    SetCaptions(
        {{1065, 401}, {1066, 402}, {1067, 403}, {1068, 404}, {IdOk, 450}, {IdDeviceLabel, MessageDevice}});
    FillPorts();
    Connect();
}

void CDlgGps::FillPorts() {
    for (int port = 1; port <= Ports; ++port) {
        m_ports->addItem("COM" + QString::number(port));
    }
    for (const char* baud : Bauds) {
        m_bauds->addItem(baud);
    }
    m_ports->setCurrentIndex(static_cast<int>(GetGpsPort()) - 1);
    m_bauds->setCurrentIndex(std::max(0, m_bauds->findText(QString::number(GetGpsBaud()))));
    FillDevices();
    ShowDevice();
}

void CDlgGps::FillDevices() {
    m_devices->clear();
    m_devices->addItem(MessageText(MessageAutomatic), QString());
    for (const SerialPortInfo& found : FindSerialPorts()) {
        const QString device = ToQt(found.Device);
        m_devices->addItem(found.Description.empty() ? device : device + "  " + ToQt(found.Description),
                           device);
    }
}

// One that isn't plugged in now stays tied.
void CDlgGps::ShowDevice() {
    const QString tied = ToQt(TiedDevice(m_ports->currentIndex() + 1));
    if (m_devices->findData(tied) < 0) {
        m_devices->addItem(tied, tied);
    }
    m_devices->setCurrentIndex(m_devices->findData(tied));
}

void CDlgGps::OnOK() {
    Connect();
}

void CDlgGps::Connect() {
    m_gps.Close();
    KillTimer(TimerShow);
    const int port = std::max(1, m_ports->currentIndex() + 1);
    SetGpsPort(static_cast<std::uint32_t>(port));
    SetGpsBaud(static_cast<std::uint32_t>(m_bauds->currentText().toInt()));
    (void)SaveSettings();
    if (const std::string device = FromQt(m_devices->currentData().toString()); device != TiedDevice(port)) {
        (void)TieDevice(port, device);
    }
    if (m_gps.Open(port, static_cast<int>(GetGpsBaud())) == 1) {
        SetTimer(TimerShow, ShowEach);
        m_age->clear();
    } else {
        m_status->setText(MessageText(MessageNoPort));
        m_age->setText(ToQt(m_gps.Port().LastError()));
    }
}

void CDlgGps::OnTimer(int) {
    const GpsFix fix = m_gps.Fix();
    if (fix.Longitude > 0 || fix.Latitude > 0) {
        m_longitude->setText(ToQt(FormatNumber(fix.Longitude, Decimals)));
        m_latitude->setText(ToQt(FormatNumber(fix.Latitude, Decimals)));
    }
    if (m_gps.GetReceiveBuffer().empty()) {
        m_status->setText(MessageText(MessageWaiting));
    } else {
        m_dots = m_dots == Dots ? 0 : m_dots + 1;
        m_status->setText(MessageText(MessageReceiving) + QString(m_dots, '.'));
    }
    ShowAge();
}

void CDlgGps::ShowAge() {
    const std::optional<std::chrono::seconds> age = m_gps.Age();
    QString text =
        age ? ToQt(FillText(LoadMessage(MessageAge), {FormatInt(age->count())})) : MessageText(MessageNoFix);
    if (m_gps.IsStale()) {
        text += "  " + MessageText(MessageStale);
    }
    m_age->setText(text);
}
