// The control walks every marriage, then every person of the sort table,
// and puts each family link back on both sides: a marriage in its
// partners' lists, a child in its parents' lists, and no list entry that
// the record it names does not confirm.
#include "maintenance/controle.h"

#include "text/messages.h"

#include <vector>

namespace sylvane {
namespace {

constexpr int kMaxListe = 200;

class Controle {
  public:
    Controle(Base& b, const Interaction& io) : b_(b), io_(io), titre_(Message(843)) {}

    void Mariages();
    void Personnes();
    const std::string& Rapport() const { return rapport_; }

  private:
    void Panneau(const std::string& texte) { io_.Montre(titre_, texte); }
    void Note(const std::string& ligne) { rapport_ += ligne + "\r\n"; }
    std::uint32_t Max() const { return b_.Tete().maxPersonne; }
    // Whether m stands in n's marriages, up to the first 0 or the 200th.
    bool DansMariages(std::uint32_t n, std::uint32_t m) {
        for (int i = 1; i <= kMaxListe; ++i) {
            std::uint32_t x = b_.MariageNo(n, i);
            if (x == 0) return false;
            if (x == m) return true;
        }
        return false;
    }
    bool DansEnfants(std::uint32_t n, std::uint32_t c) {
        for (int i = 1; i <= kMaxListe; ++i) {
            std::uint32_t x = b_.EnfantNo(n, i);
            if (x == 0) return false;
            if (x == c) return true;
        }
        return false;
    }
    void Parent(std::uint32_t n, bool pere);

