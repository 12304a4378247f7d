// MD5 beside OpenSSL's, and the 1-Wire CRC-8 beside Boost's and beside one table look-up for each byte.

#include <cstddef>
#include <cstring>
#include <random>
#include <vector>

#include <boost/crc.hpp>
#include <openssl/evp.h>

#include "bench.h"
#include "ut_Misc.h"
#include "ut_md5.h"

namespace bench {
namespace {

std::vector<unsigned char> randomBytes(std::size_t size) {
    std::mt19937 random(1);
    std::vector<unsigned char> bytes(size);
    for (unsigned char& byte : bytes)
        byte = static_cast<unsigned char>(random());
    return bytes;
}

// Reuses OpenSSL's context for all digests, as a caller concerned with speed does.
class Md5 {
public:
    explicit Md5(std::size_t size)
        : m_bytes(randomBytes(size)), m_context(EVP_MD_CTX_new()), m_md5(EVP_MD_fetch(nullptr, "MD5", nullptr)) {}
    Md5(const Md5&) = delete;
    Md5& operator=(const Md5&) = delete;
    ~Md5() {
        EVP_MD_free(m_md5);
        EVP_MD_CTX_free(m_context);
    }
    void ours() {
        md5_state_t state;
        md5_init(&state);
        md5_append(&state, m_bytes.data(), static_cast<int>(m_bytes.size()));
        md5_finish(&state, m_ours);
        keep(*this);
    }
    void theirs() {
        EVP_DigestInit_ex2(m_context, m_md5, nullptr);
        EVP_DigestUpdate(m_context, m_bytes.data(), m_bytes.size());
        EVP_DigestFinal_ex(m_context, m_theirs, nullptr);
        keep(*this);
    }
    bool same() {
        ours();
        theirs();
        return std::memcmp(m_ours, m_theirs, sizeof m_ours) == 0;
    }

private:
    std::vector<unsigned char> m_bytes;
    EVP_MD_CTX* m_context;
    EVP_MD* m_md5;
    unsigned char m_ours[16] = {};
    unsigned char m_theirs[16] = {};
};

using BoostCrc = boost::crc_optimal<8, 0x31, 0xFF, 0, true, true>;

[[gnu::noipa]] unsigned char crcOfBoost(const std::vector<unsigned char>& bytes) {
    BoostCrc crc;
    crc.process_bytes(bytes.data(), bytes.size());
    return crc.checksum();
}

[[gnu::noipa]] unsigned char crcByTable(const std::vector<unsigned char>& bytes) {
    unsigned char crc = 0xFF;
    for (const unsigned char byte : bytes)
        crc = utility::Misc::m_crc_array[crc ^ byte];
    return crc;
}

unsigned char crc(std::vector<unsigned char>& bytes) {
    return utility::Misc::calc_crc(reinterpret_cast<char*>(bytes.data()), static_cast<int>(bytes.size()));
}

void crcs(Bench& bench, std::size_t size, const char* work, double limit) {
    std::vector<unsigned char> bytes = randomBytes(size);
    const auto ours = [&](long) {
        keep(crc(bytes));
    };
    bench.row({work, "boost::crc_optimal", limit}, crc(bytes) == crcOfBoost(bytes), ours,
              [&](long) { keep(crcOfBoost(bytes)); });
    bench.row({work, "one table look-up for each byte"}, crc(bytes) == crcByTable(bytes), ours,
              [&](long) { keep(crcByTable(bytes)); });
}

void digests(Bench& bench, std::size_t size, const char* work) {
    Md5 md5(size);
    bench.row(
        {work, "OpenSSL", 1.0}, md5.same(), [&](long) { md5.ours(); }, [&](long) { md5.theirs(); });
}

} // namespace

void benchChecksums(Bench& bench) {
    digests(bench, 16, "MD5 of 16 bytes");
    digests(bench, 1024, "MD5 of 1 KiB");
    digests(bench, 1 << 20, "MD5 of 1 MiB");
    crcs(bench, 16, "CRC-8 of 16 bytes", 0);
    crcs(bench, 1024, "CRC-8 of 1 KiB", 0.25);
    crcs(bench, 1 << 20, "CRC-8 of 1 MiB", 0.03);
    for (const std::size_t size : {std::size_t{100}, std::size_t{1000}, std::size_t{10000}, std::size_t{100000}}) {
        Md5 md5(size);
        const auto each = static_cast<double>(size);
        bench.point(
            "MD5, each byte", "OpenSSL", size, [&](long) { md5.ours(); }, [&](long) { md5.theirs(); }, each);
        std::vector<unsigned char> bytes = randomBytes(size);
        bench.point(
            "CRC-8, each byte", "boost::crc_optimal", size, [&](long) { keep(crc(bytes)); },
            [&](long) { keep(crcOfBoost(bytes)); }, each);
    }
}

} // namespace bench
