// The satellite receiver: which port it is at, and where it says that we are. Reading begins with the window,
// which is hidden most of the time.
#pragma once

#include "geo/nmea/CGpsData.h"
#include "shell/dialogs/CSizeDlg.h"

class QComboBox;
class QLabel;
class QLineEdit;

class CDlgGps : public CSizeDlg {
public:
    explicit CDlgGps(QWidget* parent = nullptr);

    // Fills the window and opens the port, without showing anything.
    void Create();
    const CGpsData& Gps() const { return m_gps; }

protected:
    void OnInitDialog() override {}
    void OnOK() override;
    void OnCancel() override { hide(); }
    void OnTimer(int id) override;

private:
    void FillPorts();
    void FillDevices();
    void ShowDevice();
    void Connect();
    void ShowAge();

    CGpsData m_gps;
    QComboBox* m_ports;
    QComboBox* m_bauds;
    QComboBox* m_devices;
    QLabel* m_status;
    QLineEdit* m_longitude;
    QLineEdit* m_latitude;
    QLabel* m_age;
    int m_dots = 0;
};