    Base& b_;
    const Interaction& io_;
    std::string titre_;
    std::string rapport_;
};

void Controle::Mariages() {
    Panneau("Analyse Mariages");
    const std::uint32_t max = b_.Tete().maxMariage;
    for (std::uint32_t m = 1; m <= max; ++m) {
        std::uint32_t mari = b_.LitMari(m);
        const std::uint32_t femme = b_.LitFemme(m);
        if (mari > Max() || femme > Max()) {
            // Only the husband is cleared: the wife field stays as it is.
            b_.EcritMari(m, 0);
            mari = 0;
            Panneau("Suppression Mariage " + std::to_string(m));
            Note("Mariage " + std::to_string(m) + " incoh\xE9rent supprim\xE9");
        }
        if (mari && !DansMariages(mari, m)) {
            b_.MajMariages(mari, m, 'A');
            Panneau("Ajout Mariage " + b_.NomDates(mari));
            Note("Lien mariage de " + b_.NomComplet(mari) + " avec " + b_.NomComplet(femme) +
                 " cr\xE9\xE9");
        }
        // A wife beyond the highest number names no record: nothing to add to.
        if (femme && femme <= Max() && !DansMariages(femme, m)) {
            b_.MajMariages(femme, m, 'A');
            Panneau("Ajout Mariage " + b_.NomDates(femme));
            Note("Lien mariage de " + b_.NomComplet(femme) + " avec " + b_.NomComplet(mari) +
                 " cr\xE9\xE9");
        }
    }
}

// The father (pere) or the mother of person n.
void Controle::Parent(std::uint32_t n, bool pere) {
    std::uint32_t p = pere ? b_.LitPere(n) : b_.LitMere(n);
    if (p > Max()) {
        if (pere) b_.EcritPere(n, 0);
        else b_.EcritMere(n, 0);
        Panneau((pere ? "Suppression P\xE8re " : "Suppression M\xE8re ") + b_.NomDates(n));
        Note((pere ? "Suppression p\xE8re de " : "Suppression m\xE8re de ") + b_.NomDates(n));
        p = 0;
    }
    if (p && !DansEnfants(p, n)) {
        b_.MajEnfants(p, n, 'A');
        Panneau("Ajout Enfant " + b_.NomDates(n));
        Note("Ajout lien enfant de " + b_.NomDates(p) + " avec " + b_.NomDates(n));
    }
}

void Controle::Personnes() {
    Panneau("Analyse Personnes");
    const std::size_t nb = b_.TablePersonnes().taille();
    for (std::size_t i = 1; i <= nb; ++i) {
        std::uint32_t n = b_.TriFiche(i);
        while (n > Max()) {
            b_.MajTriFiche(i, n, 'S');
            b_.triPersonnesModifie = true;
            Panneau("Suppression Indice" + std::to_string(n));
            Note("Suppression individu " + std::to_string(n));
            n = b_.TriFiche(i);
        }
        if (n == 0) continue;
        Parent(n, true);
        Parent(n, false);

        for (int k = 1; k <= kMaxListe; ++k) {
            const std::uint32_t c = b_.EnfantNo(n, k);
            if (c == 0) break;
            if (c > Max()) {
                Note("Suppression lien enfant de " + b_.NomDates(n));
                b_.MajEnfants(n, c, 'S');
                Panneau("Suppression Enfant " + b_.NomDates(n));
                break;
            }
        }
        const std::string sexe = b_.LitSexe(n);
        std::vector<std::uint32_t> retires;
        if (sexe == "H" || sexe == "F") {
            for (int k = 1; k <= kMaxListe; ++k) {
                const std::uint32_t c = b_.EnfantNo(n, k);
                if (c == 0) break;
                if ((sexe == "H" ? b_.LitPere(c) : b_.LitMere(c)) != n) retires.push_back(c);
            }
        }
        for (std::uint32_t c : retires) {
            Note("Suppression lien enfant de " + b_.NomDates(n) + " avec " + b_.NomDates(c));
            b_.MajEnfants(n, c, 'S');
            Panneau("Suppression Enfant " + b_.NomDates(c));
        }

        retires.clear();
        for (int k = 1; k <= kMaxListe; ++k) {
            const std::uint32_t m = b_.MariageNo(n, k);
            if (m == 0) break;
            const std::uint32_t mari = b_.LitMari(m), femme = b_.LitFemme(m);
            // A couple of one sex (as other programs write them) has its
            // second partner in the field of the other sex: the entry names
            // that person, so it is kept. A marriage with no partner on the
            // other side still leaves the list.
            const bool autreRole = (sexe == "H" ? femme : mari) == n;
            if (sexe == "H" && (femme == 0 || (mari != n && !(autreRole && mari))))
                retires.push_back(m);
            if (sexe == "F" && (mari == 0 || (femme != n && !(autreRole && femme))))
                retires.push_back(m);
        }
        for (std::uint32_t m : retires) {
            b_.MajMariages(n, m, 'S');
            Panneau("Suppression Mariage " + b_.NomDates(n));
            Note("Suppression lien mariage de " + b_.NomDates(n));
        }
    }
}

} // namespace

std::string CheminRapportControle(const Base& b) {
    return b.Params().DossierTravail() + b.Chemins().titre + ".txt";
}

ResultatControle Controler(Base& b, const Interaction& io) {
    ResultatControle res;
    const Reponse reponse = io.Demande(842);
    if (reponse == Reponse::Annuler) return res;
    SystemeFichiers& fs = b.Systeme();
    const std::string chemin = b.Chemins().base;
    b.FermeBase();
    if (reponse == Reponse::Oui) {
        try {
            CopieFichier(fs, chemin, CheminSauvegarde(chemin));
        } catch (...) {
            b.Ouvre(chemin);
            throw;
        }
    }
    b.Ouvre(chemin);
    res.chemin = CheminRapportControle(b);
    Controle c(b, io);
    c.Mariages();
    c.Personnes();
    res.rapport = c.Rapport();
    // An earlier report is replaced whole.
    fs.creerDossier(b.Params().DossierTravail());
    EcritureAtomique f(fs, res.chemin);
    f.Sortie().ecrire(0, res.rapport);
    f.Valide();
    res.fait = true;
    return res;
}

} // namespace sylvane
