#include "text/messages.h"

#include "store/fichier.h"
#include "text/utf8.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace sylvane {
namespace {

const std::string kVide;

std::uint32_t Lit32(const char* p) {
    const auto* u = reinterpret_cast<const unsigned char*>(p);
    return std::uint32_t(u[0]) | std::uint32_t(u[1]) << 8 | std::uint32_t(u[2]) << 16 |
           std::uint32_t(u[3]) << 24;
}

void Ecrit32(std::string& s, std::size_t at, std::uint32_t v) {
    for (int i = 0; i < 4; ++i) s[at + i] = static_cast<char>((v >> (8 * i)) & 0xFF);
}

// A message file already in memory, for LitFichierMessages.
class FichierOctets final : public Fichier {
  public:
    explicit FichierOctets(std::string_view o) : octets_(o) {}
    std::string lire(std::uint64_t offset, std::size_t n) override {
        if (offset >= octets_.size()) return {};
        return std::string(octets_.substr(offset, n));
    }
    void ecrire(std::uint64_t, std::string_view) override { refuse(); }
    std::uint64_t taille() override { return octets_.size(); }
    void synchroniser() override {}
    void tronquer(std::uint64_t) override { refuse(); }
    bool verrouiller() override { return true; }

  private:
    [[noreturn]] static void refuse() { throw ErreurES("(messages)", "lecture seule"); }
    std::string_view octets_;
};

// Case of Windows-1252 letters, accented ones included.
unsigned char Minuscule(unsigned char c) {
    if (c >= 'A' && c <= 'Z') return c + 32;
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 32;
    if (c == 0x8A || c == 0x8C || c == 0x8E) return c + 16;
    if (c == 0x9F) return 0xFF;
    return c;
}

unsigned char Majuscule(unsigned char c) {
    if (c >= 'a' && c <= 'z') return c - 32;
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return c - 32;
    if (c == 0x9A || c == 0x9C || c == 0x9E) return c - 16;
    if (c == 0xFF) return 0x9F;
    return c;
}

std::string EnMinuscules(std::string s) {
    for (char& c : s) c = static_cast<char>(Minuscule(static_cast<unsigned char>(c)));
    return s;
}

// "fRANçais" gives "Français".
std::string Capitalise(const std::string& s) {
    std::string r = EnMinuscules(s);
    if (!r.empty()) r[0] = static_cast<char>(Majuscule(static_cast<unsigned char>(r[0])));
    return r;
}

struct EtatMessages {
    std::unique_ptr<LecteurMessages> lecteur;
    std::map<int, std::string> table;
    std::string langue;
    std::string erreur; // a damaged file met, not yet told
};

EtatMessages& etat() {
    static EtatMessages e;
    return e;
}

} // namespace

// ---------------------------------------------------------------- reader

LecteurMessages::LecteurMessages(std::unique_ptr<Fichier> fichier)
    : fichier_(std::move(fichier)), textes_(kMessagesParBloc), lus_(kMessagesParBloc, false) {
    try {
        taille_ = fichier_->taille();
    } catch (const ErreurES&) {
        taille_ = 0;
    }
}

LecteurMessages::~LecteurMessages() = default;

void LecteurMessages::chargeTable() {
    tableLue_ = true;
    table_.fill(0);
    std::string t;
    try {
        t = fichier_->lire(0, 4 * kBlocs);
    } catch (const ErreurES&) {
        return;
    }
    // A table cut short leaves the blocks it does not reach absent.
    for (std::size_t b = 0; b < kBlocs && 4 * b + 4 <= t.size(); ++b) table_[b] = Lit32(&t[4 * b]);
}

void LecteurMessages::chargeBloc(int b) {
    blocCharge_ = b;
    bloc_.fill(0);
    std::fill(lus_.begin(), lus_.end(), false);
    const std::uint32_t pos = table_[b - 1];
    if (pos == 0 || pos > taille_) return;
    std::string t;
    try {
        t = fichier_->lire(pos - 1, 4 * kMessagesParBloc);
    } catch (const ErreurES&) {
        return;
    }
    for (std::size_t i = 0; i < kMessagesParBloc && 4 * i + 4 <= t.size(); ++i)
        bloc_[i] = Lit32(&t[4 * i]);
}

