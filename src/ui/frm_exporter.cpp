#include "ui/frm_exporter.h"

#include "exchange/gedcom_export.h"
#include "exchange/svr.h"
#include "maintenance/interaction.h"
#include "store/base.h"
#include "text/messages.h"
#include "ui/commandes_communes.h"
#include "ui/mdiform1.h"

namespace sylvane {
namespace {
constexpr const char* kFiltreGedcom = "Export GEDCOM (*.ged) |*.ged|";
constexpr int kTitreSvr = 541;
constexpr int kPatientez = 505;
} // namespace

FrmExporter::FrmExporter(MDIForm1& f) : f_(f), base_(f.base()), personne_(f.PersonneEnCours()) {
    if (base_) sel_ = std::make_unique<Selection>(*base_);
}

// The marks belong to one base: another base open since drops them.
Base* FrmExporter::BaseCourante() {
    Base* b = f_.base();
    if (b != base_) {
        base_ = b;
        sel_ = b ? std::make_unique<Selection>(*b) : nullptr;
        compte_ = 0;
        personne_ = b ? f_.PersonneEnCours() : 0;
    }
    return base_;
}

Selection* FrmExporter::Marques() {
    BaseCourante();
    return sel_.get();
}

void FrmExporter::Recompte() { compte_ = sel_ ? sel_->Compte() : 0; }

std::string FrmExporter::EtiNom() {
    Base* b = BaseCourante();
    return b && personne_ ? b->NomDates(personne_) : std::string();
}

void FrmExporter::DefinitPersonne(std::uint32_t n) {
    Base* b = BaseCourante();
    if (b && n && n <= b->Tete().maxPersonne) personne_ = n;
}

bool FrmExporter::ChoisitPersonne() {
    const std::uint32_t n = f_.services().selecteur.ChoisitPersonne(personne_, kExporterTitre);
    if (!n) return false;
    DefinitPersonne(n);
    return personne_ == n;
}

std::size_t FrmExporter::CmdSelection() {
    if (!BaseCourante()) return 0;
    if (choix == Choix::Tout) sel_->SelectionneTout();
    else if (personne_ == 0) return compte_;
    else if (choix == Choix::Descendants) sel_->SelectionneDescendants(personne_);
    else sel_->SelectionneAscendants(personne_);
    Recompte();
    return compte_;
}

std::string FrmExporter::LblFiche() {
    return Message(kExporterCompte) + " " + std::to_string(Compte());
}

std::vector<std::uint32_t> FrmExporter::CmdListe() {
    std::vector<std::uint32_t> liste;
    Base* b = BaseCourante();
    if (!b || compte_ == 0) return liste;
    const std::size_t nb = b->TablePersonnes().taille();
    for (std::size_t i = 1; i <= nb; ++i) {
        const std::uint32_t n = b->TriFiche(i);
        if (sel_->Marque(n) != ' ') liste.push_back(n);
    }
    return liste;
}

void FrmExporter::Inclut(std::uint32_t n) {
    Base* b = BaseCourante();
    if (!b || n == 0 || n > b->Tete().maxPersonne) return;
    sel_->Inclut(n);
    Recompte();
}

void FrmExporter::Exclut(std::uint32_t n) {
    if (!BaseCourante()) return;
    sel_->Exclut(n);
    Recompte();
}

void FrmExporter::Efface() {
    if (!BaseCourante()) return;
    sel_->Efface();
    compte_ = 0;
}

bool FrmExporter::CmdLancer() {
    Base* b = BaseCourante();
    if (!b || !LancerPossible() || f_.Occupe()) return false;
    ServicesUi& s = f_.services();
    const Parametres& p = f_.app().parametres();
    if (format == Format::Gedcom) {
        // The submitter of a GEDCOM file is the author or an address.
        bool signe = !p.auteur.empty();
        for (const auto& a : p.adresse) signe = signe || !a.empty();
        if (!signe) {
            s.boites.Information(kExporterAuteur);
            return false;
        }
    }
    const std::string depart = DossierDe(b->Chemins().base) + b->Chemins().titre;
    auto chemin = format == Format::Gedcom
                      ? s.fichiers.Enregistrer(kExporterTitre, kFiltreGedcom, depart + ".ged")
                      : s.fichiers.Enregistrer(kTitreSvr, kFiltreSvr, depart + ".svr");
    if (!chemin) return false;
    SystemeFichiers& fs = f_.app().fs();
    if (*chemin == b->Chemins().base ||
        (fs.existe(*chemin) && fs.memeFichier(*chemin, b->Chemins().base))) {
        s.boites.Information(kExporterSurBase);
        return false;
    }
    sel_->collateraux = collateraux;
    sel_->complet = complet;
    sel_->sans1900 = sans1900;
    bool fini = false;
    {
        OperationLongue op(s.panneau, s.boites, Message(kExporterTitre), Message(kPatientez));
        Protege(s.boites, [&] {
            if (format == Format::Svr) {
                fini = ExporteSvr(*b, *sel_, p, fs, *chemin, DialogueUi(s.boites, op, fs));
                return;
            }
            OptionsExport o;
            o.jeu = jeu;
            o.liens = liens;
            o.evenements = evenements;
            o.documents = documents;
            o.avant1900 = sans1900;
            const Selection& sel = *sel_;
            o.selection = [&sel](std::uint32_t n) { return sel.Exporte(n); };
            o.progres = ProgresPhase(op);
            o.arret = [&op] { return op.Arrete(); };
            fini = ExporteGedcom(*b, fs, *chemin, o) == FinExport::Termine;
        });
    }
    if (fini) Efface();
    return fini;
}

} // namespace sylvane
