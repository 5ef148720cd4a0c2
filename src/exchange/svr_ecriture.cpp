// The writer of the exchange file.
#include "exchange/selection.h"
#include "exchange/svr.h"
#include "exchange/svr_commun.h"

#include "store/base.h"
#include "store/pack.h"
#include "text/parametres.h"

namespace sylvane {
namespace {

constexpr int kListeMax = 200;

std::string Drapeau(bool b) {
    return b ? "1" : "0";
}
std::string Numero(const char* cle, int i) {
    return std::string(cle) + " " + std::to_string(i);
}

class Ecrivain {
  public:
    Ecrivain(Base& b, const Selection& sel, const Parametres& p, svr::Sortie& s,
             const DialogueEchange& d)
        : b_(b), sel_(sel), p_(p), s_(s), d_(d) {}

    bool Ecrit() {
        Renumerote();
        s_.Ligne(kBanniereSvr);
        Parametres_();
        Ini();
        if (b_.Tete().documentTitre) {
            s_.Ligne("[DESCRIPTION]");
            s_.Ligne(std::to_string(b_.Tete().documentTitre));
            s_.Ligne("[FIN DESCRIPTION]");
        }
        MotsCles();
        Donnees("[DONNEES INDIVIDUS]", b_.Tete().rubriquesPersonne, "[FIN DONNEES INDIVIDUS]");
        Donnees("[DONNEES MARIAGES]", b_.Tete().rubriquesMariage, "[FIN DONNEES MARIAGES]");
        if (!Individus() || !Mariages() || !Images() || !Evenements()) return false;
        s_.Ligne("[INDEX]");
        for (std::uint32_t k = 1; k <= b_.Tete().nbRubriques && k <= 50; ++k) {
            const std::string r = b_.LitRubrique(k);
            if (!r.empty() && b_.PosListeRubrique(k) != 0) s_.Ligne(r.substr(0, 1));
        }
        s_.Ligne("[FIN INDEX]");
        s_.Ligne("[FIN]");
        return true;
    }

  private:
    // Every hundredth record: progress and the stop flag.
    bool Continue(std::uint32_t compte, const char* quoi) {
        if (compte % 100 != 0) return true;
        d_.Progres(std::string(quoi) + " " + std::to_string(compte));
        return !d_.Arret();
    }

    void Renumerote() {
        const std::uint32_t max = b_.Tete().maxMariage;
        nouveauMariage_.assign(std::size_t(max) + 1, 0);
        std::uint32_t k = 0;
        for (std::uint32_t m = 1; m <= max; ++m)
            if (sel_.MariageExporte(m)) nouveauMariage_[m] = ++k;
        docEcrit_.assign(std::size_t(b_.Tete().maxDocument) + 1, false);
        evtMarque_.assign(std::size_t(b_.Tete().maxEvenement) + 1, false);
    }

    void Parametres_() {
        s_.Ligne("[PARAMETRES]");
        s_.Ligne(std::string(1, b_.Tete().particules));
        s_.Ligne(std::string(1, b_.Tete().premierPrenom));
        s_.Ligne("[FIN PARAMETRES]");
    }

    void Cle(const std::string& cle, const std::string& valeur) { s_.Ligne(cle + "=" + valeur); }

    void Ini() {
        s_.Ligne("[INI]");
        Cle("Couleur Fond", std::to_string(p_.couleurFond));
        Cle("D\xE9grad\xE9", Drapeau(p_.degrade));
        Cle("Couleur Cadre Homme", std::to_string(p_.couleurCadreHomme));
        Cle("Couleur Cadre Femme", std::to_string(p_.couleurCadreFemme));
        Cle("Couleur Cadre Ind\xE9termin\xE9", std::to_string(p_.couleurCadreIndetermine));
        Cle("Couleur Police Homme", std::to_string(p_.couleurPoliceHomme));
        Cle("Couleur Police Femme", std::to_string(p_.couleurPoliceFemme));
        Cle("Couleur Police Ind\xE9termin\xE9", std::to_string(p_.couleurPoliceIndetermine));
        Cle("Maximum Recherche Parent\xE9", std::to_string(p_.maximumRechercheParente));
        Cle("Type Pr\xE9sentation", std::to_string(p_.typePresentation));
        for (int i = 0; i < 4; ++i)
            Cle(Numero("Nom Police", i + 1), p_.nomPolice[i]);
        for (int i = 0; i < 4; ++i)
            Cle(Numero("Taille Police", i + 1), std::to_string(p_.taillePolice[i]));
        for (int i = 0; i < 4; ++i)
            Cle(Numero("Nombre Cases", i + 1), std::to_string(p_.nombreCases[i]));
        for (int i = 0; i < 4; ++i)
            Cle(Numero("Proportionnel", i + 1), Drapeau(p_.proportionnel[i]));
        auto personne = [&](const char* cle, std::int32_t n) {
            if (n > 0 && sel_.Exporte(static_cast<std::uint32_t>(n))) Cle(cle, std::to_string(n));
        };
        personne("Personne en cours", p_.personneEnCours);
        personne("De Cujus", p_.deCujus);
        personne("De Cujus 2", p_.deCujus2);
        std::string affichage;
        for (std::size_t i = 0; i < p_.affichageNom.size() && i < 10; ++i)
            affichage += p_.affichageNom[i] + "/";
        Cle("Affichage Nom", affichage);
        Cle("Conversion nom", p_.conversionNom);
        Cle("Conversion pr\xE9nom", p_.conversionPrenom);
        if (!p_.auteur.empty()) Cle("Auteur", p_.auteur);
        for (int i = 0; i < 8; ++i)
            if (!p_.adresse[i].empty()) Cle(Numero("Adresse", i + 1), p_.adresse[i]);
        for (std::size_t i = 0; i < p_.typesDocument.size(); ++i)
            Cle(Numero("Type Document", static_cast<int>(i) + 1), p_.typesDocument[i]);
        s_.Ligne("[FIN INI]");
    }

