// Which device of this machine a port number means.
#pragma once

#include <string>
#include <vector>

// Host path. What "ports.ini" in the program folder ties the number to; else the first of /dev/ttyUSB<n-1>,
// /dev/ttyACM<n-1> and /dev/ttyS<n-1> that is there, the last one if none is.
std::string SerialDeviceName(int port);

struct SerialPortInfo {
    std::string Device;       // host path
    std::string Description;  // what the device says of itself; may be empty
};
// Those that are plugged in.
std::vector<SerialPortInfo> FindSerialPorts();

// Empty: none.
std::string TiedDevice(int port);
// An empty device unties. False if the file can't be written.
bool TieDevice(int port, const std::string& device);
