// SPDX-License-Identifier: GPL-3.0-or-later
// A USB device for a test that is not a program of this system: wqv-usb-device ORDERS reads orders from the end of that file,
// one a line, and answers each with a line: plug, unplug, send BYTE (128 of them), taken, quit.

#include "UsbDevice.h"

#include <chrono>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>

namespace
{

void obey (wqv::UsbDevice& device, const std::string& line)
{
    std::istringstream words (line);
    std::string order;
    unsigned byte = 0;
    words >> order >> byte;

    if (order == "plug")
        device.plugIn();
    else if (order == "unplug")
        device.unplug();
    else if (order == "send")
        device.send (std::vector<std::uint8_t> (128, static_cast<std::uint8_t> (byte)));

    std::cout << device.taken() << std::endl; // NOLINT (performance-avoid-endl): at once
}

} // namespace

int main (int argc, char* argv[])
{
    try
    {
        std::ifstream orders (argc == 2 ? argv[1] : "");
        wqv::UsbDevice device;

        for (std::string line; orders.is_open() && line != "quit";)
        {
            // Who writes into the file has nothing else to say that there is more.
            if (std::getline (orders, line))
                obey (device, line);
            else
                std::this_thread::sleep_for (std::chrono::milliseconds (10));

            orders.clear();
        }

        return 0;
    }
    catch (const std::exception& error)
    {
        std::cerr << "wqv-usb-device: " << error.what() << '\n';
        return 1;
    }
}