    void MotsCles() {
        s_.Ligne("[MOTS CLES]");
        for (std::uint32_t k = 1; k <= b_.Tete().nbRubriques && k <= 50; ++k) {
            const std::string r = b_.LitRubrique(k);
            if (r.empty()) continue;
            s_.Ligne(r.substr(0, 1));
            s_.Ligne(r.substr(1));
        }
        s_.Ligne("[FIN MOTS CLES]");
    }

    void Donnees(const char* debut, const std::array<SlotRubrique, 10>& slots, const char* fin) {
        s_.Ligne(debut);
        for (const auto& sl : slots) {
            if (sl.symbole == ' ' || sl.symbole == '\0') break;
            s_.Ligne(std::string(1, sl.symbole));
            s_.Ligne(std::string(1, sl.drapeau == '\0' ? ' ' : sl.drapeau));
        }
        s_.Ligne(fin);
    }

    void Note(const std::string& note) {
        for (auto l : svr::LignesNote(note))
            s_.Ligne(svr::LigneNoteEcrite(l));
        s_.Ligne("#");
    }

    std::uint32_t Exporte(std::uint32_t n) const { return sel_.Exporte(n) ? n : 0; }

    bool Individus() {
        s_.Ligne("[INDIVIDUS]");
        const std::size_t nb = b_.TablePersonnes().taille();
        std::uint32_t compte = 0;
        for (std::size_t i = 1; i <= nb; ++i) {
            const std::uint32_t n = b_.TriFiche(i);
            if (!sel_.Exporte(n)) continue;
            Individu(n);
            if (!Continue(++compte, "Individus")) return false;
        }
        s_.Ligne("[FIN INDIVIDUS]");
        return true;
    }

    void Individu(std::uint32_t n) {
        s_.Nombre(n);
        s_.Ligne(b_.LitNom(n) + ";" + b_.LitPrenom(n) + ";" + b_.LitAutrePrenom(n) + ";" +
                 b_.LitDateNaiss(n) + ";" + b_.LitDateDeces(n));
        const std::string sexe = b_.LitSexe(n);
        s_.Ligne(sexe.empty() ? " " : sexe);
        s_.Ligne(b_.LitAnNaiss(n));
        s_.Ligne(b_.LitAnDeces(n));
        s_.Nombre(Exporte(b_.LitPere(n)));
        s_.Nombre(Exporte(b_.LitMere(n)));
        Note(b_.LitNote(n));
        const std::string docs = b_.ListeDocs(n);
        for (std::size_t o = 0; o + 4 <= docs.size(); o += 4) {
            const std::uint32_t d = Unpack4(docs, o);
            if (d == 0 || d >= docEcrit_.size() || b_.PosDoc(d) == 0) continue;
            s_.Nombre(d);
            docEcrit_[d] = true;
        }
        s_.Ligne("#");
        for (int i = 1; i <= kListeMax; ++i) {
            const std::uint32_t p = b_.LienNo(n, i);
            if (p == 0) break;
            if (!sel_.Exporte(p)) continue;
            s_.Nombre(p);
            s_.Ligne(b_.TexteLienBrutNo(n, i));
        }
        if (b_.MariageNo(n, 1)) {
            s_.Ligne("{Mariages}");
            for (int i = 1; i <= kListeMax; ++i) {
                const std::uint32_t m = b_.MariageNo(n, i);
                if (m == 0) break;
                if (m < nouveauMariage_.size() && nouveauMariage_[m])
                    s_.Ligne(std::to_string(nouveauMariage_[m]));
            }
        }
        if (b_.EvtNo(n, 1)) {
            s_.Ligne("{Ev\xE9nements}");
            for (int i = 1; i <= kListeMax; ++i) {
                const std::uint32_t e = b_.EvtNo(n, i);
                if (e == 0) break;
                s_.Ligne(std::to_string(e) + ";" + b_.RoleEvtNo(n, i));
                if (e < evtMarque_.size()) evtMarque_[e] = true;
            }
        }
        s_.Ligne("#");
    }

