#include "text/translitteration.h"

#include "text/utf8.h"

#include <unicode/translit.h>
#include <unicode/unistr.h>

#include <memory>
#include <mutex>

namespace sylvane {
namespace {

// One transliterator for the process; ICU's are not for two threads at once.
std::string LatinDe(const std::string& utf8) {
    static std::mutex verrou;
    static std::unique_ptr<icu::Transliterator> t = [] {
        UErrorCode statut = U_ZERO_ERROR;
        std::unique_ptr<icu::Transliterator> r(icu::Transliterator::createInstance(
            "Any-Latin; Latin-ASCII", UTRANS_FORWARD, statut));
        return U_SUCCESS(statut) ? std::move(r) : nullptr;
    }();
    if (!t) return "?";
    std::lock_guard<std::mutex> garde(verrou);
    icu::UnicodeString u = icu::UnicodeString::fromUTF8(utf8);
    t->transliterate(u);
    std::string r;
    u.toUTF8String(r);
    return r;
}

} // namespace

std::string Translitere(std::string_view ansi) {
    if (!ContientReference(ansi)) return std::string(ansi);
    // Runs of references go through together, so that a word keeps the
    // transliteration rules of its context.
    std::string r, suite;
    auto vide = [&] {
        if (suite.empty()) return;
        r += Utf8VersAnsi(LatinDe(AnsiRefVersUtf8(suite)));
        suite.clear();
    };
    for (std::size_t i = 0; i < ansi.size();) {
        if (ansi[i] == '&' && i + 2 < ansi.size() && ansi[i + 1] == '#') {
            std::size_t j = i + 2;
            while (j < ansi.size() && ansi[j] >= '0' && ansi[j] <= '9') ++j;
            if (j > i + 2 && j < ansi.size() && ansi[j] == ';') {
                suite.append(ansi.substr(i, j + 1 - i));
                i = j + 1;
                continue;
            }
        }
        vide();
        r += ansi[i++];
    }
    vide();
    return r;
}

} // namespace sylvane
