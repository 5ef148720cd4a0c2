#include "ui/mdiform1.h"

#include "kinship/numeros.h"
#include "text/messages.h"
#include "text/utf8.h"

#include <algorithm>
#include <cctype>

namespace sylvane {

namespace {

const char* const kFiltreBase = "G\xE9n\xE9" "alogie (*.sv2) |*.sv2|";

// The extension of a path in capitals, with its dot ("" when none).
std::string ExtensionMajuscule(const std::string& chemin) {
    const auto point = chemin.rfind('.');
    const auto barre = chemin.find_last_of("/\\");
    if (point == std::string::npos || (barre != std::string::npos && point < barre)) return {};
    std::string e = chemin.substr(point);
    for (char& c : e) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return e;
}

} // namespace

MDIForm1::MDIForm1(Application& app, ServicesUi services) : app_(app), services_(services) {}

// --- Life of the program --------------------------------------------------------

void MDIForm1::Demarre(const std::vector<std::string>& arguments) {
    app_.Demarre();
    DitErreurLangue();
    if (vue_) vue_->LangueChangee();
    if (!arguments.empty()) OuvreFichier(arguments.front());
    if (vue_) vue_->EtatChange();
}

void MDIForm1::DitErreurLangue() {
    if (const std::string e = PrendErreurLangue(); !e.empty()) services_.boites.Texte(e);
}

bool MDIForm1::DemandeFermeture() {
    if (Occupe()) return false;
    Confirme_Fiche_En_Cours();
    return services_.boites.Question(21) == Reponse::Oui;
}

void MDIForm1::Termine() {
    services_.fenetres.FermeTout();
    app_.Termine();
}

bool MDIForm1::OuvreFichier(const std::string& chemin) {
    const std::string ext = ExtensionMajuscule(chemin);
    if (ext != ".SV2" && ext != ".SVR" && ext != ".GED") return false;
    if (!app_.fs().existe(chemin)) return false;
    if (Occupe()) return false;
    Confirme_Fiche_En_Cours();
    if (ext == ".SV2") return OuvreBaseChemin(chemin);
    return CmdImporter(*this, chemin);
}

bool MDIForm1::Occupe() {
    if (!services_.panneau.Visible()) return false;
    services_.boites.Information(503);
    return true;
}

// --- Commands ----------------------------------------------------------------------

bool MDIForm1::Active(Commande c) const {
    const EntreeMenu& e = EntreeDe(c);
    if (e.besoinBase && !app_.BaseOuverte()) return false;
    if (*e.formulaire && !services_.fenetres.Disponible(e.formulaire)) return false;
    return true;
}

bool MDIForm1::Execute(Commande c) {
    if (Occupe()) return false;
    if (!Active(c)) return false;
    using C = Commande;
    bool fait = true;
    switch (c) {
    case C::MnuNouveau: NouvelleBase(); break;
    case C::MnuOuvrir: OuvrirDialogue(); break;
    case C::MnuEnregistrer: Enregistrer(); break;
    case C::MnuFermer: Fermer(); break;
    case C::MnuQuitter:
        if (vue_) vue_->Quitte();
        break;
    case C::MnuSauvegarde: fait = CmdSauvegarde(*this); break;
    case C::MnuRestauration: fait = CmdRestauration(*this); break;
    case C::MnuImporter: fait = CmdImporter(*this); break;
    case C::MnuIntegrerSylvane: fait = CmdIntegrerSylvane(*this); break;
    case C::MnuGeneanet: fait = CmdGeneanet(*this); break;
    case C::MnuReorganiser: fait = CmdReorganiser(*this); break;
    case C::MnuControle: fait = CmdControle(*this); break;
    case C::MnuRePMinMaj: fait = CmdRePMinMaj(*this); break;
    case C::MnuRepPrenom: fait = CmdRepPrenom(*this); break;
    case C::MnuSylvane97: break;
    case C::MnuPrecedent: PrecedentSuivant(-1); break;
    case C::MnuSuivant: PrecedentSuivant(+1); break;
    case C::MnuListe: {
        Confirme_Fiche_En_Cours();
        const std::uint32_t n = services_.selecteur.ChoisitPersonne(PersonneEnCours());
        if (n != 0) Aller(n);
        break;
    }
    case C::MnuAller1_1: AllerDeCujus(1); break;
    case C::MnuAller1_2: AllerDeCujus(2); break;
    case C::MnuDeCujus1: DeCujus(1); break;
    case C::MnuDeCujus2: DeCujus(2); break;
    case C::MnuModif:
        Confirme_Fiche_En_Cours();
        personneFiche = app_.base().TablePersonnes().taille() > 0 ? PersonneEnCours() : 0;
        services_.fenetres.Ouvre("FrmMisajour");
        break;
    case C::MnuNouvInd:
        Confirme_Fiche_En_Cours();
        personneFiche = 0;
        services_.fenetres.Ouvre("FrmMisajour");
        break;
    case C::MnuGauche: Decale(-1); break;
    case C::MnuDroite: Decale(+1); break;
    case C::MnuAgrandir: Echelle(1.25); break;
    case C::MnuDiminuer: Echelle(1 / 1.25); break;
    case C::MnuNiveau1: DefinitNiveau(1); break;
    case C::MnuNiveau2: DefinitNiveau(2); break;
    case C::MnuNiveau3: DefinitNiveau(3); break;
    case C::MnuNiveau4: DefinitNiveau(4); break;
    case C::MnuArranger:
        if (vue_) vue_->Arrange();
        break;
    default: {
        const EntreeMenu& e = EntreeDe(c);
        if (!*e.formulaire) return false;
        Confirme_Fiche_En_Cours();
        services_.fenetres.Ouvre(e.formulaire);
        break;
    }
    }
    if (vue_) vue_->EtatChange();
    return fait;
}

void MDIForm1::NouvelleBase() {
    Confirme_Fiche_En_Cours();
    const auto chemin = services_.fichiers.Enregistrer(542, kFiltreBase);
    if (!chemin) return;
    services_.fenetres.FermeTout();
    try {
        app_.NouvelleBase(*chemin);
    } catch (const ErreurES& e) {
        services_.boites.Texte(Utf8VersAnsi(e.what()));
    }
    personneFiche = 0;
    ApresOuverture();
}

void MDIForm1::OuvrirDialogue() {
    Confirme_Fiche_En_Cours();
    const auto chemin = services_.fichiers.Ouvrir(543, kFiltreBase);
    if (chemin) OuvreBaseChemin(*chemin);
}

bool MDIForm1::OuvreBaseChemin(const std::string& chemin) {
    services_.fenetres.FermeTout();
    bool ouverte = true;
    try {
        app_.OuvreBase(chemin);
    } catch (const ErreurES& e) {
        services_.boites.Texte(Utf8VersAnsi(e.what()));
        ouverte = false;
    }
    ApresOuverture();
    return ouverte;
}

void MDIForm1::ApresOuverture() {
    fichePendante = mariagePendant = false;
    if (app_.BaseOuverte()) {
        Base& b = app_.base();
        b.SetSignaleur([this](const std::string& t) { services_.boites.Texte(t); });
        // A current person that the base no longer holds falls back on the
        // first name of the sort table.
        std::uint32_t n = PersonneEnCours();
        if (n == 0 || n > b.Tete().maxPersonne || (b.LitNom(n).empty() && b.LitPrenom(n).empty()))
            n = b.TablePersonnes().taille() > 0 ? b.TriFiche(1) : 0;
        app_.definitPersonneEnCours(n);
        porteeGauche = PorteeGaucheNiveau(niveau);
        porteeDroite = PorteeDroiteNiveau(niveau);
        services_.fenetres.Ouvre("FrmDebut");
    }
    if (vue_) {
        vue_->EtatChange();
        vue_->PersonneChangee();
    }
}

void MDIForm1::Fermer() {
    Confirme_Fiche_En_Cours();
    services_.fenetres.FermeTout();
    app_.FermeBase();
    app_.definitPersonneEnCours(0);
    personneFiche = 0;
    if (vue_) {
        vue_->EtatChange();
        vue_->PersonneChangee();
    }
}

void MDIForm1::Enregistrer() {
    try {
        app_.Enregistre();
    } catch (const ErreurES& e) {
        services_.boites.Texte(Utf8VersAnsi(e.what()));
    }
}

bool MDIForm1::OuvreHistorique(int i) {
    if (Occupe()) return false;
    const auto& entrees = app_.parametres().historique.entrees();
    if (i < 0 || i >= static_cast<int>(entrees.size()) || entrees[i].empty()) return false;
    const std::string chemin = entrees[i];
    Confirme_Fiche_En_Cours();
    if (!app_.fs().existe(chemin)) {
        services_.boites.Information(3100, chemin);
        return false;
    }
    return OuvreBaseChemin(chemin);
}

std::vector<std::string> MDIForm1::Langues() const { return ListeLangues(app_.dossierProgramme()); }

bool MDIForm1::ChoisitLangue(const std::string& langue) {
    if (Occupe()) return false;
    if (!ChangeLangue(app_.reglages(), app_.parametres(), langue, app_.dossierProgramme())) {
        DitErreurLangue();
        return false;
    }
    if (vue_) {
        vue_->LangueChangee();
        vue_->EtatChange();
    }
    return true;
}

// --- Navigation ------------------------------------------------------------------------

void MDIForm1::Aller(std::uint32_t personne) {
    app_.definitPersonneEnCours(personne);
    if (vue_) vue_->PersonneChangee();
}

void MDIForm1::Confirme_Fiche_En_Cours() {
    if (fichePendante && services_.boites.Question(847) == Reponse::Oui && valideFiche)
        valideFiche();
    fichePendante = false;
    mariagePendant = false;
}

void MDIForm1::PrecedentSuivant(int sens) {
    Base& b = app_.base();
    const std::size_t nb = b.TablePersonnes().taille();
    if (nb == 0) return;
    // A person missing from the table stands as if found at its end.
    std::size_t place = b.TrouvePlaceFiche(PersonneEnCours());
    if (place == 0) place = nb;
    if (sens < 0 && place >= 2) Aller(b.TriFiche(place - 1));
    if (sens > 0 && place < nb) Aller(b.TriFiche(place + 1));
}

void MDIForm1::DeCujus(int i) {
    Confirme_Fiche_En_Cours();
    TableNumeros& t = i == 1 ? app_.numeros().deCujus1 : app_.numeros().deCujus2;
    const std::uint32_t depart = t.deCujus != 0 ? t.deCujus : PersonneEnCours();
    const std::uint32_t n = services_.selecteur.ChoisitPersonne(depart, i == 1 ? 357 : 358);
    if (n == 0) return;
    t.deCujus = n;
    if (i == 1)
        Calcul_Numeros_1(app_.base(), app_.numeros());
    else
        Calcul_Numeros_2(app_.base(), app_.numeros());
    if (vue_) vue_->PersonneChangee();
}

void MDIForm1::AllerDeCujus(int i) {
    const TableNumeros& t = i == 1 ? app_.numeros().deCujus1 : app_.numeros().deCujus2;
    if (t.deCujus == 0) DeCujus(i);
    if (t.deCujus != 0) {
        Confirme_Fiche_En_Cours();
        Aller(t.deCujus);
    }
}

void MDIForm1::Relayout_Famille() {
    porteeGauche = PorteeGaucheNiveau(niveau);
    porteeDroite = PorteeDroiteNiveau(niveau);
    dernierDecalage_ = 0;
    if (vue_) vue_->VueChangee();
}

void MDIForm1::DefinitNiveau(int n) {
    niveau = std::clamp(n, 1, 4);
    Relayout_Famille();
}

void MDIForm1::Decale(int sens) {
    // Left: fewer ascendant generations, more descendant ones; right the
    // opposite.
    if (sens < 0) {
        if (porteeGauche == 0) return;
        porteeGauche = std::max(0, porteeGauche - 2);
        porteeDroite += 1;
    } else {
        if (porteeDroite == 0) return;
        porteeGauche += 2;
        porteeDroite -= 1;
    }
    dernierDecalage_ = sens;
    if (vue_) vue_->VueChangee();
}

void MDIForm1::AnnuleDecalage() {
    const int sens = dernierDecalage_;
    dernierDecalage_ = 0;
    if (sens == 0) return;
    if (sens < 0) {
        porteeGauche += 2;
        porteeDroite -= 1;
    } else {
        porteeGauche -= 2;
        porteeDroite += 1;
    }
    if (vue_) vue_->VueChangee();
}

void MDIForm1::Echelle(double facteur) {
    echelle = std::clamp(echelle * facteur, 0.25, 4.0);
    if (vue_) vue_->VueChangee();
}

// --- Display ---------------------------------------------------------------------------

std::string MDIForm1::Titre() {
    if (!app_.BaseOuverte()) return {};
    Base& b = app_.base();
    if (const std::uint32_t d = b.Tete().documentTitre) {
        std::string t = b.TitreDoc(d);
        if (!t.empty()) return t;
    }
    return b.Chemins().base;
}

std::string MDIForm1::PanneauDeCujus(int i) const {
    const TableNumeros& t = i == 1 ? app_.numeros().deCujus1 : app_.numeros().deCujus2;
    return t.deCujus != 0 ? t.panneau : std::string{};
}

std::string MDIForm1::Statut() {
    if (!app_.BaseOuverte() || PersonneEnCours() == 0) return {};
    return StatutNumeros(app_.numeros(), PersonneEnCours()) + app_.base().NomDates(PersonneEnCours());
}

std::vector<std::string> MDIForm1::Historique() const {
    const auto& e = app_.parametres().historique.entrees();
    return {e.begin(), e.end()};
}

// --- Timers ------------------------------------------------------------------------------

void MDIForm1::Minuterie1() {
    // A long operation lets events run; a save in the middle of it would
    // commit half of its work.
    if (services_.panneau.Visible() || !app_.BaseOuverte()) return;
    const bool avant = app_.numeros().deCujus1.perimee || app_.numeros().deCujus2.perimee;
    try {
        app_.Minuterie();
    } catch (const ErreurES& e) {
        services_.boites.Texte(Utf8VersAnsi(e.what()));
    }
    if (avant && vue_) vue_->PersonneChangee();
}

} // namespace sylvane
