#include "text/rtf.h"

#include <cctype>
#include <map>

namespace sylvane {
namespace {

struct Etat {
    bool gras = false, italique = false, souligne = false;
    Alignement alignement = Alignement::Gauche;
    int police = -1;
    int taille = 0;
    int ucSaut = 1;      // characters to skip after \uN
    bool ignore = false; // inside a destination that is not text
    bool tablePolices = false;
};

bool MemeStyle(const SegmentRtf& a, const SegmentRtf& b) {
    return a.gras == b.gras && a.italique == b.italique && a.souligne == b.souligne &&
           a.alignement == b.alignement && a.police == b.police && a.taille == b.taille;
}

int Hexa(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

class Lecteur {
  public:
    explicit Lecteur(std::string_view s) : s_(s) {}

    std::vector<SegmentRtf> Lire() {
        std::vector<Etat> pile;
        Etat e;
        int saut = 0; // characters still to skip after a \uN
        std::size_t i = 0;
        while (i < s_.size()) {
            char c = s_[i];
            if (c == '{') {
                pile.push_back(e);
                ++i;
                // "{\*\dest" is a destination this reader does not know.
                if (s_.substr(i, 2) == "\\*") e.ignore = true;
                continue;
            }
            if (c == '}') {
                if (e.tablePolices && !nomPolice_.empty()) FinNomPolice();
                if (pile.empty()) break;
                e = pile.back();
                pile.pop_back();
                ++i;
                if (pile.empty()) break; // end of the outer group
                continue;
            }
            if (c == '\r' || c == '\n') {
                ++i;
                continue;
            }
            if (c != '\\') {
                ++i;
                if (saut > 0) {
                    --saut;
                    continue;
                }
                Car(e, c);
                continue;
            }
            // A control symbol or word.
            ++i;
            if (i >= s_.size()) break;
            char d = s_[i];
            if (d == '\\' || d == '{' || d == '}') {
                ++i;
                if (saut > 0)
                    --saut;
                else
                    Car(e, d);
                continue;
            }
            if (d == '\'') {
                int h = i + 2 < s_.size() ? Hexa(s_[i + 1]) : -1;
                int l = i + 2 < s_.size() ? Hexa(s_[i + 2]) : -1;
                i += 3;
                if (h < 0 || l < 0) continue;
                if (saut > 0)
                    --saut;
                else
                    Car(e, static_cast<char>(h * 16 + l));
                continue;
            }
            if (d == '~') {
                ++i;
                Car(e, '\xA0');
                continue;
            }
            if (!std::isalpha(static_cast<unsigned char>(d))) {
                ++i; // \-, \_, \*, \| ... carry no text here
                continue;
            }
            std::size_t debut = i;
            while (i < s_.size() && std::isalpha(static_cast<unsigned char>(s_[i])))
                ++i;
            std::string mot(s_.substr(debut, i - debut));
            bool aParam = false;
            long param = 0;
            bool negatif = false;
            if (i < s_.size() && s_[i] == '-') {
                negatif = true;
                ++i;
            }
            while (i < s_.size() && std::isdigit(static_cast<unsigned char>(s_[i]))) {
                aParam = true;
                if (param < 100000000) param = param * 10 + (s_[i] - '0');
                ++i;
            }
            if (negatif) param = -param;
            if (i < s_.size() && s_[i] == ' ') ++i;
            MotControle(e, mot, aParam, param, saut);
        }
        return std::move(segments_);
    }

  private:
    void MotControle(Etat& e, const std::string& mot, bool aParam, long p, int& saut) {
        bool actif = !aParam || p != 0;
        if (mot == "b")
            e.gras = actif;
        else if (mot == "i")
            e.italique = actif;
        else if (mot == "ul")
            e.souligne = actif;
        else if (mot == "ulnone")
            e.souligne = false;
        else if (mot == "plain") {
            e.gras = e.italique = e.souligne = false;
            e.taille = 0;
            e.police = -1;
        } else if (mot == "pard")
            e.alignement = Alignement::Gauche;
        else if (mot == "ql")
            e.alignement = Alignement::Gauche;
        else if (mot == "qc")
            e.alignement = Alignement::Centre;
        else if (mot == "qr")
            e.alignement = Alignement::Droite;
        else if (mot == "qj")
            e.alignement = Alignement::Justifie;
        else if (mot == "fs")
            e.taille = static_cast<int>(p);
        else if (mot == "f") {
            if (e.tablePolices) {
                if (!nomPolice_.empty()) FinNomPolice();
                policeEnCours_ = static_cast<int>(p);
            } else {
                e.police = static_cast<int>(p);
            }
        } else if (mot == "par" || mot == "line")
            Car(e, '\r'), Car(e, '\n');
        else if (mot == "tab")
            Car(e, '\t');
        else if (mot == "uc")
            e.ucSaut = static_cast<int>(p);
        else if (mot == "u") {
            long u = p < 0 ? p + 65536 : p;
            Car(e, u >= 0 && u < 256 ? static_cast<char>(u) : '?');
            saut = e.ucSaut;
        } else if (mot == "fonttbl") {
            e.tablePolices = true;
        } else if (mot == "colortbl" || mot == "stylesheet" || mot == "info" || mot == "pict" ||
                   mot == "header" || mot == "footer" || mot == "object" || mot == "listtable" ||
                   mot == "listoverridetable" || mot == "generator") {
            e.ignore = true;
        }
    }

    void FinNomPolice() {
        std::string n = nomPolice_;
        while (!n.empty() && (n.back() == ';' || n.back() == ' '))
            n.pop_back();
        polices_[policeEnCours_] = n;
        nomPolice_.clear();
    }

    void Car(const Etat& e, char c) {
        if (e.tablePolices) {
            if (c == ';')
                FinNomPolice();
            else
                nomPolice_ += c;
            return;
        }
        if (e.ignore) return;
        SegmentRtf s;
        s.gras = e.gras;
        s.italique = e.italique;
        s.souligne = e.souligne;
        s.alignement = e.alignement;
        s.taille = e.taille;
        auto it = polices_.find(e.police);
        if (it != polices_.end()) s.police = it->second;
        if (segments_.empty() || !MemeStyle(segments_.back(), s)) segments_.push_back(s);
        segments_.back().texte += c;
    }

    std::string_view s_;
    std::vector<SegmentRtf> segments_;
    std::map<int, std::string> polices_;
    std::string nomPolice_;
    int policeEnCours_ = 0;
};

} // namespace

std::vector<SegmentRtf> LitRtf(std::string_view rtf) {
    return Lecteur(rtf).Lire();
}

std::string TexteRtf(std::string_view rtf) {
    std::string r;
    for (const auto& s : LitRtf(rtf))
        r += s.texte;
    return r;
}

std::string SansRtf(std::string_view texte) {
    static constexpr std::string_view kDebut = "{\\rtf1\\";
    std::string r;
    std::size_t i = 0;
    for (;;) {
        std::size_t g = texte.find(kDebut, i);
        if (g == std::string_view::npos) break;
        r.append(texte.substr(i, g - i));
        // The group ends where its braces balance; escaped braces don't count.
        int niveau = 0;
        std::size_t j = g;
        for (; j < texte.size(); ++j) {
            char c = texte[j];
            if (c == '\\') {
                ++j;
                continue;
            }
            if (c == '{')
                ++niveau;
            else if (c == '}' && --niveau == 0)
                break;
        }
        std::size_t fin = j < texte.size() ? j + 1 : texte.size();
        r += TexteRtf(texte.substr(g, fin - g));
        i = fin;
    }
    r.append(texte.substr(i));
    return r;
}

} // namespace sylvane
