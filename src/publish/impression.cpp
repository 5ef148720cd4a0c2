#include "publish/impression.h"

#include "kinship/liste.h"
#include "kinship/lignes.h"
#include "publish/rapports.h"
#include "text/dates.h"
#include "text/messages.h"
#include "text/rtf.h"
#include "text/tags.h"

#include <algorithm>
#include <cstdio>

namespace sylvane {

// --- Paper -------------------------------------------------------------------

namespace {

// The rows of the paper list with the platform's codes. "Petite lettre
// US" stands a second time where the platform has its legal size, so that
// the rows follow the codes one by one.
constexpr FormatPapier kPapiers[] = {
    {"Lettre US (21,59 x 27,94 cm)", 1, 215.9, 279.4},
    {"Petite lettre US (21,59 x 27,94 cm)", 2, 215.9, 279.4},
    {"Tablo\xEF" "d US (27,94 x 43,18 cm)", 3, 279.4, 431.8},
    {"Ledger US (43,18 x 27,94 cm) ", 4, 431.8, 279.4},
    {"Petite lettre US (21,59 x 27,94 cm)", 5, 215.9, 355.6},
    {"Statement US (13,97 x 21,59 cm)", 6, 139.7, 215.9},
    {"Executive US (19,05 x 25,04 cm)", 7, 190.5, 254.0},
    {"A3 (29,7 x 42 cm)", 8, 297, 420},
    {"A4 (21 x 29,7 cm)", 9, 210, 297},
    {"Petit A4 (21 x 29,7 cm)", 10, 210, 297},
    {"A5 (14,8 x 21 cm)", 11, 148, 210},
    {"B4 (25 x 35,3 cm)", 12, 250, 353},
    {"B5 (17,65 x 25 cm)", 13, 176.5, 250},
    {"Folio US (21,59 x 33,02 cm)", 14, 215.9, 330.2},
    {"Quarto US (21,5 x 27,5 cm)", 15, 215, 275},
    {"25,4 x 35,56 cm", 16, 254, 355.6},
    {"27,94 x 43,18 cm", 17, 279.4, 431.8},
    {"Note US (21,59 x 27,94 cm)", 18, 215.9, 279.4},
    {"Enveloppe US # 9 (9,84 x 22,54 cm)", 19, 98.4, 225.4},
    {"Enveloppe US  # 10 (10,48 x 24,13 cm)", 20, 104.8, 241.3},
    {"Enveloppe US # 11 (11,43 x 26,35 cm)", 21, 114.3, 263.5},
    {"Enveloppe US # 12 (12,38 x 27,94 cm)", 22, 123.8, 279.4},
    {"Enveloppe US # 14 (12,7 x 29,21 cm)", 23, 127, 292.1},
    {"Feuille US de taille C", 24, 431.8, 558.8},
    {"Feuille US de taille D", 25, 558.8, 863.6},
    {"Feuille US de taille E", 26, 863.6, 1117.6},
    {"Enveloppe DL (11 x 22 cm)", 27, 110, 220},
    {"Enveloppe C3 (32,4 x 45,8 cm)", 29, 324, 458},
    {"Enveloppe C4 (22,9 x 32,4 cm)", 30, 229, 324},
    {"Enveloppe C5 (16,2 x 22,9 cm)", 28, 162, 229},
    {"Enveloppe C6 (11,4 x 16,2 cm)", 31, 114, 162},
    {"Enveloppe C65 (11,4 x 22,9 cm)", 32, 114, 229},
    {"Enveloppe B4 (25,0 x 35,3 cm)", 33, 250, 353},
    {"Enveloppe B5 (17,6 x 25 cm)", 34, 176, 250},
    {"Enveloppe B6 (17,6 x 12,5 cm)", 35, 176, 125},
    {"Enveloppe (11 x 23 cm)", 36, 110, 230},
    {"Enveloppe Monarch (9,84 x 19,5 cm)", 37, 98.4, 190.5},
    {"Enveloppe (9,20 x 16,51 cm)", 38, 92.1, 165.1},
    {"Fanfold US (37,78 x 27,94 cm)", 39, 377.8, 279.4},
    {"Fanfold German (21,59 x 30,48 cm)", 40, 215.9, 304.8},
    {"Fanfold German Legal (21,59 x 33,02 cm)", 41, 215.9, 330.2},
    {"D\xE9" "fini par l'utilisateur", 256, 210, 297},
};
constexpr std::size_t kRangA4 = 8;
constexpr double kTwipsParMm = 1440.0 / 25.4;

} // namespace

std::span<const FormatPapier> TablePapiers() { return kPapiers; }

std::size_t RangPapier(int code) {
    for (std::size_t i = 0; i < std::size(kPapiers); ++i)
        if (kPapiers[i].code == code) return i;
    return kRangA4;
}

Papier PapierDeRang(std::size_t rang, bool paysage) {
    const FormatPapier& f = kPapiers[rang < std::size(kPapiers) ? rang : kRangA4];
    Papier p;
    p.largeur = static_cast<std::int64_t>(f.largeurMm * kTwipsParMm + 0.5);
    p.hauteur = static_cast<std::int64_t>(f.hauteurMm * kTwipsParMm + 0.5);
    if (paysage != (p.largeur > p.hauteur)) std::swap(p.largeur, p.hauteur);
    return p;
}

// --- Options -----------------------------------------------------------------

void OptionsImpression::Contenu(sylvane::Contenu c, const std::array<bool, kSections>& partielles) {
    listeRapide = c == sylvane::Contenu::ListeRapide;
    if (c == sylvane::Contenu::Partielles) sections = partielles;
    else sections.fill(true);
}

int ModeTriDeSequence(int sequence) {
    // None keeps the names in alphabetical order; the tree is the order of
    // the walk itself.
    switch (sequence) {
    case 1: return TriGeneration;
    case 2: return TriNaissance;
    case 3: return TriParcours;
    default: return TriNom;
    }
}

// --- Texts ---------------------------------------------------------------------

namespace {

std::string Nettoie(std::string s) {
    const auto debut = s.find_first_not_of(' ');
    if (debut == std::string::npos) return "";
    s.erase(0, debut);
    s.erase(s.find_last_not_of(' ') + 1);
    return s;
}

std::string Joint(const std::string& a, const std::string& b, const char* sep = ", ") {
    if (a.empty()) return b;
    if (b.empty()) return a;
    return a + sep + b;
}

std::uint32_t Conjoint(Base& b, std::uint32_t m, std::uint32_t p) {
    return b.LitMari(m) == p ? b.LitFemme(m) : b.LitMari(m);
}

} // namespace

// --- The printer ------------------------------------------------------------------

namespace {
constexpr double kInterligne = 1.15;
constexpr double kRetrait = 360; // a quarter inch
} // namespace

Imprimante::Imprimante(Base& b, Surface& s, const OptionsImpression& o)
    : b_(b), s_(s), o_(o), m_(s.Mesure()), date_(o.date.empty() ? DateDuJour() : o.date) {}

double Imprimante::HauteurLigne(double points, bool gras) const {
    return m_.Hauteur(Police{points, gras}) * kInterligne;
}

double Imprimante::Bas() const {
    return static_cast<double>(o_.papier.hauteur) * (1 - 1.0 / 30);
}

void Imprimante::NouvellePage(const std::string& titre) {
    FinImpression();
    titre_ = titre;
    const double w = static_cast<double>(o_.papier.largeur);
    const double marge = w / 20;
    ++pages_;
    s_.DebutPage(pages_, 1, w, static_cast<double>(o_.papier.hauteur));
    pageOuverte_ = true;
    if (o_.progres) o_.progres(titre_, Message(4350) + " " + std::to_string(pages_));
    y_ = static_cast<double>(o_.papier.hauteur) / 30;
    const Police p8{8, false};
    const double h = HauteurLigne(8);
    // The date of the print, then the banner a tab in.
    s_.Texte(marge, y_, Message(570) + " " + date_, p8, 0);
    y_ += h;
    s_.Texte(marge + 1440, y_, o_.banniere, p8, 0);
    y_ += h * 1.5;
    // The title in its frame, sized on the title at 8 points.
    const Police p10{10, true};
    const double l8 = m_.Largeur(titre, p8), l10 = m_.Largeur(titre, p10);
    const double demi = std::max(l8 / 1.5, l10 / 2 + 120);
    const double gauche = std::max(0.0, w / 2 - demi), droite = std::min(w, w / 2 + demi);
    const double haut = y_, bas = y_ + HauteurLigne(10, true) + 120;
    s_.Trait(gauche, haut, droite, haut, Plume::Cadre);
    s_.Trait(droite, haut, droite, bas, Plume::Cadre);
    s_.Trait(droite, bas, gauche, bas, Plume::Cadre);
    s_.Trait(gauche, bas, gauche, haut, Plume::Cadre);
    s_.Texte(std::max(gauche, w / 2 - l10 / 2), haut + 60, titre, p10, 0);
    y_ = bas + h;
}

void Imprimante::FinImpression() {
    if (!pageOuverte_) return;
    s_.FinPage();
    pageOuverte_ = false;
}

std::vector<Imprimante::LigneMesuree> Imprimante::Coupe(const Paragraphe& p) const {
    const double w = static_cast<double>(o_.papier.largeur);
    const double dispo = std::max(720.0, w - 2 * (w / 20) - p.retrait);
    std::vector<LigneMesuree> lignes(1);
    auto ligne = [&]() -> LigneMesuree& { return lignes.back(); };
    ligne().retrait = p.retrait;
    auto ajoute = [&](const Morceau& modele, std::string mot) {
        const Police pol{modele.points, modele.gras};
        double l = m_.Largeur(mot, pol);
        LigneMesuree& cour = ligne();
        if (cour.largeur + l > dispo && cour.largeur > 0) {
            lignes.push_back(LigneMesuree{});
            ligne().retrait = p.retrait;
            if (mot.front() == ' ') {
                mot.erase(0, mot.find_first_not_of(' ') == std::string::npos
                                 ? mot.size()
                                 : mot.find_first_not_of(' '));
                if (mot.empty()) return;
                l = m_.Largeur(mot, pol);
            }
        }
        // A word longer than the line is cut where the line ends.
        while (l > dispo && mot.size() > 1) {
            std::size_t n = mot.size();
            while (n > 1 && ligne().largeur + m_.Largeur(std::string_view(mot).substr(0, n), pol) > dispo)
                --n;
            Morceau m = modele;
            m.texte = mot.substr(0, n);
            ligne().largeur += m_.Largeur(m.texte, pol);
            ligne().hauteur = std::max(ligne().hauteur, HauteurLigne(m.points, m.gras));
            ligne().morceaux.push_back(std::move(m));
            mot.erase(0, n);
            lignes.push_back(LigneMesuree{});
            ligne().retrait = p.retrait;
            l = m_.Largeur(mot, pol);
        }
        LigneMesuree& fin = ligne();
        if (!fin.morceaux.empty() && fin.morceaux.back().gras == modele.gras &&
            fin.morceaux.back().souligne == modele.souligne &&
            fin.morceaux.back().points == modele.points)
            fin.morceaux.back().texte += mot;
        else
            fin.morceaux.push_back(Morceau{mot, modele.gras, modele.souligne, modele.points});
        fin.largeur += l;
        fin.hauteur = std::max(fin.hauteur, HauteurLigne(modele.points, modele.gras));
    };
    for (const Morceau& m : p.morceaux) {
        // Words with the blanks before them.
        std::size_t i = 0;
        while (i < m.texte.size()) {
            std::size_t j = m.texte.find_first_not_of(' ', i);
            if (j == std::string::npos) j = m.texte.size();
            j = m.texte.find(' ', j);
            if (j == std::string::npos) j = m.texte.size();
            ajoute(m, m.texte.substr(i, j - i));
            i = j;
        }
    }
    for (LigneMesuree& l : lignes)
        if (l.hauteur == 0) l.hauteur = HauteurLigne(8);
    return lignes;
}

void Imprimante::PlaceLigne(const LigneMesuree& l) {
    if (y_ + l.hauteur > Bas()) NouvellePage(titre_);
    double x = static_cast<double>(o_.papier.largeur) / 20 + l.retrait;
    for (const Morceau& m : l.morceaux) {
        const Police pol{m.points, m.gras};
        const double largeur = m_.Largeur(m.texte, pol);
        s_.Texte(x, y_, m.texte, pol, 0);
        if (m.souligne) {
            const double sous = y_ + m_.Hauteur(pol) * 0.85;
            s_.Trait(x, sous, x + largeur, sous, Plume::Repere);
        }
        x += largeur;
    }
    y_ += l.hauteur;
}

void Imprimante::Imprime(const std::vector<Paragraphe>& ps) {
    if (!pageOuverte_) NouvellePage(titre_);
    std::vector<std::vector<LigneMesuree>> lignes;
    lignes.reserve(ps.size());
    for (const Paragraphe& p : ps) lignes.push_back(Coupe(p));
    // The heading and the first line after it stand together.
    double bloc = 0;
    std::size_t k = 0;
    for (; k < ps.size() && ps[k].attache; ++k)
        for (const LigneMesuree& l : lignes[k]) bloc += l.hauteur;
    if (k < ps.size() && !lignes[k].empty()) bloc += lignes[k].front().hauteur;
    const double filet = !ps.empty() && ps.front().filet ? 120 : 0;
    const double vide = static_cast<double>(o_.papier.hauteur) / 30 + 6 * HauteurLigne(8);
    if (y_ + filet + bloc > Bas() && bloc < Bas() - vide) NouvellePage(titre_);
    for (std::size_t i = 0; i < ps.size(); ++i) {
        if (ps[i].filet) {
            const double w = static_cast<double>(o_.papier.largeur);
            y_ += 60;
            s_.Trait(w / 20, y_, w - w / 20, y_, Plume::Repere);
            y_ += 60;
        }
        for (const LigneMesuree& l : lignes[i]) PlaceLigne(l);
    }
}

void Imprimante::Ligne(std::vector<Paragraphe>& ps, std::vector<Morceau> m, double retrait) {
    ps.push_back(Paragraphe{std::move(m), retrait, false, false});
}

void Imprimante::Etiquette(std::vector<Paragraphe>& ps, const std::string& libelle,
                           const std::string& valeur, double retrait) {
    if (valeur.empty()) return;
    Ligne(ps, {Morceau{libelle, true}, Morceau{" : " + valeur}}, retrait);
}

void Imprimante::Titre(std::vector<Paragraphe>& ps, const std::string& texte) {
    ps.push_back(Paragraphe{{Morceau{texte, true, true}}, 0, true, false});
}

void Imprimante::Marque(std::vector<char>& t, std::uint32_t n) {
    if (n >= t.size()) t.resize(n + 1, 0);
    t[n] = 1;
}

void Imprimante::Entete(std::vector<Paragraphe>& ps, const std::string& nom,
                        const std::string& entete) {
    const auto diese = entete.find('#');
    const std::string avec = entete.substr(0, diese);
    Paragraphe tete{{Morceau{nom, true, false, 10}}, 0, true, true};
    if (!avec.empty()) tete.morceaux.push_back(Morceau{"   " + avec});
    ps.push_back(std::move(tete));
    if (diese == std::string::npos) return;
    for (std::size_t i = diese + 1; i < entete.size();) {
        std::size_t j = entete.find('#', i);
        if (j == std::string::npos) j = entete.size();
        if (j > i) ps.push_back(Paragraphe{{Morceau{entete.substr(i, j - i)}}, kRetrait, true, false});
        i = j + 1;
    }
}

void Imprimante::Identite(std::vector<Paragraphe>& ps, const FichePersonne& f, double retrait) {
    Ligne(ps, {Morceau{f.libelleSexe, true}}, retrait);
    for (const Rubrique& r : f.identite) Etiquette(ps, r.libelle, r.texte, retrait);
}

std::string Imprimante::Nomme(const Mention& m) { return m.signe + (m.signe.empty() ? "" : " ") + m.nom + m.dates; }

void Imprimante::Sections(std::vector<Paragraphe>& ps, const FichePersonne& f,
                          const MariageFiche* seul) {
    const auto& sec = o_.sections;
    auto mentions = [&](int titre, const std::vector<Mention>& l) {
        if (l.empty()) return;
        Titre(ps, Message(titre));
        for (const Mention& m : l)
            if (m.role.empty()) Ligne(ps, {Morceau{Nomme(m)}}, kRetrait);
            else Etiquette(ps, m.role, Nomme(m), kRetrait);
    };
    if (seul) {
        if (sec[SecEnfants]) mentions(seul->enfants.size() > 1 ? 666 : 750, seul->enfants);
        return;
    }
    if (sec[SecParents] && (f.pere.personne || f.mere.personne)) {
        Titre(ps, Message(592));
        if (f.pere.personne) Etiquette(ps, Message(681), Nomme(f.pere), kRetrait);
        if (f.mere.personne) Etiquette(ps, Message(683), Nomme(f.mere), kRetrait);
    }
    if (sec[SecConjoints] && !f.mariages.empty()) {
        Titre(ps, Message(f.mariages.size() > 1 ? 579 : 748));
        char lettre = 'a';
        for (const MariageFiche& m : f.mariages) {
            std::vector<Morceau> l;
            if (f.mariages.size() > 1) l.push_back(Morceau{std::string(1, lettre++) + ") "});
            l.push_back(Morceau{Nomme(m.conjoint)});
            Ligne(ps, std::move(l), kRetrait);
            if (!m.details.empty()) Ligne(ps, {Morceau{m.details}}, 2 * kRetrait);
        }
    }
    if (sec[SecEnfants]) mentions(f.enfants.size() > 1 ? 666 : 750, f.enfants);
    if (sec[SecPersonnes]) mentions(926, f.liees);
    if (sec[SecFratrie]) {
        mentions(910, f.freres);
        mentions(882, f.demiFreres);
    }
}

void Imprimante::Evenements(std::vector<Paragraphe>& ps, const std::vector<EvenementFiche>& evts) {
    if (evts.empty()) return;
    Titre(ps, Message(evts.size() > 1 ? 643 : 644));
    for (const EvenementFiche& e : evts) {
        Marque(evts_, e.evenement);
        std::string texte = Joint(e.date, e.libelle, " : ");
        texte = Joint(texte, Nettoie(b_.LieuEvt(e.evenement)));
        if (!e.role.empty()) texte += " (" + e.role + ")";
        Ligne(ps, {Morceau{texte}}, kRetrait);
    }
}

void Imprimante::Documents(std::vector<Paragraphe>& ps, const std::vector<DocumentFiche>& docs) {
    if (docs.empty()) return;
    Titre(ps, Message(docs.size() > 1 ? 645 : 646));
    for (const DocumentFiche& d : docs) {
        Marque(docs_, d.document);
        const std::string type = Nettoie(d.type);
        Ligne(ps, {Morceau{Nettoie(d.titre) + (type.empty() ? "" : " (" + type + ")")}}, kRetrait);
    }
}

void Imprimante::Note(std::vector<Paragraphe>& ps, const std::string& note) {
    if (Nettoie(note).empty()) return;
    // Rich text keeps its bold and underline, run by run; every paragraph
    // end starts a new paragraph.
    std::vector<SegmentRtf> segments;
    if (note.find("{\\rtf") != std::string::npos) segments = LitRtf(note);
    else {
        segments.emplace_back();
        segments.back().texte = note;
    }
    Paragraphe courant{{}, 0, false, false};
    auto fin = [&] {
        if (!courant.morceaux.empty()) ps.push_back(courant);
        courant.morceaux.clear();
    };
    ps.push_back(Paragraphe{{}, 0, false, false}); // a blank line before the text
    for (const SegmentRtf& s : segments) {
        std::size_t i = 0;
        while (i <= s.texte.size()) {
            std::size_t j = s.texte.find_first_of("\r\n", i);
            const std::string part = s.texte.substr(i, j == std::string::npos ? j : j - i);
            std::string propre;
            for (char c : part) propre += c == '\t' ? ' ' : c;
            if (!propre.empty())
                courant.morceaux.push_back(Morceau{propre, s.gras, s.souligne});
            if (j == std::string::npos) break;
            fin();
            if (s.texte.compare(j, 2, "\r\n") == 0) ++j;
            i = j + 1;
        }
    }
    fin();
}

void Imprimante::ImprimeFiche(std::uint32_t p, const std::string& entete) {
    std::vector<Paragraphe> ps;
    if (o_.listeRapide) {
        // One line: the name, then the lines of the heading.
        const Mention m = MentionDe(b_, p);
        Entete(ps, m.nom + m.dates, entete);
        Paragraphe& l = ps.front();
        l.attache = false;
        l.filet = false;
        l.morceaux.front().points = 8;
        for (std::size_t i = 1; i < ps.size(); ++i)
            l.morceaux.push_back(Morceau{" - " + ps[i].morceaux.front().texte});
        ps.resize(1);
        Imprime(ps);
        return;
    }
    const FichePersonne f = LitFichePersonne(b_, p);
    Entete(ps, f.nom + f.dates, entete);
    Identite(ps, f, 0);
    Sections(ps, f, nullptr);
    if (o_.sections[SecEvenements]) Evenements(ps, f.evenements);
    if (o_.sections[SecDocuments]) Documents(ps, f.documents);
    if (o_.sections[SecNotes]) Note(ps, f.note);
    Imprime(ps);
}

void Imprimante::ImprimeCouple(std::uint32_t m, const std::string& entete) {
    const std::uint32_t mari = b_.LitMari(m), femme = b_.LitFemme(m);
    std::vector<Paragraphe> ps;
    Entete(ps, Joint(mari ? b_.NomComplet(mari) : "?", femme ? b_.NomComplet(femme) : "?", " \xD7 "),
           entete);
    std::vector<EvenementFiche> evts;
    std::vector<DocumentFiche> docs;
    const MariageFiche* mariage = nullptr;
    FichePersonne fiches[2];
    for (int i = 0; i < 2; ++i) {
        const std::uint32_t p = i == 0 ? mari : femme;
        if (!p) continue;
        FichePersonne& f = fiches[i] = LitFichePersonne(b_, p);
        Ligne(ps, {Morceau{f.nom + f.dates, true}});
        Identite(ps, f, kRetrait);
        for (const MariageFiche& x : f.mariages)
            if (x.mariage == m && !mariage) mariage = &x;
        for (const EvenementFiche& e : f.evenements)
            if (std::none_of(evts.begin(), evts.end(),
                             [&](const EvenementFiche& x) { return x.evenement == e.evenement; }))
                evts.push_back(e);
        for (const DocumentFiche& d : f.documents)
            if (std::none_of(docs.begin(), docs.end(),
                             [&](const DocumentFiche& x) { return x.document == d.document; }))
                docs.push_back(d);
    }
    if (mariage) {
        if (!mariage->details.empty()) {
            Titre(ps, Message(642));
            Ligne(ps, {Morceau{mariage->details}}, kRetrait);
        }
        Sections(ps, fiches[0], mariage);
    }
    if (o_.sections[SecEvenements]) Evenements(ps, evts);
    if (o_.sections[SecDocuments]) Documents(ps, docs);
    if (o_.sections[SecNotes]) Note(ps, b_.CorpsNoteMariage(m));
    Imprime(ps);
}

void Imprimante::ImprimePersonne(std::uint32_t p, const std::string& entete) {
    if (o_.couple && !o_.listeRapide) {
        const std::vector<std::uint32_t> mariages = b_.Mariages(p);
        for (std::uint32_t m : mariages) ImprimeCouple(m, entete);
        if (!mariages.empty()) return;
    }
    ImprimeFiche(p, entete);
}

void Imprimante::ImprimeEvenement(std::uint32_t e) {
    std::vector<Paragraphe> ps;
    Entete(ps, Joint(b_.LibelleEvt(e), Nettoie(b_.TitreEvt(e)), " : "), "");
    std::vector<DocumentFiche> docs;
    Ligne(ps, {Morceau{Joint(DateEnMots(b_.DateEvt(e)), Nettoie(b_.LieuEvt(e)))}});
    for (int i = 1; i <= 200; ++i) {
        const std::uint32_t p = b_.PersonneEvtNo(e, i);
        if (p == 0) break;
        std::string role;
        for (int j = 1; j <= 200; ++j) {
            const std::uint32_t x = b_.EvtNo(p, j);
            if (x == 0) break;
            if (x == e) {
                role = Conv_LibelleTag(Nettoie(b_.RoleEvtNo(p, j)));
                break;
            }
        }
        if (role.empty()) Ligne(ps, {Morceau{Nomme(MentionDe(b_, p))}}, kRetrait);
        else Etiquette(ps, role, Nomme(MentionDe(b_, p)), kRetrait);
    }
    for (int i = 1; i <= kMaxListeFiche; ++i) {
        const std::uint32_t d = b_.DocEvtNo(e, i);
        if (d == 0) break;
        docs.push_back({d, b_.TitreDoc(d), b_.TypeDoc(d)});
    }
    Documents(ps, docs);
    Note(ps, b_.NoteEvt(e));
    Imprime(ps);
}

void Imprimante::ImprimeDocument(std::uint32_t d) {
    std::vector<Paragraphe> ps;
    Entete(ps, Nettoie(b_.TitreDoc(d)), "");
    const std::string type = Nettoie(b_.TypeDoc(d));
    if (!type.empty()) Ligne(ps, {Morceau{type}});
    const std::string fichier = Nettoie(b_.FichierDoc(d));
    if (!fichier.empty()) Ligne(ps, {Morceau{fichier}});
    Note(ps, b_.NoteDoc(d));
    Imprime(ps);
}

void Imprimante::ImprimeAnnexes() {
    if (o_.annexeEvenements) {
        std::vector<char> t = std::move(evts_);
        for (std::uint32_t e = 1; e < t.size(); ++e)
            if (t[e]) ImprimeEvenement(e);
    }
    if (o_.annexeDocuments) {
        std::vector<char> t = std::move(docs_);
        for (std::uint32_t d = 1; d < t.size(); ++d)
            if (t[d]) ImprimeDocument(d);
    }
    evts_.clear();
    docs_.clear();
}

// --- The drivers ----------------------------------------------------------------------

std::string TitreRapport(Base& b, Rapport r, std::uint32_t personne) {
    switch (r) {
    case Rapport::FicheIndividuelle: return TitreRapport(b, GenreRapport::Fiche, personne);
    case Rapport::FicheFamille: return TitreRapport(b, GenreRapport::Famille, personne);
    case Rapport::FichesAscendants: return TitreRapport(b, GenreRapport::Ascendants, personne);
    case Rapport::FichesDescendants: return TitreRapport(b, GenreRapport::Descendants, personne);
    case Rapport::Liste: break;
    }
    return Message(770);
}

namespace {

// The line of a spouse's own sheet: "Époux" for a husband, "Conjoint"
// otherwise; the lists name the person the spouse is married to.
std::string EnteteConjoint(Base& b, std::uint32_t conjoint, std::uint32_t personne, bool liste) {
    const bool mari = b.LitSexe(conjoint) == "H";
    if (liste) return "#" + MessageAvec(mari ? 752 : 753, b.NomComplet(personne));
    return "#" + Message(mari ? 747 : 748);
}

} // namespace

FinRapport ImprimeRapport(Base& b, SystemeFichiers& fs, Surface& s, Rapport r,
                          std::uint32_t personne, const OptionsImpression& o,
                          const std::vector<std::uint32_t>& liste) {
    if (r == Rapport::Liste ? liste.empty() : personne == 0) return FinRapport::Vide;
    Imprimante imp(b, s, o);
    const std::string titre = TitreRapport(b, r, personne);
    if (o.progres) o.progres(Message(745), titre);
    auto arret = [&] {
        if (!o.arret || !o.arret()) return false;
        imp.FinImpression();
        return true;
    };
    auto conjoints = [&](std::uint32_t p, bool deListe) {
        if (!o.fichesConjoints || o.couple) return;
        for (std::uint32_t m : b.Mariages(p))
            if (const std::uint32_t c = Conjoint(b, m, p))
                imp.ImprimeFiche(c, EnteteConjoint(b, c, p, deListe));
    };
    imp.NouvellePage(titre);
    switch (r) {
    case Rapport::FicheIndividuelle:
        imp.ImprimePersonne(personne, "#");
        conjoints(personne, false);
        break;
    case Rapport::FicheFamille: {
        ListeParente l(b, fs);
        for (const EntreeRapport& e :
             EntreesRapport(b, l, GenreRapport::Famille, personne, 1, FormeLigne::Texte)) {
            if (arret()) return FinRapport::Arrete;
            if (e.personne == personne) imp.ImprimePersonne(e.personne, e.lignes);
            else imp.ImprimeFiche(e.personne, e.lignes);
        }
        break;
    }
    case Rapport::FichesAscendants:
    case Rapport::FichesDescendants: {
        const bool asc = r == Rapport::FichesAscendants;
        ListeParente l(b, fs);
        l.ArretDoublon = o.implexe ? 1 : 0;
        std::int32_t nombre = 0;
        const bool fait = asc ? l.ConstruitAscendants(personne, nombre, o.niveaux, o.modeTri)
                              : l.ConstruitDescendants(personne, nombre, o.niveaux, o.modeTri);
        if (!fait) {
            imp.FinImpression();
            return FinRapport::Arrete;
        }
        for (std::int32_t n = 1; n <= l.NombreEntrees(); ++n) {
            if (arret()) return FinRapport::Arrete;
            const std::uint32_t p = l.ListePersonne(n);
            std::string entete;
            if (asc) {
                entete = LigneAscendant(l, b, n);
                std::replace(entete.begin(), entete.end(), '\0', '#');
            } else {
                entete = LigneDescendant(l, b, n);
            }
            if (o.progres) o.progres(titre, b.NomComplet(p));
            imp.ImprimePersonne(p, entete);
            conjoints(p, true);
        }
        break;
    }
    case Rapport::Liste:
        for (std::uint32_t p : liste) {
            if (arret()) return FinRapport::Arrete;
            std::string texte;
            const std::string naiss =
                Joint(Nettoie(Conv_DateResume(b.LitDateNaiss(p), b.LitAnNaiss(p))),
                      Nettoie(b.LieuNaiss(p)));
            const std::string deces =
                Joint(Nettoie(Conv_DateResume(b.LitDateDeces(p), b.LitAnDeces(p))),
                      Nettoie(b.LieuDeces(p)));
            if (!naiss.empty()) texte = Message(754) + " : " + naiss;
            else if (!deces.empty()) texte = Message(755) + " : " + deces;
            imp.ImprimePersonne(p, texte);
        }
        break;
    }
    if (arret()) return FinRapport::Arrete;
    imp.ImprimeAnnexes();
    imp.FinImpression();
    return FinRapport::Termine;
}

} // namespace sylvane
