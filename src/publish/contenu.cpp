#include "publish/contenu.h"

#include "store/evenement_edition.h"
#include "text/calendrier.h"
#include "text/dates.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/tags.h"

#include <algorithm>
#include <ctime>

namespace sylvane {
namespace {

} // namespace

std::string Joint(std::initializer_list<std::string> parties) {
    std::string r;
    for (const std::string& p : parties) {
        const std::string t = Trim(p);
        if (t.empty()) continue;
        if (!r.empty()) r += ' ';
        r += t;
    }
    return r;
}

namespace {

std::string DateRubrique(const SlotRubrique& slot, const ValeurRubrique& v) {
    if (slot.drapeau != '1') return v.valeur;
    return Joint({Conv_DateLongue(v.jourMois), v.annee, v.valeur});
}

void Rubriques(const std::array<SlotRubrique, 10>& slots, const TableValeursRubriques& valeurs,
               std::vector<Rubrique>& sortie) {
    for (std::size_t i = 0; i < slots.size() && i < valeurs.size(); ++i) {
        if (slots[i].tag.empty()) continue;
        std::string t = Trim(DateRubrique(slots[i], valeurs[i]));
        if (!t.empty()) sortie.push_back({Conv_LibelleTag(slots[i].tag), std::move(t)});
    }
}

std::string DetailsMariage(Base& b, std::uint32_t m) {
    std::string r;
    const std::string date = b.DateMariage(m), an = Trim(b.LitAnMariage(m)),
                      lieu = b.LieuMariage(m);
    if (!date.empty() || !an.empty() || !lieu.empty())
        r = Message(642) + " : " + Joint({Conv_DateLongue(date), an, lieu});
    const std::string fin = Trim(b.LitAnFin(m));
    if (!fin.empty()) r += (r.empty() ? "" : " - ") + Message(606) + " " + fin;
    std::vector<Rubrique> rub;
    Rubriques(b.Tete().rubriquesMariage, b.RubriquesMariage(m), rub);
    for (const Rubrique& x : rub) r += (r.empty() ? "" : " - ") + x.libelle + " : " + x.texte;
    return r;
}

// The roles of the family itself, which the sheet shows in its own
// sections.
bool RoleFamilial(const std::string& role) {
    for (const char* r : {"CHIL", "FATH", "MOTH", "HUSB", "WIFE", "DEAD", "WIDR"})
        if (role == r) return true;
    return false;
}

} // namespace

const char* ClasseSexe(const std::string& sexe) {
    if (sexe == "H") return "Homme";
    if (sexe == "F") return "Femme";
    return "Indetermine";
}

int MessageSexe(const std::string& sexe) {
    if (sexe == "H") return 661;
    if (sexe == "F") return 663;
    return 664;
}

std::string DateEnMots(long serie) {
    if (serie == 0) return "";
    const DateCivile d = DepuisJourSerie(serie);
    const int j = JourDeSemaine(d);
    return Message(j == 0 ? 604 : 597 + j) + " " + std::to_string(d.jour) + " " +
           Message(729 + d.mois) + " " + std::to_string(d.annee);
}

std::string DateCourte(long serie) {
    if (serie == 0) return "";
    const DateCivile d = DepuisJourSerie(serie);
    return std::to_string(d.jour) + "/" + std::to_string(d.mois) + "/" + std::to_string(d.annee);
}

std::string DateDuJour() {
    const std::time_t t = std::time(nullptr);
    std::tm tm{};
    localtime_r(&t, &tm);
    char s[16];
    std::strftime(s, sizeof s, "%d/%m/%Y", &tm);
    return s;
}

Mention MentionDe(Base& b, std::uint32_t p) {
    Mention m;
    m.personne = p;
    if (p == 0) return m;
    m.nom = b.NomComplet(p);
    m.dates = Conv_AnneesVieLongues(b.LitDateNaiss(p), Trim(b.LitAnNaiss(p)), b.LitDateDeces(p),
                                    Trim(b.LitAnDeces(p)));
    return m;
}

FichePersonne LitFichePersonne(Base& b, std::uint32_t p) {
    FichePersonne f;
    f.personne = p;
    f.sexe = b.LitSexe(p);
    f.nom = b.NomComplet(p);
    f.dates = MentionDe(b, p).dates;
    f.libelleSexe = Message(MessageSexe(f.sexe));

    auto identite = [&f](int message, const std::string& texte) {
        if (!Trim(texte).empty()) f.identite.push_back({Message(message), Trim(texte)});
    };
    identite(818, b.LitNom(p));
    identite(1046, Joint({b.LitPrenom(p), b.LitAutrePrenom(p)}));
    identite(881, b.ValeurRubriquePersonne(p, "NICK"));
    identite(754, Joint({b.TexteDateNaiss(p), b.LitAnNaiss(p), b.LieuNaiss(p)}));
    identite(755, Joint({b.TexteDateDeces(p), b.LitAnDeces(p), b.LieuDeces(p)}));
    Rubriques(b.Tete().rubriquesPersonne, b.RubriquesNote(p), f.identite);

    f.pere = MentionDe(b, b.LitPere(p));
    f.mere = MentionDe(b, b.LitMere(p));

    const std::vector<std::uint32_t> mariages = b.Mariages(p);
    std::vector<std::uint32_t> conjoints;
    for (std::uint32_t m : mariages) {
        const std::uint32_t mari = b.LitMari(m);
        MariageFiche mf;
        mf.mariage = m;
        mf.conjoint = MentionDe(b, mari == p ? b.LitFemme(m) : mari);
        mf.details = DetailsMariage(b, m);
        conjoints.push_back(mf.conjoint.personne);
        f.mariages.push_back(std::move(mf));
    }

    for (int i = 1; i <= kMaxListeFiche; ++i) {
        const std::uint32_t k = b.EnfantNo(p, i);
        if (k == 0) break;
        Mention e = MentionDe(b, k);
        const std::uint32_t pere = b.LitPere(k), mere = b.LitMere(k);
        const std::uint32_t autre = pere == p ? mere : pere;
        auto rang = std::find(conjoints.begin(), conjoints.end(), autre);
        if (autre == 0)
            e.signe = "?";
        else if (rang != conjoints.end() && rang != conjoints.begin())
            e.signe = "\xA5";
        if (autre != 0 && rang != conjoints.end())
            f.mariages[static_cast<std::size_t>(rang - conjoints.begin())].enfants.push_back(e);
        f.enfants.push_back(std::move(e));
    }

    for (int i = 1; i <= kMaxListeFiche; ++i) {
        const std::uint32_t l = b.LienNo(p, i);
        if (l == 0 && b.TexteLienBrutNo(p, i).empty()) break;
        if (l == 0) continue;
        Mention m = MentionDe(b, l);
        m.role = Conv_LibelleTag(b.TexteLienBrutNo(p, i));
        f.liees.push_back(std::move(m));
    }

    // Godparents and witnesses: the other persons of the events where this
    // one is the child, the deceased or one of the couple, "M" when it is
    // the couple.
    for (int i = 1; i <= kMaxListeFiche; ++i) {
        const std::uint32_t e = b.EvtNo(p, i);
        if (e == 0) break;
        const std::string role = b.RoleEvtNo(p, i);
        const bool couple = role == "HUSB" || role == "WIFE";
        if (!couple && role != "CHIL" && role != "DEAD") continue;
        for (int j = 1; j <= kMaxListeFiche; ++j) {
            const std::uint32_t x = b.PersonneEvtNo(e, j);
            if (x == 0) break;
            if (x == p) continue;
            const std::string r = RoleDansEvenement(b, x, e);
            if (Trim(r).empty() || RoleFamilial(r)) continue;
            Mention m = MentionDe(b, x);
            m.role = Conv_LibelleTag(r);
            m.genre = couple ? 'M' : 'P';
            f.liees.push_back(std::move(m));
        }
    }

    // Brothers and sisters share both parents; half-siblings one of them.
    const std::uint32_t pere = f.pere.personne, mere = f.mere.personne;
    std::vector<std::uint32_t> vus{p};
    for (std::uint32_t parent : {pere, mere}) {
        for (int i = 1; parent && i <= kMaxListeFiche; ++i) {
            const std::uint32_t k = b.EnfantNo(parent, i);
            if (k == 0) break;
            if (std::find(vus.begin(), vus.end(), k) != vus.end()) continue;
            vus.push_back(k);
            const bool plein = pere && mere && b.LitPere(k) == pere && b.LitMere(k) == mere;
            (plein ? f.freres : f.demiFreres).push_back(MentionDe(b, k));
        }
    }

    for (int i = 1; i <= kMaxListeFiche; ++i) {
        const std::uint32_t e = b.EvtNo(p, i);
        if (e == 0) break;
        EvenementFiche ev;
        ev.evenement = e;
        ev.date = DateEnMots(b.DateEvt(e));
        ev.libelle = b.LibelleEvt(e);
        ev.role = Conv_LibelleTag(b.RoleEvtNo(p, i));
        f.evenements.push_back(std::move(ev));
    }
    std::stable_sort(f.evenements.begin(), f.evenements.end(),
                     [&b](const EvenementFiche& x, const EvenementFiche& y) {
                         return b.DateEvt(x.evenement) < b.DateEvt(y.evenement);
                     });
    for (int i = 1; i <= kMaxListeFiche; ++i) {
        const std::uint32_t d = b.DocNo(p, i);
        if (d == 0) break;
        f.documents.push_back({d, b.TitreDoc(d), b.TypeDoc(d)});
    }
    f.note = b.CorpsNote(p);
    return f;
}

} // namespace sylvane