const std::string& LecteurMessages::message(int n) {
    if (n < 1 || n > kMessageMax) return kVide;
    if (!tableLue_) chargeTable();
    const int b = (n - 1) / kMessagesParBloc + 1;
    if (b != blocCharge_) chargeBloc(b);
    if (table_[b - 1] == 0) return kVide;
    const int i = n - (b - 1) * kMessagesParBloc - 1;
    if (lus_[i]) return textes_[i];
    lus_[i] = true;
    std::string& texte = textes_[i];
    texte.clear();
    const std::uint32_t pos = bloc_[i];
    if (pos == 0 || pos > taille_) return texte;
    try {
        texte = fichier_->lire(pos - 1, kTexteMax);
    } catch (const ErreurES&) {
        texte.clear();
    }
    if (auto nul = texte.find('\0'); nul != std::string::npos) texte.resize(nul);
    return texte;
}

// ---------------------------------------------------------------- writer

std::string EcritFichierMessages(const std::map<int, std::string>& messages) {
    std::array<std::vector<std::pair<int, const std::string*>>, kBlocs> parBloc;
    for (const auto& [n, texte] : messages) {
        if (n < 1 || n > kMessageMax)
            throw std::invalid_argument("numéro de message hors de 1 à 32000 : " +
                                        std::to_string(n));
        if (texte.size() > kTexteMax)
            throw std::invalid_argument("message " + std::to_string(n) +
                                        " : plus de 200 caractères");
        if (texte.find('\0') != std::string::npos)
            throw std::invalid_argument("message " + std::to_string(n) + " : caractère nul");
        parBloc[(n - 1) / kMessagesParBloc].emplace_back(n, &texte);
    }
    std::size_t blocs = 0;
    for (const auto& v : parBloc) blocs += !v.empty();
    std::string out(4 * kBlocs + blocs * 4 * kMessagesParBloc + messages.size() * kTexteMax,
                    '\0');
    std::size_t posBloc = 4 * kBlocs;
    std::size_t posTexte = posBloc + blocs * 4 * kMessagesParBloc;
    for (int b = 0; b < kBlocs; ++b) {
        if (parBloc[b].empty()) continue;
        Ecrit32(out, 4 * b, static_cast<std::uint32_t>(posBloc + 1));
        for (const auto& [n, texte] : parBloc[b]) {
            const int i = n - b * kMessagesParBloc - 1;
            Ecrit32(out, posBloc + 4 * i, static_cast<std::uint32_t>(posTexte + 1));
            out.replace(posTexte, texte->size(), *texte);
            posTexte += kTexteMax;
        }
        posBloc += 4 * kMessagesParBloc;
    }
    return out;
}

std::map<int, std::string> LitFichierMessages(std::string_view octets) {
    LecteurMessages lecteur(std::make_unique<FichierOctets>(octets));
    std::map<int, std::string> r;
    for (int n = 1; n <= kMessageMax; ++n)
        if (const std::string& t = lecteur.message(n); !t.empty()) r.emplace(n, t);
    return r;
}

// ---------------------------------------------------------------- text list

std::map<int, std::string> LitSourceMessages(std::string_view utf8) {
    if (utf8.substr(0, 3) == "\xEF\xBB\xBF") utf8.remove_prefix(3);
    std::map<int, std::string> r;
    int no = 0;
    while (!utf8.empty()) {
        ++no;
        const auto fin = utf8.find('\n');
        std::string_view ligne = utf8.substr(0, fin);
        utf8.remove_prefix(fin == std::string_view::npos ? utf8.size() : fin + 1);
        if (!ligne.empty() && ligne.back() == '\r') ligne.remove_suffix(1);
        if (ligne.find_first_not_of(" \t") == std::string_view::npos || ligne[0] == '#') continue;

        const auto tab = ligne.find('\t');
        if (tab == std::string_view::npos)
            throw ErreurSourceMessages(no, "il manque la tabulation entre numéro et texte");
        const std::string_view chiffres = ligne.substr(0, tab);
        if (chiffres.empty() || chiffres.size() > 5 ||
            chiffres.find_first_not_of("0123456789") != std::string_view::npos)
            throw ErreurSourceMessages(no, "numéro de message attendu");
        const int n = std::stoi(std::string(chiffres));
        if (n < 1 || n > kMessageMax)
            throw ErreurSourceMessages(no, "numéro hors de 1 à 32000 : " + std::to_string(n));

        std::string texte;
        for (std::size_t i = tab + 1; i < ligne.size(); ++i) {
            if (ligne[i] != '\\') {
                texte += ligne[i];
                continue;
            }
            const char e = i + 1 < ligne.size() ? ligne[++i] : '\0';
            switch (e) {
            case 'n': texte += '\n'; break;
            case 'r': texte += '\r'; break;
            case 't': texte += '\t'; break;
            case '\\': texte += '\\'; break;
            default:
                throw ErreurSourceMessages(no, "séquence inconnue après « \\ »");
            }
        }
        std::string ansi = Utf8VersAnsi(texte);
        if (ansi.size() > kTexteMax)
            throw ErreurSourceMessages(no, "message " + std::to_string(n) +
                                               " : plus de 200 caractères");
        if (ansi.find('\0') != std::string::npos)
            throw ErreurSourceMessages(no, "caractère nul dans le message");
        if (!r.emplace(n, std::move(ansi)).second)
            throw ErreurSourceMessages(no, "message " + std::to_string(n) + " donné deux fois");
    }
    return r;
}

