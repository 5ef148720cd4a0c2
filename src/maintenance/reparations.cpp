#include "maintenance/reparations.h"

#include "text/messages.h"
#include "text/mots.h"
#include "text/phonetique.h"

namespace sylvane {
namespace {

constexpr char kSymboleNom = '|';
constexpr char kSymbolePrenom = '\xB6';

std::string Capitales(std::string s) {
    for (char& c : s) c = Majuscule(c);
    return s;
}

// One name field under a conversion setting: "1" capitals, "2" name capitals.
std::string Convertit(const std::string& v, const std::string& mode, char genre,
                      const std::vector<Particule>& particules) {
    if (mode == "1") return Capitales(v);
    if (mode == "2") return Conv_NomPropre(v, genre, particules);
    return v;
}

// The first-name keyword as the note's first line writes it.
std::string JetonPrenom(const Base& b, const std::string& prenoms) {
    return b.Tete().premierPrenom == '1' ? Trim(prenoms) : VersPoints(prenoms);
}

} // namespace

std::string RemplaceJeton(const std::string& note, char symbole, const std::string& ancien,
                          const std::string& nouveau) {
    if (ancien.empty() || ancien == nouveau) return note;
    const std::string cherche = std::string(1, symbole) + ancien;
    std::string r;
    std::size_t debut = 0;
    for (std::size_t p = note.find(cherche); p != std::string::npos;
         p = note.find(cherche, p + 1)) {
        const std::size_t fin = p + cherche.size();
        if (fin < note.size() && note[fin] != ' ' && note[fin] != '\r') continue;
        r.append(note, debut, p - debut);
        r += symbole;
        r += nouveau;
        debut = fin;
    }
    r.append(note, debut, std::string::npos);
    return r;
}

std::size_t MnuRePMinMaj(Base& b, const Interaction& io) {
    const Parametres& p = b.Params();
    const std::string titre = Message(546);
    io.Montre(titre, Message(505));
    std::size_t changes = 0;
    const std::size_t nb = b.TablePersonnes().taille();
    for (std::size_t i = 1; i <= nb && !io.Arrete(); ++i) {
        const std::uint32_t n = b.TriFiche(i);
        if (n == 0) continue;
        const std::string nom = b.LitNom(n), prenom = b.LitPrenom(n), autres = b.LitAutrePrenom(n);
        if (Trim(nom).empty()) continue;
        const std::string nNom = Convertit(nom, p.conversionNom, 'N', p.particules);
        const std::string nPrenom = Convertit(prenom, p.conversionPrenom, 'P', p.particules);
        const std::string nAutres = Convertit(autres, p.conversionPrenom, 'P', p.particules);
        if (nNom == nom && nPrenom == prenom && nAutres == autres) continue;
        io.Montre(titre, Message(547) + " " + nPrenom + " " + nNom);
        const std::string note = b.LitNote(n);
        std::string nouvelle = RemplaceJeton(note, kSymboleNom, VersPoints(nom), VersPoints(nNom));
        nouvelle = RemplaceJeton(nouvelle, kSymbolePrenom, VersPoints(prenom), VersPoints(nPrenom));
        if (nouvelle != note) {
            b.MajMots(n, note, nouvelle);
            b.EcritNote(n, nouvelle);
        }
        b.EcritIdentite(n, nNom + ";" + nPrenom + ";" + nAutres + ";" + b.LitDateNaiss(n) + ";" +
                               b.LitDateDeces(n));
        ++changes;
    }
    return changes;
}

long MnuRepPrenom(Base& b, const Interaction& io) {
    for (char s : {kSymbolePrenom, kSymboleNom}) {
        const std::uint32_t k = b.RubriqueDeSymbole(s);
        if (k && b.PosListeRubrique(k)) {
            if (io.Demande(920) != Reponse::Oui) return -1;
            break;
        }
    }
    const std::string titre = Message(548);
    io.Montre(titre, Message(505));
    long changes = 0;
    const bool premier = b.Tete().premierPrenom == '1';
    const std::size_t nb = b.TablePersonnes().taille();
    for (std::size_t i = 1; i <= nb && !io.Arrete(); ++i) {
        const std::uint32_t n = b.TriFiche(i);
        if (n == 0 || Trim(b.LitNom(n)).empty()) continue;
        const std::string note = b.LitNote(n);
        const std::string jetons = std::string(1, kSymboleNom) + b.SansParticule(b.LitNom(n)) +
                                   " " + kSymbolePrenom + JetonPrenom(b, b.LitPrenom(n));
        // The first line, its old name and first-name tokens taken off.
        const std::size_t crlf = note.find("\r\n");
        std::string ligne = note.substr(0, crlf);
        const std::string suite = crlf == std::string::npos ? "" : note.substr(crlf);
        std::size_t p = 0;
        if (p < ligne.size() && ligne[p] == kSymboleNom) p = ligne.find(' ', p);
        if (p == std::string::npos) p = ligne.size();
        while (p < ligne.size() && ligne[p] == ' ') ++p;
        if (p < ligne.size() && ligne[p] == kSymbolePrenom) {
            // With only the first word a keyword, the other first names
            // follow it up to the next symbol.
            std::size_t q = ligne.find(' ', p);
            if (premier) {
                while (q != std::string::npos && q + 1 < ligne.size() &&
                       b.RubriqueDeSymbole(ligne[q + 1]) == 0)
                    q = ligne.find(' ', q + 1);
            }
            p = q == std::string::npos ? ligne.size() : q;
        }
        const std::string reste = TrimGauche(ligne.substr(p));
        const std::string nouvelle = jetons + (reste.empty() ? "" : " " + reste) + suite;
        if (nouvelle == note) continue;
        io.Montre(titre, Message(549) + " " + b.NomDates(n));
        b.MajMots(n, note, nouvelle);
        b.EcritNote(n, nouvelle);
        ++changes;
    }
    if (const std::uint32_t k = b.RubriqueDeSymbole(kSymbolePrenom))
        b.EcritRubrique(k, kSymbolePrenom, "FNAM", b.PosListeRubrique(k));
    return changes;
}

DoublonsMariage MnuDoublonMariage(Base& b) {
    DoublonsMariage r;
    const std::uint32_t k = b.RubriqueDeSymbole(kSymboleNom);
    if (k == 0 || b.PosListeRubrique(k) == 0) {
        r.message = 1338;
        return r;
    }
    r.liste = b.ListeRubrique(k);
    r.compte = "1/" + std::to_string(b.Tete().maxMariage);
    return r;
}

} // namespace sylvane
