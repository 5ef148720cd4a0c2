// The exchange commands of the main window: imports into a new base, the
// GénéaNet hand-off, backup, restore and integration. Each long one runs on
// the progress panel with its stop button; each refuses while another runs.
#include "exchange/gedcom_export.h"
#include "exchange/gedcom_import.h"
#include "exchange/geneanet.h"
#include "exchange/sauvegarde.h"
#include "exchange/svr.h"
#include "text/messages.h"
#include "text/utf8.h"
#include "ui/commandes_communes.h"
#include "ui/mdiform1.h"

#include <cctype>

namespace sylvane {

bool Protege(Boites& boites, const std::function<void()>& action) {
    try {
        action();
        return true;
    } catch (const ErreurLecture& e) {
        boites.Texte(e.what()); // the readers' own words, Windows-1252
    } catch (const ErreurES& e) {
        boites.Texte(Utf8VersAnsi(e.what())); // what() of a file error is UTF-8
    } catch (const std::exception& e) {
        boites.Texte(Utf8VersAnsi(e.what()));
    }
    return false;
}

DialogueEchange DialogueUi(Boites& boites, OperationLongue& op, SystemeFichiers& fs) {
    DialogueEchange d;
    d.question = [&boites](int m) { return boites.Question(m) == Reponse::Oui; };
    d.progres = [&op](const std::string& t) { op.Texte(t); };
    d.arret = [&op] { return op.Arrete(); };
    d.message = [&boites](const std::string& t) { boites.Texte(t); };
    d.montreFichier = [&boites, &fs](const std::string& chemin) {
        // A tool's report of what went wrong: its beginning says it, and a
        // runaway file must not fill the memory or the box.
        constexpr std::size_t kDebut = 64 * 1024;
        Protege(boites, [&] {
            const auto f = fs.ouvrir(chemin, Mode::Lecture);
            std::string t = f->lire(0, kDebut);
            if (f->taille() > kDebut) t += "\r\n...";
            boites.Texte(t);
        });
    };
    return d;
}

std::function<void(const std::string&, std::size_t)> ProgresPhase(OperationLongue& op) {
    return [&op](const std::string& phase, std::size_t fait) {
        op.Texte(phase + " " + std::to_string(fait));
    };
}

Interaction InteractionRepondue(OperationLongue& op, int message, Reponse reponse) {
    Interaction io = op.interaction();
    auto autre = io.question;
    io.question = [message, reponse, autre](int m) {
        return m == message ? reponse : autre ? autre(m) : Reponse::Non;
    };
    return io;
}

namespace {

constexpr const char* kFiltreBase = "G\xE9n\xE9" "alogie (*.sv2) |*.sv2|";
constexpr const char* kFiltreImport =
    "GEDCOM, Sylvane (*.ged;*.svr) |*.ged;*.svr|GEDCOM (*.ged) |*.ged|"
    "Export Sylvane (*.svr) |*.svr|";
constexpr const char* kFiltreGeneanet =
    "g\xE9n\xE9" "anet (ged2gen.bat) |ged2gen.bat|ged2gen (ged2gen.pl) |ged2gen.pl|";
constexpr int kTitreImport = 837;
constexpr int kTitreNouvelleBase = 542;
constexpr int kPatientez = 505;
constexpr int kCopieSurBase = 3401;
constexpr int kOuEstGeneanet = 3402;
constexpr int kImportArrete = 3404;
constexpr int kTitreGeneanet = 3405;

bool FinitPar(const std::string& chemin, const char* fin) {
    const std::string f(fin);
    if (chemin.size() < f.size()) return false;
    for (std::size_t i = 0; i < f.size(); ++i)
        if (std::toupper(static_cast<unsigned char>(chemin[chemin.size() - f.size() + i])) != f[i])
            return false;
    return true;
}

// Yes/No boxes for the two questions at the end of a GEDCOM import.
class QuestionsUi : public Questions {
  public:
    explicit QuestionsUi(Boites& b) : boites_(b) {}
    bool OuiNon(int message) override { return boites_.Question(message) == Reponse::Oui; }

