#include "hosttools/simulated/administrator.h"

#include <array>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>
#include <pwd.h>
#include <unistd.h>

namespace corvane::simulated {

static std::string hex(const unsigned char* bytes, std::size_t count) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string out;
    for (std::size_t i = 0; i < count; ++i) {
        out += digits[bytes[i] >> 4];
        out += digits[bytes[i] & 15];
    }
    return out;
}

static std::string digest(const std::string& salt, std::string_view password) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> bytes{};
    unsigned int count = 0;
    EVP_MD_CTX* context = EVP_MD_CTX_new();
    if (!context) return {};
    const bool done = EVP_DigestInit_ex(context, EVP_sha256(), nullptr) == 1 &&
                      EVP_DigestUpdate(context, salt.data(), salt.size()) == 1 &&
                      EVP_DigestUpdate(context, password.data(), password.size()) == 1 &&
                      EVP_DigestFinal_ex(context, bytes.data(), &count) == 1;
    EVP_MD_CTX_free(context);
    return done ? hex(bytes.data(), count) : std::string();
}

std::string loginName() {
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found)
        return found->pw_name;
    return "admin";
}

Administrator makeAdministrator(const std::string& user, std::string_view password) {
    std::array<unsigned char, 16> salt{};
    RAND_bytes(salt.data(), static_cast<int>(salt.size()));
    Administrator made{user, hex(salt.data(), salt.size()), {}};
    made.hash = digest(made.salt, password);
    return made;
}

bool matches(const Administrator& administrator, std::string_view user, std::string_view password) {
    const std::string given = digest(administrator.salt, password);
    return !given.empty() && user == administrator.user && given.size() == administrator.hash.size() &&
           CRYPTO_memcmp(given.data(), administrator.hash.data(), given.size()) == 0;
}

bool checkPassword(const std::string& stateFile, std::string_view user, std::string_view password) {
    const LoadResult loaded = StateFile(stateFile).load();
    return loaded.state && matches(loaded.state->administrator, user, password);
}

std::string administratorName(const std::string& stateFile) {
    const LoadResult loaded = StateFile(stateFile).load();
    return loaded.state ? loaded.state->administrator.user : std::string();
}

} // namespace corvane::simulated
