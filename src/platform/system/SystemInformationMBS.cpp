#include "platform/system/SystemInformationMBS.h"

#include <cstdlib>
#include <sstream>

#include <boost/uuid/name_generator_sha1.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <pwd.h>
#include <unistd.h>

#include "platform/base/Text.h"
#include "platform/base/Trace.h"
#include "platform/files/FileSystem.h"

namespace varnith {

namespace {

// The value of a key in /etc/os-release. Its lines are shell assignments, whose values may be quoted and may
// escape characters with a backslash (os-release(5)).
std::string OSReleaseValue(const std::string& key) {
    std::istringstream lines(FileSystem::Current().Contents("/etc/os-release"));
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(key + "=")) continue;
        std::string value;
        char quote = 0;
        for (std::size_t i = key.size() + 1; i < line.size(); ++i) {
            if (line[i] == '\\' && quote != '\'' && i + 1 < line.size())
                value += line[++i];
            else if (line[i] == quote)
                quote = 0;
            else if (!quote && (line[i] == '"' || line[i] == '\''))
                quote = line[i];
            else
                value += line[i];
        }
        return value;
    }
    return {};
}

// A size from /proc/meminfo, converted from KiB to bytes (https://docs.kernel.org/filesystems/proc.html).
double MemoryInfo(const std::string& key) {
    std::istringstream lines(FileSystem::Current().Contents("/proc/meminfo"));
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(key + ":")) return Val(line.substr(key.size() + 1)) * 1024;
    return 0;
}

// The total size of the memory blocks that are online, in bytes; 0 if the system doesn't list memory blocks
// (https://docs.kernel.org/admin-guide/mm/memory-hotplug.html).
double MemoryInBlocks() {
    const FileSystem& disk = FileSystem::Current();
    const std::string folder = "/sys/devices/system/memory";
    const double size = std::strtod(("0x" + disk.Contents(folder + "/block_size_bytes")).c_str(), nullptr);
    double sum = 0;
    for (const DirectoryEntry& entry : disk.Entries(folder))
        if (Trim(disk.Contents(folder + "/" + entry.name + "/online")) == "1") sum += size;
    return sum;
}

// The serial number from the firmware. Device trees end it with a NUL, which c_str() cuts off.
std::string SerialOfHardware() {
    for (const char* place : {"/sys/class/dmi/id/product_serial", "/proc/device-tree/serial-number"}) {
        const std::string serial = Trim(FileSystem::Current().Contents(place).c_str());
        if (!serial.empty()) return serial;
    }
    return {};
}

// A name-based UUID (RFC 4122, section 4.3). It is a hash of the machine id, so it doesn't reveal the id.
std::string SerialOfInstallation() {
    constexpr boost::uuids::uuid Varnith = {
        {0x5e, 0x1b, 0x0c, 0x3f, 0x9d, 0x42, 0x4a, 0x7e, 0x8f, 0x16, 0xd3, 0x60, 0x2a, 0xc9, 0x75, 0xb8}};
    const std::string machine = Trim(FileSystem::Current().Contents("/etc/machine-id"));
    return machine.empty() ? "" : to_string(boost::uuids::name_generator_sha1(Varnith)(machine));
}

}  // namespace

std::string SystemInformationMBS::OSName() {
    const std::string name = OSReleaseValue("NAME");
    return name.empty() ? "Linux" : name;
}

std::string SystemInformationMBS::OSVersionString() {
    for (const char* key : {"VERSION", "VERSION_ID", "BUILD_ID"}) {
        std::string version = OSReleaseValue(key);
        if (!version.empty()) return version;
    }
    return {};
}

double SystemInformationMBS::LogicalRAM() {
    const double built_in = MemoryInBlocks();
    return built_in > 0 ? built_in : MemoryInfo("MemTotal");
}

double SystemInformationMBS::AvailableRAM() {
    return MemoryInfo("MemAvailable");
}

std::string SystemInformationMBS::MacSerialNumber() {
    const std::string serial = SerialOfHardware();
    return serial.empty() ? SerialOfInstallation() : serial;
}

std::string SystemInformationMBS::Username() {
    const passwd* user = getpwuid(getuid());
    if (!user && IsTracing()) TraceFailure("find the name of user", std::to_string(getuid()), "no such user");
    return user ? user->pw_name : "";
}

}  // namespace varnith
