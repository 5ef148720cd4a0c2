// Numbers as bytes in the base file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace sylvane {

// Four bytes, most significant first.
inline std::string Pack4(std::uint32_t n) {
    std::string s(4, '\0');
    s[0] = static_cast<char>(n >> 24);
    s[1] = static_cast<char>(n >> 16);
    s[2] = static_cast<char>(n >> 8);
    s[3] = static_cast<char>(n);
    return s;
}

inline std::string Pack2(std::uint32_t n) {
    std::string s(2, '\0');
    s[0] = static_cast<char>(n >> 8);
    s[1] = static_cast<char>(n);
    return s;
}

// Reads four bytes at `at`; missing bytes count as 0.
inline std::uint32_t Unpack4(std::string_view s, std::size_t at = 0) {
    std::uint32_t v = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        v <<= 8;
        if (at + i < s.size()) v |= static_cast<unsigned char>(s[at + i]);
    }
    return v;
}

inline std::uint32_t Unpack2(std::string_view s, std::size_t at = 0) {
    std::uint32_t v = 0;
    for (std::size_t i = 0; i < 2; ++i) {
        v <<= 8;
        if (at + i < s.size()) v |= static_cast<unsigned char>(s[at + i]);
    }
    return v;
}

// The raw little-endian signed integers of the fixed person and marriage records.
inline std::int32_t LitBrut(const char* p) {
    std::uint32_t v = static_cast<unsigned char>(p[0]) | static_cast<unsigned char>(p[1]) << 8 |
                      static_cast<unsigned char>(p[2]) << 16 |
                      static_cast<std::uint32_t>(static_cast<unsigned char>(p[3])) << 24;
    return static_cast<std::int32_t>(v);
}

inline void EcritBrut(char* p, std::int32_t v) {
    auto u = static_cast<std::uint32_t>(v);
    p[0] = static_cast<char>(u);
    p[1] = static_cast<char>(u >> 8);
    p[2] = static_cast<char>(u >> 16);
    p[3] = static_cast<char>(u >> 24);
}

} // namespace sylvane