std::string EcritSourceMessages(const std::map<int, std::string>& messages) {
    std::string out;
    for (const auto& [n, texte] : messages) {
        out += std::to_string(n);
        out += '\t';
        for (char c : AnsiVersUtf8(texte)) {
            switch (c) {
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            case '\\': out += "\\\\"; break;
            default: out += c;
            }
        }
        out += '\n';
    }
    return out;
}

// ---------------------------------------------------------------- languages

namespace {
// "Français.mes" -> "Français"; "" when the name is no message file.
std::string LangueDuFichier(const std::string& nom) {
    if (nom.size() <= 4 || EnMinuscules(nom.substr(nom.size() - 4)) != ".mes") return "";
    return nom.substr(0, nom.size() - 4);
}
} // namespace

std::vector<std::string> ListeLangues(const std::string& dossier) {
    std::vector<std::string> r;
    for (const auto& nom : systemeReel().lister(dossier))
        if (std::string l = LangueDuFichier(nom); !l.empty()) r.push_back(Capitalise(l));
    std::sort(r.begin(), r.end());
    r.erase(std::unique(r.begin(), r.end()), r.end());
    return r;
}

bool ChoisirLangue(const std::string& langue, const std::string& dossier) {
    std::unique_ptr<Fichier> f;
    std::string chemin = dossier + "/" + langue + ".mes";
    try {
        f = systemeReel().ouvrir(chemin, Mode::Lecture);
    } catch (const ErreurES&) {
        // The name of the menu is capitalised; the file may not be.
        const std::string voulu = EnMinuscules(langue);
        for (const auto& nom : systemeReel().lister(dossier)) {
            if (EnMinuscules(LangueDuFichier(nom)) != voulu) continue;
            try {
                chemin = dossier + "/" + nom;
                f = systemeReel().ouvrir(chemin, Mode::Lecture);
                break;
            } catch (const ErreurES&) {
            }
        }
    }
    if (!f) return false;
    auto& e = etat();
    if (const std::string defaut = DefautFichierMessages(*f); !defaut.empty()) {
        e.erreur = "Le fichier de langue " + chemin + " est endommag\xE9 (" + defaut +
                   ") : il n'est pas utilis\xE9.";
        return false;
    }
    e.lecteur = std::make_unique<LecteurMessages>(std::move(f));
    e.langue = langue;
    return true;
}

std::string DefautFichierMessages(Fichier& f) {
    try {
        const std::uint64_t taille = f.taille();
        if (taille < 4 * kBlocs) return "fichier trop court";
        const std::string table = f.lire(0, 4 * kBlocs);
        int blocs = 0;
        for (int b = 0; b < kBlocs; ++b) {
            const std::uint32_t pos = Lit32(&table[4 * static_cast<std::size_t>(b)]);
            if (pos == 0) continue;
            ++blocs;
            if (pos + std::uint64_t{4} * kMessagesParBloc - 1 > taille)
                return "bloc " + std::to_string(b + 1) + " hors du fichier";
            const std::string bloc = f.lire(pos - 1, 4 * kMessagesParBloc);
            for (int i = 0; i < kMessagesParBloc; ++i)
                if (Lit32(&bloc[4 * static_cast<std::size_t>(i)]) > taille)
                    return "message " + std::to_string(b * kMessagesParBloc + i + 1) +
                           " hors du fichier";
        }
        if (blocs == 0) return "aucun message";
    } catch (const ErreurES& x) {
        return Utf8VersAnsi(x.what());
    }
    return "";
}

std::string PrendErreurLangue() { return std::exchange(etat().erreur, {}); }

const std::string& LangueCourante() { return etat().langue; }

std::string Message(int n) {
    auto& e = etat();
    if (e.lecteur) return e.lecteur->message(n);
    auto it = e.table.find(n);
    return it == e.table.end() ? std::string() : it->second;
}

std::string MessageAvec(int n, std::string_view valeur) {
    std::string t = Message(n);
    if (const auto p = t.find("&1"); p != std::string::npos) t.replace(p, 2, valeur);
    return t;
}

void DefinitMessages(std::map<int, std::string> t) {
    auto& e = etat();
    e.lecteur.reset();
    e.langue.clear();
    e.table = std::move(t);
}

} // namespace sylvane
