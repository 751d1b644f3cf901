// SPDX-License-Identifier: GPL-3.0-or-later
// The list by SetupAPI, ids and report sizes by hid.dll, the place from the nodes above the device.

#include "HidInterface.h"

#include "WindowsHandle.h"

#include <initguid.h>

#include <cfgmgr32.h>
#include <devpkey.h>
#include <setupapi.h>

extern "C"
{
#include <hidsdi.h>
}

#include <array>
#include <cstddef>
#include <cwchar>
#include <cwctype>
#include <memory>

namespace wqv
{
namespace
{

/** The numbers right behind each place where @p name stands in a text. */
std::vector<std::uint64_t> numbersAfter (std::wstring_view name, const std::wstring& text, int base)
{
    std::vector<std::uint64_t> numbers;

    for (auto found = text.find (name); found != std::wstring::npos; found = text.find (name, found))
    {
        found += name.size();
        numbers.push_back (std::wcstoul (text.c_str() + found, nullptr, base));
    }

    return numbers;
}

/** The path of locations of a device node; empty if it has none. */
std::wstring locationPathOf (DEVINST node)
{
    std::array<wchar_t, 512> paths {}; // the first of several, each with a zero behind it
    DEVPROPTYPE type = 0;
    ULONG size = sizeof (paths) - sizeof (wchar_t);

    if (CM_Get_DevNode_PropertyW (
            node, &DEVPKEY_Device_LocationPaths, &type, reinterpret_cast<BYTE*> (paths.data()), &size, 0)
        != CR_SUCCESS)
        return {};

    return paths.data();
}

/** Asks the nodes from the device upwards: that of the USB device knows. */
std::uint64_t locationOf (DEVINST node)
{
    for (;;)
    {
        if (const auto location = usbLocation (locationPathOf (node)); location != 0)
            return location;

        if (CM_Get_Parent (&node, node, 0) != CR_SUCCESS)
            return 0;
    }
}

struct DeviceListDeleter
{
    void operator() (void* list) const { SetupDiDestroyDeviceInfoList (list); }
};

/** A list of devices; null for none. */
using DeviceList = std::unique_ptr<void, DeviceListDeleter>;

DeviceList ownedList (HDEVINFO list)
{
    return DeviceList (list != INVALID_HANDLE_VALUE ? list : nullptr);
}

struct InterfaceDetail
{
    std::wstring path; ///< empty if the device has just gone
    DEVINST node = 0;
};

InterfaceDetail detailOf (const DeviceList& list, SP_DEVICE_INTERFACE_DATA& interfaceData)
{
    DWORD size = 0;
    SetupDiGetDeviceInterfaceDetailW (list.get(), &interfaceData, nullptr, 0, &size, nullptr);

    // The structure ends with the path.
    std::vector<std::max_align_t> memory (1 + size / sizeof (std::max_align_t));
    auto* const detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*> (memory.data());
    detail->cbSize = sizeof (*detail);
    SP_DEVINFO_DATA node {};
    node.cbSize = sizeof (node);

    if (SetupDiGetDeviceInterfaceDetailW (list.get(), &interfaceData, detail, size, nullptr, &node) == FALSE)
        return {};

    return { .path = detail->DevicePath, .node = node.DevInst };
}

DEVINST nodeOf (const std::wstring& path)
{
    const auto list = ownedList (SetupDiCreateDeviceInfoList (nullptr, nullptr));
    SP_DEVICE_INTERFACE_DATA interfaceData {};
    interfaceData.cbSize = sizeof (interfaceData);

    if (list == nullptr || SetupDiOpenDeviceInterfaceW (list.get(), path.c_str(), 0, &interfaceData) == FALSE)
        return 0;

    return detailOf (list, interfaceData).node;
}

/** The lengths that Windows knows are those of its own buffers, with a byte for the id. */
std::uint32_t withoutId (USHORT length)
{
    return length > 0 ? length - 1U : 0U;
}

void describeReports (HANDLE file, HidDevice& device)
{
    PHIDP_PREPARSED_DATA data = nullptr;

    if (HidD_GetPreparsedData (file, &data) == FALSE)
        return;

    HIDP_CAPS capabilities {};

    if (HidP_GetCaps (data, &capabilities) == HIDP_STATUS_SUCCESS)
    {
        device.inputReportLength = withoutId (capabilities.InputReportByteLength);
        device.outputReportLength = withoutId (capabilities.OutputReportByteLength);
    }

    HidD_FreePreparsedData (data);
}

} // namespace

GUID hidInterfaceClass()
{
    GUID id {};
    HidD_GetHidGuid (&id);
    return id;
}

std::vector<std::wstring> presentHidInterfaces()
{
    std::vector<std::wstring> paths;
    const auto classId = hidInterfaceClass();
    const auto list =
        ownedList (SetupDiGetClassDevsW (&classId, nullptr, nullptr, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE));
    SP_DEVICE_INTERFACE_DATA interfaceData {};
    interfaceData.cbSize = sizeof (interfaceData);

    if (list == nullptr)
        return paths;

    for (DWORD i = 0; SetupDiEnumDeviceInterfaces (list.get(), nullptr, &classId, i, &interfaceData) != FALSE; ++i)
        if (const auto path = detailOf (list, interfaceData).path; ! path.empty())
            paths.push_back (normalised (path));

    return paths;
}

std::wstring normalised (std::wstring_view path)
{
    std::wstring result (path);

    for (auto& character : result)
        character = static_cast<wchar_t> (std::towlower (static_cast<std::wint_t> (character)));

    return result;
}

std::optional<HidDevice> describeHidInterface (const std::wstring& path)
{
    // For its properties alone, which everybody may read.
    const WindowsHandle file (
        CreateFileW (path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
    HIDD_ATTRIBUTES attributes {};
    attributes.Size = sizeof (attributes);

    if (! file.isValid() || HidD_GetAttributes (file.get(), &attributes) == FALSE)
        return {};

    HidDevice device { .vendorId = attributes.VendorID,
                       .productId = attributes.ProductID,
                       .versionNumber = attributes.VersionNumber,
                       .location = locationOf (nodeOf (path)),
                       .interfaceNumber = interfaceNumberIn (path) };
    describeReports (file.get(), device);
    return device;
}

std::int32_t interfaceNumberIn (const std::wstring& path)
{
    const auto numbers = numbersAfter (L"&mi_", path, 16);
    return numbers.empty() ? 0 : static_cast<std::int32_t> (numbers.front());
}

std::uint64_t usbLocation (const std::wstring& path)
{
    constexpr std::size_t levels = 6;
    auto ports = numbersAfter (L"#USB(", path, 10);

    if (ports.empty())
        return 0;

    // The host controller by its device and function, 8 bits, and those of the bridge that it may be behind.
    std::uint64_t location = 0;

    for (const auto place : numbersAfter (L"#PCI(", path, 16))
        location = ((location << 8) | ((place >> 5) & 0xF8) | (place & 7)) & 0xFFFF;

    ports.resize (levels);

    for (const auto port : ports)
        location = (location << 8) | (port & 0xFF);

    return location;
}

} // namespace wqv
