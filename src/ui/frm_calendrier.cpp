#include "ui/frm_calendrier.h"

#include "text/calendrier.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/republicain.h"
#include "ui/services.h"

namespace sylvane {
namespace {

constexpr int kAnnees = 14;

// A day as typed: digits only, blanks around allowed; 0 otherwise.
int Jour(const std::string& texte) {
    const std::string t = Trim(texte);
    if (t.empty() || t.size() > 2) return 0;
    int j = 0;
    for (char c : t) {
        if (c < '0' || c > '9') return 0;
        j = j * 10 + (c - '0');
    }
    return j;
}

} // namespace

FrmCalendrier::FrmCalendrier(Boites& boites) : boites_(boites) {
    // The first day of the Republic, on both sides.
    gregorien.mois = Message(738);
    republicain = {"1", MoisRepublicain(1), AnneeRepublicaine(1)};
}

std::vector<std::string> FrmCalendrier::MoisGregoriens() {
    std::vector<std::string> v;
    for (int n = 730; n <= 741; ++n) v.push_back(Message(n));
    return v;
}

std::vector<std::string> FrmCalendrier::MoisRepublicains() {
    std::vector<std::string> v;
    for (int m = 1; m <= 13; ++m) v.push_back(MoisRepublicain(m));
    return v;
}

std::vector<std::string> FrmCalendrier::AnneesGregoriennes() {
    std::vector<std::string> v;
    for (int y = 0; y < kAnnees; ++y) v.push_back(std::to_string(kPremiereAnneeGregorienne + y));
    return v;
}

std::vector<std::string> FrmCalendrier::AnneesRepublicaines() {
    std::vector<std::string> v;
    for (int y = 1; y <= kAnnees; ++y) v.push_back(AnneeRepublicaine(y));
    return v;
}

int FrmCalendrier::Index(const std::vector<std::string>& liste, const std::string& texte) {
    const std::string cle = CleMot(Trim(texte));
    if (cle.empty()) return 0;
    for (std::size_t i = 0; i < liste.size(); ++i)
        if (CleMot(liste[i]) == cle) return static_cast<int>(i) + 1;
    return 0;
}

void FrmCalendrier::Refuse(int message) { boites_.Information(message); }

bool FrmCalendrier::CmdGR() {
    const int d = Jour(gregorien.jour);
    const int m = Index(MoisGregoriens(), gregorien.mois);
    const int y = Index(AnneesGregoriennes(), gregorien.annee);
    DateFormulaire r;
    if (methode == MethodeCalendrier::Table) {
        r = Calendrier_GregorienVersRepublicain(d, m, y);
    } else if (d < 1 || d > 31) {
        r.message = 726;
    } else if (m == 0) {
        r.message = 728;
    } else if (y == 0) {
        r.message = 729;
    } else if (d > JoursDuMois(m, kPremiereAnneeGregorienne + y - 1)) {
        r.message = 726;
    } else {
        const auto rep = SerieVersRepublicain(
            JourSerie({d, m, kPremiereAnneeGregorienne + y - 1}), RegleSextile::Historique);
        if (!rep) r.message = kMsgAvantRepublique;
        else r = {rep->jour, rep->mois, rep->annee, 0};
    }
    if (r.message) {
        Refuse(r.message);
        return false;
    }
    republicain.jour = std::to_string(r.jour);
    republicain.mois = MoisRepublicain(r.mois);
    if (r.annee >= 1 && r.annee <= kAnnees) republicain.annee = AnneeRepublicaine(r.annee);
    return true;
}

bool FrmCalendrier::CmdRG() {
    const int d = Jour(republicain.jour);
    const int m = Index(MoisRepublicains(), republicain.mois);
    const int y = Index(AnneesRepublicaines(), republicain.annee);
    DateFormulaire r;
    if (methode == MethodeCalendrier::Table) {
        r = Calendrier_RepublicainVersGregorien(d, m, y);
    } else if (d < 1 || d > 30) {
        r.message = 726;
    } else if (m == 0) {
        r.message = 728;
    } else if (y == 0) {
        r.message = 729;
    } else if (auto serie = RepublicainVersSerie({d, m, y}, RegleSextile::Historique); !serie) {
        r.message = 726; // a complementary day the year doesn't have
    } else {
        const DateCivile g = DepuisJourSerie(*serie);
        const int index = g.annee - kPremiereAnneeGregorienne + 1;
        if (index > kAnnees) r.message = kMsgApresRepublique;
        else r = {g.jour, g.mois, index, 0};
    }
    if (r.message) {
        Refuse(r.message);
        return false;
    }
    gregorien.jour = std::to_string(r.jour);
    gregorien.mois = Message(729 + r.mois);
    if (r.annee >= 1 && r.annee <= kAnnees)
        gregorien.annee = std::to_string(kPremiereAnneeGregorienne + r.annee - 1);
    return true;
}

} // namespace sylvane
