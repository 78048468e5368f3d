#include "platform/system/SystemInformationMBS.h"

#include <sstream>

#include "platform/files/FileSystem.h"

namespace varnith {

namespace {

// The value of a key of os-release: shell-like assignments, maybe in quotes, with "\" in front of a
// character that is meant as it stands.
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

}  // namespace

std::string SystemInformationMBS::OSName() {
    const std::string name = OSReleaseValue("NAME");
    return name.empty() ? "Linux" : name;
}

}  // namespace varnith
