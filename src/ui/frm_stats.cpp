#include "ui/frm_stats.h"

#include "store/base.h"
#include "store/fichier.h"
#include "store/pack.h"
#include "text/messages.h"
#include "ui/frm_listes.h"
#include "ui/mdiform1.h"
#include "ui/services.h"

#include <cstdio>
#include <ctime>
#include <memory>

namespace sylvane {
namespace {

std::string Entier(std::uint64_t v) { return std::to_string(v); }

// The decade as the tables show it: "1880/1889 ".
std::string TexteDecennie(int d) {
    char t[24];
    std::snprintf(t, sizeof t, "%04d/%04d ", d * 10, d * 10 + 9);
    return t;
}

template <std::size_t N>
TableTexte Histogramme(const std::array<std::uint64_t, N>& hommes,
                       const std::array<std::uint64_t, N>& femmes) {
    TableTexte t;
    t.entetes = {Message(msg_stats::Nombre), Message(msg_stats::Hommes),
                 Message(msg_stats::Femmes), Message(msg_stats::Total)};
    std::size_t dernier = 0;
    for (std::size_t i = 0; i < N; ++i)
        if (hommes[i] || femmes[i]) dernier = i;
    const bool vide = std::all_of(hommes.begin(), hommes.end(), [](auto v) { return v == 0; }) &&
                      std::all_of(femmes.begin(), femmes.end(), [](auto v) { return v == 0; });
    if (vide) return t;
    for (std::size_t i = 0; i <= dernier; ++i)
        t.lignes.push_back({(i == N - 1 ? ">= " : "") + Entier(i), Entier(hommes[i]),
                            Entier(femmes[i]), Entier(hommes[i] + femmes[i])});
    return t;
}

} // namespace

FrmStats::FrmStats(MDIForm1& f) : f_(f) {
    TransfertParente& t = ParenteTransmise();
    for (std::size_t o = 0; o + 4 <= t.liste.size(); o += 4) liste_.push_back(Unpack4(t.liste, o));
    t.liste.clear();
}

bool FrmStats::Calcule() {
    Base* b = f_.base();
    if (!b || f_.Occupe()) return false;
    OperationLongue op(f_.services().panneau, f_.services().boites, Message(msg_stats::Titre));
    s_ = CalculeStatistiques(*b, liste_, op.interaction(),
                             static_cast<std::uint32_t>(std::time(nullptr)));
    return true;
}

std::string FrmStats::Titre() const {
    std::string t = Message(msg_stats::Titre);
    if (!liste_.empty())
        t += " - " + MessageAvec(msg_stats::ListeRecue, std::to_string(liste_.size()));
    return t;
}

std::string FrmStats::LibelleOnglet(int i) { return Message(msg_stats::PremierOnglet + i); }

TableTexte FrmStats::Table(int o) const {
    TableTexte t;
    if (s_.Personnes() == 0) return t;
    switch (o) {
    case 0: {
        t.entetes = {"", ""};
        auto ligne = [&](int m, std::uint64_t v) { t.lignes.push_back({Message(m), Entier(v)}); };
        ligne(msg_stats::Personnes, s_.Personnes());
        ligne(msg_stats::Hommes, s_.hommes);
        ligne(msg_stats::Femmes, s_.femmes);
        ligne(msg_stats::Indetermines, s_.indetermines);
        ligne(msg_stats::DeuxParents, s_.deuxParents);
        ligne(msg_stats::PereSeul, s_.pereSeul);
        ligne(msg_stats::MereSeule, s_.mereSeule);
        ligne(msg_stats::SansParents, s_.sansParents);
        ligne(msg_stats::AvecDeces, s_.avecDeces);
        return t;
    }
    case 1: return Histogramme(s_.mariagesHommes, s_.mariagesFemmes);
    case 2: return Histogramme(s_.enfantsHommes, s_.enfantsFemmes);
    case 3:
    case 4: {
        if (o == 3)
            t.entetes = {Message(msg_stats::Decennie), Message(msg_stats::Total),
                         Message(msg_stats::Hommes), Message(msg_stats::Femmes)};
        else
            t.entetes = {Message(msg_stats::Decennie),       Message(msg_stats::DureeVie),
                         Message(msg_stats::DureeVieHommes), Message(msg_stats::DureeVieFemmes),
                         Message(msg_stats::AgePere),        Message(msg_stats::AgeMere)};
        const auto [premiere, derniere] = s_.DecenniesMontrees();
        for (int d = premiere; premiere != 0 && d <= derniere; ++d) {
            const LigneDecennie& l = s_.decennies[static_cast<std::size_t>(d)];
            if (o == 3)
                t.lignes.push_back({TexteDecennie(d), Entier(l.total), Entier(l.hommes),
                                    Entier(l.femmes)});
            else
                t.lignes.push_back({TexteDecennie(d), TexteMoyenne(l.vie),
                                    TexteMoyenne(l.vieHommes), TexteMoyenne(l.vieFemmes),
                                    TexteMoyenne(l.agePere), TexteMoyenne(l.ageMere)});
        }
        return t;
    }
    default: {
        t.entetes = {Message(msg_stats::Mois), LibelleOnglet(o)};
        const auto barres = Barres(o);
        for (int m = 0; m < 12; ++m)
            t.lignes.push_back({Message(730 + m), Entier(barres[static_cast<std::size_t>(m)])});
        return t;
    }
    }
}

std::array<std::uint64_t, 12> FrmStats::Barres(int o) const {
    switch (o) {
    case 5: return s_.moisNaissance;
    case 6: return s_.moisDeces;
    case 7: return s_.moisMariage;
    default: return {};
    }
}

std::string FrmStats::TexteCopie() const {
    const TableTexte t = Table(onglet);
    std::string r = LibelleOnglet(onglet) + "\r\n";
    auto ligne = [&r](const std::vector<std::string>& v) {
        for (std::size_t i = 0; i < v.size(); ++i) r += (i ? "\t" : "") + v[i];
        r += "\r\n";
    };
    if (!t.lignes.empty()) ligne(t.entetes);
    for (const auto& l : t.lignes) ligne(l);
    return r;
}

DocumentApercu FrmStats::Impression() const {
    DocumentApercu d;
    d.titre = Titre() + " - " + LibelleOnglet(onglet);
    d.papier = ReglagesCourants().Feuille();
    d.dessine = [f = &f_, t = Table(onglet), titre = d.titre, papier = d.papier](Surface& s) {
        Base* b = f->base();
        if (!b) return FinPages::Absent;
        OptionsImpression o;
        o.papier = papier;
        return ImprimeTable(*b, s, titre, t.entetes, t.lignes, o) == FinRapport::Arrete
                   ? FinPages::Arrete
                   : FinPages::Termine;
    };
    return d;
}

// --- FrmAnniv -----------------------------------------------------------------

FrmAnniv::FrmAnniv(MDIForm1& f) : f_(f) {
    const std::time_t maintenant = std::time(nullptr);
    std::tm tm{};
    localtime_r(&maintenant, &tm);
    mois = tm.tm_mon + 1;
    jour = tm.tm_mday;
}

bool FrmAnniv::Charge() {
    Base* b = f_.base();
    if (!b || f_.Occupe()) return false;
    {
        OperationLongue op(f_.services().panneau, f_.services().boites, Message(953));
        c_.Construit(*b, op.interaction());
    }
    return Choisit(jour);
}

void FrmAnniv::MoisPrecedent() {
    mois = mois == 1 ? 12 : mois - 1;
    Choisit(1);
}

void FrmAnniv::MoisSuivant() {
    mois = mois == 12 ? 1 : mois + 1;
    Choisit(1);
}

std::vector<std::array<int, 7>> FrmAnniv::Semaines() const {
    std::vector<std::array<int, 7>> r;
    for (int j = 1; Calendrier::JourDeLAn(j, mois) >= 0; ++j) {
        if ((j - 1) % 7 == 0) r.push_back({});
        r.back()[static_cast<std::size_t>((j - 1) % 7)] = j;
    }
    return r;
}

std::size_t FrmAnniv::NombreDuJour(int j) const {
    const int d = Calendrier::JourDeLAn(j, mois);
    return d < 0 || !c_.Construit() ? 0 : c_.Jour(d).size();
}

bool FrmAnniv::Choisit(int j) {
    const int d = Calendrier::JourDeLAn(j, mois);
    Base* b = f_.base();
    if (d < 0) return false;
    jour = j;
    listes_ = b && c_.Construit() ? ListesDuJour(*b, c_, d) : ListesJour{};
    return true;
}

std::string FrmAnniv::LibelleJour() const {
    return std::to_string(jour) + " " + Message(730 + mois - 1);
}

void FrmAnniv::Active(const LigneAnniv& l) {
    if (l.personne) f_.Aller(l.personne);
}

DestinationAnniv FrmAnniv::DestinationDe(const std::string& nomFenetre) {
    const auto deux = nomFenetre.find(':');
    const std::string d = deux == std::string::npos ? "" : nomFenetre.substr(deux + 1);
    if (d == "RTF") return DestinationAnniv::RTF;
    if (d == "HTML") return DestinationAnniv::HTML;
    return DestinationAnniv::Imprimante;
}

std::optional<DocumentApercu> FrmAnniv::Recapitulation() { return Rapport(PeriodeAnniv{}); }

std::optional<DocumentApercu> FrmAnniv::RapportCalendrier() {
    PeriodeAnniv p;
    p.recapitulation = false;
    p.premier = Calendrier::JourDeLAn(1, mois);
    p.dernier = p.premier + static_cast<int>(NombreDeJours()) - 1;
    return Rapport(p);
}

std::size_t FrmAnniv::NombreDeJours() const {
    int j = 28;
    while (Calendrier::JourDeLAn(j + 1, mois) >= 0) ++j;
    return static_cast<std::size_t>(j);
}

std::optional<DocumentApercu> FrmAnniv::Rapport(const PeriodeAnniv& p) {
    Base* b = f_.base();
    fichierEcrit.clear();
    if (!b || f_.Occupe()) return std::nullopt;
    ServicesUi& sv = f_.services();
    if (!c_.Construit()) {
        OperationLongue op(sv.panneau, sv.boites, Message(953));
        c_.Construit(*b, op.interaction());
    }
    const Parametres& prm = f_.app().parametres();
    const std::string titreBase = b->Chemins().titre;
    if (destination == DestinationAnniv::Imprimante) {
        DocumentApercu d;
        d.titre = Message(953);
        d.papier = ReglagesCourants().Feuille();
        // The preview may outlive the form: it keeps its own calendar.
        d.dessine = [f = &f_, c = std::make_shared<Calendrier>(c_), p, papier = d.papier](Surface& s) {
            Base* base = f->base();
            if (!base) return FinPages::Absent;
            OptionsImpression o;
            o.papier = papier;
            return ImprimeAnniversaires(*base, s, *c, p, o) == FinRapport::Arrete ? FinPages::Arrete
                                                                                  : FinPages::Termine;
        };
        return d;
    }
    const bool html = destination == DestinationAnniv::HTML;
    std::string chemin;
    if (html && !p.recapitulation) {
        // The calendar report: "index.htm" in the base's folder.
        const std::string dossier = prm.DossierTravail() + titreBase;
        try {
            b->Systeme().creerDossier(dossier);
        } catch (const ErreurES&) {
        }
        chemin = dossier + "/index.htm";
    } else {
        const auto choix = sv.fichiers.Enregistrer(
            html ? 0 : 567, html ? "HTML (*.htm) |*.htm|" : "Rich Text Format (*.rtf) |*.rtf|",
            prm.DossierTravail() + titreBase + (html ? ".htm" : ".rtf"));
        if (!choix) return std::nullopt;
        chemin = *choix;
    }
    try {
        OperationLongue op(sv.panneau, sv.boites, Message(953));
        if (!EcritAnniversaires(*b, b->Systeme(), c_, p, destination, chemin, op.interaction()))
            return std::nullopt;
    } catch (const ErreurES& e) {
        sv.boites.Texte(e.what());
        return std::nullopt;
    }
    fichierEcrit = chemin;
    if (!p.recapitulation) {
        sv.boites.Information(500);
    } else if (!html) {
        sv.boites.Information(569);
    } else if (sv.boites.Question(msg_stats::OuvrirFichier, false, chemin) == Reponse::Oui &&
               ouvreNavigateur) {
        ouvreNavigateur(chemin);
    }
    return std::nullopt;
}

} // namespace sylvane
