#include "exchange/svr_commun.h"

#include "exchange/echange.h"

namespace sylvane::svr {
namespace {
constexpr std::size_t kMorceau = 1u << 20;
// A line longer than this is no line of an exchange file.
constexpr std::size_t kLigneMax = 64u << 20;
} // namespace

std::vector<std::string_view> LignesNote(std::string_view note) {
    std::vector<std::string_view> r;
    if (note.empty()) return r;
    std::size_t debut = 0;
    for (;;) {
        const std::size_t fin = note.find("\r\n", debut);
        if (fin == std::string_view::npos) {
            r.push_back(note.substr(debut));
            return r;
        }
        r.push_back(note.substr(debut, fin - debut));
        debut = fin + 2;
    }
}

namespace {
constexpr char kEchappe = '\x1F';
bool FinDeNoteEchappee(std::string_view l) {
    return !l.empty() && l.back() == '#' &&
           l.find_first_not_of(kEchappe) == l.size() - 1;
}
} // namespace

std::string LigneNoteEcrite(std::string_view ligne) {
    return FinDeNoteEchappee(ligne) ? kEchappe + std::string(ligne) : std::string(ligne);
}

std::string LigneNoteLue(std::string_view ligne) {
    return ligne.size() > 1 && FinDeNoteEchappee(ligne) ? std::string(ligne.substr(1))
                                                         : std::string(ligne);
}

std::uint32_t Valeur(std::string_view l, std::uint32_t plafond) {
    std::size_t i = 0;
    while (i < l.size() && (l[i] == ' ' || l[i] == '\t'))
        ++i;
    bool negatif = false;
    if (i < l.size() && (l[i] == '+' || l[i] == '-')) negatif = l[i++] == '-';
    std::uint64_t v = 0;
    for (; i < l.size() && l[i] >= '0' && l[i] <= '9'; ++i) {
        v = v * 10 + static_cast<std::uint64_t>(l[i] - '0');
        if (v > plafond) return plafond + 1;
    }
    // A negative number names no record.
    return negatif ? 0 : static_cast<std::uint32_t>(v);
}

void Sortie::Vide() {
    if (tampon_.empty()) return;
    f_->ecrire(offset_, tampon_);
    offset_ += tampon_.size();
    tampon_.clear();
}

bool Entree::Ligne(std::string& l) {
    l.clear();
    for (;;) {
        const std::size_t lf = tampon_.find('\n', i_);
        if (lf != std::string::npos) {
            l.append(tampon_, i_, lf - i_);
            i_ = lf + 1;
            break;
        }
        l.append(tampon_, i_, std::string::npos);
        tampon_.clear();
        i_ = 0;
        if (l.size() > kLigneMax)
            throw ErreurLecture("ligne " + std::to_string(numero_ + 1) + " trop longue");
        if (fin_) {
            if (l.empty()) return false;
            break;
        }
        tampon_ = f_->lire(offset_, kMorceau);
        offset_ += tampon_.size();
        if (tampon_.size() < kMorceau) fin_ = true;
    }
    if (!l.empty() && l.back() == '\r') l.pop_back();
    ++numero_;
    return true;
}

} // namespace sylvane::svr