  private:
    Boites& boites_;
};

// Whether `chemin` names the base open in the program.
bool EstBaseOuverte(MDIForm1& f, const std::string& chemin) {
    Base* b = f.base();
    if (!b) return false;
    SystemeFichiers& fs = f.app().fs();
    return b->Chemins().base == chemin ||
           (fs.existe(chemin) && fs.memeFichier(b->Chemins().base, chemin));
}

// Fills the new base `b` from the file; false when stopped or failed (the
// reason already shown). What the GEDCOM reader found goes to `bilan`.
bool LitSource(MDIForm1& f, Base& b, const std::string& source, OperationLongue& op,
               std::string& bilan) {
    Application& app = f.app();
    Boites& boites = f.services().boites;
    if (FinitPar(source, ".SVR")) {
        // The file's [INI] values become the presentation settings: those
        // of the program are stored first, so that nothing else is lost.
        SauveParametres(app.reglages(), app.parametres());
        bool lu = false;
        try {
            LitSvrNouvelleBase(b, app.fs(), source, app.reglages(),
                               DialogueUi(boites, op, app.fs()));
            lu = true;
        } catch (const ErreurLecture& e) {
            if (!op.Arrete()) boites.Texte(e.what()); // a stop is told by the caller
        } catch (...) {
            Protege(boites, [] { throw; }); // shown as every other failure
        }
        LitParametres(app.reglages(), app.parametres(), app.dossierProgramme());
        return lu;
    }
    std::optional<GedcomLu> g;
    if (!Protege(boites, [&] { g.emplace(PrepareGedcom(app.fs(), source)); })) return false;
    if (!g->rapport().erreur().empty()) {
        boites.Texte(g->rapport().erreur());
        return false;
    }
    QuestionsUi questions(boites);
    OptionsImport opt;
    opt.questions = &questions;
    opt.parametres = &app.parametres();
    opt.progres = ProgresPhase(op);
    opt.arret = [&op] { return op.Arrete(); };
    RapportImport r;
    if (!Protege(boites, [&] { r = ImporteGedcom(b, *g, opt); })) return false;
    if (r.arrete) return false;
    if (!r.vide()) bilan = r.Texte();
    return true;
}

} // namespace

bool CmdImporter(MDIForm1& f, const std::string& chemin) {
    if (f.Occupe()) return false;
    ServicesUi& s = f.services();
    std::string source = chemin;
    if (source.empty()) {
        auto choisi = s.fichiers.Ouvrir(kTitreImport, kFiltreImport);
        if (!choisi) return false;
        source = *choisi;
    }
    auto nom = s.fichiers.Enregistrer(kTitreNouvelleBase, kFiltreBase, DeriveChemins(source).base);
    if (!nom) return false;
    const std::string cible = DeriveChemins(*nom).base;
    f.Confirme_Fiche_En_Cours();
    // The open base can't be written over while it is open.
    if (EstBaseOuverte(f, cible)) f.Execute(Commande::MnuFermer);
    bool fini = false;
    std::string bilan;
    {
        Base nouvelle(f.app().fs(), f.app().parametres());
        OperationLongue op(s.panneau, s.boites, Message(kTitreImport), Message(kPatientez));
        std::optional<RemplacementBase> remplacement;
        if (!Protege(s.boites, [&] { remplacement.emplace(nouvelle, cible); })) return false;
        // Until Valide the new base lives under a temporary name beside the
        // target: a stop or a failure drops it and the target stays as it was.
        fini = LitSource(f, nouvelle, source, op, bilan) &&
               Protege(s.boites, [&] { remplacement->Valide(); });
        if (!fini && op.Arrete()) s.boites.Information(kImportArrete);
    }
    // Told once the base stands in place and the panel is gone.
    if (fini && !bilan.empty()) s.boites.Texte(bilan);
    return fini && f.OuvreFichier(cible);
}

bool CmdSauvegarde(MDIForm1& f) {
    if (f.Occupe() || !f.base()) return false;
    ServicesUi& s = f.services();
    Base& b = *f.base();
    auto copie = s.fichiers.Enregistrer(kTitreSauvegarde, kFiltreSauvegarde,
                                        ChangeFin(b.Chemins().base, "sav"));
    if (!copie) return false;
    // A copy over the base itself would take the open file's name.
    if (EstBaseOuverte(f, *copie)) {
        s.boites.Information(kCopieSurBase);
        return false;
    }
    f.Confirme_Fiche_En_Cours();
    OperationLongue op(s.panneau, s.boites, Message(kTitreSauvegarde), Message(kPatientez));
    return Protege(s.boites, [&] { Sauvegarde(b, f.app().fs(), *copie); });
}

bool CmdRestauration(MDIForm1& f) {
    if (f.Occupe()) return false;
    ServicesUi& s = f.services();
    SystemeFichiers& fs = f.app().fs();
    auto sav = s.fichiers.Ouvrir(kTitreRestauration, kFiltreRestauration, "*.sav");
    if (!sav) return false;
    const std::string cible = DeriveChemins(ChangeFin(*sav, "sv2")).base;
    if (fs.existe(cible) &&
        s.boites.Question(kMessageLibre, false,
                          Message(kExisteDeja) + Message(kVeutRemplacer) + "?") != Reponse::Oui)
        return false;
    f.Confirme_Fiche_En_Cours();
    if (f.base()) f.Execute(Commande::MnuFermer);
    bool fait = false;
    {
        OperationLongue op(s.panneau, s.boites, Message(kTitreRestauration),
                           Message(kPatientez));
        Base restauree(fs, f.app().parametres());
        DialogueEchange d = DialogueUi(s.boites, op, fs);
        d.question = [](int) { return true; }; // asked above, before the base was closed
        fait = Protege(s.boites, [&] {
            if (Restauration(restauree, fs, *sav, d)) restauree.FermeBase();
        });
    }
    return fait && f.OuvreFichier(cible);
}

bool CmdIntegrerSylvane(MDIForm1& f) {
    if (f.Occupe() || !f.base()) return false;
    ServicesUi& s = f.services();
    Base& b = *f.base();
    SystemeFichiers& fs = f.app().fs();
    const std::string dernier = b.Chemins().svr;
    auto svr = s.fichiers.Ouvrir(kTitreIntegration, kFiltreSvr,
                                 fs.existe(dernier) ? dernier : "*.svr");
    if (!svr) return false;
    f.Confirme_Fiche_En_Cours();
    bool fait;
    {
        OperationLongue op(s.panneau, s.boites, Message(kTitreIntegration), Message(kPatientez));
        fait = Protege(s.boites, [&] { IntegreSvr(b, fs, *svr, DialogueUi(s.boites, op, fs)); });
    }
    // What was read stays, whole or not: the window shows it.
    f.Aller(f.PersonneEnCours());
    return fait;
}

bool CmdGeneanet(MDIForm1& f) {
    if (f.Occupe() || !f.base()) return false;
    ServicesUi& s = f.services();
    Application& app = f.app();
    SystemeFichiers& fs = app.fs();
    Base& b = *f.base();
    std::string dossier = app.parametres().geneanet;
    if (dossier.empty()) dossier = app.dossierProgramme() + "/geneanet";
    if (!fs.existe(dossier + "/ged2gen.pl")) {
        auto outil = s.fichiers.Ouvrir(kOuEstGeneanet, kFiltreGeneanet, dossier);
        if (!outil) return false;
        dossier = DossierDe(*outil);
        if (dossier.size() > 1) dossier.pop_back(); // the final separator
        app.parametres().geneanet = dossier;
    }
    f.Confirme_Fiche_En_Cours();
    OperationLongue op(s.panneau, s.boites, Message(kTitreGeneanet), Message(kPatientez));
    AppelGeneanet appel;
    appel.dossier = dossier;
    appel.titre = b.Chemins().titre;
    int statut = -1;
    const bool fait = Protege(s.boites, [&] {
        statut = LanceGeneanet(
            fs, appel,
            [&](const std::string& ged) {
                OptionsExport o;
                o.jeu = '1';
                o.progres = ProgresPhase(op);
                o.arret = [&op] { return op.Arrete(); };
                ExporteGeneanet(b, fs, ged, o);
            },
            DialogueUi(s.boites, op, fs));
    });
    return fait && statut == 0;
}

} // namespace sylvane
