#include "ui/frm_releve.h"

#include "text/messages.h"
#include "ui/commandes_communes.h"

#include <optional>

namespace sylvane {
namespace {

constexpr const char* kFiltreReleve = "Texte (*.txt, *.csv)|*.txt;*.csv|";
constexpr const char* kFiltreBase = "G\xE9n\xE9" "alogie (*.sv2) |*.sv2|";
constexpr int kFichierAImporter = 539;
constexpr int kExisteDeja = 537;
constexpr int kRemplacer = 538;
constexpr int kImportation = 837;
constexpr int kPatientez = 505;
// How often the stop button is looked at: letting the events run on each
// of 100,000 lines would cost more than the capture.
constexpr int kLignesParArret = 64;

bool MemeBase(MDIForm1& f, const std::string& chemin) {
    Base* b = f.base();
    if (!b) return false;
    SystemeFichiers& fs = f.app().fs();
    return b->Chemins().base == chemin || (fs.existe(chemin) && fs.memeFichier(b->Chemins().base, chemin));
}

} // namespace

const char* FormulaireReleve(GenreReleve g) {
    switch (g) {
    case GenreReleve::Mariage: return "FrmReleveMariage";
    case GenreReleve::Bapteme: return "FrmReleveBapteme";
    case GenreReleve::Sepulture: return "FrmReleveSepulture";
    case GenreReleve::Ascendance: return "FrmReleveAscendance";
    }
    return "";
}

std::vector<std::string> FrmReleve::Colonnes() const {
    switch (genre_) {
    case GenreReleve::Bapteme:
        return {"jour/mois", "ann\xE9" "e", "lieu", "nom", "pr\xE9nom", "sexe", "nom du p\xE8re",
                "pr\xE9nom du p\xE8re", "profession du p\xE8re", "nom de la m\xE8re",
                "pr\xE9nom de la m\xE8re", "profession de la m\xE8re", "parrain", "marraine", "note"};
    case GenreReleve::Sepulture:
        return {"jour/mois", "ann\xE9" "e", "lieu", "nom", "pr\xE9nom", "sexe", "\xE2ge",
                "unit\xE9 (ans, mois, sem, jours)", "naissance", "lieu de naissance", "conjoint",
                "nom du p\xE8re", "pr\xE9nom du p\xE8re", "nom de la m\xE8re", "pr\xE9nom de la m\xE8re",
                "note"};
    case GenreReleve::Mariage:
        return {"jour/mois", "ann\xE9" "e", "lieu", "nom de l'\xE9poux", "pr\xE9nom", "\xE2ge",
                "domicile", "veuf de", "p\xE8re (feu, +)", "m\xE8re", "nom de l'\xE9pouse",
                "pr\xE9nom", "\xE2ge", "domicile", "veuve de", "p\xE8re", "m\xE8re"};
    case GenreReleve::Ascendance:
        return {"num\xE9ro", "pr\xE9nom", "nom", "sexe (du 1)", "profession", "jour de naissance",
                "mois", "ann\xE9" "e", "lieu", "jour de d\xE9" "c\xE8s", "mois", "ann\xE9" "e", "lieu",
                "jour de mariage", "mois", "ann\xE9" "e", "lieu"};
    }
    return {};
}

void FrmReleve::DefinitFichier(const std::string& chemin) {
    fichier_ = chemin;
    if (cible_.empty() && !chemin.empty()) cible_ = DeriveChemins(chemin).base;
}

void FrmReleve::DefinitCible(const std::string& chemin) {
    cible_ = chemin.empty() ? chemin : DeriveChemins(chemin).base;
}

bool FrmReleve::ChoisitFichier() {
    auto c = f_.services().fichiers.Ouvrir(kFichierAImporter, kFiltreReleve, fichier_);
    if (!c) return false;
    DefinitFichier(*c);
    return true;
}

bool FrmReleve::ChoisitCible() {
    auto c = f_.services().fichiers.Enregistrer(kReleveTitreBase, kFiltreBase, cible_);
    if (!c) return false;
    DefinitCible(*c);
    return true;
}

bool FrmReleve::Importe() {
    if (f_.Occupe() || !PeutImporter()) return false;
    ServicesUi& s = f_.services();
    SystemeFichiers& fs = f_.app().fs();
    const std::string cible = DeriveChemins(cible_).base;
    if (!fs.existe(fichier_)) {
        s.boites.Texte(fichier_);
        return false;
    }
    f_.Confirme_Fiche_En_Cours();
    if (fs.existe(cible) &&
        s.boites.Question(kMessageLibre, false, Message(kExisteDeja) + Message(kRemplacer) + "?") != Reponse::Oui)
        return false;
    // The open base is committed, and closed when it is the one replaced.
    if (Base* b = f_.base()) {
        if (MemeBase(f_, cible)) f_.Execute(Commande::MnuFermer);
        else if (!Protege(s.boites, [b] { b->ValideBase(); })) return false;
    }
    bool fait = false;
    RapportReleve r;
    {
        Base nouvelle(fs, f_.app().parametres());
        OperationLongue op(s.panneau, s.boites, Message(kImportation), Message(kPatientez));
        std::optional<RemplacementBase> remplacement;
        if (!Protege(s.boites, [&] { remplacement.emplace(nouvelle, cible); })) return false;
        OptionsReleve o;
        o.parametres = &f_.app().parametres();
        o.progres = [&op](const std::string& t) { op.Texte(t); };
        int lignes = 0;
        o.arret = [&op, &lignes] { return ++lignes % kLignesParArret == 0 && op.Arrete(); };
        fait = Protege(s.boites, [&] { r = ImporteReleveFichier(nouvelle, fs, fichier_, genre_, o); }) &&
               !r.refuse() && Protege(s.boites, [&] { remplacement->Valide(); });
    }
    rapport_ = r.Texte();
    if (r.refuse()) s.boites.Information(r.message);
    else if (r.message) s.boites.Information(r.message);
    else if (r.arrete) s.boites.Information(kReleveArrete);
    if (!fait) return false;
    f_.OuvreFichier(cible);
    return true;
}

} // namespace sylvane