    bool Mariages() {
        s_.Ligne("[MARIAGES]");
        std::uint32_t compte = 0;
        for (std::uint32_t m = 1; m < nouveauMariage_.size(); ++m) {
            if (!nouveauMariage_[m]) continue;
            s_.Nombre(b_.LitMari(m));
            s_.Nombre(b_.LitFemme(m));
            s_.Ligne(b_.LitAnMariage(m));
            s_.Ligne(b_.LitAnFin(m));
            Note(b_.LitNoteMariage(m));
            if (!Continue(++compte, "Mariages")) return false;
        }
        s_.Ligne("[FIN MARIAGES]");
        return true;
    }

    bool Images() {
        s_.Ligne("[IMAGES]");
        const bool tous = sel_.TousDocuments();
        const std::size_t nb = b_.TableDocuments().taille();
        std::uint32_t compte = 0;
        for (std::size_t i = 1; i <= nb; ++i) {
            const std::uint32_t d = b_.TriDoc(i);
            if (d == 0 || d >= docEcrit_.size()) continue;
            if (!tous && !docEcrit_[d]) continue;
            docEcrit_[d] = true;
            s_.Nombre(d);
            s_.Ligne(b_.TitreDoc(d));
            s_.Ligne(b_.FichierDoc(d));
            Note(b_.NoteDoc(d));
            if (!Continue(++compte, "Documents")) return false;
        }
        s_.Ligne("[FIN IMAGES]");
        return true;
    }

    bool Evenements() {
        s_.Ligne("[EVENEMENTS]");
        const bool tous = sel_.TousDocuments();
        const std::size_t nb = b_.TableEvenements().taille();
        std::uint32_t compte = 0;
        for (std::size_t i = 1; i <= nb; ++i) {
            const std::uint32_t e = b_.TriEvt(i);
            if (e == 0 || e >= evtMarque_.size()) continue;
            if (!tous && !evtMarque_[e]) continue;
            s_.Nombre(e);
            s_.Ligne(std::to_string(b_.DateEvt(e)));
            s_.Ligne(b_.LieuEvt(e));
            s_.Ligne(b_.TagEvt(e));
            s_.Ligne(b_.TitreEvt(e));
            std::string l;
            const std::string personnes = b_.ListePersonnesEvt(e);
            for (std::size_t o = 0; o + 4 <= personnes.size() && o < 4 * kListeMax; o += 4) {
                const std::uint32_t p = Unpack4(personnes, o);
                if (sel_.Exporte(p)) l += std::to_string(p) + ";";
            }
            s_.Ligne(l);
            l.clear();
            const std::string docs = b_.ListeDocsEvt(e);
            for (std::size_t o = 0; o + 4 <= docs.size() && o < 4 * kListeMax; o += 4) {
                const std::uint32_t d = Unpack4(docs, o);
                if (d < docEcrit_.size() && docEcrit_[d]) l += std::to_string(d) + ";";
            }
            s_.Ligne(l);
            Note(b_.NoteEvt(e));
            if (!Continue(++compte, "Ev\xE9nements")) return false;
        }
        s_.Ligne("[FIN EVENEMENTS]");
        return true;
    }

    Base& b_;
    const Selection& sel_;
    const Parametres& p_;
    svr::Sortie& s_;
    const DialogueEchange& d_;
    std::vector<std::uint32_t> nouveauMariage_;
    std::vector<bool> docEcrit_, evtMarque_;
};

} // namespace

bool ExporteSvr(Base& b, const Selection& sel, const Parametres& p, SystemeFichiers& fs,
                const std::string& chemin, const DialogueEchange& d) {
    // Written beside, and in place only when whole.
    auto sortie = SortieExport(b, chemin);
    bool fini;
    {
        svr::Sortie s(fs.ouvrir(sortie->Temporaire(), Mode::LectureEcriture));
        Ecrivain e(b, sel, p, s, d);
        fini = e.Ecrit();
        s.Vide();
    }
    if (fini) sortie->Valide();
    return fini;
}

} // namespace sylvane
