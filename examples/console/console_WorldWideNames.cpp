#include "console_WorldWideNames.h"

#include <cerrno>

#include <unistd.h>

#include "console_Files.h"
#include "console_SmallFile.h"
#include "ut_SerialNumber.h"
#include "ut_WWN.h"

namespace console {

namespace {

// Returns the first line that is not empty of `files` in `folder`.
std::string firstOf(const std::string& folder, std::initializer_list<const char*> files, std::string* failure) {
    for (const char* file : files) {
        std::string line = firstLineOf(folder + file, failure);
        if (!line.empty())
            return line;
    }
    return "";
}

// Returns the serial number of a SCSI disk's page 0x80 of vital product data: a header of four bytes, of which the last
// two are the length, then the text.
std::string serialOfPage(const std::string& path, std::string* failure) {
    constexpr std::size_t headerSize = 4;
    constexpr char pageCode = '\x80';
    const SmallFile page(path);
    if (!page.isRead() && page.error() != ENOENT && failure->empty())
        *failure = page.failure();
    const std::string& bytes = page.content();
    if (bytes.size() < headerSize || bytes[1] != pageCode)
        return "";
    const std::size_t length = static_cast<unsigned char>(bytes[2]) * 256U + static_cast<unsigned char>(bytes[3]);
    return trimmed(bytes.substr(headerSize, length));
}

} // namespace

std::string identifierText(const std::string& text) {
    std::string digits = text;
    for (const char* prefix : {"0x", "naa."}) {
        const std::string start = prefix;
        if (text.compare(0, start.size(), start) == 0)
            digits = text.substr(start.size());
    }
    char buffer[33];
    if (utility::WWN::isWWN(digits.c_str()))
        return utility::WWN(digits.c_str()).toBuffer(buffer, sizeof buffer);
    if (utility::SerialNumber::isSerialNumber(digits.c_str()))
        return utility::SerialNumber(digits.c_str()).toBuffer(buffer, sizeof buffer);
    return text;
}

std::vector<FibreChannelHost> fibreChannelHostsUnder(const std::string& root, std::string* failure) {
    const std::string hosts = root + "/sys/class/fc_host";
    std::vector<FibreChannelHost> list;
    for (const std::string& name : namesIn(hosts, failure)) {
        const std::string folder = std::string(hosts).append("/").append(name);
        list.push_back({name, identifierText(firstLineOf(folder + "/node_name", failure)),
                        identifierText(firstLineOf(folder + "/port_name", failure))});
    }
    return list;
}

std::vector<DiskIdentity> disksUnder(const std::string& root, std::string* failure) {
    const std::string devices = root + "/sys/block";
    std::vector<DiskIdentity> list;
    for (const std::string& name : namesIn(devices, failure)) {
        const std::string folder = std::string(devices).append("/").append(name);
        if (access((folder + "/device").c_str(), F_OK) != 0)
            continue;
        const std::string wwn = firstOf(folder, {"/device/wwid", "/wwid"}, failure);
        std::string serial = trimmed(firstOf(folder, {"/device/serial", "/serial"}, failure));
        if (serial.empty())
            serial = serialOfPage(folder + "/device/vpd_pg80", failure);
        list.push_back({name, identifierText(wwn), identifierText(serial)});
    }
    return list;
}

} // namespace console
