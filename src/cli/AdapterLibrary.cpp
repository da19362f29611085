#include "cli/AdapterLibrary.h"

#include "cli/ExitCodes.h"
#include "cli/Interruption.h"
#include "link/AdapterStartUp.h"
#include "link/USBFunctions.h"

#include <cstdio>
#include <dlfcn.h>
#include <string_view>
#include <utility>

namespace ztm::cli {
namespace {

constexpr const char *libraryFile = "/libUSBFunctions.so";

void *library = nullptr;
decltype(&::LoadFirmWare) loadFirmWare = nullptr;
decltype(&::VendorIORequest) vendorIORequest = nullptr;

const char *FolderOf(Adapter adapter) {
    switch (adapter) {
    case Adapter::Sim:
        return "/sim";
    case Adapter::I2c:
        return "/i2c";
    case Adapter::Usb:
        break;
    }
    return "/usb";
}

/// An entry of the library, declared as `Entry`.
template <class Entry>
Entry *Find(const char *name) {
    void *entry = dlsym(library, name);
    if (entry == nullptr) {
        throw Failure(ChipFailed, std::string("the adapter library lacks ") + name);
    }
    return reinterpret_cast<Entry *>(entry);
}

/// Where the library says why something failed: a stream in memory that stands for standard error
/// while one of its entries runs.
class Ear {
public:
    Ear() : stream(open_memstream(&bytes, &length)) {}

    template <class Call>
    auto During(const Call &call) {
        std::swap(stream, stderr);
        const auto result = call();
        std::swap(stream, stderr);
        return result;
    }

    std::string Take() {
        std::fflush(stream);
        const std::string said(bytes, length);
        std::rewind(stream);
        return said;
    }

private:
    char *bytes = nullptr;
    size_t length = 0;
    FILE *stream;
};

Ear &TheEar() {
    static auto *const ear = new Ear; // libraries outlive what is destroyed at the end
    return *ear;
}

/// Without the program's name that each line starts with, and its line end.
std::string Cleaned(std::string said) {
    constexpr std::string_view endOfName = ": ";
    if (said.starts_with("ztm-eval")) {
        said.erase(0, said.find(endOfName) + endOfName.size());
    }
    while (said.ends_with('\n')) {
        said.pop_back();
    }
    return said;
}

} // namespace

void OpenAdapterLibrary(Adapter adapter) {
    const std::string path = ProgramFolder() + FolderOf(adapter) + libraryFile;
    library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw Failure(ChipFailed,
                      std::string("no adapter library, install it again: ") + dlerror());
    }
    loadFirmWare = Find<decltype(::LoadFirmWare)>("LoadFirmWare");
    vendorIORequest = Find<decltype(::VendorIORequest)>("VendorIORequest");
}

void ListBuses(std::vector<i2c::ListedBus> &buses) {
    Find<decltype(::ListI2cBuses)>("ListI2cBuses")(&buses);
}

void ChooseBus(const i2c::BusChoice &choice) {
    Find<decltype(::ChooseI2cBus)>("ChooseI2cBus")(&choice);
}

void LookAtBus(i2c::BusReport &report) {
    Find<decltype(::LookAtI2cBus)>("LookAtI2cBus")(&report);
}

void ReadBoard(sim::BoardSettings &settings, sim::BoardState &state) {
    Find<decltype(::ReadSimulatedBoard)>("ReadSimulatedBoard")(&settings, &state);
}

void ArrangeBoard(const sim::BoardSettings &settings) {
    Find<decltype(::ArrangeSimulatedBoard)>("ArrangeSimulatedBoard")(&settings);
}

void MoveBoardClock(double seconds) {
    static const auto entry = Find<decltype(::MoveSimulatedBoardClock)>("MoveSimulatedBoardClock");
    entry(seconds);
}

std::string TakeLibraryText() {
    return Cleaned(TheEar().Take());
}

} // namespace ztm::cli

extern "C" {

int16_t LoadFirmWare(const char *path) {
    return ztm::cli::TheEar().During([path] { return ztm::cli::loadFirmWare(path); });
}

int16_t VendorIORequest(int16_t request, int32_t value, int32_t index, int16_t direction,
                        int16_t length, uint8_t *buffer) {
    ztm::cli::CheckInterruption();
    return ztm::cli::TheEar().During([=] {
        return ztm::cli::vendorIORequest(request, value, index, direction, length, buffer);
    });
}
}
