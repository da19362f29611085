#include "adapter/usb/UsbAdapter.h"

#include "adapter/usb/ArrivalWatch.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace ztm::usb {
namespace {

constexpr int16_t success = 0;
constexpr int16_t failure = -1;

constexpr int16_t fromAdapter = 1;
constexpr int32_t largestByte = 0xFF;
constexpr int32_t largestWord = 0xFFFF;
constexpr int16_t longestReply = 64;

std::string Text(UsbId id) {
    char text[sizeof "0000:0000"];
    std::snprintf(text, sizeof text, "%04x:%04x", id.vendor, id.product);
    return text;
}

/// The rule line of packaging/70-ztm-eval.rules, with the ids of this build.
std::string AccessRule() {
    char rule[200];
    std::snprintf(rule, sizeof rule,
                  "SUBSYSTEM==\"usb\", ENV{DEVTYPE}==\"usb_device\", ATTR{idVendor}==\"%04x\", "
                  "ATTR{idProduct}==\"%04x|%04x\", MODE=\"0660\", GROUP=\"plugdev\", "
                  "TAG+=\"uaccess\"",
                  runningAdapter.vendor, runningAdapter.product, loadingAdapter.product);
    return rule;
}

/// Why a device could not be opened, and how to fix it.
std::string OpenFault(UsbId id, int error) {
    switch (error) {
    case LIBUSB_ERROR_NO_DEVICE:
        return "no USB adapter " + Text(runningAdapter) + " or " + Text(loadingAdapter) +
               " is plugged in";
    case LIBUSB_ERROR_ACCESS:
        return "no permission to open the USB adapter " + Text(id) +
               "; as root, put the following line into /etc/udev/rules.d/70-ztm-eval.rules, run "
               "\"udevadm control --reload\", and plug the adapter in again: " +
               AccessRule();
    case LIBUSB_ERROR_BUSY:
        return "the USB adapter " + Text(id) + " is in use by another program";
    default:
        return "the USB adapter " + Text(id) + " cannot be opened: " + libusb_strerror(error);
    }
}

bool IsWithin(int32_t number, int32_t largest) {
    return number >= 0 && number <= largest;
}

} // namespace

int16_t UsbAdapter::LoadFirmWare(const char *path) {
    device.Close();
    context.reset();
    std::string fault;
    if (const auto firmware = ReadFirmware(path, fault)) {
        fault = Start(*firmware);
    }
    if (fault.empty()) {
        return success;
    }
    device.Close();
    context.reset();
    std::fprintf(stderr, "ztm-eval: %s\n", fault.c_str());
    return failure;
}

/// Empty if the adapter is open and running, otherwise the reason.
std::string UsbAdapter::Start(const Firmware &firmware) {
    context = NewContext();
    if (!context) {
        return "USB cannot be used: libusb does not start";
    }
    if (const int error = device.Open(context.get(), runningAdapter);
        error != LIBUSB_ERROR_NO_DEVICE) {
        return error ? OpenFault(runningAdapter, error) : "";
    }
    if (const int error = device.Open(context.get(), loadingAdapter)) {
        return OpenFault(loadingAdapter, error);
    }
    return StartWithFirmware(firmware);
}

std::string UsbAdapter::StartWithFirmware(const Firmware &firmware) {
    Context opened;
    {
        ArrivalWatch watch(context.get(), runningAdapter);
        if (const int error = Download(device, firmware, bounds.load)) {
            return "the firmware could not be loaded into the USB adapter " + Text(loadingAdapter) +
                   ": " + libusb_strerror(error);
        }
        device.Close();
        const int error = OpenOnArrival(watch, opened);
        if (error == LIBUSB_ERROR_NO_DEVICE) {
            return "the USB adapter did not come back as " + Text(runningAdapter) +
                   " after its firmware was loaded";
        }
        if (error) {
            return OpenFault(runningAdapter, error);
        }
    }
    context = std::move(opened);
    return "";
}

/// Opens the adapter in a new context, which finds it even without hotplug support. Retries after
/// any error: access rights, for one, are set a moment after the arrival.
int UsbAdapter::OpenOnArrival(ArrivalWatch &watch, Context &opened) {
    using std::chrono::milliseconds;
    const auto now = std::chrono::steady_clock::now;
    const auto end = now() + bounds.comeBack;
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(end - now());
        watch.Wait(std::clamp(left, milliseconds(0), bounds.look));
        opened = NewContext();
        const int error =
            opened ? device.Open(opened.get(), runningAdapter) : int{LIBUSB_ERROR_OTHER};
        if (error == 0 || now() >= end) {
            return error;
        }
    }
}

int16_t UsbAdapter::VendorIORequest(int16_t request, int32_t value, int32_t index,
                                    int16_t direction, int16_t length, uint8_t *buffer) {
    const bool hasReply = direction == fromAdapter;
    if (!device.IsOpen() || !IsWithin(request, largestByte) || !IsWithin(value, largestWord) ||
        !IsWithin(index, largestWord) || !IsWithin(direction, fromAdapter) ||
        !IsWithin(length, hasReply ? longestReply : 0) || (hasReply && !buffer)) {
        return failure;
    }
    std::array<uint8_t, longestReply> reply;
    const VendorRequest sent{hasReply ? Direction::FromDevice : Direction::ToDevice,
                             static_cast<uint8_t>(request), static_cast<uint16_t>(value),
                             static_cast<uint16_t>(index), static_cast<uint16_t>(length)};
    if (device.Transfer(sent, reply.data(), bounds.request) != length) {
        return failure;
    }
    if (hasReply) {
        std::copy_n(reply.begin(), length, buffer);
    }
    return success;
}

} // namespace ztm::usb
