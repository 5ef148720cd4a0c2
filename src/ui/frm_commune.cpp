#include "ui/frm_commune.h"

#include "text/mots.h"
#include "ui/commandes_communes.h"

#include <cctype>

namespace sylvane {

FrmCommune::FrmCommune(MDIForm1& f) : f_(f) {}

bool FrmCommune::Ouvre() {
    fichier_.reset();
    const std::string chemin = f_.app().parametres().fichierCommunes;
    Boites& boites = f_.services().boites;
    if (chemin.empty() || !f_.app().fs().existe(chemin)) {
        boites.Information(kCommuneIntrouvable);
        return false;
    }
    return Protege(boites, [&] { fichier_ = std::make_unique<FichierCommunes>(f_.app().fs(), chemin); });
}

std::string FrmCommune::ChercheCommune(const std::string& nom) {
    if (!fichier_) return nom;
    bool exact = false;
    const std::uint32_t i = fichier_->ChercheNom(nom, exact);
    if (i == 0) return nom;
    if (!exact) f_.services().boites.Information(kCommuneInconnue);
    const auto communes = fichier_->CommunesNom(i);
    if (!communes.empty()) Choisit(communes.front());
    return fichier_->NomIndex(i);
}

std::string FrmCommune::FormeMot(const std::string& texte) const {
    std::string m = texte;
    for (std::size_t i = 0; i < m.size(); ++i)
        m[i] = static_cast<char>(i == 0 ? std::toupper(static_cast<unsigned char>(m[i]))
                                        : std::tolower(static_cast<unsigned char>(m[i])));
    return m;
}

std::vector<std::string> FrmCommune::MotsAutour(const std::string& texte, std::size_t nombre) {
    std::vector<std::string> r;
    if (!fichier_ || fichier_->NombreMots() == 0) return r;
    const std::uint32_t k = fichier_->ChercheMot(FormeMot(texte));
    const std::uint32_t debut = k > nombre / 2 ? k - static_cast<std::uint32_t>(nombre / 2) : 1;
    for (std::uint32_t j = debut; j <= fichier_->NombreMots() && r.size() < nombre; ++j) r.push_back(fichier_->Mot(j));
    return r;
}

std::vector<std::pair<std::uint32_t, std::string>> FrmCommune::CommunesDuMot(const std::string& mot) {
    std::vector<std::pair<std::uint32_t, std::string>> r;
    if (!fichier_ || fichier_->NombreMots() == 0) return r;
    const std::uint32_t k = fichier_->ChercheMot(mot);
    for (std::uint32_t n : fichier_->CommunesMot(k)) r.emplace_back(n, fichier_->Lit(n).nom);
    return r;
}

void FrmCommune::Choisit(std::uint32_t n) {
    if (!fichier_) return;
    choisie_ = n;
    commune_ = fichier_->Lit(n);
}

std::string FrmCommune::CodesPostaux() const {
    std::string c = commune_.codesPostaux;
    for (char& x : c)
        if (x == '/') x = ' ';
    return c;
}

// The commune that has this number of its own, 0 for none.
std::uint32_t FrmCommune::ParNumero(const std::string& numero) {
    for (std::uint32_t n = 1; fichier_ && n <= fichier_->Nombre(); ++n) {
        const Commune c = fichier_->Lit(n);
        if (!c.nom.empty() && c.numero == numero) return n;
    }
    return 0;
}

std::string FrmCommune::Principale() {
    if (commune_.principale.empty()) return {};
    const std::uint32_t n = ParNumero(commune_.principale);
    return n ? fichier_->Lit(n).nom + " (" + commune_.principale + ")" : commune_.principale;
}

std::string FrmCommune::Departement() {
    const auto a = commune_.nom.find('('), b = commune_.nom.find(')');
    if (a == std::string::npos || b == std::string::npos || b < a) return {};
    const std::string ref = commune_.nom.substr(a + 1, b - a - 1);
    const std::uint32_t n = ParNumero(ref);
    return n ? fichier_->Lit(n).nom : ref;
}

bool FrmCommune::EnregistreCommentaire(const std::string& texte) {
    if (!fichier_ || choisie_ == 0) return false;
    return Protege(f_.services().boites, [&] {
        fichier_->EcritCommentaire(choisie_, texte);
        commune_ = fichier_->Lit(choisie_);
    });
}

std::uint32_t FrmCommune::Ajoute(const Commune& c) {
    if (!fichier_ || f_.Occupe()) return 0;
    if (Trim(c.nom).empty()) {
        f_.services().boites.Information(msg_communes::NomVide);
        return 0;
    }
    Commune nouvelle = c;
    nouvelle.nom = Trim(c.nom);
    std::uint32_t n = 0;
    if (!Protege(f_.services().boites, [&] { n = fichier_->Ajoute(nouvelle); })) return 0;
    Choisit(n);
    return n;
}

bool FrmCommune::Retire() {
    if (!fichier_ || choisie_ == 0 || f_.Occupe()) return false;
    if (f_.services().boites.Question(msg_communes::Confirmation) != Reponse::Oui) return false;
    const bool ok = Protege(f_.services().boites, [&] { fichier_->Retire(choisie_); });
    choisie_ = 0;
    commune_ = {};
    return ok;
}

bool FrmCommune::Reorganise() {
    if (!fichier_ || f_.Occupe()) return false;
    Panneau& panneau = f_.services().panneau;
    bool fini = false;
    {
        OperationLongue op(panneau, f_.services().boites, "R\xE9organisation communes");
        Protege(f_.services().boites, [&] {
            fini = fichier_->Reorganise([&](const std::string& titre, const std::string& texte) {
                panneau.Montre(titre, texte);
                return !op.Arrete();
            });
        });
    }
    if (choisie_) Choisit(choisie_);
    return fini;
}

std::vector<std::string> LieuxProposes(Application& app, const std::string& debut, std::size_t nombre) {
    const std::string chemin = app.parametres().fichierCommunes;
    if (CleCommune(debut).size() < 2 || chemin.empty()) return {};
    try {
        if (!app.fs().existe(chemin)) return {};
        // Opened for each question: the window may have written it anew.
        FichierCommunes f(app.fs(), chemin, true);
        return f.NomsCommencant(debut, nombre);
    } catch (const std::exception&) {
        return {}; // a damaged file is told by the window, not while typing
    }
}

} // namespace sylvane
